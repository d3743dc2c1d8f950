// The whole campaign as JSON; docs/formats/veldaview-json.md has the members, veldaview.schema.json their types.

#include <array>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "description/conditions.h"
#include "description/pairs.h"
#include "support/machine.h"
#include "view/export.h"
#include "view/json_parts.h"
#include "view/progress.h"
#include "view/ranking.h"

namespace veldacov {

namespace {

constexpr std::uint64_t formatVersion = 1;

constexpr std::array<std::pair<std::uint16_t, std::string_view>, 11> typeNames = {{
    {type::procedures, "PR"},
    {type::exits, "RE"},
    {type::calls, "AP"},
    {type::simpleBlocks, "BS"},
    {type::transferBlocks, "BT"},
    {type::implicitBlocks, "BI"},
    {type::logicalBlocks, "BL"},
    {type::atcBlocks, "BA"},
    {type::basicConditions, "CO"},
    {type::compoundConditions, "CC"},
    {type::forcedConditions, "CF"},
}};

constexpr std::array<std::string_view, 4> exitNames = {"", "endproc", "return", "term"};
constexpr std::array<std::string_view, 4> blockNames = {"simple", "implicit", "logical", "atc"};

class CampaignJson {
public:
    CampaignJson(OutputFile& out, const Campaign& campaign)
        : stream_(out), json_(stream_), campaign_(campaign) {}

    void write();

private:
    template <typename Put>
    void putObject(Put put) {
        json_.StartObject();
        put();
        json_.EndObject();
    }
    template <typename Put>
    void putArray(std::string_view key, Put put) {
        putKey(json_, key);
        json_.StartArray();
        put();
        json_.EndArray();
    }
    void putItem(const CoverageItem& item, std::uint32_t number) {
        putNumber(json_, "id", item.id);
        putNumber(json_, "line", item.startLine);
        putNumber(json_, "lastLine", item.endLine);
        putNumber(json_, "hits", campaign_.counts[number]);
    }
    // One object for each item of a list: what is its own by `put`, then what all items have.
    template <typename Items, typename Put>
    void putItems(std::string_view key, const Items& items, std::uint32_t number, Put put) {
        putArray(key, [&] {
            for (const auto& item : items) {
                putObject([&] {
                    put(item);
                    putItem(item, number++);
                });
            }
        });
    }

    void putHead();
    void putRates(const CoverageCounters& totals, const CoverageCounters& hits, std::uint16_t types);
    void putFile(const CampaignFile& file);
    void putService(const CampaignService& service, std::uint16_t types);
    void putConditions(const CampaignService& service);
    void putCondition(const CampaignService& service, std::uint32_t place);
    void putDecision(const CampaignService& service, const Composition& composition);
    void putCases(const CampaignService& service, const Composition& composition);
    void putModified(const CampaignService& service, const Composition& composition,
                     const ModifiedCondition& modified);
    void putMissing(const CampaignService& service, const Composition& composition,
                    const ModifiedCondition& modified);
    void putStrayParts();
    void putTests();

    JsonStream stream_;
    JsonWriter json_;
    const Campaign& campaign_;
    std::vector<std::uint32_t> conditionPlaces_; // in the array "conditions", by place in the service
};

void CampaignJson::putHead() {
    putKey(json_, "format");
    putText(json_, "veldaview");
    putNumber(json_, "version", formatVersion);
    putKey(json_, "writer");
    putText(json_, "veldaview " + std::string(toolVersion));
    putKey(json_, "modifiedConditions");
    putObject([&] {
        putKey(json_, "criterion");
        putText(json_, "unique-cause");
        putKey(json_, "notEvaluated");
        putText(json_, "matches-either-value");
    });
    putFlag(json_, "counted", campaign_.counted);
}

// A rate of which there is nothing has 0 of 0; one that nothing was described for is left out.
void CampaignJson::putRates(const CoverageCounters& totals, const CoverageCounters& hits,
                            std::uint16_t types) {
    const ViewRates rates = viewRates(totals, hits, types);
    putKey(json_, "rates");
    putObject([&] {
        for (std::size_t place = 0; place < rates.size(); ++place) {
            if (rates[place].state != RateState::NotApplicable) {
                putRate(json_, viewRateNames[place], rates[place]);
            }
        }
    });
}

void CampaignJson::putFile(const CampaignFile& file) {
    const FileDescription& description = *file.description;
    putName(json_, "path", file.path);
    putNumber(json_, "key", description.fileKey);
    putNumber(json_, "checksum", description.checksum);
    if (description.sourceComment != nullptr) {
        putName(json_, "comment", nameText(description.sourceComment));
    }
    putArray("types", [&] {
        for (const auto& [bit, name] : typeNames) {
            if ((description.coverageTypes & bit) != 0) {
                putText(json_, name);
            }
        }
    });
    putRates(file.totals, file.hits, description.coverageTypes);
    putArray("services", [&] {
        for (std::uint32_t i = 0; i < file.serviceCount; ++i) {
            putObject(
                [&] { putService(campaign_.services[file.firstService + i], description.coverageTypes); });
        }
    });
}

void CampaignJson::putService(const CampaignService& service, std::uint16_t types) {
    const Service& items = *service.service;
    const ItemNumbers numbers = itemNumbers(service);
    putName(json_, "name", nameText(items.name));
    putNumber(json_, "line", items.firstLine);
    putNumber(json_, "lastLine", items.lastLine);
    putRates(items.counts, items.globalCovered, types);
    if (items.entry) {
        putKey(json_, "entry");
        putObject([&] { putItem(*items.entry, numbers.entry); });
    }
    putItems("exits", items.exits, numbers.exits, [&](const ExitEntry& exit) {
        putKey(json_, "kind");
        putText(json_, exitNames.at(static_cast<std::size_t>(exit.kind)));
    });
    putItems("calls", items.calls, numbers.calls,
             [&](const CallEntry& call) { putName(json_, "called", nameText(call.calledName)); });
    putItems("blocks", items.blocks, numbers.blocks, [&](const BlockEntry& block) {
        putKey(json_, "kind");
        putText(json_, blockNames.at(static_cast<std::size_t>(block.kind)));
        putName(json_, "label", block.label);
    });
    putConditions(service);
    putArray("decisions", [&] {
        for (const Composition& composition : items.compositions) {
            putObject([&] { putDecision(service, composition); });
        }
    });
}

bool isSecondOutcome(const Service& service, std::uint32_t place) {
    const ConditionEntry& condition = service.conditions[place];
    return condition.kind == ConditionKind::Outcome && !isTrueOutcome(service, condition);
}

void CampaignJson::putConditions(const CampaignService& service) {
    const Service& items = *service.service;
    conditionPlaces_.assign(items.conditions.size(), 0);
    std::uint32_t next = 0;
    putArray("conditions", [&] {
        for (std::uint32_t place = 0; place < items.conditions.size(); ++place) {
            if (items.conditions[place].kind == ConditionKind::Case || isSecondOutcome(items, place)) {
                continue;
            }
            conditionPlaces_[place] = next++;
            putObject([&] { putCondition(service, place); });
        }
    });
}

void CampaignJson::putCondition(const CampaignService& service, std::uint32_t place) {
    const Service& items = *service.service;
    const ConditionEntry& condition = items.conditions[place];
    const std::uint32_t number = itemNumbers(service).conditions + place;
    putName(json_, "text", unquoted(condition.text));
    putNumber(json_, "id", condition.id);
    putNumber(json_, "line", condition.startLine);
    putNumber(json_, "lastLine", condition.endLine);
    if (condition.kind == ConditionKind::Single) {
        putNumber(json_, "hits", campaign_.counts[number]);
        return;
    }
    putNumber(json_, "trueHits", campaign_.counts[number]);
    putNumber(json_, "falseHits", campaign_.counts[number + 1]);
}

void CampaignJson::putDecision(const CampaignService& service, const Composition& composition) {
    const CoverageItem& first = service.service->conditions[composition.firstCase];
    putNumber(json_, "line", first.startLine);
    putNumber(json_, "lastLine", first.endLine);
    putArray("conditions", [&] {
        for (const ModifiedCondition& modified : composition.modifiedConditions) {
            json_.Uint(conditionPlaces_[modified.basicCondition]);
        }
    });
    putCases(service, composition);
    putArray("modified", [&] {
        for (const ModifiedCondition& modified : composition.modifiedConditions) {
            putObject([&] { putModified(service, composition, modified); });
        }
    });
}

void CampaignJson::putCases(const CampaignService& service, const Composition& composition) {
    const Service& items = *service.service;
    const std::uint32_t number = itemNumbers(service).conditions + composition.firstCase;
    putArray("cases", [&] {
        for (std::uint32_t i = 0; i < composition.caseCount; ++i) {
            putObject([&] {
                putNumber(json_, "id", items.conditions[composition.firstCase + i].id);
                putName(json_, "values", caseValues(composition, i));
                putFlag(json_, "outcome", caseOutcome(composition, i));
                putNumber(json_, "hits", campaign_.counts[number + i]);
            });
        }
    });
}

void CampaignJson::putModified(const CampaignService& service, const Composition& composition,
                               const ModifiedCondition& modified) {
    putFlag(json_, "proven", isProven(service, modified, campaign_.counts));
    putArray("pairs", [&] {
        for (const VectorPair& pair : modified.pairs) {
            json_.StartArray();
            json_.Uint(caseNamedBy(*service.service, composition, pair.first));
            json_.Uint(caseNamedBy(*service.service, composition, pair.second));
            json_.EndArray();
        }
    });
    putArray("missing", [&] { putMissing(service, composition, modified); });
}

// What would prove the condition: the cases of its nearest pair that are not hit.
void CampaignJson::putMissing(const CampaignService& service, const Composition& composition,
                              const ModifiedCondition& modified) {
    const VectorPair* nearest = nearestPair(service, modified, campaign_.counts);
    if (nearest == nullptr) {
        return;
    }
    const std::uint32_t first = itemNumbers(service).conditions;
    for (const std::uint32_t place : {nearest->first, nearest->second}) {
        if (campaign_.counts[first + place] == 0) {
            json_.Uint(caseNamedBy(*service.service, composition, place));
        }
    }
}

void CampaignJson::putStrayParts() {
    putArray("strayParts", [&] {
        for (const StrayPart& part : campaign_.strayParts) {
            putObject([&] {
                putNumber(json_, "key", part.key.fileKey);
                putNumber(json_, "checksum", part.key.checksum);
                putFlag(json_, "stale", part.stale);
                if (!part.path.empty()) {
                    putName(json_, "path", part.path);
                }
                putNumber(json_, "times", part.times);
            });
        }
    });
}

// In the order of the traces; `order` is the place among those that add most.
void CampaignJson::putTests() {
    const std::vector<RankedTest> ranking = rankTests(campaign_);
    std::vector<std::size_t> places(ranking.size());
    for (std::size_t place = 0; place < ranking.size(); ++place) {
        places[ranking[place].test] = place;
    }
    putArray("tests", [&] {
        for (std::size_t test = 0; test < campaign_.tests.size(); ++test) {
            const RankedTest& ranked = ranking[places[test]];
            putObject([&] {
                putTest(json_, campaign_.tests[test]);
                putFlag(json_, "counted", campaign_.tests[test].counted);
                putNumber(json_, "items", ranked.items);
                putNumber(json_, "own", ranked.own);
                putNumber(json_, "order", places[test]);
                putNumber(json_, "gain", ranked.gain);
                putFlag(json_, "needed", ranked.needed);
            });
        }
    });
}

void CampaignJson::write() {
    putObject([&] {
        putHead();
        putRates(campaign_.totals, campaign_.hits, campaign_.types);
        putArray("files", [&] {
            Progress progress(translate("View", "Writing: %1 of %2", "%1 and %2 are numbers"),
                              campaign_.files.size());
            for (const CampaignFile& file : campaign_.files) {
                putObject([&] { putFile(file); });
                progress.step();
            }
        });
        putStrayParts();
        putTests();
    });
    stream_.Put('\n');
    stream_.Flush();
}

} // namespace

void exportJson(OutputFile& out, const Campaign& campaign) {
    CampaignJson(out, campaign).write();
}

} // namespace veldacov
