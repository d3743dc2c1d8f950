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
// trace each walk through a file with a cursor of their own. The loop over hit lines, where the time of a run goes, has a
// header of its own (hit_lines.h).

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
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

// Hit lines as programs and cleaned traces write them: one blank between the fields, nothing behind the last but a line
// end, which may have a carriage return. This is their length at most.
constexpr std::size_t longestHitLine = 2 + 1 + 8 + 1 + 8 + 2;

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

// The coverage types whose use lets a hit of this kind be recorded.
constexpr std::uint16_t typesOfKind(ItemKind kind) {
    constexpr std::array<std::uint16_t, 4> types = {type::procedures | type::exits, type::calls,
                                                    type::simpleBlocks | type::implicitBlocks |
                                                        type::logicalBlocks | type::atcBlocks,
                                                    type::basicConditions | type::compoundConditions};
    return types[kindIndex(kind)];
}

} // namespace veldacov
