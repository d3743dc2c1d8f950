// Whole runs with all outputs: two bytes of options, then the body of a description, its source and a trace.

#include <filesystem>

#include "support.h"

using namespace veldacov;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t optionBytes = 2;
    if (size < optionBytes) {
        return 0;
    }
    // Bits of the first byte, then the values of two fields of the second.
    constexpr const char* choices[] = {"-NOGLOBAL",  "-CLEAN=c.tio", "-MERGETESTS", "-CIO=a.cio",
                                       "-FLOW=flow", "-LISTING",     "-BRANCH=COV", "-EXSERVICE=g"};
    constexpr const char* levels[] = {"", "-SUMMARY=SERVICE", "-SUMMARY=FILE", "-SUMMARY=CONCLUSION"};
    constexpr const char* types[] = {"",        "-PROC",    "-PROC=RET",       "-BLOCK",         "-BLOCK=ATC",
                                     "-COND",   "-NOCOND",  "-COND=MODIFIED",  "-COND=COMPOUND", "-CALL",
                                     "-NOPROC", "-NOBLOCK", "-BLOCK=IMPLICIT", "-BLOCK=LOGICAL", "-TEST=a",
                                     "-NOCALL"};
    const auto parts = fuzz::partsOf(fuzz::textOf(data, size).substr(optionBytes), 3);
    if (fuzz::asksForManyCases(parts[0], 100)) { // printed in every report of a test
        return 0;
    }
    fuzz::clearDirectory();
    std::filesystem::create_directory("src");
    fuzz::writeFile("a.fdc", fuzz::descriptionOf(fuzz::withoutPaths(parts[0])));
    fuzz::writeFile("src/a.c", parts[1]);
    fuzz::writeFile("a.tio", parts[2]);
    std::vector<std::string> words = {"a.fdc", "a.tio", "-OUTPUT=report"};
    for (std::size_t i = 0; i < 8; ++i) {
        if ((data[0] >> i & 1U) != 0) {
            words.emplace_back(choices[i]);
        }
    }
    for (const char* word : {levels[data[1] & 3U], types[data[1] >> 4U]}) {
        if (*word != '\0') {
            words.emplace_back(word);
        }
    }
    ::setenv("VELDACOV_LAN", (data[1] & 4U) != 0 ? "FR" : "GB", 1);
    fuzz::runs(words);
    return 0;
}
