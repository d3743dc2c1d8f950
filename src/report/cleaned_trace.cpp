#include "report/cleaned_trace.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "report/output_files.h"
#include "support/machine.h"

namespace veldacov {

namespace {

using KeptHit = std::pair<std::uint32_t, std::uint32_t>; // identifier, count

std::uint32_t describedItems(const FileDescription& description, ItemKind kind) {
    switch (kind) {
    case ItemKind::Procedure: return description.procedureBranchCount;
    case ItemKind::Call: return description.callCount;
    case ItemKind::Block: return description.blockCount;
    case ItemKind::Condition: return description.conditionCount;
    }
    internalError(translate("Internal Error", "Bad bigramme in AddTioBranch()"));
}

void keepDescribedHit(FileDescription& description, Hit hit) {
    BranchHitTable& table = description.branchHitTables[kindIndex(hit.kind)];
    if (hit.id >= table.isKept.size()) {
        const std::uint32_t size = describedItems(description, hit.kind);
        if (hit.id >= size) {
            internalError(translate("Internal Error", "Ident is too big in AddTioBranch"));
        }
        table.isKept.resize(size);
    }
    if (table.isKept[hit.id] == 0) {
        table.isKept[hit.id] = 1;
        table.idsKept.push_back(hit.id);
    }
}

void keepPlaceholderHit(FileDescription& placeholder, Hit hit) {
    std::uint32_t& entry = placeholder.branchHitTables[kindIndex(hit.kind)].counts[hit.id];
    entry = placeholder.countOriented ? entry + hit.count : 1; // the sum wraps at 2^32
}

// The name between quotes, so that the trace reader gets it back.
std::string quoted(std::string_view name) {
    std::string text = "\"";
    for (const char character : name) {
        if (character == '\\' || character == '"') {
            text += '\\';
        }
        text += character;
    }
    return text += '"';
}

std::string testLine(const TraceSession& session) {
    if (session.options->mergeTests) {
        return "NT " + quoted(toLocal(translate("Merged test", "Merged test",
                                                "The test name to display for a set of merged tests")));
    }
    const NameEntry* test = session.trace.currentTest;
    return test != nullptr ? "NT " + quoted(test->text) : "NT";
}

std::vector<KeptHit> keptHits(const BranchHitTable& table) {
    std::vector<KeptHit> hits;
    for (const std::uint32_t id : table.idsKept) {
        hits.emplace_back(id, 1);
    }
    for (const auto& [id, count] : table.counts) {
        if (count > 0) {
            hits.emplace_back(id, count);
        }
    }
    std::sort(hits.begin(), hits.end());
    return hits;
}

void writeHits(TraceSession& session, ItemKind kind, const BranchHitTable& table) {
    for (const auto& [id, count] : keptHits(table)) {
        session.cleanStream.put(keywordOf(kind));
        session.cleanStream.put(' ');
        session.cleanStream.put(hexText(id).view());
        if (session.trace.countOriented) {
            session.cleanStream.put(' ');
            session.cleanStream.put(hexText(count).view());
        }
        session.cleanStream.put('\n');
    }
}

void writePart(TraceSession& session, const FileDescription& description) {
    putLine(session.cleanStream, "FT ", hexText(description.fileKey).view());
    putLine(session.cleanStream, "DC ", hexText(description.checksum).view());
    for (const ItemKind kind : itemKinds) {
        writeHits(session, kind, description.branchHitTables[kindIndex(kind)]);
    }
}

void forgetHits(FileDescription& part) {
    part.keepsHits = false;
    for (BranchHitTable& table : part.branchHitTables) {
        for (const std::uint32_t id : table.idsKept) {
            table.isKept[id] = 0;
        }
        table.idsKept.clear();
        table.counts.clear();
    }
}

void openCleanedTrace(TraceSession& session) {
    session.cleanStream = createOutput(
        *session.options, *session.options->cleanFile,
        translate("Fatal Error", "Cannot write to file %1", "%1 is the name of the cleaned tio file"));
}

} // namespace

void AddTioBranch(TraceSession& session, Hit hit) {
    FileDescription& part = *session.trace.currentPart;
    if (!part.keepsHits) {
        part.keepsHits = true;
        session.keptParts.push_back(&part);
    }
    if (part.placeholder) {
        keepPlaceholderHit(part, hit);
    } else {
        keepDescribedHit(part, hit);
    }
}

void writeCleanedTrace(TraceSession& session) {
    if (!session.cleanStream.isOpen()) {
        openCleanedTrace(session);
    }
    putLine(session.cleanStream, testLine(session));
    if (session.options->mergeTests) {
        session.trace.testDate = internName(dateText(presentTime()));
    }
    if (session.trace.testDate != nullptr) {
        putLine(session.cleanStream, "DT \"", session.trace.testDate->text, "\"");
    } else {
        putLine(session.cleanStream, "DT");
    }
    if (session.trace.countOriented) {
        putLine(session.cleanStream, "CO");
    }
    std::sort(
        session.keptParts.begin(), session.keptParts.end(),
        [](const FileDescription* left, const FileDescription* right) { return left->place < right->place; });
    for (FileDescription* part : session.keptParts) {
        if (!part->otherChecksumSeen) {
            writePart(session, *part);
        }
        forgetHits(*part);
    }
    session.keptParts.clear();
    settleHits(); // the next write keeps them anew
}

} // namespace veldacov
