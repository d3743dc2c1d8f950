#pragma once

// Evidence of several descriptions of one path as one: a source that was compiled twice.

#include <vector>

#include "view/evidence.h"

namespace veldacov {

// Takes what another description of the path says into `all`. What both have counts as the larger one; the rest is added.
void joinEvidence(SourceEvidence& all, const SourceEvidence& more);

// Brings the lists into the order of lines; what stands together in a decision stays together.
void sortByLine(std::vector<BranchEvidence>& branches);
void sortByLine(std::vector<ProofEvidence>& proofs);

} // namespace veldacov
