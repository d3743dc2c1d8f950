#pragma once

// What the modules of a report run share: who writes each value, and so who may rely on it, stands beside it.

#include <cstdint>

#include "description/model.h"
#include "report/auth.h"
#include "report/cio.h"
#include "report/cleaned_trace.h"
#include "report/labels.h"
#include "report/options.h"
#include "report/trace_walk.h"
#include "support/output.h"

namespace veldacov {

// The state of one report run. Each field has one writer, named with it; everything is released with the session.
struct TraceSession {
    // Set once, at the start of the run. Options and stream are borrowed from the driver.
    OutputFile* reportStream = nullptr;
    const CoverageOptions* options = nullptr;
    Language language = Language::English;
    Selection selection;               // after checkSelection
    std::uint16_t typesOfAllFiles = 0; // of every description loaded

    TraceWalk walk;       // by itself (see there)
    CleanedTrace cleaned; // by the run's answers to the walk; hits are kept by the walk
    CioFile cio;          // by the CIO writer

    // By the run's answers to the walk.
    NameCountList seenTests;          // in order of first appearance
    bool anyTestSelected = false;     // some test met so far was
    bool unmatchedInfoPending = true; // nobody has been told yet of parts that match no description
    bool testCountsDue =
        false; // the counts of a test that has ended are to be reset when the next one begins

    // By the report's text.
    bool testReported = false;       // a test report has been written
    std::uint16_t reportedTypes = 0; // of every description that a test report has covered
    CoverageCounters overallTotals{};
    CoverageCounters overallHits{};
};

// The types that the options ask for, else those given.
inline std::uint16_t typesOr(const CoverageOptions& options, std::uint16_t otherwise) {
    return options.coverageTypes != 0 ? options.coverageTypes : otherwise;
}

} // namespace veldacov
