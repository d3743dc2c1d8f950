#include "description/tokens.h"

#include <array>

#include "support/machine.h"

namespace veldacov {

namespace {

using CharacterSet = std::array<bool, 256>;

constexpr CharacterSet setOf(std::string_view characters) {
    CharacterSet set{};
    for (const char character : characters) {
        set[static_cast<unsigned char>(character)] = true;
    }
    return set;
}

using namespace std::string_view_literals;
constexpr CharacterSet tokenEnds = setOf(" \n\r\0"sv);
constexpr CharacterSet quoteOrTokenEnds = setOf("\" \n\r\0"sv);
constexpr CharacterSet quotedTextEnds = setOf("\"\\\n\0"sv);

bool contains(const CharacterSet& set, char character) {
    return set[static_cast<unsigned char>(character)];
}

const char* findAny(const char* at, const char* end, const CharacterSet& set) {
    while (at != end && !contains(set, *at)) {
        ++at;
    }
    return at;
}

const char* skipBlanks(const char* at, const char* end) {
    while (at != end && *at == ' ') {
        ++at;
    }
    return at;
}

// The character just behind the closing quote; null when the line has none. `at` is behind the opening quote.
const char* behindClosingQuote(const char* at, const char* end) {
    for (;;) {
        at = findAny(at, end, quotedTextEnds);
        if (at == end || *at == '\n' || *at == '\0') {
            return nullptr;
        }
        if (*at == '"') {
            return at + 1;
        }
        if (++at == end || *at == '\n' || *at == '\0') { // of an escape
            return nullptr;
        }
        ++at;
    }
}

// A carriage return and line feed behind a quoted string end the line together, so that files of either kind
// of system read the same.
const char* behindSeparator(const char* separator, const char* end) {
    const bool lineEnds = *separator == '\r' && separator + 1 != end && separator[1] == '\n';
    return lineEnds ? end : separator + 1;
}

std::string_view withoutEscapes(std::string_view quoted, std::string& scratch) {
    if (quoted.find('\\') == std::string_view::npos) {
        return quoted;
    }
    scratch.clear();
    for (std::size_t i = 0; i < quoted.size(); ++i) {
        const bool escape =
            quoted[i] == '\\' && i + 1 < quoted.size() && (quoted[i + 1] == '\\' || quoted[i + 1] == '"');
        scratch += quoted[escape ? ++i : i];
    }
    return scratch;
}

std::string_view withoutQuotes(std::string_view quoted) {
    return quoted.substr(1, quoted.size() - 2);
}

[[noreturn]] void reportField(const QString& text, const char* field, std::string_view fileName) {
    fatalError(text.arg(translate("fdcL-Error", field)).arg(fromLocal(fileName)));
}

} // namespace

std::optional<std::string_view> nextToken(Line& line) {
    const char* start = skipBlanks(line.cursor, line.end);
    const char* at = findAny(start, line.end, tokenEnds);
    if (at == line.end || *at == '\0') {
        return std::nullopt;
    }
    line.cursor = *at == ' ' ? at + 1 : line.end;
    return std::string_view(start, static_cast<std::size_t>(at - start));
}

std::optional<std::string_view> nextQuotedString(Line& line, std::string& scratch) {
    const char* open = findAny(skipBlanks(line.cursor, line.end), line.end, quoteOrTokenEnds);
    if (open == line.end || *open != '"') {
        return std::nullopt;
    }
    const char* close = behindClosingQuote(open + 1, line.end);
    if (close == nullptr || close == line.end || (*close != ' ' && *close != '\r' && *close != '\n')) {
        return std::nullopt;
    }
    line.cursor = behindSeparator(close, line.end);
    return withoutEscapes(std::string_view(open, static_cast<std::size_t>(close - open)), scratch);
}

void reportUnreadableField(const char* field, std::string_view fileName) {
    reportField(translate("fdcL-Error", "Cannot retrieve correctly %1 %2", "%1 is a message, %2 a file name"),
                field, fileName);
}

std::string_view readNameText(Line& line, std::string& scratch, const char* field,
                              std::string_view fileName) {
    const std::optional<std::string_view> quoted = nextQuotedString(line, scratch);
    if (!quoted) {
        reportUnreadableField(field, fileName);
    }
    const std::string_view name = withoutQuotes(*quoted);
    if (name.empty()) {
        reportField(translate("fdcL-Error", "Empty %1 %2", "%1 is a message, %2 a file name"), field,
                    fileName);
    }
    return name;
}

NameEntry* readNamedString(Line& line, const char* field, std::string_view fileName) {
    std::string scratch;
    return internName(readNameText(line, scratch, field, fileName));
}

NameEntry* readNamedString(Line& line) {
    std::string scratch;
    const std::optional<std::string_view> quoted = nextQuotedString(line, scratch);
    return quoted ? internName(withoutQuotes(*quoted)) : nullptr;
}

} // namespace veldacov
