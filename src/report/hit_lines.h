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

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "description/hit_counting.h"
#include "description/model.h"
#include "report/tio.h"
#include "support/files.h"

namespace veldacov {

// What is known of items, by the keyword of their hits.
struct KnownHits {
    struct Items {
        const std::uint8_t* bits = nullptr;
        std::uint32_t* aside = nullptr;
        std::uint32_t size = 0;    // of the one that is used; 0 where nothing may be taken for known
        std::uint32_t keyword = 0; // its two letters and the blank behind them, the first in the lowest byte
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

// Up to here a carriage return inside of a line ends nothing (see readLine).
constexpr std::ptrdiff_t longestCarefulLine = 1024;

constexpr std::uint32_t fourCharacters(const char* at) {
    const auto byte = [at](std::size_t i) { return std::uint32_t{static_cast<unsigned char>(at[i])}; };
    return byte(0) | byte(1) << 8U | byte(2) << 16U | byte(3) << 24U;
}
constexpr std::uint32_t keywordMask = 0xFFFFFF;

// Reads one to eight hexadecimal digits; null when there is none. A ninth digit is left standing.
inline const char* takeHex(const char* at, std::uint32_t& value) {
    int digit = hexDigitValues[static_cast<unsigned char>(*at)];
    if (digit < 0) {
        return nullptr;
    }
    value = static_cast<std::uint32_t>(digit);
    for (unsigned shift = 4; shift < 32; shift += 4) {
        digit = hexDigitValues[static_cast<unsigned char>(*++at)];
        if (digit < 0) {
            return at;
        }
        value |= static_cast<std::uint32_t>(digit) << shift;
    }
    return at + 1;
}

// The line behind a usual line end; null when there is none.
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
        std::uint32_t& aside = items.aside[id];
        const bool known = aside != 0;
        aside = known ? saturatingSum(aside, count) : 0;
        return known;
    } else {
        return (items.bits[id] & items.needed) == items.needed;
    }
}

inline bool endsField(char character) {
    return character == ' ' || character == '\n' || character == '\r';
}
// The number behind blanks; none is an empty one, 0. A line feed stands somewhere behind it.
inline const char* takeField(const char* at, std::uint32_t& value) {
    while (*at == ' ') {
        ++at;
    }
    value = 0;
    const char* behind = takeHex(at, value);
    return behind != nullptr ? behind : at;
}

// A hit line in another form; `behind` is null where it is left to others. Out of line: it shall not weigh on the loop.
struct CarefulHit {
    Hit hit;
    const KnownHits::Items* items = nullptr;
    const char* behind = nullptr;
};
template <bool counted>
[[gnu::noinline]] CarefulHit readCarefully(const char* line, const char* end, const KnownHits& known) {
    CarefulHit read;
    const auto inHand = static_cast<std::size_t>(std::min(end - line, longestCarefulLine));
    const auto* lineEnd = static_cast<const char*>(std::memchr(line, '\n', inHand));
    if (lineEnd == nullptr) {
        return read;
    }
    const char* at = std::find_if(line, lineEnd, [](char character) { return character != ' '; });
    const std::uint32_t keyword = lineEnd - at >= 3 ? fourCharacters(at) & keywordMask : 0;
    read.items = &KnownHits::ofKeyword(known, keyword);
    if (keyword == 0 || read.items->keyword != keyword) {
        return read;
    }
    read.hit.kind = read.items->kind;
    at = takeField(at + 3, read.hit.id);
    if (counted) {
        if (*at != ' ') { // no count: a fault
            return read;
        }
        at = takeField(at, read.hit.count);
    }
    read.behind = endsField(*at) ? lineEnd + 1 : nullptr;
    return read;
}

// Gives the first line that it leaves.
template <bool counted, typename Take>
const char* takeHitLines(const char* line, const char* end, const KnownHits& known, Take take) {
    while (end - line >= static_cast<std::ptrdiff_t>(longestHitLine)) {
        const std::uint32_t keyword = fourCharacters(line) & keywordMask;
        const KnownHits::Items& items = KnownHits::ofKeyword(known, keyword);
        std::uint32_t id = 0;
        const char* at = items.keyword == keyword ? takeHex(line + 3, id) : nullptr;
        std::uint32_t count = 1;
        if (counted && at != nullptr) {
            at = *at == ' ' ? takeHex(at + 1, count) : nullptr;
        }
        const char* nextLine = at != nullptr ? behindLineEnd(at) : nullptr;
        if (nextLine != nullptr) {
            if (!isKnown<counted>(items, id, count)) {
                take(Hit{items.kind, id, count});
            }
            line = nextLine;
            continue;
        }
        const CarefulHit careful = readCarefully<counted>(line, end, known);
        if (careful.behind == nullptr) {
            break;
        }
        if (!isKnown<counted>(*careful.items, careful.hit.id, careful.hit.count)) {
            take(careful.hit);
        }
        line = careful.behind;
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
