// Traces: the states of the reader, the tests and dates it finds, and faults where hits are read fast.

#include <algorithm>
#include <random>
#include <vector>

#include "description/hit_counting.h"
#include "report/trace_walk.h"
#include "support/files.h"
#include "support/machine.h"
#include "unit/test_support.h"

namespace veldacov::test {
namespace {

// Descriptions of a.c (key 99) and b.c (key 98, left out of the report), and a run of which the test "no" is
// not selected either.
class TraceTest : public FreshProgram {
protected:
    TraceTest() {
        load(descriptionOf(
            "PR 0 proc \"f\" 1 9\nAP 0 \"f\" \"g\" 2 2\nBL 0 atc \"f\" L 3 3\nCA 0 \"f\" \"c\" 4 4\n"));
        load(descriptionOf("PR 0 proc \"f\" 1 9\n", "b.c", "98"));
        internName("b.c")->flags = mark::exFile;
        internName("no")->flags = mark::exTest;
    }

    // Reads a trace, or two with a "|" between them, in a run of its own and gives the account of it. The model
    // has the hits of this run only then.
    std::string accountOfRun(const std::string& text) {
        walk = startWalk(options, events, {recordedTypes, nullptr});
        findDescription(0, 0);
        resetTestCounts();
        const std::size_t first = std::min(text.find('|'), text.size());
        return accountHere([&] {
            readTraceFile(walk, write("x.tio", text.substr(0, first)));
            if (first < text.size()) {
                readTraceFile(walk, write("x.tio", text.substr(first + 1)));
            }
            settleCounts();
        });
    }

    static Service& service() { return loadedDescriptions()[0]->services[0]; }

    const CoverageOptions options;
    // Tells of parts that nothing describes.
    struct Unmatched : TraceEvents {
        void partMet(const MetPart& part) override {
            if (part.description == nullptr) {
                infoMessage(QStringLiteral("unmatched"));
            }
        }
    } events;
    TraceWalk walk;
    std::uint16_t recordedTypes = 0xfff;
};

const std::string partA = "FT 36\nDC 7\n";
const std::string partB = "FT 26\nDC 7\n";
const std::string missing = "INFO: unmatched\n";

TEST_F(TraceTest, TheStateDecidesWhichHitsCount) {
    const std::pair<std::string, std::uint32_t> rows[] = {
        {partA + "TP 0\n", 1},
        {partA + "TP 0\nTP 0\n", 1},
        {"CO\n" + partA + "TP 0 2\nTP 0 01\n", 18},
        {"CO\n" + partA + "TP 0 2\nNT\nTP 0\n", 1}, // counts end with the test, the part goes on
        {partA + "TP 0", 0},                        // without its end it is no line
        {"NT \"no\"\n" + partA + "TP 0\n", 0},
        {partA + "NT \"no\"\n|TP 0\n", 1}, // the part goes on in the next trace, which starts recording
        {"CO\n" + partA + "|TP 0 2\n", 2},
        {"NT \"no\"\nCO\nDC\nXX\n\nFT\nTP\nDT\nNT \"yes\"\n" + partA + "TP 0\n", 1},
        {partB + "TP\nTP 0\nDC\nXX\n \nDT x\nCO\n" + partA + "TP 0\n", 1},
        {partB + "NT \"no\"\nNT\nTP 0\n" + partA + "TP 0\n", 1}}; // into b.c, as a test starts recording
    for (const auto& [trace, hits] : rows) {
        EXPECT_EQ(accountOfRun(trace), "") << trace;
        EXPECT_EQ(service().entry->testHits, hits) << trace;
    }
}

TEST_F(TraceTest, RunTimeErrorsAndUnknownPartsAreTold) {
    const std::string error = "WARNING: Error detected during execution:\n-> ";
    const std::string condition = error + "a composition of conditions ";
    EXPECT_EQ(
        accountOfRun("NT \"no\"\nEI 02\n" + partB + "EI 13\n" + partA + "EI 23\nEI 20\n"),
        error +
            "a source object was not linked with the right runtime object (check instrumentation mode)\n" +
            condition + "evaluates in an unexpected result, contact your vendor\n" + condition +
            "reached with an unexpected input vector, contact your vendor\n" + error +
            "unknown error opcode\n");
    EXPECT_EQ(accountOfRun("FT 1\nDC 7\nTP 0\nFT 36\nDC 8\nTP 0\n"), missing + missing);
    EXPECT_EQ(service().entry->testHits, 0U);
}

// Hits in the form that programs write and in other forms, in and out of counted tests, up to several buffers
// of them, compared with plain sums.
TEST_F(TraceTest, HitsAddUpInWhateverForm) {
    std::mt19937 random{20240607};
    const std::string keywords[] = {"TP ", "TA ", "TB ", "TE "};
    const std::string ids[] = {"0", "0", "0", "00", "00000000", " 0", "0 ", "0 9", "0 9 9"};
    const std::pair<std::string, std::uint32_t> counts[] = {
        {"1", 1}, {"A", 10}, {"a0", 10}, {"0", 0}, {" 2 ", 2}, {"3 x", 3}, {"ffffff70", 0x07ffffff}};
    std::array<std::uint32_t, 4> globalHits{};
    for (std::uint32_t round = 0; round < 40; ++round) {
        std::string trace = "NT\n" + partA;
        std::array<std::uint32_t, 4> testHits{};
        bool counted = false;
        const std::size_t lines = round == 0 ? 60000 : random() % 4000;
        const std::size_t countForms = round % 4 == 0 ? 7 : 6; // with the one that soon reaches the limit
        for (std::size_t i = 0; i < lines; ++i) {
            if (random() % 500 == 0) {
                counted = random() % 2 == 0;
                trace += counted ? "NT\nCO\n" : "NT\n";
            }
            const std::size_t kind = random() % 4;
            const auto& [text, count] = counts[random() % countForms];
            trace += keywords[kind] + (counted ? "0 " + text : ids[random() % 9]) +
                     (random() % 9 == 0 ? "\r\n" : "\n");
            for (std::uint32_t* hits : {&testHits[kind], &globalHits[kind]}) {
                *hits = counted ? static_cast<std::uint32_t>(
                                      std::min<std::uint64_t>(std::uint64_t{*hits} + count, mostHits))
                                : 1;
            }
        }
        ASSERT_EQ(accountOfRun(trace), "");
        const HitRecord items[] = {*service().entry, service().calls[0], service().blocks[0],
                                   service().conditions[0]};
        for (std::size_t kind = 0; kind < 4; ++kind) {
            ASSERT_EQ(items[kind].testHits, testHits[kind]) << round;
            ASSERT_EQ(items[kind].globalHits, globalHits[kind]) << round;
        }
    }
}

// After counts of 0 an item is not yet hit in its test: the first other count is a first hit, and ends with the test.
TEST_F(TraceTest, CountsOfZeroAreNoHits) {
    const std::string others = "TB 0 1\nTB 0 1\nTB 0 1\nTB 0 1\n"; // the calls are not last in the bytes
    const auto recorded = [&](const std::string& hits) {
        return partA + hits + others;
    }; // before the next part
    EXPECT_EQ(
        accountOfRun("CO\n" + recorded("TA 0 0\n") + recorded("TA  0 0\n") + recorded("TA 0 3\nTA 0 4\n")),
        "");
    EXPECT_EQ(service().calls[0].testHits, 7U);
    EXPECT_EQ(service().testCovered[counter::calls], 3U) << "each time that it had no hits";
    EXPECT_EQ(service().globalCovered[counter::calls], 1U);
    resetTestCounts();
    EXPECT_EQ(service().calls[0].testHits, 0U);
}

// Where services share an identifier, a hit means that of the service hit last, however often it has been seen.
TEST_F(TraceTest, HitsOfRepeatedIdentifiersMoveOnToTheNextService) {
    const FileDescription& file = load(
        descriptionOf("AP 0 \"f\" \"x\" 1 1\nAP 0 \"g\" \"x\" 2 2\nAP 1 \"g\" \"x\" 3 3\n", "c.c", "97"));
    const std::string part = "FT 16\nDC 7\n";
    for (const std::string count : {"", " 2"}) {
        const std::string first = "TA 0" + count + "\n";
        const std::string moving = "TA 1" + count + "\n";
        ASSERT_EQ(accountOfRun((count.empty() ? "NT\n" : "NT\nCO\n") + part + first + moving + "TA  0" +
                               count + "\n" + first + first + part + first),
                  "");
        std::vector<std::uint32_t> hits;
        for (const CallEntry& call : file.calls) {
            hits.push_back(call.testHits);
        }
        EXPECT_EQ(hits, count.empty() ? std::vector({1U, 1U, 1U}) : std::vector({4U, 6U, 2U}));
    }
}

// A fault among hits that are read fast is told as a fault alone is (the case bad_traces has those).
TEST_F(TraceTest, FaultsAmongHitsAreTold) {
    const std::string overflow =
        "ERROR: Number overflow while reading file x.tio\n" +
        fatalAccount(
            "Maybe this Coverage Trace file has been generated using an older version of the Deplonix");
    const std::string noId =
        fatalAccount("Cannot find instrumentation ID for specified trace in FDC file loaded.fdc");
    const std::string opcode = fatalAccount("Unknown opcode in trace file x.tio");
    const std::pair<std::string, std::string> rows[] = {
        {"TB\n", fatalAccount("Null pointer for value while reading file x.tio")},
        {"TA 0x\n", fatalAccount("Bad hexadecimal number while reading file x.tio")},
        {"TE 000000001\n", overflow},
        {"TP 1\n", noId},
        {"TA 1\n", noId},
        {"TB 1\n", noId},
        {"TE 1\n", noId},
        {"TP1 0\n", opcode},
        // A carriage return that is character 1024 ends its line: the line feed is a line of its own.
        {"TP 0 " + std::string(1018, 'x') + "\r\n", opcode},
        {std::string("TP\0 0\nXX\n", 9), "ERROR: x.tio is not a valid Code Coverage trace file\n"}};
    const std::string hit = "TP 0\n";
    for (const auto& [fault, account] : rows) {
        EXPECT_EQ(accountOfRun(partA + fault), account) << fault;
        EXPECT_EQ(accountOfRun(partA + hit + fault + hit + hit + hit + hit + hit), account) << fault;
    }
    const std::string nothing = path("nothing.tio");
    EXPECT_EQ(accountHere([&] { readTraceFile(walk, nothing); }),
              fatalAccount("Cannot open trace file nothing.tio"));
}

TEST_F(TraceTest, TestsHaveNamesNumbersAndDates) {
    const struct {
        std::string lines, test, date;
        std::int32_t number;
        KnownBy knownBy;
    } rows[] = {
        {"NT\nDT \"a date\" rest\n", "#", "a date", -1, KnownBy::Default},
        {"NT \"a \\\"b\\\\\" 01 2\nDT f1\n", "a \"b\\", dateText(31), 16, KnownBy::Name},
        {"NT 01\nDT \"a\\\"b\"\n", "01", "a", 16, KnownBy::Number}, // the date ends at its first quote
        {"NT \"\" A\nDT \"a\"\nDT\n", "A", "", 10, KnownBy::Number},
        {"NT ffffffff 1\nDT ffffffff\n", "#", "", -1, KnownBy::Default},
        {"NT \"a\"\r\nDT 0\r\n", "a", "", -1, KnownBy::Name},
        {"NT \n", "", "", 0, KnownBy::Number}};
    for (const auto& row : rows) {
        EXPECT_EQ(accountOfRun(row.lines), "") << row.lines;
        EXPECT_EQ(nameText(walk.trace.currentTest), row.test) << row.lines;
        EXPECT_EQ(nameText(walk.trace.testDate), row.date) << row.lines;
        EXPECT_EQ(walk.test.number, row.number) << row.lines;
        EXPECT_EQ(walk.test.knownBy, row.knownBy) << row.lines;
        EXPECT_TRUE(walk.testOpen);
    }
}

TEST_F(TraceTest, HitsAreRecordedForTypesInUse) {
    const std::pair<std::string, std::uint16_t> rows[] = {
        {"TP", 0x003}, {"TA", 0x004}, {"TB", 0x0e8}, {"TE", 0x500}};
    for (const auto& [keyword, types] : rows) {
        for (recordedTypes = 1; recordedTypes <= 0x800;
             recordedTypes = static_cast<std::uint16_t>(recordedTypes << 1)) {
            EXPECT_EQ(accountOfRun(partA + keyword + " 0\n"), "");
            std::uint32_t hits = 0;
            forEachItem(service(), [&](const HitRecord& record, std::uint16_t) { hits += record.testHits; });
            EXPECT_EQ(hits, (recordedTypes & types) != 0 ? 1U : 0U) << keyword << recordedTypes;
        }
    }
}

// A line that the cut leaves without its end is none; a NUL byte ends the text of its line.
TEST_F(TraceTest, TracesCutOrWithANulAnywhereEndAsDocumented) {
    const std::string text =
        "NT \"a\" 1 2\nDT \"d\"\nCO\n" + partA + "TP 0 1\nEI 1\nTA 0 1\nTB 0 1\nTE 0 1\nTE 0 1\n";
    const std::string warning = "WARNING: Error detected during execution:\n-> unknown error opcode\n";
    for (std::size_t at = 0; at + 1 < text.size(); ++at) {
        const std::size_t lineStart = text.substr(0, at).rfind('\n') + 1; // 0 when there is none
        const std::string keyword = text.substr(lineStart, 2);
        const std::string before = lineStart > text.find("EI") ? warning : "";
        EXPECT_EQ(accountOfRun(text.substr(0, at)),
                  before + (keyword == "DC" ? fatalAccount("No DC line in TIO file x.tio") : ""))
            << at;

        std::string withNul = text;
        withNul[at] = '\0';
        std::string end = fatalAccount("Null pointer for value while reading file x.tio");
        if (at < lineStart + 3) {
            end = keyword == "DC" ? fatalAccount("DC line missing after FT line in TIO file x.tio")
                                  : "ERROR: x.tio is not a valid Code Coverage trace file\n";
        } else if (keyword == "NT" || keyword == "DT") {
            end = warning; // these fields may be absent
        }
        EXPECT_EQ(accountOfRun(withNul), before + end) << at;
    }
}

} // namespace
} // namespace veldacov::test
