#pragma once

// What the page of a source is made of: the items that begin on each of its lines, what of them is open, which tests hit
// them, and the functions. The descriptions of the source, be there several, stand together.

#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "view/campaign.h"
#include "view/evidence.h"
#include "view/view_rates.h"

namespace veldacov {

// Something that is shown below a line. type::modifiedConditions: a decision, by its place in the compositions.
struct LineItem {
    std::uint32_t line = 0;
    std::uint32_t service = 0; // place in the campaign
    std::uint32_t place = 0;   // in the list of its kind
    std::uint16_t coverageType = 0;
    // What is to do: 0, or 1 for an item that is not hit; of a decision the conditions that are not proven.
    std::uint16_t open = 0;
};
using LineItems = std::vector<LineItem>;
using ItemRange = std::pair<LineItems::const_iterator, LineItems::const_iterator>;

// Which tests hit an item: how many, and the first of them.
struct TestsOfItem {
    static constexpr std::size_t mostFirst = 3;
    std::uint32_t count = 0;
    std::array<std::uint32_t, mostFirst> first{};
};

struct FunctionRow {
    std::uint32_t service = 0; // place in the campaign
    std::string anchor;
    std::uint32_t line = 0;
    ViewRate rate;
    std::uint32_t open = 0;
    std::uint32_t firstOpenLine = std::numeric_limits<std::uint32_t>::max();
};

// Refers to the campaign and the source, which have to live longer. Costs a look at every test for each description of
// the source, and memory for its items.
class SourceItems {
public:
    SourceItems(const Campaign& campaign, const Source& source);

    [[nodiscard]] const LineItems& byLine() const { return items_; }
    [[nodiscard]] const std::vector<FunctionRow>& functions() const { return functions_; } // by line
    [[nodiscard]] const Service& serviceOf(const LineItem& item) const {
        return *campaign_.services[item.service].service;
    }
    // The item's place in the campaign's counts; of a decision, that of its first case.
    [[nodiscard]] std::uint32_t numberOf(const LineItem& item) const;
    // The tests that hit the item of this number; `item` says only which description has it.
    [[nodiscard]] const TestsOfItem& testsOf(const LineItem& item, std::uint32_t number) const;

private:
    void collectService(std::uint32_t service, std::uint16_t types);
    void collectConditions(std::uint32_t service, std::uint16_t types);
    void gatherTests();
    void findFunctions();
    void addFunction(std::uint32_t service, std::uint16_t types);
    std::string anchorOf(std::string_view name);
    [[nodiscard]] std::uint16_t openOf(const LineItem& item) const;
    // Which of the descriptions of the source has a service.
    [[nodiscard]] std::size_t descriptionOf(std::uint32_t service) const;

    const Campaign& campaign_;
    const Source& source_;
    LineItems items_;
    std::vector<std::vector<TestsOfItem>> tests_; // by description of the source, and number in it
    std::vector<FunctionRow> functions_;
    std::set<std::string, std::less<>> anchors_;
};

} // namespace veldacov
