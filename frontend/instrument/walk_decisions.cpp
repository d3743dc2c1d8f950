// Decisions: the tree of operators, the conditions, the cases and how they are counted.
//
//     a && (b || c)   becomes   ((l=0,A && (B || C))?(n[l]++,1):(n[l]++,0))      with  a  as  ((a)?(1):(l+=3,0))
//
// where l is a local and n[0..3] count the paths. What the outcomes of a, b and c are is added up from the paths when
// nothing in the decision can leave it in the middle; else each condition counts its outcomes, too.

#include <algorithm>
#include <array>

#include "source_text.h"
#include "walk.h"

namespace veldacc {

namespace {

using clang::Expr;

constexpr std::size_t mostTerms = 16;        // of a formula that stands for a block
constexpr std::size_t mostTableCells = 4096; // conditions times cases, to add outcomes up from cases

// The x of __extension__ x and __builtin_expect(x, c); none for others.
const Expr* wrappedValue(const Expr* e) {
    if (const auto* unary = llvm::dyn_cast<clang::UnaryOperator>(e)) {
        return unary->getOpcode() == clang::UO_Extension ? unary->getSubExpr() : nullptr;
    }
    const auto* call = llvm::dyn_cast<clang::CallExpr>(e);
    const clang::FunctionDecl* callee = call != nullptr ? call->getDirectCallee() : nullptr;
    return callee != nullptr && callee->getIdentifier() != nullptr &&
                   callee->getName().starts_with("__builtin_expect") && call->getNumArgs() >= 2
               ? call->getArg(0)
               : nullptr;
}

// A condition behind all that it is looked at through: what stands in the source, parentheses included, and the
// operator or operand within them.
struct Seen {
    const Expr* written;
    const Expr* core;
};
Seen see(const Expr* e) {
    for (;;) {
        const Expr* core = e->IgnoreParenImpCasts();
        while (const auto* constant = llvm::dyn_cast<clang::ConstantExpr>(core)) {
            core = constant->getSubExpr()->IgnoreParenImpCasts();
        }
        const Expr* value = wrappedValue(core);
        if (value == nullptr) {
            return {e, core};
        }
        e = value;
    }
}

const Expr* lookThrough(const Expr* e) {
    return see(e).core;
}

const clang::UnaryOperator* asNot(const Expr* e) {
    const auto* unary = llvm::dyn_cast<clang::UnaryOperator>(e);
    return unary != nullptr && unary->getOpcode() == clang::UO_LNot ? unary : nullptr;
}

bool isBitOperator(const clang::BinaryOperator* e) {
    return e->getOpcode() == clang::BO_And || e->getOpcode() == clang::BO_Or ||
           e->getOpcode() == clang::BO_Xor;
}

// Whether a value is 0 or 1 by its making.
bool isTruthValue(const Expr* e) {
    e = lookThrough(e);
    if (!e->getType()->isIntegerType()) { // comparisons of vectors are vectors
        return false;
    }
    if (e->getType()->isBooleanType() || asNot(e) != nullptr) {
        return true;
    }
    const auto* binary = llvm::dyn_cast<clang::BinaryOperator>(e);
    if (binary == nullptr) {
        return false;
    }
    if (isBitOperator(binary)) {
        return isTruthValue(binary->getLHS()) && isTruthValue(binary->getRHS());
    }
    return binary->isLogicalOp() || binary->isComparisonOp();
}

// Reads of objects, and what compilers answer differently, make no constant condition.
bool isFixed(const clang::Stmt* e) {
    if (const auto* call = llvm::dyn_cast<clang::CallExpr>(e); call != nullptr) {
        return false;
    }
    if (const auto* cast = llvm::dyn_cast<clang::CastExpr>(e);
        cast != nullptr && cast->getCastKind() == clang::CK_LValueToRValue) {
        return false;
    }
    if (llvm::isa<clang::StmtExpr>(e)) {
        return false;
    }
    if (llvm::isa<clang::UnaryExprOrTypeTraitExpr>(e)) {
        return true;
    }
    return std::all_of(e->child_begin(), e->child_end(),
                       [](const clang::Stmt* child) { return child == nullptr || isFixed(child); });
}

std::optional<bool> constantValue(const Expr* e, const clang::ASTContext& context) {
    if (e->isValueDependent() || e->containsErrors() || !isFixed(e)) {
        return std::nullopt;
    }
    bool value = false;
    return e->EvaluateAsBooleanCondition(value, context) && !e->HasSideEffects(context) ? std::optional(value)
                                                                                        : std::nullopt;
}

} // namespace

bool FunctionWalk::isLogical(const Expr* e) {
    const auto* binary = llvm::dyn_cast<clang::BinaryOperator>(e);
    return binary != nullptr && binary->isLogicalOp() && isDescribed(binary->getOperatorLoc());
}

bool FunctionWalk::isTruthOperator(const Expr* e) {
    const auto* binary = llvm::dyn_cast<clang::BinaryOperator>(e);
    return binary != nullptr && isBitOperator(binary) && isTruthValue(binary->getLHS()) &&
           isTruthValue(binary->getRHS()) && isDescribed(binary->getOperatorLoc());
}

bool FunctionWalk::startsDecision(const Expr* e) {
    return isLogical(e) || isTruthOperator(e);
}

// Nodes in prefix order; the walk keeps its own stack, since conditions can be very long.
void FunctionWalk::buildTree(const Expr* root, DecisionTree& tree, std::vector<Condition>& conditions) {
    struct Open {
        const Expr* expression;
        std::uint32_t parent;
        bool isRight;
    };
    std::vector<Open> open = {{root, 0, false}};
    std::optional<bool> full; // the form, settled by the outermost operator
    while (!open.empty()) {
        const Open now = open.back();
        open.pop_back();
        const auto index = static_cast<std::uint32_t>(tree.nodes.size());
        if (index != 0) {
            (now.isRight ? tree.nodes[now.parent].right : tree.nodes[now.parent].left) = index;
        }
        tree.nodes.push_back({});
        const Seen seen = see(now.expression);
        const Expr* e = seen.core;
        const bool logical = isLogical(e);
        const bool bitwise = !logical && isTruthOperator(e);
        if (const clang::UnaryOperator* negation = asNot(e)) {
            tree.nodes[index].kind = NodeKind::Not;
            open.push_back({negation->getSubExpr(), index, false});
        } else if ((logical || bitwise) && full.value_or(bitwise) == bitwise) {
            full = bitwise;
            const auto* binary = llvm::cast<clang::BinaryOperator>(e);
            const clang::BinaryOperatorKind code = binary->getOpcode();
            tree.nodes[index].kind = code == clang::BO_Xor                             ? NodeKind::Xor
                                     : code == clang::BO_LAnd || code == clang::BO_And ? NodeKind::And
                                                                                       : NodeKind::Or;
            open.push_back({binary->getRHS(), index, true});
            open.push_back({binary->getLHS(), index, false});
        } else {
            conditions.push_back({seen.written, constantValue(seen.written, context), 0, 0, {}});
        }
    }
    tree.fullEvaluation = full.value_or(false);
    tree.leafCount = static_cast<std::uint32_t>(conditions.size());
    for (Condition& condition : conditions) {
        condition.firstToken = first(condition.expression);
        condition.lastToken = tokenAt(condition.expression->getEndLoc(), condition.expression);
    }
}

void FunctionWalk::describeConditions(std::vector<Condition>& conditions) {
    for (Condition& condition : conditions) {
        const Lines lines = linesOf(condition.firstToken, condition.lastToken);
        const std::string text =
            withoutOuterParentheses(spelling(unit, condition.firstToken, condition.lastToken));
        condition.item =
            condition.constant ? addOneOutcome(service, text, lines) : addTwoOutcomes(service, text, lines);
    }
}

void FunctionWalk::surroundCondition(const Condition& condition, const std::string& whenTrue,
                                     const std::string& whenFalse) {
    if (whenTrue.empty() && whenFalse.empty()) {
        return;
    }
    const auto arm = [](const std::string& hits, char value) {
        return hits.empty() ? std::string(1, value) : '(' + hits + ',' + value + ')';
    };
    surround(edits, condition.firstToken, condition.lastToken, "((",
             ")?" + arm(whenTrue, '1') + ':' + arm(whenFalse, '0') + ')');
}

// Counts each outcome where it happens. Constant conditions stay as they are, so that compilers see them: they are hit on
// the ways that lead to them. What evaluation begins with is given back.
std::string FunctionWalk::countConditions(const DecisionTree& tree,
                                          const std::vector<Condition>& conditions) {
    const auto join = [](std::string a, const std::string& b) {
        return a.empty() || b.empty() ? a + b : a + ',' + b;
    };
    std::vector<std::string> constantHits;
    std::string all;
    for (const Condition& condition : conditions) {
        constantHits.push_back(condition.constant ? hit(std::array{condition.item}) : std::string{});
        all = join(all, constantHits.back());
    }
    const std::vector<Branches> branches =
        tree.fullEvaluation ? std::vector<Branches>(conditions.size()) : findBranches(tree);
    const auto hitsFrom = [&](std::uint32_t place) {
        std::string hits;
        for (; !isEnd(place) && conditions[place].constant;
             place = *conditions[place].constant ? branches[place].onTrue : branches[place].onFalse) {
            hits = join(hits, constantHits[place]);
        }
        return hits;
    };
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        if (!conditions[i].constant) {
            surroundCondition(conditions[i],
                              join(hit(std::array{conditions[i].item}), hitsFrom(branches[i].onTrue)),
                              join(hit(std::array{next(conditions[i].item)}), hitsFrom(branches[i].onFalse)));
        }
    }
    return tree.fullEvaluation ? all : hitsFrom(0);
}

// Puts hits before an expression.
void FunctionWalk::hitBefore(const Expr* e, const std::string& hits) {
    if (!hits.empty()) {
        surround(edits, first(e), tokenAt(e->getEndLoc(), e), "(" + hits + ",(", "))");
    }
}

// The value of a condition that is a single constant one.
std::optional<bool> FunctionWalk::constantCondition(const Expr* e) {
    DecisionTree tree;
    std::vector<Condition> conditions;
    buildTree(e, tree, conditions);
    const bool negated = (tree.nodes.size() - 1) % 2 != 0;
    if (conditions.size() != 1 || !conditions[0].constant) {
        return std::nullopt;
    }
    return *conditions[0].constant != negated;
}

DecisionResult FunctionWalk::singleCondition(const DecisionTree& tree, const Condition& condition,
                                             ArmProbes arms) {
    DecisionResult result;
    const bool negated = (tree.nodes.size() - 1) % 2 != 0; // only Nots above the one leaf
    if (condition.constant) {
        const bool value = *condition.constant != negated;
        if (arms == ArmProbes::Both) {
            (value ? result.hitWhenTrue : result.hitWhenFalse) = {condition.item};
        } else {
            result.atEntry = hit(std::array{condition.item});
        }
        return result;
    }
    const ItemRef isTrue = negated ? next(condition.item) : condition.item;
    const ItemRef isFalse = negated ? condition.item : next(condition.item);
    const bool armsCount = arms != ArmProbes::None && target.counters.way == Counting::Shared;
    if (armsCount) {
        result.hitWhenTrue = {isTrue};
    }
    if (armsCount && arms == ArmProbes::Both) {
        result.hitWhenFalse = {isFalse};
    }
    const std::string trueText = armsCount ? std::string{} : hit(std::array{isTrue});
    const std::string falseText =
        armsCount && arms == ArmProbes::Both ? std::string{} : hit(std::array{isFalse});
    surroundCondition(condition, negated ? falseText : trueText, negated ? trueText : falseText);
    return result;
}

DecisionResult FunctionWalk::decision(const Expr* e, ArmProbes arms) {
    DecisionTree tree;
    std::vector<Condition> conditions;
    buildTree(e, tree, conditions);
    describeConditions(conditions);
    DecisionResult result;
    const bool isComposed = conditions.size() > 1 && compose(e, tree, conditions, result);
    if (!isComposed && conditions.size() == 1) {
        result = singleCondition(tree, conditions[0], arms);
    } else if (!isComposed) {
        result.atEntry = countConditions(tree, conditions);
    }
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        if (i == 0 || tree.fullEvaluation) {
            expression(conditions[i].expression);
        } else {
            maybeEvaluated(conditions[i].expression);
        }
    }
    return result;
}

// Describes and counts the composition; false when there is none, and its conditions are still to be counted.
bool FunctionWalk::compose(const Expr* root, DecisionTree& tree, std::vector<Condition>& conditions,
                           DecisionResult& result) {
    const auto isConstant = [](const Condition& condition) { return condition.constant.has_value(); };
    if (std::any_of(conditions.begin(), conditions.end(), isConstant) || (service.types & typeCC) == 0) {
        return false;
    }
    const TokenRange range{first(root), tokenAt(root->getEndLoc(), root)};
    if (unit.settings.forced && !tree.fullEvaluation && canBeForced(tree, conditions)) {
        DecisionTree forced = tree;
        forced.fullEvaluation = forced.forced = true;
        if (countCases(forced) <= unit.settings.maxCases) {
            tree = forced;
            useFullOperators(root);
        }
    }
    if (countCases(tree) > unit.settings.maxCases) {
        const Place place = placeWithin(unit.marks, placeOfToken(unit, range.first), instance);
        remarks.push_back({NoticeKind::CasesLeft,
                           {unit.marks.instances[instance].name, std::to_string(place.line),
                            std::to_string(conditions.size()), std::to_string(unit.settings.maxCases)}});
        return false;
    }
    if (tree.fullEvaluation) {
        composeExpression(tree, conditions, range);
    } else {
        composeTable(tree, conditions, range, mayLeave(root), result);
    }
    return true;
}

void FunctionWalk::composeTable(const DecisionTree& tree, const std::vector<Condition>& conditions,
                                TokenRange range, bool leaves, DecisionResult& result) {
    const CaseTable table = makeCaseTable(tree);
    const auto cases = static_cast<std::uint32_t>(table.caseOfPath.size());
    std::vector<std::uint32_t> ids;
    for (const Condition& condition : conditions) {
        ids.push_back(condition.item.id);
    }
    const ItemRef first =
        addComposition(service, ids, cases, table.letters + ' ' + std::to_string(table.frontier));

    const std::uint32_t counter = reserveCounters(target, cases);
    std::vector<std::uint32_t> counterOfCase(cases);
    for (std::uint32_t path = 0; path < cases; ++path) {
        counterOfCase[table.caseOfPath[path]] = counter + path;
    }
    const bool shared = target.counters.way == Counting::Shared;
    if (target.counters.way != Counting::Ordered) {
        for (std::uint32_t i = 0; i < cases; ++i) {
            giveFormula(target, std::array{ItemRef{first.kind, first.id + i, true}},
                        std::array{counterOfCase[i]});
        }
    }

    const bool addUp = shared && !leaves && std::size_t{cases} * conditions.size() <= mostTableCells;
    const std::string path = newLocal();
    const std::string hits =
        pathHitText(target, first, counter,
                    scan.hasSetjmp ? '(' + path + '<' + std::to_string(cases) + "u?" + path + ":0u)" : path,
                    table.caseOfPath);
    surround(edits, range.first, range.last, "((" + path + "=0u,(", "))?(" + hits + ",1):(" + hits + ",0))");
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        std::string whenTrue = addUp ? std::string{} : hit(std::array{conditions[i].item});
        std::string whenFalse = addUp ? std::string{} : hit(std::array{next(conditions[i].item)}) + ',';
        if (addUp) {
            for (std::uint32_t k = 0; k < cases; ++k) {
                const char letter = table.letters[k * conditions.size() + i];
                if (letter != 'X') {
                    giveFormula(target,
                                std::array{letter == 'T' ? conditions[i].item : next(conditions[i].item)},
                                std::array{counterOfCase[k]});
                }
            }
        }
        whenFalse += path + "+=" + std::to_string(table.falseStep[i]) + 'u';
        surroundCondition(conditions[i], whenTrue, whenFalse);
    }
    if (!shared) {
        return;
    }
    if (table.frontier <= mostTerms) {
        result.whenTrue.emplace(counterOfCase.begin(), counterOfCase.begin() + table.frontier);
    }
    if (cases - table.frontier <= mostTerms) {
        result.whenFalse.emplace(counterOfCase.begin() + table.frontier, counterOfCase.end());
    }
}

void FunctionWalk::composeExpression(const DecisionTree& tree, const std::vector<Condition>& conditions,
                                     TokenRange range) {
    const std::uint32_t cases = 1U << conditions.size();
    std::vector<std::uint32_t> ids;
    for (const Condition& condition : conditions) {
        ids.push_back(condition.item.id);
    }
    const ItemRef first = addComposition(service, ids, cases, prefixExpression(tree));
    const std::uint32_t counter = reserveCounters(target, cases);
    if (target.counters.way != Counting::Ordered) {
        for (std::uint32_t i = 0; i < cases; ++i) {
            giveFormula(target, std::array{ItemRef{first.kind, first.id + i, true}}, std::array{counter + i});
        }
    }

    // Operands of & and | have no order: each has a local of its own, put together at the end.
    std::string index;
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        const std::string bit = newLocal();
        const std::string value = "((" + bit + "&1u)<<" + std::to_string(i) + ')';
        index += (index.empty() ? "(" : "|") + value;
        const std::string whenTrue = hit(std::array{conditions[i].item});
        const std::string whenFalse = hit(std::array{next(conditions[i].item)});
        surroundCondition(conditions[i], whenTrue + ',' + bit + "=1u", whenFalse + ',' + bit + "=0u");
    }
    const std::string hits = indexedHitText(target, first, counter, index + ')');
    surround(edits, range.first, range.last, "((", ")?(" + hits + ",1):(" + hits + ",0))");
}

namespace {

// The pointers, by declaration, that an expression surely goes through.
void addDereferenced(const clang::Stmt* e, std::vector<const clang::ValueDecl*>& pointers) {
    if (const auto* member = llvm::dyn_cast<clang::MemberExpr>(e); member != nullptr && member->isArrow()) {
        if (const auto* base = llvm::dyn_cast<clang::DeclRefExpr>(member->getBase()->IgnoreParenImpCasts())) {
            pointers.push_back(base->getDecl());
        }
    }
    for (const clang::Stmt* child : e->children()) {
        if (child != nullptr) {
            addDereferenced(child, pointers);
        }
    }
}

// Whether evaluating an expression that the program would have skipped can neither change nor break anything.
bool isHarmless(const clang::Stmt* e, const std::vector<const clang::ValueDecl*>& known, bool overflowTraps) {
    const auto* value = llvm::dyn_cast<Expr>(e);
    if (value == nullptr || value->getType().isVolatileQualified()) {
        return false;
    }
    if (llvm::isa<clang::IntegerLiteral, clang::CharacterLiteral, clang::FloatingLiteral>(e)) {
        return true;
    }
    if (llvm::isa<clang::DeclRefExpr>(e)) {
        return true;
    }
    if (const auto* member = llvm::dyn_cast<clang::MemberExpr>(e)) {
        if (!member->isArrow()) {
            return isHarmless(member->getBase(), known, overflowTraps);
        }
        const auto* base = llvm::dyn_cast<clang::DeclRefExpr>(member->getBase()->IgnoreParenImpCasts());
        return base != nullptr && std::find(known.begin(), known.end(), base->getDecl()) != known.end();
    }
    if (const auto* unary = llvm::dyn_cast<clang::UnaryOperator>(e)) {
        const clang::UnaryOperatorKind code = unary->getOpcode();
        return (code == clang::UO_LNot || code == clang::UO_Not || code == clang::UO_Extension) &&
               isHarmless(unary->getSubExpr(), known, overflowTraps);
    }
    if (const auto* binary = llvm::dyn_cast<clang::BinaryOperator>(e)) {
        // Of signed numbers, too: an overflow stays unseen unless the compiler was asked to look for it.
        const bool computes = binary->isAdditiveOp() && binary->getType()->isIntegerType() &&
                              (!overflowTraps || binary->getType()->isUnsignedIntegerType());
        return (binary->isComparisonOp() || binary->isLogicalOp() || isBitOperator(binary) || computes) &&
               isHarmless(binary->getLHS(), known, overflowTraps) &&
               isHarmless(binary->getRHS(), known, overflowTraps);
    }
    if (llvm::isa<clang::ParenExpr, clang::ImplicitCastExpr, clang::CStyleCastExpr, clang::ConstantExpr>(e)) {
        return isHarmless(*e->child_begin(), known, overflowTraps);
    }
    return false;
}

} // namespace

bool FunctionWalk::canBeForced(const DecisionTree&, const std::vector<Condition>& conditions) {
    std::vector<const clang::ValueDecl*> known;
    addDereferenced(conditions[0].expression, known);
    return std::all_of(conditions.begin(), conditions.end(), [&](const Condition& condition) {
        return isHarmless(condition.expression, known, unit.settings.overflowTraps);
    });
}

// && and || of the decision become & and |; its conditions are 0 or 1 by then.
void FunctionWalk::useFullOperators(const Expr* root) {
    std::vector<const Expr*> open = {root};
    while (!open.empty()) {
        const Expr* e = lookThrough(open.back());
        open.pop_back();
        if (const clang::UnaryOperator* negation = asNot(e)) {
            open.push_back(negation->getSubExpr());
        } else if (isLogical(e)) {
            const auto* binary = llvm::cast<clang::BinaryOperator>(e);
            edits.replacements.push_back(
                {tokenAt(binary->getOperatorLoc(), e), binary->getOpcode() == clang::BO_LAnd ? "&" : "|"});
            open.push_back(binary->getLHS());
            open.push_back(binary->getRHS());
        }
    }
}

} // namespace veldacc
