#include "description/condition_list.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace veldacov {

namespace {

// For findCondition: takes note of the conditions from a place on.
void knowConditions(Service& service, std::size_t from) {
    const std::span<const ConditionEntry> conditions = service.conditions;
    if (service.conditionPlaces == nullptr) {
        const auto first = conditions.begin() + static_cast<std::ptrdiff_t>(from == 0 ? 0 : from - 1);
        const auto doesNotAscend = [](const ConditionEntry& left, const ConditionEntry& right) {
            return left.id >= right.id;
        };
        if (std::adjacent_find(first, conditions.end(), doesNotAscend) == conditions.end()) {
            return;
        }
        service.conditionPlaces = std::make_unique<NumberMap<std::uint32_t, std::uint32_t>>();
        from = 0;
    }
    for (std::size_t place = from; place < conditions.size(); ++place) {
        service.conditionPlaces->try_emplace(conditions[place].id, static_cast<std::uint32_t>(place));
    }
}

} // namespace

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
    const std::size_t known = service.conditions.size();
    reserveConditions(service, entries.size());
    service.grownConditions.insert(service.grownConditions.end(), entries.begin(), entries.end());
    service.conditions = service.grownConditions;
    knowConditions(service, known);
}

void reserveConditions(Service& service, std::size_t count) {
    GrowingConditions& grown = service.grownConditions;
    const std::size_t needed = service.conditions.size() + count;
    if (needed > grown.capacity()) {
        grown.reserve(std::max(needed, grown.capacity() + grown.capacity() / 2));
        if (grown.empty()) {
            grown.assign(service.conditions.begin(), service.conditions.end());
        }
        service.conditions = grown;
    }
}

GrowingConditions settleConditions(Service& service) {
    service.conditions = recordMemory().keep<ConditionEntry>(service.conditions);
    return std::exchange(service.grownConditions, GrowingConditions(&blockSource()));
}

} // namespace veldacov
