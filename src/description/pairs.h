#pragma once

// Independence pairs, and the modified conditions that they prove.
//
// A modified condition is covered when two cases that differ in its basic condition only, and in their
// outcomes, have both been hit. The pairs are found while a description is loaded; which of them have been hit is asked
// when a test ends.

#include <cstdint>

#include "description/model.h"

namespace veldacov {

// Fills the modified conditions of a composition whose cases stand in the service. A table of two characters and
// up to 64 conditions costs n look-ups per true case, another table one comparison per pair of a true and a false
// case, an expression n steps per 64 cases.
void computeModifiedConditions(Service* service, Composition* composition);

// The number of the case that a pair names by the place of its entry. Mostly the entry is that of the case; where an
// earlier condition of the service has the identifier of the case, that condition stands for it.
inline std::uint32_t caseNamedBy(const Service& service, const Composition& composition,
                                 std::uint32_t place) {
    return service.conditions[place].id -
           service.conditions[composition.firstCase].id; // wraps as identifiers do
}

// Counts a hit for every modified condition that has a pair of hit cases, of this test or of earlier ones.
void computeModifiedConditionHits();

} // namespace veldacov
