#include "report/output_files.h"

#include <algorithm>
#include <array>
#include <filesystem>

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

// One file for two outputs would hold parts of both. Devices keep nothing, so they may be named twice.
bool isOtherOutput(const CoverageOptions& options, const std::string& name) {
    const std::array outputs = {&options.outputFile, &options.cioFile, &options.cleanFile, &options.flowFile};
    std::error_code failure;
    return std::filesystem::is_regular_file(name, failure) &&
           std::count_if(outputs.begin(), outputs.end(), [&](const std::optional<std::string>* output) {
               return *output && platform::isSameFile(**output, name);
           }) > 1;
}

} // namespace

OutputFile createOutput(const CoverageOptions& options, const std::string& name, const QString& failure) {
    OutputFile out;
    if (!isInputFile(options, name) && !isOtherOutput(options, name)) {
        out = OutputFile(platform::createForWriting(name), name);
    }
    if (!out.isOpen()) {
        fatalError(filled(failure, {name}));
    }
    return out;
}

} // namespace veldacov
