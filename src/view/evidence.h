#pragma once

// What a campaign says of lines and branches: one rule for all outputs that show sources by line. It is told in
// docs/formats/evidence.md; in short:
//
//   a line      is there where an item begins, and is counted by the first of its kind in the order
//               entry, condition (both outcomes), block, call, exit, case label
//   a branch    is an outcome of a condition, on the first line of that condition; where conditions are not described, a
//               THEN or ELSE
//   a decision  is a composition, with the conditions that are proven to decide it alone
//
// Which item counts follows from the description alone. So the evidence of two campaigns of one description adds up,
// number by number, as long as no test is in both.
//
//   descriptions of one path --evidenceOf, with counts--> functions, lines, branches, decisions

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "view/campaign.h"

namespace veldacov {

// The descriptions of one path; most paths have one.
struct Source {
    std::string path;                 // lexically normalised, without a leading "./"
    std::vector<std::uint32_t> files; // places in the campaign's files, ascending
};

// All sources in the order of their paths (as bytes).
std::vector<Source> sourcesOf(const Campaign& campaign);

struct FunctionEvidence {
    const NameEntry* name = nullptr;
    std::uint32_t line = 0;
    std::uint32_t lastLine = 0;
    std::uint32_t count = 0;
};
struct LineEvidence {
    std::uint32_t line = 0;
    std::uint32_t count = 0;
};
struct BranchEvidence {
    std::uint32_t line = 0;
    std::uint32_t decision = 0; // of those with branches on the line, from 0
    std::uint32_t number = 0;   // in the decision's branches on the line, from 0
    std::uint32_t count = 0;
    bool evaluated = false; // some outcome of the condition was seen
    std::string_view text;  // of the condition, with quotes where the description has them; a block's label
};
// One condition of a composition.
struct ProofEvidence {
    std::uint32_t line = 0;       // the first line of the decision
    std::uint32_t conditions = 0; // of the decision
    std::uint32_t index = 0;      // of this condition in the decision, from 0
    bool proven = false;          // a pair of cases shows that it decides alone
    std::string_view text;
};

// What is known of one source. Each list is in the order of its lines; functions are in that of the description.
struct SourceEvidence {
    std::vector<FunctionEvidence> functions;
    std::vector<LineEvidence> lines;
    std::vector<BranchEvidence> branches;
    std::vector<ProofEvidence> proofs; // those of a decision stand together
};

// Fills `evidence` anew with what `counts` (by item number) tell of a source. Texts are valid as long as the model. Cost:
// that of sorting the source's items.
void evidenceOf(const Campaign& campaign, const Source& source, std::span<const std::uint32_t> counts,
                SourceEvidence& evidence);

// The place of the first case of a pair is hit, and that of the second: the condition decides alone.
bool isProven(const CampaignService& service, const ModifiedCondition& modified,
              std::span<const std::uint32_t> counts);

// Of the pairs that would show it the one that lacks fewest cases, of these the first; none where there is no pair at all,
// so that nothing can show it. Nothing lacks in the pair of a proven condition.
const VectorPair* nearestPair(const CampaignService& service, const ModifiedCondition& modified,
                              std::span<const std::uint32_t> counts);

// A condition with one outcome that stands for a label of a switch; others are constants.
bool isCaseLabel(const ConditionEntry& condition);

// A condition's text without the quotes around it.
std::string_view unquoted(std::string_view text);

} // namespace veldacov
