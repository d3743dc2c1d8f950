// veldacc-instrument: run by `veldacc` for each C source. Exit status: 0 done, 3 the original is to be compiled, 4 a
// function was left out and --strict forbids that, 2 an option is wrong.

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <llvm/Support/thread.h>

#include "instrument.h"
#include "notices.h"

namespace {

using namespace veldacc;

enum ExitStatus { Done = 0, BadCall = 2, CompileOriginal = 3, LeftOut = 4 };

struct Options {
    SourceInput input;
    std::string textFile;
    std::string mapFile;
    std::string outputFile;
    std::string descriptionFile;
    bool strict = false;
    bool verbose = false;
};

struct Ending {
    ExitStatus status = CompileOriginal;
    std::vector<Notice> notices;
};

struct ValueOption {
    std::string_view name;
    bool (*set)(Options&, const std::string& value);
};
struct SwitchOption {
    std::string_view name;
    void (*set)(Options&);
};

bool setMaxCases(Options& options, const std::string& value) {
    const char* end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, options.input.settings.maxCases);
    return error == std::errc{} && stop == end;
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
    {"--leave",
     [](Options& o, const std::string& v) {
         o.input.leave.push_back(v);
         return true;
     }},
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

template <typename Table>
auto findOption(const Table& table, std::string_view name) {
    const auto found = std::find_if(std::begin(table), std::end(table),
                                    [&](const auto& entry) { return entry.name == name; });
    return found == std::end(table) ? nullptr : found;
}

// Takes `--name value` and `--name=value`. What is wrong with an option, if something is.
std::optional<Notice> readOptions(const std::vector<std::string>& arguments, Options& options) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (const SwitchOption* option = findOption(switchOptions, argument)) {
            option->set(options);
            continue;
        }
        const std::size_t equals = argument.find('=');
        const ValueOption* option = findOption(valueOptions, argument.substr(0, equals));
        const bool hasValue = equals != std::string::npos || i + 1 < arguments.size();
        if (option == nullptr || !hasValue) {
            return Notice{NoticeKind::UnknownOption, {argument}};
        }
        const std::string value = equals == std::string::npos ? arguments[++i] : argument.substr(equals + 1);
        if (!option->set(options, value)) {
            return Notice{NoticeKind::BadValue, {std::string(option->name), value}};
        }
    }
    return std::nullopt;
}

std::optional<std::string> readFile(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(file), {});
}

bool writeFile(const std::string& name, const std::string& text) {
    std::ofstream file(name, std::ios::binary);
    file << text;
    file.close();
    return file.good();
}

Ending runSteps(Options& options) {
    const std::optional<std::string> text = readFile(options.textFile);
    if (!text) {
        return {CompileOriginal, {{NoticeKind::CannotRead, {options.textFile}}}};
    }
    options.input.text = *text;
    if (!options.mapFile.empty()) {
        options.input.map = readFile(options.mapFile).value_or(std::string{});
    }
    const std::optional<InstrumentedSource> result = instrument(options.input);
    if (!result) {
        return {options.strict ? LeftOut : CompileOriginal,
                {{NoticeKind::NotUnderstood, {options.input.sourceName}}}};
    }
    Ending ending{Done, result->left};
    ending.notices.insert(ending.notices.end(), result->remarks.begin(), result->remarks.end());
    if (options.verbose && !result->usedMap) {
        ending.notices.push_back({NoticeKind::MacrosNotMapped, {options.input.sourceName}});
    }
    if (options.strict && !result->left.empty()) {
        ending.status = LeftOut;
    } else if (result->description.empty()) {
        ending.status = CompileOriginal;
    } else if (!writeFile(options.outputFile, result->text)) {
        return {CompileOriginal, {{NoticeKind::CannotWrite, {options.outputFile}}}};
    } else if (!writeFile(options.descriptionFile, result->description)) {
        return {CompileOriginal, {{NoticeKind::CannotWrite, {options.descriptionFile}}}};
    }
    return ending;
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    if (const std::optional<Notice> fault = readOptions({argv + 1, argv + argc}, options)) {
        sayNotices({*fault}, false, argv[0]);
        return BadCall;
    }
    // Deeply nested sources need a deep stack, in Clang as here.
    constexpr unsigned stackSize = 1U << 30U;
    Ending ending;
    llvm::thread worker(std::optional<unsigned>(stackSize), [&] { ending = runSteps(options); });
    worker.join();
    sayNotices(ending.notices, options.strict, argv[0]);
    return ending.status;
}
