// Text and file names of pages, which come from anywhere.

#include <random>
#include <set>
#include <string>
#include <vector>

#include <QByteArray>
#include <QString>
#include <QUtf8StringView>

#include "support/machine.h"
#include "unit/test_support.h"
#include "view/html_text.h"
#include "view/page_names.h"

namespace veldacov::test {
namespace {

class PageTextTest : public FreshProgram {
protected:
    std::string htmlOf(std::string_view bytes) {
        const std::string name = write("page", "");
        OutputFile out(platform::createForWriting(name), name);
        putHtml(out, bytes);
        out.finish();
        return read(name);
    }
    static std::string read(const std::string& name) {
        std::ifstream in(name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
};

TEST_F(PageTextTest, ShowsWhatIsNoPlainText) {
    struct Row {
        std::string_view bytes;
        std::string_view html;
    };
    using namespace std::string_view_literals;
    const std::vector<Row> rows = {
        {"a<b>&\"'\tc", "a&lt;b&gt;&amp;&quot;&#39;\tc"},
        {"\x1b[0m\0\x7f\r"sv, "␛[0m␀␡␍"},
        {"caf\xc3\xa9 日本 😀", "café 日本 😀"},
        {"\xe9t\xc3", "�t�"},
        {"\xc0\xbc\xe0\x80\xbc", "�����"},                  // "<" in forms that are too long
        {"\xed\xa0\x80", "���"},                            // half of a pair
        {"\xf4\x90\x80\x80\xf5", "�����"},                  // behind the last character
        {"x\xe2\x80\xaey\xe2\x81\xa6", "x\\u202ey\\u2066"}, // what turns text round
        {"\xc2\x9b\xef\xbb\xbf\xe2\x80\x8b", "\\u009b\\ufeff\\u200b"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(htmlOf(row.bytes), row.html);
    }
}

// Whatever comes in, nothing comes out that could be markup, or is no UTF-8; the toolkit's decoder is the judge of the text.
TEST_F(PageTextTest, SaysWhatTheToolkitReads) {
    std::mt19937 random(1);
    const std::string likely = "<>&\"'\xc2\xe0\xa0\xed\xf0\x90\xf4\x80\xbf \x01z";
    std::string bytes;
    for (int i = 0; i < 200'000; ++i) {
        bytes += random() % 4 == 0 ? static_cast<char>(random()) : likely[random() % likely.size()];
    }
    const std::string html = htmlOf(bytes);
    EXPECT_TRUE(QUtf8StringView(html.data(), static_cast<qsizetype>(html.size())).isValidUtf8());
    EXPECT_EQ(html.find_first_of("<>\"'\x01\x7f"), std::string::npos);
    // Of what is no wrong byte, letters stay in number and order.
    const auto lettersOf = [](const QString& text) { return text.count(QLatin1Char('z')); };
    EXPECT_EQ(lettersOf(QString::fromUtf8(html.c_str())),
              lettersOf(QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()))));
}

TEST(PageNamesTest, AreSafeAndStable) {
    struct Row {
        std::string_view name;
        std::string_view file;
    };
    const std::vector<Row> rows = {{"src/burner.c", "src-burner.c.html"},
                                   {"/usr/src/a.c", "_usr-src-a.c.html"},
                                   {"../../x.c", "_.-..-x.c.html"},
                                   {".hidden", "_hidden.html"},
                                   {"-rf", "_rf.html"},
                                   {"a b\n\xe9<\"", "a_b____.html"}};
    std::vector<std::string> names;
    for (const Row& row : rows) {
        EXPECT_EQ(pageNames({std::string(row.name)}), std::vector<std::string>{std::string(row.file)});
        names.emplace_back(row.name);
    }
    const std::vector<std::string> together = pageNames(names);
    for (std::size_t place = 0; place < rows.size(); ++place) {
        EXPECT_EQ(together[place], rows[place].file); // what else is there does not matter
    }
}

TEST(PageNamesTest, NeverMeet) {
    std::vector<std::string> names = {"a/b",
                                      "a-b",
                                      "A/B",
                                      "",
                                      "",
                                      ".",
                                      "..",
                                      "/",
                                      "x",
                                      "x",
                                      std::string(300, 'y'),
                                      std::string(300, 'y') + "z",
                                      std::string(100, 'y')};
    // Names that are those of other pages, as far as somebody can foresee them.
    for (int turn = 0; turn < 3; ++turn) {
        for (const std::string& file : pageNames(names)) {
            names.push_back(file.substr(0, file.size() - 5));
        }
    }
    std::set<std::string> capitals;
    for (const std::string& file : pageNames(names)) {
        EXPECT_TRUE(capitals.insert(duplicateUpper(file)).second) << file;
        EXPECT_LE(file.size(), 255U);
        EXPECT_EQ(file.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-"),
                  std::string::npos);
        EXPECT_TRUE(file[0] != '.' && file[0] != '-') << file;
    }
}

} // namespace
} // namespace veldacov::test
