#pragma once

#include <QString>

namespace veldacov {

// Shows a problem of the measure database on standard error; the run goes on. The product name is the one at
// the first call.
void showTpmError(const QString& message);

} // namespace veldacov
