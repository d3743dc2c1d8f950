#pragma once

// The commands of the steps that an instrumented compilation consists of.

#include <cstdint>
#include <string>

#include "compiler_line.h"

namespace veldacc {

enum class Step : std::uint8_t {
    Text,     // preprocess: what the compiler sees
    Map,      // preprocess with macros left in place: what the user sees
    Check,    // translate the original without optimising it: the warnings and errors that the user asked for
    Compile,  // compile the instrumented text
    Original, // compile the original
    Dependencies, // write only the dependency file
    Rest,         // compile what is not C
    Link,         // link objects, and compile and link what is not C
};

// The compiler and those of the user's arguments that the step takes, without sources and output.
Words commonWords(const CommandLine& line, Step step);

Words textCommand(const CommandLine& line, const Argument& source, const std::string& object,
                  const std::string& output);
Words mapCommand(const CommandLine& line, const Argument& source, const std::string& output);
// The two parts of a map by Clang, which cannot leave macros in place and settle conditionals at once.
Words macrosCommand(const CommandLine& line, const std::string& output);
Words rewriteCommand(const CommandLine& line, const Argument& source, const std::string& output);
Words checkCommand(const CommandLine& line, const Argument& source, const std::string& output);
Words compileCommand(const CommandLine& line, const std::string& text, const std::string& object);
Words originalCommand(const CommandLine& line, const Argument& source, const std::string& object);
// Where the names in the dependency file are for the compiler to make: in a call that links, and with options that
// pass it by.
bool needsDependenciesStep(const CommandLine& line);
Words dependenciesCommand(const CommandLine& line, const Argument& source);

// The command line without the sources that have been compiled already.
Words restCommand(const CommandLine& line);

// The original call as a link: `objects` stand in for the C sources, in their order; `libraries` come last.
Words linkCommand(const CommandLine& line, const Words& objects, const Words& libraries);

// The user's options that change what C means, for the instrumenter.
Words dialectOf(const CommandLine& line);

} // namespace veldacc
