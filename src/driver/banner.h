#pragma once

// The version banner, the only output of a run that has no other words than -VERSION.

#include <string>
#include <string_view>
#include <vector>

#include "support/output.h"

namespace veldacov {

// True for "-V" up to "-VERSION", in either case, with nothing behind it.
bool isVersionRequest(std::string_view argument);

// Answers a version request: when it is the only argument (the program's name comes first), prints the banner
// to standard output and ends the process with status 0.
void versionEntry(const std::vector<std::string>& words);

// Writes the banner; every line starts with the prefix and ends with the suffix.
void printBanner(OutputFile& out, std::string_view prefix, std::string_view suffix);

} // namespace veldacov
