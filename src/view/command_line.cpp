#include "view/command_line.h"

#include <algorithm>
#include <charconv>
#include <map>

#include <CLI/CLI.hpp>

#include "support/input_names.h"
#include "support/machine.h"
#include "support/output.h"
#include "support/response_words.h"

namespace veldacov {

namespace {

// What the parser fills, before it is looked at.
struct ParsedWords {
    std::vector<std::string> files;
    std::map<std::vector<Pattern>*, std::vector<std::string>> patterns;
    std::vector<std::string> minima;
    bool asksVersion = false;
};

[[noreturn]] void refuse(const QString& reason) {
    userError(reason);
    fatalError(translate("Fatal Error", "Errors in command line"));
}

[[noreturn]] void refuseValue(std::string_view value, std::string_view option, std::string_view possible) {
    refuse(filled(translate("View", "%1 is no value of %2, possible: %3",
                            "%1 is a word of the command line, %2 an option, %3 a list"),
                  {value, option, possible}));
}

// A word in brackets is a list to the parser, but a name with a wildcard here; a value of an option is safe.
std::string withoutList(const std::string& word, const std::string& before) {
    const bool looksLikeList = word.starts_with('[') && word.ends_with(']') && !before.starts_with('-');
    return looksLikeList ? "./" + word : word;
}

// The words behind the program's name, without those from "--" on.
std::vector<std::string> expandedWords(const std::vector<std::string>& words) {
    std::vector<std::string> expanded;
    for (std::size_t place = 1; place < words.size() && words[place] != "--"; ++place) {
        const std::string& word = words[place];
        if (word.starts_with("--") && word.find('=') == word.size() - 1) {
            expanded.insert(expanded.end(), {word.substr(0, word.size() - 1), ""});
            continue; // the parser would take the next word as the value
        }
        if (!word.starts_with('@')) {
            expanded.push_back(withoutList(word, words[place - 1]));
            continue;
        }
        const std::string fileName = word.substr(1);
        const std::optional<std::vector<std::string>> read = responseWords(fileName);
        if (!read) {
            fatalError(
                filled(translate("View", "Cannot open response file %1", "%1 is a file name"), {fileName}));
        }
        expanded.insert(expanded.end(), read->begin(), read->end());
    }
    return expanded;
}

// An option that may be repeated, with one value each time.
CLI::Option* addRepeated(CLI::App& command, const std::string& name, std::vector<std::string>& values,
                         const std::string& description) {
    return command.add_option(name, values, description)->allow_extra_args(false);
}

void addPatterns(CLI::App& command, ParsedWords& parsed, const std::string& what, NamePatterns& patterns) {
    const std::string matched = what == "file" ? "files whose directory/name matches" : what + "s that match";
    addRepeated(command, "--" + what, parsed.patterns[&patterns.wanted], "Only " + matched)
        ->type_name("PATTERN")
        ->group("Selection");
    addRepeated(command, "--exclude-" + what, parsed.patterns[&patterns.excluded], "No " + matched)
        ->type_name("PATTERN")
        ->group("Selection");
}

CLI::App& addCommand(CLI::App& program, const std::string& name, const std::string& description,
                     ParsedWords& parsed, ViewRequest& request) {
    CLI::App& command = *program.add_subcommand(name, description);
    command.set_help_flag("--help,-h", "Show this text");
    command.add_option("files", parsed.files, "Descriptions and traces")->type_name("FILES");
    command.add_option("--root", request.campaign.root, "Show the paths of sources relative to DIR")
        ->type_name("DIR");
    Patterns& patterns = request.campaign.patterns;
    addPatterns(command, parsed, "file", patterns.files);
    addPatterns(command, parsed, "service", patterns.services);
    addPatterns(command, parsed, "test", patterns.tests);
    return command;
}

void addOutput(CLI::App& command, ViewRequest& request) {
    command.add_option("-o,--output", request.output, "File to write, - for standard output")
        ->type_name("FILE")
        ->default_str("-");
}

template <typename Choice>
CLI::Option* addChoice(CLI::App& command, const std::string& name, Choice& choice,
                       const std::map<std::string, Choice>& choices, const std::string& description) {
    std::string names;
    for (const auto& [text, value] : choices) {
        names.append(names.empty() ? "" : "|").append(text);
    }
    const auto take = [&choice, choices, name, names](const std::string& text) {
        const auto chosen = choices.find(text);
        if (chosen == choices.end()) {
            refuseValue(text, name, names);
        }
        choice = chosen->second;
    };
    return command.add_option_function<std::string>(name, take, description)->type_name(names);
}

void addCheck(CLI::App& program, ParsedWords& parsed, ViewRequest& request) {
    CLI::App& command = addCommand(
        program, "check", "Show the rates, and fail where one is below its minimum", parsed, request);
    addOutput(command, request);
    CheckOptions& check = request.check;
    addRepeated(command, "--min", parsed.minima, "A rate that must be reached, as decisions=80")
        ->type_name("RATE=PERCENT");
    addChoice<CheckLevel>(
        command, "--per", check.level,
        {{"total", CheckLevel::Total}, {"file", CheckLevel::File}, {"service", CheckLevel::Service}},
        "What must reach it: all together, each file or each service");
    command.add_flag("--strict", check.strict,
                     "Fail when inputs could not be read, parts were not described or a warning was given");
    command.add_flag("--allow-na", check.allowNotApplicable,
                     "A rate that nothing was described for is no failure");
    command.add_flag("--allow-stale", check.allowStale, "Traces of another build are no failure");
    command.add_option("--markdown", request.markdown, "Write the verdict as a comment for a merge request")
        ->type_name("FILE");
}

std::uint32_t numberOfFiles(const std::string& text) {
    constexpr std::uint32_t most = 10000;
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number == 0 || number > most) {
        refuseValue(text, "--split", "1-" + std::to_string(most));
    }
    return number;
}

void addExport(CLI::App& program, ParsedWords& parsed, ViewRequest& request) {
    CLI::App& command = addCommand(program, "export", "Write what other programs read", parsed, request);
    addOutput(command, request);
    ExportOptions& exports = request.exports;
    addChoice<ExportFormat>(
        command, "--format", exports.format,
        {{"json", ExportFormat::Json}, {"lcov", ExportFormat::Lcov}, {"cobertura", ExportFormat::Cobertura}},
        "What to write: JSON with all there is, LCOV tracefile, Cobertura XML")
        ->required();
    command.add_flag("--per-test", exports.perTest, "LCOV: a record for each test and source")
        ->group("Formats");
    command.add_flag("--mcdc", exports.mcdc, "LCOV: modified conditions too, for LCOV 2.2 and later")
        ->group("Formats");
    command
        .add_option_function<std::string>(
            "--split", [&exports](const std::string& text) { exports.split = numberOfFiles(text); },
            "Cobertura: write N files, FILE-1 to FILE-N, of about the same size")
        ->type_name("N")
        ->group("Formats");
}

void addTests(CLI::App& program, ParsedWords& parsed, ViewRequest& request) {
    CLI::App& command = addCommand(
        program, "tests", "Order the tests by what each adds, and tell the redundant ones", parsed, request);
    addOutput(command, request);
    addChoice<TestsFormat>(command, "--format", request.testsFormat,
                           {{"text", TestsFormat::Text}, {"json", TestsFormat::Json}}, "Form of the list");
}

void addHtml(CLI::App& program, ParsedWords& parsed, ViewRequest& request) {
    addCommand(program, "html", "Write pages for a browser", parsed, request)
        .add_option("-o,--output", request.output, "Folder to write, in place of the pages of an earlier run")
        ->type_name("DIR")
        ->required();
}

[[noreturn]] void answer(const std::string& text) {
    OutputFile out = standardOutput();
    out.put(text);
    out.finish();
    endProgram(ExitStatus::Normal);
}

std::string joined(const std::vector<std::string>& words, std::string_view separator) {
    std::string text;
    for (const std::string& word : words) {
        text.append(text.empty() ? "" : separator).append(word);
    }
    return text;
}

std::vector<std::string> commandNames(const CLI::App& program) {
    std::vector<std::string> names;
    for (const CLI::App* command : program.get_subcommands({})) {
        names.push_back(command->get_name());
    }
    return names;
}

[[noreturn]] void refuseWithoutCommand(const CLI::App& program) {
    refuse(filled(translate("View", "A sub-command is missing: %1", "%1 is a list of names"),
                  {joined(commandNames(program), ", ")}));
}

// The parser would only say that a sub-command is missing.
void checkCommand(const CLI::App& program, const std::vector<std::string>& words) {
    const std::vector<std::string> names = commandNames(program);
    if (!words.empty() && !words.front().starts_with('-') &&
        std::find(names.begin(), names.end(), words.front()) == names.end()) {
        refuse(filled(translate("View", "%1 is no sub-command", "%1 is a word of the command line"),
                      {words.front()}));
    }
}

[[noreturn]] void refuseAsMissing(std::string_view what) {
    refuse(
        filled(translate("View", "%1 is missing", "%1 is an option, or what stands for file names"), {what}));
}

[[noreturn]] void refuseWords(std::string_view words) {
    refuse(filled(translate("View", "Not expected in the command line: %1", "%1 are words of it"), {words}));
}

// The parser says in English what is wrong. Many of its texts have an option at one end.
std::string upToColonOrBlank(const std::string& text) {
    return text.substr(0, text.find_first_of(": "));
}
std::string behindColon(const std::string& text) {
    return text.substr(std::min(text.find(": ") + 2, text.size()));
}

void parse(CLI::App& program, std::vector<std::string> words) {
    checkCommand(program, words);
    std::reverse(words.begin(), words.end()); // as the parser wants them
    try {
        program.parse(std::move(words));
    } catch (const CLI::CallForHelp&) {
        const std::vector<CLI::App*> commands = program.get_subcommands();
        answer(commands.empty() ? program.help() : commands.front()->help("veldaview"));
    } catch (const CLI::CallForVersion& version) {
        answer(std::string(version.what()) + "\n");
    } catch (const CLI::ExtrasError&) {
        refuseWords(joined(program.remaining(true), " "));
    } catch (const CLI::ConversionError& error) {
        refuseWords(behindColon(error.what()));
    } catch (const CLI::ArgumentMismatch& error) {
        refuse(filled(translate("View", "%1 takes one value", "%1 is an option"),
                      {upToColonOrBlank(error.what())}));
    } catch (const CLI::RequiredError& error) {
        if (program.get_subcommands().empty()) {
            refuseWithoutCommand(program);
        }
        refuseAsMissing(upToColonOrBlank(error.what()));
    } catch (const CLI::ParseError& error) { // nothing that this command line can have
        refuse(fromLocal(error.what()));
    }
}

void takePatterns(ParsedWords& parsed) {
    for (auto& [patterns, texts] : parsed.patterns) {
        for (std::string& text : texts) {
            patterns->push_back({std::move(text)});
        }
    }
}

void takeMinima(const ParsedWords& parsed, CheckOptions& check) {
    for (const std::string& text : parsed.minima) {
        const std::optional<Minimum> minimum = readMinimum(text);
        if (!minimum) {
            refuse(filled(translate("View", "%1 is no minimum: RATE=PERCENT, the rate one of %2",
                                    "%1 is a word of the command line, %2 a list of names"),
                          {text, joined({viewRateNames.begin(), viewRateNames.end()}, ", ")}));
        }
        check.minima.push_back(*minimum);
    }
}

ViewCommand commandOf(const CLI::App& program) {
    if (program.got_subcommand("export")) {
        return ViewCommand::Export;
    }
    if (program.got_subcommand("html")) {
        return ViewCommand::Html;
    }
    return program.got_subcommand("check") ? ViewCommand::Check : ViewCommand::Tests;
}

// Options of one format with another would say less than was asked for.
void refuseOtherFormats(const ViewRequest& request) {
    const ExportOptions& exports = request.exports;
    const bool isLcov = exports.format == ExportFormat::Lcov;
    const bool canSplit = exports.format == ExportFormat::Cobertura && request.output != "-";
    const auto allow = [](bool allowed, std::string_view option, std::string_view with) {
        if (!allowed) {
            refuse(filled(translate("View", "%1 is for %2 only", "%1 and %2 are options"), {option, with}));
        }
    };
    allow(isLcov || !exports.perTest, "--per-test", "--format lcov");
    allow(isLcov || !exports.mcdc, "--mcdc", "--format lcov");
    allow(canSplit || exports.split == 1, "--split", "--format cobertura --output FILE");
    if (request.command == ViewCommand::Html && request.output == "-") {
        refuse(filled(translate("View", "%1 is no folder", "%1 is the name of a file"), {request.output}));
    }
}

} // namespace

ViewRequest readViewCommandLine(const std::vector<std::string>& words) {
    ViewRequest request;
    ParsedWords parsed;
    CLI::App program("Verdicts, exports and pages of coverage: descriptions and traces in, one thing out.",
                     "veldaview");
    program.set_help_flag("--help,-h", "Show this text");
    program.set_version_flag("--version", "veldaview " + std::string(toolVersion), "Show the version");
    program.require_subcommand(1);
    addCheck(program, parsed, request);
    addExport(program, parsed, request);
    addTests(program, parsed, request);
    addHtml(program, parsed, request);
    parse(program, expandedWords(words));
    const auto names = std::find(words.begin(), words.end(), "--"); // the parser would look for options here
    parsed.files.insert(parsed.files.end(), names == words.end() ? names : names + 1, words.end());
    if (parsed.files.empty()) {
        refuseAsMissing("FILES");
    }
    request.command = commandOf(program);
    refuseOtherFormats(request);
    takePatterns(parsed);
    takeMinima(parsed, request.check);
    InputNames inputNames;
    for (const std::string& file : parsed.files) {
        inputNames.expand(file, request.campaign.inputs);
    }
    return request;
}

} // namespace veldacov
