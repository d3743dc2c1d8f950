#include "report/report.h"

#include <cstdint>
#include <string>

#include "description/hit_counting.h"
#include "description/pairs.h"
#include "report/auth.h"
#include "report/report_text.h"
#include "report/session.h"
#include "support/machine.h"

namespace veldacov {

namespace {

// What the run does at each step of the walk over its traces.
class ReportEvents : public TraceEvents {
public:
    explicit ReportEvents(TraceSession& session) : session_(session) {}
    void testLinesEnd() override;
    void testEnds(const TestRun& test) override;
    void periodEnds(std::int32_t serviceNumber) override;
    void testBegins(const TestRun& test) override;
    void partMet(const MetPart& part) override;
    void testsEnd() override;

private:
    TraceSession& session_;
};

// The report dates a test by the last date line of the file being read. A test thus keeps the date of the test before
// it when it has none itself, and the last test of a file that is followed by another file has none.
ReportedTest reportedTest(const TraceSession& session) {
    const TraceCursor& trace = session.walk.trace;
    return {trace.currentTest, trace.testDate, trace.countOriented};
}

void ReportEvents::testLinesEnd() {
    if (session_.cleaned.cleanPending && !session_.options->mergeTests) {
        const ReportedTest test = reportedTest(session_);
        writeCleanedTrace(session_.cleaned, *session_.options,
                          {test.currentTest, test.testDate, test.countOriented});
    }
}

void ReportEvents::testEnds(const TestRun& test) {
    if (!test.selected) {
        return; // hits outside of tests go into the counts of the next one
    }
    const CoverageOptions& options = *session_.options;
    computeModifiedConditionHits();
    if (!options.global) {
        settleCounts();
        writeTestReport(session_, reportedTest(session_));
    }
    if (options.cioFile) {
        writeCioTestBlock(session_.cio, test.number, session_.walk.trace.fileName);
    }
    session_.testCountsDue = !options.global || options.cioFile;
}

void ReportEvents::periodEnds(std::int32_t serviceNumber) {
    if (session_.options->cioFile) {
        writeCioServiceBlock(session_.cio, serviceNumber, session_.walk.trace.fileName);
    }
}

void ReportEvents::testBegins(const TestRun& test) {
    session_.cleaned.cleanPending = session_.options->cleanFile.has_value();
    if (session_.testCountsDue) { // only now: the measures are of the last test
        resetTestCounts();
        session_.testCountsDue = false;
    }
    if (test.knownBy != KnownBy::Number) {
        addNameCount(session_.seenTests, test.test);
    }
    session_.anyTestSelected = session_.anyTestSelected || test.selected;
}

void ReportEvents::partMet(const MetPart& part) {
    if (part.description == nullptr && session_.unmatchedInfoPending) {
        session_.unmatchedInfoPending = false;
        infoMessage(translate("User Info",
                              "Parts of traces do not match any listed FDC files; such parts are ignored"));
    }
}

void warnNoTest(bool anyTraces) {
    warningMessage(anyTraces
                       ? translate("User Warning", "Selected test list is empty; generating conclusion only")
                       : translate("User Warning",
                                   "No traces in argument list; generating report showing all branches"));
}

void ReportEvents::testsEnd() {
    if (!session_.anyTestSelected) {
        warnNoTest(!session_.walk.trace.fileName.empty());
    }
}

// Whether the final report shows counts: only when all traces had them.
bool settleCountMode(const TraceSession& session) {
    const TraceWalk& walk = session.walk;
    if (walk.someCounted && walk.someUncounted && session.options->global) {
        warningMessage(
            translate("User Warning", "Some traces are count-oriented and others are not, count is ignored"));
    }
    return walk.someCounted && !walk.someUncounted;
}

void writeFinalReport(TraceSession& session, bool countOriented) {
    settleCounts();
    if (session.options->global) {
        writeTestReport(session, {nullptr, nullptr, countOriented});
    } else {
        warnUnseenTests(session.seenTests, *session.options);
        writeFinalConclusion(session);
    }
}

void startSession(TraceSession& session, ReportEvents& events) {
    const CoverageOptions& options = *session.options;
    session.typesOfAllFiles = typesOfAllDescriptions();
    checkSelection(options);
    session.selection = takeSelection(options);
    const std::uint16_t types = typesOr(options, session.typesOfAllFiles);
    session.walk =
        startWalk(options, events, {types, options.cleanFile ? &session.cleaned.keptHits : nullptr});
    if (options.cioFile) {
        openCio(session.cio, options, session.selection, types);
    }
}

} // namespace

void runCoverageReport(OutputFile& reportStream, const TraceFileList& traceFiles,
                       const CoverageOptions& options, Language language,
                       void (*writeMeasures)(const CoverageOptions&)) {
    TraceSession session;
    session.reportStream = &reportStream;
    session.options = &options;
    session.language = language;
    ReportEvents events(session);
    startSession(session, events);
    writeReportHeader(session);
    for (const std::string& traceFile : traceFiles) {
        readTraceFile(session.walk, traceFile);
    }
    endWalk(session.walk);
    if (options.cioFile) {
        writeCioGlobalBlock(session.cio);
        closeCio(session.cio);
    }
    const bool countOriented = settleCountMode(session);
    writeFinalReport(session, countOriented);
    writeMeasures(options);
    if (session.cleaned.cleanPending && options.mergeTests) {
        writeCleanedTrace(session.cleaned, options, {nullptr, nullptr, countOriented});
    }
    finishCleanedTrace(session.cleaned);
    writeSeparator(session);
}

} // namespace veldacov
