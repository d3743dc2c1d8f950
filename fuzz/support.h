#pragma once

// What the fuzz targets share. Each target is one file with LLVMFuzzerTestOneInput; a fault shows as a report of the
// sanitizers, as an abort in require, or as an input that takes too long or too much memory.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace veldacov::fuzz {

// Stands between the parts of an input that is several files.
constexpr char partSeparator = '\x1e';

// The bytes of an input as so many parts, the missing ones empty; the last one keeps what separators are left.
std::vector<std::string_view> partsOf(std::string_view bytes, std::size_t count);

// In the directory of the process, which is the current one.
void writeFile(const std::string& name, std::string_view bytes);
bool hasFile(const std::string& name);
std::string contentOf(const std::string& name); // empty without the file
void clearDirectory();

// Makes a call as the program would; false when it ended the program early. What the call has left in the modules
// stays until resetProgram.
bool returns(const std::function<void()>& call);

// One run of the program, from a fresh state to a fresh state; false when it ended early.
bool runs(const std::vector<std::string>& arguments);

// A description of src/a.c with the given body lines, of all coverage types, with checksum 7 and key 99; in traces
// "FT 36" and "DC 7".
std::string descriptionOf(std::string_view body, const std::string& source = "a.c",
                          const std::string& key = "99");
// A body with the identifiers 0 to 15 of each kind in two services, and a composition of four cases.
std::string smallBody();

// Compositions may have 2^32 cases. In real life they end the program for lack of memory, or take the minutes that
// the user is told of; both say nothing new and would drown the rest, so targets pass over texts in which the CC lines
// of a description ask for more cases than this.
bool asksForManyCases(std::string_view text, std::uint64_t limit);

// Names in descriptions and words lead to files that the program writes. Without separators all of them stay in the
// directory of the process; only the marker of a further section of a description keeps its own, behind its fence.
std::string withoutPaths(std::string_view text);

// Inline: the reported stack starts where it failed.
inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

} // namespace veldacov::fuzz

// The name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace veldacov::fuzz {

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

} // namespace veldacov::fuzz
