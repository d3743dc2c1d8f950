#include "token_map.h"

namespace veldacc {

std::vector<TextToken> tokenize(const std::string& text, const clang::LangOptions& language) {
    std::vector<TextToken> tokens;
    clang::Lexer lexer(clang::SourceLocation(), language, text.data(), text.data(),
                       text.data() + text.size());
    clang::Token token;
    const auto offsetOf = [&] { return static_cast<std::uint32_t>(lexer.getBufferLocation() - text.data()); };
    bool inDirective = false;
    for (bool atEnd = false; !atEnd;) {
        atEnd = lexer.LexFromRawLexer(token);
        if (token.is(clang::tok::eof))
            break;
        if (token.isAtStartOfLine())
            inDirective = token.is(clang::tok::hash);
        if (!inDirective && token.isNot(clang::tok::comment))
            tokens.push_back({offsetOf() - token.getLength(), token.getLength()});
    }
    return tokens;
}

bool tokensAgree(const ParsedUnit& unit, const std::string& text, const std::vector<TextToken>& tokens) {
    if (unit.tokens.size() != tokens.size())
        return false;
    // Keywords and punctuation make the structure; names and literals may be spelled otherwise, one for one.
    llvm::SmallString<64> buffer;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const clang::Token& token = unit.tokens[i];
        if (token.isLiteral() || token.is(clang::tok::identifier))
            continue;
        if (unit.preprocessor.getSpelling(token, buffer) !=
            llvm::StringRef(text).substr(tokens[i].offset, tokens[i].length))
            return false;
    }
    return true;
}

} // namespace veldacc
