// The page of all tests, with the curve of what they add up to, and a page for each test.

#include <algorithm>
#include <array>
#include <string>

#include "view/html_text.h"
#include "view/page_parts.h"
#include "view/pages.h"

namespace veldacov {

namespace {

// The drawing, in its own units.
constexpr std::uint32_t curveWidth = 600;
constexpr std::uint32_t curveHeight = 200;
// More points than this are not seen.
constexpr std::size_t mostPoints = 600;
// So many functions stand on the page of a test.
constexpr std::size_t mostFunctions = 1000;

ViewRate runningRate(const PageSet& pages, const RankedTest& ranked) {
    return sumOfRates(pages.campaign.totals, ranked.hits, pages.campaign.types);
}

void putPoint(OutputFile& out, const PageSet& pages, std::size_t place) {
    const ViewRate rate = runningRate(pages, pages.ranking[place]);
    const auto tests = static_cast<double>(pages.ranking.size());
    const double x = static_cast<double>(place + 1) * curveWidth / tests;
    const double part = rate.total == 0 ? 0 : static_cast<double>(rate.hits) / rate.total;
    out.put(' ');
    out.putRate(x);
    out.put(',');
    out.putRate(curveHeight * (1 - part));
}

void putCurve(OutputFile& out, const PageSet& pages) {
    const std::size_t tests = pages.ranking.size();
    const std::string last = rateText(runningRate(pages, pages.ranking.back()));
    putLine(out,
            "<figure><svg class=curve viewBox=\"-45 -10 660 245\" role=img aria-label=\"Share of all items "
            "that are hit "
            "after each test: ",
            rateText(runningRate(pages, pages.ranking.front())), " % after the first, ", last, " % after ",
            static_cast<std::uint32_t>(tests), "\">");
    for (std::uint32_t percent = 0; percent <= 100; percent += 25) {
        const std::uint32_t y = curveHeight - percent * 2;
        putLine(out, "<line class=grid x1=0 x2=600 y1=", y, " y2=", y, " /><text x=-6 y=", y + 4,
                " text-anchor=end>", percent, " %</text>");
    }
    putLine(out, "<text x=0 y=222>0</text><text x=600 y=222 text-anchor=end>",
            static_cast<std::uint32_t>(tests), tests == 1 ? " test" : " tests", "</text>");
    out.put("<polyline points=\"0,200");
    const std::size_t step = tests / mostPoints + 1;
    for (std::size_t place = 0; place + 1 < tests; place += step) {
        putPoint(out, pages, place);
    }
    putPoint(out, pages, tests - 1);
    putLine(out, "\" /></svg>\n<figcaption>What the tests add up to, in this order: share of all "
                 "items.</figcaption></figure>");
}

void putTestRow(OutputFile& out, const PageSet& pages, std::size_t place) {
    const RankedTest& ranked = pages.ranking[place];
    const CampaignTest& test = pages.campaign.tests[ranked.test];
    putLine(out, "<tr><td class=n>", static_cast<std::uint32_t>(place + 1), "<th scope=row>");
    putTestLink(out, PagePlace::Top, pages, ranked.test);
    out.put("<td>");
    if (test.date != nullptr) {
        putHtml(out, nameText(test.date));
    }
    for (const std::uint32_t number : {ranked.items, ranked.own, ranked.gain}) {
        out.put("<td class=n>");
        out.putNumber(number);
    }
    putRateCell(out, runningRate(pages, ranked));
    putLine(out, "<td>", ranked.needed ? "needed" : "redundant");
}

// What a test does in a function.
struct ReachedFunction {
    std::uint32_t service = 0; // place in the campaign
    std::uint32_t items = 0;
    std::uint32_t own = 0;
};

std::vector<ReachedFunction> functionsOf(const Campaign& campaign, std::size_t test,
                                         const std::vector<bool>& own) {
    std::vector<ReachedFunction> functions;
    std::uint32_t end = 0; // of the numbers of the last function
    std::uint32_t service = 0;
    for (const std::uint32_t number : campaign.tests[test].items) {
        if (functions.empty() || number >= end) {
            const auto behind =
                std::upper_bound(campaign.services.begin() + service, campaign.services.end(), number,
                                 [](std::uint32_t wanted, const CampaignService& candidate) {
                                     return wanted < candidate.firstItem;
                                 });
            service = static_cast<std::uint32_t>(behind - campaign.services.begin()) - 1;
            end = itemNumbers(campaign.services[service]).end;
            functions.push_back({service});
        }
        ++functions.back().items;
        functions.back().own += own[number] ? 1 : 0;
    }
    std::stable_sort(
        functions.begin(), functions.end(),
        [](const ReachedFunction& left, const ReachedFunction& right) { return left.own > right.own; });
    return functions;
}

void putFunctionRow(OutputFile& out, const PageSet& pages, const ReachedFunction& function) {
    const CampaignService& service = pages.campaign.services[function.service];
    const std::uint32_t source = pages.sourceOfFile[service.file];
    const ItemNumbers numbers = itemNumbers(service);
    const Service& items = *service.service;
    const std::uint32_t line = items.entry ? items.entry->startLine : items.firstLine;
    out.put("<tr><th scope=row>");
    putSourceLink(out, PagePlace::Below, pages, source, "L" + std::to_string(line), nameText(items.name));
    out.put("<td>");
    putHtml(out, pages.sources[source].path);
    putRateCells(out, {RateState::Measured, numbers.end - numbers.entry, function.items});
    putLine(out, "<td class=n>", function.own);
}

void putFacts(OutputFile& out, const CampaignTest& test, const RankedTest& ranked, std::size_t place) {
    out.put("<dl class=facts>");
    if (test.number != -1) {
        putLine(out, "<dt>Number<dd>", static_cast<std::uint32_t>(test.number));
    }
    if (test.serviceNumber != -1) {
        putLine(out, "<dt>Service number<dd>", static_cast<std::uint32_t>(test.serviceNumber));
    }
    if (test.date != nullptr) {
        out.put("<dt>Date<dd>");
        putHtml(out, nameText(test.date));
    }
    putLine(out, "<dt>Items it hits<dd>", ranked.items);
    putLine(out, "<dt>Own items<dd>", ranked.own);
    putLine(out, "<dt>Gain<dd>", ranked.gain, " as number <a href=\"../tests.html\">",
            static_cast<std::uint32_t>(place + 1), "</a> in the order");
    putLine(out, "<dt>Needed<dd>", ranked.needed ? "yes" : "no: others hit all of it", "</dl>");
}

} // namespace

void writeTestsPage(OutputFile& out, const PageSet& pages) {
    beginPage(out, PagePlace::Top, "Tests");
    if (pages.ranking.empty()) {
        putLine(out, "<p>The traces have no test.</p>");
        endPage(out, PagePlace::Top, pages);
        return;
    }
    putLine(out, "<p>In the order of what each adds: next comes the test with most items that none before it "
                 "hits. <strong>Own</strong> "
                 "items are hit by no other test. The <strong>needed</strong> tests hit together all that is "
                 "hit.</p>");
    putCurve(out, pages);
    constexpr std::array columns = {Column{"Place", ColumnKind::Number, ColumnOrder::Ascending},
                                    Column{"Test"},
                                    Column{"Date"},
                                    Column{"Items", ColumnKind::Number},
                                    Column{"Own", ColumnKind::Number},
                                    Column{"Gain", ColumnKind::Number},
                                    Column{"So far", ColumnKind::Number},
                                    Column{"Needed"}};
    beginTable(out, "Tests, in the order of what they add", TableUse::SortedAndFiltered, columns);
    for (std::size_t place = 0; place < pages.ranking.size(); ++place) {
        putTestRow(out, pages, place);
    }
    endTable(out);
    endPage(out, PagePlace::Top, pages);
}

void writeTestPage(OutputFile& out, const PageSet& pages, std::size_t test, const std::vector<bool>& own) {
    const Campaign& campaign = pages.campaign;
    const RankedTest& ranked = pages.ranking[pages.rankOfTest[test]];
    const std::vector<ReachedFunction> functions = functionsOf(campaign, test, own);
    beginPage(out, PagePlace::Below, testTitle(campaign.tests[test]));
    putFacts(out, campaign.tests[test], ranked, pages.rankOfTest[test]);
    putLine(out, "<h2>Functions it reaches: ", static_cast<std::uint32_t>(functions.size()), "</h2>");
    putLine(out, "<p class=hint>Cases of decisions count, conditions to be proven do not: a test may do its "
                 "part for one.</p>");
    if (functions.size() > mostFunctions) {
        putLine(out, "<p class=note>The first ", static_cast<std::uint32_t>(mostFunctions),
                ", those with most items of its own before all.</p>");
    }
    constexpr std::array columns = {Column{"Function"},
                                    Column{"File"},
                                    Column{"Bar"},
                                    Column{"Hit by it", ColumnKind::Number},
                                    Column{"Items", ColumnKind::Number},
                                    Column{"Own", ColumnKind::Number, ColumnOrder::Descending}};
    beginTable(out, "Functions that the test reaches", TableUse::SortedAndFiltered, columns);
    std::for_each_n(functions.begin(), std::min(functions.size(), mostFunctions),
                    [&](const ReachedFunction& function) { putFunctionRow(out, pages, function); });
    endTable(out);
    endPage(out, PagePlace::Below, pages);
}

} // namespace veldacov
