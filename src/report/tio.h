#pragma once

// Trace files (TIO): what an instrumented program leaves of its tests. One record per line, its first field a
// keyword:
//
//   NT "name" 1 2       start of a test: optional name, test number, service number
//   DT "a date"         date of the test, or DT 0be5a475 in seconds since 1970
//   CO                  the hits of this test carry counts
//   FT 64f0b3c1         the hits that follow belong to the described file with this key ...
//   DC 0a1              ... and this checksum; stands on the very next line
//   TP 0 3              procedure branch (TA call, TB block, TE condition) hit: identifier, count after CO
//   EI 13               the program met an error at run time
//
// Numbers are in the trace hexadecimal form. This is the only parser of these lines; the report and the path
// trace each walk through a file with a cursor of their own.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "description/hit_counting.h"
#include "description/model.h"
#include "description/name_pool.h"
#include "report/options.h"
#include "support/files.h"

namespace veldacov {

enum class LineKind : std::uint8_t { NT, DT, CO, FT, DC, TP, TA, TB, TE, EI, Other };
// By LineKind; Other has none.
inline constexpr std::array<std::string_view, 10> lineKeywords = {"NT", "DT", "CO", "FT", "DC",
                                                                  "TP", "TA", "TB", "TE", "EI"};
LineKind lineKind(std::string_view keyword);
// The keyword of a hit of this kind.
constexpr std::string_view keywordOf(ItemKind kind) {
    return lineKeywords[static_cast<std::size_t>(LineKind::TP) + kindIndex(kind)];
}

enum class ReadState : std::uint8_t {
    Recording,
    SkippingTest, // the current test is not selected
    SkippingPart, // the current file part is not reported
    Invalid       // the file is no trace
};

// How far a reader has come in its traces. The test, the part and the count mode carry over from one trace
// file to the next; the state and the date start anew with each.
struct TraceCursor {
    std::string fileName;
    InputFile stream;
    Line line; // behind its keyword
    ReadState state = ReadState::Recording;
    const NameEntry* defaultTest = nullptr; // of a test line with neither name nor number
    const NameEntry* currentTest = nullptr;
    const NameEntry* testDate = nullptr;
    FileDescription* currentPart = nullptr; // of the last FT and DC lines
    bool countOriented = false;
};

// A cursor before the first trace.
TraceCursor startOfTraces();

// Opens the next file; a failure is a fatal error.
void openTrace(TraceCursor& cursor, const std::string& fileName);

// Whether CO and hit lines of a skipped part are of interest.
enum class SkippedParts : bool { Ignored, Read };

// Goes to the next line that concerns the reader in its state, and gives its kind: NT, DT, CO, FT or a hit.
// Lines to ignore are passed over; run-time errors are warned about. None at the end of the file, or when the
// file turns out to be no trace (a user error). Lines out of place are fatal errors.
std::optional<LineKind> nextTraceLine(TraceCursor& cursor, SkippedParts skippedParts);

// The fields of the line in hand. Missing and malformed numbers are fatal errors.
struct TestLine {
    const NameEntry* name = nullptr; // null when absent or empty
    std::int32_t number = -1;
    std::int32_t serviceNumber = -1;
    std::string_view numberText; // as written; valid until the next line is read
};
TestLine readTestLine(TraceCursor& cursor);

// What the test of a line is known by: its name, its number as written, or nothing but the default. It may be
// null (a number without digits).
enum class KnownBy : std::uint8_t { Name, Number, Default };
struct TestIdentity {
    const NameEntry* test = nullptr;
    KnownBy knownBy = KnownBy::Default;
};
TestIdentity identityOf(const TraceCursor& cursor, const TestLine& line);

// Makes a test the current one, without counts until its CO line. Gives whether it is selected (a test without a
// name always is); the lines of another one are skipped.
bool enterTest(TraceCursor& cursor, const NameEntry* test, const CoverageOptions& options);

// The date of a DT line, null when it gives none.
const NameEntry* readTestDate(TraceCursor& cursor);

// Key and checksum of an FT line and the DC line behind it.
struct PartKey {
    std::uint32_t fileKey = 0;
    std::uint32_t checksum = 0;
};
PartKey readFilePart(TraceCursor& cursor);

// `kind` is that of the line, TP to TE. The count is 1 in tests without counts.
Hit readHit(TraceCursor& cursor, LineKind kind);

// Items whose hits have been seen (see SeenHits), by the keyword of their hits.
struct KnownHits {
    struct Items {
        const std::uint8_t* plain = nullptr;
        std::uint32_t* counted = nullptr;
        std::uint32_t size = 0;    // of the one that is used
        std::uint32_t keyword = 0; // its two letters and the blank behind them, the first in the lowest place
        ItemKind kind = ItemKind::Procedure;
        std::uint8_t needed = 0; // bits that plain hits of known items have
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

// Takes the hit lines that stand next in their plain form, as programs write them (keyword, identifier, and a
// count in counted tests; one blank between, no other characters), and calls take(hit) for each that is not of
// a known item; the counts of known ones are put aside. Stops before any other line, and near the end of the
// bytes in hand; what it leaves is read by nextTraceLine and means the same. Only for states that deliver hits,
// with a current part. It goes forward through the bytes once: this is where the time of a run goes.
template <typename Take>
void takePlainHits(TraceCursor& cursor, const KnownHits& known, Take take);

// The coverage types whose use lets a hit of this kind be recorded.
constexpr std::uint16_t typesOfKind(ItemKind kind) {
    constexpr std::array<std::uint16_t, 4> types = {type::procedures | type::exits, type::calls,
                                                    type::simpleBlocks | type::implicitBlocks |
                                                        type::logicalBlocks | type::atcBlocks,
                                                    type::basicConditions | type::compoundConditions};
    return types[kindIndex(kind)];
}
namespace detail {

constexpr std::ptrdiff_t longestPlainHit = 2 + 1 + 8 + 1 + 8 + 2;

constexpr std::uint32_t fourCharacters(const char* at) {
    const auto byte = [at](std::size_t place) {
        return std::uint32_t{static_cast<unsigned char>(at[place])};
    };
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

// Gives the first line that it leaves.
template <bool counted, typename Take>
const char* takePlainHits(const char* line, const char* end, const KnownHits& known, Take take) {
    while (end - line >= longestPlainHit) {
        const std::uint32_t keyword = fourCharacters(line) & keywordMask;
        const KnownHits::Items& items = KnownHits::ofKeyword(known, keyword);
        std::uint32_t id = 0;
        const char* at = items.keyword == keyword ? takeHex(line + 3, id) : nullptr;
        std::uint32_t count = 1;
        if (counted && at != nullptr) {
            at = *at == ' ' ? takeHex(at + 1, count) : nullptr;
        }
        const char* nextLine = at != nullptr ? behindLineEnd(at) : nullptr;
        if (nextLine == nullptr) {
            break;
        }
        if (!isKnown<counted>(items, id, count)) {
            take(Hit{items.kind, id, count});
        }
        line = nextLine;
    }
    return line;
}

} // namespace detail

template <typename Take>
void takePlainHits(TraceCursor& cursor, const KnownHits& known, Take take) {
    const char* const buffer = cursor.stream.buffer.get();
    const char* const line = buffer + cursor.stream.begin;
    const char* const end = buffer + cursor.stream.end;
    const char* const left = cursor.countOriented ? detail::takePlainHits<true>(line, end, known, take)
                                                  : detail::takePlainHits<false>(line, end, known, take);
    cursor.stream.begin = static_cast<std::size_t>(left - buffer);
}

} // namespace veldacov
