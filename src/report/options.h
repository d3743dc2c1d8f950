#pragma once

// What the command line asks for, as every output reads it. Names of selections are marked in the name pool, where a look
// at a name's entry decides; the lists beside them are kept for the warnings about names that nothing has.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "description/name_pool.h"

namespace veldacov {

// Level of detail of the report: -SUMMARY leaves out ever more.
enum class SummaryLevel : std::uint8_t { None = 0, Service = 1, File = 2, Conclusion = 3 };

// Bits of selectionMask: the verdict for names without a mark of their own.
namespace selection {
constexpr std::uint8_t allFiles = 0x01;
constexpr std::uint8_t allServices = 0x02;
constexpr std::uint8_t allTests = 0x04;
} // namespace selection

// Marks in the flags of a NameEntry.
namespace mark {
constexpr std::uint32_t file = 0x1000;
constexpr std::uint32_t exFile = 0x2000;
constexpr std::uint32_t service = 0x4000;
constexpr std::uint32_t exService = 0x8000;
constexpr std::uint32_t test = 0x10000;
constexpr std::uint32_t exTest = 0x20000;
} // namespace mark

// What the command line asks for.
struct CoverageOptions {
    std::vector<std::string> inputFiles;
    std::uint16_t coverageTypes = 0; // 0: those of each description
    std::optional<std::string> outputFile;
    bool global = true;
    std::optional<std::string> cleanFile;
    bool mergeTests = false;
    bool branchCoverage = false; // references hit instead of those not hit
    SummaryLevel summaryLevel = SummaryLevel::None;
    bool listingRequested = false;
    std::optional<std::string> listingDirectory;
    std::uint8_t selectionMask = selection::allFiles | selection::allServices | selection::allTests;
    NameCountList fileList;
    NameCountList exFileList;
    NameCountList serviceList;
    NameCountList exServiceList;
    NameCountList testList;
    NameCountList exTestList;
    std::optional<std::string> cioFile;
    std::optional<std::string> flowFile;
};

} // namespace veldacov
