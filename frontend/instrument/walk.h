#pragma once

// The walk over one function: what it finds becomes items of the description, and for each item a probe. Its parts stand
// in files of their own: walk_statements, walk_loops, walk_jumps, walk_expressions, walk_decisions; walk has what they
// share.
//
// What always holds:
//   - A probe stands where the thing that it counts happens, in the order in which things happen.
//   - Text is put around whole statements and expressions only; nothing is moved. A statement keeps being one statement.
//   - `here` names the counters whose sum is the number of times that control has come to this place, where that is
//     known: from the start of a block up to the first thing that could leave (a call), join or branch. An item hit
//     there needs no counter of its own.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "decision.h"
#include "notices.h"
#include "scan.h"
#include "unit.h"

namespace veldacc {

// A loop that is described: how to count that it is left.
struct DescribedLoop {
    TokenRange range;
    std::string turns;   // the local that counts its turns: 0, 1, more
    ItemRef first;       // ..._0, or ..._1 where there is none
    bool hasZero = true; // whether it can be left after no turn
    std::uint32_t counter = 0;
    bool counted = false; // false: no such items
};

// A group of case labels: control can also come into its middle, by goto.
struct DescribedGroup {
    TokenRange inside; // behind the labels
    ItemRef item;
};

struct OpenSwitch {
    std::uint32_t first = 0; // token
    std::uint32_t last = 0;
    std::vector<std::uint32_t> labels; // their keywords
};

// A goto whose effects are settled at the end of the function, when all groups are known.
struct OpenJump {
    std::size_t surrounding = 0; // in the edits
    std::uint32_t from = 0;
    std::uint32_t to = 0;
    std::string before; // ways out of loops
};

// A basic condition of a decision.
struct Condition {
    const clang::Expr* expression = nullptr;
    std::optional<bool> constant; // its value, where it is constant
    std::uint32_t firstToken = 0;
    std::uint32_t lastToken = 0;
    ItemRef item; // the true outcome of two, or the one outcome
};

// What the arms of a decision may use instead of probes in the condition.
enum class ArmProbes : std::uint8_t { None, True, Both };

struct DecisionResult {
    std::vector<ItemRef> hitWhenTrue; // left to the arms
    std::vector<ItemRef> hitWhenFalse;
    std::optional<std::vector<std::uint32_t>> whenTrue; // counters whose sum is the number of times it was so
    std::optional<std::vector<std::uint32_t>> whenFalse;
    std::string
        atEntry; // hits of constant conditions that evaluation begins with, for the caller to put before it
};

// The expression with its semicolon; nothing for an empty one.
std::string asStatement(const std::string& expression);

// The last token of what has to stand first in a block: its brace, and `__label__ a, b;` behind it.
std::uint32_t behindLocalLabels(const Unit& unit, std::uint32_t brace);

// Begins a statement expression that keeps the value of an expression in velda_v; bit-fields have no type of their own.
std::string valueOpening(const clang::Expr* value);

class FunctionWalk {
public:
    FunctionWalk(const Unit& unit, Edits& edits, HitTarget& target, Service service, std::uint32_t instance);

    // Describes and instruments; throws CannotInstrument, and then what it has added has to be taken back.
    void run(const clang::FunctionDecl* function);

    std::vector<Notice> remarks; // compositions left out

private:
    using Here = std::optional<std::vector<std::uint32_t>>;

    // Statements
    void statement(const clang::Stmt* s);
    void ifStatement(const clang::IfStmt* s, bool isElseIf);
    std::optional<bool> constantCondition(const clang::Expr* e);
    void thenArm(const clang::IfStmt* s, const std::vector<ItemRef>& items, const Here& known,
                 const std::string& close);
    void elseArm(const clang::IfStmt* s, std::vector<ItemRef> items, const Here& known, bool describesElseIf);
    void setjmpIf(const clang::IfStmt* s, bool comesBackToThen, bool isElseIf);
    void whileStatement(const clang::WhileStmt* s);
    void doStatement(const clang::DoStmt* s);
    void forStatement(const clang::ForStmt* s);
    void switchStatement(const clang::SwitchStmt* s);
    void labels(const clang::Stmt* s);
    void returnStatement(const clang::ReturnStmt* s);
    void gotoStatement(const clang::GotoStmt* s);
    void computedGoto(const clang::IndirectGotoStmt* s);
    void fallThrough(const clang::AttributedStmt* s);
    // The statement under a condition: gets braces and a probe at its start.
    void arm(const clang::Stmt* s, const std::string& atStart, const std::string& close = {});
    void loopBody(const clang::Stmt* body, const DescribedLoop& loop, std::span<const ItemRef> items,
                  const Here& known);
    DescribedLoop describeLoop(const clang::Stmt* s, const std::string& label, bool hasZero, bool hasItems);
    std::string leavingText(const DescribedLoop& loop);
    void closeLoop(const clang::Stmt* s, const DescribedLoop& loop, const std::string& before);
    std::string leaveAllLoops();
    std::string enterLoops(std::uint32_t from, std::uint32_t to);
    void settleJumps();

    // Expressions
    void fullExpression(const clang::Expr* e);
    void expression(const clang::Stmt* e);
    void call(const clang::CallExpr* e);
    void conditional(const clang::ConditionalOperator* e);
    void binaryConditional(const clang::BinaryConditionalOperator* e);
    void statementExpression(const clang::StmtExpr* e);
    void maybeEvaluated(const clang::Stmt* e); // an operand that may be skipped
    bool startsDecision(const clang::Expr* e);

    // Decisions
    DecisionResult decision(const clang::Expr* e, ArmProbes arms);
    void buildTree(const clang::Expr* e, DecisionTree& tree, std::vector<Condition>& conditions);
    bool isLogical(const clang::Expr* e);
    bool isTruthOperator(const clang::Expr* e);
    void describeConditions(std::vector<Condition>& conditions);
    std::string countConditions(const DecisionTree& tree, const std::vector<Condition>& conditions);
    void hitBefore(const clang::Expr* e, const std::string& hits);
    DecisionResult singleCondition(const DecisionTree& tree, const Condition& condition, ArmProbes arms);
    void surroundCondition(const Condition& condition, const std::string& whenTrue,
                           const std::string& whenFalse);
    bool compose(const clang::Expr* root, DecisionTree& tree, std::vector<Condition>& conditions,
                 DecisionResult& result);
    void composeTable(const DecisionTree& tree, const std::vector<Condition>& conditions, TokenRange range,
                      bool leaves, DecisionResult& result);
    void composeExpression(const DecisionTree& tree, const std::vector<Condition>& conditions,
                           TokenRange range);
    bool canBeForced(const DecisionTree& tree, const std::vector<Condition>& conditions);
    void useFullOperators(const clang::Expr* e);

    // Probes
    std::string hit(std::span<const ItemRef> items); // an expression, or nothing
    std::string hitStatement(std::span<const ItemRef> items);
    std::string reach(std::span<const ItemRef> items); // hits that are certain at this place
    std::string enter(std::span<const ItemRef> items, const Here& known); // at the start of a block
    std::string newLocal();

    // Places
    std::uint32_t first(const clang::Stmt* s);
    std::uint32_t last(const clang::Stmt* s);
    std::uint32_t tokenAt(clang::SourceLocation location, const clang::Stmt* of);
    bool isDescribed(clang::SourceLocation keyword);
    Lines linesOf(std::uint32_t firstToken, std::uint32_t lastToken);
    Lines linesOf(const clang::Stmt* s);
    std::string textOf(const clang::Stmt* s);

    const Unit& unit;
    Edits& edits;
    HitTarget& target;
    Service service;
    std::uint32_t instance; // of the file that the function stands in
    clang::ASTContext& context;
    FunctionScan scan;
    Here here;
    std::uint32_t locals = 0;
    std::vector<DescribedLoop> openLoops;
    std::vector<OpenSwitch> openSwitches;
    std::vector<DescribedGroup> groups;
    std::vector<OpenJump> jumps;
    std::vector<std::pair<const clang::Stmt*, std::string>> turnLocals; // of each loop
    int callsInExpression = 0; // of the full expression being walked; 0: none is certain to come first
    int callsAround = 0;       // those that the present place is an operand of
};

} // namespace veldacc
