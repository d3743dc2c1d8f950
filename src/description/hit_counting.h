#pragma once

// Hits into the model: the counts of items, what of each service was hit, and what the current test has to give back.
//
// Traces are long and programs repeat themselves: nearly all hits are of items that the current test has hit before.
// Of these it is known what they do, without a look at the item (docs/performance.md, "Where the time goes"). Notes of
// it stand in SeenHits, by kind and dense identifier, where the loop over hit lines reads them:
//
//   uncounted hits   another hit changes nothing   seen::uncountedHit is set in `bits`
//   counted hits     another hit adds its count    `aside` has 1 + the sum put aside
//
//   TE 4 3    recordHit: item 4 has 3, and aside[4] = 1
//   TE 4 5    aside[4] = 6; item 4 still has 3
//   TE 4 1    aside[4] = 7
//   ...       settleCounts: item 4 has 9, and aside[4] = 0
//
// What always holds:
// - Notes of one counting only are there. An uncounted hit replaces the count of an item, so counts put aside are
//   settled before one is recorded; a counted hit changes what an uncounted one would find, so notes of these are
//   forgotten before one is recorded. Either way the item's next hit of the other counting is recorded in full.
// - 0 in `aside` says that the hit is to be recorded: nothing is known. An item whose recorded hits are 0 gets no note,
//   because its next hit is its first one in the test again.
// - Counts put aside are settled before anybody reads the hits of an item (countsAreSettled is asserted there), and before
//   a test ends. What was covered is up to date all the time, as only first hits change it.
// - Nothing is noted where identifiers of a kind are repeated: there each hit moves the current service.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "description/model.h"

namespace veldacov {

// A hit, as a trace line tells it.
struct Hit {
    ItemKind kind = ItemKind::Procedure;
    std::uint32_t id = 0;
    std::uint32_t count = 1;
};

// Bits of SeenHits::bits.
namespace seen {
constexpr std::uint8_t uncountedHit =
    0x01;                           // hit in the test without a count; another such hit changes nothing
constexpr std::uint8_t kept = 0x02; // kept for the cleaned trace; owned by it
} // namespace seen

// Counts a hit on the item; a missing item is a fatal error. With `Accumulate` the count is added (saturating
// at mostHits), otherwise it replaces what was counted.
enum class Counting : bool { Replace, Accumulate };
void recordHit(FileDescription& description, ItemKind kind, std::uint32_t id, std::uint32_t count,
               Counting counting);
// Brings the records of items nearer before their hits are recorded one by one: with many of them at once, the waits
// for memory overlap. Identifiers of missing items are passed over.
void prefetchItems(const FileDescription& description, std::span<const Hit> hits);
void countHit(Service& service, HitRecord& record, std::uint16_t type, std::uint32_t count,
              Counting counting);
// Of a kind; the room for hits of the given counting is there. Valid as long as the description.
SeenHits& seenHits(FileDescription& description, ItemKind kind, Counting counting);
// Adds the counts that are put aside, and forgets that they were seen. Due before anything looks at the hits of items.
void settleCounts();
bool countsAreSettled();
constexpr std::uint32_t saturatingSum(std::uint32_t hits, std::uint32_t count) {
    return count < mostHits && hits < mostHits - count ? hits + count : mostHits;
}

// The services that were hit in the current test, each once, in the order of their first hits.
const std::vector<Service*>& servicesHitInTest();

// What was hit in the current test, each record once, in the order of the first hits. A run over all tests without
// resetTestCounts keeps one for each record hit: 16 bytes.
struct TestHit {
    HitRecord* record = nullptr;
    std::uint32_t service = 0;     // its place in the file
    std::uint32_t file : 28 = 0;   // place in loadedDescriptions
    std::uint32_t typeBit : 4 = 0; // which bit of a coverage-type mask its type is
};
static_assert(sizeof(TestHit) == 16);
const std::vector<TestHit>& hitsOfTest();
inline std::uint16_t typeOf(const TestHit& hit) {
    return static_cast<std::uint16_t>(1U << hit.typeBit);
}
inline Service& serviceOf(const TestHit& hit) {
    return loadedDescriptions()[hit.file]->services[hit.service];
}

// The conditions and cases that have been hit for the first time ever since the last call, of services with
// compositions, in the order of their hits. Nothing else can complete a pair.
struct FirstHit {
    Service* service = nullptr;
    std::uint32_t place = 0; // in the conditions of the service
};
std::vector<FirstHit> takeFirstHitsOfConditions();

// The modified conditions proven so far, with their services, and how many of them the current test has counted.
struct ProvenCondition {
    Service* service = nullptr;
    ModifiedCondition* condition = nullptr;
};
struct ProvenConditions {
    std::vector<ProvenCondition> all;
    std::size_t countedInTest = 0;
};
ProvenConditions& provenConditions();

// Zeroes what was counted for the current test. Costs what the test touched.
void resetTestCounts();
// Forgets all of the above, when the descriptions go.
void forgetHits();

} // namespace veldacov
