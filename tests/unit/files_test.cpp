#include "support/files.h"

#include <ctime>

#include "unit/test_support.h"

namespace veldacov::test {
namespace {

using namespace std::string_literals;
using Texts = std::vector<std::string>;

class Files : public FreshProgram {
protected:
    Texts linesOf(std::string_view text) {
        InputFile input = openInput(write("lines", text));
        Texts lines;
        for (Line line; readLine(input, line);) {
            lines.emplace_back(line.cursor, line.end);
        }
        EXPECT_TRUE(input.atEnd);
        return lines;
    }
};

TEST_F(Files, LinesOfEveryKindAndLength) {
    EXPECT_EQ(linesOf("a\0b\n\nc\rd\n\re\r\nlast"s), (Texts{"a\0b\n"s, "\n", "c\rd\n", "\re\r\n"}));
    EXPECT_EQ(linesOf("a\nlast\r"), (Texts{"a\n", "last\r"}));
    EXPECT_EQ(linesOf(std::string(3000, 'x')), Texts{});
    for (const std::size_t blocks : {1U, 2U, 3U, 255U, 256U, 257U, 600U}) { // around the read buffer, too
        const std::string x(blocks * 1024 - 2, 'x');
        EXPECT_EQ(linesOf("a\n" + x + "\r\nb\n"), (Texts{"a\n", x + "\r\n", "b\n"})) << blocks;
        EXPECT_EQ(linesOf("a\n" + x + "x\r\nb\n"), (Texts{"a\n", x + "x\r", "\n", "b\n"})) << blocks;
        EXPECT_EQ(linesOf("a\n" + x + "x\rb\rc\n"), (Texts{"a\n", x + "x\r", "b\rc\n"})) << blocks;
        EXPECT_EQ(linesOf("a\n" + x + "xx\r\nb\n"), (Texts{"a\n", x + "xx\r\n", "b\n"})) << blocks;
    }
    InputFile input = openInput(write("f", "a\n"));
    Line line;
    EXPECT_TRUE(readLine(input, line) && !input.atEnd) << "only a further read meets the end";
}

using Reader = std::uint32_t (*)(std::optional<std::string_view>, std::string_view);

TEST_F(Files, Numbers) {
    for (const Reader decimal : {readDecimalValue, readDecimalTime}) {
        EXPECT_EQ(decimal("", "f"), 0U);
        EXPECT_EQ(decimal("004294967295", "f"), 4294967295U);
        EXPECT_EQ(decimal("12884901890", "f"), 2U) << "wraps";
    }
    for (const Reader hexadecimal : {readHexValue, readHexTime}) {
        EXPECT_EQ(hexadecimal("", "f"), 0U);
        EXPECT_EQ(hexadecimal("A1b0", "f"), 0xB1AU);
        EXPECT_EQ(hexadecimal("12345678", "f"), 0x87654321U);
    }
    EXPECT_EQ(hexText(0).view(), "0");
    EXPECT_EQ(hexText(26).view(), "a1");
    EXPECT_EQ(hexText(0xF0000000).view(), "0000000f");
}

TEST_F(Files, MalformedNumbersEndTheProgram) {
    const auto account = [](Reader reader, std::optional<std::string_view> text) {
        return accountOf([&] { reader(text, "a.tio"); });
    };
    const std::string bad = "Bad decimal number while reading file a.tio";
    for (const char* text : {"1a", "-1", "1 ", "\xB2", "99999999999x"}) {
        EXPECT_EQ(account(readDecimalValue, text), fatalAccount(bad)) << text;
        EXPECT_EQ(account(readDecimalTime, text), fatalAccount(bad)) << text;
    }
    const std::string badHex = "Bad hexadecimal number while reading file a.tio";
    for (const char* text : {"12g", "0x1", "-1", "@", "12345678g"}) {
        EXPECT_EQ(account(readHexValue, text), fatalAccount(badHex)) << text;
        EXPECT_EQ(account(readHexTime, text), fatalAccount(badHex)) << text;
    }
    const std::string old =
        "Maybe this Coverage Trace file has been generated using an older version of the Deplonix";
    const std::string overflow = "ERROR: Number overflow while reading file a.tio\n" + fatalAccount(old);
    EXPECT_EQ(account(readHexValue, "000000000"), overflow);
    EXPECT_EQ(account(readHexTime, "123456789g"), overflow);
    const std::string noValue = fatalAccount("Null pointer for value while reading file a.tio");
    const std::string noTime = fatalAccount("Null pointer for time while reading file a.tio");
    EXPECT_EQ(account(readDecimalValue, {}) + account(readHexValue, {}), noValue + noValue);
    EXPECT_EQ(account(readDecimalTime, {}) + account(readHexTime, {}), noTime + noTime);
}

TEST_F(Files, KeysTakeSignedBytesAndFoldsUnsignedOnes) {
    EXPECT_EQ(evalFileKey(""), 0x4A4A4A4AU);
    EXPECT_EQ(evalFileKey("a.c"), 0x2B64294AU);
    EXPECT_EQ(evalFileKey("abcde"), 0x4E28292EU);
    EXPECT_EQ(evalFileKey("a\xE9"), 0x2AA34A4AU);
    EXPECT_EQ(evalFileKey("\x80\x80\x80\x80"), 0x353535CAU);
    EXPECT_EQ(accountOf([] { evalFileKey({}); }), internalAccount("Cannot eval file key"));
    std::uint32_t fold = 0x10000000;
    EXPECT_EQ(xorFoldText(fold, "") + xorFoldText(fold, "abcde"), 5U);
    EXPECT_EQ(fold, 0x14626364U);
    xorFoldText(fold, "\x01\xE9");
    EXPECT_EQ(fold, 0x158B6364U);
}

TEST_F(Files, Paths) {
    for (const char* path : {"a.c", "src/a.c", "src\\a.c", "c:a.c", "x:b\\c/a.c", "b/c:a.c"}) {
        EXPECT_EQ(baseName(path), "a.c") << path;
    }
    EXPECT_EQ(joinPath("out", "a") + joinPath("out/", "a") + joinPath("out\\", "a") + joinPath("", "a"),
              "out/aout/aout\\a/a");
    EXPECT_EQ(changeExtension("prog", ".lsc"), "prog.lsc");
    EXPECT_EQ(changeExtension("a.b.c", ".lsc"), "a.b.lsc");
    EXPECT_EQ(changeExtension("dir.v1\\prog", ".lsc"), "dir.lsc");
    const auto account = [](const char* name, const char* extension) {
        return accountOf([&] { changeExtension(name, extension); });
    };
    EXPECT_EQ(account("", ""), internalAccount("Source file name empty while changing extension"));
    EXPECT_EQ(account("a.c", ""), internalAccount("Extension empty while changing it to a file"));
    EXPECT_EQ(account("a.c", "c"),
              internalAccount("Extension not beginning with period while changing it to a file"));
}

TEST_F(Files, StatusAndDates) {
    ::setenv("TZ", "UTC", 1);
    ::tzset();
    EXPECT_EQ(dateText(0), "Thu Jan  1 00:00:00 1970");
    EXPECT_EQ(dateText(1170267360), "Wed Jan 31 18:16:00 2007");
    EXPECT_TRUE(fileExists(write("f", "")) && !fileExists(path("missing")));
    EXPECT_EQ(fileModificationTime(path("missing")), 0);
}

} // namespace
} // namespace veldacov::test
