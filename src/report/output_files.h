#pragma once

#include <string>

#include <QString>

#include "report/options.h"
#include "support/output.h"

namespace veldacov {

// Creates an output that the command line names. `failure` is the fatal error, with %1 for the name, when that is not
// possible. The files that the run reads cannot be outputs: they would be lost, or read while they grow. Nor can the
// file of another output.
OutputFile createOutput(const CoverageOptions& options, const std::string& name, const QString& failure);

} // namespace veldacov
