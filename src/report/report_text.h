#pragma once

// The text of the coverage report: head, blocks of rates, source references.

#include "report/session.h"

namespace veldacov {

void writeSeparator(TraceSession& session);
void writeReportHeader(TraceSession& session);

// The report of the current test or, with -GLOBAL, of all tests together.
void writeTestReport(TraceSession& session);

// The conclusion over all tests that ends a per-test run.
void writeFinalConclusion(TraceSession& session);

} // namespace veldacov
