#pragma once

// Compositions of conditions: the CC lines of a description, their cases, and the texts of conditions and pairs.
//
//   CC <ID> <n> <n basic-condition IDs> <m> <cases> [<frontier>]
//   CC 12 2 8 10 3 TXFTFF 1     a table: m vectors of n characters T, F, X; those before the frontier are true
//   CC 12 2 8 10 4 A..          an expression in prefix form: case k gives condition j the value of bit j of k

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "description/model.h"
#include "support/files.h"

namespace veldacov {

// Reads a CC line behind its identifier and adds the composition, its cases and its modified conditions to
// the service (null when no line before it named one). `fileName` stands in the messages. Malformed lines are
// fatal errors, malformed expressions internal ones.
void readComposition(Line& line, FileDescription& description, Service* service, std::uint32_t id,
                     std::string_view fileName);

// Evaluates an expression for all cases 0 to caseCount-1: bit c of the words is the outcome of case c. A
// malformed expression is an internal error, whose message has the name of this operation: it keeps it.
std::vector<std::uint64_t> CalculVector(std::string_view expression, std::uint32_t caseCount);

// The values of basic condition `condition` in the 64 cases from `firstCase`, a multiple of 64, on: bit `condition` of each
// case number.
std::uint64_t conditionWord(std::uint32_t condition, std::uint64_t firstCase);

// The values that a case gives to the conditions of its composition, a letter for each: T, F, or X where it is not looked
// at. A table may have other characters in their place, and a table that is too short has fewer.
std::string caseValues(const Composition& composition, std::uint32_t caseNumber);
bool caseOutcome(const Composition& composition, std::uint32_t caseNumber);

// The text of a condition as outputs print it; for a case its vector, "=" and its outcome.
std::string conditionText(const Service& service, std::uint32_t place);
// "True" for the first outcome of a two-outcome condition, "False" for the second, empty for other conditions.
std::string_view outcomeText(const Service& service, const ConditionEntry& condition);
// Hands the text of a modified condition's pairs, "#<n> (case/case), (case/case)", to `put`, a pair at a time;
// nothing when it has no pair. `place` is that of the modified condition in its composition.
void pairsText(const Service& service, const Composition& composition, std::size_t place,
               const std::function<void(std::string_view)>& put);

} // namespace veldacov
