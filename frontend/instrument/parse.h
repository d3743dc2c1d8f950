#pragma once

// One text through Clang: the tree, every token after macro expansion, the errors.
//
// The text is always the output of the user's own preprocessor: either fully preprocessed, or with its macros still to be
// expanded ("map"). So Clang gets no macros and no include paths of its own, and is forgiven all errors: one costs the
// function it is in.

#include <functional>
#include <string>
#include <vector>

#include "clang_headers.h"

namespace veldacc {

struct ParseOptions {
    std::string standard = "gnu17";
    std::string target;                       // triple; empty: this machine
    std::vector<std::string> compilerOptions; // the user's; those that change how C is read are passed on
};

struct ParseError {
    std::uint32_t offset = 0; // in the text
    std::string message;
};

// Valid while the handler below runs.
struct ParsedUnit {
    clang::ASTContext& context;
    clang::Preprocessor& preprocessor;
    std::vector<clang::Token> tokens;                          // in the order of the text
    llvm::DenseMap<unsigned, unsigned> indexOfLocation;        // encoded location -> token
    std::vector<ParseError> errors;                            // ascending
    llvm::DenseMap<unsigned, const clang::MacroInfo*> macroAt; // encoded location of the use -> definition

    [[nodiscard]] const clang::SourceManager& sources() const { return context.getSourceManager(); }
};

// Parses, and hands the result over; false when Clang could not even begin.
bool parseText(const std::string& text, const ParseOptions& options,
               const std::function<void(ParsedUnit&)>& handler);

// The byte of the text that a location stems from: of macro expansions the place of the use, or of the argument where it
// is written.
std::uint32_t textOffset(const ParsedUnit& unit, clang::SourceLocation location);

} // namespace veldacc
