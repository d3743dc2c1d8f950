#pragma once

#include <string>

#include "report/session.h"

namespace veldacov {

// Reads one trace file: records its hits in the model, keeps them for the cleaned trace, and closes each test
// when the next one starts. Malformed traces are fatal errors; a file that is no trace is a user error, and
// the run goes on.
void readTraceFile(TraceSession& session, const std::string& fileName);

// Ends the current test, if it is one that is recorded: modified conditions, its report (not with -GLOBAL),
// its block of the CIO file.
void closeTest(TraceSession& session);

} // namespace veldacov
