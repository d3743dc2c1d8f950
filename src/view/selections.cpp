#include "view/selections.h"

#include <algorithm>

#include <fnmatch.h>

#include "support/machine.h"

namespace veldacov {

namespace {

bool someMatch(std::vector<Pattern>& patterns, const std::string& name) {
    bool any = false;
    for (Pattern& pattern : patterns) {
        if (fnmatch(pattern.text.c_str(), name.c_str(), 0) == 0) {
            pattern.matched = true;
            any = true;
        }
    }
    return any;
}

void warnUnmatched(const std::vector<Pattern>& patterns, std::string_view option) {
    for (const Pattern& pattern : patterns) {
        if (!pattern.matched) {
            warningMessage(filled(
                translate("View", "The pattern %1 of %2 matches nothing", "%1 is a pattern, %2 an option"),
                {pattern.text, option}));
        }
    }
}

} // namespace

bool isSelected(NamePatterns& patterns, std::string_view name) {
    const std::string text(name);
    const bool wanted = patterns.wanted.empty() || someMatch(patterns.wanted, text);
    const bool excluded = someMatch(patterns.excluded, text);
    return wanted && !excluded;
}

void warnUnmatchedSources(const Patterns& patterns) {
    warnUnmatched(patterns.files.wanted, "--file");
    warnUnmatched(patterns.files.excluded, "--exclude-file");
    warnUnmatched(patterns.services.wanted, "--service");
    warnUnmatched(patterns.services.excluded, "--exclude-service");
}

void warnUnmatchedTests(const Patterns& patterns) {
    warnUnmatched(patterns.tests.wanted, "--test");
    warnUnmatched(patterns.tests.excluded, "--exclude-test");
}

} // namespace veldacov
