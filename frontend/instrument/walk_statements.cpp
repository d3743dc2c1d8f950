// Statements: which there are, conditions with their arms, switches with their labels.

#include <algorithm>
#include <array>

#include "source_text.h"
#include "walk.h"

namespace veldacc {

namespace {

bool isIf(const clang::Stmt* s) {
    return llvm::isa_and_nonnull<clang::IfStmt>(s);
}

// The call of setjmp that a condition tests, and what the condition is when setjmp gives 0: `setjmp(e)`, `!setjmp(e)`,
// `setjmp(e) == 0`, `(r = setjmp(e)) != 0`.
std::optional<bool> valueOfFirstReturn(const clang::Expr* e, const clang::ASTContext& context) {
    e = e->IgnoreParenImpCasts();
    if (const auto* call = llvm::dyn_cast<clang::CallExpr>(e)) {
        return isSetjmpCall(call) ? std::optional(false) : std::nullopt;
    }
    if (const auto* negation = llvm::dyn_cast<clang::UnaryOperator>(e);
        negation != nullptr && negation->getOpcode() == clang::UO_LNot) {
        const std::optional<bool> inner = valueOfFirstReturn(negation->getSubExpr(), context);
        return inner ? std::optional(!*inner) : std::nullopt;
    }
    const auto* binary = llvm::dyn_cast<clang::BinaryOperator>(e);
    if (binary == nullptr) {
        return std::nullopt;
    }
    if (binary->getOpcode() == clang::BO_Assign) {
        return valueOfFirstReturn(binary->getRHS(), context);
    }
    if (!binary->isEqualityOp()) {
        return std::nullopt;
    }
    clang::Expr::EvalResult constant;
    const bool onLeft = valueOfFirstReturn(binary->getLHS(), context).has_value();
    const clang::Expr* other = onLeft ? binary->getRHS() : binary->getLHS();
    if ((!onLeft && !valueOfFirstReturn(binary->getRHS(), context)) ||
        !other->EvaluateAsInt(constant, context)) {
        return std::nullopt;
    }
    return (constant.Val.getInt() == 0) == (binary->getOpcode() == clang::BO_EQ);
}

} // namespace

void FunctionWalk::statement(const clang::Stmt* s) {
    if (s == nullptr) {
        return;
    }
    if (const auto* compound = llvm::dyn_cast<clang::CompoundStmt>(s)) {
        for (const clang::Stmt* child : compound->body()) {
            statement(child);
        }
    } else if (const auto* e = llvm::dyn_cast<clang::Expr>(s)) {
        fullExpression(e);
    } else if (const auto* ifStmt = llvm::dyn_cast<clang::IfStmt>(s)) {
        ifStatement(ifStmt, false);
    } else if (const auto* whileStmt = llvm::dyn_cast<clang::WhileStmt>(s)) {
        whileStatement(whileStmt);
    } else if (const auto* doStmt = llvm::dyn_cast<clang::DoStmt>(s)) {
        doStatement(doStmt);
    } else if (const auto* forStmt = llvm::dyn_cast<clang::ForStmt>(s)) {
        forStatement(forStmt);
    } else if (const auto* switchStmt = llvm::dyn_cast<clang::SwitchStmt>(s)) {
        switchStatement(switchStmt);
    } else if (llvm::isa<clang::SwitchCase, clang::LabelStmt>(s)) {
        labels(s);
    } else if (const auto* returnStmt = llvm::dyn_cast<clang::ReturnStmt>(s)) {
        returnStatement(returnStmt);
    } else if (const auto* gotoStmt = llvm::dyn_cast<clang::GotoStmt>(s)) {
        gotoStatement(gotoStmt);
    } else if (const auto* computed = llvm::dyn_cast<clang::IndirectGotoStmt>(s)) {
        computedGoto(computed);
    } else if (llvm::isa<clang::BreakStmt, clang::ContinueStmt>(s)) {
        here.reset(); // what follows is not reached from here
    } else if (const auto* attributed = llvm::dyn_cast<clang::AttributedStmt>(s)) {
        fallThrough(attributed);
        statement(attributed->getSubStmt());
    } else {
        // Declarations, assembler, the empty statement: what they evaluate are full expressions.
        for (const clang::Stmt* part : evaluatedParts(s)) {
            if (const auto* value = llvm::dyn_cast_or_null<clang::Expr>(part)) {
                fullExpression(value);
            }
        }
    }
}

void FunctionWalk::arm(const clang::Stmt* s, const std::string& atStart, const std::string& close) {
    const std::uint32_t firstOfArm = first(s);
    const std::uint32_t lastOfArm = last(s);
    if (llvm::isa<clang::CompoundStmt>(s)) {
        edits.behind.push_back({behindLocalLabels(unit, firstOfArm), atStart});
        if (!close.empty()) {
            surround(edits, firstOfArm, lastOfArm, {}, close);
        }
    } else {
        surround(edits, firstOfArm, lastOfArm, "{" + atStart, "}" + close);
    }
}

// ---- if

void FunctionWalk::ifStatement(const clang::IfStmt* s, bool isElseIf) {
    if (!isDescribed(s->getIfLoc())) {
        fullExpression(s->getCond());
        here.reset();
        for (const clang::Stmt* part : {s->getThen(), s->getElse()}) {
            if (part != nullptr) {
                arm(part, {});
                statement(part);
                here.reset();
            }
        }
        return;
    }
    if (const std::optional<bool> value = valueOfFirstReturn(s->getCond(), context)) {
        setjmpIf(s, !*value, isElseIf);
        return;
    }
    const Lines thenLines = linesOf(s->getThen());
    const ItemRef thenItem = addBlock(service, "simple", isElseIf ? "ELSEIF" : "THEN", thenLines);
    const bool elseIsIf =
        isIf(s->getElse()) && isDescribed(llvm::cast<clang::IfStmt>(s->getElse())->getIfLoc());
    std::vector<ItemRef> elseItems;
    if (s->getElse() == nullptr) {
        elseItems.push_back(addBlock(service, "implicit", "ELSE", linesOf(s)));
    } else if (!elseIsIf) {
        elseItems.push_back(addBlock(service, "simple", "ELSE", linesOf(s->getElse())));
    }

    const DecisionResult result = decision(s->getCond(), ArmProbes::Both);
    std::vector<ItemRef> thenItems = result.hitWhenTrue;
    thenItems.push_back(thenItem);
    elseItems.insert(elseItems.begin(), result.hitWhenFalse.begin(), result.hitWhenFalse.end());

    // A missing else is written behind the then arm, so its text is needed first.
    std::string implicitElse;
    if (s->getElse() == nullptr) {
        const std::string hits = enter(elseItems, result.whenFalse);
        if (!hits.empty()) {
            implicitElse = " else {" + hits + "}";
        }
    }
    thenArm(s, thenItems, result.whenTrue, implicitElse);
    if (s->getElse() != nullptr) {
        elseArm(s, elseItems, result.whenFalse, elseIsIf);
    }
    if (!result.atEntry.empty()) {
        surround(edits, first(s), last(s), "{" + result.atEntry + ";", "}");
    }
    here.reset();
}

void FunctionWalk::thenArm(const clang::IfStmt* s, const std::vector<ItemRef>& items, const Here& known,
                           const std::string& close) {
    const std::string atStart = enter(items, known);
    arm(s->getThen(), atStart, close);
    statement(s->getThen());
}

void FunctionWalk::elseArm(const clang::IfStmt* s, std::vector<ItemRef> items, const Here& known,
                           bool describesElseIf) {
    arm(s->getElse(), enter(items, known));
    if (describesElseIf) {
        ifStatement(llvm::cast<clang::IfStmt>(s->getElse()), true);
    } else {
        statement(s->getElse());
    }
}

void FunctionWalk::setjmpIf(const clang::IfStmt* s, bool comesBackToThen, bool isElseIf) {
    const std::string_view thenLabel = isElseIf ? "ELSEIF" : "THEN";
    const ItemRef thenItem = comesBackToThen ? addBlock(service, "atc", "LONGJMP", linesOf(s->getThen()))
                                             : addBlock(service, "simple", thenLabel, linesOf(s->getThen()));
    const bool elseIsIf =
        isIf(s->getElse()) && isDescribed(llvm::cast<clang::IfStmt>(s->getElse())->getIfLoc());
    std::vector<ItemRef> elseItems;
    if (s->getElse() == nullptr) {
        elseItems.push_back(addBlock(service, "implicit", "ELSE", linesOf(s)));
    } else if (!comesBackToThen) {
        elseItems.push_back(addBlock(service, "atc", "LONGJMP", linesOf(s->getElse())));
    } else if (!elseIsIf) {
        elseItems.push_back(addBlock(service, "simple", "ELSE", linesOf(s->getElse())));
    }
    here.reset();
    fullExpression(s->getCond());
    here.reset();
    std::string implicitElse;
    if (s->getElse() == nullptr) {
        implicitElse = " else {" + enter(elseItems, {}) + "}";
    }
    thenArm(s, {thenItem}, {}, implicitElse);
    if (s->getElse() != nullptr) {
        elseArm(s, elseItems, {}, elseIsIf);
    }
    here.reset();
}

// ---- switch and labels

void FunctionWalk::switchStatement(const clang::SwitchStmt* s) {
    fullExpression(s->getCond());
    here.reset();
    const clang::Stmt* body = s->getBody();
    const bool described = isDescribed(s->getSwitchLoc());
    bool hasDefault = false;
    std::vector<std::uint32_t> labelTokens;
    for (const clang::SwitchCase* label = s->getSwitchCaseList(); label != nullptr;
         label = label->getNextSwitchCase()) {
        hasDefault |= llvm::isa<clang::DefaultStmt>(label);
        labelTokens.push_back(tokenAt(label->getKeywordLoc(), label));
    }
    openSwitches.push_back({first(s), last(s), std::move(labelTokens)});
    statement(body);
    openSwitches.pop_back();
    here.reset();
    std::string missing;
    if (described && !hasDefault) {
        const std::string hits = hit(std::array{addBlock(service, "implicit", "DEFAULT", linesOf(s))});
        if (!hits.empty()) {
            missing = "if(0){default:" + hits + ";}";
        }
    }
    if (llvm::isa<clang::CompoundStmt>(body)) {
        edits.before.push_back({last(body), missing});
    } else {
        surround(edits, first(body), last(body), "{", missing + "}");
    }
}

// A group of labels and the statement behind them.
void FunctionWalk::labels(const clang::Stmt* s) {
    std::vector<ItemRef> group;
    std::uint32_t colon = 0;
    const std::uint32_t firstLabel = first(s);
    bool hasDefault = false;
    bool hasCase = false;
    const clang::Stmt* rest = s;
    for (;;) {
        if (const auto* label = llvm::dyn_cast<clang::LabelStmt>(rest)) {
            colon = tokenAt(label->getIdentLoc(), label) + 1;
            rest = label->getSubStmt();
        } else if (const auto* byDefault = llvm::dyn_cast<clang::DefaultStmt>(rest)) {
            colon = tokenAt(byDefault->getColonLoc(), byDefault);
            hasDefault |= isDescribed(byDefault->getKeywordLoc());
            rest = byDefault->getSubStmt();
        } else if (const auto* one = llvm::dyn_cast<clang::CaseStmt>(rest)) {
            colon = tokenAt(one->getColonLoc(), one);
            rest = one->getSubStmt();
            const std::uint32_t keyword = tokenAt(one->getKeywordLoc(), one);
            if (!isDescribed(one->getKeywordLoc())) {
                continue;
            }
            hasCase = true;
            const ItemRef taken =
                addOneOutcome(service, spelling(unit, keyword, colon - 1), linesOf(keyword, colon - 1));
            // Reached from the switch only, not by falling through.
            const std::string hits =
                hitStatement(std::array{taken}) + enterLoops(openSwitches.back().first, keyword);
            if (!hits.empty()) {
                surround(edits, keyword, colon, "if(0){", hits + "}");
            }
        } else {
            break;
        }
    }
    here.reset();
    if (hasCase || hasDefault) {
        // The group goes to the next one, or to the end of the switch.
        std::uint32_t end = unit.parsed.tokens[openSwitches.back().last].is(clang::tok::r_brace)
                                ? openSwitches.back().last - 1
                                : openSwitches.back().last;
        for (const std::uint32_t label : openSwitches.back().labels) {
            if (label > colon && label <= end) {
                end = label - 1;
            }
        }
        const ItemRef item =
            addBlock(service, "simple", hasDefault ? "DEFAULT" : "CASE", linesOf(firstLabel, end));
        edits.behind.push_back({colon, asStatement(reach(std::array{item}))});
        groups.push_back({{colon + 1, end}, item});
    }
    statement(rest);
}

// `__attribute__((fallthrough));` has to stand before a label; behind probes it does not.
void FunctionWalk::fallThrough(const clang::AttributedStmt* s) {
    const auto isFallThrough = [](const clang::Attr* attribute) {
        return llvm::isa<clang::FallThroughAttr>(attribute);
    };
    if (std::none_of(s->getAttrs().begin(), s->getAttrs().end(), isFallThrough)) {
        return;
    }
    std::uint32_t token = tokenAt(s->getAttrLoc(), s);
    const std::uint32_t semicolon = last(s);
    // The place given may be that of the word inside the brackets.
    while (token > 0 && (unit.parsed.tokens[token - 1].isOneOf(clang::tok::l_paren, clang::tok::l_square,
                                                               clang::tok::kw___attribute))) {
        --token;
    }
    for (; token < semicolon; ++token) {
        edits.replacements.push_back({token, {}});
    }
}

} // namespace veldacc
