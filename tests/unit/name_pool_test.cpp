#include "description/name_pool.h"

#include "unit/test_support.h"

namespace veldacov::test {
namespace {

class NamePoolTest : public FreshProgram {};

TEST_F(NamePoolTest, EqualTextsAreOneEntry) {
    std::string text = "ab";
    NameEntry* entry = internName(text);
    text = "xy"; // the pool holds a copy
    EXPECT_TRUE(entry->text == "ab" && entry->flags == 0);
    entry->flags = 0x1000;
    EXPECT_TRUE(internName("ab") == entry && entry->flags == 0x1000);
    EXPECT_TRUE(internName("abc") != entry && internName("AB") != entry);
    EXPECT_EQ(internName(""), nullptr);
    initNamePool();
    EXPECT_EQ(internName("ab")->flags, 0U) << "a new pool knows no marks";
}

TEST_F(NamePoolTest, ManyAndLongNamesStayInPlace) { // 100,000 names share 250 buckets
    EXPECT_EQ(nameBucket("abcde"), 230U);
    EXPECT_EQ(nameBucket("a\xE9"), 169U) << "bytes are unsigned";
    const auto nameOf = [](std::size_t i) {
        return std::to_string(i) + std::string(i % 1000 == 0 ? 20000 : 0, 'x');
    };
    std::vector<NameEntry*> entries;
    for (std::size_t i = 0; i < 100000; ++i) {
        entries.push_back(internName(nameOf(i)));
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        ASSERT_EQ(entries[i]->text, nameOf(i));
        ASSERT_EQ(internName(nameOf(i)), entries[i]);
    }
}

TEST_F(NamePoolTest, CountsKeepTheOrderOfFirstAdditions) {
    const NameEntry* b = internName("b");
    const NameEntry* a = internName("a");
    NameCountList list;
    EXPECT_EQ(addNameCount(list, b), 1U);
    EXPECT_EQ(addNameCount(list, a), 1U);
    EXPECT_EQ(addNameCount(list, b), 2U);
    ASSERT_EQ(list.nodes.size(), 2U);
    EXPECT_TRUE(list.nodes[0].name == b && list.nodes[0].count == 2);
    EXPECT_TRUE(list.nodes[1].name == a && list.nodes[1].count == 1);
    freeNameCountList(list);
    EXPECT_EQ(addNameCount(list, b), 1U);
}

} // namespace
} // namespace veldacov::test
