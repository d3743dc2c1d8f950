#pragma once

// Command lines that stand in text: VELDACC_OPTIONS and the response files (`@file`) of compilers.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veldacc {

using Words = std::vector<std::string>;

// Splits at blanks and line ends; quotes of both kinds hold words together, a backslash takes the next character as
// it is. That is how compilers read response files.
Words splitWords(std::string_view text);

// A text that splitWords gives back as these words.
std::string joinWords(const Words& words);

// Replaces each `@file` by the words of the file, also inside such files. A word whose file cannot be read stays as
// it is, as with the compilers. Files that name themselves end at a depth of 200.
Words expandResponseFiles(const Words& words);

std::optional<std::string> readFile(const std::string& path);
bool writeFile(const std::string& path, std::string_view text);

} // namespace veldacc
