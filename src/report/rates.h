#pragma once

// The rates of a set of counters, as the report and the CIO file show them: one row per rate, in order.

#include <array>
#include <cstddef>
#include <cstdint>

#include "description/model.h"
#include "report/labels.h"

namespace veldacov {

// When the report shows the row; the CIO file shows every row of the types in use.
enum class RowGuard : std::uint8_t { Always, WhenDescribed, WhenThereAreExits };

// Source references that the report lists under the row.
enum class References : std::uint8_t {
    None,
    ProcedureBranches,
    Calls,
    SimpleBlocks,
    ImplicitBlocks,
    LogicalBlocks,
    AtcBlocks,
    BasicConditions,
    ModifiedConditions,
    CompoundCases
};

struct RateRow {
    std::uint16_t bit;      // coverage type
    std::uint16_t counters; // bit c: counter c is part of the sum
    ReportLabel label;
    ReportLabel forcedLabel; // when conditions are forced
    RowGuard guard;
    References references;
};

constexpr std::uint16_t counterBit(std::size_t place) {
    return static_cast<std::uint16_t>(1U << place);
}

inline constexpr std::array<RateRow, 10> rateRows = {{
    {type::exits, counterBit(counter::procedureBranches), ReportLabel::FunctionsAndExits,
     ReportLabel::FunctionsAndExits, RowGuard::WhenThereAreExits, References::ProcedureBranches},
    {type::calls, counterBit(counter::calls), ReportLabel::Calls, ReportLabel::Calls, RowGuard::Always,
     References::Calls},
    {type::simpleBlocks, counterBit(counter::simpleBlocks), ReportLabel::StatementBlocks,
     ReportLabel::StatementBlocks, RowGuard::WhenDescribed, References::SimpleBlocks},
    {type::implicitBlocks, counterBit(counter::implicitBlocks), ReportLabel::ImplicitBlocks,
     ReportLabel::ImplicitBlocks, RowGuard::Always, References::ImplicitBlocks},
    {type::implicitBlocks, counterBit(counter::simpleBlocks) | counterBit(counter::implicitBlocks),
     ReportLabel::Decisions, ReportLabel::Decisions, RowGuard::Always, References::None},
    {type::logicalBlocks, counterBit(counter::logicalBlocks), ReportLabel::Loops, ReportLabel::Loops,
     RowGuard::Always, References::LogicalBlocks},
    {type::atcBlocks, counterBit(counter::atcBlocks), ReportLabel::AsynchronousTransferBlocks,
     ReportLabel::AsynchronousTransferBlocks, RowGuard::Always, References::AtcBlocks},
    {type::basicConditions, counterBit(counter::basicConditions), ReportLabel::BasicConditions,
     ReportLabel::BasicConditions, RowGuard::Always, References::BasicConditions},
    {type::modifiedConditions, counterBit(counter::modifiedConditions), ReportLabel::ModifiedConditions,
     ReportLabel::ForcedModifiedConditions, RowGuard::Always, References::ModifiedConditions},
    {type::compoundConditions, counterBit(counter::compoundConditions), ReportLabel::MultipleConditions,
     ReportLabel::ForcedMultipleConditions, RowGuard::Always, References::CompoundCases},
}};

// Whether there are exits: they share their counter with the entries.
constexpr bool haveExits(const CoverageCounters& totals) {
    return totals[counter::procedureBranches] > totals[counter::services];
}

// The label of a row under a mask of types.
inline ReportLabel labelOf(const RateRow& row, std::uint16_t typesInUse) {
    return (typesInUse & type::forcedConditions) != 0 ? row.forcedLabel : row.label;
}

// What stands in place of a rate of nothing: "none" where the type was instrumented, else "n/a".
constexpr ReportLabel zeroTotalLabel(std::uint16_t instrumentedTypes, std::uint16_t bit) {
    return (instrumentedTypes & bit) != 0 ? ReportLabel::None : ReportLabel::NotApplicable;
}
// Whether the services of some counters were entered.
constexpr ReportLabel enteredLabel(const CoverageCounters& hits) {
    return hits[counter::services] != 0 ? ReportLabel::Yes : ReportLabel::No;
}

// The sum of the row's counters.
std::uint32_t rowSum(const RateRow& row, const CoverageCounters& counters);

// The percentage of hits out of total (above 0): 100 only when all were hit, 0 only when none was; close to
// these it is 99.9 and 0.1.
double ratePercentage(std::uint32_t total, std::uint32_t hits);

} // namespace veldacov
