#include "description/model.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "support/machine.h"

namespace veldacov {

namespace {

struct ModelState {
    DescriptionList descriptions;
    // The first description of each key, and of each key with checksum.
    std::unordered_map<std::uint32_t, FileDescription*> byKey;
    std::unordered_map<std::uint64_t, FileDescription*> byKeyAndChecksum;
    const Service* currentService = nullptr; // where the last item was found since the last findDescription
    std::vector<Service*> servicesHit;       // in the current test
    std::vector<HitRecord*> recordsHit;      // with test hits to reset
    std::vector<std::uint8_t*> marksSet;     // of plain hits, to reset
    std::vector<Service*> servicesWithFirstHits;
    ProvenConditions proven;
};

ModelState& model() {
    static ModelState state;
    return state;
}

std::uint64_t keyWithChecksum(std::uint32_t fileKey, std::uint32_t checksum) {
    return std::uint64_t{fileKey} << 32U | checksum;
}

// By the place of the type's bit. An entry counts as a procedure branch, and beside it as a service entered.
constexpr std::size_t noCounter = 10;
constexpr std::array<std::size_t, 12> countersByTypeBit = {counter::procedureBranches,
                                                           counter::procedureBranches,
                                                           counter::calls,
                                                           counter::simpleBlocks,
                                                           noCounter,
                                                           counter::implicitBlocks,
                                                           counter::logicalBlocks,
                                                           counter::atcBlocks,
                                                           counter::basicConditions,
                                                           counter::modifiedConditions,
                                                           counter::compoundConditions,
                                                           noCounter};

void countCovered(CoverageCounters& covered, std::uint16_t coverageType) {
    if (coverageType == type::procedures) {
        covered[counter::services] = 1;
    }
    if (const std::optional<std::size_t> place = counterOfType(coverageType)) {
        ++covered[*place];
    }
}

std::uint32_t saturatingSum(std::uint32_t hits, std::uint32_t count) {
    return count < mostHits && hits < mostHits - count ? hits + count : mostHits;
}

// Calls visit(id, place) for every item of a kind in a service, in search order.
template <typename Visit>
void forEachItemOfKind(Service& service, ItemKind kind, Visit visit) {
    const auto visitList = [&](auto& entries, auto typeOf) {
        for (std::uint32_t position = 0; position < entries.size(); ++position) {
            visit(entries[position].item.id, ItemPlace{&service, position, typeOf(entries[position])});
        }
    };
    switch (kind) {
    case ItemKind::Procedure:
        if (service.entry) {
            visit(service.entry->id, ItemPlace{&service, 0, type::procedures});
        }
        visitList(service.exits, [](const ExitEntry&) { return type::exits; });
        break;
    case ItemKind::Call: visitList(service.calls, [](const CallEntry&) { return type::calls; }); break;
    case ItemKind::Block:
        visitList(service.blocks, [](const BlockEntry& block) { return typeOfBlock(block.kind); });
        break;
    case ItemKind::Condition:
        visitList(service.conditions, [](const ConditionEntry& condition) {
            return condition.kind == ConditionKind::Case ? type::compoundConditions : type::basicConditions;
        });
        break;
    }
}

void addToIndex(ItemIndex& index, std::uint32_t id, const ItemPlace& place) {
    ItemPlace& known = id < index.dense.size() ? index.dense[id] : index.sparse[id];
    if (known.service == nullptr) {
        known = place;
        return;
    }
    std::vector<ItemPlace>& places = index.repeated[id];
    if (places.empty()) {
        places.push_back(known);
    }
    if (places.back().service != place.service) { // the first of a service wins
        places.push_back(place);
    }
}

const ItemPlace* placeIn(const ItemIndex& index, std::uint32_t id) {
    if (!index.repeated.empty()) {
        if (const auto repeated = index.repeated.find(id); repeated != index.repeated.end()) {
            const std::vector<ItemPlace>& places = repeated->second;
            const Service* current = model().currentService;
            const std::uint32_t from = current != nullptr ? current->place : 0;
            const auto found = std::find_if(places.begin(), places.end(), [from](const ItemPlace& place) {
                return place.service->place >= from;
            });
            return found != places.end() ? &*found : &places.front();
        }
    }
    if (id < index.dense.size()) {
        return index.dense[id].service != nullptr ? &index.dense[id] : nullptr;
    }
    const auto known = index.sparse.find(id);
    return known != index.sparse.end() ? &known->second : nullptr;
}

void markHit(ItemIndex& index, std::uint32_t id, bool plainly) {
    if (id >= index.plainlyHit.size()) {
        return;
    }
    std::uint8_t& mark = index.plainlyHit[id];
    if (plainly && mark == 0) {
        model().marksSet.push_back(&mark);
    }
    mark = plainly ? 1 : 0;
}

void indexItemsOfKind(FileDescription& description, ItemKind kind) {
    // Identifiers up to a small multiple of the number of items index an array.
    constexpr std::size_t slack = 4;
    std::size_t count = 0;
    std::uint32_t largest = 0;
    for (Service& service : description.services) {
        forEachItemOfKind(service, kind, [&](std::uint32_t id, const ItemPlace&) {
            ++count;
            largest = std::max(largest, id);
        });
    }
    if (count == 0) {
        return;
    }
    ItemIndex& index = description.itemIndexes[kindIndex(kind)];
    index.dense.resize(std::min<std::size_t>(largest, slack * count) + 1);
    for (Service& service : description.services) {
        forEachItemOfKind(service, kind,
                          [&](std::uint32_t id, const ItemPlace& place) { addToIndex(index, id, place); });
    }
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
    model().byKey.try_emplace(added->fileKey, added);
    model().byKeyAndChecksum.try_emplace(keyWithChecksum(added->fileKey, added->checksum), added);
    model().descriptions.push_back(std::move(description));
}

void freeAllDescriptions() {
    model() = {};
}

FoundDescription findDescription(std::uint32_t fileKey, std::uint32_t checksum) {
    model().currentService = nullptr;
    const auto first = model().byKey.find(fileKey);
    if (first == model().byKey.end()) {
        return {};
    }
    const auto match = model().byKeyAndChecksum.find(keyWithChecksum(fileKey, checksum));
    FileDescription* found = match != model().byKeyAndChecksum.end() ? match->second : nullptr;
    return {found, first->second != found};
}

void indexItems(FileDescription& description) {
    for (const ItemKind kind : itemKinds) {
        indexItemsOfKind(description, kind);
    }
    const bool anyRepeated = std::any_of(description.itemIndexes.begin(), description.itemIndexes.end(),
                                         [](const ItemIndex& index) { return !index.repeated.empty(); });
    if (!anyRepeated) {
        for (ItemIndex& index : description.itemIndexes) {
            index.plainlyHit.resize(index.dense.size());
        }
    }
}

std::optional<ItemPlace> findItem(FileDescription& description, ItemKind kind, std::uint32_t id) {
    const ItemPlace* place = placeIn(description.itemIndexes[kindIndex(kind)], id);
    if (place == nullptr) {
        return std::nullopt;
    }
    model().currentService = place->service;
    return *place;
}

CoverageItem& itemAt(const ItemPlace& place, ItemKind kind) {
    Service& service = *place.service;
    switch (kind) {
    case ItemKind::Procedure:
        return place.type == type::procedures ? *service.entry : service.exits[place.position].item;
    case ItemKind::Call: return service.calls[place.position].item;
    case ItemKind::Block: return service.blocks[place.position].item;
    case ItemKind::Condition: break;
    }
    return service.conditions[place.position].item;
}

void recordHit(FileDescription& description, ItemKind kind, std::uint32_t id, std::uint32_t count,
               Counting counting) {
    const std::optional<ItemPlace> place = findItem(description, kind, id);
    if (!place) {
        fatalError(filled(translate("fdcL-Error",
                                    "Cannot find instrumentation ID for specified trace in FDC file %1",
                                    "%1 is a file name"),
                          {description.fdcName}));
    }
    countHit(*place->service, itemAt(*place, kind), place->type, count, counting);
    markHit(description.itemIndexes[kindIndex(kind)], id, count == 1 && counting == Counting::Replace);
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
        record.testHits = saturatingSum(record.testHits, count);
        record.globalHits = saturatingSum(record.globalHits, count);
    } else {
        record.testHits = count;
        record.globalHits = count;
    }
    if (firstInTest && record.testHits != 0) {
        model().recordsHit.push_back(&record);
    }
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
    for (HitRecord* record : model().recordsHit) {
        record->testHits = 0;
    }
    for (Service* service : model().servicesHit) {
        service->testCovered = {};
        service->touchedInTest = false;
    }
    for (std::uint8_t* mark : model().marksSet) {
        *mark = 0;
    }
    model().marksSet.clear();
    model().proven.countedInTest = 0;
    model().recordsHit.clear();
    model().servicesHit.clear();
}

std::optional<std::uint32_t> findCondition(const Service& service, std::uint32_t id) {
    if (!service.conditionsAscend) {
        const auto known = service.conditionPlaces.find(id);
        return known != service.conditionPlaces.end() ? std::optional(known->second) : std::nullopt;
    }
    const auto found = std::lower_bound(
        service.conditions.begin(), service.conditions.end(), id,
        [](const ConditionEntry& entry, std::uint32_t wanted) { return entry.item.id < wanted; });
    if (found == service.conditions.end() || found->item.id != id) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(found - service.conditions.begin());
}

void appendCondition(Service& service, const ConditionEntry& entry) {
    const bool ascends = service.conditions.empty() || service.conditions.back().item.id < entry.item.id;
    if (service.conditionsAscend && !ascends) {
        service.conditionsAscend = false;
        for (std::uint32_t place = 0; place < service.conditions.size(); ++place) {
            service.conditionPlaces.try_emplace(service.conditions[place].item.id, place);
        }
    }
    if (!service.conditionsAscend) {
        service.conditionPlaces.try_emplace(entry.item.id,
                                            static_cast<std::uint32_t>(service.conditions.size()));
    }
    service.conditions.push_back(entry);
}

std::string conditionText(const Service& service, std::uint32_t place) {
    const ConditionEntry& entry = service.conditions[place];
    if (entry.kind != ConditionKind::Case) {
        return std::string(entry.text);
    }
    const auto behind = std::upper_bound(
        service.compositions.begin(), service.compositions.end(), place,
        [](std::uint32_t wanted, const Composition& composition) { return wanted < composition.firstCase; });
    const Composition& composition = *std::prev(behind);
    return caseText(composition, place - composition.firstCase);
}

std::string_view outcomeText(const Service& service, std::uint32_t place) {
    const ConditionEntry& condition = service.conditions[place];
    if (condition.kind != ConditionKind::Outcome) {
        return "";
    }
    const bool sharesText = place + 1 < service.conditions.size() &&
                            service.conditions[place + 1].text.data() == condition.text.data();
    return sharesText ? "True" : "False";
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

std::optional<std::size_t> counterOfType(std::uint16_t coverageType) {
    const auto bit = static_cast<std::size_t>(std::countr_zero(coverageType));
    if (bit >= countersByTypeBit.size() || countersByTypeBit[bit] == noCounter) {
        return std::nullopt;
    }
    return countersByTypeBit[bit];
}

std::uint16_t typeOfBlock(BlockKind kind) {
    constexpr std::array types = {type::simpleBlocks, type::implicitBlocks, type::logicalBlocks,
                                  type::atcBlocks};
    return types[static_cast<std::size_t>(kind)];
}

} // namespace veldacov
