#include "view/campaign.h"

#include <algorithm>
#include <cassert>
#include <filesystem>
#include <map>
#include <system_error>
#include <unordered_map>
#include <utility>

#include "description/fdcL.h"
#include "description/hit_counting.h"
#include "description/pairs.h"
#include "report/auth.h"
#include "report/trace_walk.h"
#include "support/files.h"
#include "support/machine.h"
#include "view/progress.h"

namespace veldacov {

namespace {

// An item with how often it is hit, in one word that sorts by the item's number.
using NumberedCount = std::uint64_t;
constexpr NumberedCount numberedCount(std::uint32_t number, std::uint32_t count) {
    return NumberedCount{number} << 32U | count;
}
constexpr std::uint32_t numberOf(NumberedCount item) {
    return static_cast<std::uint32_t>(item >> 32U);
}
constexpr std::uint32_t countOf(NumberedCount item) {
    return static_cast<std::uint32_t>(item);
}

// What is gathered of a test until the traces are over. Nearly every test is either counted or not.
struct GatheredHits {
    Roaring uncounted;
    Roaring counted;
    // With CampaignDetail::TestCounts, of the counted hits: each item once, by number, then those of later runs of the
    // test, until there are as many of them.
    std::vector<NumberedCount> counts;
    std::size_t merged = 0;
};

void sortByNumber(std::vector<NumberedCount>& items) {
    if (!std::is_sorted(items.begin(), items.end())) {
        std::sort(items.begin(), items.end());
    }
}

std::vector<std::uint32_t> numbersOf(const std::vector<NumberedCount>& items) {
    std::vector<std::uint32_t> numbers(items.size());
    std::transform(items.begin(), items.end(), numbers.begin(), numberOf);
    return numbers;
}

void sumEqualNumbers(std::vector<NumberedCount>& items) {
    std::size_t kept = 0;
    for (const NumberedCount item : items) {
        if (kept > 0 && numberOf(items[kept - 1]) == numberOf(item)) {
            items[kept - 1] =
                numberedCount(numberOf(item), saturatingSum(countOf(items[kept - 1]), countOf(item)));
        } else {
            items[kept++] = item;
        }
    }
    items.resize(kept);
}

void mergeCounts(GatheredHits& gathered) {
    sortByNumber(gathered.counts);
    sumEqualNumbers(gathered.counts);
    gathered.merged = gathered.counts.size();
}

void gatherCounts(GatheredHits& gathered, const std::vector<NumberedCount>& items) {
    gathered.counts.insert(gathered.counts.end(), items.begin(), items.end());
    if (gathered.merged == 0 || gathered.counts.size() - gathered.merged > gathered.merged) {
        mergeCounts(gathered);
    }
}

// The place of an item of a service among its numbers.
std::uint32_t numberOf(const CampaignService& campaignService, const TestHit& hit) {
    const Service& service = *campaignService.service;
    const ItemNumbers numbers = itemNumbers(campaignService);
    const auto placeIn = [&](const auto& items, std::uint32_t first) {
        using Item = typename std::remove_reference_t<decltype(items)>::value_type;
        return first + static_cast<std::uint32_t>(static_cast<const Item*>(hit.record) - items.data());
    };
    switch (typeOf(hit)) {
    case type::procedures: return numbers.entry;
    case type::exits: return placeIn(service.exits, numbers.exits);
    case type::calls: return placeIn(service.calls, numbers.calls);
    case type::basicConditions:
    case type::compoundConditions: return placeIn(service.conditions, numbers.conditions);
    default: return placeIn(service.blocks, numbers.blocks);
    }
}

// What a campaign does at each step of the walk over its traces.
class CampaignEvents : public TraceEvents {
public:
    CampaignEvents(Campaign& campaign, const CampaignRequest& request)
        : campaign_(campaign), patterns_(request.patterns), detail_(request.detail) {}

    bool takesTest(const NameEntry* test) override {
        return selectsAll(patterns_.tests) || isSelected(patterns_.tests, nameText(test));
    }
    void testBegins(const TestRun& run) override {
        if (run.selected) {
            currentTest_ = placeOf(run.test, run.knownBy, run.number);
        }
    }
    void testEnds(const TestRun& run) override;
    void partMet(const MetPart& part) override;

    void finish();
    [[nodiscard]] Patterns& patterns() { return patterns_; }

private:
    std::size_t placeOf(const NameEntry* test, KnownBy knownBy, std::int32_t number);
    [[nodiscard]] std::vector<NumberedCount> hitsOfRun() const;
    void takeHits(std::size_t place, bool counted);
    void takeUncounted(GatheredHits& gathered, const std::vector<NumberedCount>& items);
    void takeCounted(GatheredHits& gathered, const std::vector<NumberedCount>& items);
    void count(std::uint32_t number, std::uint32_t times) {
        std::uint32_t& sum = campaign_.counts[number];
        sum = saturatingSum(sum, times);
    }

    Campaign& campaign_;
    Patterns patterns_;
    CampaignDetail detail_;
    std::size_t currentTest_ = 0;
    std::size_t hitsBefore_ = 0; // of hitsOfTest, when the last test ended
    std::map<std::pair<const NameEntry*, std::int32_t>, std::size_t> testPlaces_;
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::size_t> strayPlaces_; // by key and checksum
    std::vector<GatheredHits> gathered_;                                         // by test
};

std::size_t CampaignEvents::placeOf(const NameEntry* test, KnownBy knownBy, std::int32_t number) {
    const auto [known, isNew] = testPlaces_.try_emplace({test, number}, campaign_.tests.size());
    if (isNew) {
        CampaignTest& added = campaign_.tests.emplace_back();
        added.name = test;
        added.knownBy = knownBy;
        added.number = number;
        gathered_.emplace_back();
    }
    return known->second;
}

void CampaignEvents::testEnds(const TestRun& run) {
    // Hits outside of a selected test are the default test's. Where hits add up, old ones make no such test.
    const bool anythingNew = hitsOfTest().size() != hitsBefore_;
    hitsBefore_ = hitsOfTest().size();
    if (!run.selected && !anythingNew) {
        return;
    }
    const std::size_t place = run.selected ? currentTest_ : placeOf(internName("#"), KnownBy::Default, -1);
    CampaignTest& test = campaign_.tests[place];
    test.serviceNumber = test.serviceNumber == -1 ? run.serviceNumber : test.serviceNumber;
    test.date = test.date == nullptr ? run.date : test.date;
    test.counted = test.counted || run.countOriented;
    if (detail_ != CampaignDetail::Rates) {
        settleCounts();
        takeHits(place, run.countOriented);
        resetTestCounts();
        hitsBefore_ = 0;
    }
}

std::vector<NumberedCount> CampaignEvents::hitsOfRun() const {
    assert(countsAreSettled());
    std::vector<NumberedCount> items;
    items.reserve(hitsOfTest().size());
    for (const TestHit& hit : hitsOfTest()) {
        const std::int32_t place = serviceOf(hit).selectedPlace;
        if (place >= 0) {
            const CampaignService& service = campaign_.services[static_cast<std::size_t>(place)];
            items.push_back(numberedCount(numberOf(service, hit), hit.record->testHits));
        }
    }
    sortByNumber(items);
    return items;
}

void CampaignEvents::takeHits(std::size_t place, bool counted) {
    const std::vector<NumberedCount> items = hitsOfRun();
    if (counted) {
        takeCounted(gathered_[place], items);
    } else {
        takeUncounted(gathered_[place], items);
    }
}

// However often an uncounted test comes back, it has hit an item once.
void CampaignEvents::takeUncounted(GatheredHits& gathered, const std::vector<NumberedCount>& items) {
    const bool firstRun = gathered.uncounted.isEmpty();
    const std::vector<std::uint32_t> numbers = numbersOf(items);
    for (const std::uint32_t number : numbers) {
        if (firstRun || !gathered.uncounted.contains(number)) {
            count(number, 1);
        }
    }
    gathered.uncounted.addMany(numbers.size(), numbers.data());
    gathered.uncounted.shrinkToFit();
}

void CampaignEvents::takeCounted(GatheredHits& gathered, const std::vector<NumberedCount>& items) {
    std::vector<NumberedCount> counts(items);
    for (NumberedCount& item : counts) {
        item = numberedCount(numberOf(item), std::max(countOf(item), 1U)); // a count of 0 is a hit as well
        count(numberOf(item), countOf(item));
    }
    const std::vector<std::uint32_t> numbers = numbersOf(items);
    gathered.counted.addMany(numbers.size(), numbers.data());
    gathered.counted.shrinkToFit();
    if (detail_ == CampaignDetail::TestCounts) {
        gatherCounts(gathered, counts);
    }
}

void CampaignEvents::partMet(const MetPart& part) {
    if (part.description != nullptr) {
        return;
    }
    const auto [known, isNew] =
        strayPlaces_.try_emplace({part.key.fileKey, part.key.checksum}, campaign_.strayParts.size());
    if (isNew) {
        campaign_.strayParts.push_back({part.key, part.otherChecksum, {}, 0});
    }
    ++campaign_.strayParts[known->second].times;
}

// The counts of a test in the order of its items; none where all are 1.
std::vector<std::uint32_t> finishedCounts(GatheredHits& gathered) {
    for (const std::uint32_t number : gathered.uncounted) {
        gathered.counts.push_back(numberedCount(number, 1));
    }
    mergeCounts(gathered);
    const auto isOne = [](NumberedCount item) { return countOf(item) == 1; };
    if (std::all_of(gathered.counts.begin(), gathered.counts.end(), isOne)) {
        return {};
    }
    std::vector<std::uint32_t> counts(gathered.counts.size());
    std::transform(gathered.counts.begin(), gathered.counts.end(), counts.begin(), countOf);
    return counts;
}

void CampaignEvents::finish() {
    for (std::size_t place = 0; place < gathered_.size(); ++place) {
        GatheredHits& gathered = gathered_[place];
        CampaignTest& test = campaign_.tests[place];
        if (!gathered.counts.empty()) {
            test.counts = finishedCounts(gathered);
        }
        test.items = std::move(gathered.uncounted);
        test.items |= gathered.counted;
        test.items.runOptimize();
        test.items.shrinkToFit();
        gathered = {};
    }
}

// Lexically, because sources need not be where they were; a path that does not lie below the root stays. So does one of
// which nobody can say where it lies, because the present folder is gone.
std::string relativeTo(const std::string& root, const std::string& path) {
    namespace fs = std::filesystem;
    const auto place = [](const std::string& name) {
        std::error_code failed; // then there is no place
        return fs::absolute(name, failed).lexically_normal();
    };
    const fs::path rootPlace = root.empty() ? fs::path() : place(root);
    if (rootPlace.empty()) {
        return path;
    }
    const fs::path relative = place(path).lexically_relative(rootPlace);
    return relative.empty() || *relative.begin() == ".." ? path : relative.string();
}

std::string describedPath(const FileDescription& description) {
    const std::string_view directory = nameText(description.sourceDirectory);
    const std::string_view name = nameText(description.sourceName);
    return directory.empty() ? std::string(name) : joinPath(directory, name);
}

std::uint32_t itemCountOf(const CampaignService& service) {
    const ItemNumbers numbers = itemNumbers(service);
    return numbers.end - numbers.entry;
}

void takeServices(Campaign& campaign, CampaignFile& file, Patterns& patterns) {
    for (Service& service : file.description->services) {
        if (!selectsAll(patterns.services) && !isSelected(patterns.services, nameText(service.name))) {
            continue;
        }
        service.selectedPlace = static_cast<std::int32_t>(campaign.services.size());
        const CampaignService& added = campaign.services.emplace_back(
            CampaignService{&service, static_cast<std::uint32_t>(campaign.files.size()), campaign.itemCount});
        campaign.itemCount += itemCountOf(added);
        ++file.serviceCount;
        sumCounters(file.totals, service.counts);
    }
}

// The selected files and services. A file of which no service is selected is left out.
void takeStock(Campaign& campaign, const CampaignRequest& request, Patterns& patterns) {
    for (const auto& description : loadedDescriptions()) {
        const std::string path = describedPath(*description);
        if (!selectsAll(patterns.files) && !isSelected(patterns.files, path)) {
            continue;
        }
        CampaignFile file{description.get(),
                          relativeTo(request.root, path),
                          static_cast<std::uint32_t>(campaign.services.size()),
                          0,
                          {},
                          {}};
        takeServices(campaign, file, patterns);
        if (file.serviceCount == 0) {
            continue;
        }
        sumCounters(campaign.totals, file.totals);
        campaign.types |= description->coverageTypes;
        campaign.files.push_back(std::move(file));
    }
    warnUnmatchedSources(patterns); // also where nothing is left: it may be why
    if (campaign.files.empty()) {
        fatalError(translate("Fatal Error", "There is nothing to report ... report is empty"));
    }
}

void sumHits(Campaign& campaign) {
    for (const CampaignService& service : campaign.services) {
        sumCounters(campaign.files[service.file].hits, service.service->globalCovered);
    }
    for (const CampaignFile& file : campaign.files) {
        sumCounters(campaign.hits, file.hits);
    }
}

// Names the sources of stale parts. Those of sources that are not selected are nobody's concern.
void nameStrayParts(Campaign& campaign) {
    std::unordered_map<std::uint32_t, const CampaignFile*> byKey;
    for (const CampaignFile& file : campaign.files) {
        byKey.try_emplace(file.description->fileKey, &file);
    }
    std::erase_if(campaign.strayParts, [&](StrayPart& part) {
        const auto known = byKey.find(part.key.fileKey);
        part.path = known != byKey.end() ? known->second->path : std::string();
        return part.stale && part.path.empty();
    });
}

// The first of the parts that were left out; a trace of another program may have thousands.
constexpr std::size_t mostPartsTold = 10;

void tellOfStrayPart(const StrayPart& part) {
    const std::string times = std::to_string(part.times);
    if (part.stale) {
        warningMessage(filled(translate("View", "Traces of another build of %1 are ignored, parts: %2",
                                        "%1 is the name of a source, %2 a number"),
                              {part.path, times}));
        return;
    }
    infoMessage(
        filled(translate("View", "Traces that nothing describes are ignored, key %1, checksum %2, parts: %3",
                         "%1 and %2 are numbers of trace lines, %3 is a number"),
               {hexText(part.key.fileKey).view(), hexText(part.key.checksum).view(), times}));
}

void tellOfStrayParts(const Campaign& campaign) {
    const std::size_t told = std::min(mostPartsTold, campaign.strayParts.size());
    std::for_each_n(campaign.strayParts.begin(), told, tellOfStrayPart);
    if (told < campaign.strayParts.size()) {
        infoMessage(filled(translate("View", "Traces of %1 more sources are ignored", "%1 is a number"),
                           {std::to_string(campaign.strayParts.size() - told)}));
    }
}

TraceFileList loadDescriptions(const std::vector<std::string>& inputs) {
    TraceFileList traceFiles;
    Progress progress(translate("View", "Reading inputs: %1 of %2", "%1 and %2 are numbers"), inputs.size());
    for (const std::string& input : inputs) {
        loadFdcFile(&input, 0, traceFiles);
        progress.step();
    }
    return traceFiles;
}

void walkTraces(Campaign& campaign, const TraceFileList& traceFiles, CampaignEvents& events) {
    const CoverageOptions everything;
    TraceWalk walk = startWalk(everything, events, {typesOfAllDescriptions(), nullptr});
    Progress progress(translate("View", "Reading traces: %1 of %2", "%1 and %2 are numbers"),
                      traceFiles.size());
    for (const std::string& traceFile : traceFiles) {
        readTraceFile(walk, traceFile);
        progress.step();
    }
    endWalk(walk);
    settleCounts();
    campaign.counted = walk.someCounted && !walk.someUncounted;
}

} // namespace

Campaign loadCampaign(const CampaignRequest& request) {
    const std::size_t complaintsBefore = complaintsSoFar();
    Campaign campaign;
    campaign.inputs = request.inputs;
    CampaignEvents events(campaign, request);
    const TraceFileList traceFiles = loadDescriptions(request.inputs);
    takeStock(campaign, request, events.patterns());
    if (request.detail != CampaignDetail::Rates) {
        campaign.counts.resize(campaign.itemCount);
    }
    walkTraces(campaign, traceFiles, events);
    events.finish();
    computeModifiedConditionHits();
    sumHits(campaign);
    nameStrayParts(campaign);
    if (campaign.tests.empty()) {
        warningMessage(translate("View", "There is no test: nothing counts as hit"));
    }
    warnUnmatchedTests(events.patterns());
    campaign.complaints = complaintsSoFar() - complaintsBefore;
    tellOfStrayParts(campaign);
    return campaign;
}

ItemNumbers itemNumbers(const CampaignService& service) {
    const Service& items = *service.service;
    ItemNumbers numbers;
    numbers.entry = service.firstItem;
    numbers.exits = numbers.entry + (items.entry ? 1 : 0);
    numbers.calls = numbers.exits + static_cast<std::uint32_t>(items.exits.size());
    numbers.blocks = numbers.calls + static_cast<std::uint32_t>(items.calls.size());
    numbers.conditions = numbers.blocks + static_cast<std::uint32_t>(items.blocks.size());
    numbers.end = numbers.conditions + static_cast<std::uint32_t>(items.conditions.size());
    return numbers;
}

std::string_view shownName(const CampaignTest& test) {
    return nameText(test.name);
}

} // namespace veldacov
