#pragma once

// Hits kept for the cleaned trace (-CLEAN): by part and hit keyword, every identifier that was hit since the last
// write. A run without -CLEAN keeps none.
//
// Of a described part each item is kept once. That it is kept stands in the bit seen::kept of its note in SeenHits,
// which the loop over hit lines looks at anyway; the identifiers stand here as well, so that a write need not look at
// items that nobody has hit. Of a part that nothing describes (a placeholder) each identifier has its count.

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

#include "description/hit_counting.h"
#include "description/model.h"
#include "report/tio.h"
#include "support/hash.h"

namespace veldacov {

// Of one hit keyword.
struct BranchHitTable {
    std::vector<std::uint32_t> idsKept; // of a described part, in the order of their first hits
    std::unique_ptr<NumberMap<std::uint32_t, std::uint32_t>> counts; // of a placeholder; none without a hit
};
struct KeptPart {
    FileDescription* description = nullptr;
    std::array<BranchHitTable, itemKinds.size()> branchHitTables; // by kind
    bool hasHits = false; // some table has had one since the last write
};
struct KeptHits {
    std::deque<KeptPart> byPlace;         // by the place of the description; grows with them
    std::vector<KeptPart*> partsWithHits; // each once
};

// Where the hits of a part are kept; valid as long as `kept`.
KeptPart& keptPart(KeptHits& kept, FileDescription& part);
// Keeps a hit of a part. An identifier that a described part cannot have is an internal error, whose message has this
// operation's name: it stays, whatever the style of the others.
void AddTioBranch(KeptHits& kept, KeptPart& part, Hit hit);

// Adds a description without items to the model, to keep the hits of a part that nothing describes. `countOriented`:
// its hits carry counts, which are added up.
FileDescription* addPlaceholder(const PartKey& part, bool countOriented, bool otherChecksumSeen);

// Calls visit(id, count) for the hits kept of a part and kind, in ascending order; items of described parts have the
// count 1.
template <typename Visit>
void forEachKeptHit(KeptPart& kept, ItemKind kind, Visit visit);

// Lets go of everything that is kept.
void forgetKeptHits(KeptHits& kept);

namespace detail {
// In ascending order.
std::vector<std::pair<std::uint32_t, std::uint32_t>> sortedCounts(const BranchHitTable& table);
std::vector<std::uint32_t>& sortedIds(BranchHitTable& table);
} // namespace detail

template <typename Visit>
void forEachKeptHit(KeptPart& kept, ItemKind kind, Visit visit) {
    constexpr std::size_t worthSorting = 16; // looking at all items beats sorting unless few are kept
    BranchHitTable& table = kept.branchHitTables[kindIndex(kind)];
    if (kept.description->placeholder) {
        for (const auto& [id, count] : detail::sortedCounts(table)) {
            visit(id, count);
        }
        return;
    }
    const auto seen = kept.description->seenHits[kindIndex(kind)].bits;
    if (table.idsKept.size() * worthSorting < seen.size()) {
        for (const std::uint32_t id : detail::sortedIds(table)) {
            visit(id, std::uint32_t{1});
        }
        return;
    }
    for (std::uint32_t id = 0; id < seen.size(); ++id) {
        if ((seen[id] & seen::kept) != 0) {
            visit(id, std::uint32_t{1});
        }
    }
}

} // namespace veldacov
