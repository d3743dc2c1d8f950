#pragma once

// The sub-commands: each loads a campaign, makes its thing of it, and gives the status of the program. What the things are
// stands in modules of their own.

#include <string>
#include <vector>

#include "support/output.h"

namespace veldacov {

// One run of the program, from the words of its command line, its own name first, to its status. It frees everything, so
// that another run may follow. Fatal and internal errors end the program; memory that runs out is one.
int runView(const std::vector<std::string>& words);

// The output of a name, "-" being standard output; one that cannot be created, or would destroy an input, is a fatal
// error.
OutputFile openViewOutput(const std::string& name);

} // namespace veldacov
