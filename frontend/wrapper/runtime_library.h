#pragma once

// The run-time library that a link needs, and for which machine.

#include <string>

#include "compiler_line.h"
#include "process.h"

namespace veldacc {

// What the machine of the compiler is called; empty when it is the one that this program was built for, as far as the
// compiler's name and the options tell (a plain gcc, cc, clang, with or without a version).
std::string foreignMachine(const CommandLine& line);

// Words to put at the end of a link. For another machine the library is built from its installed sources by the
// compiler of the link, and kept in the user's cache directory; where that cannot be, in `temporary`. When it cannot
// be built, that is said and there are no words: a link that needs the library then fails with a name that tells.
Words runtimeLibrary(const CommandLine& line, const TemporaryDirectory& temporary);

} // namespace veldacc
