#include "counting.h"

namespace veldacc {

namespace {

std::vector<std::uint32_t>& formulaOf(HitTarget& target, ItemRef item) {
    return target.section.formulas[static_cast<std::size_t>(item.kind)][item.id];
}

std::string counterText(std::uint32_t counter) {
    return "velda_counters[" + std::to_string(counter) + "]++";
}

std::string sectionText(const HitTarget& target) {
    return "&velda_sections[" + std::to_string(target.sectionIndex) + ']';
}

std::string orderedText(const HitTarget& target, ItemRef item) {
    return "veldacc_hit(" + sectionText(target) + ',' +
           std::to_string(item.id * hitKinds + static_cast<std::size_t>(item.kind)) + "u)";
}

void append(std::string& list, const std::string& text) {
    if (!list.empty()) {
        list += ',';
    }
    list += text;
}

} // namespace

CountedHit countHits(HitTarget& target, std::span<const ItemRef> items) {
    CountedHit hit;
    for (const ItemRef item : items) {
        if (!item.described) {
            continue;
        }
        if (target.counters.way == Counting::Ordered) {
            append(hit.text, orderedText(target, item));
            continue;
        }
        if (!hit.isShared || target.counters.way == Counting::Own) {
            hit.counter = target.counters.used++;
            append(hit.text, counterText(hit.counter));
            hit.isShared = true;
        }
        formulaOf(target, item).push_back(hit.counter);
    }
    hit.isShared = hit.isShared && target.counters.way == Counting::Shared;
    return hit;
}

std::string hitText(HitTarget& target, std::span<const ItemRef> items) {
    return countHits(target, items).text;
}

void giveFormula(HitTarget& target, std::span<const ItemRef> items, std::span<const std::uint32_t> counters) {
    for (const ItemRef item : items) {
        if (item.described) {
            formulaOf(target, item).insert(formulaOf(target, item).end(), counters.begin(), counters.end());
        }
    }
}

std::uint32_t reserveCounters(HitTarget& target, std::uint32_t count) {
    const std::uint32_t first = target.counters.used;
    if (target.counters.way != Counting::Ordered) {
        target.counters.used += count;
    }
    return first;
}

std::string indexedHitText(HitTarget& target, ItemRef first, std::uint32_t counter,
                           const std::string& index) {
    if (target.counters.way != Counting::Ordered) {
        return "velda_counters[" + std::to_string(counter) + "u+" + index + "]++";
    }
    return "veldacc_hit(" + sectionText(target) + ",(" + std::to_string(first.id) + "u+" + index + ")*4u+" +
           std::to_string(static_cast<unsigned>(first.kind)) + "u)";
}

std::string pathHitText(HitTarget& target, ItemRef first, std::uint32_t counter, const std::string& path,
                        const std::vector<std::uint32_t>& caseOfPath) {
    if (target.counters.way != Counting::Ordered) {
        return "velda_counters[" + std::to_string(counter) + "u+" + path + "]++";
    }
    std::vector<std::uint32_t> items;
    items.reserve(caseOfPath.size());
    for (const std::uint32_t place : caseOfPath) {
        items.push_back((first.id + place) * 4 + static_cast<std::uint32_t>(HitKind::Condition));
    }
    target.counters.caseMaps.push_back(std::move(items));
    return "veldacc_hit(" + sectionText(target) + ",velda_cases_" +
           std::to_string(target.counters.caseMaps.size() - 1) + '[' + path + "])";
}

} // namespace veldacc
