#pragma once

// Files being written. An output is complete or the run says otherwise: a write that fails is found at the
// latest when the output is finished, and is a fatal error that names the file.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "support/platform.h"

namespace veldacov {

// One output with its buffer. Bytes reach the file when the buffer is full, when the output is finished, and
// when the program ends early (what was written so far stays).
class OutputFile {
public:
    OutputFile() = default;
    OutputFile(platform::Descriptor file, std::string name);
    OutputFile(OutputFile&& other) noexcept;
    OutputFile& operator=(OutputFile&& other) noexcept;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    [[nodiscard]] bool isOpen() const { return file_.isOpen(); }
    [[nodiscard]] const std::string& name() const { return name_; }

    // Appends bytes; the caller's text is copied.
    void put(std::string_view text) {
        if (text.size() > buffer_.size() - used_) {
            putInPieces(text);
            return;
        }
        std::copy_n(text.data(), text.size(), buffer_.data() + used_);
        used_ += text.size();
    }
    void put(char character) { put(std::string_view(&character, 1)); }
    // Appends a number in decimal, padded with blanks on the left to `width`.
    void putNumber(std::uint32_t number, std::size_t width = 0);
    // Appends a number with one decimal, the nearest one (of two the even one), padded with blanks on the left to
    // `width`. In single precision it is from 0 to 100, and several times as fast.
    void putRate(double rate, std::size_t width = 0);
    void putRate(float rate, std::size_t width = 0);

    // Writes what is buffered, and closes the file in the end. A file that is not complete is a fatal error.
    void flush();
    void finish();
    // Writes what is buffered without closing; true when all went out. Safe inside a signal handler.
    bool save() noexcept;

private:
    void putInPieces(std::string_view text);
    void putPadded(std::string_view digits, std::size_t width);

    platform::Descriptor file_;
    std::string name_;
    std::vector<char> buffer_;
    std::size_t used_ = 0;
};

// Standard output as an output; it stays open when the output is finished.
OutputFile standardOutput();

// Appends the pieces of one formatted line in order: texts, single characters and decimal numbers. The length of a
// literal is known, and nobody counts it again.
template <typename... Pieces>
void putLine(OutputFile& out, const Pieces&... pieces) {
    const auto putPiece = [&out](const auto& piece) {
        using Piece = std::remove_cvref_t<decltype(piece)>;
        if constexpr (std::is_same_v<Piece, std::uint32_t>) {
            out.putNumber(piece);
        } else if constexpr (std::is_array_v<Piece>) {
            out.put(std::string_view(piece, std::size(piece) - 1));
        } else {
            out.put(piece);
        }
    };
    (putPiece(pieces), ...);
    out.put('\n');
}

// Writes what every open output holds, without closing it and without reporting.
void saveOpenOutputs() noexcept;
// The same in a run that goes on: an output that is not complete is a fatal error.
void flushOpenOutputs();

} // namespace veldacov
