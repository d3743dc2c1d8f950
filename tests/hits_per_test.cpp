// A program of its own on the library: what each test of some traces hit, without a report.
//
//   hits_per_test NAME...     descriptions and traces, in any order
#include <iostream>
#include <string>

#include "description/fdcL.h"
#include "description/hit_counting.h"
#include "description/name_pool.h"
#include "report/trace_walk.h"

using namespace veldacov;

namespace {

std::string_view textOf(const NameEntry* name) {
    return name != nullptr ? nameText(name) : "none";
}

class HitsPerTest : public TraceEvents {
public:
    void testEnds(const TestRun& test) override {
        std::cout << (test.selected ? "test " : "outside of tests, ") << textOf(test.test) << " number "
                  << test.number << " service " << test.serviceNumber << " date " << textOf(test.date)
                  << "\n";
        settleCounts();
        for (const TestHit& hit : hitsOfTest()) {
            const auto& item = static_cast<const CoverageItem&>(*hit.record);
            std::cout << "    " << textOf(serviceOf(hit).name) << " type " << typeOf(hit) << " id " << item.id
                      << ", " << item.testHits << " time(s)\n";
        }
        resetTestCounts();
    }
    void periodEnds(std::int32_t serviceNumber) override { std::cout << "period " << serviceNumber << "\n"; }
    void partMet(const MetPart& part) override {
        if (!part.selected) {
            std::cout << "  part " << part.key.fileKey << " is "
                      << (part.description != nullptr ? "skipped"
                          : part.otherChecksum        ? "of another build"
                                                      : "not described")
                      << "\n";
        }
    }
};

} // namespace

int main(int count, char** words) {
    initNamePool();
    CoverageOptions options;
    TraceFileList traces;
    for (int i = 1; i < count; ++i) {
        const std::string name = words[i];
        loadFdcFile(&name, options.coverageTypes, traces);
    }
    internName("skipped.c")->flags |= mark::exFile;
    HitsPerTest events;
    TraceWalk walk = startWalk(options, events, {typesOfAllDescriptions(), nullptr});
    for (const std::string& trace : traces) {
        readTraceFile(walk, trace);
    }
    endWalk(walk);
    freeAllDescriptions();
    freeNamePool();
}
