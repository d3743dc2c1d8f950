#include "report/rates.h"

#include <bit>
#include <cstddef>

namespace veldacov {

std::uint32_t rowSum(const RateRow& row, const CoverageCounters& counters) {
    std::uint32_t sum = 0;
    for (unsigned bits = row.counters; bits != 0; bits &= bits - 1) {
        sum += counters[static_cast<std::size_t>(std::countr_zero(bits))];
    }
    return sum;
}

double ratePercentage(std::uint32_t total, std::uint32_t hits) {
    constexpr std::uint64_t fullScale =
        2000; // below 1/2000 a share would be shown as 0.0, or its rest as 100.0
    if (total > hits && total >= fullScale * (total - hits)) {
        return 99.9;
    }
    if (hits > 0 && total > hits && total >= fullScale * hits) {
        return 0.1;
    }
    return 100.0 * hits / total;
}

} // namespace veldacov
