#pragma once

// The loop in which a run over traces spends its time: hit lines, one behind the other, taken from the bytes in hand.
//
// Three out of four lines of a large trace tell nothing new: the test has hit the item before. So the loop does not
// look the item up. It goes from the keyword and the identifier straight to one note about them (KnownHits, a view of
// the notes of SeenHits), a byte or a word in an array:
//
//   uncounted test   the byte says that another such hit changes nothing: the line is done
//   counted test     the word holds 1 + the counts put aside for the item since its first hit: the count is added there
//
// Only what is not known yet goes to the caller, who records it and so makes it known. What always holds: an item that
// is known has been recorded in this test, in this kind of counting, and kept where hits are kept; a hit that would
// not be recorded is not put aside either.
//
// Programs write their hits in one form ("TP 4a1 2", one blank, nothing behind it), which is tried first and costs one
// pass over the characters. Other forms of the same fields (more blanks, further fields) are read a second time by a
// careful reader. Whatever both leave standing (other keywords, faults, a line that is not all in hand) is for
// nextTraceLine, which means the same by the same lines and has the messages. docs/performance.md has the figures, and
// the designs that were slower.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "description/model.h"
#include "report/tio.h"
#include "support/files.h"

namespace veldacov {

// What is known of items, by the keyword of their hits.
struct KnownHits {
    struct Items {
        const std::uint8_t* plain = nullptr;
        std::uint32_t* counted = nullptr;
        std::uint32_t size = 0;    // of the one that is used; 0 where nothing may be taken for known
        std::uint32_t keyword = 0; // its two letters and the blank behind them, the first in the lowest place
        ItemKind kind = ItemKind::Procedure;
        std::uint8_t needed = 0; // bits that uncounted hits of known items have
    };
    // By the second letter of the keyword, whose last three bits tell the four letters apart.
    std::array<Items, 8> byLetter{};

    static constexpr std::uint32_t startOfLine(ItemKind kind) {
        const auto letter = [kind](std::size_t i) {
            return std::uint32_t{static_cast<unsigned char>(veldacov::keywordOf(kind)[i])};
        };
        return letter(0) | letter(1) << 8U | std::uint32_t{' '} << 16U;
    }
    template <typename Known>
    static constexpr auto& ofKeyword(Known& known, std::uint32_t keyword) {
        return known.byLetter[keyword >> 8U & 7U];
    }
};
inline constexpr KnownHits noKnownHits = [] {
    KnownHits known;
    for (const ItemKind kind : itemKinds) {
        const std::uint32_t keyword = KnownHits::startOfLine(kind);
        KnownHits::ofKeyword(known, keyword) = {nullptr, nullptr, 0, keyword, kind, 0};
    }
    return known;
}();
// What is known of a description where hits are recorded for some coverage types, or kept for the cleaned trace.
KnownHits knownHits(FileDescription& description, Counting counting, std::uint16_t recordedTypes, bool kept);

// Takes the hit lines that stand next and calls take(hit) for each that is not of a known item; the counts of known
// ones are put aside. Stops before any other line, and near the end of the bytes in hand; what it leaves is read by
// nextTraceLine and means the same. Only for states that deliver hits, with a current part. It goes forward through
// the bytes once.
template <typename Take>
void takeHitLines(TraceCursor& cursor, const KnownHits& known, Take take);

namespace detail {

constexpr std::ptrdiff_t longestUsualLine = 2 + 1 + 8 + 1 + 8 + 2;
// Up to here a carriage return inside of a line ends nothing (see readLine).
constexpr std::ptrdiff_t longestCarefulLine = 1024;

constexpr std::uint32_t fourCharacters(const char* at) {
    const auto byte = [at](std::size_t place) {
        return std::uint32_t{static_cast<unsigned char>(at[place])};
    };
    return byte(0) | byte(1) << 8U | byte(2) << 16U | byte(3) << 24U;
}
constexpr std::uint32_t keywordMask = 0xFFFFFF;

// Reads up to eight hexadecimal digits; the place behind them. No digit is an empty number, 0; a ninth is left
// standing.
inline const char* takeHex(const char* at, std::uint32_t& value) {
    value = 0;
    for (unsigned shift = 0; shift < 32; shift += 4) {
        const int digit = hexDigitValues[static_cast<unsigned char>(*at)];
        if (digit < 0) {
            return at;
        }
        value |= static_cast<std::uint32_t>(digit) << shift;
        ++at;
    }
    return at;
}

// The line behind a plain line end; null when there is none.
inline const char* behindLineEnd(const char* at) {
    if (*at == '\n') {
        return at + 1;
    }
    return at[0] == '\r' && at[1] == '\n' ? at + 2 : nullptr;
}

template <bool counted>
bool isKnown(const KnownHits::Items& items, std::uint32_t id, std::uint32_t count) {
    if (id >= items.size) {
        return false;
    }
    if constexpr (counted) {
        std::uint32_t& aside = items.counted[id];
        const bool known = aside != 0;
        aside = known ? saturatingSum(aside, count) : 0;
        return known;
    } else {
        return (items.plain[id] & items.needed) == items.needed;
    }
}

// A hit read from a line, and the line behind it; `behind` is null where the line is left to others.
struct HitLine {
    const char* behind = nullptr;
    const KnownHits::Items* items = nullptr;
    std::uint32_t id = 0;
    std::uint32_t count = 1;
};

template <bool counted>
HitLine usualHitLine(const char* line, const KnownHits& known) {
    HitLine hit;
    const std::uint32_t keyword = fourCharacters(line) & keywordMask;
    hit.items = &KnownHits::ofKeyword(known, keyword);
    if (hit.items->keyword != keyword) {
        return hit;
    }
    const char* start = line + 3;
    const char* at = takeHex(start, hit.id);
    if (counted) {
        if (at == start || *at != ' ') {
            return hit;
        }
        start = at + 1;
        at = takeHex(start, hit.count);
    }
    hit.behind = at != start ? behindLineEnd(at) : nullptr;
    return hit;
}

// The same for every form that the tokens of a line may have; an absent number is left to the reader that refuses it.
template <bool counted>
[[gnu::noinline]] HitLine carefulHitLine(const char* line, const char* end, const KnownHits& known) {
    HitLine hit;
    const auto inHand = static_cast<std::size_t>(std::min(end - line, longestCarefulLine));
    const auto* lineEnd = static_cast<const char*>(std::memchr(line, '\n', inHand));
    if (lineEnd == nullptr) {
        return hit;
    }
    const auto isEndOfField = [](char character) {
        return character == ' ' || character == '\n' || character == '\r';
    };
    const auto skipBlanks = [](const char* at) { // a line feed stands behind them
        while (*at == ' ') {
            ++at;
        }
        return at;
    };
    const char* at = skipBlanks(line);
    if (lineEnd - at < 3) {
        return hit;
    }
    const std::uint32_t keyword = fourCharacters(at) & keywordMask;
    hit.items = &KnownHits::ofKeyword(known, keyword);
    if (hit.items->keyword != keyword) {
        return hit;
    }
    at = takeHex(skipBlanks(at + 3), hit.id);
    if (counted) {
        if (*at != ' ') {
            return hit;
        }
        at = takeHex(skipBlanks(at), hit.count);
    }
    hit.behind = isEndOfField(*at) ? lineEnd + 1 : nullptr;
    return hit;
}

// Gives the first line that it leaves.
template <bool counted, typename Take>
const char* takeHitLines(const char* line, const char* end, const KnownHits& known, Take take) {
    while (end - line >= longestUsualLine) {
        HitLine hit = usualHitLine<counted>(line, known);
        if (hit.behind == nullptr) {
            hit = carefulHitLine<counted>(line, end, known);
            if (hit.behind == nullptr) {
                break;
            }
        }
        if (!isKnown<counted>(*hit.items, hit.id, hit.count)) {
            take(Hit{hit.items->kind, hit.id, hit.count});
        }
        line = hit.behind;
    }
    return line;
}

} // namespace detail

template <typename Take>
void takeHitLines(TraceCursor& cursor, const KnownHits& known, Take take) {
    const char* const buffer = cursor.stream.buffer.get();
    const char* const line = buffer + cursor.stream.begin;
    const char* const end = buffer + cursor.stream.end;
    const char* const left = cursor.countOriented ? detail::takeHitLines<true>(line, end, known, take)
                                                  : detail::takeHitLines<false>(line, end, known, take);
    cursor.stream.begin = static_cast<std::size_t>(left - buffer);
}

} // namespace veldacov
