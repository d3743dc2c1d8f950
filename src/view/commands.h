#pragma once

// One operation per sub-command: loads the campaign, makes its thing, and gives the status of the program.

#include "view/command_line.h"

namespace veldacov {

int runCheck(const ViewRequest& request);
int runTests(const ViewRequest& request);

// The output of a request, "-" being standard output; one that cannot be created, or would destroy an input, is a fatal
// error.
OutputFile openViewOutput(const std::string& name);

} // namespace veldacov
