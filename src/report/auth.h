#pragma once

// Selection: which files, services and tests the outputs show. A name's own mark decides, the positive one
// first; without a mark the default of its kind does.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "description/model.h"
#include "description/name_pool.h"
#include "report/options.h"

namespace veldacov {

// A file or test may have no name (null); the default decides then. A service without a name is an internal
// error. The three have the names that users know from messages, not the style of the other operations.
bool GetFileAuth(const NameEntry* sourceName, const CoverageOptions& options);
bool GetServiceAuth(const NameEntry* service, const CoverageOptions& options);
bool GetTestAuth(const NameEntry* test, const CoverageOptions& options);

// The files and services that the outputs of a run show, in loading order. A service knows its place here.
struct SelectedFile {
    FileDescription* description = nullptr;
    std::size_t firstService = 0; // its services stand together
    std::size_t serviceCount = 0;
    CoverageCounters totals{};
};
struct SelectedService {
    std::size_t file = 0; // place in `files`
    Service* service = nullptr;
};
struct Selection {
    std::vector<SelectedFile> files;
    std::vector<SelectedService> services;
    CoverageCounters totals{};
    std::uint16_t types = 0; // of the files

    [[nodiscard]] std::span<const SelectedService> servicesOf(const SelectedFile& file) const {
        return std::span(services).subspan(file.firstService, file.serviceCount);
    }
};
// What outputs show of a service: with -GLOBAL what any test has hit, else what the current one has.
inline const CoverageCounters& coveredOf(const Service& service, const CoverageOptions& options) {
    return options.global ? service.globalCovered : service.testCovered;
}

// Takes stock after checkSelection, which fixes what is selected for the rest of the run.
Selection takeSelection(const CoverageOptions& options);

// Warns about selected names that nothing has, drops the files of which no service is selected, and stops the
// run with a fatal error when nothing is left to report.
void checkSelection(const CoverageOptions& options);

// Warns about selected tests that the traces did not have.
void warnUnseenTests(const NameCountList& seenTests, const CoverageOptions& options);

} // namespace veldacov
