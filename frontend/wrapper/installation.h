#pragma once

#include <string>

namespace veldacc {

// A file that belongs to this program (its library directory): beside the program in the build tree, else in
// ../lib/veldacc, where the installation puts it.
std::string ownFile(const std::string& name);

} // namespace veldacc
