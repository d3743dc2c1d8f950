#include "view/html_text.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace veldacov {

namespace {

constexpr std::array<bool, 256> needsNoLook = [] {
    std::array<bool, 256> plain{};
    for (std::size_t byte = 0x20; byte < 0x7F; ++byte) {
        plain[byte] = true;
    }
    plain['\t'] = true;
    for (const char special : {'<', '>', '&', '"', '\''}) {
        plain[static_cast<unsigned char>(special)] = false;
    }
    return plain;
}();

// A character with the number of its bytes.
struct Character {
    std::uint32_t code = 0;
    std::size_t length = 0; // 0: the first byte begins no character
};

constexpr std::uint32_t byteAt(std::string_view bytes, std::size_t place) {
    return static_cast<unsigned char>(bytes[place]);
}

// The character at the start; by the table of well-formed sequences, which has neither surrogates nor superfluous bytes.
Character characterOf(std::string_view bytes) {
    const std::uint32_t first = byteAt(bytes, 0);
    if (first < 0x80) {
        return {first, 1};
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || bytes.size() < length) {
        return {};
    }
    const std::uint32_t smallestSecond = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
    const std::uint32_t largestSecond = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
    std::uint32_t code = first & (0x7FU >> length);
    for (std::size_t place = 1; place < length; ++place) {
        const std::uint32_t next = byteAt(bytes, place);
        if (next < (place == 1 ? smallestSecond : 0x80) || next > (place == 1 ? largestSecond : 0xBF)) {
            return {};
        }
        code = code << 6U | (next & 0x3FU);
    }
    return {code, length};
}

bool deceives(std::uint32_t code) {
    return code == 0x61C || code == 0x200B || code == 0x200E || code == 0x200F || code == 0xFEFF ||
           (code >= 0x2028 && code <= 0x202E) || (code >= 0x2060 && code <= 0x206F);
}

void putEscape(OutputFile& out, std::uint32_t code) {
    constexpr std::string_view digits = "0123456789abcdef";
    out.put("\\u");
    for (unsigned shift = 16; shift != 0; shift -= 4) {
        out.put(digits[code >> (shift - 4) & 0xFU]);
    }
}

// The pictures of control characters have the codes U+2400 to U+2421.
void putControl(OutputFile& out, std::uint32_t code) {
    if (code > 0x7F) {
        putEscape(out, code);
        return;
    }
    out.put("\xE2\x90");
    out.put(code == 0x7F ? '\xA1' : static_cast<char>(0x80 + code));
}

void putSpecial(OutputFile& out, std::uint32_t code) {
    switch (code) {
    case '<': out.put("&lt;"); break;
    case '>': out.put("&gt;"); break;
    case '&': out.put("&amp;"); break;
    case '"': out.put("&quot;"); break;
    case '\'': out.put("&#39;"); break;
    default: putControl(out, code); break;
    }
}

} // namespace

void putHtml(OutputFile& out, std::string_view bytes) {
    std::size_t begin = 0; // of what can be copied as it is
    std::size_t at = 0;
    while (at < bytes.size()) {
        if (needsNoLook[byteAt(bytes, at)]) {
            ++at;
            continue;
        }
        const Character character = characterOf(bytes.substr(at));
        const bool stays = character.code >= 0xA0 && !deceives(character.code);
        if (!stays) {
            out.put(bytes.substr(begin, at - begin));
            if (character.length == 0) {
                out.put("\xEF\xBF\xBD");
            } else if (deceives(character.code)) {
                putEscape(out, character.code);
            } else {
                putSpecial(out, character.code);
            }
        }
        at += character.length == 0 ? 1 : character.length;
        begin = stays ? begin : at;
    }
    out.put(bytes.substr(begin));
}

} // namespace veldacov
