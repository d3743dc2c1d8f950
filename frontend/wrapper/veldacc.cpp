// `veldacc [options] [--] COMPILER ARGUMENTS...`: the compiler, and a description beside each object. A program that
// is started for every file of a build and most often only has to step aside: it is linked to nothing but the C library
// and looks at the command line before anything else.

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>
#include <vector>

#include <unistd.h>

#include "compilation.h"
#include "compiler_line.h"
#include "descriptions.h"
#include "interruption.h"
#include "launcher_form.h"
#include "messages.h"
#include "process.h"
#include "runtime_library.h"
#include "settings.h"
#include "steps.h"

namespace veldacc {

namespace {

namespace fs = std::filesystem;

bool isSwitchedOff() {
    const char* value = std::getenv("VELDACC");
    return value != nullptr && std::string_view(value) == "off";
}

// /dev/null, a pipe, "-" for standard output: nothing that could be run or described.
bool isNoFile(const std::string& output) {
    std::error_code error;
    return output == "-" || (fs::exists(output, error) && !fs::is_regular_file(output, error));
}

// Nothing to instrument; or what only the compiler itself can answer.
bool isForCompilerAlone(const CommandLine& line) {
    const std::size_t inputs = line.inputs().size();
    return line.question || inputs == 0 || line.cSources().empty() ||
           (line.output && isNoFile(*line.output)) ||
           (line.output && line.product != Product::Program && inputs > 1);
}

bool links(const CommandLine& line) {
    return line.product == Product::Program && !line.question && !line.inputs().empty() &&
           !line.relocatableLink;
}

// The call as it stands, with what a link needs of the run-time library.
[[noreturn]] void handOver(const CommandLine& line) {
    Words words = line.original;
    if (!links(line)) {
        become(words);
    }
    TemporaryDirectory temporary;
    const Words libraries = runtimeLibrary(line, temporary);
    if (line.choosesLanguage && !libraries.empty()) {
        words.insert(words.end(), {"-x", "none"});
    }
    words.insert(words.end(), libraries.begin(), libraries.end());
    if (fs::is_empty(temporary.path())) {
        fs::remove(temporary.path());
        become(words);
    }
    const Outcome outcome = run(words);
    fs::remove_all(temporary.path());
    endLike(outcome);
}

// Steps read what stands on standard input several times.
void saveStandardInput(const std::string& file) {
    static_cast<void>(run({"cat"}, {.standardOutput = file, .standardInput = ""}));
}

// One call with C sources. Each operation is a part of it.
class Call {
public:
    Call(const CommandLine& line, const Settings& settings)
        : line_(line), settings_(settings), machine_(foreignMachine(line)) {
        if (settings.keepTemporary) {
            temporary_.keep();
            say(Message::TemporaryKept, {temporary_.path()});
        }
        if (line.usesStandardInput) {
            standardInput_ = temporary_.file("stdin");
            saveStandardInput(standardInput_);
        }
    }

    Outcome go() {
        for (const Argument* source : line_.cSources()) {
            compileSource(*source);
        }
        if (line_.product != Product::Program) {
            compileRest();
            keepDescriptions();
        } else if (outcome_.succeeded()) {
            link();
        }
        return outcome_;
    }

private:
    struct Made {
        Described described;
        std::string description; // empty: the object is that of the original
    };

    void compileSource(const Argument& source) {
        const std::string part = temporary_.file(std::to_string(made_.size()));
        const std::string object = objectOf(source, part);
        const Compilation compilation = {.line = line_,
                                         .settings = settings_,
                                         .source = source,
                                         .object = object,
                                         .machine = machine_,
                                         .standardInput = standardInput_};
        const Compiled compiled = compile(compilation, part);
        if (!compiled.outcome.succeeded()) {
            outcome_ = compiled.outcome;
            return;
        }
        const bool linked = line_.product == Product::Program;
        if (needsDependenciesStep(line_)) {
            static_cast<void>(run(dependenciesCommand(line_, source)));
        }
        objects_.push_back(object);
        made_.push_back({.described = {.source = source.value,
                                       .object = linked ? programName() : object,
                                       .linked = linked},
                         .description = compiled.description});
    }

    // Where the compiler would put it.
    [[nodiscard]] std::string objectOf(const Argument& source, const std::string& part) const {
        if (line_.product == Product::Program) {
            return part + "/" + withoutSuffix(baseName(source.value)) + ".o";
        }
        const char* suffix = line_.product == Product::Assembly ? ".s" : ".o";
        return line_.output.value_or(withoutSuffix(baseName(source.value)) + suffix);
    }

    [[nodiscard]] std::string programName() const { return line_.output.value_or("a.out"); }

    void compileRest() {
        if (line_.inputs().size() > line_.cSources().size()) {
            note(run(restCommand(line_)));
        }
    }

    void link() {
        const Words libraries = line_.relocatableLink ? Words() : runtimeLibrary(line_, temporary_);
        note(run(linkCommand(line_, objects_, libraries)));
        if (outcome_.succeeded()) {
            keepDescriptions();
        }
    }

    void keepDescriptions() {
        for (const Made& made : made_) {
            if (made.description.empty()) {
                forgetDescription(made.described, settings_.descriptionDirectory);
                continue;
            }
            const Keeping keeping =
                keepDescription(made.description, made.described, settings_.descriptionDirectory);
            if (!keeping.done) {
                say(Message::CannotWriteDescription, {keeping.file});
            }
        }
    }

    void note(const Outcome& outcome) {
        if (!outcome.succeeded()) {
            outcome_ = outcome;
        }
    }

    const CommandLine& line_;
    const Settings& settings_;
    TemporaryDirectory temporary_;
    std::string machine_;
    std::string standardInput_ = "/dev/null";
    std::vector<Made> made_;
    Words objects_;
    Outcome outcome_;
};

Outcome answer(const Words& words) {
    const Invocation invocation = readInvocation(words);
    if (isSwitchedOff()) {
        become(invocation.command);
    }
    const CommandLine line = readCommandLine(invocation.command);
    if (isForCompilerAlone(line)) {
        handOver(line);
    }
    if (isLauncherForm(line)) {
        say(Message::LauncherRefused);
        return {.status = 1};
    }
    return Call(line, invocation.settings).go();
}

} // namespace

} // namespace veldacc

int main(int argumentCount, char** arguments) {
    using namespace veldacc;
    prepareForSignals();
    try {
        endLike(answer(Words(arguments + 1, arguments + argumentCount)));
    } catch (const Failure& failure) {
        endLike({.status = failure.status});
    } catch (const Interruption& interruption) {
        endLike({.status = 128 + interruption.signal, .signal = interruption.signal});
    }
}
