// Lines and branches: the rule case by case, and against random campaigns that nothing is claimed without an item, and
// that sums of evidence are the evidence of sums.

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "support/files.h"
#include "support/run_files.h"
#include "unit/test_support.h"
#include "view/decision_words.h"
#include "view/evidence.h"
#include "view/export.h"

namespace veldacov::test {
namespace {

std::string withoutConditions(std::string description) {
    const std::string codes = " CO CC";
    return description.erase(description.find(codes), codes.size());
}

class EvidenceTest : public FreshProgram {
protected:
    // The evidence of the first source, of traces behind "NT", part lines and all.
    SourceEvidence evidenceOfTraces(const std::vector<std::string>& descriptions, const std::string& traces) {
        forgetRunFiles();
        freeAllDescriptions();
        initNamePool();
        CampaignRequest request;
        for (const std::string& description : descriptions) {
            request.inputs.push_back(write(std::to_string(request.inputs.size()) + ".fdc", description));
        }
        request.inputs.push_back(write("t.tio", traces));
        request.detail = CampaignDetail::Tests;
        const std::string account = accountHere([&] { campaign_ = loadCampaign(request); });
        EXPECT_EQ(account, "");
        SourceEvidence evidence;
        evidenceOf(campaign_, sourcesOf(campaign_).front(), campaign_.counts, evidence);
        return evidence;
    }
    [[nodiscard]] const Campaign& campaign() const { return campaign_; }

private:
    Campaign campaign_;
};

std::string linesOf(const SourceEvidence& evidence) {
    std::string text;
    for (const LineEvidence& line : evidence.lines) {
        text += std::to_string(line.line) + ":" + std::to_string(line.count) + " ";
    }
    return text;
}

// line/decision/number:count, "-" for what was not evaluated.
std::string branchesOf(const SourceEvidence& evidence) {
    std::string text;
    for (const BranchEvidence& branch : evidence.branches) {
        text += std::to_string(branch.line) + "/" + std::to_string(branch.decision) + "/" +
                std::to_string(branch.number) + ":" +
                (branch.evaluated ? std::to_string(branch.count) : "-") + " ";
    }
    return text;
}

std::string proofsOf(const SourceEvidence& evidence) {
    std::string text;
    for (const ProofEvidence& proof : evidence.proofs) {
        text += std::to_string(proof.line) + "/" + std::to_string(proof.conditions) + "/" +
                std::to_string(proof.index) + (proof.proven ? "+ " : "- ");
    }
    return text;
}

const std::string part = "FT 36\nDC 7\n";

// Lines 1 and 2: entry and body. 3: a call in a condition whose block begins on the line. 4: implicit and logical only.
// 5: return of a call. 6: a label that is fallen through. 7: a constant. 8: a decision over two lines, its second
// condition shared with a later composition. 0: no line.
const std::string body = "PR 0 proc \"f\" 1 2\nBL 0 simple \"f\" BODY 2 10\n"
                         "BL 1 simple \"f\" THEN 3 5\nBL 2 implicit \"f\" ELSE 3 4\n"
                         "BL 3 logical \"f\" FOR_0 4 9\nCE 0 \"f\" \"g()\" 3 3\nAP 0 \"f\" \"g\" 3 3\n"
                         "AP 1 \"f\" \"h\" 5 5\nPR 1 return \"f\" 5 5\nCA 2 \"f\" \"case 6\" 6 6\n"
                         "BL 4 simple \"f\" CASE 6 7\nCA 3 \"f\" \"1\" 7 7\nCE 4 \"f\" \"a\" 8 8\n"
                         "CE 6 \"f\" \"b\" 9 9\nCC 8 2 4 6 3 TTTFFX 1\nCE 11 \"f\" \"c\" 8 8\n"
                         "CC 13 2 6 11 3 TTTFFX 1\nAP 2 \"f\" \"k\" 0 0\nCE 16 \"f\" \"d\" 0 0\n"
                         "PR 2 endproc \"f\" 10 10\n";

TEST_F(EvidenceTest, OneItemCountsALine) {
    const std::string description = descriptionOf(body);
    struct Row {
        std::string hits; // of a counted test; hexadecimal digits come lowest first
        std::string lines;
        std::string branches;
        std::string proofs;
    };
    const std::string none = "3/0/0:- 3/0/1:- 6/0/0:- 8/0/0:- 8/0/1:- 8/1/0:- 8/1/1:- 9/0/0:- 9/0/1:- ";
    const std::vector<Row> rows = {
        {"", "1:0 2:0 3:0 5:0 6:0 7:0 8:0 9:0 10:0 ", none, "8/2/0- 8/2/1- 9/2/0- 9/2/1- "},
        // Left in g: the condition was not evaluated, and nothing after it is claimed.
        {"TP 0 2\nTB 0 2\nTA 0 2\n", "1:2 2:2 3:0 5:0 6:0 7:0 8:0 9:0 10:0 ", none,
         "8/2/0- 8/2/1- 9/2/0- 9/2/1- "},
        // Implicit and logical blocks, the block of a condition and cases count no line; h did not come back.
        {"TB 1 7\nTB 2 7\nTB 3 7\nTE 0 3\nTE 1 4\nTA 1 5\nTE 8 7\nTE 9 7\nTE a 7\n",
         "1:0 2:0 3:7 5:5 6:0 7:0 8:0 9:0 10:0 ",
         "3/0/0:3 3/0/1:4 6/0/0:- 8/0/0:- 8/0/1:- 8/1/0:- 8/1/1:- 9/0/0:- 9/0/1:- ",
         "8/2/0+ 8/2/1+ 9/2/0- 9/2/1- "},
        // Fallen through: the block counts, not the label. A constant has no branch. Conditions are branches once.
        {"TB 4 6\nTE 2 1\nTE 3 9\nTE 4 2\nTE 7 2\nTE c 3\nTE d 1\nTE f 1\nTP 2 1\n",
         "1:0 2:0 3:0 5:0 6:6 7:9 8:2 9:2 10:1 ",
         "3/0/0:- 3/0/1:- 6/0/0:1 8/0/0:2 8/0/1:0 8/1/0:0 8/1/1:3 9/0/0:0 9/0/1:2 ",
         "8/2/0- 8/2/1- 9/2/0+ 9/2/1- "},
    };
    for (const Row& row : rows) {
        const SourceEvidence evidence =
            evidenceOfTraces({description}, "NT \"t\" 1 1\nCO\n" + part + row.hits);
        EXPECT_EQ(linesOf(evidence), row.lines) << row.hits;
        EXPECT_EQ(branchesOf(evidence), row.branches) << row.hits;
        EXPECT_EQ(proofsOf(evidence), row.proofs) << row.hits;
    }
}

TEST_F(EvidenceTest, ThenAndElseStandInForConditions) {
    const std::string blocks =
        "PR 0 proc \"f\" 1 1\nBL 0 simple \"f\" THEN 3 3\nBL 1 implicit \"f\" ELSE 2 3\n"
        "BL 2 simple \"f\" THEN 5 5\nBL 3 simple \"f\" ELSEIF 6 6\n"
        "BL 4 simple \"f\" ELSE 8 8\nBL 5 simple \"f\" FOR 9 9\nCE 0 \"f\" \"a\" 2 2\n";
    const SourceEvidence evidence = evidenceOfTraces(
        {withoutConditions(descriptionOf(blocks))}, "NT \"t\" 1 1\nCO\n" + part + "TB 1 5\nTB 4 2\nTB 5 1\n");
    EXPECT_EQ(linesOf(evidence), "1:0 3:0 5:0 6:0 8:2 9:1 ");
    EXPECT_EQ(branchesOf(evidence), "3/0/0:0 3/0/1:5 5/0/0:- 6/0/0:0 6/0/1:2 ");
    EXPECT_EQ(proofsOf(evidence), "");
}

TEST_F(EvidenceTest, DescriptionsOfOnePathAreJoined) {
    const std::string common = "PR 0 proc \"f\" 1 1\nCE 0 \"f\" \"a\" 2 2\n";
    const std::string other = descriptionOf(common + "CE 2 \"f\" \"b\" 2 2\nAP 0 \"f\" \"g\" 3 3\nPR 1 proc "
                                                     "\"h\" 9 9\n",
                                            "../src/./a.c", "98");
    const SourceEvidence both = evidenceOfTraces({descriptionOf(common), other},
                                                 "NT \"t\" 1 1\nCO\n" + part +
                                                     "TP 0 2\nTE 0 1\nFT 26\nDC 7\nTP 0 3\nTE 1 4\nTE 3 5\n");
    EXPECT_EQ(linesOf(both), "1:3 2:4 3:0 9:0 ");
    EXPECT_EQ(branchesOf(both), "2/0/0:1 2/0/1:4 2/1/0:0 2/1/1:5 ");
    ASSERT_EQ(both.functions.size(), 2U);
    EXPECT_EQ(both.functions[0].count, 3U);

    // Decisions of one line and size with a condition in common stay two, each whole.
    const std::string decisions = "CE 0 \"f\" \"a\" 2 2\nCE 2 \"f\" \"b\" 2 2\nCC 4 2 0 2 3 TTTFFX 1\n";
    std::string others = decisions;
    others.replace(others.find("\"b\""), 3, "\"c\"");
    EXPECT_EQ(proofsOf(evidenceOfTraces({descriptionOf(decisions), descriptionOf(others, "a.c", "98")},
                                        "NT \"t\" 1 1\n" + part + "TE 4\nTE 5\nFT 26\nDC 7\nTE 4\nTE 6\n")),
              "2/2/0- 2/2/1+ 2/2/0+ 2/2/1- ");
}

// Descriptions give identifiers of cases to earlier conditions, tables end early or hold any bytes. Cases are told by their
// numbers all the same.
TEST_F(EvidenceTest, CasesOfOddCompositions) {
    const auto decisionOf = [](std::size_t conditions, const std::string& rest) {
        std::string decision = "PR 0 proc \"f\" 1 9\n";
        std::string ids;
        for (std::size_t i = 0; i < conditions; ++i) {
            decision += "CE " + std::to_string(2 * i) + " \"f\" \"c\" 2 2\n";
            ids += " " + std::to_string(2 * i);
        }
        return descriptionOf(decision + "CC 4 " + std::to_string(conditions) + ids + " " + rest + "\n");
    };
    const auto told = [&](const std::string& description) {
        evidenceOfTraces({description}, "NT \"t\"\nFT 36\nDC 7\nTE 5\n");
        const CampaignService& service = campaign().services.front();
        const Composition& composition = service.service->compositions.front();
        OutputFile out = createOutput(path("told"), {});
        const DecisionWords words(out, campaign(), service, composition);
        words.putProof(composition.modifiedConditions.front());
        words.forEachShownCase([&](std::uint32_t place, bool) {
            out.put(std::to_string(place));
            words.putCase(place);
            out.put('\n');
        });
        exportJson(out, campaign());
        out.finish();
        const std::string text = read("told");
        forgetRunFiles();
        return text;
    };
    const auto expect = [](const std::string& text, const std::string& piece) {
        EXPECT_NE(text.find(piece), std::string::npos) << piece << "\n" << text;
    };
    // Of many cases those that words speak of are shown.
    const std::string repeated = told(decisionOf(8, "256 OOOOOOO........"));
    expect(repeated, " while <code>c</code> is false");
    expect(repeated, "is false (case 1). Case 2 is hit.");
    expect(repeated, "\"pairs\":[[0,1]],\"missing\":[0]");
    expect(repeated, "0<td>F<td>F<td>F<td>F<td>F<td>F<td>F<td>F<td>F\n1<td>T<td>F");
    expect(repeated, "\n128<td>F<td>F<td>F<td>F<td>F<td>F<td>F<td>T<td>T\n");
    const std::string early = told(decisionOf(40, "2 T" + std::string(39, 'X') + "F 1"));
    expect(early, "<code>c</code> true (case 1). Case 2 is hit.");
    expect(early, "\"values\":\"F\",\"outcome\":false");
    const std::string bytes = told(decisionOf(2, "2 \xff<=T 1"));
    expect(bytes, "0<td>\xef\xbf\xbd<td>&lt;<td>T\n1<td>=<td>T<td>F\n");
    expect(bytes, "\"values\":\"\xef\xbf\xbd<\",\"valuesBase64\":\"/zw=\",\"outcome\":true");
}

TEST_F(EvidenceTest, SumsAndClaims) {
    const std::string description = descriptionOf(body);
    std::mt19937 random{7};
    const auto upTo = [&](unsigned largest) {
        return std::uniform_int_distribution<unsigned>(0, largest)(random);
    };
    const std::vector<std::pair<std::string, unsigned>> kinds = {{"TP", 2}, {"TA", 2}, {"TB", 4}, {"TE", 17}};
    const auto sumOf = [](const std::vector<SourceEvidence>& all) {
        std::map<std::string, unsigned> sums;
        for (const SourceEvidence& evidence : all) {
            for (const LineEvidence& line : evidence.lines) {
                sums["line " + std::to_string(line.line)] += line.count;
            }
            for (const BranchEvidence& branch : evidence.branches) {
                sums["branch " + std::to_string(branch.line) + "/" + std::to_string(branch.decision) + "/" +
                     std::to_string(branch.number)] += branch.count;
                sums["evaluated " + std::to_string(branch.line)] |= branch.evaluated ? 1 : 0;
            }
        }
        return sums;
    };
    for (int round = 0; round < 100; ++round) {
        std::vector<std::string> traces;
        for (const std::string name : {"A", "B"}) {
            const bool counted = upTo(1) == 0;
            std::string trace = "NT \"" + name + "\" 1 1\n" + (counted ? "CO\n" : "") + part;
            for (unsigned hits = upTo(9); hits > 0; --hits) {
                const auto& [keyword, largest] = kinds[upTo(3)];
                trace += keyword + " " + std::string(hexText(upTo(largest)).view()) +
                         (counted ? " " + std::to_string(1 + upTo(8)) : "") + "\n";
            }
            traces.push_back(trace);
        }
        const SourceEvidence first = evidenceOfTraces({description}, traces[0]);
        const SourceEvidence second = evidenceOfTraces({description}, traces[1]);
        const SourceEvidence both = evidenceOfTraces({description}, traces[0] + traces[1]);
        EXPECT_EQ(sumOf({first, second}), sumOf({both})) << round;

        std::map<std::uint32_t, bool> hitLines;
        forEachNumberedItem(campaign().services.front(),
                            [&](std::uint32_t number, const CoverageItem& item, std::uint16_t) {
                                hitLines[item.startLine] |= campaign().counts[number] != 0;
                            });
        for (const LineEvidence& line : both.lines) {
            EXPECT_TRUE(line.count == 0 || hitLines[line.line]) << round << ", line " << line.line;
        }
    }
}

} // namespace
} // namespace veldacov::test
