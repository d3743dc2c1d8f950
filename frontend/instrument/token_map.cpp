#include "token_map.h"

namespace veldacc {

namespace {

// Calls `use` with each token but comments: its place, whether it belongs to a directive, whether it begins one.
template <typename Use>
void forTokens(const std::string& text, const clang::LangOptions& language, const Use& use) {
    clang::Lexer lexer(clang::SourceLocation(), language, text.data(), text.data(),
                       text.data() + text.size());
    clang::Token token;
    bool inDirective = false;
    for (bool atEnd = false; !atEnd;) {
        atEnd = lexer.LexFromRawLexer(token);
        if (token.is(clang::tok::eof)) {
            break;
        }
        const bool beginsDirective = token.isAtStartOfLine() && token.is(clang::tok::hash);
        inDirective = beginsDirective || (inDirective && !token.isAtStartOfLine());
        const auto end = static_cast<std::uint32_t>(lexer.getBufferLocation() - text.data());
        if (token.isNot(clang::tok::comment)) {
            use(TextToken{end - token.getLength(), token.getLength()}, inDirective, beginsDirective);
        }
    }
}

} // namespace

std::vector<TextToken> tokenize(const std::string& text, const clang::LangOptions& language) {
    std::vector<TextToken> tokens;
    forTokens(text, language, [&](TextToken token, bool inDirective, bool) {
        if (!inDirective) {
            tokens.push_back(token);
        }
    });
    return tokens;
}

std::vector<std::uint32_t> directivesOf(const std::string& text, const clang::LangOptions& language) {
    std::vector<std::uint32_t> offsets;
    forTokens(text, language, [&](TextToken token, bool, bool beginsDirective) {
        if (beginsDirective) {
            offsets.push_back(token.offset);
        }
    });
    return offsets;
}

bool tokensAgree(const ParsedUnit& unit, const std::string& text, const std::vector<TextToken>& tokens) {
    if (unit.tokens.size() != tokens.size()) {
        return false;
    }
    // Keywords and punctuation make the structure; names and literals may be spelled otherwise, one for one.
    llvm::SmallString<64> buffer;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const clang::Token& token = unit.tokens[i];
        if (token.isLiteral() || token.is(clang::tok::identifier)) {
            continue;
        }
        if (unit.preprocessor.getSpelling(token, buffer) !=
            llvm::StringRef(text).substr(tokens[i].offset, tokens[i].length)) {
            return false;
        }
    }
    return true;
}

} // namespace veldacc
