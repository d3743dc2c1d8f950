#include "view/evidence_join.h"

#include <algorithm>
#include <map>
#include <span>
#include <tuple>
#include <utility>

namespace veldacov {

namespace {

void joinFunctions(std::vector<FunctionEvidence>& all, const std::vector<FunctionEvidence>& more) {
    std::map<std::tuple<const NameEntry*, std::uint32_t>, std::size_t> places;
    for (std::size_t i = 0; i < all.size(); ++i) {
        places.try_emplace({all[i].name, all[i].line}, i);
    }
    for (const FunctionEvidence& function : more) {
        const auto [known, isNew] = places.try_emplace({function.name, function.line}, all.size());
        if (isNew) {
            all.push_back(function);
        } else {
            all[known->second].count = std::max(all[known->second].count, function.count);
        }
    }
}

void joinLines(std::vector<LineEvidence>& all, const std::vector<LineEvidence>& more) {
    std::map<std::uint32_t, std::uint32_t> counts;
    const auto take = [&](const LineEvidence& line) {
        std::uint32_t& count = counts[line.line];
        count = std::max(count, line.count);
    };
    std::for_each(all.begin(), all.end(), take);
    std::for_each(more.begin(), more.end(), take);
    all.clear();
    for (const auto& [line, count] : counts) {
        all.push_back({line, count});
    }
}

// A branch, by what it says: line, text, which of those with one text.
using BranchKey = std::tuple<std::uint32_t, std::string_view, std::uint32_t>;
std::vector<BranchKey> keysOf(const std::vector<BranchEvidence>& branches) {
    std::map<std::tuple<std::uint32_t, std::string_view>, std::uint32_t> times;
    std::vector<BranchKey> keys;
    keys.reserve(branches.size());
    for (const BranchEvidence& branch : branches) {
        keys.emplace_back(branch.line, branch.text, times[{branch.line, branch.text}]++);
    }
    return keys;
}

// Branches that both have are one; others of the second description are decisions of their own.
void joinBranches(std::vector<BranchEvidence>& all, const std::vector<BranchEvidence>& more) {
    std::map<BranchKey, std::size_t> places;
    std::map<std::uint32_t, std::uint32_t> decisions; // on each line
    const std::vector<BranchKey> known = keysOf(all);
    for (std::size_t i = 0; i < all.size(); ++i) {
        places.emplace(known[i], i);
        decisions[all[i].line] = all[i].decision + 1;
    }
    const std::vector<BranchKey> keys = keysOf(more);
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> added; // by line and their own number
    for (std::size_t i = 0; i < more.size(); ++i) {
        const auto same = places.find(keys[i]);
        if (same == places.end()) {
            std::uint32_t& next = decisions[more[i].line];
            const auto [decision, isNew] = added.try_emplace({more[i].line, more[i].decision}, next);
            next += isNew ? 1 : 0;
            all.push_back(more[i]);
            all.back().decision = decision->second;
            continue;
        }
        BranchEvidence& branch = all[same->second];
        branch.count = std::max(branch.count, more[i].count);
        branch.evaluated = branch.evaluated || more[i].evaluated;
    }
    sortByLine(all);
}

// A decision, by what it says: line, texts of its conditions, which of those with the same ones.
using DecisionKey = std::tuple<std::uint32_t, std::vector<std::string_view>, std::uint32_t>;
// Of the decisions that the proofs are of, in their order.
std::vector<DecisionKey> decisionsOf(const std::vector<ProofEvidence>& proofs) {
    std::map<std::pair<std::uint32_t, std::vector<std::string_view>>, std::uint32_t> times;
    std::vector<DecisionKey> keys;
    for (std::size_t first = 0; first < proofs.size(); first += proofs[first].conditions) {
        std::vector<std::string_view> texts;
        for (std::size_t i = first; i < first + proofs[first].conditions; ++i) {
            texts.push_back(proofs[i].text);
        }
        const std::uint32_t time = times[{proofs[first].line, texts}]++;
        keys.emplace_back(proofs[first].line, std::move(texts), time);
    }
    return keys;
}

// Decisions that both have are one, which either may prove; others of the second description are added whole.
void joinProofs(std::vector<ProofEvidence>& all, const std::vector<ProofEvidence>& more) {
    std::map<DecisionKey, std::size_t> places;
    std::size_t first = 0;
    for (const DecisionKey& decision : decisionsOf(all)) {
        places.emplace(decision, first);
        first += all[first].conditions;
    }
    first = 0;
    for (const DecisionKey& decision : decisionsOf(more)) {
        const std::span<const ProofEvidence> proofs(more.data() + first, more[first].conditions);
        const auto same = places.find(decision);
        if (same == places.end()) {
            all.insert(all.end(), proofs.begin(), proofs.end());
        } else {
            for (std::size_t i = 0; i < proofs.size(); ++i) {
                bool& proven = all[same->second + i].proven;
                proven = proven || proofs[i].proven;
            }
        }
        first += proofs.size();
    }
    sortByLine(all);
}

} // namespace

void joinEvidence(SourceEvidence& all, const SourceEvidence& more) {
    joinFunctions(all.functions, more.functions);
    joinLines(all.lines, more.lines);
    joinBranches(all.branches, more.branches);
    joinProofs(all.proofs, more.proofs);
}

void sortByLine(std::vector<BranchEvidence>& branches) {
    const auto comesFirst = [](const BranchEvidence& left, const BranchEvidence& right) {
        return std::tie(left.line, left.decision) < std::tie(right.line, right.decision);
    };
    if (!std::is_sorted(branches.begin(), branches.end(), comesFirst)) {
        std::stable_sort(branches.begin(), branches.end(), comesFirst);
    }
}

void sortByLine(std::vector<ProofEvidence>& proofs) {
    std::stable_sort(proofs.begin(), proofs.end(), [](const ProofEvidence& left, const ProofEvidence& right) {
        return left.line < right.line;
    });
}

} // namespace veldacov
