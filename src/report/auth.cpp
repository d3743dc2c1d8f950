#include "report/auth.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "support/machine.h"

namespace veldacov {

namespace {

using NameSet = std::unordered_set<const NameEntry*>;

bool isSelected(const NameEntry* name, std::uint32_t selectedMark, std::uint32_t excludedMark,
                bool byDefault) {
    if (name != nullptr && (name->flags & selectedMark) != 0) {
        return true;
    }
    if (name != nullptr && (name->flags & excludedMark) != 0) {
        return false;
    }
    return byDefault;
}

// Warns about each name of a list that is not among the known ones.
template <typename Names>
void warnUnknown(const NameCountList& names, const Names& known, const QString& text) {
    for (const NameCountList::Node& node : names.nodes) {
        if (!known.contains(node.name)) {
            warningMessage(filled(text, {node.name->text}));
        }
    }
}

bool anyServiceSelected(const FileDescription& description, const CoverageOptions& options) {
    return std::any_of(description.services.begin(), description.services.end(),
                       [&](const Service& service) { return GetServiceAuth(service.name, options); });
}

bool typesFit(const CoverageOptions& options) {
    return options.coverageTypes == 0 ||
           std::any_of(loadedDescriptions().begin(), loadedDescriptions().end(),
                       [&](const auto& description) {
                           return (description->coverageTypes & options.coverageTypes) != 0;
                       });
}

} // namespace

bool GetFileAuth(const NameEntry* sourceName, const CoverageOptions& options) {
    return isSelected(sourceName, mark::file, mark::exFile,
                      (options.selectionMask & selection::allFiles) != 0);
}

bool GetServiceAuth(const NameEntry* service, const CoverageOptions& options) {
    if (service == nullptr) {
        internalError(translate("Internal Error", "Cannot get service name in GetServiceAuth()"));
    }
    return isSelected(service, mark::service, mark::exService,
                      (options.selectionMask & selection::allServices) != 0);
}

bool GetTestAuth(const NameEntry* test, const CoverageOptions& options) {
    return isSelected(test, mark::test, mark::exTest, (options.selectionMask & selection::allTests) != 0);
}

namespace {

// Warns about each name of the selection options that no description has.
void warnUnknownNames(const CoverageOptions& options) {
    // A program may have a hundred thousand services: their names are gathered only where some are asked for.
    const bool servicesNamed = !options.serviceList.nodes.empty() || !options.exServiceList.nodes.empty();
    NameSet files;
    NameSet services;
    for (const auto& description : loadedDescriptions()) {
        files.insert(description->sourceName);
        if (servicesNamed && GetFileAuth(description->sourceName, options)) {
            for (const Service& service : description->services) {
                services.insert(service.name);
            }
        }
    }
    warnUnknown(options.fileList, files,
                translate("User Warning", "File %1 in -FILE option is not in source file list",
                          "%1 is the name of the file"));
    warnUnknown(options.exFileList, files,
                translate("User Warning", "File %1 in -EXFILE option is not in source file list",
                          "%1 is the name of the file"));
    warnUnknown(options.serviceList, services,
                translate("User Warning",
                          "Service %1 in -SERVICE option is unknown in selected source file list",
                          "%1 is the name of the file"));
    warnUnknown(options.exServiceList, services,
                translate("User Warning",
                          "Service %1 in -EXSERVICE option is unknown in selected source file list",
                          "%1 is the name of the file"));
}

// Leaves out the files of which no service is selected; false when nothing is left.
bool keepFilesWithServices(const CoverageOptions& options) {
    bool anythingToReport = false;
    for (const auto& description : loadedDescriptions()) {
        if (!GetFileAuth(description->sourceName, options)) {
            continue;
        }
        if (anyServiceSelected(*description, options)) {
            anythingToReport = true;
        } else {
            description->sourceName->flags |= mark::exFile;
        }
    }
    return anythingToReport;
}

} // namespace

void checkSelection(const CoverageOptions& options) {
    warnUnknownNames(options);
    if (!keepFilesWithServices(options) || !typesFit(options)) {
        fatalError(translate("Fatal Error", "There is nothing to report ... report is empty"));
    }
}

Selection takeSelection(const CoverageOptions& options) {
    Selection selection;
    for (const auto& description : loadedDescriptions()) {
        if (!GetFileAuth(description->sourceName, options)) {
            continue;
        }
        SelectedFile file{description.get(), selection.services.size(), 0, {}};
        for (Service& service : description->services) {
            if (GetServiceAuth(service.name, options)) {
                service.selectedPlace = static_cast<std::int32_t>(selection.services.size());
                selection.services.push_back({selection.files.size(), &service});
                sumCounters(file.totals, service.counts);
            }
        }
        file.serviceCount = selection.services.size() - file.firstService;
        sumCounters(selection.totals, file.totals);
        selection.types |= description->coverageTypes;
        selection.files.push_back(file);
    }
    return selection;
}

void warnUnseenTests(const NameCountList& seenTests, const CoverageOptions& options) {
    warnUnknown(options.testList, seenTests.places,
                translate("User Warning", "Test %1 in -TEST option was unknown in trace file list",
                          "%1 is the name of the file"));
    warnUnknown(options.exTestList, seenTests.places,
                translate("User Warning", "Test %1 in -EXTEST option was unknown in trace file list",
                          "%1 is the name of the file"));
}

} // namespace veldacov
