#include "report/trace_reader.h"

#include <array>
#include <memory>
#include <span>

#include "description/hit_counting.h"
#include "description/pairs.h"
#include "report/auth.h"
#include "report/cio.h"
#include "report/cleaned_trace.h"
#include "report/report_text.h"
#include "support/machine.h"

namespace veldacov {

namespace {

// The CIO file has a block for each period in which the service number stays the same.
void enterServicePeriod(TraceSession& session, std::int32_t serviceNumber) {
    if (!session.options->cioFile || serviceNumber == -1) {
        return;
    }
    if (session.currentServiceNumber != -1 && session.currentServiceNumber != serviceNumber) {
        writeCioServiceBlock(session);
    }
    session.currentServiceNumber = serviceNumber;
}

void startTest(TraceSession& session, const TestLine& line) {
    const TestIdentity identity = identityOf(session.trace, line);
    session.currentTestNumber = line.number;
    if (identity.knownBy != KnownBy::Number) {
        addNameCount(session.seenTests, identity.test);
    }
    session.testOpen = enterTest(session.trace, identity.test, *session.options);
    session.anyTestSelected = session.anyTestSelected || session.testOpen;
}

void handleTestLine(TraceSession& session) {
    const CoverageOptions& options = *session.options;
    if (session.cleanPending && !options.mergeTests) {
        writeCleanedTrace(session);
    }
    session.cleanPending = options.cleanFile.has_value();
    const TestLine line = readTestLine(session.trace);
    if (session.testOpen) {
        closeTest(session);
        if (!options.global || options.cioFile) {
            resetTestCounts();
        }
    }
    enterServicePeriod(session, line.serviceNumber);
    startTest(session, line);
}

// What becomes of the hits of the current part, as long as no other line changes it.
struct HitTreatment {
    FileDescription* part = nullptr;
    Counting counting = Counting::Replace;
    std::uint16_t recordedTypes = 0;
    bool kept = false;             // for the cleaned trace
    KnownHits known = noKnownHits; // has been recorded, and kept
};

HitTreatment hitTreatment(const TraceSession& session) {
    const TraceCursor& trace = session.trace;
    HitTreatment treatment;
    treatment.part = trace.currentPart;
    treatment.counting = trace.countOriented ? Counting::Accumulate : Counting::Replace;
    treatment.kept = session.options->cleanFile.has_value();
    if (!trace.currentPart->placeholder) {
        treatment.recordedTypes = trace.state == ReadState::Recording ? session.typesInUse : std::uint16_t{0};
        treatment.known =
            knownHits(*trace.currentPart, treatment.counting, treatment.recordedTypes, treatment.kept);
    }
    return treatment;
}

bool isRecorded(const HitTreatment& treatment, Hit hit) {
    const std::span<const std::uint8_t> seen = treatment.part->seenHits[kindIndex(hit.kind)].plain;
    return treatment.counting == Counting::Replace && hit.id < seen.size() &&
           (seen[hit.id] & seen::plainHit) != 0;
}

void takeHit(TraceSession& session, const HitTreatment& treatment, Hit hit) {
    if ((treatment.recordedTypes & typesOfKind(hit.kind)) != 0 && !isRecorded(treatment, hit)) {
        recordHit(*treatment.part, hit.kind, hit.id, hit.count, treatment.counting);
    }
    if (treatment.kept) {
        AddTioBranch(session, hit);
    }
}

// New hits wait for each other, so that recording them waits for memory once and not one after the other.
struct HitBatch {
    std::array<Hit, 32> hits;
    std::size_t size = 0;
};

void takeBatch(TraceSession& session, const HitTreatment& treatment, HitBatch& batch) {
    const std::span<const Hit> hits = std::span(batch.hits).first(batch.size);
    prefetchItems(*treatment.part, hits);
    for (const Hit& hit : hits) {
        takeHit(session, treatment, hit);
    }
    batch.size = 0;
}

void takePlainHits(TraceSession& session) {
    const HitTreatment treatment = hitTreatment(session);
    HitBatch batch;
    takePlainHits(session.trace, treatment.known, [&](Hit hit) {
        batch.hits[batch.size++] = hit;
        if (batch.size == batch.hits.size()) {
            takeBatch(session, treatment, batch);
        }
    });
    takeBatch(session, treatment, batch);
}

// A hit line, and those in plain form that follow it.
void handleHits(TraceSession& session, LineKind kind) {
    const Hit hit = readHit(session.trace, kind);
    takeHit(session, hitTreatment(session), hit);
    takePlainHits(session);
}

FileDescription* addPlaceholder(const TraceSession& session, const PartKey& part, bool otherChecksum) {
    auto placeholder = std::make_unique<FileDescription>();
    placeholder->placeholder = true;
    placeholder->fileKey = part.fileKey;
    placeholder->checksum = part.checksum;
    placeholder->countOriented = session.trace.countOriented;
    placeholder->otherChecksumSeen = otherChecksum;
    FileDescription* added = placeholder.get();
    addDescription(std::move(placeholder));
    return added;
}

void skipUnmatchedPart(TraceSession& session, const PartKey& part, bool otherChecksum) {
    if (session.unmatchedInfoPending) {
        session.unmatchedInfoPending = false;
        infoMessage(translate("User Info",
                              "Parts of traces do not match any listed FDC files; such parts are ignored"));
    }
    session.trace.state = ReadState::SkippingPart;
    // The cleaned trace keeps even what nothing describes.
    session.trace.currentPart =
        session.options->cleanFile ? addPlaceholder(session, part, otherChecksum) : nullptr;
}

void handleFilePart(TraceSession& session) {
    const PartKey part = readFilePart(session.trace);
    const FoundDescription found = findDescription(part.fileKey, part.checksum);
    if (found.description == nullptr) {
        skipUnmatchedPart(session, part, found.otherChecksum);
        return;
    }
    session.trace.currentPart = found.description;
    if (!GetFileAuth(found.description->sourceName, *session.options)) {
        session.trace.state = ReadState::SkippingPart;
        return;
    }
    session.trace.state = ReadState::Recording;
    if (!session.trace.countOriented) {
        session.someUncounted = true;
    }
    takePlainHits(session);
}

void handleCountLine(TraceSession& session) {
    session.trace.countOriented = true;
    if (session.trace.state == ReadState::Recording) {
        session.someCounted = true;
    }
}

} // namespace

void readTraceFile(TraceSession& session, const std::string& fileName) {
    const SkippedParts skippedParts = session.options->cleanFile ? SkippedParts::Read : SkippedParts::Ignored;
    openTrace(session.trace, fileName);
    while (const std::optional<LineKind> kind = nextTraceLine(session.trace, skippedParts)) {
        switch (*kind) {
        case LineKind::NT: handleTestLine(session); break;
        case LineKind::DT: session.trace.testDate = readTestDate(session.trace); break;
        case LineKind::CO: handleCountLine(session); break;
        case LineKind::FT: handleFilePart(session); break;
        default: handleHits(session, *kind); break;
        }
    }
}

void closeTest(TraceSession& session) {
    if (!session.testOpen) {
        return;
    }
    computeModifiedConditionHits();
    if (!session.options->global) {
        settleCounts();
        writeTestReport(session);
        session.testReported = true;
    }
    if (session.options->cioFile) {
        writeCioTestBlock(session);
    }
}

} // namespace veldacov
