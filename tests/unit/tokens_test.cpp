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

// One special character at each place of texts of each length: a text ends at its first quote, holds escapes, and
// is cut by a line end or a NUL.
TEST(Tokens, QuotedStringsOfAnyLength) {
    for (std::size_t length = 1; length < 40; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            const auto with = [&](char special) {
                std::string text(length, 'a');
                text[place] = special;
                return "\"" + text + "\"";
            };
            for (const char ordinary : {'\xFF', '\r', ' '}) {
                EXPECT_EQ(fieldsOf(with(ordinary) + " 1\n", true), with(ordinary) + ";");
            }
            for (const char cutting : {'\n', '\0', '"'}) { // something follows the closing quote
                EXPECT_EQ(fieldsOf(with(cutting) + " 1\n", true), "");
            }
            EXPECT_EQ(fieldsOf(with('\\') + " 1\n", true), place + 1 < length ? with('\\') + ";" : "");
        }
    }
}

TEST(Tokens, AKnownQuotedStringIsPassedOver) {
    const auto passed = [](const std::string& text) {
        Line line = lineOf(text);
        return skipQuotedString(line, "ab") ? std::string(line.cursor, line.end) : "none";
    };
    EXPECT_EQ(passed("\"ab\" 1 2\n"), "1 2\n");
    EXPECT_EQ(passed("\"ab\"  1\n"), " 1\n");
    for (const std::string other : {" \"ab\" 1\n", "\"ab\"\n", "\"ab\"1\n", "\"abc\" 1\n", "\"a\" 1\n",
                                    "\"aB\" 1\n", "\"ab\"", "\"ab", ""}) {
        EXPECT_EQ(passed(other), "none") << other;
    }
}

TEST(Tokens, DecimalNumbers) {
    const auto numbersOf = [](const std::string& text) {
        Line line = lineOf(text);
        const std::uint32_t first = nextDecimal(line, "a.fdc");
        return std::to_string(first) + " " + std::to_string(nextDecimal(line, "a.fdc"));
    };
    EXPECT_EQ(numbersOf("12 7\n"), "12 7");
    EXPECT_EQ(numbersOf("  0012   7 8\r\n"), "12 7");
    EXPECT_EQ(numbersOf("4294967297 \n"), "1 0") << "wraps; an empty token is 0";
    for (const std::string bad : {"1x 2\n", "-1 2\n", "1\t 2\n"}) {
        EXPECT_EQ(accountOf([&] { numbersOf(bad); }),
                  fatalAccount("Bad decimal number while reading file a.fdc"));
    }
    for (const std::string missing : {"1\n", "1", "", "1 2", "1 2\0\n"}) {
        EXPECT_EQ(accountOf([&] { numbersOf(missing); }),
                  fatalAccount("Null pointer for value while reading file a.fdc"));
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
