#include "launcher_form.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace veldacc {

namespace {

namespace fs = std::filesystem;

// The value of an entry NAME:TYPE=VALUE of a CMake cache, empty when there is none.
std::string cacheEntry(std::string_view cache, const std::string& name) {
    const std::size_t entry = cache.find('\n' + name + ':');
    const std::size_t value = entry == std::string_view::npos ? entry : cache.find('=', entry);
    if (value == std::string_view::npos) {
        return {};
    }
    return std::string(cache.substr(value + 1, cache.find('\n', value) - value - 1));
}

} // namespace

// CMake's objects stand in a directory CMakeFiles below that of the cache, and the cache names the compiler: with
// CC="veldacc gcc" this program, else the one that this program has been put in front of.
bool isLauncherForm(const CommandLine& line) {
    if (!line.output || line.output->find("CMakeFiles/") == std::string::npos) {
        return false;
    }
    std::error_code error;
    for (fs::path directory = fs::current_path(error); !directory.empty();
         directory = directory.parent_path()) {
        if (const std::optional<std::string> cache = readFile(directory / "CMakeCache.txt")) {
            return cacheEntry(*cache, "CMAKE_C_COMPILER") == line.original.front();
        }
        if (directory == directory.root_path()) {
            break;
        }
    }
    return false;
}

} // namespace veldacc
