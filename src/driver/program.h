#pragma once

// One run of the program, from the words of its command line to its outputs. Several may follow each other in one
// process, as tests do.

#include <string>
#include <vector>

namespace veldacov {

// Does what the words ask for (the first is the program's name), and frees everything. Fatal and internal errors end
// the program; memory that runs out is one.
void runProgram(const std::vector<std::string>& words);

// Brings every module back to its state at the start, also after a run that a replaced end of the program has cut
// short.
void resetProgram();

} // namespace veldacov
