#include "compiler_line.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace veldacc {

namespace {

// How an option and its argument stand: alone; with the argument joined ("-Wall", also nothing: "-g"); in the next
// word; either.
enum class Form : std::uint8_t { Alone, Joined, Separate, Either };

struct Option {
    std::string_view name;
    Form form;
    Role role;
};

// The options of gcc and clang whose form or role matters. The longest name that fits decides.
constexpr std::array options = {
    Option{"-c", Form::Alone, Role::Stage},
    Option{"--compile", Form::Alone, Role::Stage},
    Option{"-S", Form::Alone, Role::Stage},
    Option{"--assemble", Form::Alone, Role::Stage},
    Option{"-o", Form::Either, Role::Output},
    Option{"--output", Form::Separate, Role::Output},
    Option{"--output=", Form::Joined, Role::Output},
    Option{"-x", Form::Either, Role::Language},
    Option{"--language", Form::Separate, Role::Language},
    Option{"--language=", Form::Joined, Role::Language},

    Option{"-E", Form::Alone, Role::Question},
    Option{"--preprocess", Form::Alone, Role::Question},
    Option{"-M", Form::Alone, Role::Question},
    Option{"-MM", Form::Alone, Role::Question},
    Option{"--dependencies", Form::Alone, Role::Question},
    Option{"--user-dependencies", Form::Alone, Role::Question},
    Option{"-fsyntax-only", Form::Alone, Role::Question},
    Option{"-fdirectives-only", Form::Alone, Role::Question},
    Option{"-fpreprocessed", Form::Alone, Role::Question},
    Option{"-traditional", Form::Alone, Role::Question},
    Option{"-traditional-cpp", Form::Alone, Role::Question},
    Option{"-###", Form::Alone, Role::Question},
    Option{"-dumpmachine", Form::Alone, Role::Question},
    Option{"-dumpversion", Form::Alone, Role::Question},
    Option{"-dumpfullversion", Form::Alone, Role::Question},
    Option{"-dumpspecs", Form::Alone, Role::Question},
    Option{"-print-", Form::Joined, Role::Question},
    Option{"--print-", Form::Joined, Role::Question},
    Option{"--help", Form::Joined, Role::Question},
    Option{"--target-help", Form::Alone, Role::Question},
    Option{"--version", Form::Alone, Role::Question},
    Option{"--analyze", Form::Alone, Role::Question},
    Option{"-emit-ast", Form::Alone, Role::Question},

    Option{"-I", Form::Either, Role::Search},
    Option{"--include-directory", Form::Separate, Role::Search},
    Option{"--include-directory=", Form::Joined, Role::Search},
    Option{"-isystem", Form::Either, Role::Search},
    Option{"-idirafter", Form::Either, Role::Search},
    Option{"-iquote", Form::Either, Role::Search},
    Option{"-iprefix", Form::Either, Role::Search},
    Option{"-iwithprefix", Form::Either, Role::Search},
    Option{"-iwithprefixbefore", Form::Either, Role::Search},
    Option{"-imultilib", Form::Separate, Role::Search},
    Option{"-imultiarch", Form::Separate, Role::Search},
    Option{"-iframework", Form::Either, Role::Search},
    Option{"-F", Form::Either, Role::Search},
    Option{"-ivfsoverlay", Form::Separate, Role::Search},
    Option{"-nostdinc", Form::Alone, Role::Search},
    Option{"-undef", Form::Alone, Role::Macro},
    Option{"-D", Form::Either, Role::Macro},
    Option{"--define-macro", Form::Separate, Role::Macro},
    Option{"--define-macro=", Form::Joined, Role::Macro},
    Option{"-U", Form::Either, Role::Macro},
    Option{"--undefine-macro", Form::Separate, Role::Macro},
    Option{"--undefine-macro=", Form::Joined, Role::Macro},
    Option{"-A", Form::Either, Role::Macro},
    Option{"-include", Form::Either, Role::IncludedFirst},
    Option{"--include", Form::Separate, Role::IncludedFirst},
    Option{"--include=", Form::Joined, Role::IncludedFirst},
    Option{"-imacros", Form::Either, Role::IncludedFirst},
    Option{"--imacros", Form::Separate, Role::IncludedFirst},
    Option{"--imacros=", Form::Joined, Role::IncludedFirst},
    Option{"-include-pch", Form::Separate, Role::IncludedFirst},
    Option{"-Wp,", Form::Joined, Role::IncludedFirst},
    Option{"-Xpreprocessor", Form::Separate, Role::IncludedFirst},
    Option{"-remap", Form::Alone, Role::IncludedFirst},

    Option{"-MD", Form::Alone, Role::Dependency},
    Option{"-MMD", Form::Alone, Role::Dependency},
    Option{"--write-dependencies", Form::Alone, Role::Dependency},
    Option{"--write-user-dependencies", Form::Alone, Role::Dependency},
    Option{"-MF", Form::Either, Role::Dependency},
    Option{"-MT", Form::Either, Role::Dependency},
    Option{"-MQ", Form::Either, Role::Dependency},
    Option{"-MP", Form::Alone, Role::Dependency},
    Option{"-MG", Form::Alone, Role::Dependency},
    Option{"-MV", Form::Alone, Role::Dependency},
    Option{"-MJ", Form::Either, Role::SideOutput},
    Option{"-Wp,-M", Form::Joined, Role::Dependency},

    Option{"-P", Form::Alone, Role::TextForm},
    Option{"-C", Form::Alone, Role::TextForm},
    Option{"-CC", Form::Alone, Role::TextForm},
    Option{"-H", Form::Alone, Role::TextForm},
    Option{"--trace-includes", Form::Alone, Role::TextForm},

    Option{"-W", Form::Joined, Role::Warning},
    Option{"-w", Form::Alone, Role::Warning},
    Option{"-pedantic", Form::Alone, Role::Warning},
    Option{"--pedantic", Form::Alone, Role::Warning},
    Option{"-pedantic-errors", Form::Alone, Role::Warning},
    Option{"--pedantic-errors", Form::Alone, Role::Warning},
    Option{"--all-warnings", Form::Alone, Role::Warning},
    Option{"--extra-warnings", Form::Alone, Role::Warning},
    Option{"-fdiagnostics-", Form::Joined, Role::Warning},
    Option{"-fno-diagnostics-", Form::Joined, Role::Warning},
    Option{"-fmax-errors=", Form::Joined, Role::Warning},
    Option{"-fmessage-length=", Form::Joined, Role::Warning},
    Option{"-fcolor-diagnostics", Form::Alone, Role::Warning},
    Option{"-fno-color-diagnostics", Form::Alone, Role::Warning},
    Option{"-fanalyzer", Form::Alone, Role::Warning},
    // What depends on the code that the optimiser makes is checked by nobody.
    Option{"-Wframe-larger-than", Form::Joined, Role::SideOutput},
    Option{"-Wstack-usage", Form::Joined, Role::SideOutput},

    Option{"-O", Form::Joined, Role::Optimisation},
    Option{"--optimize", Form::Joined, Role::Optimisation},
    Option{"-g", Form::Joined, Role::Debug},
    Option{"--debug", Form::Joined, Role::Debug},
    Option{"-v", Form::Alone, Role::Verbose},
    Option{"--verbose", Form::Alone, Role::Verbose},
    Option{"-Q", Form::Alone, Role::Verbose},
    Option{"-ftime-report", Form::Joined, Role::Verbose},

    Option{"-save-temps", Form::Joined, Role::SideOutput},
    Option{"--save-temps", Form::Joined, Role::SideOutput},
    Option{"-aux-info", Form::Separate, Role::SideOutput},
    Option{"-fdump-", Form::Joined, Role::SideOutput},
    Option{"-d", Form::Joined, Role::SideOutput},
    Option{"-dumpbase", Form::Separate, Role::SideOutput},
    Option{"-dumpbase-ext", Form::Separate, Role::SideOutput},
    Option{"-dumpdir", Form::Separate, Role::SideOutput},
    Option{"-fsave-optimization-record", Form::Joined, Role::SideOutput},
    Option{"-fopt-info", Form::Joined, Role::SideOutput},
    Option{"-serialize-diagnostics", Form::Separate, Role::SideOutput},
    Option{"--serialize-diagnostics", Form::Separate, Role::SideOutput},
    Option{"-fcallgraph-info", Form::Joined, Role::SideOutput},
    Option{"-flto", Form::Joined, Role::SideOutput},
    Option{"-ffat-lto-objects", Form::Alone, Role::SideOutput},

    Option{"-Wa,", Form::Joined, Role::Assembler},
    Option{"-Xassembler", Form::Separate, Role::Assembler},

    Option{"-Wl,", Form::Joined, Role::Linker},
    Option{"-Xlinker", Form::Separate, Role::Linker},
    Option{"-l", Form::Either, Role::Linker},
    Option{"-L", Form::Either, Role::Linker},
    Option{"-T", Form::Either, Role::Linker},
    Option{"-Tbss", Form::Either, Role::Linker},
    Option{"-Tdata", Form::Either, Role::Linker},
    Option{"-Ttext", Form::Either, Role::Linker},
    Option{"-u", Form::Either, Role::Linker},
    Option{"-z", Form::Either, Role::Linker},
    Option{"-e", Form::Either, Role::Linker},
    Option{"--entry", Form::Separate, Role::Linker},
    Option{"--entry=", Form::Joined, Role::Linker},
    Option{"-R", Form::Either, Role::Linker},
    Option{"-rpath", Form::Separate, Role::Linker},
    Option{"-s", Form::Alone, Role::Linker},
    Option{"-n", Form::Alone, Role::Linker},
    Option{"-r", Form::Alone, Role::Linker},
    Option{"-t", Form::Alone, Role::Linker},
    Option{"-rdynamic", Form::Alone, Role::Linker},
    Option{"-shared", Form::Joined, Role::Linker},
    Option{"-static", Form::Joined, Role::Linker},
    Option{"-pie", Form::Alone, Role::Linker},
    Option{"-no-pie", Form::Alone, Role::Linker},
    Option{"-nostdlib", Form::Joined, Role::Linker},
    Option{"-nodefaultlibs", Form::Alone, Role::Linker},
    Option{"-nostartfiles", Form::Alone, Role::Linker},
    Option{"-nolibc", Form::Alone, Role::Linker},
    Option{"-symbolic", Form::Alone, Role::Linker},
    Option{"-fuse-ld=", Form::Joined, Role::Linker},
    Option{"-framework", Form::Separate, Role::Linker},
    Option{"-install_name", Form::Separate, Role::Linker},
    Option{"-soname", Form::Separate, Role::Linker},
    Option{"-h", Form::Separate, Role::Linker},
    Option{"-dynamic", Form::Joined, Role::Linker},

    Option{"-std=", Form::Joined, Role::Dialect},
    Option{"--std", Form::Joined, Role::Dialect},
    Option{"-ansi", Form::Alone, Role::Dialect},
    Option{"-m", Form::Joined, Role::Dialect},
    Option{"-f", Form::Joined, Role::Dialect},
    Option{"-target", Form::Separate, Role::Dialect},
    Option{"--target=", Form::Joined, Role::Dialect},

    Option{"--param", Form::Separate, Role::General},
    Option{"-emit-llvm", Form::Alone, Role::General},
    Option{"--sysroot", Form::Separate, Role::General},
    Option{"-isysroot", Form::Either, Role::General},
    Option{"-B", Form::Either, Role::General},
    Option{"-G", Form::Either, Role::General},
    Option{"-wrapper", Form::Separate, Role::General},
    Option{"-specs", Form::Separate, Role::General},
    Option{"--specs", Form::Separate, Role::General},
    Option{"-Xclang", Form::Separate, Role::General},
    Option{"-Xarch_host", Form::Separate, Role::General},
    Option{"-mllvm", Form::Separate, Role::General},
    Option{"-arch", Form::Separate, Role::General},
    Option{"-gcc-toolchain", Form::Separate, Role::General},
    Option{"-working-directory", Form::Separate, Role::General},
};

// Programs that run a compiler whose command line follows.
constexpr std::array<std::string_view, 5> launcherNames = {"ccache", "distcc", "icecc", "sccache",
                                                           "buildcache"};

bool fits(const Option& option, std::string_view word) {
    const bool whole = option.form == Form::Alone || option.form == Form::Separate;
    return whole ? word == option.name : word.starts_with(option.name);
}

const Option* findOption(std::string_view word) {
    const Option* best = nullptr;
    for (const Option& option : options) {
        if (fits(option, word) && (best == nullptr || option.name.size() > best->name.size())) {
            best = &option;
        }
    }
    return best;
}

bool takesNextWord(const Option& option, std::string_view word) {
    return option.form == Form::Separate || (option.form == Form::Either && word == option.name);
}

// g++, clang++-19 and their like take every source for C++.
bool isCppDriver(const std::string& compiler) {
    std::string name = baseName(compiler);
    name.erase(std::find_if(name.rbegin(), name.rend(),
                            [](char letter) {
                                return (letter < '0' || letter > '9') && letter != '.' && letter != '-';
                            })
                   .base(),
               name.end());
    return name.ends_with("++");
}

bool isCSourceName(const std::string& name) {
    return name.ends_with(".c") && name.size() > 2;
}

// One line of -m, -f and -target options that choose another machine.
bool choosesMachine(const std::string& word) {
    constexpr std::array<std::string_view, 11> names = {"-m32",    "-m64",       "-mx32",      "-m16",
                                                        "-mabi",   "-march=arm", "-mbig",      "-mlittle",
                                                        "-target", "--target=",  "-mfloat-abi"};
    return std::any_of(names.begin(), names.end(),
                       [&](std::string_view name) { return word.starts_with(name); });
}

class Reader {
public:
    Reader(const Words& words, CommandLine& line) : words_(words), line_(line) {}

    void readAll() {
        cppDriver_ = isCppDriver(line_.compiler);
        while (at_ < words_.size()) {
            const std::string& word = words_[at_];
            if (word.size() > 1 && word.front() == '-') {
                readOption(word);
            } else {
                readInput(word);
            }
        }
    }

private:
    void readInput(const std::string& word) {
        ++at_;
        Argument argument{.role = Role::Input, .words = {word}, .value = word, .language = language_};
        argument.cSource = language_.empty() ? !cppDriver_ && isCSourceName(word) : language_ == "c";
        line_.usesStandardInput = line_.usesStandardInput || word == "-";
        line_.arguments.push_back(std::move(argument));
    }

    void readOption(const std::string& word) {
        const Option* option = findOption(word);
        Argument argument{.role = option != nullptr ? option->role : Role::General, .words = {word}};
        ++at_;
        if (option != nullptr && takesNextWord(*option, word)) {
            if (at_ < words_.size()) {
                argument.value = words_[at_];
                argument.words.push_back(words_[at_++]);
            }
        } else if (option != nullptr) {
            argument.value = word.substr(option->name.size());
        }
        if (word == "-Xpreprocessor" && argument.value.starts_with("-M")) {
            argument.role = Role::Dependency;
        }
        note(word, argument);
        line_.arguments.push_back(std::move(argument));
    }

    // What the whole command line means because of this option.
    void note(const std::string& word, const Argument& argument) {
        switch (argument.role) {
        case Role::Question: line_.question = true; break;
        case Role::Output: line_.output = argument.value; break;
        case Role::Language:
            line_.choosesLanguage = true;
            language_ = argument.value == "none" ? "" : argument.value;
            break;
        case Role::Stage: noteStage(word); break;
        case Role::Dependency: noteDependency(word); break;
        case Role::Linker: noteLink(word, argument.value); break;
        case Role::Warning:
            line_.choosesColour = line_.choosesColour || word.find("color") != std::string::npos;
            break;
        case Role::Dialect: line_.explicitMachine = line_.explicitMachine || choosesMachine(word); break;
        default: break;
        }
    }

    // Of -c and -S the one that stops earlier wins.
    void noteStage(const std::string& word) {
        if (word == "-S" || word == "--assemble") {
            line_.product = Product::Assembly;
        } else if (line_.product == Product::Program) {
            line_.product = Product::Object;
        }
    }

    void noteDependency(const std::string& word) {
        line_.oldDependencies = line_.oldDependencies || word.starts_with("-Wp,") || word == "-Xpreprocessor";
        line_.namedDependencies = line_.namedDependencies || word.starts_with("-MF");
        line_.namedTarget = line_.namedTarget || word.starts_with("-MT") || word.starts_with("-MQ");
        line_.dependencies =
            line_.dependencies || word == "-MD" || word == "-MMD" || word.starts_with("--write");
    }

    void noteLink(const std::string& word, const std::string& value) {
        const std::string padded = ',' + value + ',';
        line_.relocatableLink =
            line_.relocatableLink || word == "-r" || padded.find(",-r,") != std::string::npos ||
            padded.find(",--relocatable,") != std::string::npos || padded.find(",-i,") != std::string::npos;
    }

    const Words& words_;
    CommandLine& line_;
    std::size_t at_ = 0;
    std::string language_;
    bool cppDriver_ = false;
};

} // namespace

bool isClang(const CommandLine& line) {
    return baseName(line.compiler).find("clang") != std::string::npos;
}

std::string baseName(const std::string& path) {
    return path.substr(path.find_last_of('/') + 1);
}

std::string withoutSuffix(const std::string& path) {
    const std::size_t name = path.find_last_of('/') + 1;
    const std::size_t period = path.find_last_of('.');
    return period == std::string::npos || period <= name ? path : path.substr(0, period);
}

bool CommandLine::hasDependencyOptions() const {
    return std::any_of(arguments.begin(), arguments.end(),
                       [](const Argument& argument) { return argument.role == Role::Dependency; });
}

std::vector<const Argument*> CommandLine::inputs() const {
    std::vector<const Argument*> found;
    for (const Argument& argument : arguments) {
        if (argument.role == Role::Input) {
            found.push_back(&argument);
        }
    }
    return found;
}

std::vector<const Argument*> CommandLine::cSources() const {
    std::vector<const Argument*> found = inputs();
    std::erase_if(found, [](const Argument* argument) { return !argument->isCSource(); });
    return found;
}

CommandLine readCommandLine(const Words& words) {
    CommandLine line;
    line.original = words;
    std::size_t at = 0;
    while (at + 1 < words.size() && std::find(launcherNames.begin(), launcherNames.end(),
                                              baseName(words[at])) != launcherNames.end()) {
        line.launchers.push_back(words[at++]);
    }
    line.compiler = words[at++];
    const Words rest =
        expandResponseFiles(Words(words.begin() + static_cast<std::ptrdiff_t>(at), words.end()));
    Reader(rest, line).readAll();
    return line;
}

} // namespace veldacc
