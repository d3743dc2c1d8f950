#pragma once

// The fields of one line of a description or trace. Fields are separated by blanks (a tab is none); the text
// of a line ends with a line feed, a carriage return or a NUL byte.
//
// Fields are borrowed, because most are looked at once: a word is compared with a table, a name with those of the pool.
// Nothing is copied that nobody keeps. What always holds: a text that is returned lies in the line, which lies in the
// buffer of its file, and is valid until the next line is read. One that cannot stand as it is, because it has escapes,
// lies in the scratch string of the caller, and is valid until that is used again:
//
//   AP 0 "main" "f" 12 12      "main" with its quotes, in the line
//   AP 0 "a\"b" "f" 12 12      "a"b", in the scratch string
//
// The usual forms of names and numbers are read first, the others by the general operations (docs/performance.md,
// "Where the time goes").

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "description/name_pool.h"
#include "support/files.h"

namespace veldacov {

// Characters to look for, by their value.
using CharacterSet = std::array<bool, 256>;
constexpr CharacterSet setOf(std::string_view characters) {
    CharacterSet set{};
    for (const char character : characters) {
        set[static_cast<unsigned char>(character)] = true;
    }
    return set;
}
constexpr bool contains(const CharacterSet& set, char character) {
    return set[static_cast<unsigned char>(character)];
}
inline constexpr CharacterSet tokenEnds = setOf(std::string_view(" \n\r\0", 4));

// The next run of characters up to a blank or the end of the line. A blank just before the line end leaves
// one empty token. None when the line has no more, and for a run that no blank or line end closes.
inline std::optional<std::string_view> nextToken(Line& line) {
    const char* start = line.cursor;
    while (start != line.end && *start == ' ') {
        ++start;
    }
    const char* at = start;
    while (at != line.end && !contains(tokenEnds, *at)) {
        ++at;
    }
    if (at == line.end || *at == '\0') {
        return std::nullopt;
    }
    line.cursor = *at == ' ' ? at + 1 : line.end;
    return std::string_view(start, static_cast<std::size_t>(at - start));
}

// The decimal number in the next token; a missing or malformed one is a fatal error (see readDecimalValue).
inline std::uint32_t nextDecimal(Line& line, std::string_view fileName) {
    const char* at = line.cursor;
    std::uint32_t value = 0;
    for (; at != line.end && decimalDigit(*at) >= 0; ++at) {
        value = value * 10 + static_cast<std::uint32_t>(decimalDigit(*at)); // wraps at 2^32 on purpose
    }
    if (at == line.cursor || at == line.end || (*at != ' ' && *at != '\n')) {
        return readDecimalValue(nextToken(line), fileName); // everything but the usual form
    }
    line.cursor = *at == ' ' ? at + 1 : line.end;
    return value;
}

// The next text between double quotes, both quotes included, with \\ and \" resolved; what stands before the
// opening quote is dropped. None, and the line stays where it is, when the next field is not such a text, its
// closing quote is missing, or anything but a blank or the line end follows it.
// `scratch` holds the result when an escape had to be resolved.
std::optional<std::string_view> nextQuotedString(Line& line, std::string& scratch);

// The inverse: a text between quotes, with a backslash before each quote and backslash.
std::string quotedText(std::string_view text);

// Passes over the next quoted string if it is this text, character by character, and more of the line follows. For
// texts without quotes and backslashes, which stand in the line as they are.
bool skipQuotedString(Line& line, std::string_view text);

// The name in the next quoted string. A missing or empty name is a fatal error that shows the field's
// description (a source text of the context "fdcL-Error", translated only then) and the file.
NameEntry* readNamedString(Line& line, const char* field, std::string_view fileName);
// The fatal error of a field that the line does not have.
[[noreturn]] void reportUnreadableField(const char* field, std::string_view fileName);
// An optional name: null when the string is missing or empty.
NameEntry* readNamedString(Line& line);

} // namespace veldacov
