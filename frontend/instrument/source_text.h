#pragma once

// The texts of conditions and callees: the user's spelling on one line without comments. A macro name stays a macro name
// where the user wrote it:
//
//     #define IS_OK(x) ((x) > LOW && (x) < 10)
//     if (IS_OK(a /* now */ + 1) || ready(b))
//
// gives `(a + 1) > LOW`, `(a + 1) < 10` and `ready(b)`: what a macro makes is spelled as in the macro's body, at the
// innermost level that holds it as a whole, with the arguments as they were written.

#include <string>

#include "parse.h"

namespace veldacc {

// The text from one token of the parse to another; `expanded` is what these tokens are in the compiled text, used where
// no level holds them.
std::string spellRange(const ParsedUnit& unit, std::uint32_t first, std::uint32_t last,
                       std::string_view expanded);

// On one line, blanks and comments made one blank, none at the ends.
std::string onOneLine(std::string_view text);

// Without parentheses around the whole.
std::string withoutOuterParentheses(std::string text);

} // namespace veldacc
