#include "view/page_parts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "report/rates.h"
#include "support/machine.h"
#include "view/html_text.h"

namespace veldacov {

namespace {

// Nothing is loaded but the two files beside the pages, and nothing is sent.
constexpr std::string_view policy =
    "default-src 'none'; style-src 'self'; script-src 'self'; base-uri 'none'; form-action 'none'";

std::string_view wayUp(PagePlace place) {
    return place == PagePlace::Top ? "" : "../";
}

void putNumbers(OutputFile& out, const ViewRate& rate) {
    out.putNumber(rate.hits);
    out.put(" of ");
    out.putNumber(rate.total);
}

// Below zero where there is none, so that it sorts behind or before all others.
std::string sortValue(const ViewRate& rate) {
    if (rate.state != RateState::Measured) {
        return "-1";
    }
    std::array<char, 32> text{};
    const double exact = static_cast<double>(rate.hits) / static_cast<double>(std::max(rate.total, 1U));
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), exact, std::chars_format::fixed, 6);
    return {text.data(), end.ptr}; // with a point, whatever the user's language has
}

void putBar(OutputFile& out, const ViewRate& rate) {
    out.put("<td class=bar>");
    if (rate.state == RateState::Measured) {
        const std::string width = rateText(rate);
        out.put(
            "<svg width=100 height=10 viewBox=\"0 0 100 10\" aria-hidden=true><rect class=track width=100 "
            "height=10 /><rect class=fill height=10 width=");
        putLine(out, width, " /></svg>");
    }
}

} // namespace

void beginPage(OutputFile& out, PagePlace place, std::string_view title) {
    const std::string_view up = wayUp(place);
    out.put("<!DOCTYPE html>\n<html lang=en>\n<head>\n<meta charset=utf-8>\n<meta "
            "http-equiv=\"Content-Security-Policy\" "
            "content=\"");
    putLine(out, policy, "\">");
    out.put("<meta name=viewport content=\"width=device-width, initial-scale=1\">\n<meta name=color-scheme "
            "content=\"light dark\">\n<meta name=referrer content=no-referrer>\n<meta name=generator "
            "content=veldaview>\n"
            "<title>");
    putHtml(out, title);
    putLine(out, " - veldaview</title>");
    putLine(out, "<link rel=stylesheet href=\"", up, "style.css\">");
    putLine(out, "<script src=\"", up, "script.js\" defer></script>\n</head>\n<body>");
    out.put("<a class=skip href=\"#main\">Skip to content</a>\n<header>\n<nav aria-label=Pages>");
    putLine(out, "<a href=\"", up, "index.html\">Files</a> <a href=\"", up,
            "tests.html\">Tests</a></nav>\n<h1>");
    putHtml(out, title);
    putLine(out, "</h1>\n</header>\n<main id=main>");
}

void endPage(OutputFile& out, PagePlace place, const PageSet& pages) {
    putLine(out, "</main>\n<footer><p>Made by veldaview ", toolVersion, " on <time>", pages.date,
            "</time> from ", static_cast<std::uint32_t>(pages.campaign.inputs.size()),
            " inputs: ", static_cast<std::uint32_t>(pages.campaign.tests.size()), " tests, ",
            static_cast<std::uint32_t>(pages.sources.size()), " sources. <a href=\"", wayUp(place),
            "index.html\">All files</a></p></footer>\n</body>\n</html>");
}

void beginTable(OutputFile& out, std::string_view caption, TableUse use, std::span<const Column> columns) {
    constexpr std::array<std::string_view, 3> classes = {"fixed", "sort", "\"sort find\""};
    constexpr std::array<std::string_view, 3> orders = {"", " aria-sort=ascending", " aria-sort=descending"};
    putLine(out, "<div class=wide tabindex=0 role=region aria-label=\"", caption,
            "\"><table class=", classes.at(static_cast<std::size_t>(use)), "><caption class=said>", caption,
            "</caption>");
    out.put("<thead><tr>");
    for (const Column& column : columns) {
        out.put(column.kind == ColumnKind::Number ? "<th scope=col class=n" : "<th scope=col");
        out.put(orders.at(static_cast<std::size_t>(column.order)));
        out.put('>');
        out.put(column.text);
    }
    putLine(out, "</thead>\n<tbody>");
}

void endTable(OutputFile& out) {
    putLine(out, "</tbody></table></div>");
}

void putRateCell(OutputFile& out, const ViewRate& rate) {
    const std::string text = rateText(rate);
    putLine(out, "<td class=n data-v=", sortValue(rate), ">", text,
            rate.state == RateState::Measured ? " %" : "");
}

void putRateCells(OutputFile& out, const ViewRate& rate) {
    putBar(out, rate);
    putRateCell(out, rate);
    out.put("<td class=n>");
    if (rate.state == RateState::Measured) {
        putNumbers(out, rate);
    }
}

void putRateTable(OutputFile& out, const CoverageCounters& totals, const CoverageCounters& hits,
                  std::uint16_t types) {
    const ViewRates rates = viewRates(totals, hits, types);
    constexpr std::array columns = {Column{"Rate"}, Column{"Bar"}, Column{"Hit", ColumnKind::Number},
                                    Column{"Items", ColumnKind::Number}};
    beginTable(out, "Rates", TableUse::Fixed, columns);
    const auto putRow = [&](std::string_view name, const ViewRate& rate) {
        putLine(out, "<tr><th scope=row>", name);
        putRateCells(out, rate);
    };
    for (std::size_t place = 0; place < rates.size(); ++place) {
        if (rates[place].state != RateState::NotApplicable) {
            putRow(viewRateNames[place], rates[place]);
        }
    }
    putRow("all items", sumOfRates(totals, hits, types));
    endTable(out);
}

std::string testTitle(const CampaignTest& test) {
    std::string title(shownName(test));
    if (test.knownBy == KnownBy::Name && test.number != -1) {
        title.append(" ").append(std::to_string(static_cast<std::uint32_t>(test.number)));
    }
    return title;
}

void putTestLink(OutputFile& out, PagePlace place, const PageSet& pages, std::size_t test) {
    out.put(place == PagePlace::Top ? "<a href=\"tests/" : "<a href=\"../tests/");
    out.put(pages.testPages[test]);
    out.put("\">");
    putHtml(out, testTitle(pages.campaign.tests[test]));
    out.put("</a>");
}

void putSourceLink(OutputFile& out, PagePlace place, const PageSet& pages, std::uint32_t source,
                   std::string_view anchor, std::string_view text) {
    out.put(place == PagePlace::Top ? "<a href=\"source/" : "<a href=\"../source/");
    out.put(pages.sourcePages[source]);
    if (!anchor.empty()) {
        out.put('#');
        out.put(anchor);
    }
    out.put("\">");
    putHtml(out, text);
    out.put("</a>");
}

bool isWorse(const ViewRate& left, const ViewRate& right) {
    if (left.total == 0 || right.total == 0) {
        return left.total > right.total;
    }
    const std::uint64_t leftPart = std::uint64_t{left.hits} * right.total;
    const std::uint64_t rightPart = std::uint64_t{right.hits} * left.total;
    return leftPart != rightPart ? leftPart < rightPart : left.total - left.hits > right.total - right.hits;
}

} // namespace veldacov
