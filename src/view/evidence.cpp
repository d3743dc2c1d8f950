#include "view/evidence.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>

#include "description/hit_counting.h"
#include "view/evidence_join.h"

namespace veldacov {

namespace {

using Counts = std::span<const std::uint32_t>;

// Which of the items that begin on a line counts it: the one with the smallest rank, of these the first of the description.
// An entry, the condition of an `if` before the block that it lets in, a block before what is inside, a call before the
// `return` that it is part of: who comes first is run whenever the others are. Fall-through runs a line without its label.
enum class Rank : std::uint8_t { Entry, Condition, Block, Call, Exit, CaseLabel };

// What may count a line, in one word that sorts by line, rank and place in the description: the number of the item among
// those of its file, at most 2^28. The last bit says that the item next to it counts, too: it is the other outcome.
using Candidate = std::uint64_t;
constexpr unsigned lineShift = 32;
constexpr unsigned rankShift = 29;
constexpr unsigned placeShift = 1;
constexpr Candidate candidate(std::uint32_t line, Rank rank, std::uint32_t place, std::uint32_t others) {
    return Candidate{line} << lineShift | Candidate{static_cast<std::uint8_t>(rank)} << rankShift |
           Candidate{place} << placeShift | others;
}
constexpr std::uint32_t lineOf(Candidate item) {
    return static_cast<std::uint32_t>(item >> lineShift);
}
constexpr std::uint32_t placeOf(Candidate item) {
    return static_cast<std::uint32_t>(item >> placeShift & ((Candidate{1} << (rankShift - placeShift)) - 1));
}
constexpr std::uint32_t othersOf(Candidate item) {
    return static_cast<std::uint32_t>(item & 1U);
}

// The places of a condition's outcomes behind its first one: 1, or 0 where it has one outcome.
std::uint32_t otherOutcome(const Service& service, std::uint32_t place) {
    return isTrueOutcome(service, service.conditions[place]) ? 1 : 0;
}

// How often a condition was evaluated.
std::uint32_t evaluations(Counts counts, std::uint32_t number, std::uint32_t other) {
    return other == 0 ? counts[number] : saturatingSum(counts[number], counts[number + other]);
}

// The evidence of one description.
class DescriptionEvidence {
public:
    DescriptionEvidence(const Campaign& campaign, const CampaignFile& file, Counts counts,
                        SourceEvidence& evidence)
        : campaign_(campaign), file_(file), types_(file.description->coverageTypes), counts_(counts),
          evidence_(evidence), firstItem_(campaign.services[file.firstService].firstItem) {}

    void take() {
        for (std::uint32_t i = 0; i < file_.serviceCount; ++i) {
            const CampaignService& service = campaign_.services[file_.firstService + i];
            takeFunction(service);
            takeCandidates(service);
            takeBranches(service);
            takeProofs(service);
        }
        takeLines();
        numberBranches();
        sortByLine(evidence_.proofs);
    }

private:
    [[nodiscard]] bool describes(std::uint16_t coverageType) const { return (types_ & coverageType) != 0; }

    void takeFunction(const CampaignService& service);
    void takeCandidates(const CampaignService& service);
    void takeConditionLines(const CampaignService& service, std::uint32_t first);
    void takeLines();
    void takeBranches(const CampaignService& service);
    void takeConditionBranches(const CampaignService& service);
    void takeBlockBranches(const CampaignService& service);
    void takeProofs(const CampaignService& service);
    void numberBranches();

    void add(const CoverageItem& item, Rank rank, std::uint32_t number, std::uint32_t others = 0) {
        if (item.startLine != 0) {
            candidates_.push_back(candidate(item.startLine, rank, number - firstItem_, others));
        }
    }
    template <typename Item>
    void addAll(std::span<Item> items, std::uint16_t coverageType, Rank rank, std::uint32_t number) {
        if (describes(coverageType)) {
            for (const Item& item : items) {
                add(item, rank, number++);
            }
        }
    }

    const Campaign& campaign_;
    const CampaignFile& file_;
    std::uint16_t types_;
    Counts counts_;
    SourceEvidence& evidence_;
    std::uint32_t firstItem_;
    std::uint32_t decisions_ = 0; // met so far
    std::vector<Candidate> candidates_;
    std::vector<std::uint32_t> decisionOf_; // by place of a condition in its service
};

// Functions are those of the report: it counts them when some description was made for them.
void DescriptionEvidence::takeFunction(const CampaignService& service) {
    if ((campaign_.types & type::procedures) == 0 || !service.service->entry) {
        return;
    }
    const Service& function = *service.service;
    evidence_.functions.push_back(
        {function.name, function.entry->startLine, function.lastLine, counts_[service.firstItem]});
}

void DescriptionEvidence::takeCandidates(const CampaignService& service) {
    Service& items = *service.service;
    const ItemNumbers numbers = itemNumbers(service);
    if (items.entry && describes(type::procedures)) {
        add(*items.entry, Rank::Entry, numbers.entry);
    }
    addAll(items.exits, type::exits, Rank::Exit, numbers.exits);
    addAll(items.calls, type::calls, Rank::Call, numbers.calls);
    std::uint32_t number = numbers.blocks;
    for (const BlockEntry& block : items.blocks) {
        const bool isCode = block.kind == BlockKind::Simple || block.kind == BlockKind::Atc;
        if (isCode && describes(typeOfBlock(block.kind))) {
            add(block, Rank::Block, number);
        }
        ++number;
    }
    if (describes(type::basicConditions)) {
        takeConditionLines(service, numbers.conditions);
    }
}

void DescriptionEvidence::takeConditionLines(const CampaignService& service, std::uint32_t first) {
    const Service& items = *service.service;
    for (std::uint32_t place = 0; place < items.conditions.size(); ++place) {
        const ConditionEntry& condition = items.conditions[place];
        if (condition.kind == ConditionKind::Case) {
            continue;
        }
        const std::uint32_t other = otherOutcome(items, place);
        add(condition, isCaseLabel(condition) ? Rank::CaseLabel : Rank::Condition, first + place, other);
        place += other;
    }
}

void DescriptionEvidence::takeLines() {
    std::sort(candidates_.begin(), candidates_.end());
    for (const Candidate item : candidates_) {
        const std::uint32_t line = lineOf(item);
        if (evidence_.lines.empty() || evidence_.lines.back().line != line) {
            evidence_.lines.push_back(
                {line, evaluations(counts_, firstItem_ + placeOf(item), othersOf(item))});
        }
    }
}

void DescriptionEvidence::takeBranches(const CampaignService& service) {
    if (describes(type::basicConditions)) {
        takeConditionBranches(service);
    } else {
        takeBlockBranches(service);
    }
}

constexpr std::uint32_t noDecision = 4294967295;

// The conditions of a composition are one decision; one that stands in two is the first one's.
void DescriptionEvidence::takeConditionBranches(const CampaignService& service) {
    const Service& items = *service.service;
    const std::uint32_t first = itemNumbers(service).conditions;
    decisionOf_.assign(items.conditions.size(), noDecision);
    for (const Composition& composition : items.compositions) {
        for (const ModifiedCondition& modified : composition.modifiedConditions) {
            std::uint32_t& decision = decisionOf_[modified.basicCondition];
            decision = decision == noDecision ? decisions_ : decision;
        }
        ++decisions_;
    }
    for (std::uint32_t place = 0; place < items.conditions.size(); ++place) {
        const ConditionEntry& condition = items.conditions[place];
        const bool isConstant = condition.kind == ConditionKind::Single && !isCaseLabel(condition);
        if (condition.kind == ConditionKind::Case || isConstant || condition.startLine == 0) {
            continue;
        }
        const std::uint32_t decision = decisionOf_[place] == noDecision ? decisions_++ : decisionOf_[place];
        const std::uint32_t other = otherOutcome(items, place);
        const bool evaluated = evaluations(counts_, first + place, other) != 0;
        for (std::uint32_t outcome = place; outcome <= place + other; ++outcome) {
            evidence_.branches.push_back(
                {condition.startLine, decision, 0, counts_[first + outcome], evaluated, condition.text});
        }
        place += other;
    }
}

bool isLabel(const BlockEntry& block, const char* label) {
    return std::strcmp(block.label, label) == 0;
}

// An ELSE belongs to the THEN or ELSEIF before it, and stands on its line: the line of a missing else need not have code.
void DescriptionEvidence::takeBlockBranches(const CampaignService& service) {
    const Service& items = *service.service;
    std::uint32_t number = itemNumbers(service).blocks;
    std::optional<std::size_t> then; // the branch that waits for its ELSE
    for (const BlockEntry& block : items.blocks) {
        const std::uint32_t count = counts_[number++];
        const bool isSimple = block.kind == BlockKind::Simple;
        if (!describes(typeOfBlock(block.kind)) || block.startLine == 0) {
            continue;
        }
        if (isSimple && (isLabel(block, "THEN") || isLabel(block, "ELSEIF"))) {
            then = evidence_.branches.size();
            evidence_.branches.push_back({block.startLine, decisions_++, 0, count, count != 0, block.label});
        } else if ((isSimple || block.kind == BlockKind::Implicit) && isLabel(block, "ELSE")) {
            if (then) {
                BranchEvidence& partner = evidence_.branches[*then];
                partner.evaluated = partner.evaluated || count != 0;
                evidence_.branches.push_back(
                    {partner.line, partner.decision, 0, count, partner.evaluated, block.label});
            } else if (isSimple) {
                evidence_.branches.push_back(
                    {block.startLine, decisions_++, 0, count, count != 0, block.label});
            }
            then.reset();
        }
    }
}

void DescriptionEvidence::takeProofs(const CampaignService& service) {
    if (!describes(type::modifiedConditions)) {
        return;
    }
    const Service& items = *service.service;
    for (const Composition& composition : items.compositions) {
        const auto conditions = static_cast<std::uint32_t>(composition.modifiedConditions.size());
        const std::uint32_t line = items.conditions[composition.firstCase].startLine;
        std::uint32_t index = 0;
        for (const ModifiedCondition& modified : composition.modifiedConditions) {
            const ConditionEntry& condition = items.conditions[modified.basicCondition];
            evidence_.proofs.push_back(
                {line, conditions, index++, isProven(service, modified, counts_), condition.text});
        }
    }
}

// Numbers the decisions of each line from 0, and the branches of each.
void DescriptionEvidence::numberBranches() {
    auto& branches = evidence_.branches;
    sortByLine(branches);
    std::uint32_t decision = noDecision; // as met, of the branch before
    for (std::size_t i = 0; i < branches.size(); ++i) {
        const bool sameLine = i > 0 && branches[i - 1].line == branches[i].line;
        const bool sameDecision = sameLine && decision == branches[i].decision;
        decision = branches[i].decision;
        branches[i].number = sameDecision ? branches[i - 1].number + 1 : 0;
        branches[i].decision = !sameLine      ? 0
                               : sameDecision ? branches[i - 1].decision
                                              : branches[i - 1].decision + 1;
    }
}

std::string normalised(const std::string& path) {
    return std::filesystem::path(path).lexically_normal().string();
}

void clear(SourceEvidence& evidence) {
    evidence.functions.clear();
    evidence.lines.clear();
    evidence.branches.clear();
    evidence.proofs.clear();
}

} // namespace

std::vector<Source> sourcesOf(const Campaign& campaign) {
    std::map<std::string, std::vector<std::uint32_t>> filesByPath;
    for (std::uint32_t file = 0; file < campaign.files.size(); ++file) {
        filesByPath[normalised(campaign.files[file].path)].push_back(file);
    }
    std::vector<Source> sources;
    sources.reserve(filesByPath.size());
    for (auto& [path, files] : filesByPath) {
        sources.push_back({path, std::move(files)});
    }
    return sources;
}

void evidenceOf(const Campaign& campaign, const Source& source, std::span<const std::uint32_t> counts,
                SourceEvidence& evidence) {
    clear(evidence);
    DescriptionEvidence(campaign, campaign.files[source.files.front()], counts, evidence).take();
    for (std::size_t i = 1; i < source.files.size(); ++i) {
        SourceEvidence more;
        DescriptionEvidence(campaign, campaign.files[source.files[i]], counts, more).take();
        joinEvidence(evidence, more);
    }
}

bool isProven(const CampaignService& service, const ModifiedCondition& modified,
              std::span<const std::uint32_t> counts) {
    const std::uint32_t first = itemNumbers(service).conditions;
    return std::any_of(modified.pairs.begin(), modified.pairs.end(), [&](const VectorPair& pair) {
        return counts[first + pair.first] != 0 && counts[first + pair.second] != 0;
    });
}

const VectorPair* nearestPair(const CampaignService& service, const ModifiedCondition& modified,
                              std::span<const std::uint32_t> counts) {
    const std::uint32_t first = itemNumbers(service).conditions;
    const auto lacks = [&](std::uint32_t place) { return counts[first + place] == 0 ? 1 : 0; };
    const VectorPair* nearest = nullptr;
    int fewest = 3;
    for (const VectorPair& pair : modified.pairs) {
        const int missing = lacks(pair.first) + lacks(pair.second);
        if (missing < fewest) {
            fewest = missing;
            nearest = &pair;
        }
    }
    return nearest;
}

bool isCaseLabel(const ConditionEntry& condition) {
    return condition.kind == ConditionKind::Single && unquoted(condition.text).starts_with("case ");
}

std::string_view unquoted(std::string_view text) {
    const bool isQuoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

} // namespace veldacov
