#pragma once

// One source from two preprocessed texts to the instrumented text and the description.

#include <optional>
#include <string>
#include <vector>

#include "unit.h"

namespace veldacc {

struct SourceInput {
    std::string sourceName; // as the compiler was given it
    std::string root;       // names are relative to it; empty: absolute
    std::string text;       // fully preprocessed
    std::string map;        // with macros; empty: none
    ParseOptions parse;
    Settings settings;
};

struct InstrumentedSource {
    std::string text;
    std::string description;           // empty when nothing is described
    std::vector<std::string> warnings; // functions copied as they are: "file:line: ..."
    std::vector<std::string> remarks;  // compositions left out
    bool usedMap = false;
};

// None when Clang could not read the text at all.
std::optional<InstrumentedSource> instrument(const SourceInput& input);

} // namespace veldacc
