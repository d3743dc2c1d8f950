#include "view/source_items.h"

#include <algorithm>
#include <utility>

#include "support/machine.h"

namespace veldacov {

namespace {

// Cases of decisions apart: that all of them are hit is nothing that most ask for, and there may be thousands.
constexpr std::uint16_t withoutCases(std::uint16_t types) {
    return static_cast<std::uint16_t>(types & ~type::compoundConditions);
}

} // namespace

SourceItems::SourceItems(const Campaign& campaign, const Source& source)
    : campaign_(campaign), source_(source) {
    for (const std::uint32_t file : source_.files) {
        const CampaignFile& described = campaign_.files[file];
        for (std::uint32_t i = 0; i < described.serviceCount; ++i) {
            collectService(described.firstService + i, described.description->coverageTypes);
        }
    }
    for (LineItem& item : items_) {
        item.open = openOf(item);
    }
    std::stable_sort(items_.begin(), items_.end(),
                     [](const LineItem& left, const LineItem& right) { return left.line < right.line; });
    gatherTests();
    findFunctions();
}

void SourceItems::collectService(std::uint32_t service, std::uint16_t types) {
    const Service& items = *campaign_.services[service].service;
    const auto add = [&](const CoverageItem& item, std::uint32_t place, std::uint16_t coverageType) {
        if ((types & coverageType) != 0) {
            items_.push_back({item.startLine, service, place, coverageType});
        }
    };
    const auto addAll = [&](const auto& list, auto typeOf) {
        for (std::uint32_t place = 0; place < list.size(); ++place) {
            add(list[place], place, typeOf(list[place]));
        }
    };
    if (items.entry) {
        add(*items.entry, 0, type::procedures);
    }
    addAll(items.exits, [](const ExitEntry&) { return type::exits; });
    addAll(items.blocks, [](const BlockEntry& block) { return typeOfBlock(block.kind); });
    addAll(items.calls, [](const CallEntry&) { return type::calls; });
    collectConditions(service, types);
}

void SourceItems::collectConditions(std::uint32_t service, std::uint16_t types) {
    const Service& items = *campaign_.services[service].service;
    if ((types & type::basicConditions) != 0) {
        for (std::uint32_t place = 0; place < items.conditions.size(); ++place) {
            if (items.conditions[place].kind != ConditionKind::Case) {
                items_.push_back({items.conditions[place].startLine, service, place, type::basicConditions});
            }
        }
    }
    if ((types & type::modifiedConditions) != 0) {
        for (std::uint32_t place = 0; place < items.compositions.size(); ++place) {
            const CoverageItem& firstCase = items.conditions[items.compositions[place].firstCase];
            items_.push_back({firstCase.startLine, service, place, type::modifiedConditions});
        }
    }
}

// Looks at what tests hit between two numbers, which is all there is of a description.
void SourceItems::gatherTests() {
    for (const std::uint32_t file : source_.files) {
        const CampaignFile& described = campaign_.files[file];
        const CampaignService& last = campaign_.services[described.firstService + described.serviceCount - 1];
        const std::uint32_t first = campaign_.services[described.firstService].firstItem;
        const std::uint32_t end = itemNumbers(last).end;
        std::vector<TestsOfItem>& tests = tests_.emplace_back(end - first);
        for (std::uint32_t test = 0; test < campaign_.tests.size(); ++test) {
            auto item = campaign_.tests[test].items.begin();
            const auto behind = campaign_.tests[test].items.end();
            item.equalorlarger(first);
            for (; item != behind && *item < end; ++item) {
                TestsOfItem& hit = tests[*item - first];
                if (hit.count < TestsOfItem::mostFirst) {
                    hit.first[hit.count] = test;
                }
                ++hit.count;
            }
        }
    }
}

std::size_t SourceItems::descriptionOf(std::uint32_t service) const {
    const auto found =
        std::find(source_.files.begin(), source_.files.end(), campaign_.services[service].file);
    return static_cast<std::size_t>(found - source_.files.begin());
}

const TestsOfItem& SourceItems::testsOf(const LineItem& item, std::uint32_t number) const {
    const CampaignFile& file = campaign_.files[campaign_.services[item.service].file];
    return tests_[descriptionOf(item.service)][number - campaign_.services[file.firstService].firstItem];
}

std::uint16_t SourceItems::openOf(const LineItem& item) const {
    if (item.coverageType != type::modifiedConditions) {
        return campaign_.counts[numberOf(item)] == 0 ? 1 : 0;
    }
    const auto& conditions = serviceOf(item).compositions[item.place].modifiedConditions;
    return static_cast<std::uint16_t>(
        std::count_if(conditions.begin(), conditions.end(), [&](const ModifiedCondition& modified) {
            return !isProven(campaign_.services[item.service], modified, campaign_.counts);
        }));
}

std::uint32_t SourceItems::numberOf(const LineItem& item) const {
    const ItemNumbers numbers = itemNumbers(campaign_.services[item.service]);
    switch (item.coverageType) {
    case type::procedures: return numbers.entry;
    case type::exits: return numbers.exits + item.place;
    case type::calls: return numbers.calls + item.place;
    case type::basicConditions: return numbers.conditions + item.place;
    case type::modifiedConditions:
        return numbers.conditions + serviceOf(item).compositions[item.place].firstCase;
    default: return numbers.blocks + item.place;
    }
}

// "f-" and the name, where it is one of C; others have numbers.
std::string SourceItems::anchorOf(std::string_view name) {
    const auto isWordCharacter = [](char character) {
        return (upperCase(character) >= 'A' && upperCase(character) <= 'Z') || character == '_' ||
               decimalDigit(character) >= 0;
    };
    std::string anchor = "f-" + std::string(name);
    if (name.empty() || name.size() > 100 || !std::all_of(name.begin(), name.end(), isWordCharacter) ||
        !anchors_.insert(anchor).second) {
        anchor = "f." + std::to_string(functions_.size());
    }
    return anchor;
}

void SourceItems::findFunctions() {
    std::vector<std::size_t> firstRows; // by description
    for (const std::uint32_t file : source_.files) {
        const CampaignFile& described = campaign_.files[file];
        const std::uint16_t types = withoutCases(described.description->coverageTypes);
        firstRows.push_back(functions_.size());
        for (std::uint32_t i = 0; i < described.serviceCount; ++i) {
            addFunction(described.firstService + i, types);
        }
    }
    for (const LineItem& item : items_) {
        if (item.open == 0 || item.line == 0) {
            continue;
        }
        const std::size_t description = descriptionOf(item.service);
        const std::uint32_t firstService = campaign_.files[source_.files[description]].firstService;
        FunctionRow& row = functions_[firstRows[description] + item.service - firstService];
        row.firstOpenLine = std::min(row.firstOpenLine, item.line);
    }
    std::stable_sort(
        functions_.begin(), functions_.end(),
        [](const FunctionRow& left, const FunctionRow& right) { return left.line < right.line; });
}

void SourceItems::addFunction(std::uint32_t service, std::uint16_t types) {
    const Service& items = *campaign_.services[service].service;
    FunctionRow row;
    row.service = service;
    row.anchor = anchorOf(nameText(items.name));
    row.line = items.entry ? items.entry->startLine : items.firstLine;
    row.rate = sumOfRates(items.counts, items.globalCovered, types);
    row.open = row.rate.total - row.rate.hits;
    functions_.push_back(std::move(row));
}

} // namespace veldacov
