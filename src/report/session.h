#pragma once

#include <cstdint>
#include <vector>

#include "description/model.h"
#include "report/auth.h"
#include "report/labels.h"
#include "report/options.h"
#include "report/tio.h"
#include "support/output.h"

namespace veldacov {

// The state of one report run, shared by the trace reader, the report, the cleaned trace and the CIO file. It
// borrows the options and the report's stream from the driver.
struct TraceSession {
    OutputFile* reportStream = nullptr;
    const CoverageOptions* options = nullptr;
    Language language = Language::English;
    Selection selection;
    TraceCursor trace;                       // file, line, test, date, part and count mode of the traces
    bool testOpen = false;                   // the current test is selected and its hits are recorded
    bool anyTestSelected = false;            // some test met so far was
    bool cleanPending = false;               // the cleaned trace has yet to be written
    bool testReported = false;               // a test report has been written
    OutputFile cleanStream;                  // opened with the first write
    std::vector<FileDescription*> keptParts; // with hits for the cleaned trace
    std::int32_t currentTestNumber = -1;
    std::int32_t currentServiceNumber = -1;
    std::uint16_t typesInUse = 0;      // governs the block being written
    std::uint16_t typesOfAllFiles = 0; // of every description loaded
    std::uint16_t reportedTypes = 0;   // of every description that a test report has covered
    CoverageCounters overallTotals{};
    CoverageCounters overallHits{};
    NameCountList seenTests;          // in order of first appearance
    bool someCounted = false;         // a CO line was met while recording
    bool someUncounted = false;       // a reported part was met without one
    bool unmatchedInfoPending = true; // nobody has been told yet of parts that match no description
};

// The types that the options ask for, else those given.
inline std::uint16_t typesOr(const CoverageOptions& options, std::uint16_t otherwise) {
    return options.coverageTypes != 0 ? options.coverageTypes : otherwise;
}

} // namespace veldacov
