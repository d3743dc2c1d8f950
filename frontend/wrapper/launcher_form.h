#pragma once

#include "compiler_line.h"

namespace veldacc {

// True when CMake calls this program as a compiler launcher (CMAKE_C_COMPILER_LAUNCHER), in front of its compiler
// instead of being its compiler. Links then pass it by, and instrumented objects lack the run-time library.
bool isLauncherForm(const CommandLine& line);

} // namespace veldacc
