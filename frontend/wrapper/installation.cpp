#include "installation.h"

#include <filesystem>
#include <system_error>

namespace veldacc {

namespace {

std::string findLibraryDirectory() {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path beside = fs::read_symlink("/proc/self/exe", error).parent_path();
    const fs::path inBuildTree = beside / "lib/veldacc";
    return fs::is_directory(inBuildTree, error) ? inBuildTree.string()
                                                : (beside.parent_path() / "lib/veldacc").string();
}

} // namespace

std::string ownFile(const std::string& name) {
    static const std::string directory = findLibraryDirectory();
    return directory + '/' + name;
}

} // namespace veldacc
