#include "report/trace_walk.h"

#include <optional>

#include "description/hit_counting.h"
#include "report/auth.h"

namespace veldacov {

namespace {

void endTest(TraceWalk& walk) {
    if (walk.testOpen || !servicesHitInTest().empty()) {
        walk.events->testEnds(walk.test);
    }
}

void endPeriod(TraceWalk& walk) {
    if (walk.currentServiceNumber != -1) {
        walk.events->periodEnds(walk.currentServiceNumber);
    }
}

void enterPeriod(TraceWalk& walk, std::int32_t serviceNumber) {
    if (serviceNumber == -1) {
        return;
    }
    if (serviceNumber != walk.currentServiceNumber) {
        endPeriod(walk);
    }
    walk.currentServiceNumber = serviceNumber;
}

// The lines of a test that nobody takes are skipped.
bool takesTest(TraceWalk& walk, const NameEntry* test) {
    const bool taken = walk.events->takesTest(test);
    if (!taken) {
        walk.trace.state = ReadState::SkippingTest;
    }
    return taken;
}

void handleTestLine(TraceWalk& walk) {
    walk.events->testLinesEnd();
    const TestLine line = readTestLine(walk.trace);
    endTest(walk);
    enterPeriod(walk, line.serviceNumber);
    const TestIdentity identity = identityOf(walk.trace, line);
    walk.testOpen = enterTest(walk.trace, identity.test, *walk.options) && takesTest(walk, identity.test);
    walk.test = {.test = identity.test,
                 .knownBy = identity.knownBy,
                 .number = line.number,
                 .serviceNumber = line.serviceNumber,
                 .selected = walk.testOpen};
    walk.events->testBegins(walk.test);
}

void handleDateLine(TraceWalk& walk) {
    walk.trace.testDate = readTestDate(walk.trace);
    walk.test.date = walk.trace.testDate;
}

void handleCountLine(TraceWalk& walk) {
    walk.trace.countOriented = true;
    walk.test.countOriented = true;
    walk.someCounted = walk.someCounted || walk.trace.state == ReadState::Recording;
}

// The cleaned trace keeps even what nothing describes.
FileDescription* undescribedPart(const TraceWalk& walk, const PartKey& part, bool otherChecksum) {
    return walk.recorder.keptHits != nullptr ? addPlaceholder(part, walk.trace.countOriented, otherChecksum)
                                             : nullptr;
}

void handleFilePart(TraceWalk& walk) {
    const PartKey part = readFilePart(walk.trace);
    const FoundDescription found = findDescription(part.fileKey, part.checksum);
    const bool selected =
        found.description != nullptr && GetFileAuth(found.description->sourceName, *walk.options);
    walk.events->partMet({part, found.description, found.otherChecksum, selected});
    walk.trace.currentPart =
        found.description != nullptr ? found.description : undescribedPart(walk, part, found.otherChecksum);
    walk.trace.state = selected ? ReadState::Recording : ReadState::SkippingPart;
    if (selected) {
        walk.someUncounted = walk.someUncounted || !walk.trace.countOriented;
        takeHitsBehind(walk.recorder, walk.trace);
    }
}

} // namespace

TraceWalk startWalk(const CoverageOptions& options, TraceEvents& events, const HitRecorder& recorder) {
    TraceWalk walk;
    walk.options = &options;
    walk.events = &events;
    walk.recorder = recorder;
    walk.trace = startOfTraces();
    return walk;
}

void readTraceFile(TraceWalk& walk, const std::string& fileName) {
    const SkippedParts skippedParts =
        walk.recorder.keptHits != nullptr ? SkippedParts::Read : SkippedParts::Ignored;
    openTrace(walk.trace, fileName);
    if (!walk.testOpen) {
        takesTest(walk, walk.trace.defaultTest);
    }
    while (const std::optional<LineKind> kind = nextTraceLine(walk.trace, skippedParts)) {
        switch (*kind) {
        case LineKind::NT: handleTestLine(walk); break;
        case LineKind::DT: handleDateLine(walk); break;
        case LineKind::CO: handleCountLine(walk); break;
        case LineKind::FT: handleFilePart(walk); break;
        default: takeHits(walk.recorder, walk.trace, *kind); break;
        }
    }
}

void endWalk(TraceWalk& walk) {
    walk.events->testLinesEnd();
    endTest(walk);
    walk.events->testsEnd();
    endPeriod(walk);
}

} // namespace veldacov
