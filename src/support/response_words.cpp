#include "support/response_words.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "support/files.h"
#include "support/run_files.h"

namespace veldacov {

namespace {

bool isNameCharacter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_';
}

// The words of a response file, taken a character at a time.
class ResponseWords {
public:
    explicit ResponseWords(InputFile& file) : file_(file) {}

    std::vector<std::string> all() {
        while (const std::optional<char> character = readCharacter(file_)) {
            take(*character);
        }
        endWord();
        return std::move(words_);
    }

private:
    void take(char character) {
        if (character == '#' && atLineStart_) {
            inComment_ = true;
        }
        if (inComment_ && character != '\n') {
            return;
        }
        inComment_ = false;
        const bool indentation = atLineStart_ && (character == ' ' || character == '\t');
        atLineStart_ = indentation || character == '\n';
        if (character == '"') {
            quoting_ = !quoting_;
        } else if (character == '\\') {
            takeEscaped();
        } else if (!quoting_ &&
                   (character == ' ' || character == '\t' || character == '\r' || character == '\n')) {
            endWord();
        } else {
            word_ += character;
        }
    }

    // A backslash joins lines; before any other character both stay, for the lists that follow.
    void takeEscaped() {
        const std::optional<char> next = readCharacter(file_);
        if (next && *next != '\r' && *next != '\n') {
            word_ += '\\';
            word_ += *next;
        }
    }

    void endWord() {
        if (!word_.empty()) {
            words_.push_back(withEnvironment(word_));
            word_.clear();
        }
    }

    InputFile& file_;
    std::vector<std::string> words_;
    std::string word_;
    bool quoting_ = false;
    bool inComment_ = false;
    bool atLineStart_ = true; // nothing but blanks and tabs so far; a joined line is no start
};

} // namespace

std::string withEnvironment(std::string_view word) {
    std::string result;
    while (!word.empty()) {
        const auto reference = std::min(word.find('$'), word.size());
        result += word.substr(0, reference);
        word.remove_prefix(reference);
        if (word.empty()) {
            break;
        }
        const auto nameEnd = std::find_if_not(word.begin() + 1, word.end(), isNameCharacter);
        const std::string name(word.begin() + 1, nameEnd);
        const char* value = name.empty() ? nullptr : std::getenv(name.c_str());
        result += value != nullptr ? std::string(value) : "$" + name;
        word.remove_prefix(name.size() + 1);
    }
    return result;
}

std::optional<std::vector<std::string>> responseWords(const std::string& fileName) {
    protectFile(fileName);
    InputFile file = openInput(fileName);
    if (!file.isOpen()) {
        return std::nullopt;
    }
    return ResponseWords(file).all();
}

} // namespace veldacov
