#pragma once

// What the user asked of `veldacc` itself: VELDACC_OPTIONS first, then the words in front of the compiler.

#include <optional>
#include <string>

#include "words.h"

namespace veldacc {

struct Settings {
    std::string descriptionDirectory; // --fdc-dir, empty: beside each object
    std::string root;                 // --root, absolute; empty: none
    unsigned timeLimit = 60;          // --time-limit, seconds for one source; 0: none
    bool strict = false;              // --strict: what cannot be instrumented is an error
    bool verbose = false;             // --verbose: the commands are shown
    bool keepTemporary = false;       // --keep-temporary
    Words forInstrumenter;            // options that are handed on
};

struct Invocation {
    Settings settings;
    Words command; // the compiler and its arguments; empty when a question has been answered
};

// Reads the words behind the program's name. Mistakes in them, --help and --version end the program.
Invocation readInvocation(const Words& words);

} // namespace veldacc
