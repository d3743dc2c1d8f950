// The page of a source: rates, functions, and the lines with what is known of them.
//
// A line with items is a <details> of its own, with the line itself as summary: what is below it opens with a click or the
// space bar, without a script. Its mark says what was hit of the items that begin there, and of the conditions of its
// decisions which are proven.

#include <algorithm>
#include <array>
#include <limits>
#include <set>
#include <string>
#include <utility>

#include "description/conditions.h"
#include "support/files.h"
#include "support/machine.h"
#include "view/decision_words.h"
#include "view/html_text.h"
#include "view/page_parts.h"
#include "view/pages.h"

namespace veldacov {

namespace {

// Of a line of source, so much is shown.
constexpr std::size_t longestShown = 4000;
// Lines of source stand in pieces of so many.
constexpr std::uint32_t linesPerPiece = 256;
// So many lines stand in the list of what is to do.
constexpr std::size_t mostToDo = 500;
// So many functions stand on the index.
constexpr std::size_t mostOpenFunctions = 20;
// So many things that are not hit are named beside a line.
constexpr std::size_t mostNamed = 3;

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

// Which tests hit an item.
struct TestsOfItem {
    static constexpr std::size_t mostNamed = 3;
    std::uint32_t count = 0;
    std::array<std::uint32_t, mostNamed> first{};
};

enum class Mark : std::uint8_t { None, Hit, Partly, NotHit };
struct MarkText {
    std::string_view style; // the class of the line
    std::string_view sign;
    std::string_view name;
};
// By Mark. A fifth one is to come for what is justified: "j".
constexpr std::array<MarkText, 4> markTexts = {
    {{"n", "", ""}, {"h", "✓", "hit"}, {"p", "◐", "partly hit"}, {"x", "✗", "not hit"}}};
constexpr const MarkText& textOf(Mark mark) {
    return markTexts[static_cast<std::size_t>(mark)];
}

struct FunctionRow {
    std::uint32_t service = 0; // place in the campaign
    std::string anchor;
    std::uint32_t line = 0;
    ViewRate rate;
    std::uint32_t open = 0;
    std::uint32_t firstOpenLine = std::numeric_limits<std::uint32_t>::max();
};

// Cases of decisions apart: that all of them are hit is nothing that most ask for, and there may be thousands.
constexpr std::uint16_t withoutCases(std::uint16_t types) {
    return static_cast<std::uint16_t>(types & ~type::compoundConditions);
}

class SourcePage {
public:
    SourcePage(OutputFile& out, PageSet& pages, std::uint32_t source)
        : out_(out), pages_(pages), campaign_(pages.campaign), place_(source),
          source_(pages.sources[source]) {}

    void write() {
        collect();
        gatherTests();
        evidenceOf(campaign_, source_, campaign_.counts, evidence_);
        findFunctions();
        openText();
        beginPage(out_, PagePlace::Below, source_.path);
        putHead();
        putFunctions();
        putToDo();
        putLines();
        endPage(out_, PagePlace::Below, pages_);
    }

private:
    // What the page is made of.
    void collect();
    void collectService(std::uint32_t service, std::uint16_t types);
    void collectConditions(std::uint32_t service, std::uint16_t types);
    void gatherTests();
    void findFunctions();
    void addFunction(std::uint32_t service, std::uint16_t types);
    void noteOpenFunctions();
    void openText();
    std::string anchorOf(std::string_view name);

    // The page.
    void putHead();
    void putRates();
    void putTextNote();
    void putLegend();
    void putFunctions();
    void putToDo();
    void putFunctionRow(const FunctionRow& row);
    void putSourceBegin();
    void putLines();
    void putElsewhere(ItemRange withoutLine);
    void putTextLine(std::string_view text);
    void putFunctionHeads();
    void putFunctionHead(const FunctionRow& row);
    void putLine(std::uint32_t line, ItemRange items, std::string_view text);
    void putPlainNumber(std::uint32_t line);
    void putText(std::string_view text);
    void putNames(ItemRange items);
    void putUnproven(const LineItem& decision);
    void putItems(ItemRange items);
    void putItemRow(const LineItem& item);
    void putItemName(const LineItem& item);
    void putMissing(const LineItem& item);
    void putDecision(const LineItem& item, std::uint32_t ofLine);
    void putTests(const LineItem& item, std::uint32_t number);

    [[nodiscard]] const Service& serviceOf(const LineItem& item) const {
        return *campaign_.services[item.service].service;
    }
    [[nodiscard]] std::uint32_t numberOf(const LineItem& item) const;
    [[nodiscard]] Mark markOf(ItemRange items, bool hasEvidence) const;
    [[nodiscard]] std::uint16_t openOf(const LineItem& item) const;
    // Which of the descriptions of the source has a service.
    [[nodiscard]] std::size_t descriptionOf(std::uint32_t service) const;
    [[nodiscard]] const TestsOfItem& testsOf(const LineItem& item, std::uint32_t number) const;
    ItemRange itemsUntil(std::uint32_t line);

    OutputFile& out_;
    PageSet& pages_;
    const Campaign& campaign_;
    std::uint32_t place_;
    const Source& source_;
    LineItems items_;
    std::vector<std::vector<TestsOfItem>> tests_; // by description of the source, and number in it
    SourceEvidence evidence_;
    std::vector<FunctionRow> functions_; // by line
    std::set<std::string, std::less<>> anchors_;
    InputFile text_;
    // How far the lines are written.
    LineItems::const_iterator nextItem_;
    std::vector<LineEvidence>::const_iterator nextEvidence_;
    std::vector<FunctionRow>::const_iterator nextFunction_;
    std::uint32_t line_ = 0;
    std::uint32_t linesInPiece_ = 0;
};

// ---------------------------------------------------------------------------------------------------------------------
// What the page is made of

void SourcePage::collect() {
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
}

void SourcePage::collectService(std::uint32_t service, std::uint16_t types) {
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

void SourcePage::collectConditions(std::uint32_t service, std::uint16_t types) {
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
void SourcePage::gatherTests() {
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
                if (hit.count < TestsOfItem::mostNamed) {
                    hit.first[hit.count] = test;
                }
                ++hit.count;
            }
        }
    }
}

std::size_t SourcePage::descriptionOf(std::uint32_t service) const {
    const auto found =
        std::find(source_.files.begin(), source_.files.end(), campaign_.services[service].file);
    return static_cast<std::size_t>(found - source_.files.begin());
}

const TestsOfItem& SourcePage::testsOf(const LineItem& item, std::uint32_t number) const {
    const CampaignFile& file = campaign_.files[campaign_.services[item.service].file];
    return tests_[descriptionOf(item.service)][number - campaign_.services[file.firstService].firstItem];
}

std::uint16_t SourcePage::openOf(const LineItem& item) const {
    if (item.coverageType != type::modifiedConditions) {
        return campaign_.counts[numberOf(item)] == 0 ? 1 : 0;
    }
    const auto& conditions = serviceOf(item).compositions[item.place].modifiedConditions;
    return static_cast<std::uint16_t>(
        std::count_if(conditions.begin(), conditions.end(), [&](const ModifiedCondition& modified) {
            return !isProven(campaign_.services[item.service], modified, campaign_.counts);
        }));
}

std::uint32_t SourcePage::numberOf(const LineItem& item) const {
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
std::string SourcePage::anchorOf(std::string_view name) {
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

void SourcePage::findFunctions() {
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
    noteOpenFunctions();
    std::stable_sort(
        functions_.begin(), functions_.end(),
        [](const FunctionRow& left, const FunctionRow& right) { return left.line < right.line; });
}

void SourcePage::addFunction(std::uint32_t service, std::uint16_t types) {
    const Service& items = *campaign_.services[service].service;
    FunctionRow row;
    row.service = service;
    row.anchor = anchorOf(nameText(items.name));
    row.line = items.entry ? items.entry->startLine : items.firstLine;
    row.rate = sumOfRates(items.counts, items.globalCovered, types);
    row.open = row.rate.total - row.rate.hits;
    functions_.push_back(std::move(row));
}

// Keeps the functions of the index: such as run and have most to do.
void SourcePage::noteOpenFunctions() {
    std::vector<OpenFunction>& open = pages_.openFunctions;
    for (const FunctionRow& row : functions_) {
        if (row.open != 0 && row.rate.hits != 0) {
            open.push_back({place_, row.anchor, campaign_.services[row.service].service, row.rate, row.open});
        }
    }
    std::stable_sort(open.begin(), open.end(), [](const OpenFunction& left, const OpenFunction& right) {
        return left.open > right.open;
    });
    open.resize(std::min(open.size(), mostOpenFunctions));
}

void SourcePage::openText() {
    const FileDescription& description = *campaign_.files[source_.files.front()].description;
    const std::string path =
        joinPath(nameText(description.sourceDirectory), nameText(description.sourceName));
    text_ = openRegularInput(path);
    SourceText& found = pages_.texts[place_];
    if (!text_.isOpen()) {
        found = SourceText::Missing;
        return;
    }
    const auto onDisk = static_cast<std::int32_t>(fileModificationTime(path)); // wraps as descriptions do
    const bool changed = std::any_of(source_.files.begin(), source_.files.end(), [&](std::uint32_t file) {
        const std::int32_t described = campaign_.files[file].description->sourceTime;
        return described != 0 && onDisk != described;
    });
    found = changed ? SourceText::Changed : SourceText::Same;
}

bool isEntered(const Service& service) {
    const CoverageCounters& hits = service.globalCovered;
    return std::any_of(hits.begin(), hits.end(), [](std::uint32_t hit) { return hit != 0; });
}

// What the items of a line come to. Items that are no evidence of their line, such as a missing else, do not say that it
// was not run.
Mark SourcePage::markOf(ItemRange items, bool hasEvidence) const {
    bool someHit = false;
    bool someOpen = false;
    bool entered = false;
    for (auto item = items.first; item != items.second; ++item) {
        someHit = someHit || (item->open == 0 && item->coverageType != type::modifiedConditions);
        someOpen = someOpen || item->open != 0;
        entered = entered || (!hasEvidence && isEntered(serviceOf(*item)));
    }
    if (!someOpen) {
        return hasEvidence ? Mark::Hit : Mark::None;
    }
    return someHit || entered ? Mark::Partly : Mark::NotHit;
}

// ---------------------------------------------------------------------------------------------------------------------
// The head of the page

void SourcePage::putHead() {
    putTextNote();
    putRates();
    if (source_.files.size() > 1) {
        veldacov::putLine(
            out_, "<p class=note>", static_cast<std::uint32_t>(source_.files.size()),
            " descriptions have this path. Their items stand together: a line counts what the larger of "
            "them counts.</p>");
    }
}

void SourcePage::putRates() {
    CoverageCounters totals{};
    CoverageCounters hits{};
    std::uint16_t types = 0;
    for (const std::uint32_t file : source_.files) {
        sumCounters(totals, campaign_.files[file].totals);
        sumCounters(hits, campaign_.files[file].hits);
        types |= campaign_.files[file].description->coverageTypes;
    }
    putRateTable(out_, totals, hits, types);
}

void SourcePage::putTextNote() {
    switch (pages_.texts[place_]) {
    case SourceText::Same: return;
    case SourceText::Changed:
        veldacov::putLine(
            out_, "<p class=warn><strong>The source has changed</strong> since its description was made: "
                  "lines may be beside their items.</p>");
        return;
    case SourceText::Missing:
        veldacov::putLine(
            out_, "<p class=warn><strong>The source is not there</strong>: its items are listed without "
                  "its text.</p>");
        return;
    }
}

void SourcePage::putFunctions() {
    out_.put("<h2 id=functions>Functions</h2>\n<p class=hint>Conditions to be proven count, single cases of "
             "decisions do not.</p>\n");
    constexpr std::array columns = {Column{"Function"},
                                    Column{"Line", ColumnKind::Number},
                                    Column{"Bar"},
                                    Column{"Hit", ColumnKind::Number},
                                    Column{"Items", ColumnKind::Number},
                                    Column{"Open", ColumnKind::Number, ColumnOrder::Descending},
                                    Column{"Conditions proven", ColumnKind::Number},
                                    Column{"First open line", ColumnKind::Number}};
    beginTable(out_, "Functions of this source, most to do first", TableUse::SortedAndFiltered, columns);
    std::vector<const FunctionRow*> rows;
    for (const FunctionRow& row : functions_) {
        rows.push_back(&row);
    }
    std::stable_sort(rows.begin(), rows.end(), [](const FunctionRow* left, const FunctionRow* right) {
        return left->open > right->open;
    });
    for (const FunctionRow* row : rows) {
        putFunctionRow(*row);
    }
    endTable(out_);
}

// Lines that are reached, and where something is open: this is where a test is missing. What is not hit behind them follows.
void SourcePage::putToDo() {
    std::vector<ItemRange> lines;
    auto evidence = evidence_.lines.cbegin();
    for (auto first = items_.cbegin(); first != items_.cend();) {
        const auto last = std::find_if(
            first, items_.cend(), [line = first->line](const LineItem& item) { return item.line != line; });
        evidence = std::find_if(evidence, evidence_.lines.cend(),
                                [&](const LineEvidence& line) { return line.line >= first->line; });
        const bool hasEvidence = evidence != evidence_.lines.cend() && evidence->line == first->line;
        if (first->line != 0 && markOf({first, last}, hasEvidence) == Mark::Partly) {
            lines.emplace_back(first, last);
        }
        first = last;
    }
    if (lines.empty()) {
        return;
    }
    veldacov::putLine(out_, "<h2 id=todo>Tests that are missing</h2>\n<details><summary>",
                      static_cast<std::uint32_t>(lines.size()), lines.size() == 1 ? " line is" : " lines are",
                      " reached and not done with</summary>\n<ul>");
    for (std::size_t place = 0; place < std::min(lines.size(), mostToDo); ++place) {
        const LineItem& first = *lines[place].first;
        veldacov::putLine(out_, "<li><a href=\"#L", first.line, "\">Line ", first.line, "</a> in ");
        putHtml(out_, nameText(serviceOf(first).name));
        out_.put(", ");
        putNames(lines[place]);
        out_.put('\n');
    }
    if (lines.size() > mostToDo) {
        veldacov::putLine(out_, "<li>and ", static_cast<std::uint32_t>(lines.size() - mostToDo), " more");
    }
    veldacov::putLine(out_, "</ul></details>");
}

void SourcePage::putFunctionRow(const FunctionRow& row) {
    const Service& service = *campaign_.services[row.service].service;
    veldacov::putLine(out_, "<tr><th scope=row><a href=\"#", row.anchor, "\">");
    putHtml(out_, nameText(service.name));
    veldacov::putLine(out_, "</a><td class=n>", row.line);
    putRateCells(out_, row.rate);
    veldacov::putLine(out_, "<td class=n>", row.open);
    out_.put("<td class=n>");
    if (service.counts[counter::modifiedConditions] != 0) {
        out_.putNumber(service.globalCovered[counter::modifiedConditions]);
        out_.put(" of ");
        out_.putNumber(service.counts[counter::modifiedConditions]);
    }
    out_.put("<td class=n>");
    if (row.open != 0 && row.firstOpenLine != std::numeric_limits<std::uint32_t>::max()) {
        veldacov::putLine(out_, "<a href=\"#L", row.firstOpenLine, "\">", row.firstOpenLine, "</a>");
    }
}

void SourcePage::putLegend() {
    out_.put("<ul class=legend aria-label=\"Marks of lines\">");
    for (const Mark mark : {Mark::Hit, Mark::Partly, Mark::NotHit}) {
        const MarkText& text = textOf(mark);
        veldacov::putLine(out_, "<li class=", text.style, "><b aria-hidden=true>", text.sign, "</b> ",
                          text.name);
    }
    veldacov::putLine(
        out_, "<li class=n><b aria-hidden=true>·</b> not described: nothing begins on the line\n</ul>");
    out_.put("<p class=hint>");
    out_.put(campaign_.counted ? "The number beside a mark says how often the line was counted. "
                               : "The traces do not count: what is hit is hit once or more. ");
    veldacov::putLine(out_, "A line with a mark opens: below it stand its items, decisions and tests.</p>");
}

// ---------------------------------------------------------------------------------------------------------------------
// The lines

// The items up to a line that have not been written.
ItemRange SourcePage::itemsUntil(std::uint32_t line) {
    const auto first = nextItem_;
    nextItem_ = std::find_if(first, items_.cend(), [&](const LineItem& item) { return item.line > line; });
    return {first, nextItem_};
}

// A column for counts stands only where there are some. A browser lays out a piece when it comes into view.
void SourcePage::putSourceBegin() {
    linesInPiece_ = 0;
    veldacov::putLine(out_, campaign_.counted ? "<div class=\"source counted\">" : "<div class=source>");
}

void SourcePage::putLines() {
    nextItem_ = items_.cbegin();
    nextEvidence_ = evidence_.lines.cbegin();
    nextFunction_ = functions_.cbegin();
    veldacov::putLine(out_, "<h2 id=lines>Source</h2>");
    putLegend();
    putSourceBegin();
    const ItemRange withoutLine = itemsUntil(0);
    std::string_view text;
    while (text_.isOpen() && readRawLine(text_, text)) {
        putTextLine(text);
    }
    veldacov::putLine(out_, "</div>");
    const bool someItems = withoutLine.first != withoutLine.second || nextItem_ != items_.cend();
    if (someItems || nextFunction_ != functions_.cend()) {
        putElsewhere(withoutLine);
    }
}

// What is on no line of the text, be it that there is no text.
void SourcePage::putElsewhere(ItemRange withoutLine) {
    if (text_.isOpen()) {
        veldacov::putLine(out_, "<h2 id=elsewhere>Not on a line of this source</h2>");
    }
    putSourceBegin();
    if (withoutLine.first != withoutLine.second) {
        putLine(0, withoutLine, {});
    }
    while (nextItem_ != items_.cend()) {
        line_ = nextItem_->line;
        putFunctionHeads();
        putLine(line_, itemsUntil(line_), {});
    }
    line_ = std::numeric_limits<std::uint32_t>::max();
    putFunctionHeads();
    veldacov::putLine(out_, "</div>");
}

void SourcePage::putTextLine(std::string_view text) {
    ++line_;
    if (text.ends_with('\n')) {
        text.remove_suffix(text.ends_with("\r\n") ? 2 : 1);
    }
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (line_ == 1 && text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    putFunctionHeads();
    putLine(line_, itemsUntil(line_), text);
}

void SourcePage::putFunctionHeads() {
    for (; nextFunction_ != functions_.cend() && nextFunction_->line <= line_; ++nextFunction_) {
        putFunctionHead(*nextFunction_);
    }
}

void SourcePage::putFunctionHead(const FunctionRow& row) {
    veldacov::putLine(out_, "<h3 id=\"", row.anchor, "\">");
    putHtml(out_, nameText(campaign_.services[row.service].service->name));
    veldacov::putLine(out_, " <small>", rateText(row.rate), row.rate.state == RateState::Measured ? " %" : "",
                      ", ", row.open, " open</small></h3>");
}

void SourcePage::putLine(std::uint32_t line, ItemRange items, std::string_view text) {
    if (linesInPiece_++ == linesPerPiece) {
        out_.put("</div>\n");
        putSourceBegin();
    }
    const bool hasItems = items.first != items.second;
    while (nextEvidence_ != evidence_.lines.cend() && nextEvidence_->line < line) {
        ++nextEvidence_;
    }
    const bool hasEvidence = nextEvidence_ != evidence_.lines.cend() && nextEvidence_->line == line;
    const Mark kind = hasItems ? markOf(items, hasEvidence) : Mark::None;
    const MarkText& mark = textOf(kind);
    if (hasItems) {
        veldacov::putLine(out_, "<details class=", mark.style, " id=L", line, "><summary><span>", line,
                          "</span>");
    } else {
        putPlainNumber(line);
    }
    if (!mark.name.empty()) {
        out_.put("<b title=\"");
        out_.put(mark.name);
        out_.put("\">");
        out_.put(mark.sign);
        out_.put("</b>");
    }
    if (hasEvidence && campaign_.counted) {
        out_.put("<i>");
        out_.putNumber(nextEvidence_->count);
        out_.put("</i>");
    }
    putText(text);
    if (!hasItems) {
        out_.put("</div>\n");
        return;
    }
    if (kind == Mark::Partly) {
        out_.put("<small>");
        putNames(items);
        out_.put("</small>");
    }
    veldacov::putLine(out_, "</summary><div><p><a href=#L", line, ">Line ", line, "</a>");
    const bool isAlone = items.second - items.first == 1;
    if (isAlone && items.first->coverageType != type::modifiedConditions) {
        out_.put(": ");
        putItemName(*items.first);
        out_.put(", tests: ");
        putTests(*items.first, numberOf(*items.first));
    } else {
        putItems(items);
    }
    out_.put("</div></details>\n");
}

// A line without items is a link to itself. That is for a pointer: keys go from item to item.
void SourcePage::putPlainNumber(std::uint32_t line) {
    out_.put("<div id=L");
    out_.putNumber(line);
    out_.put("><a tabindex=-1 href=#L");
    out_.putNumber(line);
    out_.put('>');
    out_.putNumber(line);
    out_.put("</a>");
}

void SourcePage::putText(std::string_view text) {
    out_.put("<code>");
    if (text.size() <= longestShown) {
        putHtml(out_, text);
        out_.put("</code>");
        return;
    }
    std::size_t length = longestShown;
    while (length > longestShown - 3 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80) {
        --length; // not within a character
    }
    putHtml(out_, text.substr(0, length));
    out_.put("</code><em class=tag>cut: the line has ");
    out_.put(std::to_string(text.size()));
    out_.put(" bytes</em>");
}

void putItemText(OutputFile& out, std::string_view before, std::string_view name) {
    out.put(before);
    out.put("<code>");
    putHtml(out, name);
    out.put("</code>");
}

// What a logical block stands for: FOR_0, FOR_1, FOR_N.
std::string_view turnsOf(std::string_view label) {
    return label.ends_with("_0")   ? " (no turn)"
           : label.ends_with("_1") ? " (one turn)"
           : label.ends_with("_N") ? " (more turns)"
                                   : "";
}

void SourcePage::putItemName(const LineItem& item) {
    const Service& service = serviceOf(item);
    constexpr std::array<std::string_view, 4> exits = {"", "end of function", "return", "end of program"};
    constexpr std::array<std::string_view, 4> blocks = {"block ", "implicit block ", "loop ",
                                                        "transfer block "};
    switch (item.coverageType) {
    case type::procedures: putItemText(out_, "entry of ", nameText(service.name)); return;
    case type::exits: out_.put(exits.at(static_cast<std::size_t>(service.exits[item.place].kind))); return;
    case type::calls: putItemText(out_, "call of ", nameText(service.calls[item.place].calledName)); return;
    case type::basicConditions: {
        const ConditionEntry& condition = service.conditions[item.place];
        const std::string_view outcome = outcomeText(service, condition);
        putItemText(out_, "", unquoted(condition.text));
        out_.put(outcome == "True" ? " true" : outcome == "False" ? " false" : "");
        return;
    }
    default: {
        const BlockEntry& block = service.blocks[item.place];
        putItemText(out_, blocks.at(static_cast<std::size_t>(block.kind)), block.label);
        out_.put(block.kind == BlockKind::Logical ? turnsOf(block.label) : "");
    }
    }
}

// The conditions of a decision that no pair of cases proves.
void SourcePage::putUnproven(const LineItem& decision) {
    const CampaignService& service = campaign_.services[decision.service];
    std::size_t named = 0;
    out_.put("to be proven: ");
    for (const ModifiedCondition& modified :
         serviceOf(decision).compositions[decision.place].modifiedConditions) {
        if (named <= mostNamed && !isProven(service, modified, campaign_.counts)) {
            const std::string_view text = service.service->conditions[modified.basicCondition].text;
            if (named == mostNamed) {
                out_.put(", …");
            } else {
                putItemText(out_, named == 0 ? "" : ", ", unquoted(text));
            }
            ++named;
        }
    }
}

// What is open on a line that is hit otherwise.
void SourcePage::putNames(ItemRange items) {
    std::size_t open = 0;
    const auto separate = [&] { out_.put(open++ == 0 ? "open: " : "; "); };
    std::size_t more = 0;
    for (auto item = items.first; item != items.second; ++item) {
        if (item->open == 0) {
            continue;
        }
        if (open == mostNamed) {
            ++more;
            continue;
        }
        separate();
        if (item->coverageType == type::modifiedConditions) {
            putUnproven(*item);
        } else {
            putItemName(*item);
        }
    }
    if (more != 0) {
        out_.put("; ");
        out_.putNumber(static_cast<std::uint32_t>(more));
        out_.put(" more");
    }
}

void SourcePage::putItems(ItemRange items) {
    const auto isDecision = [](const LineItem& item) {
        return item.coverageType == type::modifiedConditions;
    };
    if (!std::all_of(items.first, items.second, isDecision)) {
        out_.put("<table class=items><thead><tr><th scope=col>Mark<th scope=col>Item");
        out_.put(campaign_.counted ? "<th scope=col>Hits" : "");
        out_.put("<th scope=col>Tests</thead>\n<tbody>\n");
        for (auto item = items.first; item != items.second; ++item) {
            if (!isDecision(*item)) {
                putItemRow(*item);
            }
        }
        out_.put("</tbody></table>\n");
    }
    std::uint32_t decisions = 0;
    for (auto item = items.first; item != items.second; ++item) {
        if (isDecision(*item)) {
            putDecision(*item, decisions++);
        }
    }
}

void SourcePage::putItemRow(const LineItem& item) {
    const std::uint32_t number = numberOf(item);
    const MarkText& mark = textOf(item.open == 0 ? Mark::Hit : Mark::NotHit);
    veldacov::putLine(out_, "<tr class=", mark.style, "><td title=\"", mark.name, "\">", mark.sign, "<td>");
    putItemName(item);
    if (campaign_.counted) {
        out_.put("<td class=n>");
        out_.putNumber(campaign_.counts[number]);
    }
    out_.put("<td>");
    putTests(item, number);
}

void SourcePage::putTests(const LineItem& item, std::uint32_t number) {
    const TestsOfItem& tests = testsOf(item, number);
    if (tests.count == 0) {
        out_.put("none\n");
        return;
    }
    out_.putNumber(tests.count);
    out_.put(": ");
    const std::size_t named = std::min<std::size_t>(tests.count, TestsOfItem::mostNamed);
    for (std::size_t place = 0; place < named; ++place) {
        out_.put(place == 0 ? "" : ", ");
        putTestLink(out_, PagePlace::Below, pages_, tests.first[place]);
    }
    out_.put(named < tests.count ? " …\n" : "\n");
}

// ---------------------------------------------------------------------------------------------------------------------
// Decisions

void SourcePage::putDecision(const LineItem& item, std::uint32_t ofLine) {
    const CampaignService& service = campaign_.services[item.service];
    const Composition& composition = serviceOf(item).compositions[item.place];
    const std::string id =
        "D" + std::to_string(item.line) + (ofLine == 0 ? "" : "-" + std::to_string(ofLine + 1));
    const DecisionWords words(out_, campaign_, service, composition);
    veldacov::putLine(out_, "<div class=decision id=", id, "><p>Decision <a href=\"#", id, "\">", id,
                      "</a></p>\n<ul class=pairs>");
    for (const ModifiedCondition& modified : composition.modifiedConditions) {
        const MarkText& mark =
            textOf(isProven(service, modified, campaign_.counts) ? Mark::Hit : Mark::NotHit);
        veldacov::putLine(out_, "<li class=", mark.style, "><b aria-hidden=true>", mark.sign, "</b> ");
        words.putProof(modified);
    }
    veldacov::putLine(out_, "</ul><div class=wide tabindex=0 role=region aria-label=\"Cases of ", id,
                      "\"><table class=truth><caption>T true, F false, X not evaluated</caption>");
    words.putHead(campaign_.counted);
    words.forEachShownCase([&](std::uint32_t place, bool hit) {
        const MarkText& mark = textOf(hit ? Mark::Hit : Mark::NotHit);
        veldacov::putLine(out_, "<tr class=", mark.style, "><th scope=row>", place + 1);
        words.putCase(place);
        out_.put("<td title=\"");
        veldacov::putLine(out_, mark.name, "\">", mark.sign);
        const std::uint32_t caseNumber = itemNumbers(service).conditions + composition.firstCase + place;
        if (campaign_.counted) {
            veldacov::putLine(out_, "<td class=n>", campaign_.counts[caseNumber]);
        }
        out_.put("<td>");
        putTests(item, caseNumber);
    });
    endTable(out_);
    words.putNoteOfHidden();
    veldacov::putLine(out_, "</div>");
}

} // namespace

void writeSourcePage(OutputFile& out, PageSet& pages, std::uint32_t source) {
    SourcePage(out, pages, source).write();
}

} // namespace veldacov
