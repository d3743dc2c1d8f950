#include "report/rates.h"

#include <sstream>

#include <gtest/gtest.h>

namespace veldacov::test {
namespace {

TEST(Rates, NearlyAllAndNearlyNoneStayVisible) {
    std::istringstream cases(
        "0 5 0.0  2000 2000 100.0  4294967295 4294967295 100.0  1999 2000 99.9  1998 1999 99.949975 "
        "3997 3999 99.949987  1 2000 0.1  1 1999 0.050025  2 3999 0.0500125  1 4294967295 0.1 "
        "4294967294 4294967295 99.9  2147483647 4294967295 50.0"); // 2000 times this exceeds 32 bits
    std::uint32_t hits = 0;
    std::uint32_t total = 0;
    for (double percentage = 0; cases >> hits >> total >> percentage;) {
        EXPECT_NEAR(ratePercentage(total, hits), percentage, 1e-6) << hits << "/" << total;
    }
}

} // namespace
} // namespace veldacov::test
