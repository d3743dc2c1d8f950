#pragma once

// Names as people may look at them: on a terminal, control characters of a name would move the cursor or worse.

#include <cstddef>
#include <string>
#include <string_view>

namespace veldacov {

// The text with its control characters, those of Latin-1 in UTF-8 included, as "\x1b"; tab and line feed as "\t" and
// "\n". All other bytes stay.
std::string shownText(std::string_view text);

// The text with blanks in front of it, where it is shorter than the width in bytes.
std::string padded(std::string_view text, std::size_t width);

} // namespace veldacov
