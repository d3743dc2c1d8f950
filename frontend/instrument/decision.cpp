#include "decision.h"

#include <algorithm>
#include <array>

namespace veldacc {

namespace {

constexpr std::uint64_t saturated = std::uint64_t{1} << 32U;

std::uint64_t saturatingAdd(std::uint64_t a, std::uint64_t b) {
    return std::min(a + b, saturated);
}
std::uint64_t saturatingMultiply(std::uint64_t a, std::uint64_t b) {
    return a != 0 && b > saturated / a ? saturated : std::min(a * b, saturated);
}

struct Ways {
    std::uint64_t toTrue = 1;
    std::uint64_t toFalse = 1;
};

// Operands stand behind their operator, so a walk from the last node to the first needs no recursion.
std::uint64_t countPaths(const DecisionTree& tree) {
    std::vector<Ways> ways(tree.nodes.size());
    for (std::size_t i = tree.nodes.size(); i-- > 0;) {
        const DecisionNode& node = tree.nodes[i];
        const Ways left = node.kind == NodeKind::Leaf ? Ways{} : ways[node.left];
        const Ways right = node.kind == NodeKind::Leaf ? Ways{} : ways[node.right];
        if (node.kind == NodeKind::Not) {
            ways[i] = {left.toFalse, left.toTrue};
        } else if (node.kind == NodeKind::And) {
            ways[i] = {saturatingMultiply(left.toTrue, right.toTrue),
                       saturatingAdd(left.toFalse, saturatingMultiply(left.toTrue, right.toFalse))};
        } else if (node.kind == NodeKind::Or) {
            ways[i] = {saturatingAdd(left.toTrue, saturatingMultiply(left.toFalse, right.toTrue)),
                       saturatingMultiply(left.toFalse, right.toFalse)};
        }
    }
    return saturatingAdd(ways[0].toTrue, ways[0].toFalse);
}

} // namespace

// The condition that each node begins with, and from it the two successors of every condition.
std::vector<Branches> findBranches(const DecisionTree& tree) {
    const std::size_t count = tree.nodes.size();
    std::vector<std::uint32_t> first(count);
    std::uint32_t leaf = tree.leafCount;
    for (std::size_t i = count; i-- > 0;) {
        first[i] = tree.nodes[i].kind == NodeKind::Leaf ? --leaf : first[tree.nodes[i].left];
    }
    std::vector<Branches> ofNode(count);
    std::vector<Branches> ofLeaf(tree.leafCount);
    for (std::size_t i = 0; i < count; ++i) {
        const DecisionNode& node = tree.nodes[i];
        const Branches here = ofNode[i];
        switch (node.kind) {
        case NodeKind::Leaf: ofLeaf[first[i]] = here; break;
        case NodeKind::Not: ofNode[node.left] = {here.onFalse, here.onTrue}; break;
        case NodeKind::And:
            ofNode[node.left] = {first[node.right], here.onFalse};
            ofNode[node.right] = here;
            break;
        default: ofNode[node.left] = {here.onTrue, first[node.right]}; ofNode[node.right] = here;
        }
    }
    return ofLeaf;
}

std::uint64_t countCases(const DecisionTree& tree) {
    if (!tree.fullEvaluation) {
        return countPaths(tree);
    }
    return tree.leafCount >= 32 ? saturated : std::uint64_t{1} << tree.leafCount;
}

CaseTable makeCaseTable(const DecisionTree& tree) {
    CaseTable table;
    const std::vector<Branches> branches = findBranches(tree);
    const std::uint32_t leaves = tree.leafCount;
    std::vector<std::uint64_t> paths(
        leaves); // from a condition to the ends; conditions go on to later ones only
    table.falseStep.resize(leaves);
    for (std::uint32_t i = leaves; i-- > 0;) {
        const std::uint64_t onTrue = isEnd(branches[i].onTrue) ? 1 : paths[branches[i].onTrue];
        const std::uint64_t onFalse = isEnd(branches[i].onFalse) ? 1 : paths[branches[i].onFalse];
        table.falseStep[i] = onTrue;
        paths[i] = onTrue + onFalse;
    }
    std::array<std::string, 2> byOutcome; // true, false
    std::vector<std::uint32_t> rank;
    std::vector<bool> outcome;
    std::array<std::uint32_t, 2> counted{};
    for (std::uint64_t path = 0; path < paths[0]; ++path) {
        std::string vector(leaves, 'X');
        std::uint64_t rest = path;
        std::uint32_t at = 0;
        while (!isEnd(at)) {
            const bool isTrue = rest < table.falseStep[at];
            if (!isTrue) {
                rest -= table.falseStep[at];
            }
            vector[at] = isTrue ? 'T' : 'F';
            at = isTrue ? branches[at].onTrue : branches[at].onFalse;
        }
        const std::size_t side = at == endTrue ? 0 : 1;
        byOutcome[side] += vector;
        outcome.push_back(side == 0);
        rank.push_back(counted[side]++);
    }
    table.letters = byOutcome[0] + byOutcome[1];
    table.frontier = counted[0];
    for (std::size_t path = 0; path < rank.size(); ++path) {
        table.caseOfPath.push_back(outcome[path] ? rank[path] : table.frontier + rank[path]);
    }
    return table;
}

std::string prefixExpression(const DecisionTree& tree) {
    std::string text;
    for (const DecisionNode& node : tree.nodes) {
        switch (node.kind) {
        case NodeKind::Leaf: text += '.'; break;
        case NodeKind::Not: text += 'N'; break;
        case NodeKind::And: text += tree.forced ? 'a' : 'A'; break;
        case NodeKind::Or: text += tree.forced ? 'o' : 'O'; break;
        case NodeKind::Xor: text += 'X'; break;
        }
    }
    return text;
}

} // namespace veldacc
