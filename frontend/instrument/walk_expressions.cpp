// Expressions: calls, `?:`, statement expressions; what else they hold is walked through in the order of the source.

#include "source_text.h"
#include "walk.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace veldacc {

namespace {

// Functions that do not come back even where their declaration does not say so.
constexpr std::array<std::string_view, 9> leavingNames = {
    "exit", "_exit", "_Exit", "quick_exit", "abort", "longjmp", "_longjmp", "siglongjmp", "__longjmp_chk"};

bool neverReturns(const clang::CallExpr* call) {
    if (const clang::FunctionDecl* callee = call->getDirectCallee()) {
        if (callee->isNoReturn()) {
            return true;
        }
        return callee->getIdentifier() != nullptr &&
               std::find(leavingNames.begin(), leavingNames.end(), std::string_view(callee->getName())) !=
                   leavingNames.end();
    }
    clang::QualType type = call->getCallee()->getType();
    if (const auto* pointer = type->getAs<clang::PointerType>()) {
        type = pointer->getPointeeType();
    }
    const auto* function = type->getAs<clang::FunctionType>();
    return function != nullptr && function->getNoReturnAttr();
}

int countCalls(const clang::Stmt* e) {
    int count = 0;
    if (const auto* call = llvm::dyn_cast<clang::CallExpr>(e)) {
        count += isBuiltinCall(call) ? 0 : 1;
    }
    if (llvm::isa<clang::StmtExpr>(e)) {
        count += 2; // whatever is in it
    }
    for (const clang::Stmt* part : evaluatedParts(e)) {
        if (part != nullptr) {
            count += countCalls(part);
        }
    }
    return count;
}

// Whether a pointer may point into an object that the expression itself makes: a compound literal, or an array in the
// value that a function returns. A statement expression around it would end the object's life too early.
bool pointsIntoItself(const clang::Expr* pointer) {
    const auto makesObject = [](const auto& self, const clang::Stmt* e) -> bool {
        if (llvm::isa<clang::CompoundLiteralExpr>(e)) {
            return true;
        }
        if (const auto* cast = llvm::dyn_cast<clang::CastExpr>(e);
            cast != nullptr && cast->getCastKind() == clang::CK_ArrayToPointerDecay &&
            !cast->getSubExpr()->isLValue()) {
            return true;
        }
        const std::vector<const clang::Stmt*> parts = evaluatedParts(e);
        return !llvm::isa<clang::StmtExpr>(e) &&
               std::any_of(parts.begin(), parts.end(),
                           [&](const clang::Stmt* part) { return part != nullptr && self(self, part); });
    };
    return pointer->getType()->isPointerType() && makesObject(makesObject, pointer);
}

} // namespace

std::string valueOpening(const clang::Expr* value) {
    // Where the value goes it would be promoted or converted anyway.
    const bool canBeBitField = value->getType()->isIntegerType();
    return std::string(" __extension__({__auto_type velda_v=") + (canBeBitField ? "+" : "") + "(";
}

void FunctionWalk::fullExpression(const clang::Expr* e) {
    if (e == nullptr) {
        return;
    }
    const int outerCalls = callsInExpression;
    const int outerAround = callsAround;
    callsInExpression = countCalls(e);
    callsAround = 0;
    expression(e);
    callsInExpression = outerCalls;
    callsAround = outerAround;
}

void FunctionWalk::expression(const clang::Stmt* e) {
    if (e == nullptr) {
        return;
    }
    if (const auto* value = llvm::dyn_cast<clang::Expr>(e); value != nullptr && startsDecision(value)) {
        hitBefore(value, decision(value, ArmProbes::None).atEntry);
        return;
    }
    if (const auto* c = llvm::dyn_cast<clang::CallExpr>(e)) {
        call(c);
    } else if (const auto* conditionalOperator = llvm::dyn_cast<clang::ConditionalOperator>(e)) {
        conditional(conditionalOperator);
    } else if (const auto* binary = llvm::dyn_cast<clang::BinaryConditionalOperator>(e)) {
        binaryConditional(binary);
    } else if (const auto* statements = llvm::dyn_cast<clang::StmtExpr>(e)) {
        statementExpression(statements);
    } else if (const auto* logical = llvm::dyn_cast<clang::BinaryOperator>(e);
               logical != nullptr && logical->isLogicalOp()) {
        expression(logical->getLHS()); // of a system header's macro: no decision of the user
        maybeEvaluated(logical->getRHS());
    } else {
        for (const clang::Stmt* part : evaluatedParts(e)) {
            expression(part);
        }
    }
}

void FunctionWalk::maybeEvaluated(const clang::Stmt* e) {
    const Here before = here;
    here.reset();
    expression(e);
    here = mayLeave(e) ? Here{} : before;
}

void FunctionWalk::call(const clang::CallExpr* e) {
    const std::uint32_t callee = first(e->getCallee());
    if (isBuiltinCall(e) || isSetjmpCall(e) || isSystemMacroBody(unit, callee)) {
        for (const clang::Stmt* part : evaluatedParts(e)) {
            expression(part);
        }
        if (!isBuiltinCall(e)) {
            here.reset();
        }
        return;
    }
    const clang::FunctionDecl* function = e->getDirectCallee();
    const Lines lines = linesOf(first(e), tokenAt(e->getRParenLoc(), e));
    std::vector<ItemRef> items = {addCall(
        service, function != nullptr ? function->getNameAsString() : textOf(e->getCallee()->IgnoreImpCasts()),
        lines)};
    if (neverReturns(e)) {
        items.push_back(addProcedureItem(service, "term", lines));
    }

    // Where operands have no order, what is hit is certain only when no call but this one and those in it are left.
    const int callsInside = countCalls(e);
    const bool isFirst = callsAround + callsInside == callsInExpression;
    const std::string hits = isFirst ? reach(items) : hit(items);
    if (!hits.empty()) {
        surround(edits, first(e), tokenAt(e->getRParenLoc(), e), "(" + hits + ",", ")");
    }
    if (!isFirst) {
        here.reset();
    }
    ++callsAround;
    for (const clang::Stmt* part : evaluatedParts(e)) {
        expression(part);
    }
    --callsAround;
    here.reset();
}

void FunctionWalk::conditional(const clang::ConditionalOperator* e) {
    if (!isDescribed(e->getQuestionLoc())) {
        expression(e->getCond());
        maybeEvaluated(e->getTrueExpr());
        maybeEvaluated(e->getFalseExpr());
        return;
    }
    // Constant conditions are hit before the whole, which so keeps its type and what compilers know of its arms.
    hitBefore(e, decision(e->getCond(), ArmProbes::None).atEntry);
    const Here before = here;
    maybeEvaluated(e->getTrueExpr());
    const bool trueLeaves = !here.has_value();
    here = before;
    maybeEvaluated(e->getFalseExpr());
    if (trueLeaves) {
        here.reset();
    }
}

void FunctionWalk::binaryConditional(const clang::BinaryConditionalOperator* e) {
    if (!isDescribed(e->getQuestionLoc())) {
        expression(e->getCommon());
        maybeEvaluated(e->getFalseExpr());
        return;
    }
    const clang::Expr* value = e->getCommon();
    std::vector<Condition> conditions;
    DecisionTree tree;
    buildTree(value, tree, conditions);
    if (tree.nodes[0].kind != NodeKind::Leaf || conditions[0].constant) {
        hitBefore(e, decision(value, ArmProbes::None).atEntry); // the value is 0 or 1 anyway
    } else {
        // The value itself is wanted, not only whether it is true.
        if (pointsIntoItself(value)) {
            throw CannotInstrument(first(value), "&(...){...} ?: ...");
        }
        describeConditions(conditions);
        const std::string whenTrue = hit(std::array{conditions[0].item});
        const std::string whenFalse = hit(std::array{next(conditions[0].item)});
        if (!whenTrue.empty()) {
            surround(edits, first(value), tokenAt(value->getEndLoc(), value), valueOpening(value),
                     ");velda_v?(void)(" + whenTrue + "):(void)(" + whenFalse + ");velda_v;})");
        }
        expression(conditions[0].expression);
    }
    maybeEvaluated(e->getFalseExpr());
}

void FunctionWalk::statementExpression(const clang::StmtExpr* e) {
    const int outerCalls = callsInExpression;
    const int outerAround = callsAround;
    callsInExpression = callsAround = 0;
    here.reset();
    statement(e->getSubStmt());
    here.reset();
    callsInExpression = outerCalls;
    callsAround = outerAround;
}

} // namespace veldacc
