#include "report/hit_recorder.h"

#include <array>
#include <cstddef>
#include <span>

#include "description/hit_counting.h"
#include "report/hit_lines.h"

namespace veldacov {

namespace {

// What becomes of the hits of the current part, as long as no other line changes it.
struct HitTreatment {
    FileDescription* part = nullptr;
    Counting counting = Counting::Replace;
    std::uint16_t recordedTypes = 0;
    KeptHits* keptHits = nullptr;
    KeptPart* keptPart = nullptr;  // set with keptHits
    KnownHits known = noKnownHits; // has been recorded, and kept
};

HitTreatment hitTreatment(const HitRecorder& recorder, const TraceCursor& cursor) {
    HitTreatment treatment;
    treatment.part = cursor.currentPart;
    treatment.counting = cursor.countOriented ? Counting::Accumulate : Counting::Replace;
    if (recorder.keptHits != nullptr) {
        treatment.keptHits = recorder.keptHits;
        treatment.keptPart = &keptPart(*recorder.keptHits, *cursor.currentPart);
    }
    if (!cursor.currentPart->placeholder) {
        treatment.recordedTypes =
            cursor.state == ReadState::Recording ? recorder.recordedTypes : std::uint16_t{0};
        treatment.known = knownHits(*cursor.currentPart, treatment.counting, treatment.recordedTypes,
                                    treatment.keptHits != nullptr);
    }
    return treatment;
}

bool isRecorded(const HitTreatment& treatment, Hit hit) {
    const std::span<const std::uint8_t> seen = treatment.part->seenHits[kindIndex(hit.kind)].bits;
    return treatment.counting == Counting::Replace && hit.id < seen.size() &&
           (seen[hit.id] & seen::uncountedHit) != 0;
}

void takeHit(const HitTreatment& treatment, Hit hit) {
    if ((treatment.recordedTypes & typesOfKind(hit.kind)) != 0 && !isRecorded(treatment, hit)) {
        recordHit(*treatment.part, hit.kind, hit.id, hit.count, treatment.counting);
    }
    if (treatment.keptHits != nullptr) {
        AddTioBranch(*treatment.keptHits, *treatment.keptPart, hit);
    }
}

struct HitBatch {
    std::array<Hit, 32> hits;
    std::size_t size = 0;
};

void takeBatch(const HitTreatment& treatment, HitBatch& batch) {
    const std::span<const Hit> hits = std::span(batch.hits).first(batch.size);
    prefetchItems(*treatment.part, hits);
    for (const Hit& hit : hits) {
        takeHit(treatment, hit);
    }
    batch.size = 0;
}

} // namespace

void takeHits(const HitRecorder& recorder, TraceCursor& cursor, LineKind kind) {
    const Hit hit = readHit(cursor, kind);
    takeHit(hitTreatment(recorder, cursor), hit);
    takeHitsBehind(recorder, cursor);
}

void takeHitsBehind(const HitRecorder& recorder, TraceCursor& cursor) {
    const HitTreatment treatment = hitTreatment(recorder, cursor);
    HitBatch batch;
    takeHitLines(cursor, treatment.known, [&](Hit hit) {
        batch.hits[batch.size++] = hit;
        if (batch.size == batch.hits.size()) {
            takeBatch(treatment, batch);
        }
    });
    takeBatch(treatment, batch);
}

} // namespace veldacov
