#include "description/tokens.h"

#include <bit>
#include <cstddef>

#include "support/machine.h"

namespace veldacov {

namespace {

constexpr CharacterSet quoteOrTokenEnds = setOf(std::string_view("\" \n\r\0", 5));
constexpr std::string_view quotedTextEnders("\"\\\n\0", 4);
constexpr CharacterSet quotedTextEnds = setOf(quotedTextEnders);

const char* findAny(const char* at, const char* end, const CharacterSet& set) {
    while (at != end && !contains(set, *at)) {
        ++at;
    }
    return at;
}

// The characters of a word of eight, the first in the lowest byte.
std::uint64_t eightCharacters(const char* at) {
    std::uint64_t word = 0;
    for (unsigned i = 0; i < 8; ++i) {
        word |= std::uint64_t{static_cast<unsigned char>(at[i])} << (8 * i);
    }
    return word;
}

// The first character that ends or interrupts a quoted text, looked for in eight characters at a time. Names make
// up most of a description.
const char* findQuotedTextEnd(const char* at, const char* end) {
    constexpr std::uint64_t inAllBytes = 0x0101010101010101;
    constexpr std::uint64_t highBits = 0x8080808080808080;
    for (; end - at >= 8; at += 8) {
        const std::uint64_t word = eightCharacters(at);
        std::uint64_t found = 0; // in the lowest byte where one stands; bytes above it may be wrong
        for (const char ender : quotedTextEnders) {
            const std::uint64_t difference = word ^ inAllBytes * static_cast<unsigned char>(ender);
            found |= (difference - inAllBytes) & ~difference;
        }
        if ((found & highBits) != 0) {
            return at + std::countr_zero(found & highBits) / 8;
        }
    }
    return findAny(at, end, quotedTextEnds);
}

const char* skipBlanks(const char* at, const char* end) {
    while (at != end && *at == ' ') {
        ++at;
    }
    return at;
}

// Where a quoted text ends: just behind its closing quote, null when the line has none.
struct QuotedEnd {
    const char* at = nullptr;
    bool escapes = false; // there are some before it
};

// `at` is behind the opening quote.
QuotedEnd endOfQuoted(const char* at, const char* end) {
    bool escapes = false;
    for (;;) {
        at = findQuotedTextEnd(at, end);
        if (at == end || *at == '\n' || *at == '\0') {
            return {};
        }
        if (*at == '"') {
            return {at + 1, escapes};
        }
        escapes = true;
        if (++at == end || *at == '\n' || *at == '\0') {
            return {};
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

std::string quotedText(std::string_view text) {
    std::string quoted = "\"";
    for (const char character : text) {
        if (character == '\\' || character == '"') {
            quoted += '\\';
        }
        quoted += character;
    }
    return quoted += '"';
}

bool skipQuotedString(Line& line, std::string_view text) {
    const std::string_view rest(line.cursor, static_cast<std::size_t>(line.end - line.cursor));
    const std::size_t closing = text.size() + 1;
    const bool isNext = rest.size() > closing + 1 && rest[0] == '"' && rest[closing] == '"' &&
                        rest[closing + 1] == ' ' && rest.substr(1, text.size()) == text;
    if (isNext) {
        line.cursor += closing + 2;
    }
    return isNext;
}

std::optional<std::string_view> nextQuotedString(Line& line, std::string& scratch) {
    const char* open = findAny(skipBlanks(line.cursor, line.end), line.end, quoteOrTokenEnds);
    if (open == line.end || *open != '"') {
        return std::nullopt;
    }
    const QuotedEnd close = endOfQuoted(open + 1, line.end);
    if (close.at == nullptr || close.at == line.end ||
        (*close.at != ' ' && *close.at != '\r' && *close.at != '\n')) {
        return std::nullopt;
    }
    line.cursor = behindSeparator(close.at, line.end);
    const std::string_view quoted(open, static_cast<std::size_t>(close.at - open));
    return close.escapes ? withoutEscapes(quoted, scratch) : quoted;
}

void reportUnreadableField(const char* field, std::string_view fileName) {
    reportField(translate("fdcL-Error", "Cannot retrieve correctly %1 %2", "%1 is a message, %2 a file name"),
                field, fileName);
}

NameEntry* readNamedString(Line& line, const char* field, std::string_view fileName) {
    std::string scratch;
    const std::optional<std::string_view> quoted = nextQuotedString(line, scratch);
    if (!quoted) {
        reportUnreadableField(field, fileName);
    }
    NameEntry* name = internName(withoutQuotes(*quoted));
    if (name == nullptr) {
        reportField(translate("fdcL-Error", "Empty %1 %2", "%1 is a message, %2 a file name"), field,
                    fileName);
    }
    return name;
}

NameEntry* readNamedString(Line& line) {
    std::string scratch;
    const std::optional<std::string_view> quoted = nextQuotedString(line, scratch);
    return quoted ? internName(withoutQuotes(*quoted)) : nullptr;
}

} // namespace veldacov
