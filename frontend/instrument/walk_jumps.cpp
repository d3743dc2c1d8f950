// Ways out, and into: return and goto leave loops, and a goto may come into the middle of others and of case labels.

#include <array>

#include "source_text.h"
#include "walk.h"

namespace veldacc {

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
    const auto& conditionItems = target.section.formulas[static_cast<std::size_t>(HitKind::Condition)];
    const std::size_t itemsBefore = conditionItems.size();
    // Set first, so that they stand outside of what is put around the value.
    const std::size_t around = surround(edits, first(s), last(s), {}, {});
    const std::size_t aroundValue =
        value == nullptr ? around : surround(edits, first(value), tokenAt(value->getEndLoc(), value), {}, {});
    fullExpression(value);
    const bool ordered = target.counters.way == Counting::Ordered;
    const bool decides = conditionItems.size() != itemsBefore;
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

} // namespace veldacc
