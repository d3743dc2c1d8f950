#pragma once

// Pages for people: a folder of HTML that a browser shows from the disk, without network and without scripts.
//
//   index.html               rates, folders and files with the worst first, where to look first, what was left out
//   tests.html               the tests in the order of what they add, with a curve
//   source/PAGE.html         a source: its lines with marks, and below each on demand the items, decisions and tests
//   tests/PAGE.html          a test: the functions that it reaches
//   style.css, script.js     the same for all; the script adds sorting, filtering and keys
//
// Every page forbids by its policy what it does not need, and names the run. Marks of lines follow from docs/formats/evidence.md.
// Beside the campaign, memory holds one page's worth: what is known of one source, and one line of its text.

#include <cstdint>
#include <string>
#include <vector>

#include "support/output.h"
#include "view/campaign.h"
#include "view/evidence.h"
#include "view/page_folder.h"
#include "view/ranking.h"
#include "view/view_rates.h"

namespace veldacov {

// Writes the pages into a folder and publishes it. Needs a campaign with CampaignDetail::Tests.
void writePages(const Campaign& campaign, PageFolder& folder);

// What was found of the text of a source.
enum class SourceText : std::uint8_t { Same, Changed, Missing };

// A function, by what of its items (and conditions to be proven) no test has hit.
struct OpenFunction {
    std::uint32_t source = 0;
    std::string anchor; // on the page of the source
    const Service* service = nullptr;
    ViewRate rate;
    std::uint32_t open = 0;
};

// What the pages have in common. `texts` and `openFunctions` are known when the pages of the sources are written.
struct PageSet {
    const Campaign& campaign;
    std::vector<Source> sources;
    std::vector<std::string> sourcePages;    // file names, by source
    std::vector<std::string> testPages;      // by test
    std::vector<std::uint32_t> sourceOfFile; // by place in the campaign's files
    std::vector<RankedTest> ranking;
    std::vector<std::size_t> rankOfTest; // places in `ranking`, by test
    std::vector<std::size_t> rates;      // places of those that are measured
    std::string date;
    std::vector<SourceText> texts;           // by source
    std::vector<OpenFunction> openFunctions; // the first ones to look at
};

void writeIndexPage(OutputFile& out, const PageSet& pages);
void writeTestsPage(OutputFile& out, const PageSet& pages);
// `own` says of each item whether this test alone hits it.
void writeTestPage(OutputFile& out, const PageSet& pages, std::size_t test, const std::vector<bool>& own);

// Notes what it finds of the source's text, and functions for the index.
void writeSourcePage(OutputFile& out, PageSet& pages, std::uint32_t source);

} // namespace veldacov
