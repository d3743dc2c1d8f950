#pragma once

// The eleven rates of `veldaview`: those of the report's table, and functions before them.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "description/model.h"
#include "report/rates.h"

namespace veldacov {

// In the order of the report.
inline constexpr std::array<std::string_view, rateRows.size() + 1> viewRateNames = {
    "functions", "exits",     "calls",      "blocks",   "implicit", "decisions",
    "loops",     "transfers", "conditions", "modified", "compound"};
static_assert(!viewRateNames.back().empty(), "a name for each row");

enum class RateState : std::uint8_t {
    Measured,
    None,         // there is nothing of the kind
    NotApplicable // the descriptions were not made for the kind
};
struct ViewRate {
    RateState state = RateState::NotApplicable;
    std::uint32_t total = 0; // 0 unless measured
    std::uint32_t hits = 0;
};
using ViewRates = std::array<ViewRate, viewRateNames.size()>; // by place in viewRateNames

// The rates of counters; `types` are the coverage types of their descriptions.
ViewRates viewRates(const CoverageCounters& totals, const CoverageCounters& hits, std::uint16_t types);

// Each counted thing once: entries, exits, calls, blocks of all kinds, conditions of all kinds.
ViewRate sumOfRates(const CoverageCounters& totals, const CoverageCounters& hits, std::uint16_t types);

// The place of a rate, none when there is no such name.
std::optional<std::size_t> findRate(std::string_view name);

// The percentage with one decimal, as the report prints it ("83.3"); "none" and "n/a" for rates without one.
std::string rateText(const ViewRate& rate);

} // namespace veldacov
