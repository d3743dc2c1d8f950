#include "parse.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

namespace veldacc {

namespace {

// Names of gcc that Clang's C does not have, so that headers made for gcc leave a good tree. Parsed, never printed.
constexpr std::string_view preamble = R"(
#ifndef __cplusplus
typedef float _Float32;
typedef double _Float64;
typedef double _Float32x;
typedef long double _Float64x;
typedef long double _Float128;
#endif
)";

// What Clang takes for errors by default and gcc for warnings.
constexpr std::array lenient = {
    "-Wno-implicit-function-declaration",
    "-Wno-implicit-int",
    "-Wno-int-conversion",
    "-Wno-incompatible-function-pointer-types",
    "-Wno-incompatible-pointer-types",
    "-Wno-return-type",
    "-Wno-deprecated-non-prototype",
    "-Wno-everything",
};

// Options of the user that change how C is read.
constexpr std::array<std::string_view, 9> passedOn = {
    "-fms-extensions", "-funsigned-char", "-fno-signed-char",  "-fshort-enums",      "-fno-short-enums",
    "-fshort-wchar",   "-fgnu89-inline",  "-fno-gnu-keywords", "-fplan9-extensions",
};

std::string frontendOption(const std::string& option) {
    if (option == "-funsigned-char" || option == "-fno-signed-char") {
        return "-fno-signed-char";
    }
    if (option == "-fplan9-extensions") {
        return "-fms-extensions";
    }
    if (option == "-fno-short-enums") {
        return {};
    }
    return option;
}

// Keeps errors by their place in the text, prints nothing.
struct ErrorKeeper : clang::DiagnosticConsumer {
    std::vector<ParseError> errors;

    void HandleDiagnostic(clang::DiagnosticsEngine::Level level, const clang::Diagnostic& info) override {
        clang::DiagnosticConsumer::HandleDiagnostic(level, info);
        if (level < clang::DiagnosticsEngine::Error || !info.hasSourceManager() ||
            info.getLocation().isInvalid()) {
            return;
        }
        const clang::SourceManager& sources = info.getSourceManager();
        const clang::SourceLocation place = sources.getFileLoc(info.getLocation());
        if (sources.getFileID(place) != sources.getMainFileID()) {
            return;
        }
        llvm::SmallString<120> message;
        info.FormatDiagnostic(message);
        errors.push_back({sources.getFileOffset(place), message.str().str()});
    }
};

// Remembers which definition each use of a macro has expanded.
struct MacroKeeper : clang::PPCallbacks {
    explicit MacroKeeper(llvm::DenseMap<unsigned, const clang::MacroInfo*>& into) : macroAt(into) {}

    llvm::DenseMap<unsigned, const clang::MacroInfo*>& macroAt;

    void MacroExpands(const clang::Token& name, const clang::MacroDefinition& definition, clang::SourceRange,
                      const clang::MacroArgs*) override {
        macroAt[name.getLocation().getRawEncoding()] = definition.getMacroInfo();
    }
};

struct Action : clang::ASTFrontendAction {
    Action(ErrorKeeper& keeper, const std::function<void(ParsedUnit&)>& use) : errors(keeper), handler(use) {}

    ErrorKeeper& errors;
    const std::function<void(ParsedUnit&)>& handler;
    std::vector<clang::Token> tokens;
    llvm::DenseMap<unsigned, const clang::MacroInfo*> macroAt;

    struct Consumer : clang::ASTConsumer {
        explicit Consumer(Action& of) : action(of) {}
        Action& action;
        void HandleTranslationUnit(clang::ASTContext& context) override { action.finish(context); }
    };

    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance&,
                                                          llvm::StringRef) override {
        return std::make_unique<Consumer>(*this);
    }

    bool BeginSourceFileAction(clang::CompilerInstance& compiler) override {
        clang::Preprocessor& preprocessor = compiler.getPreprocessor();
        preprocessor.setPredefines(preprocessor.getPredefines() + std::string(preamble));
        preprocessor.addPPCallbacks(std::make_unique<MacroKeeper>(macroAt));
        const clang::SourceManager& sources = compiler.getSourceManager();
        preprocessor.setTokenWatcher([this, &sources](const clang::Token& token) {
            if (token.is(clang::tok::eof) || token.isAnnotation()) {
                return;
            }
            if (sources.getFileID(sources.getExpansionLoc(token.getLocation())) == sources.getMainFileID()) {
                tokens.push_back(token);
            }
        });
        return true;
    }

    void ExecuteAction() override {
        forgetAtomics();
        clang::ASTFrontendAction::ExecuteAction();
    }

    // gcc's <stdatomic.h> gives objects of _Atomic types to functions of the compiler that Clang has under the same names
    // and for other types. As functions that nobody has declared they leave a good tree.
    void forgetAtomics() {
        const clang::SourceManager& sources = getCompilerInstance().getSourceManager();
        if (!sources.getBufferData(sources.getMainFileID()).contains("_Atomic")) {
            return;
        }
        clang::IdentifierTable& names = getCompilerInstance().getPreprocessor().getIdentifierTable();
        const unsigned ofUnknownName =
            names.get("velda_unknown").getObjCOrBuiltinID(); // differs between versions of Clang
        for (const auto& [name, identifier] : names) {
            if (name.starts_with("__atomic_")) {
                identifier->setObjCOrBuiltinID(ofUnknownName);
            }
        }
    }

    void finish(clang::ASTContext& context) {
        ParsedUnit unit{context,
                        getCompilerInstance().getPreprocessor(),
                        std::move(tokens),
                        llvm::DenseMap<unsigned, unsigned>(),
                        std::move(errors.errors),
                        std::move(macroAt)};
        unit.indexOfLocation.reserve(static_cast<unsigned>(unit.tokens.size()));
        for (unsigned i = 0; i < unit.tokens.size(); ++i) {
            unit.indexOfLocation[unit.tokens[i].getLocation().getRawEncoding()] = i;
        }
        std::stable_sort(unit.errors.begin(), unit.errors.end(),
                         [](const ParseError& a, const ParseError& b) { return a.offset < b.offset; });
        handler(unit);
    }
};

std::string targetTriple(const ParseOptions& options) {
    const llvm::Triple triple(options.target.empty() ? llvm::sys::getDefaultTargetTriple() : options.target);
    for (const std::string& option : options.compilerOptions) {
        if (option == "-m32") {
            return triple.get32BitArchVariant().str();
        }
    }
    return triple.str();
}

std::vector<std::string> makeArguments(const ParseOptions& options) {
    std::vector<std::string> arguments = {"-triple",
                                          targetTriple(options),
                                          "-fsyntax-only",
                                          "-x",
                                          "c",
                                          "-std=" + options.standard,
                                          "-undef",
                                          "-nostdsysteminc",
                                          "-nobuiltininc",
                                          "-ferror-limit",
                                          "0",
                                          "-fbracket-depth",
                                          "100000",
                                          "-fgnuc-version=12.2.0",
                                          "-fno-spell-checking",
                                          "-fno-caret-diagnostics"};
    arguments.insert(arguments.end(), lenient.begin(), lenient.end());
    for (const std::string& option : options.compilerOptions) {
        if (std::find(passedOn.begin(), passedOn.end(), option) != passedOn.end()) {
            if (std::string passed = frontendOption(option); !passed.empty()) {
                arguments.push_back(std::move(passed));
            }
        }
    }
    arguments.emplace_back("text.c");
    return arguments;
}

} // namespace

bool parseText(const std::string& text, const ParseOptions& options,
               const std::function<void(ParsedUnit&)>& handler) {
    const std::vector<std::string> arguments = makeArguments(options);
    std::vector<const char*> pointers;
    pointers.reserve(arguments.size());
    for (const std::string& argument : arguments) {
        pointers.push_back(argument.c_str());
    }

    ErrorKeeper errors;
    const llvm::IntrusiveRefCntPtr<clang::DiagnosticsEngine> diagnostics =
        clang::CompilerInstance::createDiagnostics(new clang::DiagnosticOptions, &errors, false);
    auto invocation = std::make_shared<clang::CompilerInvocation>();
    if (!clang::CompilerInvocation::CreateFromArgs(*invocation, pointers, *diagnostics)) {
        return false;
    }
    clang::ProcessWarningOptions(*diagnostics, invocation->getDiagnosticOpts());
    const std::unique_ptr<llvm::MemoryBuffer> buffer = llvm::MemoryBuffer::getMemBuffer(text, "text.c");
    invocation->getPreprocessorOpts().addRemappedFile("text.c", buffer.get());
    invocation->getPreprocessorOpts().RetainRemappedFileBuffers = true;

    clang::CompilerInstance compiler;
    compiler.setInvocation(std::move(invocation));
    compiler.setDiagnostics(diagnostics.get());
    Action action(errors, handler);
    compiler.ExecuteAction(action);
    return true;
}

std::uint32_t textOffset(const ParsedUnit& unit, clang::SourceLocation location) {
    return unit.sources().getFileOffset(unit.sources().getFileLoc(location));
}

} // namespace veldacc
