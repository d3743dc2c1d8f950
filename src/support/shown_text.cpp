#include "support/shown_text.h"

#include <cstddef>

namespace veldacov {

namespace {

void appendEscape(std::string& shown, unsigned char control) {
    constexpr std::string_view digits = "0123456789abcdef";
    if (control == '\t' || control == '\n') {
        shown += control == '\t' ? "\\t" : "\\n";
        return;
    }
    shown += "\\x";
    shown += digits[control >> 4U];
    shown += digits[control & 0xFU];
}

// How many bytes the control character at the start of the text has; 0 when there is another one.
std::size_t controlLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x20 || first == 0x7F) {
        return 1;
    }
    const auto second = text.size() > 1 ? static_cast<unsigned char>(text[1]) : 0U;
    return first == 0xC2 && second >= 0x80 && second < 0xA0 ? 2 : 0;
}

} // namespace

std::string shownText(std::string_view text) {
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = controlLength(text);
        if (length == 0) {
            shown += text[0];
            text.remove_prefix(1);
        } else { // the second byte of a long one is its number
            appendEscape(shown, static_cast<unsigned char>(text[length - 1]));
            text.remove_prefix(length);
        }
    }
    return shown;
}

std::string padded(std::string_view text, std::size_t width) {
    return std::string(width > text.size() ? width - text.size() : 0, ' ').append(text);
}

} // namespace veldacov
