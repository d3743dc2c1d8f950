#pragma once

// The path trace (-FLOW): the way that the tests took, hit by hit. The counts of a report do not tell the order of hits, so
// the traces are read a second time, by the same reader, and nothing is counted:
//
//   Test morning Fri Jan  2 00:00:00 1970
//   	incoming open, line 1

#include "description/fdcL.h"
#include "report/labels.h"
#include "report/options.h"
#include "support/output.h"

namespace veldacov {

// Writes the path trace: reads all traces again and retells the hits of the selected tests and files in their
// order, each with its source line. Never changes the model's counts. Malformed traces are fatal errors.
void writePathTrace(OutputFile& out, const TraceFileList& traceFiles, const CoverageOptions& options,
                    Language language);

} // namespace veldacov
