#pragma once

// What pages are made of: their frame, bars, rates, names of tests.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "support/output.h"
#include "view/pages.h"
#include "view/view_rates.h"

namespace veldacov {

enum class PagePlace : std::uint8_t { Top, Below }; // in the folder itself, or in one of its folders

// From the document type to the begin of what is the page's own: policy, title, links, heading. `title` is bytes.
void beginPage(OutputFile& out, PagePlace place, std::string_view title);
// The run, and the end of the document.
void endPage(OutputFile& out, PagePlace place, const PageSet& pages);

// A table in a box of its own, where it may scroll, up to the begin of its body. Texts are those of this program.
enum class ColumnKind : std::uint8_t { Text, Number };
enum class ColumnOrder : std::uint8_t { None, Ascending, Descending };
struct Column {
    std::string_view text;
    ColumnKind kind = ColumnKind::Text;
    ColumnOrder order = ColumnOrder::None; // in which the rows stand
};
// What the script does to a table.
enum class TableUse : std::uint8_t { Fixed, Sorted, SortedAndFiltered };
void beginTable(OutputFile& out, std::string_view caption, TableUse use, std::span<const Column> columns);
void endTable(OutputFile& out);

// A cell with a bar, one with the percentage, and one with the numbers behind it.
void putRateCells(OutputFile& out, const ViewRate& rate);
// A cell with the percentage.
void putRateCell(OutputFile& out, const ViewRate& rate);
// The rates of counters, as a table of its own.
void putRateTable(OutputFile& out, const CoverageCounters& totals, const CoverageCounters& hits,
                  std::uint16_t types);

// What names a test to people: its name and its number. Bytes.
std::string testTitle(const CampaignTest& test);
// A link to the page of a test, from a page at the place.
void putTestLink(OutputFile& out, PagePlace place, const PageSet& pages, std::size_t test);
// A link to the page of a source, or to an anchor on it.
void putSourceLink(OutputFile& out, PagePlace place, const PageSet& pages, std::uint32_t source,
                   std::string_view anchor, std::string_view text);

// Whether the first rate is worse than the second: less of it is hit, of equal fractions more is not hit. Rates of which
// there is nothing come last.
bool isWorse(const ViewRate& left, const ViewRate& right);

} // namespace veldacov
