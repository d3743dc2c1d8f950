#include "report/kept_hits.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "description/hit_counting.h"
#include "support/machine.h"

namespace veldacov {

namespace {

std::uint32_t describedItems(const FileDescription& description, ItemKind kind) {
    switch (kind) {
    case ItemKind::Procedure: return description.procedureBranchCount;
    case ItemKind::Call: return description.callCount;
    case ItemKind::Block: return description.blockCount;
    case ItemKind::Condition: return description.conditionCount;
    }
    // No hit keyword has another kind; the refusal stays for a keyword that is added and forgotten here.
    internalError(translate("Internal Error", "Bad bigramme in AddTioBranch()"));
}

void keepDescribedHit(BranchHitTable& table, FileDescription& description, Hit hit) {
    if (hit.id >= describedItems(description, hit.kind)) {
        internalError(translate("Internal Error", "Ident is too big in AddTioBranch"));
    }
    std::uint8_t& bits = seenHits(description, hit.kind, Counting::Replace).bits[hit.id];
    if ((bits & seen::kept) == 0) {
        bits |= seen::kept;
        table.idsKept.push_back(hit.id);
    }
}

void keepPlaceholderHit(BranchHitTable& table, const FileDescription& placeholder, Hit hit) {
    if (table.counts == nullptr) {
        table.counts = std::make_unique<NumberMap<std::uint32_t, std::uint32_t>>();
    }
    std::uint32_t& entry = (*table.counts)[hit.id];
    entry = placeholder.countOriented ? entry + hit.count : 1; // the sum wraps at 2^32
}

void forgetPart(KeptPart& kept) {
    kept.hasHits = false;
    for (const ItemKind kind : itemKinds) {
        BranchHitTable& table = kept.branchHitTables[kindIndex(kind)];
        for (const std::uint32_t id : table.idsKept) {
            kept.description->seenHits[kindIndex(kind)].bits[id] &= static_cast<std::uint8_t>(~seen::kept);
        }
        table.idsKept.clear();
        table.counts.reset();
    }
}

} // namespace

KeptPart& keptPart(KeptHits& kept, FileDescription& part) {
    if (part.place >= kept.byPlace.size()) {
        kept.byPlace.resize(loadedDescriptions().size());
    }
    kept.byPlace[part.place].description = &part;
    return kept.byPlace[part.place];
}

void AddTioBranch(KeptHits& kept, KeptPart& part, Hit hit) {
    if (!part.hasHits) {
        part.hasHits = true;
        kept.partsWithHits.push_back(&part);
    }
    BranchHitTable& table = part.branchHitTables[kindIndex(hit.kind)];
    if (part.description->placeholder) {
        keepPlaceholderHit(table, *part.description, hit);
    } else {
        keepDescribedHit(table, *part.description, hit);
    }
}

FileDescription* addPlaceholder(const PartKey& part, bool countOriented, bool otherChecksumSeen) {
    auto placeholder = std::make_unique<FileDescription>();
    placeholder->placeholder = true;
    placeholder->fileKey = part.fileKey;
    placeholder->checksum = part.checksum;
    placeholder->countOriented = countOriented;
    placeholder->otherChecksumSeen = otherChecksumSeen;
    FileDescription* added = placeholder.get();
    addDescription(std::move(placeholder));
    return added;
}

void forgetKeptHits(KeptHits& kept) {
    for (KeptPart* part : kept.partsWithHits) {
        forgetPart(*part);
    }
    kept.partsWithHits.clear();
    settleCounts(); // items whose counts are put aside are to be kept anew, too
}

namespace detail {

std::vector<std::pair<std::uint32_t, std::uint32_t>> sortedCounts(const BranchHitTable& table) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> hits;
    if (table.counts != nullptr) {
        std::copy_if(table.counts->begin(), table.counts->end(), std::back_inserter(hits),
                     [](const auto& hit) { return hit.second > 0; });
    }
    std::sort(hits.begin(), hits.end());
    return hits;
}

std::vector<std::uint32_t>& sortedIds(BranchHitTable& table) {
    std::sort(table.idsKept.begin(), table.idsKept.end());
    return table.idsKept;
}

} // namespace detail

} // namespace veldacov
