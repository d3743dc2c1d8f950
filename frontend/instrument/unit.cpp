#include "unit.h"

#include <clang/AST/StmtVisitor.h>

#include "source_text.h"

namespace veldacc {

namespace {

bool isSemicolon(const Unit& unit, std::uint32_t token) {
    return token < unit.parsed.tokens.size() && unit.parsed.tokens[token].is(clang::tok::semi);
}

// The token, or the semicolon right behind it.
std::uint32_t withSemicolon(const Unit& unit, std::uint32_t token) {
    if (token == noToken || isSemicolon(unit, token)) {
        return token;
    }
    return isSemicolon(unit, token + 1) ? token + 1 : token;
}

// The statement that ends where this one ends; none when it ends by itself.
const clang::Stmt* lastPart(const clang::Stmt* statement) {
    if (const auto* s = llvm::dyn_cast<clang::IfStmt>(statement)) {
        return s->getElse() != nullptr ? s->getElse() : s->getThen();
    }
    if (const auto* s = llvm::dyn_cast<clang::WhileStmt>(statement)) {
        return s->getBody();
    }
    if (const auto* s = llvm::dyn_cast<clang::ForStmt>(statement)) {
        return s->getBody();
    }
    if (const auto* s = llvm::dyn_cast<clang::SwitchStmt>(statement)) {
        return s->getBody();
    }
    if (const auto* s = llvm::dyn_cast<clang::SwitchCase>(statement)) {
        return s->getSubStmt();
    }
    if (const auto* s = llvm::dyn_cast<clang::LabelStmt>(statement)) {
        return s->getSubStmt();
    }
    if (const auto* s = llvm::dyn_cast<clang::AttributedStmt>(statement)) {
        return s->getSubStmt();
    }
    return nullptr;
}

} // namespace

std::uint32_t findToken(const Unit& unit, clang::SourceLocation location) {
    const auto at = unit.parsed.indexOfLocation.find(location.getRawEncoding());
    return location.isInvalid() || at == unit.parsed.indexOfLocation.end() ? noToken : at->second;
}

std::uint32_t firstToken(const Unit& unit, const clang::Stmt* statement) {
    return findToken(unit, statement->getBeginLoc());
}

std::uint32_t lastToken(const Unit& unit, const clang::Stmt* statement) {
    while (const clang::Stmt* part = lastPart(statement)) {
        if (llvm::isa<clang::NullStmt>(part) && findToken(unit, part->getEndLoc()) == noToken) {
            break; // a label at the end of a block
        }
        statement = part;
    }
    const std::uint32_t last = findToken(unit, statement->getEndLoc());
    return llvm::isa<clang::CompoundStmt>(statement) ? last : withSemicolon(unit, last);
}

Place placeOfToken(const Unit& unit, std::uint32_t token) {
    return placeAt(unit.marks, textOffset(unit.parsed, unit.parsed.tokens[token].getLocation()));
}

bool isSystemMacroBody(const Unit& unit, std::uint32_t token) {
    const clang::SourceManager& sources = unit.parsed.sources();
    clang::SourceLocation at = unit.parsed.tokens[token].getLocation();
    // A token made by ## stands in a buffer of its own; where it was made is one level up.
    while (at.isMacroID() && sources.getFileID(sources.getSpellingLoc(at)) != sources.getMainFileID()) {
        at = sources.getImmediateExpansionRange(at).getBegin();
    }
    const clang::SourceLocation spelled = sources.getSpellingLoc(at);
    return placeAt(unit.marks, sources.getFileOffset(spelled)).system;
}

std::string_view tokenText(const Unit& unit, std::uint32_t token) {
    return std::string_view(unit.text).substr(unit.tokens[token].offset, unit.tokens[token].length);
}

std::string spelling(const Unit& unit, std::uint32_t first, std::uint32_t last) {
    // Line markers between the tokens are no part of the text.
    std::string expanded;
    std::uint32_t end = unit.tokens[first].offset;
    for (std::uint32_t token = first; token <= last; ++token) {
        if (unit.tokens[token].offset > end) {
            expanded += ' ';
        }
        expanded += tokenText(unit, token);
        end = unit.tokens[token].offset + unit.tokens[token].length;
    }
    return spellRange(unit.parsed, first, last, expanded);
}

} // namespace veldacc
