#pragma once

#include "driver/gcmdec.h"

namespace veldacov {

// The command line of this program.
CommandGrammar commandGrammar();

} // namespace veldacov
