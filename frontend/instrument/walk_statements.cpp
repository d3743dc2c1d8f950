// Statements: blocks, loops, labels, ways out.

#include <algorithm>
#include <array>

#include "source_text.h"
#include "walk.h"

namespace veldacc {

namespace {

std::string asStatement(const std::string& expression) {
    return expression.empty() ? expression : expression + ';';
}

// The last token of what has to stand first in a block: its brace, and `__label__ a, b;` behind it.
std::uint32_t behindLocalLabels(const Unit& unit, std::uint32_t brace) {
    const std::vector<clang::Token>& tokens = unit.parsed.tokens;
    std::uint32_t token = brace;
    while (tokens[token + 1].is(clang::tok::kw___label__)) {
        do {
            ++token;
        } while (tokens[token].isNot(clang::tok::semi));
    }
    return token;
}

// How many items a section has for conditions and their compositions.
std::size_t conditionItems(const Section& section) {
    return section.formulas[static_cast<std::size_t>(HitKind::Condition)].size();
}

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

FunctionWalk::FunctionWalk(const Unit& of, Edits& into, HitTarget& hits, Service in, std::uint32_t file)
    : unit(of), edits(into), target(hits), service(std::move(in)), instance(file),
      context(of.parsed.context) {}

void FunctionWalk::run(const clang::FunctionDecl* function) {
    scan = scanFunction(unit, function);
    for (const LoopPlace& loop : scan.loops) {
        turnLocals.emplace_back(loop.statement, newLocal());
    }
    const auto* body = llvm::cast<clang::CompoundStmt>(function->getBody());
    const std::uint32_t brace = first(body);
    const std::uint32_t closing = tokenAt(body->getRBracLoc(), body);
    const std::uint32_t declaration = findToken(unit, function->getBeginLoc());
    const std::array entry = {
        addProcedureItem(service, "proc", linesOf(declaration == noToken ? brace : declaration, brace)),
        addBlock(service, "simple", "BODY", linesOf(brace, closing))};
    const std::string atStart = asStatement(reach(entry));
    const std::size_t start = edits.behind.size();
    edits.behind.push_back({behindLocalLabels(unit, brace), {}});
    for (const clang::Stmt* s : body->body()) {
        statement(s);
    }
    if (reachesEnd(function, context)) {
        const std::array end = {addProcedureItem(service, "endproc", linesOf(closing, closing))};
        edits.before.push_back({closing, asStatement(reach(end))});
    }
    settleJumps();
    std::string declarations;
    for (std::uint32_t i = 0; i < locals; ++i) {
        declarations +=
            (i == 0 ? std::string(scan.hasSetjmp ? "volatile unsigned int " : "unsigned int ") : ",") +
            "velda_l" + std::to_string(i);
    }
    edits.behind[start].text = asStatement(declarations) + atStart;
}

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

// ---- loops

DescribedLoop FunctionWalk::describeLoop(const clang::Stmt* s, const std::string& label, bool hasZero,
                                         bool hasItems) {
    DescribedLoop loop;
    loop.range = {first(s), last(s)};
    loop.hasZero = hasZero;
    for (const auto& [statement, local] : turnLocals) {
        if (statement == s) {
            loop.turns = local;
        }
    }
    if (!hasItems) {
        return loop;
    }
    const Lines lines = linesOf(s);
    if (hasZero) {
        loop.first = addBlock(service, "logical", label + "_0", lines);
    }
    const ItemRef one = addBlock(service, "logical", label + "_1", lines);
    addBlock(service, "logical", label + "_N", lines);
    if (!hasZero) {
        loop.first = one;
    }
    loop.counted = one.described;
    if (!loop.counted) {
        return loop;
    }
    const std::uint32_t items = hasZero ? 3 : 2;
    loop.counter = reserveCounters(target, items);
    if (target.counters.way != Counting::Ordered) {
        for (std::uint32_t i = 0; i < items; ++i) {
            giveFormula(target, std::array{ItemRef{loop.first.kind, loop.first.id + i, true}},
                        std::array{loop.counter + i});
        }
    }
    return loop;
}

std::string FunctionWalk::leavingText(const DescribedLoop& loop) {
    if (!loop.counted) {
        return {};
    }
    const std::string index =
        loop.hasZero ? '(' + loop.turns + ">1u?2u:" + loop.turns + ')' : '(' + loop.turns + ">1u)";
    return indexedHitText(target, loop.first, loop.counter, index) + ';';
}

void FunctionWalk::loopBody(const clang::Stmt* body, const DescribedLoop& loop,
                            std::span<const ItemRef> items, const Here& known) {
    const std::string turn = loop.counted ? "if(" + loop.turns + "<2u)" + loop.turns + "++;" : std::string{};
    arm(body, turn + enter(items, known));
    statement(body);
}

// The loop in braces, its turns set to none before it, the way out counted behind it.
void FunctionWalk::closeLoop(const clang::Stmt* s, const DescribedLoop& loop, const std::string& before) {
    const std::string open = before + (loop.counted ? loop.turns + "=0u;" : std::string{});
    const std::string close = leavingText(loop);
    if (open.empty() && close.empty()) {
        return;
    }
    // Set around the loop after its parts have been, but it has to stand outside those of the same extent.
    edits.surroundings.push_back({first(s), last(s), "{" + open, close + "}", true});
}

void FunctionWalk::whileStatement(const clang::WhileStmt* s) {
    if (!isDescribed(s->getWhileLoc())) {
        here.reset();
        fullExpression(s->getCond());
        here.reset();
        arm(s->getBody(), {});
        statement(s->getBody());
        here.reset();
        return;
    }
    here.reset();
    std::vector<ItemRef> bodyItems = {addBlock(service, "simple", "WHILE", linesOf(s->getBody()))};
    const std::optional<bool> constant = constantCondition(s->getCond());
    const DescribedLoop loop = describeLoop(s, "WHILE", !constant.value_or(false), constant.value_or(true));
    openLoops.push_back(loop); // a statement expression in the condition can leave it, too
    const DecisionResult result = decision(s->getCond(), constant ? ArmProbes::Both : ArmProbes::True);
    hitBefore(s->getCond(), result.atEntry);
    bodyItems.insert(bodyItems.begin(), result.hitWhenTrue.begin(), result.hitWhenTrue.end());
    loopBody(s->getBody(), loop, bodyItems, result.whenTrue);
    openLoops.pop_back();
    closeLoop(s, loop, hitStatement(result.hitWhenFalse));
    here.reset();
}

void FunctionWalk::doStatement(const clang::DoStmt* s) {
    here.reset();
    if (!isDescribed(s->getDoLoc())) {
        arm(s->getBody(), {});
        statement(s->getBody());
        here.reset();
        fullExpression(s->getCond());
        here.reset();
        return;
    }
    const ItemRef bodyItem = addBlock(service, "simple", "DO", linesOf(s->getBody()));
    const DescribedLoop loop = describeLoop(s, "DO", false, constantCondition(s->getCond()).value_or(true));
    openLoops.push_back(loop);
    loopBody(s->getBody(), loop, std::array{bodyItem}, {});
    here.reset();
    hitBefore(s->getCond(), decision(s->getCond(), ArmProbes::None).atEntry);
    openLoops.pop_back();
    closeLoop(s, loop, {});
    here.reset();
}

void FunctionWalk::forStatement(const clang::ForStmt* s) {
    here.reset();
    const bool described = isDescribed(s->getForLoc());
    std::vector<ItemRef> bodyItems;
    DescribedLoop loop;
    const std::optional<bool> constant = s->getCond() == nullptr ? true : constantCondition(s->getCond());
    if (described) {
        bodyItems.push_back(addBlock(service, "simple", "FOR", linesOf(s->getBody())));
        loop = describeLoop(s, "FOR", !constant.value_or(false), constant.value_or(true));
    }
    if (s->getInit() != nullptr) {
        statement(s->getInit());
    }
    here.reset();
    DecisionResult result;
    if (described) {
        openLoops.push_back(loop);
    }
    if (s->getCond() != nullptr && described) {
        result = decision(s->getCond(), constant ? ArmProbes::Both : ArmProbes::True);
        hitBefore(s->getCond(), result.atEntry);
    } else {
        fullExpression(s->getCond());
    }
    here.reset();
    if (s->getInc() != nullptr) {
        fullExpression(s->getInc());
    }
    bodyItems.insert(bodyItems.begin(), result.hitWhenTrue.begin(), result.hitWhenTrue.end());
    here.reset();
    loopBody(s->getBody(), loop, bodyItems, result.whenTrue);
    if (described) {
        openLoops.pop_back();
    }
    closeLoop(s, loop, hitStatement(result.hitWhenFalse));
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

// ---- ways out

void FunctionWalk::returnStatement(const clang::ReturnStmt* s) {
    const clang::Expr* value = s->getRetValue();
    if (!isDescribed(s->getReturnLoc())) {
        // In the body of a system header's macro: not described, but it leaves loops.
        const std::size_t around = surround(edits, first(s), last(s), {}, {});
        fullExpression(value);
        if (const std::string leaving = leaveAllLoops(); !leaving.empty()) {
            edits.surroundings[around].open = "{" + leaving;
            edits.surroundings[around].close = "}";
        }
        here.reset();
        return;
    }
    const std::array item = {addProcedureItem(service, "return", linesOf(s))};
    const std::size_t itemsBefore = conditionItems(target.section);
    // Set first, so that they stand outside of what is put around the value.
    const std::size_t around = surround(edits, first(s), last(s), {}, {});
    const std::size_t aroundValue =
        value == nullptr ? around : surround(edits, first(value), tokenAt(value->getEndLoc(), value), {}, {});
    fullExpression(value);
    const bool ordered = target.counters.way == Counting::Ordered;
    const bool decides = conditionItems(target.section) != itemsBefore;
    const bool valueFirst = value != nullptr && (mayLeave(value) || (ordered && decides));
    const std::string hits = leaveAllLoops() + asStatement(reach(item));
    here.reset();
    if (hits.empty()) {
        return;
    }
    const auto put = [&](std::size_t where, std::string open, std::string close) {
        edits.surroundings[where].open = std::move(open);
        edits.surroundings[where].close = std::move(close);
    };
    if (!valueFirst) {
        put(around, "{" + hits, "}");
    } else if (value->getType()->isVoidType()) {
        edits.replacements.push_back({first(s), "{"});
        put(aroundValue, "(", ");" + hits + "return");
        put(around, {}, "}");
    } else {
        put(aroundValue, valueOpening(value), ");" + hits + "velda_v;})");
    }
}

std::string FunctionWalk::leaveAllLoops() {
    std::string text;
    for (auto loop = openLoops.rbegin(); loop != openLoops.rend(); ++loop) {
        text += leavingText(*loop);
    }
    return text;
}

// Sets the turns of loops that control comes into from outside, not through their start.
std::string FunctionWalk::enterLoops(std::uint32_t from, std::uint32_t to) {
    std::string text;
    for (std::size_t i = 0; i < scan.loops.size(); ++i) {
        if (scan.loops[i].range.holds(to) && !scan.loops[i].range.holds(from)) {
            text += turnLocals[i].second + "=1u;";
        }
    }
    return text;
}

void FunctionWalk::gotoStatement(const clang::GotoStmt* s) {
    const std::uint32_t from = first(s);
    std::uint32_t to = noToken;
    for (const LabelPlace& label : scan.labels) {
        if (label.label == s->getLabel()) {
            to = label.token;
        }
    }
    if (to == noToken) {
        throw CannotInstrument(from, "goto");
    }
    std::string leaving;
    for (auto loop = openLoops.rbegin(); loop != openLoops.rend(); ++loop) {
        if (!loop->range.holds(to)) {
            leaving += leavingText(*loop);
        }
    }
    jumps.push_back({surround(edits, from, last(s), {}, {}), from, to, leaving + enterLoops(from, to)});
    here.reset();
}

// The loops and groups that a computed goto leaves or enters depend on where it goes.
void FunctionWalk::computedGoto(const clang::IndirectGotoStmt* s) {
    const std::uint32_t from = first(s);
    const clang::Expr* goal = s->getTarget();
    const std::size_t place = surround(edits, first(goal), tokenAt(goal->getEndLoc(), goal), {}, {});
    fullExpression(goal);
    std::string hits;
    const auto whenGoingTo = [&](const std::string& effect, const auto& concerns) {
        std::string test;
        for (const LabelPlace& label : scan.labels) {
            if (!label.addressTaken || !concerns(label.token)) {
                continue;
            }
            if (label.label->isGnuLocal()) {
                throw CannotInstrument(
                    from, QT_TRANSLATE_NOOP("Veldacc Instrumenter",
                                            "computed goto among local labels")); // not seen from everywhere
            }
            test += (test.empty() ? "" : "||") + std::string("velda_g==&&") + label.label->getNameAsString();
        }
        if (!test.empty() && !effect.empty()) {
            hits += "if(" + test + "){" + effect + "}";
        }
    };
    for (auto loop = openLoops.rbegin(); loop != openLoops.rend(); ++loop) {
        whenGoingTo(leavingText(*loop), [&](std::uint32_t to) { return !loop->range.holds(to); });
    }
    for (std::size_t i = 0; i < scan.loops.size(); ++i) {
        if (!scan.loops[i].range.holds(from)) {
            whenGoingTo(turnLocals[i].second + "=1u;",
                        [&](std::uint32_t to) { return scan.loops[i].range.holds(to); });
        }
    }
    if (!hits.empty()) {
        edits.surroundings[place].open = "__extension__({const void*velda_g=(";
        edits.surroundings[place].close = ");" + hits + "(void*)velda_g;})";
    }
    here.reset();
}

// Groups of case labels that a goto comes into the middle of are hit, too.
void FunctionWalk::settleJumps() {
    for (const OpenJump& jump : jumps) {
        std::string text = jump.before;
        for (const DescribedGroup& group : groups) {
            if (group.inside.holds(jump.to) && !group.inside.holds(jump.from)) {
                text += hitStatement(std::array{group.item});
            }
        }
        if (text.empty()) {
            continue;
        }
        edits.surroundings[jump.surrounding].open = "{" + text;
        edits.surroundings[jump.surrounding].close = "}";
    }
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

// ---- probes

std::string FunctionWalk::hit(std::span<const ItemRef> items) {
    return hitText(target, items);
}

std::string FunctionWalk::hitStatement(std::span<const ItemRef> items) {
    return asStatement(hit(items));
}

std::string FunctionWalk::reach(std::span<const ItemRef> items) {
    const auto isDescribedItem = [](const ItemRef& item) { return item.described; };
    if (std::none_of(items.begin(), items.end(), isDescribedItem)) {
        return {};
    }
    if (here && target.counters.way == Counting::Shared) {
        giveFormula(target, items, *here);
        return {};
    }
    const CountedHit counted = countHits(target, items);
    if (counted.isShared) {
        here = std::vector<std::uint32_t>{counted.counter};
    }
    return counted.text;
}

std::string FunctionWalk::enter(std::span<const ItemRef> items, const Here& known) {
    here = known;
    return asStatement(reach(items));
}

std::string FunctionWalk::newLocal() {
    return "velda_l" + std::to_string(locals++);
}

// ---- places

std::uint32_t FunctionWalk::tokenAt(clang::SourceLocation location, const clang::Stmt* of) {
    const std::uint32_t token = findToken(unit, location);
    if (token == noToken) {
        throw CannotInstrument(findToken(unit, of->getBeginLoc()), of->getStmtClassName());
    }
    return token;
}

std::uint32_t FunctionWalk::first(const clang::Stmt* s) {
    return tokenAt(s->getBeginLoc(), s);
}

std::uint32_t FunctionWalk::last(const clang::Stmt* s) {
    const std::uint32_t token = lastToken(unit, s);
    if (token == noToken) {
        throw CannotInstrument(findToken(unit, s->getBeginLoc()), s->getStmtClassName());
    }
    return token;
}

bool FunctionWalk::isDescribed(clang::SourceLocation keyword) {
    const std::uint32_t token = findToken(unit, keyword);
    return token != noToken && !isSystemMacroBody(unit, token);
}

Lines FunctionWalk::linesOf(std::uint32_t firstToken, std::uint32_t lastToken) {
    const Place begin = placeWithin(unit.marks, placeOfToken(unit, firstToken), instance);
    const Place end = placeWithin(unit.marks, placeOfToken(unit, lastToken), instance);
    return {begin.line, std::max(begin.line, end.line)};
}

Lines FunctionWalk::linesOf(const clang::Stmt* s) {
    return linesOf(first(s), last(s));
}

std::string FunctionWalk::textOf(const clang::Stmt* s) {
    return withoutOuterParentheses(spelling(unit, first(s), tokenAt(s->getEndLoc(), s)));
}

} // namespace veldacc
