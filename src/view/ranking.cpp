#include "view/ranking.h"

#include <algorithm>
#include <queue>
#include <string>
#include <unordered_set>

#include "support/shown_text.h"
#include "view/json_parts.h"

namespace veldacov {

namespace {

using Numbers = std::vector<std::uint32_t>;

// Calls visit(number) for each item of a test. `scratch` spares the memory of each call, and holds them in the end.
template <typename Visit>
void forEachNumber(const CampaignTest& test, Numbers& scratch, Visit visit) {
    readItems(test, scratch);
    std::for_each(scratch.begin(), scratch.end(), visit);
}

// How many tests hit each item.
std::vector<std::uint32_t> testsPerItem(const Campaign& campaign) {
    std::vector<std::uint32_t> tests(campaign.itemCount);
    Numbers scratch;
    for (const CampaignTest& test : campaign.tests) {
        forEachNumber(test, scratch, [&](std::uint32_t number) { ++tests[number]; });
    }
    return tests;
}

// What tests hit together, counted as the report counts it.
class RunningHits {
public:
    explicit RunningHits(const Campaign& campaign) : campaign_(campaign), hit_(campaign.itemCount) {}

    [[nodiscard]] bool has(std::uint32_t number) const { return hit_[number]; }

    // Takes the items of a test; ascending numbers.
    void take(const Numbers& numbers) {
        for (const std::uint32_t number : numbers) {
            if (!hit_[number]) {
                hit_[number] = true;
                countItem(number);
            }
        }
        for (const CampaignService* service : withNewCases_) {
            proveConditions(*service);
        }
        withNewCases_.clear();
    }
    [[nodiscard]] const CoverageCounters& counters() const { return counters_; }

private:
    // Items come by ascending numbers, so the service is mostly that of the item before.
    const CampaignService& serviceOfItem(std::uint32_t number) {
        const auto& services = campaign_.services;
        if (number < services[lastService_].firstItem || number >= itemNumbers(services[lastService_]).end) {
            const auto behind = std::upper_bound(services.begin(), services.end(), number,
                                                 [](std::uint32_t wanted, const CampaignService& service) {
                                                     return wanted < service.firstItem;
                                                 });
            lastService_ = static_cast<std::size_t>(behind - services.begin()) - 1;
        }
        return services[lastService_];
    }

    void countItem(std::uint32_t number) {
        const CampaignService& service = serviceOfItem(number);
        const std::uint16_t coverageType = typeOfNumber(service, number);
        if (coverageType == type::procedures) {
            ++counters_[counter::services];
        }
        if (const std::optional<std::size_t> place = counterOfType(coverageType)) {
            ++counters_[*place];
        }
        if (coverageType == type::compoundConditions &&
            (withNewCases_.empty() || withNewCases_.back() != &service)) {
            withNewCases_.push_back(&service);
        }
    }

    void proveConditions(const CampaignService& service) {
        const std::uint32_t first = itemNumbers(service).conditions;
        const auto isHitPair = [&](const VectorPair& pair) {
            return hit_[first + pair.first] && hit_[first + pair.second];
        };
        for (const Composition& composition : service.service->compositions) {
            for (const ModifiedCondition& modified : composition.modifiedConditions) {
                if (!proven_.contains(&modified) &&
                    std::any_of(modified.pairs.begin(), modified.pairs.end(), isHitPair)) {
                    proven_.insert(&modified);
                    ++counters_[counter::modifiedConditions];
                }
            }
        }
    }

    static std::uint16_t typeOfNumber(const CampaignService& service, std::uint32_t number) {
        const ItemNumbers numbers = itemNumbers(service);
        if (number < numbers.exits) {
            return type::procedures;
        }
        if (number < numbers.calls) {
            return type::exits;
        }
        if (number < numbers.blocks) {
            return type::calls;
        }
        return number < numbers.conditions
                   ? typeOfBlock(service.service->blocks[number - numbers.blocks].kind)
                   : typeOfCondition(service.service->conditions[number - numbers.conditions].kind);
    }

    const Campaign& campaign_;
    std::vector<bool> hit_;
    std::size_t lastService_ = 0;
    std::vector<const CampaignService*> withNewCases_;
    std::unordered_set<const ModifiedCondition*> proven_;
    CoverageCounters counters_{};
};

// A test with a bound of what it gains: it was so much when so many tests had been taken.
struct Candidate {
    std::uint32_t gain = 0;
    std::size_t test = 0;
    std::size_t taken = 0;
};
struct ComesLater {
    bool operator()(const Candidate& left, const Candidate& right) const {
        return left.gain != right.gain ? left.gain < right.gain : left.test > right.test;
    }
};
using Candidates = std::priority_queue<Candidate, std::vector<Candidate>, ComesLater>;

Candidates allCandidates(const Campaign& campaign) {
    std::vector<Candidate> candidates;
    for (std::size_t test = 0; test < campaign.tests.size(); ++test) {
        candidates.push_back({static_cast<std::uint32_t>(campaign.tests[test].items.cardinality()), test, 0});
    }
    return Candidates(ComesLater(), std::move(candidates));
}

void rankByGain(const Campaign& campaign, std::vector<RankedTest>& ranking) {
    RunningHits running(campaign);
    Candidates candidates = allCandidates(campaign);
    Numbers scratch;
    while (!candidates.empty()) {
        Candidate best = candidates.top();
        candidates.pop();
        if (best.taken != ranking.size() &&
            best.gain > 0) { // others were taken since: what is left of the gain?
            best.gain = 0;
            best.taken = ranking.size();
            forEachNumber(campaign.tests[best.test], scratch,
                          [&](std::uint32_t number) { best.gain += running.has(number) ? 0 : 1; });
            candidates.push(best);
            continue;
        }
        if (best.gain > 0) {
            readItems(campaign.tests[best.test], scratch);
            running.take(scratch);
        }
        ranking.push_back({best.test,
                           static_cast<std::uint32_t>(campaign.tests[best.test].items.cardinality()), 0,
                           best.gain, best.gain > 0, running.counters()});
    }
}

void findOwnItems(const Campaign& campaign, std::vector<RankedTest>& ranking) {
    const std::vector<std::uint32_t> tests = testsPerItem(campaign);
    Numbers scratch;
    for (RankedTest& ranked : ranking) {
        forEachNumber(campaign.tests[ranked.test], scratch,
                      [&](std::uint32_t number) { ranked.own += tests[number] == 1 ? 1 : 0; });
    }
}

// Takes tests out of the needed set while each of their items has another test in it. The last ones gain least, so they
// go first.
void dropSuperfluous(const Campaign& campaign, std::vector<RankedTest>& ranking) {
    std::vector<std::uint32_t> tests(campaign.itemCount);
    Numbers scratch;
    for (const RankedTest& ranked : ranking) {
        if (ranked.needed) {
            forEachNumber(campaign.tests[ranked.test], scratch,
                          [&](std::uint32_t number) { ++tests[number]; });
        }
    }
    for (auto ranked = ranking.rbegin(); ranked != ranking.rend(); ++ranked) {
        if (!ranked->needed) {
            continue;
        }
        bool superfluous = true;
        forEachNumber(campaign.tests[ranked->test], scratch,
                      [&](std::uint32_t number) { superfluous = superfluous && tests[number] > 1; });
        if (superfluous) {
            ranked->needed = false;
            std::for_each(scratch.begin(), scratch.end(), [&](std::uint32_t number) { --tests[number]; });
        }
    }
}

// The rates that the campaign has, by their places.
std::vector<std::size_t> measuredRates(const Campaign& campaign) {
    const ViewRates rates = viewRates(campaign.totals, campaign.hits, campaign.types);
    std::vector<std::size_t> places;
    for (std::size_t place = 0; place < rates.size(); ++place) {
        if (rates[place].state == RateState::Measured) {
            places.push_back(place);
        }
    }
    return places;
}

std::string testText(const CampaignTest& test) {
    std::string text = shownText(shownName(test));
    if (test.knownBy == KnownBy::Name && test.number != -1) {
        text.append(" ").append(std::to_string(test.number));
    }
    if (test.date != nullptr) {
        text.append(", ").append(shownText(nameText(test.date)));
    }
    return text;
}

constexpr std::size_t numberWidth = 9;

void writeRow(OutputFile& out, const Campaign& campaign, const RankedTest& ranked,
              const std::vector<std::size_t>& columns) {
    out.put(ranked.needed ? "needed   " : "redundant");
    for (const std::uint32_t number : {ranked.items, ranked.own, ranked.gain}) {
        out.putNumber(number, numberWidth);
    }
    out.put(padded(rateText(sumOfRates(campaign.totals, ranked.hits, campaign.types)), numberWidth));
    const ViewRates rates = viewRates(campaign.totals, ranked.hits, campaign.types);
    for (const std::size_t column : columns) {
        out.put(padded(rateText(rates[column]), viewRateNames[column].size() + 2));
    }
    putLine(out, "  ", testText(campaign.tests[ranked.test]));
}

std::size_t neededTests(const std::vector<RankedTest>& ranking) {
    return static_cast<std::size_t>(std::count_if(ranking.begin(), ranking.end(),
                                                  [](const RankedTest& ranked) { return ranked.needed; }));
}

void putRanked(JsonWriter& json, const Campaign& campaign, const RankedTest& ranked,
               const std::vector<std::size_t>& shownRates) {
    json.StartObject();
    putTest(json, campaign.tests[ranked.test]);
    putNumber(json, "items", ranked.items);
    putNumber(json, "own", ranked.own);
    putNumber(json, "gain", ranked.gain);
    putFlag(json, "needed", ranked.needed);
    putKey(json, "rates");
    json.StartObject();
    putRate(json, "total", sumOfRates(campaign.totals, ranked.hits, campaign.types));
    const ViewRates rates = viewRates(campaign.totals, ranked.hits, campaign.types);
    for (const std::size_t place : shownRates) {
        putRate(json, viewRateNames[place], rates[place]);
    }
    json.EndObject();
    json.EndObject();
}

} // namespace

std::vector<RankedTest> rankTests(const Campaign& campaign) {
    std::vector<RankedTest> ranking;
    ranking.reserve(campaign.tests.size());
    rankByGain(campaign, ranking);
    findOwnItems(campaign, ranking);
    dropSuperfluous(campaign, ranking);
    return ranking;
}

void writeRanking(OutputFile& out, const Campaign& campaign, const std::vector<RankedTest>& ranking) {
    const std::size_t needed = neededTests(ranking);
    const std::vector<std::size_t> columns = measuredRates(campaign);
    putLine(out, std::to_string(ranking.size()), " tests, ", std::to_string(needed), " needed, ",
            std::to_string(ranking.size() - needed), " redundant\n");
    out.put("             items      own     gain    total");
    for (const std::size_t column : columns) {
        out.put("  ");
        out.put(viewRateNames[column]);
    }
    putLine(out, "  test");
    for (const RankedTest& ranked : ranking) {
        writeRow(out, campaign, ranked, columns);
    }
}

void writeRankingJson(OutputFile& out, const Campaign& campaign, const std::vector<RankedTest>& ranking) {
    JsonStream stream(out);
    JsonWriter json(stream);
    json.StartObject();
    putKey(json, "format");
    putText(json, "veldaview-tests");
    putNumber(json, "version", 1);
    putNumber(json, "needed", neededTests(ranking));
    putKey(json, "tests");
    json.StartArray();
    const std::vector<std::size_t> rates = measuredRates(campaign);
    for (const RankedTest& ranked : ranking) {
        putRanked(json, campaign, ranked, rates);
    }
    json.EndArray();
    json.EndObject();
    stream.Put('\n');
    stream.Flush();
}

} // namespace veldacov
