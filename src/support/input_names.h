#pragma once

// The names of inputs on a command line, wildcards included.

#include <memory>
#include <string>
#include <vector>

namespace veldacov {

// Expands the names of one command line. It may name thousands of files of one directory, which is listed once.
class InputNames {
public:
    InputNames();
    ~InputNames();
    InputNames(const InputNames&) = delete;
    InputNames& operator=(const InputNames&) = delete;

    // Appends the files that a value names: those of its directory that match it, or the value itself when nothing
    // does. A pipe is taken only under its very name; whatever else is there under that name cannot be opened.
    void expand(const std::string& value, std::vector<std::string>& inputFiles);

private:
    class Directories;
    std::unique_ptr<Directories> directories_;
};

} // namespace veldacov
