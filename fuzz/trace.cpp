// Any bytes as a trace of a small model, in a whole run; the first byte chooses what is written. A cleaned trace has to
// be a trace, and clean.

#include "support.h"

using namespace veldacov;

namespace {

// A cleaned trace as cleaning it once more has to leave it: a test without any name becomes the default test.
std::string cleanedAgain(std::string trace) {
    const std::string_view nameless = "NT\n";
    for (std::size_t line = 0; line < trace.size(); line = trace.find('\n', line) + 1) {
        if (trace.compare(line, nameless.size(), nameless) == 0) {
            trace.insert(line + 2, " \"#\"");
        }
    }
    return trace;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    constexpr const char* choices[] = {"-NOGLOBAL",  "-CLEAN=c.tio",        "-MERGETESTS", "-CIO=a.cio",
                                       "-FLOW=flow", "-SUMMARY=CONCLUSION", "-EXFILE=b.c", "-EXTEST=no"};
    fuzz::clearDirectory();
    fuzz::writeFile("a.fdc", fuzz::descriptionOf(fuzz::smallBody()));
    fuzz::writeFile("b.fdc", fuzz::descriptionOf("PR 0 proc \"f\" 1 9\n", "b.c", "98"));
    fuzz::writeFile("a.tio", fuzz::textOf(data, size).substr(1));
    std::vector<std::string> words = {"a.fdc", "b.fdc", "a.tio", "-OUTPUT=report"};
    for (std::size_t i = 0; i < 8; ++i) {
        if ((data[0] >> i & 1U) != 0) {
            words.emplace_back(choices[i]);
        }
    }
    if (fuzz::runs(words) && fuzz::hasFile("c.tio")) {
        fuzz::require(fuzz::runs({"a.fdc", "b.fdc", "c.tio", "-CLEAN=again.tio", "-OUTPUT=report"}));
        fuzz::require(fuzz::contentOf("again.tio") == cleanedAgain(fuzz::contentOf("c.tio")));
    }
    return 0;
}
