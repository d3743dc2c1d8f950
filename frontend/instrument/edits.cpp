#include "edits.h"

#include <algorithm>
#include <numeric>

namespace veldacc {

namespace {

// What is to be written at one place of the text. Places of one offset keep the order in which they stand here.
struct Piece {
    std::uint32_t offset = 0;
    std::uint32_t length = 0; // of the text that it replaces
    std::string_view text;
};

// Surroundings in the order in which their opening or closing texts are written.
std::vector<std::uint32_t> ordered(const std::vector<Surrounding>& all, bool closing) {
    std::vector<std::uint32_t> order(all.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        const Surrounding& x = all[a];
        const Surrounding& y = all[b];
        if (closing) {
            return x.last != y.last ? x.last < y.last : x.first != y.first ? x.first > y.first : a > b;
        }
        return x.first != y.first ? x.first < y.first : x.last != y.last ? x.last > y.last : a < b;
    });
    return order;
}

// The end of the token before, when a directive stands in between.
std::uint32_t offsetBeforePragmas(const std::string& text, const std::vector<TextToken>& tokens,
                                  std::uint32_t token) {
    const std::uint32_t at = tokens[token].offset;
    if (token == 0) {
        return at;
    }
    const std::uint32_t end = tokens[token - 1].offset + tokens[token - 1].length;
    return std::string_view(text).substr(end, at - end).find("#pragma") != std::string_view::npos ? end : at;
}

} // namespace

EditsMark markEdits(const Edits& edits) {
    return {edits.surroundings.size(), edits.behind.size(), edits.before.size(), edits.replacements.size()};
}

void takeBack(Edits& edits, const EditsMark& mark) {
    edits.surroundings.resize(mark.surroundings);
    edits.behind.resize(mark.behind);
    edits.before.resize(mark.before);
    edits.replacements.resize(mark.replacements);
}

std::size_t surround(Edits& edits, std::uint32_t first, std::uint32_t last, std::string open,
                     std::string close) {
    edits.surroundings.push_back({first, last, std::move(open), std::move(close), false});
    return edits.surroundings.size() - 1;
}

std::string applyEdits(const Edits& edits, const std::string& text, const std::vector<TextToken>& tokens) {
    const auto endOf = [&](std::uint32_t token) { return tokens[token].offset + tokens[token].length; };
    // At one offset: what closes, what stands behind a token, what stands before one, what opens.
    std::vector<Piece> pieces;
    for (const std::uint32_t i : ordered(edits.surroundings, true)) {
        pieces.push_back({endOf(edits.surroundings[i].last), 0, edits.surroundings[i].close});
    }
    for (const PointText& point : edits.behind) {
        pieces.push_back({endOf(point.token), 0, point.text});
    }
    for (const PointText& point : edits.before) {
        pieces.push_back({tokens[point.token].offset, 0, point.text});
    }
    for (const std::uint32_t i : ordered(edits.surroundings, false)) {
        const Surrounding& wrap = edits.surroundings[i];
        pieces.push_back(
            {wrap.beforePragmas ? offsetBeforePragmas(text, tokens, wrap.first) : tokens[wrap.first].offset,
             0, wrap.open});
    }
    for (const Replacement& replacement : edits.replacements) {
        pieces.push_back(
            {tokens[replacement.token].offset, tokens[replacement.token].length, replacement.text});
    }
    std::stable_sort(pieces.begin(), pieces.end(),
                     [](const Piece& a, const Piece& b) { return a.offset < b.offset; });

    std::string out;
    out.reserve(text.size() + text.size() / 2);
    std::uint32_t at = 0;
    for (const Piece& piece : pieces) {
        out.append(text, at, piece.offset - at);
        out += piece.text;
        at = piece.offset + piece.length;
    }
    return out.append(text, at);
}

} // namespace veldacc
