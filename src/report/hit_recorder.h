#pragma once

// The way of hits from the lines of a trace into the model.
//
//   hit lines --takeHitLines--> hits that are not known yet --batch--> recordHit (model), AddTioBranch (kept hits)
//
// What becomes of a hit is decided once for all lines up to the next line that is no hit (HitTreatment): into which
// part it goes, whether its count is added, which coverage types are recorded (none in a part that is being skipped),
// whether it is kept. A hit that the loop puts aside follows the same treatment.
//
// New hits wait for each other in a batch. Each of them means some loads from memory that no cache holds; with 32 of
// them in hand these loads run at the same time, and recording them waits once (docs/performance.md, "Where the time
// goes"). What always holds: a batch is of one treatment, and is recorded before any other line is looked at.

#include <cstdint>

#include "report/kept_hits.h"
#include "report/tio.h"

namespace veldacov {

struct HitRecorder {
    std::uint16_t recordedTypes = 0; // coverage types whose hits go into the model
    KeptHits* keptHits = nullptr;    // where hits are kept for a cleaned trace; null: nowhere
};

// Takes the hit line in hand, whose kind is given, and the hit lines behind it. Faults in them are fatal errors.
void takeHits(const HitRecorder& recorder, TraceCursor& cursor, LineKind kind);
// Takes the hit lines that stand next, if any.
void takeHitsBehind(const HitRecorder& recorder, TraceCursor& cursor);

} // namespace veldacov
