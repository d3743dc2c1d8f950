// The fields of a CC line, and more lines; small compositions are compared with the plain definition of their cases
// and pairs.

#include <algorithm>

#include "description/conditions.h"
#include "description/fdcL.h"
#include "description/model.h"
#include "driver/program.h"
#include "plain_judges.h"
#include "support.h"

using namespace veldacov;

namespace {

constexpr std::uint32_t mostJudged = 40; // cases and conditions: the plain way is slow

std::uint32_t firstPlace(const Service& service, std::uint32_t id) {
    const auto first = std::find_if(service.conditions.begin(), service.conditions.end(),
                                    [&](const ConditionEntry& entry) { return entry.id == id; });
    return static_cast<std::uint32_t>(first - service.conditions.begin());
}

void judge(const Service& service, const Composition& composition) {
    const auto width = static_cast<std::uint32_t>(composition.basicConditionCount);
    const std::uint32_t caseCount = composition.caseCount;
    const bool isTable = composition.frontier != expressionFrontier;
    std::vector<std::string> vectors(caseCount, std::string(width, '\0'));
    std::vector<bool> outcomes;
    for (std::uint32_t k = 0; k < caseCount; ++k) {
        for (std::uint32_t j = 0; j < width; ++j) {
            const std::size_t at = std::size_t{k} * width + j;
            vectors[k][j] = !isTable                        ? "FT"[j < 32 ? k >> j & 1U : 0]
                            : at < composition.cases.size() ? composition.cases[at]
                                                            : '\0';
        }
        std::size_t start = 0;
        std::uint32_t condition = 0;
        outcomes.push_back(isTable ? k < composition.frontier
                                   : plain::evaluate(composition.cases, start, k, condition));
        const std::string text = vectors[k] + (outcomes[k] ? "=T" : "=F");
        fuzz::require(conditionText(service, composition.firstCase + k) == text.c_str());
    }
    const std::uint32_t firstId = service.conditions[composition.firstCase].id;
    for (std::uint32_t j = 0; j < width; ++j) {
        const std::vector<VectorPair>& found = composition.modifiedConditions[j].pairs;
        std::size_t next = 0;
        for (std::uint32_t a = 0; a < caseCount; ++a) {
            for (std::uint32_t b = 0; b < caseCount; ++b) {
                const bool partners = isTable ? outcomes[a] && plain::differAt(vectors[a], vectors[b], j)
                                              : j < 32 && b != a && b == (a | 1U << j);
                if (outcomes[a] != outcomes[b] && partners) {
                    fuzz::require(next < found.size());
                    fuzz::require(found[next].first == firstPlace(service, firstId + a));
                    fuzz::require(found[next].second == firstPlace(service, firstId + b));
                    ++next;
                }
            }
        }
        fuzz::require(next == found.size());
        fuzz::require(composition.modifiedConditions[j].basicCondition ==
                      firstPlace(service, composition.basicConditionIds[j]));
    }
}

void judgeAll(std::string_view text) {
    std::string body;
    for (int id = 0; id < 16; ++id) {
        body += (id < 12 ? "CA " : "CE ") + std::to_string(id) + " \"f\" \"c\" 1 1\n";
    }
    const std::string name = "a.fdc";
    fuzz::writeFile(name, fuzz::descriptionOf(body.append("CC ").append(text) + "\n"));
    TraceFileList traces;
    loadFdcFile(&name, 0, traces);
    for (const auto& description : loadedDescriptions()) {
        for (const Service& service : description->services) {
            for (const Composition& composition : service.compositions) {
                if (composition.caseCount <= mostJudged &&
                    composition.basicConditionIds.size() <= mostJudged) {
                    judge(service, composition);
                }
            }
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::textOf(data, size);
    if (!fuzz::asksForManyCases("CC " + std::string(text) + "\n", 1500)) {
        fuzz::returns([&] { judgeAll(text); });
        resetProgram();
    }
    return 0;
}
