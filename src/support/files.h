#pragma once

// What readers and writers of files share: lines of any length, the decimal and trace-hexadecimal numbers,
// file keys and checksum folds, path helpers, and the 24-character date.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "support/platform.h"

namespace veldacov {

// A file being read through one large buffer. A read that fails is a fatal error that names the file.
struct InputFile {
    std::string name;
    platform::Descriptor file;
    std::unique_ptr<char[]> buffer;
    std::size_t size = 0;  // of the buffer
    std::size_t begin = 0; // first byte not yet handed out
    std::size_t end = 0;   // end of the bytes in the buffer
    bool atEnd = false;    // a read has met the end of the file; stays set

    [[nodiscard]] bool isOpen() const { return file.isOpen(); }
};

// Opens a file to read, of any kind but a directory; not open afterwards when it cannot be read.
InputFile openInput(const std::string& path);
// The same for regular files only.
InputFile openRegularInput(const std::string& path);
// Goes back to the start of a file of which at most one line has been read.
void rewindInput(InputFile& input);

// The line being read: its text with the terminator, and how far the tokenizers have come. The text lies in
// the buffer of its file and is valid until the next read from that file.
struct Line {
    const char* cursor = nullptr;
    const char* end = nullptr;
};

// Reads the next line, of any length; false at the end of the file. A last line without a terminator is not a
// line: it gives false, too. Lines end with a line feed; a carriage return ends a line only where it is the
// last of a block of 1024 characters counted from the start of the line, or the last character of the file.
bool readLine(InputFile& input, Line& line);

// Reads the next line as it stands, its line feed included; the last one may have none. False at the end of
// the file. The text is valid until the next read.
bool readRawLine(InputFile& input, std::string_view& line);

// The next bytes, at least one; empty at the end of the file. Valid until the next read.
std::string_view readBytes(InputFile& input);

// The next byte, none at the end of the file.
std::optional<char> readCharacter(InputFile& input);

// The value of each character as a hexadecimal digit in either case, -1 for others.
inline constexpr std::array<std::int16_t, 256> hexDigitValues = [] {
    std::array<std::int16_t, 256> values{};
    values.fill(-1);
    for (std::size_t digit = 0; digit < 16; ++digit) {
        values[static_cast<unsigned char>("0123456789abcdef"[digit])] = static_cast<std::int16_t>(digit);
        values[static_cast<unsigned char>("0123456789ABCDEF"[digit])] = static_cast<std::int16_t>(digit);
    }
    return values;
}();

// The same for decimal digits.
constexpr int decimalDigit(char character) {
    return character >= '0' && character <= '9' ? character - '0' : -1;
}

// The readers of number fields. `text` is the field (none when the line had no more), `fileName` stands in
// the messages. An absent or malformed number is a fatal error.
//
// Decimal: digits 0 to 9; the value wraps at 2^32; an empty text is 0.
std::uint32_t readDecimalValue(std::optional<std::string_view> text, std::string_view fileName);
std::uint32_t readDecimalTime(std::optional<std::string_view> text, std::string_view fileName);
// Trace hexadecimal: at most eight digits in either case, the least significant first ("a1" is 0x1a); an
// empty text is 0.
std::uint32_t readHexValue(std::optional<std::string_view> text, std::string_view fileName);
std::uint32_t readHexTime(std::optional<std::string_view> text, std::string_view fileName);

// A value in the trace hexadecimal form, lower case, without superfluous zeros.
struct HexText {
    std::array<char, 8> digits{};
    std::size_t length = 0;

    [[nodiscard]] std::string_view view() const { return {digits.data(), length}; }
};
HexText hexText(std::uint32_t value);
// Puts the same text where up to eight characters have room; gives where it ends.
inline char* putHex(char* at, std::uint32_t value) {
    do {
        *at++ = "0123456789abcdef"[value & 0xFU];
        value >>= 4U;
    } while (value != 0);
    return at;
}

// The key that ties a trace part to the description of a source file. The name may be none (a view without
// data), which is an internal error.
std::uint32_t evalFileKey(std::string_view name);

// Folds a text into a checksum, four bytes at a time; gives the length of the text.
std::size_t xorFoldText(std::uint32_t& accumulator, std::string_view text);

bool fileExists(const std::string& path);
// Seconds since 1970; 0 when the file cannot be examined.
std::int64_t fileModificationTime(const std::string& path);

// The part after the last "\", "/" or ":"; the whole path when it has none.
std::string_view baseName(std::string_view path);
// Directory and name with one separator between them, unless the directory ends in one.
std::string joinPath(std::string_view directory, std::string_view name);
// Replaces all from the last "." on (directories included) by an extension, or appends it when there is no
// ".". An empty name, and an extension that is empty or without its ".", are internal errors.
std::string changeExtension(std::string_view fileName, std::string_view extension);

// Local time as "Www Mmm dd hh:mm:ss yyyy", 24 characters, English names whatever the locale.
std::string dateText(std::int64_t secondsSince1970);
std::int64_t presentTime();

// The line of 80 dashes that separates parts of the outputs, with its line end.
constexpr std::string_view separatorLine =
    "--------------------------------------------------------------------------------\n";

} // namespace veldacov
