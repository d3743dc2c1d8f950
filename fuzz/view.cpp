// The second program: any words as its command line, one a line, beside the response file r.rsp; and any pattern, which
// must part the tests in those that it selects and those that it excludes.

#include <algorithm>
#include <set>

#include "report/tio.h"
#include "support.h"
#include "support/machine.h"
#include "support/run_files.h"
#include "view/campaign.h"
#include "view/commands.h"

using namespace veldacov;

namespace {

void reset() {
    forgetRunFiles();
    freeAllDescriptions();
    freeNamePool();
}

std::multiset<std::string> testsOf(const NamePatterns& tests) {
    std::multiset<std::string> names;
    initNamePool();
    fuzz::returns([&] {
        CampaignRequest request;
        request.inputs = {"a.fdc", "a.tio"};
        request.patterns.tests = tests;
        request.detail = CampaignDetail::Tests;
        for (const CampaignTest& test : loadCampaign(request).tests) {
            names.insert(std::string(shownName(test)) + std::to_string(test.number));
        }
    });
    reset();
    return names;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    [[maybe_unused]] static const bool setUp = ::clearenv() == 0; // references to variables lead nowhere
    std::string bytes(fuzz::textOf(data, size));
    std::replace(bytes.begin(), bytes.end(), '/', '_'); // all outputs stay in the directory
    const auto parts = fuzz::partsOf(bytes, 2);
    fuzz::clearDirectory();
    fuzz::writeFile("r.rsp", parts[1]);
    fuzz::writeFile("a.fdc", fuzz::descriptionOf(fuzz::smallBody()));
    fuzz::writeFile(
        "a.tio",
        "FT 36\nDC 7\nTB 0\nNT \"a\" 1 1\nFT 36\nDC 7\nTP 0\nNT \"bb\"\nCO\nFT 36\nDC 7\nTE 1 0\nNT \"\" 3\n"
        "FT 36\nDC 8\nNT \"a\" 2\nFT 1\nDC 7\n");
    std::vector<std::string> words = {"veldaview"};
    for (std::string_view left = parts[0]; !left.empty();) {
        const std::size_t end = std::min(left.find('\n'), left.size());
        words.emplace_back(left.substr(0, end));
        left.remove_prefix(std::min(end + 1, left.size()));
    }
    if (words.size() > 1) {
        words.insert(words.begin() + 2, {"a.fdc", "a.tio"});
    }
    fuzz::returns([&] { runView(words); });
    reset();

    const std::vector<Pattern> patterns = {{std::string(parts[1])}};
    std::multiset<std::string> parted = testsOf({patterns, {}});
    parted.merge(testsOf({{}, patterns}));
    const std::multiset<std::string> all = testsOf({});
    fuzz::require(!all.empty()); // the trace is a good one, or nothing is compared
    fuzz::require(parted == all);
    return 0;
}
