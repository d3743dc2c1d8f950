// The program: a straight sequence of steps, each done by the module of its name.

#include <array>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QTranslator>

#include "description/fdcL.h"
#include "description/model.h"
#include "description/name_pool.h"
#include "driver/argscov.h"
#include "driver/banner.h"
#include "driver/gcmdec.h"
#include "outputs/TPM_Write_CommandLine.h"
#include "outputs/flow.h"
#include "outputs/listing.h"
#include "report/output_files.h"
#include "report/report.h"
#include "support/machine.h"
#include "support/output.h"
#include "support/platform.h"

namespace veldacov {

namespace {

constexpr std::array translationFamilies = {"cov_", "common_", "cab_", "ulmoident_"};
using Translators = std::array<QTranslator, translationFamilies.size()>;

// The directory of the translation files, below the installation directory. Without it the run ends here,
// with texts that cannot be translated yet.
QString localeDirectory() {
    const char* installation = std::getenv("NORVIKDIR");
    if (installation == nullptr || *installation == '\0') {
        writeStandardError(QStringLiteral("Fatal Error: please setup NORVIKDIR environment variable.\n"));
        endProgram(ExitStatus::NoLocaleDirectory);
    }
    QString path = QFile::decodeName(installation) + QDir::separator() + "lib" + QDir::separator() + "locale";
    if (!QFileInfo(path).isDir()) {
        writeStandardError(QStringLiteral("Fatal Error: directory doesn't exist '") + path +
                           QStringLiteral("'\n"));
        endProgram(ExitStatus::NoLocaleDirectory);
    }
    return path;
}

void installTranslations(Translators& translators) {
    const QString directory = localeDirectory();
    for (std::size_t family = 0; family < translators.size(); ++family) {
        const QString fileName = translationFamilies[family] + QLocale().name();
        if (translators[family].load(fileName, directory)) {
            QCoreApplication::installTranslator(&translators[family]);
        }
    }
}

void analyse(const std::vector<std::string>& words, CoverageOptions& options) {
    if (!analyseCommandLine(words, options)) {
        fatalError(translate("Fatal Error", "Errors in command line"));
    }
}

Language reportLanguage() {
    return reportInFrench() ? Language::French : Language::English;
}

void writeReport(const TraceFileList& traceFiles, const CoverageOptions& options) {
    OutputFile out = options.outputFile
                         ? createOutput(options, *options.outputFile,
                                        translate("Fatal Error", "Cannot create output file %1"))
                         : standardOutput();
    runCoverageReport(out, traceFiles, options, reportLanguage(), writeCoverageMeasures);
    out.finish();
}

void writeFlow(const TraceFileList& traceFiles, const CoverageOptions& options) {
    OutputFile out = createOutput(options, *options.flowFile,
                                  translate("Fatal Error", "Cannot create flow output file %1"));
    writePathTrace(out, traceFiles, options, reportLanguage());
    out.finish();
}

void release(CoverageOptions& options) {
    for (const auto list :
         {&CoverageOptions::fileList, &CoverageOptions::exFileList, &CoverageOptions::serviceList,
          &CoverageOptions::exServiceList, &CoverageOptions::testList, &CoverageOptions::exTestList}) {
        freeNameCountList(options.*list);
    }
    releaseDecoderMemory();
    freeAllDescriptions();
    freeNamePool();
}

void run(const std::vector<std::string>& words) {
    CoverageOptions options;
    TraceFileList traceFiles;
    initNamePool();
    analyse(words, options);
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
    release(options);
}

} // namespace

} // namespace veldacov

int main(int argumentCount, char** arguments) {
    using namespace veldacov;
    // The toolkit's own remarks are no texts of this program.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    platform::reserveStandardDescriptors();
    platform::keepFreedMemory();
    installMemoryGuard();
    const QCoreApplication application(argumentCount, arguments);
    Translators translators;
    installTranslations(translators);
    setProductIdentity(translate("ULMOIdent", "Norvik"), QStringLiteral("veldacov"));
    const std::vector<std::string> words(arguments, arguments + argumentCount);
    versionEntry(words);
    try {
        run(words);
    } catch (const std::bad_alloc&) {
        memoryExhausted();
    }
    return static_cast<int>(ExitStatus::Normal);
}
