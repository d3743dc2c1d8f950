#include "view/pages.h"

#include <algorithm>
#include <string>
#include <utility>

#include "support/files.h"
#include "support/machine.h"
#include "view/page_files.h"
#include "view/page_names.h"
#include "view/progress.h"

namespace veldacov {

namespace {

// What names a test, and no other: its name and its number.
std::string fullName(const CampaignTest& test) {
    std::string name(shownName(test));
    return test.knownBy == KnownBy::Name && test.number != -1 ? name + "-" + std::to_string(test.number)
                                                              : name;
}

std::vector<std::string> testPageNames(const Campaign& campaign) {
    std::vector<std::string> names(campaign.tests.size());
    std::transform(campaign.tests.begin(), campaign.tests.end(), names.begin(), fullName);
    return pageNames(names);
}

std::vector<std::string> sourcePageNames(const std::vector<Source>& sources) {
    std::vector<std::string> names(sources.size());
    std::transform(sources.begin(), sources.end(), names.begin(),
                   [](const Source& source) { return source.path; });
    return pageNames(names);
}

PageSet pageSetOf(const Campaign& campaign) {
    PageSet pages{
        campaign, sourcesOf(campaign), {}, testPageNames(campaign), {}, rankTests(campaign), {}, {}, {}, {},
        {}};
    pages.sourcePages = sourcePageNames(pages.sources);
    pages.sourceOfFile.resize(campaign.files.size());
    for (std::uint32_t source = 0; source < pages.sources.size(); ++source) {
        for (const std::uint32_t file : pages.sources[source].files) {
            pages.sourceOfFile[file] = source;
        }
    }
    pages.rankOfTest.resize(campaign.tests.size());
    for (std::size_t place = 0; place < pages.ranking.size(); ++place) {
        pages.rankOfTest[pages.ranking[place].test] = place;
    }
    const ViewRates rates = viewRates(campaign.totals, campaign.hits, campaign.types);
    for (std::size_t place = 0; place < rates.size(); ++place) {
        if (rates[place].state == RateState::Measured) {
            pages.rates.push_back(place);
        }
    }
    pages.date = dateText(presentTime());
    pages.texts.resize(pages.sources.size());
    return pages;
}

// Of each item, whether one test alone hits it.
std::vector<bool> itemsOfOneTest(const Campaign& campaign) {
    std::vector<bool> some(campaign.itemCount);
    std::vector<bool> own(campaign.itemCount);
    for (const CampaignTest& test : campaign.tests) {
        for (const std::uint32_t number : test.items) {
            own[number] = !some[number]; // the second test takes it back
            some[number] = true;
        }
    }
    return own;
}

void writeFile(PageFolder& folder, const std::string& name, std::string_view text) {
    OutputFile out = folder.create(name);
    out.put(text);
    out.finish();
}

void writeSourcePages(PageFolder& folder, PageSet& pages) {
    Progress progress(translate("View", "Writing: %1 of %2", "%1 and %2 are numbers"), pages.sources.size());
    for (std::uint32_t source = 0; source < pages.sources.size(); ++source) {
        OutputFile out = folder.create("source/" + pages.sourcePages[source]);
        writeSourcePage(out, pages, source);
        out.finish();
        progress.step();
    }
}

void writeTestPages(PageFolder& folder, const PageSet& pages) {
    const std::vector<bool> own = itemsOfOneTest(pages.campaign);
    for (std::size_t test = 0; test < pages.testPages.size(); ++test) {
        OutputFile out = folder.create("tests/" + pages.testPages[test]);
        writeTestPage(out, pages, test, own);
        out.finish();
    }
}

} // namespace

void writePages(const Campaign& campaign, PageFolder& folder) {
    PageSet pages = pageSetOf(campaign);
    writeFile(folder, "style.css", pageStyle);
    writeFile(folder, "script.js", pageScript);
    writeSourcePages(folder, pages);
    writeTestPages(folder, pages);
    OutputFile tests = folder.create("tests.html");
    writeTestsPage(tests, pages);
    tests.finish();
    OutputFile index = folder.create("index.html");
    writeIndexPage(index, pages);
    index.finish();
    folder.publish();
}

} // namespace veldacov
