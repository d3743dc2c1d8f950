#pragma once

// Words of a command line that stand elsewhere: in response files and in environment variables.
//
//   # a comment is a line of its own
//   src/*.fdc "a name with blanks.tio" $TRACES/night.tio
//
// Words end at blanks outside of quotes and at line ends; a backslash at the end of a line joins it to the next one.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veldacov {

// Replaces each reference to a defined variable; the values are not looked at again.
std::string withEnvironment(std::string_view word);

// The words of a response file, references to variables replaced; none when it cannot be read. The file is protected
// from being an output.
std::optional<std::vector<std::string>> responseWords(const std::string& fileName);

} // namespace veldacov
