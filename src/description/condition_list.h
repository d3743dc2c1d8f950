#pragma once

// The conditions of a service while its description is read.
//
// Compositions name conditions by identifier. Identifiers of a service mostly ascend, and then the list itself is
// searched; from the first one that does not, `conditionPlaces` knows the first place of each.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "description/model.h"

namespace veldacov {

// Place of the first condition of the service with this identifier.
std::optional<std::uint32_t> findCondition(const Service& service, std::uint32_t id);
// Appends conditions; findCondition knows them from then on.
void appendConditions(Service& service, std::span<const ConditionEntry> entries);
// Makes room for so many more to be appended. Conditions that come a few at a time move seldom.
void reserveConditions(Service& service, std::size_t count);
// Moves the conditions, of which there will mostly be no more, to the model's arena. Gives the memory that they leave.
GrowingConditions settleConditions(Service& service);

} // namespace veldacov
