#pragma once

// How hits are counted: which counters there are, and the text of a hit.
//
// Three ways. Shared: items that are always hit together share a counter, and outcomes of conditions are computed from
// the cases of their decision. Own: every item has a counter of its own, to compare with. Ordered: every hit is a call.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "description.h"

namespace veldacc {

enum class Counting : std::uint8_t { Shared, Own, Ordered };

struct Counters {
    Counting way = Counting::Shared;
    std::uint32_t used = 0; // number of counters so far
    // Ordered: tables that take the path of a decision to its case, printed before the code.
    std::vector<std::vector<std::uint32_t>> caseMaps;
};

// Where hits of one function go.
struct HitTarget {
    Counters& counters;
    Section& section;
    std::uint32_t sectionIndex = 0;
};

// An expression (comma-separated, no semicolon) that hits the items; empty when none of them is described.
std::string hitText(HitTarget& target, std::span<const ItemRef> items);
// The same, and the counter when all of them share one.
struct CountedHit {
    std::string text;
    bool isShared = false;
    std::uint32_t counter = 0;
};
CountedHit countHits(HitTarget& target, std::span<const ItemRef> items);

// Says that items are hit as often as the sum of these counters.
void giveFormula(HitTarget& target, std::span<const ItemRef> items, std::span<const std::uint32_t> counters);

// Counters for consecutive items, one each: the number of the first.
std::uint32_t reserveCounters(HitTarget& target, std::uint32_t count);

// An expression that hits one of the items `first`, first + 1, ...: the one that the C expression `index` says.
// `counter` is what reserveCounters gave for them.
std::string indexedHitText(HitTarget& target, ItemRef first, std::uint32_t counter, const std::string& index);
// The same for the cases of a decision by the number of their path.
std::string pathHitText(HitTarget& target, ItemRef first, std::uint32_t counter, const std::string& path,
                        const std::vector<std::uint32_t>& caseOfPath);

} // namespace veldacc
