#pragma once

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
