#pragma once

// Decisions of several conditions: their shape, the cases that evaluation can reach, and how their paths are numbered.
// Nothing here knows of Clang.
//
// A decision is a tree of operators over leaves, the basic conditions, counted from the left. There are two forms:
//
//   short circuit (&& || !)   a case is a path of the evaluation: T, F, or X where a condition is not looked at.
//                             `a && (b || c)` has TTX TFT | TFF FXX, those with the outcome true before the bar.
//   full (& | ^ !)            all conditions are evaluated; case k gives condition j the value of bit j of k.
//
// Paths of the first form are numbered after Ball and Larus: each condition has a constant that is added to a number on
// its false outcome, so that the number at the end is the rank of the path among all, T before F, the first condition
// first. In the example: a adds 3, b 1, c 1; TTX is 0, TFT 1, TFF 2, FXX 3. The rank among the paths of one outcome is
// then the place of the case in the table.

#include <cstdint>
#include <string>
#include <vector>

namespace veldacc {

enum class NodeKind : std::uint8_t { Leaf, Not, And, Or, Xor };

// One node of the tree; nodes stand in the order of a prefix walk, so that a tree is a vector.
struct DecisionNode {
    NodeKind kind = NodeKind::Leaf;
    std::uint32_t left = 0;  // index of the (first) operand
    std::uint32_t right = 0; // index of the second operand of And, Or, Xor
};

struct DecisionTree {
    std::vector<DecisionNode> nodes; // the root is the first
    bool fullEvaluation = false;     // & | ^, or forced
    bool forced = false;             // && and || evaluated fully: written with small letters
    std::uint32_t leafCount = 0;
};

// The short-circuit form worked out.
struct CaseTable {
    std::vector<std::uint64_t> falseStep; // for each condition what its false outcome adds to the path number
    std::string letters;                  // the cases, as the description has them: true ones first
    std::uint32_t frontier = 0;           // number of true cases
    std::vector<std::uint32_t> caseOfPath; // path number -> case
};

// Where evaluation goes on after a condition: to another one, by its number, or to one of the two ends.
constexpr std::uint32_t endTrue = 0xFFFFFFFEU;
constexpr std::uint32_t endFalse = 0xFFFFFFFFU;
constexpr bool isEnd(std::uint32_t place) {
    return place >= endTrue;
}

struct Branches {
    std::uint32_t onTrue = endTrue;
    std::uint32_t onFalse = endFalse;
};

// The two ways out of each condition of a short-circuit decision.
std::vector<Branches> findBranches(const DecisionTree& tree);

// Number of cases, saturated at 2^32.
std::uint64_t countCases(const DecisionTree& tree);

// The table of a short-circuit decision; `countCases` has been found small enough to be listed.
CaseTable makeCaseTable(const DecisionTree& tree);

// The prefix expression of a full-evaluation decision ("OA..N.").
std::string prefixExpression(const DecisionTree& tree);

} // namespace veldacc
