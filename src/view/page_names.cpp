#include "view/page_names.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "support/hash.h"
#include "support/machine.h"

namespace veldacov {

namespace {

constexpr std::string_view extension = ".html";
// A file system takes 255 bytes.
constexpr std::size_t longestStem = 100;
// Stands before a hash, and in no name without one.
constexpr std::string_view hashMark = "--";

bool isLetterOrDigit(char character) {
    return (upperCase(character) >= 'A' && upperCase(character) <= 'Z') ||
           (character >= '0' && character <= '9');
}

// What stands for a character in a file name; a dot or hyphen in front would hide the file, or make it an option.
char fileCharacter(char character, bool first) {
    if (isLetterOrDigit(character) || character == '_') {
        return character;
    }
    if (first) {
        return '_';
    }
    return character == '/' ? '-' : character == '.' || character == '-' ? character : '_';
}

std::string stemOf(std::string_view name) {
    std::string stem;
    for (const char character : name.empty() ? "/" : name.substr(0, longestStem)) {
        stem += fileCharacter(character, stem.empty());
    }
    return stem;
}

// Not that of tables: it has to be the same in every run.
std::string hashText(std::string_view name) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::uint64_t hash = XXH3_64bits(name.data(), name.size());
    std::string text(hashMark);
    for (int digit = 0; digit < 16; ++digit, hash >>= 4U) {
        text += digits[hash & 0xFU];
    }
    return text;
}

} // namespace

std::vector<std::string> pageNames(const std::vector<std::string>& names) {
    std::unordered_map<std::string, std::size_t> times; // by the stem in capitals
    for (const std::string& name : names) {
        ++times[duplicateUpper(stemOf(name))];
    }
    std::vector<std::string> files;
    std::unordered_set<std::string> taken; // in capitals
    for (const std::string& name : names) {
        std::string file = stemOf(name);
        if (name.empty() || name.size() > longestStem || file.find(hashMark) != std::string::npos ||
            times[duplicateUpper(file)] > 1) {
            file += hashText(name);
        }
        while (!taken.insert(duplicateUpper(file)).second) { // the same name, or the same hash
            file += '-';
        }
        files.push_back(std::move(file.append(extension)));
    }
    return files;
}

} // namespace veldacov
