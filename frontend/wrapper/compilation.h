#pragma once

// The steps of one source: see docs/front-end.md.

#include <string>

#include "compiler_line.h"
#include "process.h"
#include "settings.h"

namespace veldacc {

struct Compilation {
    const CommandLine& line;
    const Settings& settings;
    const Argument& source;
    std::string object;                      // what has to be made
    std::string machine;                     // --target of the instrumenter, may be empty
    std::string standardInput = "/dev/null"; // of all steps
};

struct Compiled {
    Outcome outcome = {};         // of the user's compilation, as far as the user is concerned
    bool instrumented = false;    // else the object is that of the original
    std::string description = {}; // file with the description, empty when there is none
};

// Makes the object, instrumented where that is possible. Files stand in `directory`, which is made, the description too.
Compiled compile(const Compilation& compilation, const std::string& directory);

} // namespace veldacc
