#include "report/rates.h"

#include <gtest/gtest.h>

namespace veldacov::test {
namespace {

struct Row {
    std::uint32_t hits;
    std::uint32_t total;
    double percentage;
};

TEST(Rates, NearlyAllAndNearlyNoneStayVisible) {
    constexpr std::uint32_t largest = 4294967295; // 2000 times this, or its half, exceeds 32 bits
    for (const auto& [hits, total, percentage] :
         {Row{0, 5, 0.0}, Row{2000, 2000, 100.0}, Row{largest, largest, 100.0}, Row{1999, 2000, 99.9},
          Row{1998, 1999, 99.949975}, Row{3997, 3999, 99.949987}, Row{1, 2000, 0.1}, Row{1, 1999, 0.050025},
          Row{2, 3999, 0.0500125}, Row{1, largest, 0.1}, Row{largest - 1, largest, 99.9},
          Row{largest / 2, largest, 50.0}}) {
        EXPECT_NEAR(ratePercentage(total, hits), percentage, 1e-6) << hits << "/" << total;
    }
}

} // namespace
} // namespace veldacov::test
