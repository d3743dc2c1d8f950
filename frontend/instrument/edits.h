#pragma once

// What is put into the text, by tokens. Texts that surround tokens nest: of two that begin at the same token the one that
// ends later stands outside, and of two of the same extent the one that was added first.

#include <cstdint>
#include <string>
#include <vector>

#include "token_map.h"

namespace veldacc {

struct Surrounding {
    std::uint32_t first = 0; // token
    std::uint32_t last = 0;
    std::string open;
    std::string close;
    bool beforePragmas = false; // `open` goes in front of #pragma lines that stand before the token
};

struct PointText {
    std::uint32_t token = 0;
    std::string text;
};

struct Replacement {
    std::uint32_t token = 0;
    std::string text;
};

struct Edits {
    std::vector<Surrounding> surroundings;
    std::vector<PointText> behind;         // right behind a token, inside nothing that ends there
    std::vector<PointText> before;         // right before a token, inside nothing that begins there
    std::vector<Replacement> replacements; // in place of a token
};

struct EditsMark {
    std::size_t surroundings = 0;
    std::size_t behind = 0;
    std::size_t before = 0;
    std::size_t replacements = 0;
};
EditsMark markEdits(const Edits& edits);
void takeBack(Edits& edits, const EditsMark& mark);

// Adds texts around tokens; gives the index, by which they can still be changed.
std::size_t surround(Edits& edits, std::uint32_t first, std::uint32_t last, std::string open,
                     std::string close);

// The text with all edits. Line ends stay where they are.
std::string applyEdits(const Edits& edits, const std::string& text, const std::vector<TextToken>& tokens);

} // namespace veldacc
