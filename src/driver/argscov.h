#pragma once

// This program's command line: the decoder takes it apart by the grammar, and what it found becomes the record of options,
// names of selections marked in the name pool.

#include <string>
#include <vector>

#include "report/options.h"

namespace veldacov {

// Decodes the command line (the program's name first) and fills the options. Options that do not fit together
// are warned about, and the losing one is ignored. False when the command line is malformed; its diagnostic
// has been printed then.
bool analyseCommandLine(std::vector<std::string> words, CoverageOptions& options);

} // namespace veldacov
