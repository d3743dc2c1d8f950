// Coverage descriptions: what is loaded, and what is queued as a trace. The case bad_descriptions has the refusals.

#include <algorithm>
#include <array>
#include <random>
#include <vector>

#include "description/conditions.h"
#include "support/files.h"
#include "unit/test_support.h"

namespace veldacov::test {
namespace {

class FdcTest : public FreshProgram {
protected:
    // Loads a text as x.fdc into the empty model and gives the account of it.
    std::string accountOfLoading(const std::string& text, std::uint16_t requestedTypes = 0) {
        freeAllDescriptions();
        const std::string name = write("x.fdc", text);
        return accountHere([&] { loadFdcFile(&name, requestedTypes, traces); });
    }

    // The sources of all descriptions, in loading order, a blank behind each.
    static std::string loadedSources() {
        std::string sources;
        for (const auto& description : loadedDescriptions()) {
            sources.append(description->sourceName->text).append(" ");
        }
        return sources;
    }

    TraceFileList traces;
    const std::string call = "AP 0 \"f\" \"g\" 1 1\n";
};

TEST_F(FdcTest, EveryItemIsCountedInItsServiceAndFile) {
    FileDescription& file = load(descriptionOf(
        "PR 0 proc \"f\" 10 50\nPR 1 return \"f\" 20 20\nPR 2 endproc \"f\" 50 50\nPR 3 term \"f\" 30 30\n"
        "AP 0 \"g\" \"f\" 70 71\nBL 0 simple \"f\" A 12 14 more fields\nBL 1 implicit \"f\" B 15 15\n"
        "BL 2 logical \"f\" FOR 16 18\nBL 3 atc \"f\" D 9 9\nCE 40 \"f\" \"a \\\"<\\\" b\" 11 12\n"
        "CE 42 \"f\" \"a \\\"<\\\" b\" 13 13\nCA 44 \"f\" \"c\\\\d\" 14 14\nCC 45 2 40 44 2 TTFF 1\n"));
    EXPECT_EQ((std::array{file.procedureBranchCount, file.callCount, file.blockCount, file.conditionCount}),
              (std::array{4U, 1U, 4U, 2U + 2U + 1U + 2U}));
    ASSERT_EQ(file.services.size(), 2U);
    const Service& f = file.services[0];
    const Service& g = file.services[1]; // first mentioned as a caller
    EXPECT_EQ(f.counts, (CoverageCounters{1, 4, 0, 1, 1, 1, 1, 5, 2, 2}));
    EXPECT_EQ(g.counts, (CoverageCounters{0, 0, 1, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ((std::array{f.firstLine, f.lastLine, g.firstLine, g.lastLine}),
              (std::array{9U, 50U, 70U, 71U}));
    EXPECT_STREQ(f.blocks[2].label, "FOR");
    std::string conditions;
    for (std::uint32_t i = 0; i < f.conditions.size(); ++i) {
        const CoverageItem& item = f.conditions[i];
        conditions += std::to_string(item.id) + " " + std::to_string(item.startLine) + "-" +
                      std::to_string(item.endLine) + " " + conditionText(f, i) +
                      outcomeText(f, f.conditions[i]).data() + "\n";
    }
    EXPECT_EQ(conditions, "40 11-12 \"a \"<\" b\"True\n41 11-12 \"a \"<\" b\"False\n"
                          "42 13-13 \"a \"<\" b\"True\n43 13-13 \"a \"<\" b\"False\n"
                          "44 14-14 \"c\\d\"\n45 11-14 TT=T\n46 11-14 FF=F\n");
}

// Services in turn, with runs of conditions and with compositions of the first and the last condition so far.
TEST_F(FdcTest, ConditionsOfServicesThatComeAgainStayInLineOrder) {
    struct Condition {
        std::uint32_t id, startLine, endLine;
        std::string text;
        bool operator==(const Condition&) const = default;
    };
    std::mt19937 random(20240607);
    const auto below = [&](std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); };
    for (std::uint32_t round = 0; round < 100; ++round) {
        std::array<std::vector<Condition>, 3> expected; // by service
        std::string body;
        std::uint32_t id = 0;
        for (std::uint32_t turn = 0; turn < 60; ++turn) {
            const std::size_t service = turn < 3 ? turn : below(3);
            const std::string name = " \"" + std::to_string(service) + "\" ";
            std::vector<Condition>& conditions = expected[service];
            body += "AP 0" + name + "\"g\" 1 1\n";
            for (std::uint32_t run = turn < 3 ? 1 : below(4); run > 0; --run) {
                conditions.push_back({id, turn, turn + 1, "\"" + std::to_string(id) + "\""});
                body += "CA " + std::to_string(id) + name + conditions.back().text + " " +
                        std::to_string(turn) + " " + std::to_string(turn + 1) + "\n";
                ++id;
            }
            if (below(3) == 0) {
                const Condition& first = conditions.front();
                const Condition& last = conditions.back();
                body += "CC " + std::to_string(id) + " 2 " + std::to_string(last.id) + " " +
                        std::to_string(first.id) + " 1 A..\n";
                conditions.push_back({id, last.startLine, first.endLine, "FF=F"});
                ++id;
            }
        }
        freeAllDescriptions();
        for (const Service& service : load(descriptionOf(body)).services) {
            std::vector<Condition> conditions;
            for (const ConditionEntry& entry : service.conditions) {
                const auto place = static_cast<std::uint32_t>(conditions.size());
                conditions.push_back(
                    {entry.id, entry.startLine, entry.endLine, conditionText(service, place)});
            }
            EXPECT_TRUE(conditions == expected[service.place]) << service.name->text << " of " << body;
        }
    }
}

TEST_F(FdcTest, KeyAndChecksumComeFromSourceTokensAndChecksumLine) {
    constexpr std::uint32_t keyOfSource = 0x58164a65; // 0x4a4a4a4a ^ "src/" ^ "a.c\0"
    const struct {
        std::string version, checksumLine;
        std::uint32_t fileKey, checksum;
    } rows[] = {{"VE 3.0d A B 12 C", "DC 7", keyOfSource, 0x41204207},
                {"VE 3.0e A #B C", "DC 7", keyOfSource, 0x41000007},
                {"VE 3.0e 1 B", "DC 7", keyOfSource, 0x31204207}, // only the first may start with a digit
                {"VE 3.0e A B C D E", "DC 7", keyOfSource, 0x02000627},
                {"VE 3.0e A", "DC 7 99", 99, 0x41000007},
                {"VE 3.0e A", "DC 4294967296 ", 0, 0x41000000}}; // wraps; the blank leaves an empty key
    for (const auto& row : rows) {
        load(row.version + "\nFC \"a.c\" \"src/\"\nFD 0\nTC PR\n" + call + row.checksumLine + "\n");
        EXPECT_EQ(loadedDescriptions().back()->fileKey, row.fileKey) << row.checksumLine;
        EXPECT_EQ(loadedDescriptions().back()->checksum, row.checksum) << row.version;
    }
}

TEST_F(FdcTest, FilesWithoutAVersionLineAreTraces) {
    for (const std::string text : {"\n", "VEX 1\n", "ve 3.0e\n", "NT\r"}) {
        EXPECT_EQ(accountOfLoading(text), "");
        EXPECT_EQ(std::exchange(traces, {}), TraceFileList{path("x.fdc")}) << text;
    }
    const std::string missing = path("missing.fdc");
    EXPECT_EQ(accountHere([&] { loadFdcFile(&missing, 0, traces); }),
              "WARNING: Cannot open file missing.fdc\n");
    EXPECT_EQ(accountHere([&] { loadFdcFile(nullptr, 0, traces); }),
              internalAccount("Attempt to open unnamed FDC file"));
    EXPECT_EQ(accountOfLoading(""), "");
    EXPECT_TRUE(traces.empty());
}

TEST_F(FdcTest, SectionsFollowMarkersBetweenFences) {
    const std::pair<std::string, bool> rows[] = {
        {"/RIK\n", false},
        {"text @ text /RIK text\n", true},
        {"@@/RIK\n", false},
        {"@\n@\n@/RIK\n", true},
        {"@//RIK\n", false}, // a character that fails is not tried again as the first
        {"@/RI@@K\n", false},
        {"@/RIK @\nno @ section\n/RIK\n", true}, // fences on these two lines do not count
        {"@/RIK\nno section\n@/RIK\n", false},
        {std::string("@/RIK\n\0\n/RIK\n", 13), true}};
    for (const auto& [between, found] : rows) {
        EXPECT_EQ(accountOfLoading(descriptionOf(call) + between + descriptionOf(call, "b.c", "98")), "");
        EXPECT_EQ(loadedSources(), found ? "b.c a.c " : "a.c ") << between;
    }
}

TEST_F(FdcTest, SectionsStandInReverseWithoutThoseOfEarlierFiles) {
    const std::string a = descriptionOf(call, "a.c", "1") + "@/RIK@\n";
    const std::string b = descriptionOf(call, "b.c", "2") + "@/RIK@\n";
    EXPECT_EQ(accountOfLoading(a + b + b), ""); // a file may repeat itself
    const std::string y = write("y.fdc", a + descriptionOf(call, "c.c", "3") + "@/RIK@\n" + b);
    EXPECT_EQ(accountHere([&] { loadFdcFile(&y, 0, traces); }),
              "INFO: y.fdc contains redundant static information; it is ignored\n");
    EXPECT_EQ(loadedSources(), "b.c b.c a.c c.c ");
    EXPECT_EQ(loadedDescriptions()[1]->fdcName, "");
    EXPECT_EQ(loadedDescriptions()[2]->fdcName, path("x.fdc")); // the first section has the name
}

TEST_F(FdcTest, ChangedSourcesMissingTypesAndLongWorkAreTold) {
    const std::int64_t onDisk = fileModificationTime(write("src.c", "int x;\n"));
    const auto account = [&](std::int64_t time, std::uint16_t requestedTypes) {
        return accountOfLoading("VE 3.0e A\nFC \"src.c\" \"" + path("") + "\"\nFD " + std::to_string(time) +
                                    "\nTC BT\n" + call + "DC 0\n",
                                requestedTypes);
    };
    const std::string touched = "WARNING: Source file touched after instrumentation: src.c\n";
    EXPECT_EQ(account(onDisk, 0) + account(0, 0), "");
    EXPECT_EQ(account(onDisk - 1, 0), touched);
    EXPECT_EQ(account(4294967295, 0), touched); // times are signed
    EXPECT_EQ(account(onDisk + 1, 0), "WARNING: Older version of src file src.c\n");
    std::string all;
    for (const char* type : {"Procedures", "Procedures and outputs", "Calls", "Simple blocks",
                             "Implicit blocks", "Logical blocks", "Asynchronous transfer blocks",
                             "Basic conditions", "Modified conditions", "Compound conditions"}) {
        all.append("WARNING: ").append(type).append(" coverage type won't be computed for file src.c\n");
    }
    EXPECT_EQ(account(0, 0x7ff), all);
    EXPECT_EQ(account(0, 0x7ef),
              "WARNING: None of requested coverage types will be computed for file src.c\n");
    EXPECT_EQ(accountOfLoading(descriptionOf(call), 0xfff), ""); // 0x010 and 0x800 give no warning
    EXPECT_EQ(accountOfLoading(descriptionOf("CA 0 \"f\" \"c\" 1 1\nCC 1 1 0 1000 .\n")), "");
    EXPECT_EQ(
        accountOfLoading(descriptionOf("CA 0 \"f\" \"c\" 1 1\nCC 1 1 0 1001 .\n")),
        "INFO: Computing modified conditions from 1001compound conditions, it can take a few minutes ...\n");
}

// A line that the cut leaves without its end is none, so what is missing depends on the complete lines only.
TEST_F(FdcTest, DescriptionsCutAnywhereEndAsDocumented) {
    const std::string text = descriptionOf("PR 0 proc \"f\" 1 9\nCE 0 \"f\" \"a\" 1 1\nCC 2 1 0 2 TF 1\n") +
                             "@ text /RIK @\n" + descriptionOf(call, "b.c", "5");
    const std::string header = fatalAccount("Bad FDC file");
    const std::string body = fatalAccount("No data in FDC");
    const std::string end = fatalAccount("Bad or missing DC in FDC file x.fdc");
    const std::vector<std::string> byLines = {"",     header, header, header, body,   end,  end, end,
                                              "a.c ", "a.c ", header, header, header, body, end, "b.c a.c "};
    for (std::size_t length = 0; length <= text.size(); ++length) {
        const std::string cut = text.substr(0, length);
        const std::string account = accountOfLoading(cut);
        EXPECT_EQ(account + loadedSources(),
                  byLines[static_cast<std::size_t>(std::count(cut.begin(), cut.end(), '\n'))])
            << cut;
    }
}

} // namespace
} // namespace veldacov::test
