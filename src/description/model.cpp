#include "description/model.h"

#include <unordered_set>
#include <utility>

#include "description/hit_counting.h"
#include "description/item_index.h"

namespace veldacov {

namespace {

struct ModelState {
    Arena records; // what follows lies in it, or looks into it
    DescriptionList descriptions;
    std::unordered_set<std::uint32_t, NumberHash> keys;
    NumberMap<std::uint64_t, FileDescription*> byKeyAndChecksum; // the first of each
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
    forgetHits();
    forgetCurrentService();
}

FoundDescription findDescription(std::uint32_t fileKey, std::uint32_t checksum) {
    forgetCurrentService();
    const auto match = model().byKeyAndChecksum.find(keyWithChecksum(fileKey, checksum));
    if (match == model().byKeyAndChecksum.end()) {
        return {nullptr, model().keys.contains(fileKey)};
    }
    return {match->second, match->second->keySeenBefore};
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

} // namespace veldacov
