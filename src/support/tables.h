#pragma once

// Look-ups in the tables of constants by which readers know words: the first row whose field has a value.
//
//   constexpr std::array<BlockWord, 4> blockWords = {{{"simple", BlockKind::Simple}, ...}};
//   rowWith(blockWords, &BlockWord::word, "simple")      the first row; null for a word that no row has

#include <algorithm>
#include <iterator>

namespace veldacov {

// Null when there is no such row. For small tables: the rows are gone through in order.
template <typename Rows, typename Row, typename Field, typename Value>
constexpr auto* rowWith(Rows& rows, Field Row::*field, const Value& value) {
    const auto row = std::find_if(std::begin(rows), std::end(rows),
                                  [&](const Row& candidate) { return candidate.*field == value; });
    return row != std::end(rows) ? &*row : nullptr;
}

} // namespace veldacov
