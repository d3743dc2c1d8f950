#include "report/output_files.h"

#include <algorithm>

#include "support/files.h"
#include "support/machine.h"
#include "support/platform.h"

namespace veldacov {

namespace {

bool isInputFile(const CoverageOptions& options, const std::string& name) {
    return fileExists(name) &&
           std::any_of(options.inputFiles.begin(), options.inputFiles.end(),
                       [&](const std::string& input) { return platform::isSameFile(input, name); });
}

} // namespace

OutputFile createOutput(const CoverageOptions& options, const std::string& name, const QString& failure) {
    OutputFile out;
    if (!isInputFile(options, name)) {
        out = OutputFile(platform::createForWriting(name), name);
    }
    if (!out.isOpen()) {
        fatalError(filled(failure, {name}));
    }
    return out;
}

} // namespace veldacov
