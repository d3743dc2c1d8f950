// Compositions of conditions, compared with a slow and plain judge on whole families of small ones.

#include <algorithm>
#include <map>
#include <optional>
#include <random>
#include <vector>

#include "description/conditions.h"
#include "description/hit_counting.h"
#include "description/pairs.h"
#include "plain_judges.h"
#include "unit/test_support.h"

namespace veldacov::test {
namespace {

using Texts = std::vector<std::string>;

// A CC line over the basic conditions 0 to width-1; without a frontier it has an expression.
struct CcLine {
    std::uint32_t id, width, caseCount;
    std::string cases;
    std::optional<std::uint32_t> frontier = std::nullopt;
};

// The texts of the cases, then those of the pairs of each basic condition. `known`: the text of the first
// condition of the service with each identifier.
Texts judged(const CcLine& line, std::map<std::uint32_t, std::string>& known) {
    const plain::Cases cases(line.width, line.caseCount, line.cases, line.frontier);
    Texts texts;
    for (std::uint32_t k = 0; k < line.caseCount; ++k) {
        texts.push_back(cases.text(k));
        known.emplace(line.id + k, texts[k]);
    }
    for (std::uint32_t j = 0; j < line.width; ++j) {
        std::string& pairs = texts.emplace_back();
        for (const auto& [a, b] : cases.pairs(j)) {
            pairs += pairs.empty() ? "#" + std::to_string(j + 1) + " (" : ", (";
            pairs += known[line.id + a] + "/" + known[line.id + b] + ")";
        }
    }
    return texts;
}

Texts textsOf(const Service& service, const Composition& composition) {
    Texts texts;
    for (std::uint32_t k = 0; k < composition.caseCount; ++k) {
        texts.push_back(conditionText(service, composition.firstCase + k));
    }
    for (std::size_t j = 0; j < composition.modifiedConditions.size(); ++j) {
        std::string& pairs = texts.emplace_back();
        pairsText(service, composition, j, [&](std::string_view piece) { pairs += piece; });
    }
    return texts;
}

class ConditionsTest : public FreshProgram {
protected:
    // Loads all compositions into one service, behind the condition 0, and judges each. Those with identifier 0
    // are numbered on.
    void judge(std::vector<CcLine> lines) {
        std::string body = "CA 0 \"f\" \"c\" 1 1\n";
        std::map<std::uint32_t, std::string> known = {{0, "\"c\""}};
        std::uint32_t nextId = 1;
        for (CcLine& line : lines) {
            line.id = line.id != 0 ? line.id : std::exchange(nextId, nextId + line.caseCount);
            body += "CC " + std::to_string(line.id) + " " + std::to_string(line.width);
            for (std::uint32_t j = 0; j < line.width; ++j) {
                body += " 0";
            }
            body += " " + std::to_string(line.caseCount) + " " + line.cases;
            body += line.frontier ? " " + std::to_string(*line.frontier) + "\n" : "\n";
        }
        freeAllDescriptions();
        const Service& service = load(descriptionOf(body)).services[0];
        ASSERT_EQ(service.compositions.size(), lines.size());
        for (std::size_t i = 0; i < lines.size(); ++i) {
            ASSERT_EQ(textsOf(service, service.compositions[i]), judged(lines[i], known)) << lines[i].cases;
        }
    }

    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); }

    std::string randomText(std::size_t length, std::string_view characters) {
        std::string text;
        while (text.size() < length) {
            text += characters[below(static_cast<std::uint32_t>(characters.size()))];
        }
        return text;
    }

    std::mt19937 random{20240607};
};

// All operator trees over so many conditions, each node with and without a negation.
Texts treesOf(std::size_t conditions, const std::string& operators) {
    Texts trees = conditions == 1 ? Texts{"."} : Texts();
    for (std::size_t left = 1; left < conditions; ++left) {
        for (const std::string& l : treesOf(left, operators)) {
            for (const std::string& r : treesOf(conditions - left, operators)) {
                for (const char letter : operators) {
                    trees.push_back(letter + l + r);
                }
            }
        }
    }
    for (std::size_t i = 0, plain = trees.size(); i < plain; ++i) {
        trees.push_back("N" + trees[i]);
    }
    return trees;
}

TEST_F(ConditionsTest, ExpressionsOfEveryTreeAndCaseCount) {
    for (std::uint32_t width = 1; width <= 4; ++width) {
        std::vector<CcLine> lines;
        for (const std::string& tree : treesOf(width, width < 4 ? "AaOoX" : "AoX")) {
            for (std::uint32_t m = width < 4 ? 1 : 15 + below(2); m <= 1U << width; ++m) {
                lines.push_back({0, width, m, tree + (m % 2 == 0 ? "" : "AT")}); // what follows is ignored
            }
        }
        judge(lines);
    }
}

TEST_F(ConditionsTest, TablesOfUpToThreeConditionsWithFewCases) {
    std::vector<CcLine> lines;
    Texts tables = {""}; // all over T, F, X, by their lengths
    for (std::size_t i = 0; tables[i].size() <= 6; ++i) {
        for (const char character : {'T', 'F', 'X'}) {
            tables.push_back(tables[i] + character);
        }
        const auto size = static_cast<std::uint32_t>(tables[i].size());
        for (const std::uint32_t width : {1U, 2U, 3U}) {
            const std::uint32_t m = size % width == 0 ? size / width : 0;
            for (std::uint32_t frontier = 0; m > 0 && frontier <= m + 1; ++frontier) {
                lines.push_back({0, width, m, tables[i], frontier});
            }
        }
    }
    judge(lines);
}

// Vectors near each other, so that there are pairs, on both sides of word boundaries.
TEST_F(ConditionsTest, RandomTablesAndExpressions) {
    constexpr std::string_view alphabets[] = {"TF", "TFX", "TTTFFFX?", "tf\\\"0\xff", "XX\x80T", "X"};
    constexpr std::uint32_t widths[] = {1, 2, 3, 4, 5, 6, 7, 8, 31, 33, 63, 64, 65, 128, 129, 200};
    std::vector<CcLine> lines;
    for (std::uint32_t i = 0; i < 600; ++i) {
        const std::uint32_t width = widths[i % 16];
        const std::uint32_t m = 1 + below(width < 9 ? 14 : 7);
        const std::string base = randomText(width, alphabets[i % 6]);
        std::string table;
        for (std::uint32_t k = 0; k < m; ++k) {
            table += base;
            table[table.size() - 1 - below(2) * below(width)] = "TFX"[below(3)];
        }
        table.resize(i % 4 == 0 ? 1 + below(width * m + 4) : width * m, 'T'); // too short or too long
        lines.push_back({0, width, m, table, below(m + 2)});
        const std::string operators = randomText(width - 1, "AaOoX");
        lines.push_back({0, width, i % 40 == 0 ? 129 : 1 + below(20), operators + std::string(width, '.')});
    }
    for (std::uint32_t width = 7; width <= 9; ++width) { // partners one and more words of 64 cases away
        for (const std::uint32_t m : {1U << width, (1U << width) - 1 - below(60)}) {
            lines.push_back({0, width, m, randomText(width - 1, "XXXAo") + std::string(width, '.')});
        }
    }
    judge(lines);
}

TEST_F(ConditionsTest, PairsNameTheFirstEntryWithTheIdentifierOfACase) {
    for (std::uint32_t round = 0; round < 100; ++round) {
        std::vector<CcLine> lines;
        for (std::uint32_t i = 0; i < 8; ++i) {
            const std::uint32_t id = round % 10 == 0 ? 4294967290 + below(6) : 1 + below(20);
            lines.push_back({id, 3, 8, "XA.N.."});
            lines.push_back({id + below(5), 2, 6, randomText(12, "TFX"), 3});
        }
        judge(lines);
    }
}

TEST_F(ConditionsTest, DocumentedTexts) {
    const std::pair<std::string, Texts> rows[] = {
        {"4 A..", {"FF=F", "TF=F", "FT=F", "TT=T", "#1 (FT=F/TT=T)", "#2 (TF=F/TT=T)"}},
        {"4 O..", {"FF=F", "TF=T", "FT=T", "TT=T", "#1 (FF=F/TF=T)", "#2 (FF=F/FT=T)"}},
        {"4 X..",
         {"FF=F", "TF=T", "FT=T", "TT=F", "#1 (FF=F/TF=T), (FT=T/TT=F)", "#2 (FF=F/FT=T), (TF=T/TT=F)"}},
        {"3 TXFTFF 1", {"TX=T", "FT=F", "FF=F", "#1 (TX=T/FT=F), (TX=T/FF=F)", ""}},
        {"4 TTTFFTF 0", {"TT=F", "TF=F", "FT=F", "F", "", ""}},
        {"4 TTTFFTFF 4", {"TT=T", "TF=T", "FT=T", "FF=T", "", ""}},
        {"2 A.. ", {"A.=F", ".", "", ""}}, // the blank leaves an empty frontier: a table
    };
    for (const auto& [cases, texts] : rows) {
        const std::string body = "CA 0 \"f\" \"a\" 1 1\nCA 1 \"f\" \"b\" 1 1\nCC 9 2 0 1 " + cases + "\n";
        const Service& service = load(descriptionOf(body)).services[0];
        EXPECT_EQ(textsOf(service, service.compositions[0]), texts) << cases;
        freeAllDescriptions();
    }
}

// Compositions with few and with many pairs, in tests that hit one or many cases for the first time; in the last
// service identifiers of cases are repeated, and wrap.
TEST_F(ConditionsTest, AModifiedConditionIsHitByCasesOfAnyTests) {
    constexpr std::uint32_t maximum = 4294967295;
    for (std::uint32_t round = 0; round < 12; ++round) {
        std::string body;
        std::vector<std::uint32_t> ids;
        const auto add = [&](std::uint32_t id, std::uint32_t width, std::uint32_t cases,
                             const std::string& text) {
            body += "CC " + std::to_string(id) + " " + std::to_string(width);
            for (std::uint32_t j = 0; j < width; ++j) {
                body += round % 2 == 0 ? " 0" : " 1";
            }
            body += " " + std::to_string(cases) + " " + text + "\n";
            for (std::uint32_t i = 0; i < cases; ++i) {
                ids.push_back(id + i);
            }
        };
        for (const std::string service : {"e", "t", "r"}) {
            body += "CE 0 \"" + service + "\" \"c\" 1 1\n";
            if (service == "e") {
                add(20, 2, 4, "A..");
                add(30, 8, 256, randomText(7, "XXAO") + "........");
            } else if (service == "t") {
                add(1000, 1, 400, std::string(200, 'T') + std::string(200, 'F') + " 200");
                add(2000, 3, 300, randomText(900, "TFX") + " 150");
            } else {
                add(round % 3 == 0 ? 1 : 3000, 2, 100, randomText(200, "TFX") + " 40");
                add(round % 3 == 0 ? 0 : maximum - 90, 7, 128, "XXXAAX.......");
                add(3050, 1, 250, randomText(250, "TF") + " 100");
            }
        }
        freeAllDescriptions();
        FileDescription& file = load(descriptionOf(body));
        for (std::uint32_t test = 0; test < 150; ++test) {
            resetTestCounts();
            for (std::uint32_t hits = test % 20 == 19 ? 40 : 1 + below(2); hits > 0; --hits) {
                const bool low = hits == 1 && test < 100; // so that some conditions stay open for long
                findDescription(1, below(2));
                recordHit(file, ItemKind::Condition,
                          ids[low ? below(4) : below(static_cast<std::uint32_t>(ids.size()))], 5,
                          Counting::Accumulate);
            }
            computeModifiedConditionHits();
            for (const Service& service : file.services) {
                std::uint32_t covered = 0;
                for (const Composition& composition : service.compositions) {
                    for (const ModifiedCondition& modified : composition.modifiedConditions) {
                        const auto isHit = [&](const VectorPair& pair) {
                            return service.conditions[pair.first].globalHits > 0 &&
                                   service.conditions[pair.second].globalHits > 0;
                        };
                        const bool expected =
                            std::any_of(modified.pairs.begin(), modified.pairs.end(), isHit);
                        ASSERT_EQ(modified.testHits, expected ? 1U : 0U) << round << " " << test;
                        ASSERT_EQ(modified.basicCondition, round % 2);
                        covered += expected ? 1 : 0;
                    }
                }
                ASSERT_EQ(service.testCovered[counter::modifiedConditions], covered);
                ASSERT_EQ(service.globalCovered[counter::modifiedConditions], covered);
            }
        }
    }
}

} // namespace
} // namespace veldacov::test
