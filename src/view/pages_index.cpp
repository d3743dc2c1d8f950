// The first page: the rates of the campaign, folders and files with the worst first, functions that have most to do, and what
// was left out.

#include <algorithm>
#include <array>
#include <map>
#include <numeric>
#include <string>

#include "support/files.h"
#include "view/html_text.h"
#include "view/page_parts.h"
#include "view/pages.h"

namespace veldacov {

namespace {

// Traces of another program may have thousands of parts that nothing describes.
constexpr std::size_t mostPartsTold = 100;
// A longer list is opened by who wants it.
constexpr std::size_t mostOpened = 6;

// The counters of some sources together.
struct Sum {
    CoverageCounters totals{};
    CoverageCounters hits{};
    std::uint16_t types = 0;
    std::uint32_t files = 0;

    [[nodiscard]] ViewRate all() const { return sumOfRates(totals, hits, types); }
};

void add(Sum& sum, const Campaign& campaign, const Source& source) {
    for (const std::uint32_t place : source.files) {
        const CampaignFile& file = campaign.files[place];
        sumCounters(sum.totals, file.totals);
        sumCounters(sum.hits, file.hits);
        sum.types |= file.description->coverageTypes;
    }
    ++sum.files;
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

void putHead(OutputFile& out, const PageSet& pages, std::string_view caption, std::string_view first) {
    std::vector<Column> columns = {{first},
                                   {"Bar"},
                                   {"All items", ColumnKind::Number, ColumnOrder::Ascending},
                                   {"Numbers", ColumnKind::Number}};
    for (const std::size_t rate : pages.rates) {
        columns.push_back({viewRateNames[rate], ColumnKind::Number});
    }
    beginTable(out, caption, TableUse::SortedAndFiltered, columns);
}

void putRates(OutputFile& out, const PageSet& pages, const Sum& sum) {
    putRateCells(out, sum.all());
    const ViewRates rates = viewRates(sum.totals, sum.hits, sum.types);
    for (const std::size_t rate : pages.rates) {
        putRateCell(out, rates[rate]);
    }
}

void putFolders(OutputFile& out, const PageSet& pages) {
    std::map<std::string, Sum> folders;
    for (const Source& source : pages.sources) {
        add(folders[folderOf(source.path)], pages.campaign, source);
    }
    if (folders.size() < 2) {
        return;
    }
    std::vector<const std::pair<const std::string, Sum>*> rows;
    rows.reserve(folders.size());
    for (const auto& folder : folders) {
        rows.push_back(&folder);
    }
    std::stable_sort(rows.begin(), rows.end(), [](const auto* left, const auto* right) {
        return isWorse(left->second.all(), right->second.all());
    });
    out.put("<h2 id=folders>Folders</h2>\n");
    putHead(out, pages, "Folders, the worst first", "Folder");
    for (const auto* row : rows) {
        out.put(R"(<tr><th scope=row><a href="#files" data-filter=")");
        putHtml(out, row->first == "." ? "" : row->first);
        out.put("\">");
        putHtml(out, row->first);
        putLine(out, "</a> <small>", row->second.files, row->second.files == 1 ? " file" : " files",
                "</small>");
        putRates(out, pages, row->second);
    }
    endTable(out);
}

std::string_view textNote(SourceText text) {
    return text == SourceText::Missing   ? " <em class=tag>no text</em>"
           : text == SourceText::Changed ? " <em class=tag>changed</em>"
                                         : "";
}

void putFiles(OutputFile& out, const PageSet& pages) {
    std::vector<Sum> sums(pages.sources.size());
    for (std::size_t place = 0; place < sums.size(); ++place) {
        add(sums[place], pages.campaign, pages.sources[place]);
    }
    std::vector<std::uint32_t> rows(sums.size());
    std::iota(rows.begin(), rows.end(), 0U);
    std::stable_sort(rows.begin(), rows.end(), [&](std::uint32_t left, std::uint32_t right) {
        return isWorse(sums[left].all(), sums[right].all());
    });
    out.put("<h2 id=files>Files</h2>\n");
    putHead(out, pages, "Files, the worst first", "File");
    for (const std::uint32_t row : rows) {
        out.put("<tr><th scope=row>");
        putSourceLink(out, PagePlace::Top, pages, row, "", pages.sources[row].path);
        putLine(out, textNote(pages.texts[row]));
        putRates(out, pages, sums[row]);
    }
    endTable(out);
}

void putOpenFunctions(OutputFile& out, const PageSet& pages) {
    if (pages.openFunctions.empty()) {
        return;
    }
    out.put("<h2 id=first>Where to look first</h2>\n<p class=hint>Functions that tests reach, and in which "
            "most is open; conditions to be proven count, single cases of decisions do not.</p>\n");
    constexpr std::array columns = {Column{"Function"},
                                    Column{"File"},
                                    Column{"Bar"},
                                    Column{"Hit", ColumnKind::Number},
                                    Column{"Items", ColumnKind::Number},
                                    Column{"Open", ColumnKind::Number, ColumnOrder::Descending}};
    beginTable(out, "Functions with most that is open", TableUse::Sorted, columns);
    for (const OpenFunction& function : pages.openFunctions) {
        out.put("<tr><th scope=row>");
        putSourceLink(out, PagePlace::Top, pages, function.source, function.anchor,
                      nameText(function.service->name));
        out.put("<td>");
        putHtml(out, pages.sources[function.source].path);
        putRateCells(out, function.rate);
        putLine(out, "<td class=n>", function.open);
    }
    endTable(out);
}

void putPart(OutputFile& out, const StrayPart& part) {
    if (part.stale) {
        out.put("<li><strong>Another build</strong> of <code>");
        putHtml(out, part.path);
        out.put("</code>: ");
    } else {
        out.put("<li><strong>Not described</strong>: ");
    }
    putLine(out, "key <code>", hexText(part.key.fileKey).view(), "</code>, checksum <code>",
            hexText(part.key.checksum).view(), "</code>, ", static_cast<std::uint32_t>(part.times),
            part.times == 1 ? " part of the traces" : " parts of the traces");
}

void putSourcesThatAre(OutputFile& out, const PageSet& pages, SourceText text, std::string_view what) {
    for (std::uint32_t source = 0; source < pages.sources.size(); ++source) {
        if (pages.texts[source] == text) {
            putLine(out, "<li><strong>", what, "</strong>: ");
            putSourceLink(out, PagePlace::Top, pages, source, "", pages.sources[source].path);
            putLine(out, "");
        }
    }
}

void putLeftOut(OutputFile& out, const PageSet& pages) {
    const auto& parts = pages.campaign.strayParts;
    const auto otherTexts = static_cast<std::size_t>(std::count_if(
        pages.texts.begin(), pages.texts.end(), [](SourceText text) { return text != SourceText::Same; }));
    const std::size_t things = parts.size() + otherTexts + (pages.campaign.tests.empty() ? 1 : 0);
    if (things == 0) {
        putLine(out, "<p>Nothing was left out: all parts of the traces belong to these builds, and all "
                     "sources are there "
                     "as they were.</p>");
        return;
    }
    out.put("<h2 id=leftout>What was left out</h2>\n");
    putLine(out, things <= mostOpened ? "<details open>" : "<details>", "<summary>",
            static_cast<std::uint32_t>(things), things == 1 ? " thing" : " things",
            " to know before the numbers are believed</summary>\n<ul class=leftout>");
    if (pages.campaign.tests.empty()) {
        putLine(out, "<li><strong>No test</strong>: nothing counts as hit.");
    }
    std::for_each_n(parts.begin(), std::min(mostPartsTold, parts.size()),
                    [&](const StrayPart& part) { putPart(out, part); });
    if (parts.size() > mostPartsTold) {
        putLine(out, "<li>and ", static_cast<std::uint32_t>(parts.size() - mostPartsTold), " more.");
    }
    putSourcesThatAre(out, pages, SourceText::Missing, "Source not there");
    putSourcesThatAre(out, pages, SourceText::Changed, "Source changed since it was described");
    putLine(out, "</ul></details>");
}

} // namespace

void writeIndexPage(OutputFile& out, const PageSet& pages) {
    const Campaign& campaign = pages.campaign;
    beginPage(out, PagePlace::Top, "Coverage");
    putRateTable(out, campaign.totals, campaign.hits, campaign.types);
    putLeftOut(out, pages);
    putOpenFunctions(out, pages);
    putFolders(out, pages);
    putFiles(out, pages);
    endPage(out, PagePlace::Top, pages);
}

} // namespace veldacov
