#pragma once

// The messages of the measure database. Its problems cost the measure and not the run, so they are none of the message
// kinds of the program: no warning is counted, and no status follows.

#include <QString>

namespace veldacov {

// Shows a problem of the measure database on standard error; the run goes on. The product name is the one at
// the first call.
void showTpmError(const QString& message);

} // namespace veldacov
