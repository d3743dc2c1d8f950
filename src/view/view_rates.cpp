#include "view/view_rates.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace veldacov {

namespace {

ViewRate measured(std::uint32_t total, std::uint32_t hits) {
    return total == 0 ? ViewRate{RateState::None} : ViewRate{RateState::Measured, total, hits};
}

// Entries stand in this row, too: without exits it has nothing of its own.
bool lacksExits(const RateRow& row, const CoverageCounters& totals) {
    return row.guard == RowGuard::WhenThereAreExits && !haveExits(totals);
}

ViewRate rateOf(const RateRow& row, const CoverageCounters& totals, const CoverageCounters& hits) {
    return lacksExits(row, totals) ? ViewRate{RateState::None}
                                   : measured(rowSum(row, totals), rowSum(row, hits));
}

} // namespace

ViewRates viewRates(const CoverageCounters& totals, const CoverageCounters& hits, std::uint16_t types) {
    ViewRates rates;
    if ((types & type::procedures) != 0) {
        rates[0] = measured(totals[counter::services], hits[counter::services]);
    }
    for (std::size_t row = 0; row < rateRows.size(); ++row) {
        if ((types & rateRows[row].bit) != 0) {
            rates[row + 1] = rateOf(rateRows[row], totals, hits);
        }
    }
    return rates;
}

ViewRate sumOfRates(const CoverageCounters& totals, const CoverageCounters& hits, std::uint16_t types) {
    unsigned counters =
        (types & (type::procedures | type::exits)) != 0 ? counterBit(counter::procedureBranches) : 0U;
    for (const RateRow& row : rateRows) {
        counters |= (types & row.bit) != 0 ? row.counters : 0U;
    }
    const RateRow all{0,
                      static_cast<std::uint16_t>(counters),
                      ReportLabel::Conclusion,
                      ReportLabel::Conclusion,
                      RowGuard::Always,
                      References::None};
    return measured(rowSum(all, totals), rowSum(all, hits));
}

std::optional<std::size_t> findRate(std::string_view name) {
    const auto found = std::find(viewRateNames.begin(), viewRateNames.end(), name);
    return found != viewRateNames.end()
               ? std::optional(static_cast<std::size_t>(found - viewRateNames.begin()))
               : std::nullopt;
}

std::string rateText(const ViewRate& rate) {
    if (rate.state != RateState::Measured) {
        return rate.state == RateState::None ? "none" : "n/a";
    }
    std::array<char, 8> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(),
                                   ratePercentage(rate.total, rate.hits), std::chars_format::fixed, 1);
    return {text.data(), end.ptr};
}

} // namespace veldacov
