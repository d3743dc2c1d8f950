#pragma once

// A decision on a page: the rows of its truth table, and for each condition, in words, the pair of cases that proves it, or the
// tests that are missing.
//
//   `p->pressure > 30`: to be tested is case 2: `p->pressure > 30` false while `p->water > WATER_MAX` is true

#include <cstdint>
#include <string>
#include <vector>

#include "support/output.h"
#include "view/campaign.h"

namespace veldacov {

class DecisionWords {
public:
    DecisionWords(OutputFile& out, const Campaign& campaign, const CampaignService& service,
                  const Composition& composition);

    // The head of the table, up to its body: a column for the number of the case, each condition, the outcome, the mark,
    // the count where there is one, and the tests.
    void putHead(bool counted) const;
    // Calls visit(place in the composition, hit) for the cases to show, in their order: all of them where they are few, else
    // those that words speak of, and the first of those that are hit.
    template <typename Visit>
    void forEachShownCase(Visit visit) const {
        for (const std::uint32_t place : shown_) {
            visit(place, isHitCase(place));
        }
    }
    // Cells of the conditions and of the outcome.
    void putCase(std::uint32_t place) const;
    // Says how many cases are not in the table, if any.
    void putNoteOfHidden() const;
    void putProof(const ModifiedCondition& modified) const;

private:
    // Of a place in the service's conditions.
    [[nodiscard]] bool isHitPlace(std::uint32_t place) const {
        return campaign_.counts[firstCondition_ + place] != 0;
    }
    [[nodiscard]] bool isHitCase(std::uint32_t place) const {
        return isHitPlace(composition_.firstCase + place);
    }
    // The case that a pair names by the place of its entry.
    [[nodiscard]] std::uint32_t caseOf(std::uint32_t place) const;
    // A letter for each condition; those that a table is too short for are not looked at.
    [[nodiscard]] std::string valuesOf(std::uint32_t caseNumber) const;
    [[nodiscard]] std::string_view textOf(const ModifiedCondition& modified) const;
    void putCode(std::string_view text) const;
    void putMissingCase(const ModifiedCondition& modified, std::uint32_t place) const;
    [[nodiscard]] bool asksForBoth(std::string_view values) const;
    void chooseCases();

    OutputFile& out_;
    const Campaign& campaign_;
    const CampaignService& service_;
    const Composition& composition_;
    std::uint32_t firstCondition_; // item number of the service's first condition
    std::vector<std::uint32_t> shown_;
};

} // namespace veldacov
