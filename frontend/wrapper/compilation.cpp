#include "compilation.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "installation.h"
#include "messages.h"
#include "steps.h"

namespace veldacc {

namespace {

// Statuses of the instrumenter; it has said why.
constexpr int badOption = 2;
constexpr int compileAsItIs = 3;
constexpr int refused = 4; // with --strict something was left out

// How often functions that the compiler refuses are left out before the source is given up.
constexpr int mostAttempts = 3;

constexpr const char* digits = "0123456789";

// A step that runs beside others. It is waited for at the latest when it is given up.
class Running {
public:
    Running(const Words& words, const Redirection& redirection) : process_(start(words, redirection)) {}
    ~Running() {
        if (process_ > 0) {
            stop(process_);
        }
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    Outcome wait() {
        const pid_t process = process_;
        process_ = 0;
        return waitFor(process);
    }

private:
    pid_t process_;
};

void copyTo(std::FILE* stream, const std::string& file) {
    const std::string text = readFile(file).value_or("");
    static_cast<void>(std::fwrite(text.data(), 1, text.size(), stream));
    static_cast<void>(std::fflush(stream));
}

void show(const Settings& settings, const Words& words) {
    if (settings.verbose) {
        std::string text = "+";
        for (const std::string& word : words) {
            text += ' ' + word;
        }
        static_cast<void>(std::fprintf(stderr, "%s\n", text.c_str()));
    }
}

// The FILE:LINE of each message that a compiler has written: "x.c:12:3: error: ...".
Words placesOfErrors(const std::string& text) {
    Words places;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t space = line.find(": ");
        const std::size_t column =
            space == std::string::npos || space == 0 ? space : line.rfind(':', space - 1);
        if (column == std::string::npos || column == 0 ||
            line.find_first_not_of(digits, column + 1) != space) {
            continue;
        }
        const std::size_t number = line.rfind(':', column - 1);
        if (number != std::string::npos && line.find_first_not_of(digits, number + 1) == column) {
            places.push_back(line.substr(0, column));
        }
    }
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
}

// One compilation on its way. Each operation is a step of it.
class Way {
public:
    Way(const Compilation& compilation, std::string directory)
        : compilation_(compilation), line_(compilation.line), directory_(std::move(directory)) {
        // The compiler writes the name of its input into the object: it gets the right one, in a directory of its own.
        std::filesystem::create_directories(file("in"));
        instrumented_ =
            file("in/" + (line_.usesStandardInput ? "stdin.c" : baseName(compilation.source.value)));
    }

    Compiled go() {
        Running checking(check(), inside(checked_, checked_));
        const bool preprocessed = preprocess();
        const Outcome instrumentation = preprocessed ? instrument() : Outcome{.status = compileAsItIs};
        if (!checking.wait().succeeded()) {
            return afterFailedCheck(preprocessed, instrumentation);
        }
        copyTo(stderr, checked_);
        return afterCheck(instrumentation);
    }

private:
    [[nodiscard]] std::string file(const std::string& name) const { return directory_ + '/' + name; }

    // What the check says is shown later, as it would have come out directly.
    [[nodiscard]] Words check() const {
        Words words = checkCommand(line_, compilation_.source, file("check.s"));
        const char* terminal = std::getenv("TERM");
        if (isatty(STDERR_FILENO) != 0 && terminal != nullptr && std::string_view(terminal) != "dumb" &&
            !line_.choosesColour) {
            words.emplace_back("-fdiagnostics-color=always");
        }
        return shown(words);
    }

    bool preprocess() {
        Running text(shown(textCommand(line_, compilation_.source, compilation_.object, text_)),
                     redirected(noise_, said_));
        hasMap_ = isClang(line_) ? mapByClang() : map();
        const bool done = text.wait().succeeded();
        if (wordy()) {
            copyTo(stderr, said_);
        }
        return done;
    }

    [[nodiscard]] bool map() const {
        return run(shown(mapCommand(line_, compilation_.source, map_)), quiet()).succeeded();
    }

    // Clang settles no conditionals without expanding macros: the map begins with the macros that the compiler and
    // the command line define.
    [[nodiscard]] bool mapByClang() const {
        const std::string macros = file("macros");
        const std::string rewritten = file("rewritten");
        return run(shown(macrosCommand(line_, macros)), quiet()).succeeded() &&
               run(shown(rewriteCommand(line_, compilation_.source, rewritten)), quiet()).succeeded() &&
               writeFile(map_, readFile(macros).value_or("") + readFile(rewritten).value_or(""));
    }

    Outcome instrument() {
        Words words = {ownFile("veldacc-instrument"), "--source", compilation_.source.value, "--text", text_};
        const auto add = [&words](std::initializer_list<std::string> more) {
            words.insert(words.end(), more);
        };
        if (hasMap_) {
            add({"--map", map_});
        }
        add({"--output", instrumented_, "--description", description_});
        if (!compilation_.settings.root.empty()) {
            add({"--root", compilation_.settings.root});
        }
        if (compilation_.settings.strict) {
            add({"--strict"});
        }
        if (!compilation_.machine.empty()) {
            add({"--target", compilation_.machine});
        }
        if (compilation_.settings.verbose) {
            add({"--verbose"});
        }
        for (const std::string& place : refused_) {
            add({"--leave", place});
        }
        const Words& own = compilation_.settings.forInstrumenter;
        words.insert(words.end(), own.begin(), own.end());
        for (const std::string& word : dialectOf(line_)) {
            if (word.starts_with("-std=")) {
                add({"--std", word.substr(word.find('=') + 1)});
            } else {
                add({"--compiler-option", word});
            }
        }
        return run(shown(words), {.standardOutput = remarks_, .standardError = remarks_},
                   compilation_.settings.timeLimit);
    }

    static bool hasSaidWhy(const Outcome& instrumentation) {
        return instrumentation.status == badOption || instrumentation.status == compileAsItIs ||
               instrumentation.status == refused;
    }

    // What there is to say about instrumenting; of a source with errors, nothing.
    void tellAbout(const Outcome& instrumentation) const {
        copyTo(stderr, remarks_);
        if (instrumentation.late) {
            warn(Message::InstrumenterTooSlow, {std::to_string(compilation_.settings.timeLimit)});
        } else if (!instrumentation.succeeded() && !hasSaidWhy(instrumentation)) {
            warn(Message::InstrumenterCrashed, {std::to_string(instrumentation.status)});
        }
    }

    // The original has errors, or only the check has some that come from not optimising: the compiler itself decides.
    Compiled afterFailedCheck(bool preprocessed, const Outcome& instrumentation) {
        const Outcome outcome =
            run(shown(originalCommand(line_, compilation_.source, compilation_.object)), redirected("", ""));
        if (!outcome.succeeded() || !preprocessed) {
            return {.outcome = outcome};
        }
        return afterCheck(instrumentation);
    }

    Compiled afterCheck(Outcome instrumentation) {
        const bool compiled = compileInstrumented(instrumentation);
        tellAbout(instrumentation);
        if (compiled) {
            std::error_code error;
            const bool described = std::filesystem::exists(description_, error);
            return {.instrumented = true, .description = described ? description_ : ""};
        }
        if (instrumentation.status == badOption) {
            return {.outcome = instrumentation};
        }
        if (compilation_.settings.strict && instrumentation.status != compileAsItIs) {
            std::error_code ignored;
            std::filesystem::remove(compilation_.object,
                                    ignored); // no object of an earlier compilation stays
            if (instrumentation.succeeded()) {
                warn(Message::InstrumentedDoesNotCompile, {});
            }
            return {.outcome = {.status = 1}};
        }
        const Outcome outcome = compileOriginal();
        if (instrumentation.succeeded() && outcome.succeeded()) { // else it is not the instrumenting
            warn(Message::InstrumentedDoesNotCompile, {});
        }
        return {.outcome = outcome};
    }

    // As far as the source is instrumented. What the compiler refuses costs the function that it is in: it is left as it
    // is in another attempt.
    bool compileInstrumented(Outcome& instrumentation) {
        for (int attempt = 0; instrumentation.succeeded() && attempt < mostAttempts; ++attempt) {
            const bool compiled =
                run(shown(compileCommand(line_, instrumented_, compilation_.object)), inside(noise_, said_))
                    .succeeded();
            if (wordy()) {
                copyTo(stderr, said_);
            }
            if (compiled) {
                return true;
            }
            const Words places = placesOfErrors(readFile(said_).value_or(""));
            refused_.insert(refused_.end(), places.begin(), places.end());
            if (places.empty()) {
                return false;
            }
            instrumentation = instrument();
        }
        return false;
    }

    // The check has said what is to be said.
    Outcome compileOriginal() {
        const std::string log = file("original.log");
        const Outcome outcome =
            run(shown(originalCommand(line_, compilation_.source, compilation_.object)), inside(log, log));
        if (!outcome.succeeded()) {
            copyTo(stderr, log);
        }
        return outcome;
    }

    void warn(Message message, std::vector<std::string> values) const {
        values.insert(values.begin(), compilation_.source.value);
        (compilation_.settings.strict ? sayAsError : say)(message, values);
    }

    // The user wants to see what the compiler does.
    [[nodiscard]] bool wordy() const {
        for (const Argument& argument : line_.arguments) {
            if (argument.role == Role::Verbose) {
                return true;
            }
        }
        return compilation_.settings.verbose;
    }

    [[nodiscard]] Words shown(Words words) const {
        show(compilation_.settings, words);
        return words;
    }

    [[nodiscard]] Redirection redirected(const std::string& output, const std::string& error) const {
        return {
            .standardOutput = output, .standardError = error, .standardInput = compilation_.standardInput};
    }

    // Of a step that the user does not know of.
    [[nodiscard]] Redirection inside(const std::string& output, const std::string& error) const {
        Redirection redirection = redirected(output, error);
        redirection.ownDependencies = false;
        return redirection;
    }

    [[nodiscard]] Redirection quiet() const { return inside(noise_, noise_); }

    const Compilation& compilation_;
    const CommandLine& line_;
    std::string directory_;
    std::string text_ = file("text.i");
    std::string map_ = file("map.c");
    std::string description_ = file("fdc");
    std::string checked_ = file("checked");
    std::string said_ = file("said");
    std::string remarks_ = file("remarks");
    std::string noise_ = file("noise");
    std::string instrumented_;
    Words refused_; // FILE:LINE of instrumented code
    bool hasMap_ = false;
};

} // namespace

Compiled compile(const Compilation& compilation, const std::string& directory) {
    return Way(compilation, directory).go();
}

} // namespace veldacc
