#include "report/tio.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include <QtGlobal>

#include "description/hit_counting.h"
#include "description/tokens.h"
#include "report/auth.h"
#include "support/machine.h"
#include "support/run_files.h"
#include "support/tables.h"

namespace veldacov {

namespace {

// The fatal errors of a trace, by what is wrong with it. %1 is the trace.
namespace fault {
constexpr TranslatableText cannotOpen =
    QT_TRANSLATE_NOOP3("Fatal Error", "Cannot open trace file %1", "%1 is the name of the trace file");
constexpr TranslatableText unknownOpcode =
    QT_TRANSLATE_NOOP3("Fatal Error", "Unknown opcode in trace file %1", "%1 is the name of the trace file");
constexpr TranslatableText partWithoutEnd =
    QT_TRANSLATE_NOOP3("Fatal Error", "No DC line in TIO file %1", "%1 is the name of the file");
constexpr TranslatableText noChecksumLine = QT_TRANSLATE_NOOP3(
    "Fatal Error", "DC line missing after FT line in TIO file %1", "%1 is the name of the file");
constexpr TranslatableText hitOutsideOfParts =
    QT_TRANSLATE_NOOP3("Fatal Error", "Incorrect traces in %1 (branch hit outside of any file-part)",
                       "%1 is the name of the incorrect trace file");
} // namespace fault

[[noreturn]] void refuseTrace(const TraceCursor& cursor, const TranslatableText& what) {
    fatalError(filled(translate("Fatal Error", what), {cursor.fileName}));
}

// What becomes of a line in a state.
enum class Treatment : std::uint8_t { Deliver, DeliverIfRead, Ignore, Refuse };

constexpr std::size_t lineKindCount = 11;
constexpr auto deliver = Treatment::Deliver;
constexpr auto ifRead = Treatment::DeliverIfRead;
constexpr auto ignore = Treatment::Ignore;
constexpr auto refuse = Treatment::Refuse;
// By state, then by kind: NT, DT, CO, FT, DC, TP, TA, TB, TE, EI, other.
constexpr std::array<std::array<Treatment, lineKindCount>, 3> treatments = {{
    {deliver, deliver, deliver, deliver, refuse, deliver, deliver, deliver, deliver, deliver, refuse},
    {deliver, ignore, ignore, ignore, ignore, ignore, ignore, ignore, ignore, deliver, ignore},
    {deliver, ignore, ifRead, deliver, ignore, ifRead, ifRead, ifRead, ifRead, deliver, ignore},
}};

struct RunTimeError {
    std::uint32_t code;
    const char* text;
};
constexpr std::array<RunTimeError, 3> runTimeErrors = {{
    {0x20,
     QT_TRANSLATE_NOOP("User Error", "a source object was not linked with the right runtime object (check "
                                     "instrumentation mode)")},
    {0x31,
     QT_TRANSLATE_NOOP("User Error", "a composition of conditions evaluates in an unexpected result, contact "
                                     "your vendor")},
    {0x32,
     QT_TRANSLATE_NOOP("User Error", "a composition of conditions reached with an unexpected input vector, "
                                     "contact your vendor")},
}};
constexpr const char* unknownRunTimeError = QT_TRANSLATE_NOOP("User Error", "unknown error opcode");

std::uint32_t nextNumber(TraceCursor& cursor) {
    return readHexValue(nextToken(cursor.line), cursor.fileName);
}

void handleErrorLine(TraceCursor& cursor) {
    const std::uint32_t code = nextNumber(cursor);
    const RunTimeError* known = rowWith(runTimeErrors, &RunTimeError::code, code);
    const char* text = known != nullptr ? known->text : unknownRunTimeError;
    warningMessage(
        translate("User Warning", "Error detected during execution:\n-> %1", "%1 is the message of the error")
            .arg(translate("User Error", text)));
}

Treatment treatmentOf(const TraceCursor& cursor, LineKind kind, SkippedParts skippedParts) {
    const Treatment treatment =
        treatments[static_cast<std::size_t>(cursor.state)][static_cast<std::size_t>(kind)];
    if (treatment == Treatment::DeliverIfRead) {
        return skippedParts == SkippedParts::Read ? Treatment::Deliver : Treatment::Ignore;
    }
    return treatment;
}

} // namespace

LineKind lineKind(std::string_view keyword) {
    const auto known = std::find(lineKeywords.begin(), lineKeywords.end(), keyword);
    return static_cast<LineKind>(known - lineKeywords.begin()); // Other follows the last keyword
}

TraceCursor startOfTraces() {
    TraceCursor cursor;
    cursor.defaultTest = internName("#");
    return cursor;
}

void openTrace(TraceCursor& cursor, const std::string& fileName) {
    cursor.state = ReadState::Recording;
    cursor.fileName = fileName;
    cursor.testDate = nullptr;
    cursor.stream = reopenGivenFile(fileName);
    if (!cursor.stream.isOpen()) {
        refuseTrace(cursor, fault::cannotOpen);
    }
}

std::optional<LineKind> nextTraceLine(TraceCursor& cursor, SkippedParts skippedParts) {
    while (readLine(cursor.stream, cursor.line)) {
        const std::optional<std::string_view> keyword = nextToken(cursor.line);
        if (!keyword) {
            cursor.state = ReadState::Invalid;
            userError(filled(translate("User Error", "%1 is not a valid Code Coverage trace file"),
                             {cursor.fileName}));
            break;
        }
        const LineKind kind = lineKind(*keyword);
        switch (treatmentOf(cursor, kind, skippedParts)) {
        case Treatment::Deliver:
            if (kind == LineKind::EI) {
                handleErrorLine(cursor);
                continue;
            }
            return kind;
        case Treatment::Refuse: refuseTrace(cursor, fault::unknownOpcode);
        case Treatment::DeliverIfRead:
        case Treatment::Ignore: continue;
        }
    }
    cursor.stream = {};
    return std::nullopt;
}

TestLine readTestLine(TraceCursor& cursor) {
    TestLine test;
    test.name = readNamedString(cursor.line);
    if (const std::optional<std::string_view> number = nextToken(cursor.line)) {
        test.numberText = *number;
        test.number = static_cast<std::int32_t>(readHexValue(number, cursor.fileName));
        if (const std::optional<std::string_view> serviceNumber = nextToken(cursor.line)) {
            test.serviceNumber = static_cast<std::int32_t>(readHexValue(serviceNumber, cursor.fileName));
        }
    }
    return test;
}

TestIdentity identityOf(const TraceCursor& cursor, const TestLine& line) {
    if (line.name != nullptr) {
        return {line.name, KnownBy::Name};
    }
    if (line.number == -1) {
        return {cursor.defaultTest, KnownBy::Default};
    }
    return {internName(line.numberText), KnownBy::Number};
}

bool enterTest(TraceCursor& cursor, const NameEntry* test, const CoverageOptions& options) {
    const bool selected = test == nullptr || GetTestAuth(test, options);
    cursor.currentTest = test;
    cursor.state = selected ? ReadState::Recording : ReadState::SkippingTest;
    cursor.countOriented = false;
    return selected;
}

const NameEntry* readTestDate(TraceCursor& cursor) {
    std::string scratch;
    if (const std::optional<std::string_view> quoted = nextQuotedString(cursor.line, scratch)) {
        const std::string_view text = quoted->substr(1);
        return internName(text.substr(0, text.find('"')));
    }
    const std::optional<std::string_view> field = nextToken(cursor.line);
    if (!field) {
        return nullptr; // a bare DT line, as cleaned traces have it for tests without a date
    }
    const auto seconds = static_cast<std::int32_t>(readHexTime(field, cursor.fileName));
    return seconds > 0 ? internName(dateText(seconds)) : nullptr;
}

PartKey readFilePart(TraceCursor& cursor) {
    PartKey part;
    part.fileKey = nextNumber(cursor);
    if (!readLine(cursor.stream, cursor.line)) {
        refuseTrace(cursor, fault::partWithoutEnd);
    }
    if (nextToken(cursor.line) != "DC") {
        refuseTrace(cursor, fault::noChecksumLine);
    }
    part.checksum = nextNumber(cursor);
    return part;
}

Hit readHit(TraceCursor& cursor, LineKind kind) {
    if (cursor.currentPart == nullptr) {
        refuseTrace(cursor, fault::hitOutsideOfParts);
    }
    Hit hit;
    hit.kind = itemKinds[static_cast<std::size_t>(kind) - static_cast<std::size_t>(LineKind::TP)];
    hit.id = nextNumber(cursor);
    if (cursor.countOriented) {
        hit.count = nextNumber(cursor);
    }
    return hit;
}

} // namespace veldacov
