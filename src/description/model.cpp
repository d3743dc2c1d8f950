#include "description/model.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "support/machine.h"

namespace veldacov {

namespace {

// Counts put aside for an item.
struct CountedSeen {
    std::uint32_t* aside = nullptr; // 1 + their sum
    HitRecord* record = nullptr;
};

struct ModelState {
    Arena records; // what follows lies in it, or looks into it
    DescriptionList descriptions;
    std::unordered_set<std::uint32_t, NumberHash> keys;
    NumberMap<std::uint64_t, FileDescription*> byKeyAndChecksum; // the first of each
    std::uint32_t currentService = 0;  // place of that of the item last found since the last findDescription
    std::vector<Service*> servicesHit; // in the current test
    std::vector<TestHit> hitsOfTest;
    std::vector<std::uint8_t*> plainSeen; // bits of items with plain hits
    std::vector<CountedSeen> countedSeen;
    std::vector<Service*> servicesWithFirstHits;
    ProvenConditions proven;
};

std::unique_ptr<ModelState>& modelOwner() {
    static auto owner = std::make_unique<ModelState>();
    return owner;
}

ModelState& model() {
    return *modelOwner();
}

std::uint64_t keyWithChecksum(std::uint32_t fileKey, std::uint32_t checksum) {
    return std::uint64_t{fileKey} << 32U | checksum;
}

void countCovered(CoverageCounters& covered, std::uint16_t coverageType) {
    if (coverageType == type::procedures) {
        covered[counter::services] = 1;
    }
    if (const std::optional<std::size_t> place = counterOfType(coverageType)) {
        ++covered[*place];
    }
}

// Calls visit(item) for every item of a kind, in search order.
template <typename Visit>
void forEachItemOfKind(FileDescription& description, ItemKind kind, Visit visit) {
    switch (kind) {
    case ItemKind::Procedure:
        for (Service& service : description.services) {
            if (service.entry) {
                visit(*service.entry);
            }
            std::for_each(service.exits.begin(), service.exits.end(), visit);
        }
        break;
    case ItemKind::Call: std::for_each(description.calls.begin(), description.calls.end(), visit); break;
    case ItemKind::Block: std::for_each(description.blocks.begin(), description.blocks.end(), visit); break;
    case ItemKind::Condition:
        for (Service& service : description.services) {
            std::for_each(service.conditions.begin(), service.conditions.end(), visit);
        }
        break;
    }
}

ItemIndex::RareItems& rareItems(ItemIndex& index) {
    if (index.rare == nullptr) {
        index.rare = std::make_unique<ItemIndex::RareItems>();
    }
    return *index.rare;
}

void addToIndex(ItemIndex& index, CoverageItem& item) {
    CoverageItem*& known =
        item.id < index.dense.size() ? index.dense[item.id] : rareItems(index).sparse[item.id];
    if (known == nullptr) {
        known = &item;
        return;
    }
    std::vector<CoverageItem*>& items = rareItems(index).repeated[item.id];
    if (items.empty()) {
        items.push_back(known);
    }
    if (items.back()->service != item.service) { // the first of a service wins
        items.push_back(&item);
    }
}

// The item of an identifier that occurs several times: that of the first service from the current one on.
CoverageItem* nextOf(const std::vector<CoverageItem*>& items) {
    const auto found = std::partition_point(items.begin(), items.end(), [](const CoverageItem* item) {
        return item->service < model().currentService;
    });
    return found != items.end() ? *found : items.front();
}

CoverageItem* itemIn(const ItemIndex& index, std::uint32_t id) {
    if (index.rare != nullptr) {
        if (const auto repeated = index.rare->repeated.find(id); repeated != index.rare->repeated.end()) {
            return nextOf(repeated->second);
        }
        if (const auto known = index.rare->sparse.find(id); known != index.rare->sparse.end()) {
            return known->second;
        }
    }
    return id < index.dense.size() ? index.dense[id] : nullptr;
}

template <typename Number>
void makeRoom(std::span<Number>& numbers, std::size_t size) {
    auto* first = static_cast<Number*>(recordMemory().allocate(size * sizeof(Number), alignof(Number)));
    numbers = {first, std::uninitialized_fill_n(first, size, Number{0})};
}

// Notes that the test has hit an item, for the next hits of the same counting.
void noteHit(SeenHits& seen, CoverageItem& item, std::uint32_t count, Counting counting) {
    if (counting == Counting::Accumulate) {
        if (item.id < seen.counted.size() && seen.counted[item.id] == 0 && item.testHits != 0) {
            seen.counted[item.id] = 1;
            model().countedSeen.push_back({&seen.counted[item.id], &item});
        }
    } else if (count == 1 && item.id < seen.plain.size() && (seen.plain[item.id] & seen::plainHit) == 0) {
        seen.plain[item.id] |= seen::plainHit;
        model().plainSeen.push_back(&seen.plain[item.id]);
    }
}

void forgetPlainHits() {
    for (std::uint8_t* bits : model().plainSeen) {
        *bits &= static_cast<std::uint8_t>(~seen::plainHit);
    }
    model().plainSeen.clear();
}

void addHits(HitRecord& record, std::uint32_t count) {
    record.testHits = saturatingSum(record.testHits, count);
    record.globalHits = saturatingSum(record.globalHits, count);
}

void indexItemsOfKind(FileDescription& description, ItemKind kind) {
    // Identifiers up to a small multiple of the number of items index an array.
    constexpr std::size_t slack = 4;
    std::size_t count = 0;
    std::uint32_t largest = 0;
    forEachItemOfKind(description, kind, [&](const CoverageItem& item) {
        ++count;
        largest = std::max(largest, item.id);
    });
    if (count == 0) {
        return;
    }
    ItemIndex& index = description.itemIndexes[kindIndex(kind)];
    index.dense.resize(std::max(count, std::min<std::size_t>(largest, slack * count) + 1));
    forEachItemOfKind(description, kind, [&](CoverageItem& item) { addToIndex(index, item); });
}

// The vector of a case of a table ends early where the table does.
std::string tableVector(const Composition& composition, std::uint32_t caseNumber) {
    const auto width = static_cast<std::size_t>(composition.basicConditionCount);
    const std::size_t start = std::size_t{caseNumber} * width;
    return start < composition.cases.size() ? std::string(composition.cases.substr(start, width))
                                            : std::string();
}

std::string expressionVector(const Composition& composition, std::uint32_t caseNumber) {
    std::string vector;
    for (int bit = 0; bit < composition.basicConditionCount; ++bit) {
        const bool value = bit < 32 && (caseNumber >> static_cast<unsigned>(bit) & 1U) != 0;
        vector += value ? 'T' : 'F';
    }
    return vector;
}

std::string caseText(const Composition& composition, std::uint32_t caseNumber) {
    if (composition.frontier == expressionFrontier) {
        const bool outcome = (composition.outcomes[caseNumber / 64] >> (caseNumber % 64) & 1U) != 0;
        return expressionVector(composition, caseNumber) + (outcome ? "=T" : "=F");
    }
    std::string text = tableVector(composition, caseNumber);
    if (text.size() == static_cast<std::size_t>(composition.basicConditionCount)) {
        text += caseNumber < composition.frontier ? "=T" : "=F";
    }
    return text; // a table that is too short ends the text where its characters end
}

} // namespace

void sumCounters(CoverageCounters& into, const CoverageCounters& from) {
    for (std::size_t i = 0; i < into.size(); ++i) {
        into[i] += from[i];
    }
}

Arena& recordMemory() {
    return model().records;
}

DescriptionList& loadedDescriptions() {
    return model().descriptions;
}

std::uint16_t typesOfAllDescriptions() {
    std::uint16_t types = 0;
    for (const auto& description : model().descriptions) {
        types |= description->coverageTypes;
    }
    return types;
}

void addDescription(std::unique_ptr<FileDescription> description) {
    FileDescription* added = description.get();
    added->place = static_cast<std::uint32_t>(model().descriptions.size());
    added->keySeenBefore = !model().keys.insert(added->fileKey).second;
    model().byKeyAndChecksum.try_emplace(keyWithChecksum(added->fileKey, added->checksum), added);
    for (Service& service : added->services) {
        service.file = added->place;
    }
    model().descriptions.push_back(std::move(description));
}

void freeAllDescriptions() {
    modelOwner() = std::make_unique<ModelState>();
}

FoundDescription findDescription(std::uint32_t fileKey, std::uint32_t checksum) {
    model().currentService = 0;
    const auto match = model().byKeyAndChecksum.find(keyWithChecksum(fileKey, checksum));
    if (match == model().byKeyAndChecksum.end()) {
        return {nullptr, model().keys.contains(fileKey)};
    }
    return {match->second, match->second->keySeenBefore};
}

void indexItems(FileDescription& description) {
    for (const ItemKind kind : itemKinds) {
        indexItemsOfKind(description, kind);
    }
    description.idsRepeat = std::any_of(
        description.itemIndexes.begin(), description.itemIndexes.end(),
        [](const ItemIndex& index) { return index.rare != nullptr && !index.rare->repeated.empty(); });
}

CoverageItem* findItem(FileDescription& description, ItemKind kind, std::uint32_t id) {
    CoverageItem* item = itemIn(description.itemIndexes[kindIndex(kind)], id);
    if (item != nullptr) {
        model().currentService = item->service;
    }
    return item;
}

std::uint16_t typeOfItem(const Service& service, ItemKind kind, const CoverageItem& item) {
    switch (kind) {
    case ItemKind::Procedure:
        return service.entry && &*service.entry == &item ? type::procedures : type::exits;
    case ItemKind::Call: return type::calls;
    case ItemKind::Block: return typeOfBlock(static_cast<const BlockEntry&>(item).kind);
    case ItemKind::Condition: break;
    }
    return typeOfCondition(static_cast<const ConditionEntry&>(item).kind);
}

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
        forgetPlainHits();
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
    forEachKnown([](CoverageItem* const* place) { __builtin_prefetch(place); });
    forEachKnown([](CoverageItem* const* place) { __builtin_prefetch(*place, 1); });
    forEachKnown([&](CoverageItem* const* place) {
        if (*place != nullptr) {
            const Service& service = description.services[(*place)->service];
            __builtin_prefetch(&service, 1);
            __builtin_prefetch(&service.testCovered, 1);
            __builtin_prefetch(&service.globalCovered.back(), 1);
        }
    });
}

SeenHits& seenHits(FileDescription& description, ItemKind kind, Counting counting) {
    SeenHits& seen = description.seenHits[kindIndex(kind)];
    if (counting == Counting::Accumulate && seen.counted.empty()) {
        makeRoom(seen.counted, description.itemIndexes[kindIndex(kind)].dense.size());
    } else if (counting == Counting::Replace && seen.plain.empty()) {
        makeRoom(seen.plain, description.itemIndexes[kindIndex(kind)].dense.size());
    }
    return seen;
}

void settleCounts() {
    for (const CountedSeen& seen : model().countedSeen) {
        addHits(*seen.record, *seen.aside - 1);
        *seen.aside = 0;
    }
    model().countedSeen.clear();
}

void countHit(Service& service, HitRecord& record, std::uint16_t coverageType, std::uint32_t count,
              Counting counting) {
    const bool firstInTest = record.testHits == 0;
    if (firstInTest) {
        countCovered(service.testCovered, coverageType);
        if (!service.touchedInTest) {
            service.touchedInTest = true;
            model().servicesHit.push_back(&service);
        }
    }
    if ((record.flags & everHit) == 0) {
        countCovered(service.globalCovered, coverageType);
        record.flags |= everHit;
        if (!service.hasFirstHits) {
            service.hasFirstHits = true;
            model().servicesWithFirstHits.push_back(&service);
        }
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
        TestHit& hit = model().hitsOfTest.emplace_back();
        hit.record = &record;
        hit.service = service.place;
        hit.file = service.file & 0xFFFFFFFU;
        hit.typeBit = static_cast<std::uint32_t>(std::countr_zero(coverageType)) & 0xFU;
    }
}

const std::vector<TestHit>& hitsOfTest() {
    return model().hitsOfTest;
}

const std::vector<Service*>& servicesHitInTest() {
    return model().servicesHit;
}

std::vector<Service*> takeServicesWithFirstHits() {
    std::vector<Service*> services = std::exchange(model().servicesWithFirstHits, {});
    for (Service* service : services) {
        service->hasFirstHits = false;
    }
    return services;
}

ProvenConditions& provenConditions() {
    return model().proven;
}

void resetTestCounts() {
    settleCounts();
    forgetPlainHits();
    for (const TestHit& hit : model().hitsOfTest) {
        hit.record->testHits = 0;
        hit.record->flags &= static_cast<std::uint8_t>(~hitInTest);
    }
    for (Service* service : model().servicesHit) {
        service->testCovered = {};
        service->touchedInTest = false;
    }
    model().proven.countedInTest = 0;
    model().hitsOfTest.clear();
    model().servicesHit.clear();
}

std::optional<std::uint32_t> findCondition(const Service& service, std::uint32_t id) {
    if (service.conditionPlaces != nullptr) {
        const auto known = service.conditionPlaces->find(id);
        return known != service.conditionPlaces->end() ? std::optional(known->second) : std::nullopt;
    }
    const auto found =
        std::lower_bound(service.conditions.begin(), service.conditions.end(), id,
                         [](const ConditionEntry& entry, std::uint32_t wanted) { return entry.id < wanted; });
    if (found == service.conditions.end() || found->id != id) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(found - service.conditions.begin());
}

void appendConditions(Service& service, std::span<const ConditionEntry> entries) {
    std::pmr::vector<ConditionEntry>& conditions = service.conditions;
    const auto doesNotAscend = [](const ConditionEntry& left, const ConditionEntry& right) {
        return left.id >= right.id;
    };
    auto unknown = static_cast<std::uint32_t>(conditions.size()); // to conditionPlaces
    const std::size_t checked = conditions.empty() ? 0 : conditions.size() - 1;
    conditions.insert(conditions.end(), entries.begin(), entries.end());
    if (service.conditionPlaces == nullptr) {
        const auto first = conditions.begin() + static_cast<std::ptrdiff_t>(checked);
        if (std::adjacent_find(first, conditions.end(), doesNotAscend) == conditions.end()) {
            return;
        }
        service.conditionPlaces = std::make_unique<NumberMap<std::uint32_t, std::uint32_t>>();
        unknown = 0;
    }
    for (; unknown < conditions.size(); ++unknown) {
        service.conditionPlaces->try_emplace(conditions[unknown].id, unknown);
    }
}

std::string conditionText(const Service& service, std::uint32_t place) {
    const ConditionEntry& entry = service.conditions[place];
    if (entry.kind != ConditionKind::Case) {
        return entry.text;
    }
    const auto behind = std::upper_bound(
        service.compositions.begin(), service.compositions.end(), place,
        [](std::uint32_t wanted, const Composition& composition) { return wanted < composition.firstCase; });
    const Composition& composition = *std::prev(behind);
    return caseText(composition, place - composition.firstCase);
}

std::string_view outcomeText(const Service& service, const ConditionEntry& condition) {
    if (condition.kind != ConditionKind::Outcome) {
        return "";
    }
    const bool isLast = &condition == &service.conditions.back();
    return !isLast && (&condition)[1].text == condition.text ? "True" : "False";
}

std::string pairsText(const Service& service, const Composition& composition, std::size_t place) {
    std::string text;
    for (const VectorPair& pair : composition.modifiedConditions[place].pairs) {
        if (text.empty()) {
            text.append("#").append(std::to_string(place + 1)).append(" (");
        } else {
            text += ", (";
        }
        text += conditionText(service, pair.first);
        text += '/';
        text += conditionText(service, pair.second);
        text += ')';
    }
    return text;
}

} // namespace veldacov
