#pragma once

// Selection by patterns: which files, services and tests a campaign has. A pattern is one of the shell (* ? [a-z]), as
// fnmatch takes it without flags; * also crosses "/". Files are matched as directory/name, as their description has them.
//
//   --file 'src/*' --exclude-file '*_gen.c' --service main --test 'nightly*'
//
// Something is selected when one of the patterns for it matches, or there are none, and no excluding pattern does.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace veldacov {

struct Pattern {
    std::string text;
    bool matched = false; // it has matched something
};

// The patterns for one sort of names.
struct NamePatterns {
    std::vector<Pattern> wanted;
    std::vector<Pattern> excluded;
};

struct Patterns {
    NamePatterns files{};
    NamePatterns services{};
    NamePatterns tests{};
};

// Whether a name is selected; notes which patterns have matched. Names are bytes; none of them is a NUL.
bool isSelected(NamePatterns& patterns, std::string_view name);

// Whether everything is selected.
inline bool selectsAll(const NamePatterns& patterns) {
    return patterns.wanted.empty() && patterns.excluded.empty();
}

// Warns about each pattern that has matched nothing: when all files and services have been looked at, and all tests.
void warnUnmatchedSources(const Patterns& patterns);
void warnUnmatchedTests(const Patterns& patterns);

} // namespace veldacov
