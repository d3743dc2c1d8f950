// The coverage model: look-ups compared with the plain ordered search, and the rules of counting hits.

#include <random>
#include <vector>

#include "description/hit_counting.h"
#include "description/item_index.h"
#include "plain_judges.h"
#include "unit/test_support.h"

namespace veldacov::test {
namespace {

class ModelTest : public FreshProgram {
protected:
    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); }
    std::uint32_t oneOf(const std::vector<std::uint32_t>& ids) {
        return ids[below(static_cast<std::uint32_t>(ids.size()))];
    }

    // Items of all kinds in five services, with identifiers out of `ids`.
    std::string randomBody(const std::vector<std::uint32_t>& ids) {
        const std::string lines[][2] = {{"PR ", " return "}, {"AP ", " "}, {"BL ", " simple "},
                                        {"BL ", " atc "},    {"CE ", " "}, {"CA ", " "}};
        std::string body;
        for (std::uint32_t i = 0; i < 80; ++i) {
            const std::string service = "\"s" + std::to_string(i < 5 ? i : below(5)) + "\"";
            const std::string id = std::to_string(oneOf(ids));
            const auto& line = lines[below(6)];
            const std::string field = line[0] == "BL " ? " L" : line[0] == "PR " ? "" : " \"c\"";
            body += i < 5 ? "PR " + id + " proc " + service : line[0] + id + line[1] + service + field;
            body += " 1 1\n";
            if (line[0] == "CA " && i >= 5) { // with a composition of three cases
                body += "CC " + std::to_string(oneOf(ids)) + " 1 " + id + " 3 .\n";
            }
        }
        return body;
    }

    std::mt19937 random{20240607};
};

TEST_F(ModelTest, LookupsGiveWhatTheOrderedSearchGives) {
    constexpr std::uint16_t typesOfKinds[] = {0x003, 0x004, 0x0e8, 0x500};
    for (std::uint32_t round = 0; round < 60; ++round) {
        std::vector<std::uint32_t> ids(round % 2 == 0 ? 6 : 300); // many or few repeated ones
        for (std::uint32_t i = 0; i < ids.size(); ++i) {          // dense, huge, sparse, even, mixed
            const std::uint32_t choices[] = {i, UINT32_MAX - i, below(UINT32_MAX), i * 1000};
            ids[i] = choices[round % 5 < 4 ? round % 5 : below(4)];
        }
        freeAllDescriptions();
        FileDescription& file = load(descriptionOf(randomBody(ids)));
        std::size_t current = 0;
        for (std::uint32_t step = 1; step <= 400; ++step) {
            if (below(20) == 0) {
                findDescription(1, 1); // forgets the current service
                current = 0;
            }
            const ItemKind kind = itemKinds[below(4)];
            const std::uint32_t id = oneOf(ids) + below(5) / 4;
            const plain::Found expected = plain::searched(file, current, typesOfKinds[kindIndex(kind)], id);
            if (expected.item != nullptr && step % 2 == 0) {
                recordHit(file, kind, id, step, Counting::Replace);
                ASSERT_EQ(expected.item->testHits, step) << id;
                continue;
            }
            const CoverageItem* found = findItem(file, kind, id);
            ASSERT_EQ(found, expected.item) << id;
            if (found != nullptr) {
                ASSERT_EQ(typeOfItem(file.services[found->service], kind, *found), expected.type) << id;
            }
        }
        resetTestCounts();
        for (Service& service : file.services) {
            EXPECT_EQ(service.testCovered, CoverageCounters{});
            forEachItem(service,
                        [](const HitRecord& record, std::uint16_t) { EXPECT_EQ(record.testHits, 0U); });
        }
    }
    FileDescription& file = *loadedDescriptions()[0];
    EXPECT_EQ(accountHere([&] { recordHit(file, ItemKind::Call, 123456789, 1, Counting::Replace); }),
              fatalAccount("Cannot find instrumentation ID for specified trace in FDC file loaded.fdc"));
}

TEST_F(ModelTest, HitsReplaceOrAccumulateUpToALimit) {
    constexpr auto set = Counting::Replace;
    constexpr auto add = Counting::Accumulate;
    const struct {
        std::vector<std::pair<std::uint32_t, Counting>> hits;
        std::uint32_t total;
    } rows[] = {{{{3, add}, {5, set}}, 5},
                {{{5, set}, {3, add}, {0, add}}, 8},
                {{{1100000000, add}, {1100000000, add}}, 2147483647},
                {{{2147483645, add}, {1, add}}, 2147483646},
                {{{2147483646, add}, {2, add}}, 2147483647},
                {{{4294967295, set}}, 4294967295},
                {{{4294967295, set}, {1, add}}, 2147483647},
                {{{7, add}, {0, set}}, 0}};
    for (const auto& row : rows) {
        Service service;
        HitRecord record;
        for (const auto& [count, counting] : row.hits) {
            countHit(service, record, type::calls, count, counting);
        }
        EXPECT_EQ(std::pair(record.testHits, record.globalHits), std::pair(row.total, row.total));
        resetTestCounts();
    }
}

TEST_F(ModelTest, AnItemIsCoveredOncePerTestAndOnceOverall) {
    // Each type with the place of its counter; 0 for those that count nothing.
    const std::pair<std::uint16_t, std::size_t> rows[] = {{0x001, 1}, {0x002, 1}, {0x004, 2}, {0x008, 3},
                                                          {0x010, 0}, {0x020, 4}, {0x040, 5}, {0x080, 6},
                                                          {0x100, 7}, {0x200, 8}, {0x400, 9}, {0x800, 0}};
    for (const auto& [type, place] : rows) {
        CoverageCounters once{};
        once[place] = place != 0 ? 1 : 0;
        once[0] = type == 0x001 ? 1 : 0;
        Service service;
        HitRecord record;
        for (std::uint32_t test = 0; test < 2; ++test) {
            countHit(service, record, type, 1, Counting::Replace);
            countHit(service, record, type, 1, Counting::Accumulate);
            EXPECT_EQ(service.testCovered, once) << type;
            EXPECT_EQ(service.globalCovered, once) << type;
            EXPECT_EQ(record.flags, hitFlag | everHit | hitInTest);
            resetTestCounts();
            EXPECT_EQ(service.testCovered, CoverageCounters{});
            EXPECT_EQ(std::pair(record.testHits, record.globalHits), std::pair(0U, 2U));
        }
        countHit(service, record, type, 0, Counting::Replace); // leaves the item as not hit in the test
        countHit(service, record, type, 4, Counting::Replace);
        once[place] *= place != 0 ? 2 : 1;
        EXPECT_EQ(service.testCovered, once) << type; // a service is still entered once
        resetTestCounts();
    }
}

TEST_F(ModelTest, DescriptionsAreFoundByKeyAndChecksum) {
    for (const auto& [key, checksum] : {std::pair(1U, 1U), {1U, 2U}, {2U, 1U}, {1U, 2U}}) {
        auto description = std::make_unique<FileDescription>();
        description->fileKey = key;
        description->checksum = checksum;
        addDescription(std::move(description));
    }
    const struct {
        std::uint32_t key, checksum;
        const FileDescription* description;
        bool otherChecksum;
    } rows[] = {{1, 1, loadedDescriptions()[0].get(), false},
                {1, 2, loadedDescriptions()[1].get(), true},
                {2, 1, loadedDescriptions()[2].get(), false},
                {1, 3, nullptr, true},
                {3, 1, nullptr, false}};
    for (const auto& row : rows) {
        const FoundDescription found = findDescription(row.key, row.checksum);
        EXPECT_EQ(found.description, row.description) << row.key << " " << row.checksum;
        EXPECT_EQ(found.otherChecksum, row.otherChecksum) << row.key << " " << row.checksum;
    }
}

} // namespace
} // namespace veldacov::test
