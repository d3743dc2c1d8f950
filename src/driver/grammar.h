#pragma once

// The command line of this program as data: positional words, options with their values and keywords, which of them
// exclude each other, and the usage text. The generic decoder (gcmdec.h) reads it; an option is a line here.

#include "driver/gcmdec.h"

namespace veldacov {

// The command line of this program.
CommandGrammar commandGrammar();

} // namespace veldacov
