#pragma once

// The text of the coverage report: head, blocks of rates, source references.

#include <string_view>

#include "report/session.h"

namespace veldacov {

// The head of the report and of the path trace: title, tool version and present date.
void writeHead(OutputFile& out, std::string_view title);
void writeReportHeader(TraceSession& session);
void writeSeparator(TraceSession& session);

// What the report of a test says of it.
struct ReportedTest {
    const NameEntry* currentTest = nullptr; // null: the empty text
    const NameEntry* testDate = nullptr;    // null: none is shown
    bool countOriented = false;             // references show counts
};
// The report of a test that ends, before its counts are reset, or, with -GLOBAL, of all tests together.
void writeTestReport(TraceSession& session, const ReportedTest& test);

// The conclusion over all tests that ends a per-test run.
void writeFinalConclusion(TraceSession& session);

} // namespace veldacov
