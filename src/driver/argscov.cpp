#include "driver/argscov.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include <QtGlobal>

#include "description/model.h"
#include "driver/gcmdec.h"
#include "driver/grammar.h"
#include "support/files.h"
#include "support/input_names.h"
#include "support/machine.h"

namespace veldacov {

namespace {

// An option as the command line gives it.
class Given {
public:
    explicit Given(std::string_view name) : position_(findOption(name)) {}

    explicit operator bool() const { return position_ > 0; }

    // The first value, none without one or when the option is not given.
    [[nodiscard]] std::optional<std::string> value() const {
        const ValueNode* first = position_ > 0 ? optionValue(position_, 1) : nullptr;
        return first != nullptr ? std::optional(first->text) : std::nullopt;
    }

    [[nodiscard]] std::vector<std::string> values() const {
        std::vector<std::string> all;
        for (std::size_t n = 1; const ValueNode* value = optionValue(position_, n); ++n) {
            all.push_back(value->text);
        }
        return all;
    }

private:
    int position_;
};

// What a coverage-type option adds with one of its values (none: without value).
struct TypeChoice {
    std::string_view option;
    std::optional<std::string_view> value;
    std::uint16_t types;
};
constexpr std::uint16_t blockTypes = type::simpleBlocks | type::transferBlocks;
constexpr std::uint16_t decisionTypes = blockTypes | type::implicitBlocks;
constexpr std::uint16_t loopTypes = decisionTypes | type::logicalBlocks;
constexpr std::uint16_t modifiedTypes = type::basicConditions | type::modifiedConditions;
constexpr std::array<TypeChoice, 11> typeChoices = {{
    {"PROC", std::nullopt, type::procedures},
    {"PROC", "RET", type::procedures | type::exits},
    {"CALL", std::nullopt, type::calls},
    {"BLOCK", std::nullopt, blockTypes},
    {"BLOCK", "IMPLICIT", decisionTypes},
    {"BLOCK", "DECISION", decisionTypes},
    {"BLOCK", "LOGICAL", loopTypes},
    {"BLOCK", "ATC", loopTypes | type::atcBlocks},
    {"COND", std::nullopt, type::basicConditions},
    {"COND", "MODIFIED", modifiedTypes},
    {"COND", "COMPOUND", modifiedTypes | type::compoundConditions},
}};

std::uint16_t requestedTypes() {
    std::uint16_t types = 0;
    for (const TypeChoice& choice : typeChoices) {
        const Given option(choice.option);
        if (option && option.value() == choice.value) {
            types |= choice.types;
        }
    }
    return types;
}

SummaryLevel requestedLevel() {
    const Given summary("SUMMARY");
    if (!summary) {
        return SummaryLevel::None;
    }
    if (summary.value() == "CONCLUSION") {
        return SummaryLevel::Conclusion;
    }
    return summary.value() == "FILE" ? SummaryLevel::File : SummaryLevel::Service;
}

// One selection option: where its names go, and what is said about them.
struct SelectionOption {
    const char* option;
    NameCountList CoverageOptions::*list;
    std::uint32_t mark;
    std::uint8_t clearedDefault; // bit of the selection mask that the option clears
    bool (*applies)(const CoverageOptions&);
    const char* inconsistent;
    TranslatableText pathIgnored; // empty: names are no file names
    TranslatableText twice;
};

bool hasFiles(const CoverageOptions& options) {
    return options.summaryLevel != SummaryLevel::Conclusion;
}

bool hasServices(const CoverageOptions& options) {
    return options.summaryLevel < SummaryLevel::File;
}

bool hasTests(const CoverageOptions& options) {
    return !options.global;
}

// In the order of their warnings, all of the context "User Warning".
constexpr std::array<SelectionOption, 6> selections = {{
    {"FILE", &CoverageOptions::fileList, mark::file, selection::allFiles, hasFiles,
     QT_TRANSLATE_NOOP("User Warning",
                       "Use of -SUMMARY=CONCLUSION and -FILE is inconsistent, -FILE is ignored"),
     QT_TRANSLATE_NOOP3("User Warning", "File %1 with path in -FILE list; path ignored",
                        "%1 is the file with a path"),
     QT_TRANSLATE_NOOP3("User Warning", "The file %1 appears twice in -FILE list",
                        "%1 is the name of the file")},
    {"EXFILE", &CoverageOptions::exFileList, mark::exFile, 0, hasFiles,
     QT_TRANSLATE_NOOP("User Warning",
                       "Use of -SUMMARY=CONCLUSION and -EXFILE is inconsistent, -EXFILE is ignored"),
     QT_TRANSLATE_NOOP3("User Warning", "File %1 with path in -EXFILE list; path ignored",
                        "%1 is the file with a path"),
     QT_TRANSLATE_NOOP3("User Warning", "The file %1 appears twice in -EXFILE list",
                        "%1 is the name of the file")},
    {"SERVICE",
     &CoverageOptions::serviceList,
     mark::service,
     selection::allServices,
     hasServices,
     QT_TRANSLATE_NOOP("User Warning",
                       "Use of -SUMMARY=CONCLUSION|FILE and -SERVICE is inconsistent, -SERVICE is ignored"),
     {},
     QT_TRANSLATE_NOOP3("User Warning", "The service %1 appears twice in -SERVICE list",
                        "%1 is the name of the service")},
    {"EXSERVICE",
     &CoverageOptions::exServiceList,
     mark::exService,
     0,
     hasServices,
     QT_TRANSLATE_NOOP(
         "User Warning",
         "Use of -SUMMARY=CONCLUSION|FILE and -EXSERVICE is inconsistent, -EXSERVICE is ignored"),
     {},
     QT_TRANSLATE_NOOP3("User Warning", "The service %1 appears twice in -EXSERVICE list",
                        "%1 is the name of the service")},
    {"TEST",
     &CoverageOptions::testList,
     mark::test,
     selection::allTests,
     hasTests,
     QT_TRANSLATE_NOOP("User Warning", "Use of -GLOBAL and -TEST is inconsistent, -TEST is ignored"),
     {},
     QT_TRANSLATE_NOOP3("User Warning", "The test %1 appears twice in -TEST list",
                        "%1 is the name of the test")},
    {"EXTEST",
     &CoverageOptions::exTestList,
     mark::exTest,
     0,
     hasTests,
     QT_TRANSLATE_NOOP("User Warning", "Use of -GLOBAL and -EXTEST is inconsistent, -EXTEST is ignored"),
     {},
     QT_TRANSLATE_NOOP3("User Warning", "The test %1 appears twice in -EXTEST list",
                        "%1 is the name of the test")},
}};

// The name as it is shown, and as it is interned: files are known by their upper-case base names.
struct SelectedName {
    std::string shown;
    std::string interned;
};

SelectedName nameOf(const SelectionOption& selection, const std::string& value) {
    if (selection.pathIgnored.source == nullptr) {
        return {value, value};
    }
    const std::string base(baseName(value));
    if (base != value) {
        warningMessage(filled(translate("User Warning", selection.pathIgnored), {value}));
    }
    return {base, duplicateUpper(base)};
}

void select(const SelectionOption& selection, CoverageOptions& options) {
    const Given option(selection.option);
    if (!option) {
        return;
    }
    if (!selection.applies(options)) {
        warningMessage(translate("User Warning", selection.inconsistent));
        return;
    }
    options.selectionMask &= static_cast<std::uint8_t>(~selection.clearedDefault);
    for (const std::string& value : option.values()) {
        const SelectedName name = nameOf(selection, value);
        NameEntry* entry = internName(name.interned);
        if (entry == nullptr) {
            continue; // a path that ends in its separator names no file
        }
        entry->flags |= selection.mark;
        if (addNameCount(options.*selection.list, entry) > 1) {
            warningMessage(filled(translate("User Warning", selection.twice), {name.shown}));
        }
    }
}

} // namespace

bool analyseCommandLine(std::vector<std::string> words, CoverageOptions& options) {
    useGrammar(commandGrammar());
    if (expandArguments(words) != 0 || decodeCommandLine(words) != 0) {
        return false;
    }
    InputNames names;
    for (std::size_t n = 1; const ValueNode* file = positionalValue(1, n); ++n) {
        names.expand(file->text, options.inputFiles);
    }
    options.coverageTypes = requestedTypes();
    options.outputFile = Given("OUTPUT").value();
    options.summaryLevel = requestedLevel();
    options.global = static_cast<bool>(Given("GLOBAL"));
    options.cleanFile = Given("CLEAN").value();
    if (Given("MERGETESTS")) {
        options.mergeTests = options.cleanFile.has_value();
        if (!options.mergeTests) {
            warningMessage(translate("User Warning",
                                     "-MERGETESTS cannot be used without -CLEAN, -MERGETESTS is ignored"));
        }
    }
    if (const std::optional<std::string> branch = Given("BRANCH").value()) {
        if (options.summaryLevel == SummaryLevel::None) {
            options.branchCoverage = *branch == "COV";
        } else {
            warningMessage(
                translate("User Warning", "Use of -SUMMARY and -BRANCH is inconsistent, -BRANCH is ignored"));
        }
    }
    options.listingRequested = static_cast<bool>(Given("LISTING"));
    options.listingDirectory = Given("LISTING").value();
    for (const SelectionOption& selection : selections) {
        select(selection, options);
    }
    options.cioFile = Given("CIO").value();
    options.flowFile = Given("FLOW").value();
    return true;
}

} // namespace veldacov
