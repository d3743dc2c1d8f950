#include "source_text.h"

#include <optional>
#include <utility>
#include <vector>

namespace veldacc {

namespace {

using clang::SourceLocation;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}
bool isWord(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           c == '$' || static_cast<unsigned char>(c) >= 0x80;
}

// The end of a literal that begins at `at`.
std::size_t endOfLiteral(std::string_view text, std::size_t at) {
    const char quote = text[at];
    for (++at; at < text.size() && text[at] != quote; ++at) {
        if (text[at] == '\\') {
            ++at;
        }
    }
    return std::min(at + 1, text.size());
}

// The end of blanks, comments and continued lines; `at` where there is none.
std::size_t endOfGap(std::string_view text, std::size_t at) {
    for (;;) {
        if (at < text.size() && isBlank(text[at])) {
            ++at;
        } else if (text.substr(at, 2) == "/*") {
            const std::size_t end = text.find("*/", at + 2);
            at = end == std::string_view::npos ? text.size() : end + 2;
        } else if (text.substr(at, 2) == "//") {
            const std::size_t end = text.find('\n', at);
            at = end == std::string_view::npos ? text.size() : end;
        } else if (text.substr(at, 2) == "\\\n") {
            at += 2;
        } else {
            return at;
        }
    }
}

// Calls `use` with each piece: a word, a literal, a gap made one blank, or another character.
template <typename Use>
void forPieces(std::string_view text, const Use& use) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t begin = at;
        if (const std::size_t gap = endOfGap(text, at); gap > at) {
            at = gap;
            use(std::string_view(" "), false);
            continue;
        }
        if (text[at] == '"' || text[at] == '\'') {
            at = endOfLiteral(text, at);
            use(text.substr(begin, at - begin), false);
            continue;
        }
        while (at < text.size() && isWord(text[at])) {
            ++at;
        }
        const bool isName = at > begin && (text[begin] < '0' || text[begin] > '9');
        if (at == begin) {
            ++at;
        }
        use(text.substr(begin, at - begin), isName);
    }
}

std::string trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return std::string(text);
}

// The arguments of `NAME(a, b)`; the last of `count` takes all that is left when the macro is variadic.
std::vector<std::string> splitArguments(std::string_view use, std::size_t count, bool variadic) {
    std::vector<std::string> arguments;
    std::string current;
    int depth = 0;
    forPieces(use, [&](std::string_view piece, bool) {
        const char c = piece.front();
        if (c == ')' || c == ']' || c == '}') {
            --depth;
        }
        const bool separates = c == ',' && depth == 1 && !(variadic && arguments.size() + 1 >= count);
        if (separates) {
            arguments.push_back(trimmed(current));
            current.clear();
        } else if (depth >= 1) {
            current += piece;
        }
        if (c == '(' || c == '[' || c == '{') {
            ++depth;
        }
    });
    arguments.push_back(trimmed(current));
    arguments.resize(std::max(count, std::size_t{1}));
    return arguments;
}

struct Speller {
    const ParsedUnit& unit;
    const clang::SourceManager& sources = unit.sources();
    const clang::LangOptions& language = unit.context.getLangOpts();

    [[nodiscard]] bool isArgument(SourceLocation at) const {
        return at.isMacroID() && sources.isMacroArgExpansion(at);
    }

    // One level up: from an argument to where its parameter stands, from a macro's body to its use.
    [[nodiscard]] SourceLocation up(SourceLocation at, bool isEnd) const {
        const clang::CharSourceRange use = sources.getImmediateExpansionRange(at);
        return isEnd ? use.getEnd() : use.getBegin();
    }

    [[nodiscard]] std::vector<SourceLocation> levels(SourceLocation at, bool isEnd) const {
        std::vector<SourceLocation> chain = {at};
        while (at.isMacroID()) {
            chain.push_back(at = up(at, isEnd));
        }
        return chain;
    }

    // The innermost level that holds both tokens.
    [[nodiscard]] std::optional<std::pair<SourceLocation, SourceLocation>>
    commonLevel(SourceLocation begin, SourceLocation end) const {
        for (;;) {
            bool descends = false;
            const std::vector<SourceLocation> ends = levels(end, true);
            for (const SourceLocation b : levels(begin, false)) {
                for (const SourceLocation e : ends) {
                    if (sources.getFileID(b) == sources.getFileID(e)) {
                        return std::pair{b, e};
                    }
                    if (isArgument(b) && isArgument(e) && up(b, false) == up(e, true)) {
                        begin = sources.getImmediateSpellingLoc(b);
                        end = sources.getImmediateSpellingLoc(e);
                        descends = true;
                        break;
                    }
                }
                if (descends) {
                    break;
                }
            }
            if (!descends) {
                return std::nullopt;
            }
        }
    }

    // The raw text between two tokens of one file.
    [[nodiscard]] std::optional<std::string> rawText(SourceLocation begin, SourceLocation end) const {
        const auto [beginFile, beginOffset] = sources.getDecomposedLoc(begin);
        const auto [endFile, endOffset] = sources.getDecomposedLoc(end);
        if (beginFile != endFile || beginFile != sources.getMainFileID() || endOffset < beginOffset) {
            return std::nullopt;
        }
        const unsigned length = clang::Lexer::MeasureTokenLength(end, sources, language);
        return sources.getBufferData(beginFile).substr(beginOffset, endOffset + length - beginOffset).str();
    }

    // The text of a level from one token to another.
    [[nodiscard]] std::optional<std::string> textOf(SourceLocation begin, SourceLocation end) const {
        if (begin.isFileID()) {
            return rawText(begin, end);
        }
        if (isArgument(begin)) {
            return textOf(sources.getImmediateSpellingLoc(begin), sources.getImmediateSpellingLoc(end));
        }
        std::optional<std::string> body =
            rawText(sources.getImmediateSpellingLoc(begin), sources.getImmediateSpellingLoc(end));
        const clang::CharSourceRange use = sources.getImmediateExpansionRange(begin);
        const auto macro = unit.macroAt.find(use.getBegin().getRawEncoding());
        if (!body || macro == unit.macroAt.end()) {
            return std::nullopt;
        }
        if (!macro->second->isFunctionLike()) {
            return body;
        }
        const auto level = commonLevel(use.getBegin(), use.getEnd());
        const std::optional<std::string> useText = level ? textOf(level->first, level->second) : std::nullopt;
        if (!useText) {
            return std::nullopt;
        }
        return fill(*body, *macro->second,
                    splitArguments(*useText, macro->second->getNumParams(), macro->second->isVariadic()));
    }

    static std::string fill(const std::string& body, const clang::MacroInfo& macro,
                            const std::vector<std::string>& arguments) {
        std::string result;
        forPieces(body, [&](std::string_view piece, bool isName) {
            if (isName) {
                for (unsigned i = 0; i < macro.getNumParams(); ++i) {
                    if (macro.params()[i]->getName() == llvm::StringRef(piece)) {
                        result += arguments[i];
                        return;
                    }
                }
            }
            result += piece;
        });
        for (std::size_t paste; (paste = result.find("##")) != std::string::npos;) {
            const std::string left = trimmed(std::string_view(result).substr(0, paste));
            result = left + trimmed(std::string_view(result).substr(paste + 2));
        }
        return result;
    }

    [[nodiscard]] std::optional<std::string> spell(SourceLocation begin, SourceLocation end) const {
        const clang::CharSourceRange written = clang::Lexer::makeFileCharRange(
            clang::CharSourceRange::getTokenRange(begin, end), sources, language);
        if (written.isValid()) {
            return clang::Lexer::getSourceText(written, sources, language).str();
        }
        const auto level = commonLevel(begin, end);
        return level ? textOf(level->first, level->second) : std::nullopt;
    }
};

} // namespace

std::string onOneLine(std::string_view text) {
    std::string result;
    forPieces(text, [&](std::string_view piece, bool) { result += piece; });
    return trimmed(result);
}

std::string withoutOuterParentheses(std::string text) {
    for (;;) {
        if (text.size() < 2 || text.front() != '(' || text.back() != ')') {
            return text;
        }
        int depth = 0;
        bool closesEarly = false;
        std::size_t length = 0;
        forPieces(text, [&](std::string_view piece, bool) {
            length += piece.size();
            if (piece.front() == '(') {
                ++depth;
            }
            if (piece.front() == ')' && --depth == 0 && length < text.size()) {
                closesEarly = true;
            }
        });
        if (closesEarly || depth != 0) {
            return text;
        }
        std::string inner = trimmed(std::string_view(text).substr(1, text.size() - 2));
        if (inner.starts_with('{')) {
            return text; // a statement expression
        }
        text = std::move(inner);
    }
}

std::string spellRange(const ParsedUnit& unit, std::uint32_t first, std::uint32_t last,
                       std::string_view expanded) {
    const Speller speller{unit};
    const std::optional<std::string> text =
        speller.spell(unit.tokens[first].getLocation(), unit.tokens[last].getLocation());
    std::string result = onOneLine(text ? *text : std::string(expanded));
    return result.empty() ? onOneLine(expanded) : result;
}

} // namespace veldacc
