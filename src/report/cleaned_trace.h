#pragma once

// The cleaned trace (-CLEAN): a trace that keeps of each test, or of all tests merged, every hit identifier
// once and in order, also of parts that are not reported or that match no description. It is itself a valid
// trace.

#include "description/hit_counting.h"
#include "report/session.h"

namespace veldacov {

// Keeps a hit of the current part. An identifier that a described file cannot have is an internal error.
void AddTioBranch(TraceSession& session, Hit hit);

// Writes what is kept as one test, and lets go of it. Creates the file at the first call; a failure is a
// fatal error.
void writeCleanedTrace(TraceSession& session);

} // namespace veldacov
