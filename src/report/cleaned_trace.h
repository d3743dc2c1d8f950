#pragma once

// The cleaned trace (-CLEAN): a trace that keeps of each test, or of all tests merged, every hit identifier
// once and in order, also of parts that are not reported or that match no description. It is itself a valid
// trace.

#include "report/kept_hits.h"
#include "report/options.h"
#include "support/output.h"

namespace veldacov {

// Written here, and in the answers of the report run to a test's begin (cleanPending).
struct CleanedTrace {
    OutputFile cleanStream;    // opened with the first write
    bool cleanPending = false; // a test has begun whose hits have yet to be written
    KeptHits keptHits;
};

// The test whose hits are written.
struct CleanedTest {
    const NameEntry* test = nullptr;     // null: a test line without a name
    const NameEntry* testDate = nullptr; // null: a date line without a date
    bool countOriented = false;          // its hits are written with counts
};

// Writes what is kept as one test, and lets go of it. Merged tests have a name and the date of their own. Creates the
// file at the first call; a failure is a fatal error.
void writeCleanedTrace(CleanedTrace& cleaned, const CoverageOptions& options, const CleanedTest& test);

// Completes the file, if there is one.
void finishCleanedTrace(CleanedTrace& cleaned);

} // namespace veldacov
