// Any bytes as a description, and the texts that outputs make of its conditions.

#include "description/conditions.h"
#include "description/fdcL.h"
#include "description/model.h"
#include "driver/program.h"
#include "support.h"

using namespace veldacov;

namespace {

void readAll(std::string_view text) {
    const std::string name = "a.fdc";
    fuzz::writeFile(name, text);
    TraceFileList traces;
    loadFdcFile(&name, 0xfff, traces);
    loadFdcFile(&name, 0, traces); // redundant by now
    for (const auto& description : loadedDescriptions()) {
        for (const Service& service : description->services) {
            for (std::uint32_t i = 0; i < service.conditions.size(); ++i) {
                fuzz::require(conditionText(service, i).size() < 100'000'000);
                outcomeText(service, service.conditions[i]);
            }
            for (const Composition& composition : service.compositions) {
                for (std::size_t j = 0; j < composition.modifiedConditions.size(); ++j) {
                    pairsText(service, composition, j,
                              [](std::string_view piece) { fuzz::require(piece.size() < 100'000'000); });
                }
            }
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::textOf(data, size);
    if (!fuzz::asksForManyCases(text, 1500)) {
        fuzz::returns([&] { readAll(text); });
        resetProgram();
    }
    return 0;
}
