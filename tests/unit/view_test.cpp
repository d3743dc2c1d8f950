// The second program: campaigns and the order of tests against slow, obvious judges, minima, selections, shown names.

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <vector>

#include "report/tio.h"
#include "support/files.h"
#include "support/shown_text.h"
#include "unit/test_support.h"
#include "view/campaign.h"
#include "view/check.h"
#include "view/json_stream.h"
#include "view/ranking.h"
#include "view/selections.h"
#include "view/view_rates.h"

namespace veldacov::test {
namespace {

// Two services with an item of each sort, and a decision with its table of all cases.
std::string bodyOf(const std::string& service, std::uint32_t first) {
    const auto id = [first](std::uint32_t place) { return std::to_string(first + place); };
    const std::string name = " \"" + service + "\" ";
    return "PR " + id(0) + " proc" + name + "1 9\nPR " + id(1) + " return" + name + "8 8\nAP " + id(0) +
           name + "\"h\" 2 2\nBL " + id(0) + " simple" + name + "THEN 3 4\nBL " + id(1) + " implicit" + name +
           "ELSE 3 4\nCE " + id(0) + name + "\"a\" 3 3\nCE " + id(2) + name + "\"b\" 3 3\nCC " + id(4) +
           " 2 " + id(0) + " " + id(2) + " 4 A..\n";
}
constexpr std::uint32_t idsPerService = 8;
const std::map<ItemKind, std::uint32_t> idsOfKind = {
    {ItemKind::Procedure, 2}, {ItemKind::Call, 1}, {ItemKind::Block, 2}, {ItemKind::Condition, 8}};

using Item = std::pair<ItemKind, std::uint32_t>;
struct TracedRun {
    std::string name;         // empty: none
    std::int32_t number = -1; // -1: none
    bool counted = false;
    std::vector<Hit> hits;
};
using Runs = std::vector<TracedRun>;

std::string hex(std::uint32_t number) {
    return std::string(hexText(number).view());
}

std::string traceOf(const TracedRun& run) {
    std::string text = "NT";
    if (!run.name.empty() || run.number != -1) {
        text += " \"" + run.name + "\"";
    }
    text += run.number != -1 ? " " + hex(static_cast<std::uint32_t>(run.number)) + "\n" : "\n";
    text += std::string(run.counted ? "CO\n" : "") + "FT 36\nDC 7\n";
    for (const Hit& hit : run.hits) {
        text.append(keywordOf(hit.kind)).append(" ").append(hex(hit.id));
        text += run.counted ? " " + hex(hit.count) + "\n" : "\n";
    }
    return text;
}

class ViewTest : public FreshProgram {
protected:
    // Starts anew with the description and one trace.
    Campaign campaignOf(const Runs& runs, CampaignDetail detail, const Patterns& patterns = {}) {
        forgetRunFiles();
        freeAllDescriptions();
        initNamePool();
        std::string trace;
        for (const TracedRun& run : runs) {
            trace += traceOf(run);
        }
        CampaignRequest request;
        request.inputs = {write("a.fdc", descriptionOf(bodyOf("f", 0) + bodyOf("g", idsPerService))),
                          write("t.tio", trace)};
        request.patterns = patterns;
        request.detail = detail;
        Campaign campaign;
        messages_ = accountHere([&] { campaign = loadCampaign(request); });
        return campaign;
    }

    Runs randomRuns(std::size_t most, std::uint32_t mostHits) {
        Runs runs(upTo(static_cast<std::uint32_t>(most)) + 1);
        for (TracedRun& run : runs) {
            run.name = std::vector<std::string>{"A", "B", "C", ""}[upTo(3)];
            run.number = static_cast<std::int32_t>(upTo(2)) - 1;
            run.counted = upTo(1) == 0;
            const std::uint32_t hits = upTo(mostHits);
            for (std::uint32_t i = 0; i < hits; ++i) {
                const ItemKind kind = itemKinds[upTo(3)];
                run.hits.push_back({kind, upTo(1) * idsPerService + upTo(idsOfKind.at(kind) - 1), upTo(3)});
            }
        }
        return runs;
    }
    std::uint32_t upTo(std::uint32_t largest) {
        return std::uniform_int_distribution<std::uint32_t>(0, largest)(random_);
    }
    [[nodiscard]] const std::string& messages() const { return messages_; }

private:
    std::mt19937 random_{1};
    std::string messages_;
};

using Counts = std::map<Item, std::uint32_t>;

// What the judge finds in runs, by name and number of the tests.
struct JudgedTest {
    Counts counted;
    std::set<Item> uncounted;

    [[nodiscard]] Counts counts() const {
        Counts sum = counted;
        for (const Item& item : uncounted) {
            ++sum[item];
        }
        return sum;
    }
};
std::map<std::string, JudgedTest> judged(const Runs& runs) {
    std::map<std::string, JudgedTest> tests;
    for (const TracedRun& run : runs) {
        const std::string name = !run.name.empty()  ? run.name
                                 : run.number != -1 ? hex(static_cast<std::uint32_t>(run.number))
                                                    : "#";
        JudgedTest& test = tests[name + "/" + std::to_string(run.number)];
        Counts ofRun;
        for (const Hit& hit : run.hits) {
            ofRun[{hit.kind, hit.id}] += hit.count;
        }
        for (const auto& [item, count] : ofRun) {
            if (run.counted) {
                test.counted[item] += std::max(count, 1U);
            } else {
                test.uncounted.insert(item);
            }
        }
    }
    return tests;
}

ItemKind kindOf(std::uint16_t coverageType) {
    for (const ItemKind kind : itemKinds) {
        if ((typesOfKind(kind) & coverageType) != 0) {
            return kind;
        }
    }
    ADD_FAILURE() << coverageType;
    return ItemKind::Procedure;
}

std::map<std::uint32_t, Item> itemsByNumber(const Campaign& campaign) {
    std::map<std::uint32_t, Item> items;
    for (const CampaignService& service : campaign.services) {
        forEachNumberedItem(service,
                            [&](std::uint32_t number, const CoverageItem& item, std::uint16_t coverageType) {
                                items[number] = {kindOf(coverageType), item.id};
                            });
    }
    return items;
}

Counts countsOf(const CampaignTest& test, const std::map<std::uint32_t, Item>& items) {
    Counts counts;
    std::size_t place = 0;
    for (const std::uint32_t number : test.items) {
        counts[items.at(number)] = test.counts.empty() ? 1 : test.counts.at(place);
        ++place;
    }
    return counts;
}

std::string keyOf(const CampaignTest& test) {
    return std::string(shownName(test)) + "/" + std::to_string(test.number);
}

TEST_F(ViewTest, ACampaignIsTheSumOfItsTests) {
    for (int round = 0; round < 60; ++round) {
        const Runs runs = randomRuns(12, 12);
        const CoverageCounters hits = campaignOf(runs, CampaignDetail::Rates).hits;
        const Campaign campaign = campaignOf(runs, CampaignDetail::TestCounts);
        EXPECT_EQ(campaign.hits, hits) << round;
        const std::map<std::uint32_t, Item> items = itemsByNumber(campaign);
        ASSERT_EQ(items.size(), campaign.itemCount);

        const std::map<std::string, JudgedTest> tests = judged(runs);
        ASSERT_EQ(campaign.tests.size(), tests.size());
        Counts sums;
        for (const CampaignTest& test : campaign.tests) {
            const Counts expected = tests.at(keyOf(test)).counts();
            EXPECT_EQ(countsOf(test, items), expected) << round << " " << keyOf(test);
            for (const auto& [item, count] : expected) {
                sums[item] += count;
            }
        }
        for (const auto& [number, item] : items) {
            EXPECT_EQ(campaign.counts[number], sums.contains(item) ? sums[item] : 0) << round;
        }
    }
}

// Names of tests in selections stand for the tests of any number.
Patterns onlyTests(const std::vector<std::string>& names) {
    Patterns patterns;
    for (const std::string& name : names) {
        patterns.tests.wanted.push_back({name});
    }
    return patterns;
}

std::set<std::uint32_t> itemsOf(const CampaignTest& test) {
    return {test.items.begin(), test.items.end()};
}

std::size_t gainOf(const CampaignTest& test, const std::set<std::uint32_t>& known) {
    const std::set<std::uint32_t> items = itemsOf(test);
    return static_cast<std::size_t>(std::count_if(
        items.begin(), items.end(), [&](std::uint32_t number) { return !known.contains(number); }));
}

// The place of the test that comes next, of those not ranked yet.
std::size_t bestOf(const Campaign& campaign, const std::set<std::size_t>& ranked,
                   const std::set<std::uint32_t>& known) {
    std::size_t best = campaign.tests.size();
    for (std::size_t test = 0; test < campaign.tests.size(); ++test) {
        if (!ranked.contains(test) &&
            (best == campaign.tests.size() ||
             gainOf(campaign.tests[test], known) > gainOf(campaign.tests[best], known))) {
            best = test;
        }
    }
    return best;
}

TEST_F(ViewTest, TheOrderIsTheGreedyOne) {
    for (int round = 0; round < 30; ++round) {
        Runs runs = randomRuns(14, 14);
        for (std::size_t place = 0; place < runs.size(); ++place) {
            runs[place].name = "T" + std::to_string(place / 2); // some in two runs
            runs[place].number = -1;
        }
        const Campaign campaign = campaignOf(runs, CampaignDetail::Tests);
        const std::vector<RankedTest> ranking = rankTests(campaign);
        ASSERT_EQ(ranking.size(), campaign.tests.size());

        std::map<std::uint32_t, int> testsOfItem;
        for (const CampaignTest& test : campaign.tests) {
            for (const std::uint32_t number : itemsOf(test)) {
                ++testsOfItem[number];
            }
        }
        std::set<std::size_t> ranked;
        std::set<std::uint32_t> known;
        std::vector<std::string> names;
        std::vector<std::vector<std::string>> prefixes;
        for (const RankedTest& next : ranking) {
            const CampaignTest& test = campaign.tests[next.test];
            EXPECT_EQ(next.test, bestOf(campaign, ranked, known)) << round;
            EXPECT_EQ(next.gain, gainOf(test, known)) << round;
            const std::set<std::uint32_t> items = itemsOf(test);
            EXPECT_EQ(next.items, items.size());
            EXPECT_EQ(next.own, std::count_if(items.begin(), items.end(), [&](std::uint32_t number) {
                          return testsOfItem[number] == 1;
                      }));
            ranked.insert(next.test);
            known.insert(items.begin(), items.end());
            names.emplace_back(shownName(test));
            prefixes.push_back(names);
        }

        // What tests reach together is what a campaign of them alone reaches.
        std::vector<std::string> needed;
        for (std::size_t place = 0; place < ranking.size(); ++place) {
            if (ranking[place].needed) {
                needed.push_back(names[place]);
            }
        }
        const CoverageCounters all = campaign.hits;
        for (std::size_t place = 0; place < ranking.size(); ++place) {
            EXPECT_EQ(campaignOf(runs, CampaignDetail::Rates, onlyTests(prefixes[place])).hits,
                      ranking[place].hits)
                << round << " " << place;
        }
        if (!needed.empty()) {
            EXPECT_EQ(campaignOf(runs, CampaignDetail::Rates, onlyTests(needed)).hits, all) << round;
        }
        for (std::size_t left = 0; needed.size() > 1 && left < needed.size(); ++left) {
            std::vector<std::string> fewer = needed;
            fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(left));
            const CoverageCounters hits = campaignOf(runs, CampaignDetail::Rates, onlyTests(fewer)).hits;
            EXPECT_NE(hits, all) << round << ": " << needed[left] << " can be left out";
        }
    }
}

TEST_F(ViewTest, SelectionsLeaveOutWhatTheyName) {
    const Runs runs = {{"day one", 1, false, {{ItemKind::Procedure, 0}, {ItemKind::Procedure, 8}}},
                       {"night", 2, false, {{ItemKind::Procedure, 1}}},
                       {"", -1, false, {{ItemKind::Call, 0}}}};
    struct Row {
        Patterns patterns;
        std::vector<std::string> tests;
        std::size_t services;
        std::uint32_t itemsHit;
        std::string messages;
    };
    const auto pattern = [](const std::string& text) { return std::vector<Pattern>{{text}}; };
    const std::vector<Row> rows = {{{}, {"day one", "night", "#"}, 2, 4, ""},
                                   {{.files = {pattern("s*c"), {}}}, {"day one", "night", "#"}, 2, 4, ""},
                                   {{.files = {pattern("a.c"), {}}},
                                    {},
                                    0,
                                    0,
                                    "WARNING: The pattern a.c of --file matches nothing\n" +
                                        fatalAccount("There is nothing to report ... report is empty")},
                                   {{.services = {{}, pattern("[!f]")}}, {"day one", "night", "#"}, 1, 3, ""},
                                   {{.tests = {pattern("*n*"), pattern("day*")}}, {"night"}, 2, 1, ""},
                                   {{.tests = {{}, pattern("#")}}, {"day one", "night"}, 2, 3, ""},
                                   {{.tests = {{}, pattern("night")}}, {"day one", "#"}, 2, 3, ""},
                                   {{.tests = {{}, pattern("x")}},
                                    {"day one", "night", "#"},
                                    2,
                                    4,
                                    "WARNING: The pattern x of --exclude-test matches nothing\n"},
                                   {{.tests = {pattern("x"), {}}},
                                    {},
                                    2,
                                    0,
                                    "WARNING: There is no test: nothing counts as hit\nWARNING: The pattern "
                                    "x of --test matches nothing\n"}};
    for (const Row& row : rows) {
        for (const CampaignDetail detail : {CampaignDetail::Rates, CampaignDetail::Tests}) {
            const Campaign campaign = campaignOf(runs, detail, row.patterns);
            std::vector<std::string> tests;
            for (const CampaignTest& test : campaign.tests) {
                tests.emplace_back(shownName(test));
            }
            EXPECT_EQ(tests, row.tests);
            EXPECT_EQ(campaign.services.size(), row.services);
            EXPECT_EQ(sumOfRates(campaign.totals, campaign.hits, campaign.types).hits, row.itemsHit);
            EXPECT_EQ(messages(), row.messages);
        }
    }
}

TEST(Minima, AreReadAndComparedExactly) {
    struct Row {
        std::string text;
        std::uint32_t total;
        std::uint32_t hits;
        bool below;
    };
    const std::vector<Row> rows = {{"blocks=80", 1000, 799, true},
                                   {"blocks=80", 1000, 800, false},
                                   {"blocks=79.95", 2000, 1599, false},
                                   {"blocks=79.950001", 2000, 1599, true},
                                   {"blocks=100", 4294967295, 4294967294, true},
                                   {"blocks=100.000000", 4294967295, 4294967295, false},
                                   {"blocks=0", 7, 0, false},
                                   {"blocks=0.000001", 4294967295, 42, true},
                                   {"blocks=0.000001", 4294967295, 43, false}};
    for (const Row& row : rows) {
        const std::optional<Minimum> minimum = readMinimum(row.text);
        ASSERT_TRUE(minimum) << row.text;
        EXPECT_EQ(viewRateNames[minimum->rate], "blocks");
        EXPECT_EQ(isBelow({RateState::Measured, row.total, row.hits}, *minimum), row.below) << row.text;
    }
    for (const std::string text :
         {"", "blocks", "blocks=", "=80", "block=80", "blocks=80%", "blocks=-1", "blocks=100.1", "blocks=101",
          "blocks=.5", "blocks=5.", "blocks=1.2.3", "blocks=1.1234567", "blocks=1000", "blocks= 80",
          "Blocks=80", "blocks=4294967376"}) {
        EXPECT_FALSE(readMinimum(text)) << text;
    }
}

TEST(ShownText, ControlsAreEscapedAndNothingElse) {
    EXPECT_EQ(shownText("a\x1b[31m\x7f\t\r\n\x01z"), "a\\x1b[31m\\x7f\\t\\x0d\\n\\x01z");
    EXPECT_EQ(shownText("\xc2\x9b\xc2\xa0\xc3\x9b\xc2"), "\\x9b\xc2\xa0\xc3\x9b\xc2");
    EXPECT_EQ(shownText(std::string_view("\0x", 2)), "\\x00x");
}

TEST_F(ViewTest, JsonKeepsTheBytesOfNames) {
    OutputFile out = createOutput(path("out.json"), {});
    JsonStream stream(out);
    JsonWriter json(stream);
    json.StartObject();
    putName(json, "plain", "caf\xc3\xa9 \"\\\x01");
    putName(json, "latin", "caf\xe9");
    putName(json, "surrogate", "\xed\xa0\x80");
    json.EndObject();
    stream.Flush();
    out.finish();
    EXPECT_EQ(read("out.json"),
              "{\"plain\":\"caf\xc3\xa9 \\\"\\\\\\u0001\",\"latin\":\"caf\xef\xbf\xbd\","
              "\"latinBase64\":\"Y2Fm6Q==\",\"surrogate\":\"\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\","
              "\"surrogateBase64\":\"7aCA\"}");
}

} // namespace
} // namespace veldacov::test
