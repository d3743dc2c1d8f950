#pragma once

// The conductor of a report run. It walks the traces and answers the events of the walk by calling the writers, so that no
// reader calls a writer:
//
//   a test line is met    the hits kept are written to the cleaned trace
//   a test ends           its report, its block of the CIO file
//   a period ends         its block of the CIO file
//   traces end            the conclusion, measures

#include "description/fdcL.h"
#include "report/labels.h"
#include "report/options.h"
#include "support/output.h"

namespace veldacov {

// The report run: checks the selection, reads the traces in order and writes the report, and with them the
// CIO file and the cleaned trace. `writeMeasures` is called once, when all counts are final. Borrows all
// arguments.
void runCoverageReport(OutputFile& reportStream, const TraceFileList& traceFiles,
                       const CoverageOptions& options, Language language,
                       void (*writeMeasures)(const CoverageOptions&));

} // namespace veldacov
