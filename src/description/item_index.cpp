#include "description/item_index.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace veldacov {

namespace {

// The place of the service of the item found last, in whichever file that was.
std::uint32_t currentService = 0;

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
    const auto found = std::partition_point(
        items.begin(), items.end(), [](const CoverageItem* item) { return item->service < currentService; });
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

} // namespace

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
        currentService = item->service;
    }
    return item;
}

void forgetCurrentService() {
    currentService = 0;
}

} // namespace veldacov
