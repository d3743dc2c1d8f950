#pragma once

// Selection: which files, services and tests the outputs show. A name's own mark decides, the positive one
// first; without a mark the default of its kind does.

#include "description/model.h"
#include "description/name_pool.h"
#include "report/options.h"

namespace veldacov {

// A file or test may have no name (null); the default decides then. A service without a name is an internal
// error.
bool GetFileAuth(const NameEntry* sourceName, const CoverageOptions& options);
bool GetServiceAuth(const NameEntry* service, const CoverageOptions& options);
bool GetTestAuth(const NameEntry* test, const CoverageOptions& options);

// Warns about selected names that nothing has, drops the files of which no service is selected, and stops the
// run with a fatal error when nothing is left to report.
void checkSelection(const CoverageOptions& options);

// Warns about selected tests that the traces did not have.
void warnUnseenTests(const NameCountList& seenTests, const CoverageOptions& options);

} // namespace veldacov
