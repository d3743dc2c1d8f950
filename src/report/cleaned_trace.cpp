#include "report/cleaned_trace.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

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

void keepDescribedHit(FileDescription& description, const Hit& hit) {
    BranchHitTable& table = description.branchHitTables[kindIndex(hit.kind)];
    const std::uint32_t size = describedItems(description, hit.kind);
    if (hit.id >= size) {
        internalError(translate("Internal Error", "Ident is too big in AddTioBranch"));
    }
    table.exists = true;
    table.counts.resize(size);
    table.counts[hit.id] = 1;
}

void keepPlaceholderHit(FileDescription& placeholder, const Hit& hit) {
    BranchHitTable& table = placeholder.branchHitTables[kindIndex(hit.kind)];
    table.exists = true;
    std::uint32_t& entry = table.sparse[hit.id];
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
    for (std::uint32_t id = 0; id < table.counts.size(); ++id) {
        if (table.counts[id] > 0) {
            hits.emplace_back(id, table.counts[id]);
        }
    }
    for (const auto& [id, count] : table.sparse) {
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

bool hasHits(const FileDescription& description) {
    return std::any_of(description.branchHitTables.begin(), description.branchHitTables.end(),
                       [](const BranchHitTable& table) { return table.exists; });
}

void writePart(TraceSession& session, const FileDescription& description) {
    putLine(session.cleanStream, "FT ", hexText(description.fileKey).view());
    putLine(session.cleanStream, "DC ", hexText(description.checksum).view());
    for (const ItemKind kind : itemKinds) {
        writeHits(session, kind, description.branchHitTables[kindIndex(kind)]);
    }
}

void openCleanedTrace(TraceSession& session) {
    const std::string& name = *session.options->cleanFile;
    session.cleanStream = OutputFile(platform::createForWriting(name), name);
    if (!session.cleanStream.isOpen()) {
        fatalError(filled(
            translate("Fatal Error", "Cannot write to file %1", "%1 is the name of the cleaned tio file"),
            {name}));
    }
}

} // namespace

void AddTioBranch(FileDescription& part, const Hit& hit) {
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
    for (const auto& description : loadedDescriptions()) {
        if (!description->otherChecksumSeen && hasHits(*description)) {
            writePart(session, *description);
        }
        description->branchHitTables = {};
    }
}

} // namespace veldacov
