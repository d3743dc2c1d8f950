#include "driver/program.h"

#include <new>
#include <stdexcept>

#include "description/fdcL.h"
#include "description/model.h"
#include "description/name_pool.h"
#include "driver/argscov.h"
#include "driver/gcmdec.h"
#include "outputs/TPM_Write_CommandLine.h"
#include "outputs/flow.h"
#include "outputs/listing.h"
#include "report/report.h"
#include "support/machine.h"
#include "support/output.h"
#include "support/run_files.h"

namespace veldacov {

namespace {

void analyse(const std::vector<std::string>& words, CoverageOptions& options) {
    if (!analyseCommandLine(words, options)) {
        fatalError(translate("Fatal Error", "Errors in command line"));
    }
}

Language reportLanguage() {
    return reportInFrench() ? Language::French : Language::English;
}

void writeReport(const TraceFileList& traceFiles, const CoverageOptions& options) {
    OutputFile out =
        options.outputFile
            ? createOutput(*options.outputFile, translate("Fatal Error", "Cannot create output file %1"))
            : outputOnStandardOutput();
    runCoverageReport(out, traceFiles, options, reportLanguage(), writeCoverageMeasures);
    out.finish();
}

void writeFlow(const TraceFileList& traceFiles, const CoverageOptions& options) {
    OutputFile out =
        createOutput(*options.flowFile, translate("Fatal Error", "Cannot create flow output file %1"));
    writePathTrace(out, traceFiles, options, reportLanguage());
    out.finish();
}

void freeLists(CoverageOptions& options) {
    for (const auto list :
         {&CoverageOptions::fileList, &CoverageOptions::exFileList, &CoverageOptions::serviceList,
          &CoverageOptions::exServiceList, &CoverageOptions::testList, &CoverageOptions::exTestList}) {
        freeNameCountList(options.*list);
    }
}

void runSteps(const std::vector<std::string>& words) {
    CoverageOptions options;
    TraceFileList traceFiles;
    initNamePool();
    analyse(words, options);
    if (options.flowFile) {
        copyGivenPipes();
    }
    for (const std::string& file : options.inputFiles) {
        loadFdcFile(&file, options.coverageTypes, traceFiles);
    }
    writeReport(traceFiles, options);
    if (options.listingRequested) {
        writeListings(options);
    }
    if (options.flowFile) {
        writeFlow(traceFiles, options);
    }
    freeLists(options);
    resetProgram();
}

} // namespace

void runProgram(const std::vector<std::string>& words) {
    try {
        runSteps(words);
    } catch (const std::bad_alloc&) {
        memoryExhausted();
    } catch (const std::length_error&) { // more than a container could ever hold
        memoryExhausted();
    }
}

void resetProgram() {
    forgetRunFiles();
    releaseDecoderMemory();
    freeAllDescriptions();
    freeNamePool();
}

} // namespace veldacov
