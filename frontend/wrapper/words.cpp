#include "words.h"

#include <cstdio>
#include <memory>

namespace veldacc {

namespace {

constexpr std::string_view blanks = " \t\n\r\f\v";
constexpr int deepestResponseFile = 200;

struct FileCloser {
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// Reads one word from the front of the text, which does not begin with a blank.
std::string takeWord(std::string_view& text) {
    std::string word;
    char quote = '\0';
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        const char character = text[at];
        if (character == '\\' && at + 1 < text.size()) {
            word += text[++at];
        } else if (quote != '\0') {
            if (character == quote) {
                quote = '\0';
            } else {
                word += character;
            }
        } else if (character == '\'' || character == '"') {
            quote = character;
        } else if (blanks.find(character) != std::string_view::npos) {
            break;
        } else {
            word += character;
        }
    }
    text.remove_prefix(at);
    return word;
}

void expandInto(Words& expanded, const Words& words, int depth) {
    for (const std::string& word : words) {
        const bool named = word.size() > 1 && word.front() == '@' && depth < deepestResponseFile;
        const std::optional<std::string> text = named ? readFile(word.substr(1)) : std::nullopt;
        if (text) {
            expandInto(expanded, splitWords(*text), depth + 1);
        } else {
            expanded.push_back(word);
        }
    }
}

} // namespace

Words splitWords(std::string_view text) {
    Words words;
    for (;;) {
        const std::size_t begin = text.find_first_not_of(blanks);
        if (begin == std::string_view::npos) {
            return words;
        }
        text.remove_prefix(begin);
        words.push_back(takeWord(text));
    }
}

std::string joinWords(const Words& words) {
    std::string text;
    for (const std::string& word : words) {
        text += '"';
        for (const char character : word) {
            if (character == '"' || character == '\\') {
                text += '\\';
            }
            text += character;
        }
        text += "\"\n";
    }
    return text;
}

Words expandResponseFiles(const Words& words) {
    Words expanded;
    expandInto(expanded, words, 0);
    return expanded;
}

std::optional<std::string> readFile(const std::string& path) {
    const File file(std::fopen(path.c_str(), "rb"));
    if (!file) {
        return std::nullopt;
    }
    std::string text;
    std::string piece(1U << 16U, '\0');
    while (const std::size_t length = std::fread(piece.data(), 1, piece.size(), file.get())) {
        text.append(piece, 0, length);
    }
    return std::ferror(file.get()) != 0 ? std::nullopt : std::optional(text);
}

bool writeFile(const std::string& path, std::string_view text) {
    File file(std::fopen(path.c_str(), "wb"));
    if (!file) {
        return false;
    }
    const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
    return std::fclose(file.release()) == 0 && written;
}

} // namespace veldacc
