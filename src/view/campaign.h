#pragma once

// A campaign: what descriptions and traces say together, in one piece. Everything that `veldaview` makes is made of one
// loaded campaign; nothing reads traces besides.
//
//   descriptions --loadFdcFile--> model --takeStock--> files, services, numbers of items
//   traces --walk--> hits of a test in the model --at its end--> counts, set of the test
//
// The items of the selected services are numbered from 0, service by service and in each in the order of forEachItem:
// entry, exits, calls, blocks, conditions. Modified conditions have no numbers: they follow from the cases that are hit.
// An item's number is its place in `counts`, and what the tests' sets hold:
//
//   number   0      1     2     3      4       5     | 6 ...
//   item     entry  exit  call  block  block   case  | entry of the next service
//
// Whether an item is hit stands in the model (isHit) as veldacov counts it, so the rates are those of its report. Its count
// is the sum over the tests that hit it: what a counted test counted, at least 1, and 1 for an uncounted test, however often
// its name and number come back.
//
// There is one campaign at a time, because there is one model. It stays as it is loaded.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <roaring/roaring.hh>

#include "description/model.h"
#include "report/tio.h"
#include "view/selections.h"

namespace veldacov {

// What a program needs to know of the tests. More costs time and memory: hits of each test have to be told apart.
enum class CampaignDetail : std::uint8_t {
    Rates,     // which items are hit; of the tests what their lines tell, no counts
    Tests,     // and the count of each item, and what each test hits
    TestCounts // and how often each test hits each item
};

struct CampaignRequest {
    std::vector<std::string> inputs; // descriptions and traces, wildcards expanded
    Patterns patterns;
    std::string root; // what paths are relative to; empty: paths as the descriptions have them
    CampaignDetail detail = CampaignDetail::Rates;
};

// Items [first of one list, first of the next) are those of the list; numbers.blocks + i is block i of the service.
struct ItemNumbers {
    std::uint32_t entry = 0;
    std::uint32_t exits = 0;
    std::uint32_t calls = 0;
    std::uint32_t blocks = 0;
    std::uint32_t conditions = 0;
    std::uint32_t end = 0;
};

struct CampaignService {
    Service* service = nullptr; // the model's
    std::uint32_t file = 0;     // place in `files`
    std::uint32_t firstItem = 0;
};

// A selected file with its selected services, which stand together in `services`. A source that is described twice is
// there twice, with one path.
struct CampaignFile {
    FileDescription* description = nullptr; // the model's
    std::string
        path; // directory and name as the description has them, relative to the root where they lie below it
    std::uint32_t firstService = 0;
    std::uint32_t serviceCount = 0;
    CoverageCounters totals{}; // of the selected services
    CoverageCounters hits{};   // modified conditions included
};

// What one test does, over all traces that name it.
struct CampaignTest {
    const NameEntry* name =
        nullptr; // "#" for hits before the first test line; null for a number without digits
    KnownBy knownBy = KnownBy::Default;
    std::int32_t number = -1;        // -1: none was given
    std::int32_t serviceNumber = -1; // the first that was given
    const NameEntry* date = nullptr; // the first that was given
    bool counted = false;            // some of its hits carry counts
    // From CampaignDetail::Tests on: numbers of the items that it hits.
    Roaring items;
    // With CampaignDetail::TestCounts, for counted tests: the count of each of `items`, in ascending order of the
    // numbers. Empty for a test that hits each item once.
    std::vector<std::uint32_t> counts;
};

// Parts of traces that could not be taken: of one key and checksum. Those of another build of a source that is not
// selected are not among them.
struct StrayPart {
    PartKey key;
    bool stale = false;    // the key is described, with another checksum: a trace of another build
    std::string path;      // of the source described with the key; empty when nothing describes it
    std::size_t times = 0; // how often the traces have it
};

struct Campaign {
    std::vector<CampaignFile> files; // in loading order
    std::vector<CampaignService> services;
    std::vector<CampaignTest> tests;   // in the order of their first lines; only selected ones
    std::vector<StrayPart> strayParts; // in the order of the traces; of selected tests only
    std::vector<std::string> inputs;   // as requested
    std::vector<std::uint32_t> counts; // by item number; empty with CampaignDetail::Rates
    std::uint32_t itemCount = 0;
    std::uint16_t types = 0; // coverage types of all files
    CoverageCounters totals{};
    CoverageCounters hits{};
    bool counted = false; // all hits were counted: counts say how often, else they say in how many tests
    std::size_t complaints = 0; // warnings and errors given while loading, besides those about stray parts
};

// Loads descriptions and traces. Whatever is a fatal error for veldacov is one here: among them a malformed file, and
// nothing to report. Cost: reading the files; from CampaignDetail::Tests on, each test costs what it hits.
Campaign loadCampaign(const CampaignRequest& request);

// The item is hit by some test.
inline bool isHit(const HitRecord& record) {
    return (record.flags & everHit) != 0;
}

ItemNumbers itemNumbers(const CampaignService& service);

// Calls visit(number, item, coverage type) for every numbered item of a service, by ascending numbers.
template <typename Visit>
void forEachNumberedItem(const CampaignService& service, Visit visit) {
    std::uint32_t number = service.firstItem;
    forEachItem(*service.service, [&](HitRecord& record, std::uint16_t coverageType) {
        if (coverageType != type::modifiedConditions) {
            visit(number++, static_cast<CoverageItem&>(record), coverageType);
        }
    });
}

// Puts the numbers of the items that a test hits into `numbers`, ascending, in place of what is there.
inline void readItems(const CampaignTest& test, std::vector<std::uint32_t>& numbers) {
    numbers.resize(test.items.cardinality());
    test.items.toUint32Array(numbers.data());
}

// The name of a test as outputs show it: its name, or its number when it has none; "#" for hits outside of tests.
std::string_view shownName(const CampaignTest& test);

} // namespace veldacov
