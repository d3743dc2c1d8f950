#pragma once

// Which tests are worth running. Tests are ordered greedily: next comes the test that hits most items that none before it
// hits (its gain), of equal ones the first of the traces. The tests that gain something hit together all that the campaign
// hits. Those of them that the others make superfluous are taken out again; what is left is the needed set.
//
// What a test gains is known from an upper bound, the gain it had when it was looked at last: gains only fall. So few
// tests are looked at again in each step, and looking at a test costs as many steps as it hits items.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/output.h"
#include "view/campaign.h"

namespace veldacov {

struct RankedTest {
    std::size_t test = 0;    // place in the campaign's tests
    std::uint32_t items = 0; // that it hits
    std::uint32_t own = 0;   // of these, that no other test hits
    std::uint32_t gain = 0;
    bool needed = false;     // one of the needed set
    CoverageCounters hits{}; // of this test and those before it, modified conditions included
};

// All tests in greedy order. Needs a campaign with CampaignDetail::Tests.
std::vector<RankedTest> rankTests(const Campaign& campaign);

// The ranking for people.
void writeRanking(OutputFile& out, const Campaign& campaign, const std::vector<RankedTest>& ranking);
// The ranking for programs: JSON (docs/formats/veldaview-tests.md).
void writeRankingJson(OutputFile& out, const Campaign& campaign, const std::vector<RankedTest>& ranking);

} // namespace veldacov
