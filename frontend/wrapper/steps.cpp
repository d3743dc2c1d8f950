#include "steps.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string_view>

namespace veldacc {

namespace {

using Steps = unsigned;

constexpr Steps in(Step step) {
    return 1U << static_cast<unsigned>(step);
}

template <typename... More>
constexpr Steps in(Step first, More... more) {
    return in(first) | in(more...);
}

constexpr Steps inAll = ~0U;
constexpr Steps inUsersOwn = in(Step::Original, Step::Dependencies, Step::Rest, Step::Link);
constexpr Steps inPreprocessing = in(Step::Text, Step::Map, Step::Check);

struct RoleSteps {
    Role role;
    Steps steps;
};

// Which steps take the options of a role. Inputs, output, stage and language are set by each step itself, except in
// what is left of the user's own call. Directories go to the compilation too: the assembler looks there for .incbin.
constexpr std::array roleSteps = {
    RoleSteps{Role::Input, in(Step::Rest, Step::Link)},
    RoleSteps{Role::Output, in(Step::Rest, Step::Link)},
    RoleSteps{Role::Stage, in(Step::Rest, Step::Link)},
    RoleSteps{Role::Question, 0},
    RoleSteps{Role::Language, in(Step::Rest, Step::Link)},
    RoleSteps{Role::Search, inAll},
    RoleSteps{Role::Macro, inUsersOwn | inPreprocessing},
    RoleSteps{Role::IncludedFirst, inUsersOwn | inPreprocessing},
    RoleSteps{Role::Dependency, in(Step::Text, Step::Original, Step::Dependencies, Step::Rest)},
    RoleSteps{Role::TextForm, inUsersOwn | in(Step::Check)},
    RoleSteps{Role::Warning, inUsersOwn | in(Step::Check)},
    RoleSteps{Role::Optimisation, inAll & ~in(Step::Check)},
    RoleSteps{Role::Debug, inUsersOwn | in(Step::Compile)},
    RoleSteps{Role::Verbose, inUsersOwn | in(Step::Text, Step::Compile)},
    RoleSteps{Role::SideOutput, inUsersOwn | in(Step::Compile)},
    RoleSteps{Role::Assembler, inUsersOwn | in(Step::Compile)},
    RoleSteps{Role::Linker, inUsersOwn},
    RoleSteps{Role::Dialect, inAll},
    RoleSteps{Role::General, inAll},
};

bool takes(Step step, Role role) {
    const auto found = std::find_if(roleSteps.begin(), roleSteps.end(),
                                    [role](const RoleSteps& entry) { return entry.role == role; });
    return (found->steps & in(step)) != 0;
}

void append(Words& words, std::initializer_list<std::string> more) {
    words.insert(words.end(), more);
}

// The level in an option -O2, "0" for none: the last one counts.
std::string optimisationLevel(const CommandLine& line) {
    std::string level = "0";
    for (const Argument& argument : line.arguments) {
        if (argument.role == Role::Optimisation) {
            level = argument.words.front().starts_with("--") || argument.value.empty() ? "1" : argument.value;
        }
    }
    return level;
}

// The text of a header may depend on the optimisation that the user asked for; the check does not optimise.
void appendUnoptimised(Words& words, const std::string& level) {
    words.emplace_back("-O0");
    if (level == "0") {
        return;
    }
    append(words, {"-D__OPTIMIZE__=1", "-U__NO_INLINE__"});
    if (level == "s" || level == "z") {
        words.emplace_back("-D__OPTIMIZE_SIZE__=1");
    }
    if (level == "fast") {
        words.emplace_back("-ffast-math");
    }
}

const char* stageOf(Product product) {
    return product == Product::Assembly ? "-S" : "-c";
}

// The dependency file names the user's object, whatever the step makes.
void appendDependencyNames(Words& words, const CommandLine& line, const std::string& object) {
    if (!line.dependencies) {
        return;
    }
    if (!line.namedDependencies) {
        append(words, {"-MF", withoutSuffix(object) + ".d"});
    }
    if (!line.namedTarget) {
        const bool fromSource = !line.output && line.product == Product::Assembly;
        append(words, {"-MQ", fromSource ? withoutSuffix(object) + ".o" : object});
    }
}

// Options of gcc with which a compilation leaves further files, named after its output.
constexpr std::array<std::string_view, 6> sideOptions = {
    "--coverage", "-ftest-coverage", "-fprofile-", "-fstack-usage", "-fcallgraph-info", "-gsplit-dwarf"};

// In a call that links, too, those files are named after the program, while the object stands elsewhere.
void appendSideNames(Words& words, const CommandLine& line, const std::string& source) {
    const bool leaves = std::any_of(words.begin(), words.end(), [](const std::string& word) {
        return std::any_of(sideOptions.begin(), sideOptions.end(),
                           [&](std::string_view option) { return word.starts_with(option); });
    });
    if (line.product != Product::Program || !leaves || isClang(line)) {
        return;
    }
    const std::string program = line.output.value_or("a");
    const std::string_view executable = ".exe";
    const std::string stem =
        program.ends_with(executable) ? program.substr(0, program.size() - executable.size()) : program;
    // x and not x-x for the program x of x.c alone.
    const bool same = line.cSources().size() == 1 && baseName(stem) == withoutSuffix(source);
    append(words, {"-dumpdir", same ? stem.substr(0, stem.size() - baseName(stem).size()) : stem + "-",
                   "-dumpbase", source});
    if (source.ends_with(".c")) {
        append(words, {"-dumpbase-ext", ".c"});
    }
}

bool isDependencyOption(const Argument& argument) {
    return argument.role == Role::Dependency;
}

} // namespace

Words commonWords(const CommandLine& line, Step step) {
    Words words;
    // Caches and distributors do the work that costs time; they would only be in the way of the rest.
    if (takes(step, Role::Output) || step == Step::Compile || step == Step::Original) {
        words = line.launchers;
    }
    words.push_back(line.compiler);
    for (const Argument& argument : line.arguments) {
        if (takes(step, argument.role)) {
            words.insert(words.end(), argument.words.begin(), argument.words.end());
        }
    }
    return words;
}

Words textCommand(const CommandLine& line, const Argument& source, const std::string& object,
                  const std::string& output) {
    CommandLine own = line;
    if (needsDependenciesStep(line)) {
        std::erase_if(own.arguments, isDependencyOption);
        own.dependencies = false;
    }
    Words words = commonWords(own, Step::Text);
    appendDependencyNames(words, own, object);
    append(words, {"-w", "-g0", "-E", "-x", "c", source.value, "-o", output});
    return words;
}

Words mapCommand(const CommandLine& line, const Argument& source, const std::string& output) {
    Words words = commonWords(line, Step::Map);
    append(words, {"-w", "-g0", "-E", "-fdirectives-only", "-x", "c", source.value, "-o", output});
    return words;
}

Words macrosCommand(const CommandLine& line, const std::string& output) {
    CommandLine own = line;
    std::erase_if(own.arguments,
                  [](const Argument& argument) { return argument.role == Role::IncludedFirst; });
    Words words = commonWords(own, Step::Map);
    append(words, {"-w", "-g0", "-E", "-dM", "-x", "c", "/dev/null", "-o", output});
    return words;
}

Words rewriteCommand(const CommandLine& line, const Argument& source, const std::string& output) {
    Words words = commonWords(line, Step::Map);
    append(words, {"-w", "-g0", "-E", "-frewrite-includes", "-x", "c", source.value, "-o", output});
    return words;
}

Words checkCommand(const CommandLine& line, const Argument& source, const std::string& output) {
    Words words = commonWords(line, Step::Check);
    appendUnoptimised(words, optimisationLevel(line));
    append(words, {"-S", "-x", "c", source.value, "-o", output});
    return words;
}

Words compileCommand(const CommandLine& line, const std::string& text, const std::string& object) {
    Words words = commonWords(line, Step::Compile);
    appendSideNames(words, line, baseName(text));
    append(words, {"-w", stageOf(line.product), "-x", "cpp-output", text, "-o", object});
    return words;
}

Words originalCommand(const CommandLine& line, const Argument& source, const std::string& object) {
    CommandLine own = line;
    if (line.product == Product::Program) {
        std::erase_if(own.arguments, isDependencyOption);
    }
    Words words = commonWords(own, Step::Original);
    words.emplace_back(stageOf(line.product));
    if (!source.language.empty()) {
        append(words, {"-x", source.language});
    }
    append(words, {source.value, "-o", object});
    return words;
}

bool needsDependenciesStep(const CommandLine& line) {
    return line.hasDependencyOptions() && (line.product == Product::Program || line.oldDependencies);
}

Words dependenciesCommand(const CommandLine& line, const Argument& source) {
    Words words = commonWords(line, Step::Dependencies);
    if (line.output) {
        append(words, {"-o", *line.output});
    }
    append(words, {"-w", "-fsyntax-only", "-x", "c", source.value});
    return words;
}

Words restCommand(const CommandLine& line) {
    CommandLine rest = line;
    std::erase_if(rest.arguments, [](const Argument& argument) { return argument.isCSource(); });
    return commonWords(rest, Step::Rest);
}

Words linkCommand(const CommandLine& line, const Words& objects, const Words& libraries) {
    CommandLine link = line;
    auto object = objects.begin();
    for (Argument& argument : link.arguments) {
        if (argument.isCSource()) {
            argument.words = {"-x", "none", *object++};
            if (!argument.language.empty()) {
                append(argument.words, {"-x", argument.language});
            }
        }
    }
    Words words = commonWords(link, Step::Link);
    append(words, {"-x", "none"});
    words.insert(words.end(), libraries.begin(), libraries.end());
    return words;
}

Words dialectOf(const CommandLine& line) {
    Words words;
    for (const Argument& argument : line.arguments) {
        if (argument.role == Role::Dialect) {
            words.insert(words.end(), argument.words.begin(), argument.words.end());
        }
    }
    return words;
}

} // namespace veldacc
