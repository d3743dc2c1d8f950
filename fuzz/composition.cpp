// The fields of a CC line, and more lines; small compositions are compared with the plain definition of their cases
// and pairs.

#include <algorithm>
#include <optional>

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
    const bool isTable = composition.frontier != expressionFrontier;
    const auto width = static_cast<std::uint32_t>(composition.basicConditionCount);
    const plain::Cases cases(width, composition.caseCount, composition.cases,
                             isTable ? std::optional(composition.frontier) : std::nullopt);
    for (std::uint32_t k = 0; k < composition.caseCount; ++k) {
        fuzz::require(conditionText(service, composition.firstCase + k) == cases.text(k));
    }
    const std::uint32_t firstId = service.conditions[composition.firstCase].id;
    for (std::uint32_t j = 0; j < width; ++j) {
        const ModifiedCondition& modified = composition.modifiedConditions[j];
        const auto expected = cases.pairs(j);
        fuzz::require(std::equal(modified.pairs.begin(), modified.pairs.end(), expected.begin(),
                                 expected.end(), [&](const VectorPair& found, const auto& pair) {
                                     return found.first == firstPlace(service, firstId + pair.first) &&
                                            found.second == firstPlace(service, firstId + pair.second);
                                 }));
        fuzz::require(modified.basicCondition == firstPlace(service, composition.basicConditionIds[j]));
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
