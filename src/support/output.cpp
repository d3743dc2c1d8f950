#include "support/output.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "support/machine.h"

namespace veldacov {

namespace {

constexpr std::size_t bufferSize = std::size_t{256} * 1024;
// Report, CIO file, cleaned trace, listing and path trace: never more than a handful are open at once.
constexpr std::size_t mostOpenOutputs = 8;

// The outputs to save when the program ends early. A fixed table: a crash handler walks it.
std::array<OutputFile*, mostOpenOutputs> openOutputs{};

void replaceInTable(const OutputFile* from, OutputFile* to) {
    const auto known = std::find(openOutputs.begin(), openOutputs.end(), from);
    if (known != openOutputs.end()) {
        *known = to;
    }
}

[[noreturn]] void reportIncomplete(const std::string& name) {
    fatalError(filled(translate("Fatal Error", "Cannot write to file %1"), {name}));
}

} // namespace

OutputFile::OutputFile(platform::Descriptor file, std::string name)
    : file_(std::move(file)), name_(std::move(name)) {
    if (isOpen()) {
        buffer_.resize(bufferSize);
        replaceInTable(nullptr, this);
        setLastWrites(saveOpenOutputs);
    }
}

OutputFile::OutputFile(OutputFile&& other) noexcept
    : file_(std::move(other.file_)), name_(std::move(other.name_)), buffer_(std::move(other.buffer_)),
      used_(std::exchange(other.used_, 0)) {
    replaceInTable(&other, this);
}

OutputFile& OutputFile::operator=(OutputFile&& other) noexcept {
    if (this != &other) {
        save();
        replaceInTable(this, nullptr);
        file_ = std::move(other.file_);
        name_ = std::move(other.name_);
        buffer_ = std::move(other.buffer_);
        used_ = std::exchange(other.used_, 0);
        replaceInTable(&other, this);
    }
    return *this;
}

OutputFile::~OutputFile() {
    if (isOpen()) {
        save();
        replaceInTable(this, nullptr);
    }
}

void OutputFile::putInPieces(std::string_view text) {
    if (!isOpen()) {
        reportIncomplete(name_);
    }
    while (text.size() > buffer_.size() - used_) {
        const std::string_view fitting = text.substr(0, buffer_.size() - used_);
        put(fitting);
        text.remove_prefix(fitting.size());
        flush();
    }
    put(text);
}

void OutputFile::putNumber(std::uint32_t number, std::size_t width) {
    constexpr std::size_t mostDigits = 10;
    if (width == 0 && buffer_.size() - used_ >= mostDigits) { // most numbers of a report
        char* const first = buffer_.data() + used_;
        used_ += static_cast<std::size_t>(std::to_chars(first, first + mostDigits, number).ptr - first);
        return;
    }
    std::array<char, mostDigits> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    putPadded({digits.data(), end}, width);
}

void OutputFile::putRate(double rate, std::size_t width) {
    std::array<char, 32> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), rate, std::chars_format::fixed, 1).ptr;
    putPadded({digits.data(), end}, width);
}

void OutputFile::putRate(float rate, std::size_t width) {
    // Ten times a number of single precision is exact in double precision, and so is its half more: what has to be
    // rounded is known exactly.
    const double tenthsAndHalf = static_cast<double>(rate) * 10 + 0.5;
    auto tenths = static_cast<std::uint32_t>(tenthsAndHalf);
    if (tenths == tenthsAndHalf) { // just between two
        tenths &= ~1U;
    }
    std::array<char, 8> digits{};
    char* at = std::to_chars(digits.data(), digits.data() + digits.size(), tenths / 10).ptr;
    *at++ = '.';
    *at++ = static_cast<char>('0' + tenths % 10);
    putPadded({digits.data(), at}, width);
}

void OutputFile::putPadded(std::string_view digits, std::size_t width) {
    for (std::size_t column = digits.size(); column < width; ++column) {
        put(' ');
    }
    put(digits);
}

void OutputFile::flush() {
    if (!save()) {
        reportIncomplete(name_);
    }
}

bool OutputFile::save() noexcept {
    const std::string_view waiting(buffer_.data(), std::exchange(used_, 0));
    return platform::writeAll(file_.number(), waiting);
}

void OutputFile::finish() {
    replaceInTable(this, nullptr);
    const bool written = save();
    const bool closed = file_.close();
    if (!written || !closed) {
        reportIncomplete(name_);
    }
}

OutputFile standardOutput() {
    return {platform::duplicate(platform::standardOutput), "standard output"};
}

void saveOpenOutputs() noexcept {
    for (OutputFile* output : openOutputs) {
        if (output != nullptr) {
            output->save();
        }
    }
}

void flushOpenOutputs() {
    for (OutputFile* output : openOutputs) {
        if (output != nullptr) {
            output->flush();
        }
    }
}

} // namespace veldacov
