#include "report/cleaned_trace.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "support/machine.h"
#include "support/run_files.h"

namespace veldacov {

namespace {

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
    if (hit.id >= describedItems(description, hit.kind)) {
        internalError(translate("Internal Error", "Ident is too big in AddTioBranch"));
    }
    std::uint8_t& bits = seenHits(description, hit.kind, Counting::Replace).plain[hit.id];
    if ((bits & seen::kept) == 0) {
        bits |= seen::kept;
        description.branchHitTables[kindIndex(hit.kind)].idsKept.push_back(hit.id);
    }
}

void keepPlaceholderHit(FileDescription& placeholder, Hit hit) {
    BranchHitTable& table = placeholder.branchHitTables[kindIndex(hit.kind)];
    if (table.counts == nullptr) {
        table.counts = std::make_unique<std::unordered_map<std::uint32_t, std::uint32_t>>();
    }
    std::uint32_t& entry = (*table.counts)[hit.id];
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

// Calls visit(id) for the items kept of a described file, in ascending order.
template <typename Visit>
void forEachKept(FileDescription& description, ItemKind kind, Visit visit) {
    constexpr std::size_t worthSorting = 16; // looking at all items beats sorting unless few are kept
    std::vector<std::uint32_t>& ids = description.branchHitTables[kindIndex(kind)].idsKept;
    const std::span<const std::uint8_t> seen = description.seenHits[kindIndex(kind)].plain;
    if (ids.size() * worthSorting < seen.size()) {
        std::sort(ids.begin(), ids.end());
        std::for_each(ids.begin(), ids.end(), visit);
        return;
    }
    for (std::uint32_t id = 0; id < seen.size(); ++id) {
        if ((seen[id] & seen::kept) != 0) {
            visit(id);
        }
    }
}

// Calls visit(id, count) for the items kept of a placeholder, in ascending order.
template <typename Visit>
void forEachCounted(const BranchHitTable& table, Visit visit) {
    if (table.counts == nullptr) {
        return;
    }
    std::vector<std::pair<std::uint32_t, std::uint32_t>> hits(table.counts->begin(), table.counts->end());
    std::sort(hits.begin(), hits.end());
    for (const auto& [id, count] : hits) {
        if (count > 0) {
            visit(id, count);
        }
    }
}

void writeHit(TraceSession& session, ItemKind kind, std::uint32_t id, std::uint32_t count) {
    constexpr std::size_t longest = 2 + 1 + 8 + 1 + 8 + 1;
    std::array<char, longest> line{};
    const std::string_view keyword = keywordOf(kind);
    char* at = std::copy(keyword.begin(), keyword.end(), line.data());
    *at++ = ' ';
    at = putHex(at, id);
    if (session.trace.countOriented) {
        *at++ = ' ';
        at = putHex(at, count);
    }
    *at++ = '\n';
    session.cleanStream.put({line.data(), static_cast<std::size_t>(at - line.data())});
}

void writePart(TraceSession& session, FileDescription& description) {
    putLine(session.cleanStream, "FT ", hexText(description.fileKey).view());
    putLine(session.cleanStream, "DC ", hexText(description.checksum).view());
    for (const ItemKind kind : itemKinds) {
        forEachKept(description, kind, [&](std::uint32_t id) { writeHit(session, kind, id, 1); });
        forEachCounted(description.branchHitTables[kindIndex(kind)],
                       [&](std::uint32_t id, std::uint32_t count) { writeHit(session, kind, id, count); });
    }
}

void forgetHits(FileDescription& part) {
    part.keepsHits = false;
    for (const ItemKind kind : itemKinds) {
        BranchHitTable& table = part.branchHitTables[kindIndex(kind)];
        for (const std::uint32_t id : table.idsKept) {
            part.seenHits[kindIndex(kind)].plain[id] &= static_cast<std::uint8_t>(~seen::kept);
        }
        table.idsKept.clear();
        table.counts.reset();
    }
}

void openCleanedTrace(TraceSession& session) {
    session.cleanStream =
        createOutput(*session.options->cleanFile, translate("Fatal Error", "Cannot write to file %1",
                                                            "%1 is the name of the cleaned tio file"));
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
    settleCounts(); // items seen with counts are to be kept anew, too
}

} // namespace veldacov
