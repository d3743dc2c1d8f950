#include "report/report.h"

#include "description/hit_counting.h"
#include "report/auth.h"
#include "report/cio.h"
#include "report/cleaned_trace.h"
#include "report/report_text.h"
#include "report/session.h"
#include "report/trace_reader.h"
#include "support/machine.h"

namespace veldacov {

namespace {

TraceSession startSession(OutputFile& reportStream, const CoverageOptions& options, Language language) {
    TraceSession session;
    session.reportStream = &reportStream;
    session.options = &options;
    session.language = language;
    session.trace = startOfTraces();
    session.typesOfAllFiles = typesOfAllDescriptions();
    session.typesInUse = typesOr(options, session.typesOfAllFiles);
    return session;
}

void warnNoTest(const TraceFileList& traceFiles) {
    warningMessage(
        traceFiles.empty()
            ? translate("User Warning", "No traces in argument list; generating report showing all branches")
            : translate("User Warning", "Selected test list is empty; generating conclusion only"));
}

// Whether the final report shows counts: only when all traces had them.
void settleCountMode(TraceSession& session) {
    if (session.someCounted && session.someUncounted && session.options->global) {
        warningMessage(
            translate("User Warning", "Some traces are count-oriented and others are not, count is ignored"));
    }
    session.trace.countOriented = session.someCounted && !session.someUncounted;
}

void closeLastTest(TraceSession& session, const TraceFileList& traceFiles) {
    if (session.testOpen) {
        closeTest(session);
    } else if (!session.anyTestSelected) {
        warnNoTest(traceFiles);
    }
}

void finishCio(TraceSession& session) {
    if (!session.options->cioFile) {
        return;
    }
    if (session.currentServiceNumber != -1) {
        writeCioServiceBlock(session);
    }
    writeCioGlobalBlock(session);
    closeCio();
}

void writeFinalReport(TraceSession& session) {
    settleCounts();
    if (session.options->global) {
        session.trace.currentTest = nullptr;
        writeTestReport(session);
    } else {
        warnUnseenTests(session.seenTests, *session.options);
        writeFinalConclusion(session);
    }
}

} // namespace

void runCoverageReport(OutputFile& reportStream, const TraceFileList& traceFiles,
                       const CoverageOptions& options, Language language,
                       void (*writeMeasures)(const CoverageOptions&)) {
    TraceSession session = startSession(reportStream, options, language);
    checkSelection(options);
    session.selection = takeSelection(options);
    if (options.cioFile) {
        openCio(session);
    }
    writeReportHeader(session);
    for (const std::string& traceFile : traceFiles) {
        readTraceFile(session, traceFile);
    }
    if (session.cleanPending && !options.mergeTests) {
        writeCleanedTrace(session);
    }
    closeLastTest(session, traceFiles);
    finishCio(session);
    settleCountMode(session);
    writeFinalReport(session);
    writeMeasures(options);
    if (session.cleanPending && options.mergeTests) {
        writeCleanedTrace(session);
    }
    if (session.cleanStream.isOpen()) {
        session.cleanStream.finish();
    }
    writeSeparator(session);
}

} // namespace veldacov
