#include "support/files.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <utility>

#include "support/machine.h"

namespace veldacov {

namespace {

constexpr std::size_t initialBufferSize = std::size_t{256} * 1024;
// Lines are gathered in blocks of this many characters; a block that ends in a carriage return ends its line.
constexpr std::size_t lineBlock = 1024;
constexpr std::uint32_t foldSeed = 0x4A4A4A4A;

// Moves the bytes in hand to the start of a buffer of at least the given size.
void moveToStart(InputFile& input, std::size_t size) {
    const char* first = input.buffer.get() + input.begin;
    const std::size_t length = input.end - input.begin;
    if (size > input.size) {
        auto larger = std::make_unique_for_overwrite<char[]>(size);
        std::copy_n(first, length, larger.get());
        input.buffer = std::move(larger);
        input.size = size;
    } else if (input.begin > 0) {
        std::copy_n(first, length, input.buffer.get()); // towards the start
    }
    input.begin = 0;
    input.end = length;
}

// Reads more bytes behind those in hand; false at the end of the file.
bool refill(InputFile& input) {
    if (input.atEnd) { // what has ended stays ended, also when somebody writes more
        return false;
    }
    const bool isFull = input.end - input.begin == input.size;
    moveToStart(input, isFull ? std::max(initialBufferSize, 2 * input.size) : input.size);
    const std::optional<std::size_t> count =
        platform::readSome(input.file.number(), input.buffer.get() + input.end, input.size - input.end);
    if (!count) {
        fatalError(
            filled(translate("Fatal Error", "Cannot read file %1", "%1 is a file name"), {input.name}));
    }
    input.end += *count;
    return *count > 0;
}

void takeLine(InputFile& input, std::size_t length, Line& line) {
    line.cursor = input.buffer.get() + input.begin;
    line.end = line.cursor + length;
    input.begin += length;
}

// Position just behind the first block from `checked` on that ends in a carriage return; 0 when none does.
std::size_t blockEndInReturn(const char* start, std::size_t length, std::size_t checked) {
    for (std::size_t blockEnd = checked + lineBlock; blockEnd <= length; blockEnd += lineBlock) {
        if (start[blockEnd - 1] == '\r') {
            return blockEnd;
        }
    }
    return 0;
}

// What is left of the file has no line feed: it is a line only when it ends in a carriage return.
bool takeLastLine(InputFile& input, Line& line) {
    input.atEnd = true;
    const std::size_t length = input.end - input.begin;
    takeLine(input, length, line);
    return length > 0 && line.end[-1] == '\r';
}

std::uint32_t decimalNumber(std::string_view text, std::string_view fileName) {
    std::uint32_t value = 0;
    for (const char character : text) {
        const int digit = decimalDigit(character);
        if (digit < 0) {
            fatalError(filled(
                translate("Assertion", "Bad decimal number while reading file %1", "%1 is the file name"),
                {fileName}));
        }
        value = value * 10 + static_cast<std::uint32_t>(digit); // wraps at 2^32 on purpose
    }
    return value;
}

// None when a character is no hexadecimal digit; more than eight digits end the program.
std::optional<std::uint32_t> hexNumber(std::string_view text, std::string_view fileName) {
    constexpr unsigned mostBits = 32;
    std::uint32_t value = 0;
    unsigned shift = 0;
    for (const char character : text) {
        const int digit = hexDigitValues[static_cast<unsigned char>(character)];
        if (digit < 0) {
            return std::nullopt;
        }
        if (shift == mostBits) {
            userError(filled(
                translate("User Error", "Number overflow while reading file %1", "%1 is the file name"),
                {fileName}));
            fatalError(translate("Fatal Error",
                                 "Maybe this Coverage Trace file has been generated using an older "
                                 "version of the Deplonix"));
        }
        value |= static_cast<std::uint32_t>(digit) << shift;
        shift += 4;
    }
    return value;
}

std::string_view presentValue(std::optional<std::string_view> text, std::string_view fileName) {
    if (!text) {
        fatalError(filled(
            translate("Assertion", "Null pointer for value while reading file %1", "%1 is the file name"),
            {fileName}));
    }
    return *text;
}

std::string_view presentTimeText(std::optional<std::string_view> text, std::string_view fileName) {
    if (!text) {
        fatalError(filled(
            translate("Assertion", "Null pointer for time while reading file %1", "%1 is the file name"),
            {fileName}));
    }
    return *text;
}

// The four bytes at `offset`, the first in the highest byte; bytes behind the text are zero.
template <typename Byte>
std::uint32_t bigEndianWord(std::string_view text, std::size_t offset) {
    std::uint32_t word = 0;
    for (std::size_t i = offset; i < offset + 4; ++i) {
        const auto byte = i < text.size() ? static_cast<Byte>(text[i]) : Byte{0};
        word = word * 256U + static_cast<std::uint32_t>(byte); // a negative byte borrows from those before it
    }
    return word;
}

} // namespace

InputFile openInput(const std::string& path) {
    InputFile input;
    input.name = path;
    input.file = platform::openForReading(path);
    return input;
}

InputFile openRegularInput(const std::string& path) {
    const std::optional<platform::FileStatus> status = platform::fileStatus(path);
    return status && status->kind == platform::FileKind::Regular ? openInput(path) : InputFile{};
}

void rewindInput(InputFile& input) {
    input.begin = 0;
}

bool readLine(InputFile& input, Line& line) {
    std::size_t searched = 0; // characters of this line known to hold no line feed
    std::size_t checked = 0;  // whole blocks of it known not to end in a carriage return
    for (;;) {
        const char* start = input.buffer.get() + input.begin;
        const std::size_t available = input.end - input.begin;
        const void* lineFeed =
            available > searched ? std::memchr(start + searched, '\n', available - searched) : nullptr;
        const std::size_t length =
            lineFeed != nullptr ? static_cast<std::size_t>(static_cast<const char*>(lineFeed) - start) + 1
                                : available;
        if (const std::size_t blockEnd = blockEndInReturn(start, length, checked); blockEnd > 0) {
            takeLine(input, blockEnd, line);
            return true;
        }
        if (lineFeed != nullptr) {
            takeLine(input, length, line);
            return true;
        }
        searched = available;
        checked = available - available % lineBlock;
        if (!refill(input)) {
            return takeLastLine(input, line);
        }
    }
}

bool readRawLine(InputFile& input, std::string_view& line) {
    std::size_t searched = 0;
    for (;;) {
        const std::string_view available(input.buffer.get() + input.begin, input.end - input.begin);
        const std::size_t lineFeed = available.find('\n', searched);
        if (lineFeed != std::string_view::npos) {
            line = available.substr(0, lineFeed + 1);
            input.begin += line.size();
            return true;
        }
        searched = available.size();
        if (!refill(input)) {
            input.atEnd = true;
            line = {input.buffer.get() + input.begin, searched};
            input.begin = input.end;
            return !line.empty();
        }
    }
}

std::string_view readBytes(InputFile& input) {
    if (input.begin == input.end && !refill(input)) {
        input.atEnd = true;
        return {};
    }
    const std::size_t begin = std::exchange(input.begin, input.end);
    return {input.buffer.get() + begin, input.end - begin};
}

std::optional<char> readCharacter(InputFile& input) {
    if (input.begin == input.end && !refill(input)) {
        input.atEnd = true;
        return std::nullopt;
    }
    return input.buffer[input.begin++];
}

std::uint32_t readDecimalValue(std::optional<std::string_view> text, std::string_view fileName) {
    return decimalNumber(presentValue(text, fileName), fileName);
}

std::uint32_t readDecimalTime(std::optional<std::string_view> text, std::string_view fileName) {
    return decimalNumber(presentTimeText(text, fileName), fileName);
}

std::uint32_t readHexValue(std::optional<std::string_view> text, std::string_view fileName) {
    const std::optional<std::uint32_t> value = hexNumber(presentValue(text, fileName), fileName);
    if (!value) {
        fatalError(filled(
            translate("Fatal Error", "Bad hexadecimal number while reading file %1", "%1 is the file name"),
            {fileName}));
    }
    return *value;
}

std::uint32_t readHexTime(std::optional<std::string_view> text, std::string_view fileName) {
    const std::optional<std::uint32_t> value = hexNumber(presentTimeText(text, fileName), fileName);
    if (!value) {
        fatalError(filled(
            translate("Assertion", "Bad hexadecimal number while reading file %1", "%1 is the file name"),
            {fileName}));
    }
    return *value;
}

HexText hexText(std::uint32_t value) {
    HexText text;
    text.length = static_cast<std::size_t>(putHex(text.digits.data(), value) - text.digits.data());
    return text;
}

std::uint32_t evalFileKey(std::string_view name) {
    if (name.data() == nullptr) {
        internalError(translate("Assertion", "Cannot eval file key"));
    }
    std::uint32_t key = foldSeed;
    for (std::size_t offset = 0; offset < name.size(); offset += 4) {
        key ^= bigEndianWord<signed char>(name, offset);
    }
    return key;
}

std::size_t xorFoldText(std::uint32_t& accumulator, std::string_view text) {
    for (std::size_t offset = 0; offset < text.size(); offset += 4) {
        accumulator ^= bigEndianWord<unsigned char>(text, offset);
    }
    return text.size();
}

bool fileExists(const std::string& path) {
    return platform::fileStatus(path).has_value();
}

std::int64_t fileModificationTime(const std::string& path) {
    return platform::fileStatus(path).value_or(platform::FileStatus{}).modificationTime;
}

std::string_view baseName(std::string_view path) {
    const std::size_t separator = path.find_last_of("\\/:");
    return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

std::string joinPath(std::string_view directory, std::string_view name) {
    std::string path(directory);
    if (directory.empty() || (directory.back() != '\\' && directory.back() != '/')) {
        path += '/';
    }
    return path += name;
}

std::string changeExtension(std::string_view fileName, std::string_view extension) {
    if (fileName.empty()) {
        internalError(translate("Assertion", "Source file name empty while changing extension"));
    }
    if (extension.empty()) {
        internalError(translate("Assertion", "Extension empty while changing it to a file"));
    }
    if (extension.front() != '.') {
        internalError(
            translate("Assertion", "Extension not beginning with period while changing it to a file"));
    }
    return std::string(fileName.substr(0, fileName.rfind('.'))).append(extension);
}

std::string dateText(std::int64_t secondsSince1970) {
    constexpr std::array days = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::tm local = platform::localTime(secondsSince1970);
    std::array<char, 64> text{};
    const int length = std::snprintf(text.data(), text.size(), "%s %s %2d %02d:%02d:%02d %04d",
                                     days.at(static_cast<std::size_t>(local.tm_wday)),
                                     months.at(static_cast<std::size_t>(local.tm_mon)), local.tm_mday,
                                     local.tm_hour, local.tm_min, local.tm_sec, local.tm_year + 1900);
    return {text.data(), static_cast<std::size_t>(length)};
}

std::int64_t presentTime() {
    return std::time(nullptr);
}

} // namespace veldacov
