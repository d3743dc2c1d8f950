#pragma once

// The fields of one line of a description or trace. Fields are separated by blanks (a tab is none); the text
// of a line ends with a line feed, a carriage return or a NUL byte.
//
// Texts that are returned lie in the line itself, or in the caller's scratch string, and are valid as long.

#include <optional>
#include <string>
#include <string_view>

#include "description/name_pool.h"
#include "support/files.h"

namespace veldacov {

// The next run of characters up to a blank or the end of the line. A blank just before the line end leaves
// one empty token. None when the line has no more, and for a run that no blank or line end closes.
std::optional<std::string_view> nextToken(Line& line);

// The next text between double quotes, both quotes included, with \\ and \" resolved; what stands before the
// opening quote is dropped. None, and the line stays where it is, when the next field is not such a text, its
// closing quote is missing, or anything but a blank or the line end follows it.
// `scratch` holds the result when an escape had to be resolved.
std::optional<std::string_view> nextQuotedString(Line& line, std::string& scratch);

// The name in the next quoted string. A missing or empty name is a fatal error that shows the field's
// description (a source text of the context "fdcL-Error", translated only then) and the file.
NameEntry* readNamedString(Line& line, const char* field, std::string_view fileName);
// The same, not yet interned; `scratch` as above.
std::string_view readNameText(Line& line, std::string& scratch, const char* field, std::string_view fileName);
// The fatal error of a field that the line does not have.
[[noreturn]] void reportUnreadableField(const char* field, std::string_view fileName);
// An optional name: null when the string is missing or empty.
NameEntry* readNamedString(Line& line);

} // namespace veldacov
