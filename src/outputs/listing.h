#pragma once

// Annotated listings (-LISTING): the source beside what no test has hit, in a file X.lsc for each source X.
//
//   80 ==>|        level = 2;              nothing of this line was hit (-->: some of it was not)
//   ***** Simple block ELSEIF *****       what was not

#include "report/options.h"

namespace veldacov {

// Writes the annotated listing of every selected description: the source with numbered lines, a marker before
// each line that holds items not hit in any test, and those items below it. A source or listing that cannot
// be opened is warned about, and its file is left out. Descriptions of one source share a listing, each with
// a copy of its own.
void writeListings(const CoverageOptions& options);

} // namespace veldacov
