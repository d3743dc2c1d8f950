// veldacc-instrument: run by `veldacc` for each C source. Exit status: 0 done, 3 the original is to be compiled, 4 a
// function was left out and --strict forbids that.

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <llvm/Support/thread.h>

#include "instrument.h"

namespace {

using namespace veldacc;

enum ExitStatus { done = 0, badCall = 2, compileOriginal = 3, leftOut = 4 };

struct Options {
    SourceInput input;
    std::string textFile;
    std::string mapFile;
    std::string outputFile;
    std::string descriptionFile;
    bool strict = false;
    bool verbose = false;
};

// Messages in the form of the suite's; `kind` is WARNING, ERROR or INFO.
void say(const char* kind, const std::string& message) {
    std::cerr << "Norvik veldacc - " << kind << ": " << message << '\n';
}

struct ValueOption {
    std::string_view name;
    bool (*set)(Options&, const std::string& value);
};
struct SwitchOption {
    std::string_view name;
    void (*set)(Options&);
};

bool setMaxCases(Options& options, const std::string& value) {
    char* end = nullptr;
    options.input.settings.maxCases = std::strtoull(value.c_str(), &end, 10);
    return end != value.c_str() && *end == '\0';
}

constexpr ValueOption valueOptions[] = {
    {"--source",
     [](Options& o, const std::string& v) {
         o.input.sourceName = v;
         return true;
     }},
    {"--text",
     [](Options& o, const std::string& v) {
         o.textFile = v;
         return true;
     }},
    {"--map",
     [](Options& o, const std::string& v) {
         o.mapFile = v;
         return true;
     }},
    {"--output",
     [](Options& o, const std::string& v) {
         o.outputFile = v;
         return true;
     }},
    {"--description",
     [](Options& o, const std::string& v) {
         o.descriptionFile = v;
         return true;
     }},
    {"--root",
     [](Options& o, const std::string& v) {
         o.input.root = v;
         return true;
     }},
    {"--std",
     [](Options& o, const std::string& v) {
         o.input.parse.standard = v;
         return true;
     }},
    {"--target",
     [](Options& o, const std::string& v) {
         o.input.parse.target = v;
         return true;
     }},
    {"--types",
     [](Options& o, const std::string& v) { return (o.input.settings.types = parseTypes(v)) != 0; }},
    {"--max-cases", setMaxCases},
    {"--compiler-option",
     [](Options& o, const std::string& v) {
         o.input.parse.compilerOptions.push_back(v);
         o.input.settings.overflowTraps |= v == "-ftrapv" || v.starts_with("-fsanitize");
         return true;
     }},
};
constexpr SwitchOption switchOptions[] = {
    {"--headers", [](Options& o) { o.input.settings.headers = true; }},
    {"--forced", [](Options& o) { o.input.settings.forced = true; }},
    {"--ordered", [](Options& o) { o.input.settings.way = Counting::Ordered; }},
    {"--counter-per-item", [](Options& o) { o.input.settings.way = Counting::Own; }},
    {"--strict", [](Options& o) { o.strict = true; }},
    {"--verbose", [](Options& o) { o.verbose = true; }},
};

// Takes `--name value` and `--name=value`.
bool readOptions(const std::vector<std::string>& arguments, Options& options) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        bool known = false;
        for (const SwitchOption& option : switchOptions)
            if (option.name == argument) {
                option.set(options);
                known = true;
            }
        for (const ValueOption& option : valueOptions)
            if (!known && option.name == name) {
                if (equals == std::string::npos && ++i >= arguments.size())
                    return false;
                known = option.set(options,
                                   equals == std::string::npos ? arguments[i] : argument.substr(equals + 1));
            }
        if (!known) {
            say("ERROR", "veldacc-instrument: bad option " + argument);
            return false;
        }
    }
    return !options.input.sourceName.empty() && !options.textFile.empty() && !options.outputFile.empty() &&
           !options.descriptionFile.empty();
}

std::optional<std::string> readFile(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    if (!file)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

bool writeFile(const std::string& name, const std::string& text) {
    std::ofstream file(name, std::ios::binary);
    file << text;
    file.close();
    return file.good();
}

int runSteps(Options& options) {
    const char* problemKind = options.strict ? "ERROR" : "WARNING";
    const std::optional<std::string> text = readFile(options.textFile);
    if (!text) {
        say("WARNING", "cannot read " + options.textFile);
        return compileOriginal;
    }
    options.input.text = *text;
    if (!options.mapFile.empty())
        options.input.map = readFile(options.mapFile).value_or(std::string{});
    const std::optional<InstrumentedSource> result = instrument(options.input);
    if (!result) {
        say(problemKind, options.input.sourceName + ": not understood, compiled as it is");
        return options.strict ? leftOut : compileOriginal;
    }
    for (const std::string& warning : result->warnings)
        say(problemKind, warning);
    for (const std::string& remark : result->remarks)
        say("INFO", remark);
    if (options.verbose)
        say("INFO", options.input.sourceName + (result->usedMap ? ": macros mapped" : ": macros not mapped"));
    if (options.strict && !result->warnings.empty())
        return leftOut;
    if (result->description.empty())
        return compileOriginal;
    if (!writeFile(options.outputFile, result->text) ||
        !writeFile(options.descriptionFile, result->description)) {
        say("WARNING", "cannot write " + options.outputFile + " or " + options.descriptionFile);
        return compileOriginal;
    }
    return done;
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    if (!readOptions({argv + 1, argv + argc}, options))
        return badCall;
    // Deeply nested sources need a deep stack, in Clang as here.
    constexpr unsigned stackSize = 1U << 30U;
    int status = compileOriginal;
    llvm::thread worker(std::optional<unsigned>(stackSize), [&] { status = runSteps(options); });
    worker.join();
    return status;
}
