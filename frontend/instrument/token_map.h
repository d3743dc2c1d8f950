#pragma once

// Ties the tokens that Clang saw to those of the text that is compiled ("B"). Probes are put before and after tokens of
// B by their index; the tree and the texts come from the parse of the map ("C"), whose tokens are the same ones but for a
// spelling here and there (__LINE__ in a call over two lines, __COUNTER__). Where their number differs the map is of no
// use, and B is parsed itself.

#include <cstdint>
#include <string>
#include <vector>

#include "parse.h"

namespace veldacc {

struct TextToken {
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
};

// The tokens of a preprocessed text; directives are none.
std::vector<TextToken> tokenize(const std::string& text, const clang::LangOptions& language);

// The offsets of the # of all directives, ascending.
std::vector<std::uint32_t> directivesOf(const std::string& text, const clang::LangOptions& language);

// Whether the parse has the same tokens, one for one.
bool tokensAgree(const ParsedUnit& unit, const std::string& text, const std::vector<TextToken>& tokens);

} // namespace veldacc
