#pragma once

// File names of pages. They follow from the name of the source (or test) alone where that is possible, because people send
// each other links: src/burner.c has the page src-burner.c.html in each run.
//
// Letters, digits, ".", "_" and "-" stay, "/" becomes "-", everything else "_". A hash of the bytes stands behind names that are
// long, and behind those that would be the same name as another one, also on a file system that does not tell capitals from
// small letters.

#include <string>
#include <vector>

namespace veldacov {

// A file name for each of the names, in their order. No two are the same.
std::vector<std::string> pageNames(const std::vector<std::string>& names);

} // namespace veldacov
