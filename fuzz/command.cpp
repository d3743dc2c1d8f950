// Any words as a command line, one a line or ended by a NUL, beside the response file r.rsp.

#include <algorithm>

#include <unistd.h>

#include "driver/banner.h"
#include "support.h"

using namespace veldacov;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    [[maybe_unused]] static const bool setUp = [] { // references to variables lead to nowhere outside
        ::clearenv();
        return ::setenv("V", "a.fdc,-PROC", 1) == 0;
    }();
    std::string bytes(fuzz::textOf(data, size));
    std::replace(bytes.begin(), bytes.end(), '/', '_'); // all outputs stay in the directory
    const auto parts = fuzz::partsOf(bytes, 2);
    fuzz::clearDirectory();
    fuzz::writeFile("r.rsp", parts[1]);
    fuzz::writeFile("a.fdc", fuzz::descriptionOf(fuzz::smallBody()));
    fuzz::writeFile("a.tio", "NT \"a\" 1 1\nFT 36\nDC 7\nTP 0\n");
    std::vector<std::string> words;
    for (std::string_view left = parts[0]; !left.empty();) {
        const std::size_t end = std::min(left.find_first_of(std::string_view("\n\0", 2)), left.size());
        words.emplace_back(left.substr(0, end));
        left.remove_prefix(std::min(end + 1, left.size()));
    }
    std::vector<std::string> all = {"veldacov"};
    all.insert(all.end(), words.begin(), words.end());
    if (fuzz::returns([&] { versionEntry(all); })) {
        fuzz::runs(words);
    }
    return 0;
}
