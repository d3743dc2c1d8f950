#include "description/tokens.h"

#include "unit/test_support.h"

namespace veldacov::test {
namespace {

using namespace std::string_literals;

Line lineOf(const std::string& text) {
    return {text.data(), text.data() + text.size()};
}

// The tokens, or the quoted strings, of a line up to the first call that finds none, each followed by ";".
std::string fieldsOf(const std::string& text, bool quoted) {
    Line line = lineOf(text);
    std::string scratch;
    std::string fields;
    const auto next = [&] { return quoted ? nextQuotedString(line, scratch) : nextToken(line); };
    while (const auto field = next()) {
        fields.append(*field).append(";");
    }
    EXPECT_FALSE(next()) << "more behind the last field of " << text;
    return fields;
}

TEST(Tokens, EndAtBlanksAndAtTheLineEnd) {
    EXPECT_EQ(fieldsOf("  PR   0 proc\n", false), "PR;0;proc;");
    EXPECT_EQ(fieldsOf("PR\t0 x\r\n", false), "PR\t0;x;");
    EXPECT_EQ(fieldsOf("PR\r0 1\n", false), "PR;");
    EXPECT_EQ(fieldsOf("PR   \r\n", false), "PR;;") << "blanks before the line end leave an empty token";
    EXPECT_EQ(fieldsOf("\n", false), ";");
    EXPECT_EQ(fieldsOf("PR 0", false), "PR;") << "not closed by a line end";
    EXPECT_EQ(fieldsOf("PR 0\0 1\n"s, false), "PR;");
}

TEST(Tokens, QuotedStringsResolveTheirEscapes) {
    EXPECT_EQ(fieldsOf("\"a\" \"b c\"   \"\"\n", true), R"("a";"b c";"";)");
    EXPECT_EQ(fieldsOf("x\"a\" xy\"b\" x \"c\"\n", true), R"("a";"b";)")
        << "drops a word in front, not a field";
    EXPECT_EQ(fieldsOf(R"("a\"b" "a\\" "\\\"" "a\nb\ c")"s + "\r\n", true), R"("a"b";"a\";"\"";"a\nb\ c";)");
    for (const std::string& line :
         {"\"a\"\"b\"\n"s, "\"a\"x\n"s, "\"a\"\t\n"s, "\"a\n"s, "\"a\\\"\n"s, "\"a\\\n\"\n"s, "\"a\""s, "\""s,
          "\"\\"s, "\"a\0\" \n"s, "\"a\\\0\" \n"s, "\"a\"\0\n"s, "\0\"a\"\n"s, "\n\"a\"\n"s}) {
        EXPECT_EQ(fieldsOf(line, true), "") << line;
    }
}

TEST(Tokens, WhatFollowsAQuotedString) {
    const auto following = [](const std::string& text) {
        Line line = lineOf(text);
        std::string scratch;
        EXPECT_EQ(nextQuotedString(line, scratch), "\"a\"") << text;
        return std::string(nextToken(line).value_or("none"));
    };
    EXPECT_EQ(following("\"a\"  12 3\n"), "12");
    EXPECT_EQ(following("\"a\" \n"), "");
    EXPECT_EQ(following("\"a\"\n"), "none");
    EXPECT_EQ(following("\"a\"\r\n"), "none") << "ends the line as a line feed alone does";
    EXPECT_EQ(following("\"a\"\r12\n"), "12");
}

class NamedStrings : public FreshProgram {};

TEST_F(NamedStrings, AreInternedWithoutQuotes) {
    const std::string text = "\"na\\\"me\" \"b\" \"\" \n";
    Line line = lineOf(text);
    EXPECT_EQ(readNamedString(line, "entity name in FDC file", "a.fdc"), internName("na\"me"));
    EXPECT_EQ(readNamedString(line), internName("b"));
    EXPECT_EQ(readNamedString(line), nullptr) << "empty";
    EXPECT_EQ(readNamedString(line), nullptr) << "missing";
    for (const std::string bad : {"12\n", "\"a\n", "\"\"\n"}) {
        line = lineOf(bad);
        EXPECT_EQ(accountOf([&] { readNamedString(line, "entity name in FDC file", "a.fdc"); }),
                  fatalAccount((bad == "\"\"\n" ? "Empty "s : "Cannot retrieve correctly "s) +
                               "entity name in FDC file a.fdc"));
    }
}

} // namespace
} // namespace veldacov::test
