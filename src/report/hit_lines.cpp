#include "report/hit_lines.h"

namespace veldacov {

KnownHits knownHits(FileDescription& description, Counting counting, std::uint16_t recordedTypes, bool kept) {
    KnownHits known = noKnownHits;
    for (const ItemKind kind : itemKinds) {
        const SeenHits& seen = seenHits(description, kind, counting);
        const bool isRecorded = (recordedTypes & typesOfKind(kind)) != 0;
        KnownHits::Items& items = KnownHits::ofKeyword(known, KnownHits::startOfLine(kind));
        items.bits = seen.bits.data();
        items.aside = seen.aside.data();
        if (counting == Counting::Replace) {
            items.needed =
                static_cast<std::uint8_t>((isRecorded ? seen::uncountedHit : 0) | (kept ? seen::kept : 0));
            items.size = static_cast<std::uint32_t>(seen.bits.size());
        } else if (isRecorded) { // counts that are not recorded are not put aside either
            items.size = static_cast<std::uint32_t>(seen.aside.size());
        }
    }
    return known;
}

} // namespace veldacov
