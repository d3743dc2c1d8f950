#pragma once

// One source from two preprocessed texts to the instrumented text and the description.

#include <optional>
#include <string>
#include <vector>

#include "notices.h"
#include "unit.h"

namespace veldacc {

struct SourceInput {
    std::string sourceName;         // as the compiler was given it
    std::string root;               // names are relative to it; empty: absolute
    std::string text;               // fully preprocessed
    std::string map;                // with macros; empty: none
    std::vector<std::string> leave; // "FILE:LINE" of instrumented code that the compiler has refused
    ParseOptions parse;
    Settings settings;
};

struct InstrumentedSource {
    std::string text;
    std::string description;     // empty when nothing is described
    std::vector<Notice> left;    // functions copied as they are
    std::vector<Notice> remarks; // compositions left out
    bool usedMap = false;
};

// None when Clang could not read the text at all.
std::optional<InstrumentedSource> instrument(const SourceInput& input);

} // namespace veldacc
