#pragma once

// What has to be known of a function before its first item: where its loops and labels are, whether it can be
// instrumented at all.

#include <cstdint>
#include <vector>

#include "unit.h"

namespace veldacc {

struct TokenRange {
    std::uint32_t first = 0;
    std::uint32_t last = 0;

    [[nodiscard]] bool holds(std::uint32_t token) const { return first <= token && token <= last; }
};

struct LoopPlace {
    const clang::Stmt* statement = nullptr;
    TokenRange range;
};

struct LabelPlace {
    const clang::LabelDecl* label = nullptr;
    std::uint32_t token = 0;
    bool addressTaken = false;
};

struct FunctionScan {
    std::vector<LoopPlace> loops;
    std::vector<LabelPlace> labels;
    bool hasSetjmp = false; // or another function that returns twice
};

// Throws CannotInstrument.
FunctionScan scanFunction(const Unit& unit, const clang::FunctionDecl* function);

// Whether the end of the body can be reached.
bool reachesEnd(const clang::FunctionDecl* function, clang::ASTContext& context);

// A call of setjmp or one of its kin, by name.
bool isSetjmpCall(const clang::CallExpr* call);
// A call of a compiler's own function, which is none for the user.
bool isBuiltinCall(const clang::CallExpr* call);
// Whether an expression calls anything, or holds statements.
bool mayLeave(const clang::Stmt* expression);

// The parts of a statement that are evaluated where it stands: not those of sizeof and its kin, not constant parts.
std::vector<const clang::Stmt*> evaluatedParts(const clang::Stmt* statement);

} // namespace veldacc
