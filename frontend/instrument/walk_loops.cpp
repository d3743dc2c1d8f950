// Loops: their turns are counted to two in a local of the function, and told wherever the loop is left.

#include <array>

#include "source_text.h"
#include "walk.h"

namespace veldacc {

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

} // namespace veldacc
