#include "scan.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <clang/AST/TypeLoc.h>

namespace veldacc {

namespace {

constexpr std::array<std::string_view, 5> setjmpNames = {"setjmp", "_setjmp", "sigsetjmp", "__sigsetjmp",
                                                         "__builtin_setjmp"};
constexpr std::array<std::string_view, 4> builtinPrefixes = {"__builtin_", "__sync_", "__atomic_",
                                                             "__c11_atomic_"};

std::string_view calledName(const clang::CallExpr* call) {
    const clang::FunctionDecl* callee = call->getDirectCallee();
    if (callee == nullptr || callee->getIdentifier() == nullptr) {
        return {};
    }
    return callee->getName();
}

bool isUnevaluatedBuiltin(std::string_view name) {
    return name == "__builtin_constant_p" || name == "__builtin_object_size" ||
           name == "__builtin_dynamic_object_size" || name == "__builtin_classify_type" ||
           name == "__builtin_has_attribute";
}

// The sizes of variable-length arrays in a declared type, which are evaluated where it stands.
void addVariableSizes(clang::TypeLoc type, std::vector<const clang::Stmt*>& parts) {
    for (; !type.isNull(); type = type.getNextTypeLoc()) {
        const auto array = type.getAs<clang::VariableArrayTypeLoc>();
        if (!array.isNull() && array.getSizeExpr() != nullptr) {
            parts.push_back(array.getSizeExpr());
        }
        if (!type.getAs<clang::FunctionTypeLoc>().isNull()) {
            return; // sizes in a prototype are not
        }
    }
}

void addDeclaration(const clang::Decl* declaration, std::vector<const clang::Stmt*>& parts) {
    if (const auto* type = llvm::dyn_cast<clang::TypedefNameDecl>(declaration)) {
        if (type->getUnderlyingType()->isVariablyModifiedType()) {
            addVariableSizes(type->getTypeSourceInfo()->getTypeLoc(), parts);
        }
        return;
    }
    const auto* variable = llvm::dyn_cast<clang::VarDecl>(declaration);
    if (variable == nullptr) {
        return;
    }
    if (variable->getType()->isVariablyModifiedType() && variable->getTypeSourceInfo() != nullptr) {
        addVariableSizes(variable->getTypeSourceInfo()->getTypeLoc(), parts);
    }
    if (variable->hasLocalStorage() && !variable->isConstexpr() && variable->getInit() != nullptr) {
        parts.push_back(variable->getInit());
    }
}

void addSizeofParts(const clang::UnaryExprOrTypeTraitExpr* e, std::vector<const clang::Stmt*>& parts) {
    if (e->getKind() != clang::UETT_SizeOf) {
        return;
    }
    if (e->isArgumentType()) {
        if (e->getArgumentType()->isVariableArrayType()) {
            addVariableSizes(e->getArgumentTypeInfo()->getTypeLoc(), parts);
        }
    } else if (e->getArgumentExpr()->getType()->isVariableArrayType()) {
        parts.push_back(e->getArgumentExpr());
    }
}

struct Scanner {
    const Unit& unit;
    FunctionScan result;

    [[nodiscard]] std::uint32_t tokenAt(clang::SourceLocation location) const {
        return findToken(unit, location);
    }

    void addLoop(const clang::Stmt* statement) {
        result.loops.push_back({statement, {firstToken(unit, statement), lastToken(unit, statement)}});
    }

    void visit(const clang::Stmt* statement) {
        if (statement == nullptr) {
            return;
        }
        if (llvm::isa<clang::WhileStmt, clang::DoStmt, clang::ForStmt>(statement)) {
            addLoop(statement);
        } else if (const auto* label = llvm::dyn_cast<clang::LabelStmt>(statement)) {
            result.labels.push_back({label->getDecl(), tokenAt(label->getIdentLoc()), false});
        } else if (const auto* call = llvm::dyn_cast<clang::CallExpr>(statement)) {
            const clang::FunctionDecl* callee = call->getDirectCallee();
            result.hasSetjmp |=
                isSetjmpCall(call) || (callee != nullptr && callee->hasAttr<clang::ReturnsTwiceAttr>());
        } else if (const auto* assembly = llvm::dyn_cast<clang::GCCAsmStmt>(statement)) {
            if (assembly->isAsmGoto()) {
                throw CannotInstrument(firstToken(unit, statement), "asm goto");
            }
        } else if (llvm::isa<clang::MSAsmStmt>(statement)) {
            throw CannotInstrument(firstToken(unit, statement), "__asm block");
        }
        for (const clang::Stmt* part : evaluatedParts(statement)) {
            visit(part);
        }
    }

    // Addresses of labels may be taken in places that are not evaluated (tables of a computed goto).
    void markAddresses(const clang::Stmt* statement) {
        if (statement == nullptr) {
            return;
        }
        if (const auto* address = llvm::dyn_cast<clang::AddrLabelExpr>(statement)) {
            for (LabelPlace& place : result.labels) {
                place.addressTaken |= place.label == address->getLabel();
            }
        }
        if (const auto* declarations = llvm::dyn_cast<clang::DeclStmt>(statement)) {
            for (const clang::Decl* declaration : declarations->decls()) {
                if (const auto* variable = llvm::dyn_cast<clang::VarDecl>(declaration)) {
                    markAddresses(variable->getInit());
                }
            }
        }
        for (const clang::Stmt* child : statement->children()) {
            markAddresses(child);
        }
    }
};

std::string pragmaOfParallelCode(const Unit& unit, std::uint32_t first, std::uint32_t last) {
    const std::string_view body = std::string_view(unit.text).substr(
        unit.tokens[first].offset, unit.tokens[last].offset - unit.tokens[first].offset);
    for (std::size_t at = body.find("#pragma"); at != std::string_view::npos;
         at = body.find("#pragma", at + 1)) {
        const std::size_t word = body.find_first_not_of(" \t", at + 7);
        for (const std::string_view kind : {"omp", "acc"}) {
            if (word != std::string_view::npos && body.substr(word, kind.size()) == kind) {
                return "#pragma " + std::string(kind);
            }
        }
    }
    return {};
}

} // namespace

bool isSetjmpCall(const clang::CallExpr* call) {
    return std::find(setjmpNames.begin(), setjmpNames.end(), calledName(call)) != setjmpNames.end();
}

bool isBuiltinCall(const clang::CallExpr* call) {
    const std::string_view name = calledName(call);
    return std::any_of(builtinPrefixes.begin(), builtinPrefixes.end(),
                       [&](std::string_view prefix) { return name.starts_with(prefix); });
}

bool mayLeave(const clang::Stmt* expression) {
    if (llvm::isa<clang::StmtExpr>(expression)) {
        return true;
    }
    if (const auto* call = llvm::dyn_cast<clang::CallExpr>(expression)) {
        if (!isBuiltinCall(call)) {
            return true;
        }
    }
    const std::vector<const clang::Stmt*> parts = evaluatedParts(expression);
    return std::any_of(parts.begin(), parts.end(), mayLeave);
}

std::vector<const clang::Stmt*> evaluatedParts(const clang::Stmt* statement) {
    std::vector<const clang::Stmt*> parts;
    if (const auto* declarations = llvm::dyn_cast<clang::DeclStmt>(statement)) {
        for (const clang::Decl* declaration : declarations->decls()) {
            addDeclaration(declaration, parts);
        }
        return parts;
    }
    if (const auto* size = llvm::dyn_cast<clang::UnaryExprOrTypeTraitExpr>(statement)) {
        addSizeofParts(size, parts);
        return parts;
    }
    if (const auto* list = llvm::dyn_cast<clang::InitListExpr>(statement)) {
        const clang::InitListExpr* written = list->isSemanticForm() ? list->getSyntacticForm() : list;
        for (const clang::Expr* init : (written != nullptr ? written : list)->inits()) {
            parts.push_back(init);
        }
        return parts;
    }
    if (const auto* designated = llvm::dyn_cast<clang::DesignatedInitExpr>(statement)) {
        return {designated->getInit()};
    }
    if (const auto* selection = llvm::dyn_cast<clang::GenericSelectionExpr>(statement)) {
        if (!selection->isResultDependent()) {
            parts.push_back(selection->getResultExpr());
        }
        return parts;
    }
    if (const auto* choice = llvm::dyn_cast<clang::ChooseExpr>(statement)) {
        return {choice->getChosenSubExpr()};
    }
    if (llvm::isa<clang::OffsetOfExpr, clang::TypeTraitExpr, clang::ImplicitValueInitExpr,
                  clang::OpaqueValueExpr>(statement)) {
        return parts;
    }
    if (const auto* cast = llvm::dyn_cast<clang::CastExpr>(statement)) {
        if (cast->getCastKind() == clang::CK_NullToPointer) {
            return parts; // a null pointer constant has to stay one
        }
    }
    if (const auto* conditional = llvm::dyn_cast<clang::BinaryConditionalOperator>(statement)) {
        return {conditional->getCommon(), conditional->getFalseExpr()};
    }
    if (const auto* label = llvm::dyn_cast<clang::SwitchCase>(statement)) {
        return {label->getSubStmt()};
    }
    if (const auto* call = llvm::dyn_cast<clang::CallExpr>(statement)) {
        if (isUnevaluatedBuiltin(calledName(call))) {
            return parts;
        }
        parts.push_back(call->getCallee());
        const bool constantsStay = isBuiltinCall(call);
        for (const clang::Expr* argument : call->arguments()) {
            if (!constantsStay || argument->isValueDependent() || llvm::isa<clang::CallExpr>(argument) ||
                !argument->isIntegerConstantExpr(
                    *static_cast<const clang::ASTContext*>(&call->getDirectCallee()->getASTContext()))) {
                parts.push_back(argument);
            }
        }
        return parts;
    }
    for (const clang::Stmt* child : statement->children()) {
        if (child != nullptr) {
            parts.push_back(child);
        }
    }
    return parts;
}

FunctionScan scanFunction(const Unit& unit, const clang::FunctionDecl* function) {
    const std::uint32_t first = firstToken(unit, function->getBody());
    const std::uint32_t last = lastToken(unit, function->getBody());
    if (function->hasAttr<clang::NakedAttr>()) {
        throw CannotInstrument(first, QT_TRANSLATE_NOOP("Veldacc Instrumenter", "naked function"));
    }
    if (const std::string pragma = pragmaOfParallelCode(unit, first, last); !pragma.empty()) {
        throw CannotInstrument(first, pragma);
    }
    Scanner scanner{unit, {}};
    scanner.visit(function->getBody());
    scanner.markAddresses(function->getBody());
    for (const LoopPlace& loop : scanner.result.loops) {
        if (loop.range.first == noToken || loop.range.last == noToken) {
            throw CannotInstrument(
                first, QT_TRANSLATE_NOOP("Veldacc Instrumenter", "loop without a place in the text"));
        }
    }
    return std::move(scanner.result);
}

bool reachesEnd(const clang::FunctionDecl* function, clang::ASTContext& context) {
    clang::CFG::BuildOptions options;
    const std::unique_ptr<clang::CFG> graph =
        clang::CFG::buildCFG(function, function->getBody(), &context, options);
    if (graph == nullptr) {
        return true;
    }
    std::vector<bool> reached(graph->getNumBlockIDs());
    std::vector<const clang::CFGBlock*> open = {&graph->getEntry()};
    while (!open.empty()) {
        const clang::CFGBlock* block = open.back();
        open.pop_back();
        if (reached[block->getBlockID()]) {
            continue;
        }
        reached[block->getBlockID()] = true;
        for (const clang::CFGBlock::AdjacentBlock& successor : block->succs()) {
            if (const clang::CFGBlock* to = successor.getReachableBlock()) {
                open.push_back(to);
            }
        }
    }
    const auto fallsOut = [&](const clang::CFGBlock* block) {
        if (block == nullptr || !reached[block->getBlockID()] || block->hasNoReturnElement()) {
            return false;
        }
        for (auto element = block->rbegin(); element != block->rend(); ++element) {
            if (const auto statement = element->getAs<clang::CFGStmt>()) {
                return !llvm::isa<clang::ReturnStmt>(statement->getStmt());
            }
        }
        return true;
    };
    const clang::CFGBlock& exit = graph->getExit();
    return std::any_of(exit.pred_begin(), exit.pred_end(), [&](const clang::CFGBlock::AdjacentBlock& before) {
        return fallsOut(before.getReachableBlock());
    });
}

} // namespace veldacc
