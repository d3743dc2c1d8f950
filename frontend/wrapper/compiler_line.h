#pragma once

// The compiler's command line, as far as a wrapper has to understand it: which words belong together, which of them
// are sources, what the call makes, and which steps of an instrumented compilation each option belongs to.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "words.h"

namespace veldacc {

// What an option is about; steps.cpp says which steps take which. Options that the table does not know are General.
enum class Role : std::uint8_t {
    Input,         // a source, an object, a library by its path, `-`
    Output,        // -o
    Stage,         // -c, -S
    Question,      // the call answers a question, or makes what cannot be instrumented
    Language,      // -x
    Search,        // where to look for headers
    Macro,         // -D, -U
    IncludedFirst, // -include and other things for the preprocessor
    Dependency,    // -MD and what goes with it
    TextForm,      // how preprocessed text looks
    Warning,       // what is complained about, and how
    Optimisation,  // -O
    Debug,         // -g
    Verbose,       // -v
    SideOutput,    // further files that a compilation leaves
    Assembler,     // for the assembler
    Linker,        // for the linker
    Dialect,       // what C means: -std, -m32, -fsigned-char
    General,
};

struct Argument {
    Role role = Role::General;
    Words words = {};          // one or two words of the command line
    std::string value = {};    // what the option is given; of an input, its name
    std::string language = {}; // of an input: the last -x before it, empty for "by its suffix"

    [[nodiscard]] bool isCSource() const { return cSource; }
    bool cSource = false;
};

enum class Product : std::uint8_t { Program, Object, Assembly };

struct CommandLine {
    Words launchers;                 // ccache and its kind, in front of the compiler
    std::string compiler;            // as it was called
    std::vector<Argument> arguments; // response files resolved, in order
    Words original;                  // all words as they were given
    Product product = Product::Program;
    std::optional<std::string> output;
    bool question = false;          // hand it to the compiler as it is
    bool relocatableLink = false;   // -r: the result is linked again
    bool explicitMachine = false;   // an option chooses another machine than the compiler's own
    bool namedDependencies = false; // -MF
    bool dependencies = false;      // -MD, -MMD
    bool namedTarget = false;       // -MT, -MQ
    bool usesStandardInput = false;
    bool choosesColour = false;   // of messages
    bool choosesLanguage = false; // -x

    bool oldDependencies = false; // -Wp,-MD: they reach the preprocessor past the compiler

    [[nodiscard]] bool hasDependencyOptions() const;
    [[nodiscard]] std::vector<const Argument*> inputs() const;
    [[nodiscard]] std::vector<const Argument*> cSources() const;
};

// `words` begin with the compiler or with a launcher. They must not be empty.
CommandLine readCommandLine(const Words& words);

// As far as its name tells.
bool isClang(const CommandLine& line);

// The last part of a path; a name without its last suffix.
std::string baseName(const std::string& path);
std::string withoutSuffix(const std::string& path);

} // namespace veldacc
