#include "view/command_line.h"

#include <algorithm>
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
            throw CLI::ValidationError(name, text + " is none of " + names);
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
        .add_option("--split", exports.split,
                    "Cobertura: write N files, FILE-1 to FILE-N, of about the same size")
        ->type_name("N")
        ->check(CLI::Range(1, 10000))
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

[[noreturn]] void refuse(const std::string& reason) {
    userError(fromLocal(reason));
    fatalError(translate("Fatal Error", "Errors in command line"));
}

// The parser would only say that a sub-command is missing.
void checkCommand(const CLI::App& program, const std::vector<std::string>& words) {
    const auto named = [&](const CLI::App* command) { return command->get_name() == words.front(); };
    const std::vector<const CLI::App*> commands = program.get_subcommands({});
    if (!words.empty() && !words.front().starts_with('-') &&
        std::none_of(commands.begin(), commands.end(), named)) {
        refuse(words.front() + " is no sub-command");
    }
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
    } catch (const CLI::ParseError& error) {
        refuse(error.what());
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
            std::string names;
            for (const std::string_view name : viewRateNames) {
                names.append(names.empty() ? "" : ", ").append(name);
            }
            userError(filled(translate("View", "%1 is no minimum: RATE=PERCENT, the rate one of %2",
                                       "%1 is a word of the command line, %2 a list of names"),
                             {text, names}));
            fatalError(translate("Fatal Error", "Errors in command line"));
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
    if (exports.format != ExportFormat::Lcov && (exports.perTest || exports.mcdc)) {
        refuse("--per-test and --mcdc are for --format lcov");
    }
    if (exports.split > 1 && (exports.format != ExportFormat::Cobertura || request.output == "-")) {
        refuse("--split is for --format cobertura with --output FILE");
    }
    if (request.command == ViewCommand::Html && request.output == "-") {
        refuse("html writes a folder, not standard output");
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
        refuse("files is required");
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
