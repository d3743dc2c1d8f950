// A walk's way through its function, and what all its parts use: probes, and places in the source.

#include <algorithm>
#include <array>

#include "source_text.h"
#include "walk.h"

namespace veldacc {

std::string asStatement(const std::string& expression) {
    return expression.empty() ? expression : expression + ';';
}

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
