#include "runtime_library.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string_view>
#include <system_error>

#include "installation.h"
#include "messages.h"

namespace veldacc {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view libraryName = "libveldacc-runtime.a";

// Compilers of this machine under the names that distributions give them; a version may follow.
constexpr std::array<std::string_view, 9> plainNames = {"gcc", "cc",  "clang",   "c99", "c89",
                                                        "g++", "c++", "clang++", "c17"};
constexpr std::array<std::string_view, 5> plainPlaces = {"", "/usr/bin", "/bin", "/usr/local/bin",
                                                         "/usr/lib/ccache"};

template <typename Names>
bool contains(const Names& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool isPlain(const std::string& compiler) {
    const std::string place = fs::path(compiler).parent_path();
    std::string name = baseName(compiler);
    if (const std::string_view own = VELDACC_MACHINE "-"; own.size() > 1 && name.starts_with(own)) {
        name.erase(0, own.size());
    }
    name.erase(std::min(name.find_last_not_of("0123456789.-") + 1, name.size()));
    return contains(plainNames, name) && (contains(plainPlaces, place) || place.starts_with("/usr/lib/llvm"));
}

bool hasWord(const CommandLine& line, std::string_view word) {
    return std::any_of(line.arguments.begin(), line.arguments.end(),
                       [&](const Argument& argument) { return argument.words.front() == word; });
}

// Options that decide which code the compiler makes, or where it finds what belongs to that machine.
Words machineOptions(const CommandLine& line) {
    constexpr std::array<std::string_view, 10> beginnings = {
        "-m", "-target", "--target=", "--sysroot", "-isysroot",
        "-B", "-specs",  "--specs",   "-arch",     "--gcc-toolchain"};
    Words words;
    for (const Argument& argument : line.arguments) {
        if ((argument.role == Role::Dialect || argument.role == Role::General) &&
            std::any_of(beginnings.begin(), beginnings.end(),
                        [&](std::string_view name) { return argument.words.front().starts_with(name); })) {
            words.insert(words.end(), argument.words.begin(), argument.words.end());
        }
    }
    return words;
}

Words withOptions(const CommandLine& line, std::initializer_list<std::string> more) {
    Words words = {line.compiler};
    const Words options = machineOptions(line);
    words.insert(words.end(), options.begin(), options.end());
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

fs::path findInPath(const std::string& program) {
    if (program.find('/') != std::string::npos) {
        return program;
    }
    const char* path = std::getenv("PATH");
    std::string_view rest = path != nullptr ? path : "";
    while (!rest.empty()) {
        const std::size_t colon = std::min(rest.find(':'), rest.size());
        fs::path candidate = fs::path(rest.substr(0, colon)) / program;
        if (access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
        rest.remove_prefix(std::min(colon + 1, rest.size()));
    }
    return program;
}

std::string timeOf(const fs::path& path) {
    std::error_code error;
    const auto time = fs::last_write_time(path, error);
    return error ? "" : std::to_string(time.time_since_epoch().count());
}

// A name for the library that this compiler makes with these options from these sources.
std::string cacheName(const CommandLine& line) {
    const fs::path compiler = findInPath(line.compiler);
    const std::string key = compiler.string() + timeOf(compiler) + joinWords(machineOptions(line)) +
                            ownFile("src") + timeOf(ownFile("src/velda_runtime.h")) +
                            timeOf(ownFile("src/registry.c"));
    return "runtime-" + std::to_string(std::hash<std::string>()(key)) + ".a";
}

fs::path cacheDirectory() {
    const char* cache = std::getenv("XDG_CACHE_HOME");
    if (cache != nullptr && *cache == '/') {
        return fs::path(cache) / "veldacc";
    }
    const char* home = std::getenv("HOME");
    return home != nullptr && *home == '/' ? fs::path(home) / ".cache/veldacc" : fs::path();
}

Words runtimeSources() {
    Words sources;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(ownFile("src"), error)) {
        if (entry.path().extension() == ".c") {
            sources.push_back(entry.path());
        }
    }
    std::sort(sources.begin(), sources.end());
    return sources;
}

// Compiles and archives into the temporary directory; the archive's name, empty when something failed.
std::string buildLibrary(const CommandLine& line, const TemporaryDirectory& temporary) {
    const std::string log = temporary.file("runtime.log");
    const Redirection quiet = {.standardOutput = log, .standardError = log};
    const std::string archive = temporary.file(std::string(libraryName));
    std::string archiver = answerOf(withOptions(line, {"-print-prog-name=ar"}));
    Words archiving = {archiver.empty() ? "ar" : archiver, "rcs", archive};
    for (const std::string& source : runtimeSources()) {
        const std::string object = temporary.file(baseName(withoutSuffix(source)) + ".runtime.o");
        if (!run(withOptions(line, {"-std=c99", "-O2", "-fPIC", "-fvisibility=hidden", "-w", "-c", source,
                                    "-o", object}),
                 quiet)
                 .succeeded()) {
            say(Message::CannotBuildRuntime, {line.compiler, readFile(log).value_or("")});
            return {};
        }
        archiving.push_back(object);
    }
    return run(archiving, quiet).succeeded() ? archive : std::string();
}

// Puts the archive where the next link finds it; others may do the same at the same time.
std::string keepLibrary(const std::string& archive, const fs::path& kept) {
    std::error_code error;
    fs::create_directories(kept.parent_path(), error);
    const fs::path fresh = kept.string() + '.' + std::to_string(getpid());
    fs::copy_file(archive, fresh, error);
    if (!error) {
        fs::rename(fresh, kept, error);
    }
    return error ? archive : kept.string();
}

std::string foreignLibrary(const CommandLine& line, const TemporaryDirectory& temporary) {
    const fs::path directory = cacheDirectory();
    const fs::path kept = directory / cacheName(line);
    std::error_code error;
    if (!directory.empty() && fs::exists(kept, error)) {
        return kept;
    }
    const std::string archive = buildLibrary(line, temporary);
    return archive.empty() || directory.empty() ? archive : keepLibrary(archive, kept);
}

std::string nativeLibrary() {
    std::string library = ownFile(std::string(libraryName));
    std::error_code error;
    if (!fs::exists(library, error)) {
        say(Message::NoRuntime, {library});
        return {};
    }
    return library;
}

} // namespace

std::string foreignMachine(const CommandLine& line) {
    if (isPlain(line.compiler) && !line.explicitMachine) {
        return {};
    }
    std::string machine = answerOf(withOptions(line, {"-dumpmachine"}));
    // Of the widths of one machine gcc does not tell.
    constexpr std::string_view wide = "x86_64";
    if (hasWord(line, "-m32") && machine.starts_with(wide)) {
        machine.replace(0, wide.size(), "i686");
    } else if (hasWord(line, "-mx32") && machine.starts_with(wide)) {
        machine += "x32";
    }
    return machine;
}

Words runtimeLibrary(const CommandLine& line, const TemporaryDirectory& temporary) {
    const bool foreign = !isPlain(line.compiler) || line.explicitMachine;
    const std::string library = foreign ? foreignLibrary(line, temporary) : nativeLibrary();
    if (library.empty()) {
        return {};
    }
    Words words = {library};
    // Who names the C library instead of the compiler has named it in front of what now needs it.
    if ((hasWord(line, "-nostdlib") || hasWord(line, "-nodefaultlibs")) && hasWord(line, "-lc")) {
        words.emplace_back("-lc");
    }
    return words;
}

} // namespace veldacc
