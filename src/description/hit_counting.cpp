#include "description/hit_counting.h"

#include <bit>
#include <cassert>
#include <memory>
#include <optional>
#include <utility>

#include "description/item_index.h"
#include "support/machine.h"

namespace veldacov {

namespace {

// Counts put aside for an item.
struct CountedSeen {
    std::uint32_t* aside = nullptr; // 1 + their sum
    HitRecord* record = nullptr;
};

// What the current test has touched, so that giving it back costs what the test hit; and first hits ever.
struct HitState {
    std::vector<Service*> servicesHit;
    std::vector<TestHit> hitsOfTest;
    std::vector<std::uint8_t*> uncountedSeen; // bits of items with uncounted hits
    std::vector<CountedSeen> countedSeen;
    std::vector<FirstHit> firstHitsOfConditions; // of services with compositions
    ProvenConditions proven;
};
HitState state;

void countCovered(CoverageCounters& covered, std::uint16_t coverageType) {
    if (coverageType == type::procedures) {
        covered[counter::services] = 1;
    }
    if (const std::optional<std::size_t> place = counterOfType(coverageType)) {
        ++covered[*place];
    }
}

template <typename Number>
void makeRoom(std::span<Number>& numbers, std::size_t size) {
    auto* first = static_cast<Number*>(recordMemory().allocate(size * sizeof(Number), alignof(Number)));
    numbers = {first, std::uninitialized_fill_n(first, size, Number{0})};
}

// Notes that the test has hit an item, for the next hits of the same counting.
void noteHit(SeenHits& seen, CoverageItem& item, std::uint32_t count, Counting counting) {
    assert(counting == Counting::Accumulate ? state.uncountedSeen.empty() : countsAreSettled());
    if (counting == Counting::Accumulate) {
        if (item.id < seen.aside.size() && seen.aside[item.id] == 0 && item.testHits != 0) {
            seen.aside[item.id] = 1;
            state.countedSeen.push_back({&seen.aside[item.id], &item});
        }
    } else if (count == 1 && item.id < seen.bits.size() && (seen.bits[item.id] & seen::uncountedHit) == 0) {
        seen.bits[item.id] |= seen::uncountedHit;
        state.uncountedSeen.push_back(&seen.bits[item.id]);
    }
}

void forgetUncountedHits() {
    for (std::uint8_t* bits : state.uncountedSeen) {
        *bits &= static_cast<std::uint8_t>(~seen::uncountedHit);
    }
    state.uncountedSeen.clear();
}

void noteFirstHit(Service& service, const HitRecord& record, std::uint16_t coverageType) {
    constexpr std::uint16_t conditions = type::basicConditions | type::compoundConditions;
    if ((coverageType & conditions) != 0 && !service.compositions.empty()) {
        const auto place = static_cast<const ConditionEntry*>(&record) - service.conditions.data();
        state.firstHitsOfConditions.push_back({&service, static_cast<std::uint32_t>(place)});
    }
}

void addHits(HitRecord& record, std::uint32_t count) {
    record.testHits = saturatingSum(record.testHits, count);
    record.globalHits = saturatingSum(record.globalHits, count);
}

} // namespace

void recordHit(FileDescription& description, ItemKind kind, std::uint32_t id, std::uint32_t count,
               Counting counting) {
    CoverageItem* item = findItem(description, kind, id);
    if (item == nullptr) {
        fatalError(filled(translate("fdcL-Error",
                                    "Cannot find instrumentation ID for specified trace in FDC file %1",
                                    "%1 is a file name"),
                          {description.fdcName}));
    }
    if (counting == Counting::Accumulate) {
        forgetUncountedHits();
    } else {
        settleCounts();
    }
    Service& service = description.services[item->service];
    countHit(service, *item, typeOfItem(service, kind, *item), count, counting);
    if (!description.idsRepeat) {
        noteHit(description.seenHits[kindIndex(kind)], *item, count, counting);
    }
}

void prefetchItems(const FileDescription& description, std::span<const Hit> hits) {
    const auto forEachKnown = [&](auto visit) {
        for (const Hit& hit : hits) {
            const auto& dense = description.itemIndexes[kindIndex(hit.kind)].dense;
            if (hit.id < dense.size()) {
                visit(&dense[hit.id]);
            }
        }
    };
    forEachKnown([](CoverageItem* const* slot) { __builtin_prefetch(slot); });
    forEachKnown([](CoverageItem* const* slot) { __builtin_prefetch(*slot, 1); });
    forEachKnown([&](CoverageItem* const* slot) {
        if (*slot != nullptr) {
            const Service& service = description.services[(*slot)->service];
            __builtin_prefetch(&service, 1);
            __builtin_prefetch(&service.testCovered, 1);
            __builtin_prefetch(&service.globalCovered.back(), 1);
        }
    });
}

SeenHits& seenHits(FileDescription& description, ItemKind kind, Counting counting) {
    SeenHits& seen = description.seenHits[kindIndex(kind)];
    if (counting == Counting::Accumulate && seen.aside.empty()) {
        makeRoom(seen.aside, description.itemIndexes[kindIndex(kind)].dense.size());
    } else if (counting == Counting::Replace && seen.bits.empty()) {
        makeRoom(seen.bits, description.itemIndexes[kindIndex(kind)].dense.size());
    }
    return seen;
}

bool countsAreSettled() {
    return state.countedSeen.empty();
}

void settleCounts() {
    for (const CountedSeen& seen : state.countedSeen) {
        addHits(*seen.record, *seen.aside - 1);
        *seen.aside = 0;
    }
    state.countedSeen.clear();
}

void countHit(Service& service, HitRecord& record, std::uint16_t coverageType, std::uint32_t count,
              Counting counting) {
    const bool firstInTest = record.testHits == 0;
    if (firstInTest) {
        countCovered(service.testCovered, coverageType);
        if (!service.touchedInTest) {
            service.touchedInTest = true;
            state.servicesHit.push_back(&service);
        }
    }
    if ((record.flags & everHit) == 0) {
        countCovered(service.globalCovered, coverageType);
        record.flags |= everHit;
        noteFirstHit(service, record, coverageType);
    }
    record.flags |= hitFlag;
    if (counting == Counting::Accumulate) {
        addHits(record, count);
    } else {
        record.testHits = count;
        record.globalHits = count;
    }
    if ((record.flags & hitInTest) == 0) {
        record.flags |= hitInTest;
        TestHit& hit = state.hitsOfTest.emplace_back();
        hit.record = &record;
        hit.service = service.place;
        hit.file = service.file & 0xFFFFFFFU;
        hit.typeBit = static_cast<std::uint32_t>(std::countr_zero(coverageType)) & 0xFU;
    }
}

const std::vector<TestHit>& hitsOfTest() {
    return state.hitsOfTest;
}

const std::vector<Service*>& servicesHitInTest() {
    return state.servicesHit;
}

std::vector<FirstHit> takeFirstHitsOfConditions() {
    return std::exchange(state.firstHitsOfConditions, {});
}

ProvenConditions& provenConditions() {
    return state.proven;
}

void resetTestCounts() {
    settleCounts();
    forgetUncountedHits();
    for (const TestHit& hit : state.hitsOfTest) {
        hit.record->testHits = 0;
        hit.record->flags &= static_cast<std::uint8_t>(~hitInTest);
    }
    for (Service* service : state.servicesHit) {
        service->testCovered = {};
        service->touchedInTest = false;
    }
    state.proven.countedInTest = 0;
    state.hitsOfTest.clear();
    state.servicesHit.clear();
}

void forgetHits() {
    state = {};
}

} // namespace veldacov
