#pragma once

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
