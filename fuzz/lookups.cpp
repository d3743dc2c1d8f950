// Descriptions with repeated, dense and sparse identifiers, and traces of them in every form of a line, compared with the
// plain ordered search and plain sums. (Single look-ups are compared in the unit tests.)

#include <algorithm>
#include <map>

#include <fuzzer/FuzzedDataProvider.h>

#include "description/fdcL.h"
#include "description/hit_counting.h"
#include "description/model.h"
#include "description/pairs.h"
#include "driver/program.h"
#include "plain_judges.h"
#include "report/report.h"
#include "report/trace_walk.h"
#include "support.h"

using namespace veldacov;

namespace {

constexpr std::uint16_t typesOfKinds[] = {0x003, 0x004, 0x0e8, 0x500};

class Model {
public:
    explicit Model(FuzzedDataProvider& bytes) : bytes_(bytes) {
        const auto count = bytes_.ConsumeIntegralInRange<std::uint32_t>(1, 32);
        distinct_ = bytes_.ConsumeBool();
        const auto form = bytes_.ConsumeIntegralInRange<std::uint32_t>(0, 3);
        for (std::uint32_t i = 0; i < count; ++i) {
            ids_.push_back(form == 0   ? 2 * i
                           : form == 1 ? UINT32_MAX - 2 * i
                           : form == 2 ? i * 1000
                                       : bytes_.ConsumeIntegral<std::uint32_t>());
        }
        load("a.fdc", "a.c", "99");
        load("b.fdc", "b.c", "98");
    }

    std::uint32_t anyId() { return ids_[below(static_cast<std::uint32_t>(ids_.size()))] + below(5) / 4; }
    std::uint32_t below(std::uint32_t limit) {
        return bytes_.ConsumeIntegralInRange<std::uint32_t>(0, limit - 1);
    }

private:
    void load(const std::string& name, const std::string& source, const std::string& key) {
        constexpr const char* lines[][2] = {{"PR ", " return "}, {"AP ", " "}, {"BL ", " simple "},
                                            {"BL ", " atc "},    {"CE ", " "}, {"CA ", " "}};
        const std::uint32_t services = 1 + below(4);
        std::string body;
        const std::size_t items = distinct_ ? ids_.size() : 1 + below(60);
        for (std::uint32_t i = 0; i < items; ++i) {
            const bool isEntry = i < services;
            const std::string service = "\"s" + std::to_string(isEntry ? i : below(services)) + "\"";
            const std::string id = std::to_string(ids_[distinct_ ? i : (i + below(3)) % ids_.size()]);
            const std::uint32_t kind = isEntry ? 0 : below(6);
            body += lines[kind][0] + id + (isEntry ? " proc " : lines[kind][1]) + service;
            body += kind == 0 ? "" : kind == 2 || kind == 3 ? " L" : " \"c\"";
            body += " 1 1\n";
            if (kind == 5 && !distinct_ && below(2) == 0) {
                body += "CC " + std::to_string(anyId()) + " 1 " + id + " 3 .\n";
            }
        }
        TraceFileList traces;
        fuzz::writeFile(name, fuzz::descriptionOf(body, source, key));
        loadFdcFile(&name, 0, traces);
    }

    FuzzedDataProvider& bytes_;
    std::vector<std::uint32_t> ids_;
    bool distinct_ = false; // hits of repeated identifiers take other ways
};

// What should be counted, by the definition of a hit.
struct PlainCounts {
    struct Record {
        std::uint32_t test = 0;
        std::uint32_t global = 0;
        bool ever = false;
    };
    std::map<const HitRecord*, Record> records;
    std::map<const Service*, CoverageCounters> test;
    std::map<const Service*, CoverageCounters> global;

    static void cover(CoverageCounters& covered, std::uint16_t coverageType) {
        covered[0] = coverageType == type::procedures ? 1 : covered[0];
        if (const auto place = counterOfType(coverageType)) {
            ++covered[*place];
        }
    }

    void hit(const plain::Found& found, std::uint32_t count, bool counted) {
        Record& record = records[found.item];
        if (record.test == 0) {
            cover(test[found.service], found.type);
        }
        if (!std::exchange(record.ever, true)) {
            cover(global[found.service], found.type);
        }
        for (std::uint32_t* hits : {&record.test, &record.global}) {
            *hits = counted ? static_cast<std::uint32_t>(
                                  std::min<std::uint64_t>(std::uint64_t{*hits} + count, mostHits))
                            : 1;
        }
    }

    void startTest() {
        for (auto& [item, record] : records) {
            record.test = 0;
        }
        test.clear();
    }

    void compare() {
        for (const auto& description : loadedDescriptions()) {
            for (Service& service : description->services) {
                forEachItem(service, [&](const HitRecord& record, std::uint16_t coverageType) {
                    if (coverageType != type::modifiedConditions) {
                        fuzz::require(record.testHits == records[&record].test);
                        fuzz::require(record.globalHits == records[&record].global);
                    }
                });
                for (std::size_t i = 0; i < service.counts.size(); ++i) {
                    if (i != counter::modifiedConditions) {
                        fuzz::require(service.testCovered[i] == test[&service][i]);
                        fuzz::require(service.globalCovered[i] == global[&service][i]);
                    }
                }
            }
        }
    }
};

using KindAndId = std::pair<std::size_t, std::uint32_t>;

std::vector<KindAndId> itemsOf(FileDescription& description) {
    std::vector<KindAndId> items;
    for (Service& service : description.services) {
        forEachItem(service, [&](auto& record, std::uint16_t coverageType) {
            if constexpr (std::is_base_of_v<CoverageItem, std::decay_t<decltype(record)>>) {
                for (std::size_t kind = 0; kind < std::size(typesOfKinds); ++kind) {
                    if ((typesOfKinds[kind] & coverageType) != 0) {
                        items.emplace_back(kind, record.id);
                    }
                }
            }
        });
    }
    return items;
}

// Ends tests as the report run does, without its outputs.
class CountsPerTest : public TraceEvents {
public:
    explicit CountsPerTest(const CoverageOptions& options) : options_(options) {}
    void testEnds(const TestRun& test) override {
        if (test.selected) {
            computeModifiedConditionHits();
            if (!options_.global) {
                resetTestCounts();
            }
        }
    }

private:
    const CoverageOptions& options_;
};

void compareHits(Model& model, FuzzedDataProvider& bytes) {
    constexpr const char* keywords[] = {"TP", "TA", "TB", "TE"};
    constexpr std::uint32_t counts[] = {1, 2, 0, 255, mostHits - 1, mostHits, UINT32_MAX, 0x70000000};
    CoverageOptions options;
    options.global = bytes.ConsumeBool();
    CountsPerTest events(options);
    TraceWalk walk = startWalk(options, events, {typesOfAllDescriptions(), nullptr});

    std::vector<std::vector<KindAndId>> items;
    for (const auto& description : loadedDescriptions()) {
        items.push_back(itemsOf(*description));
    }
    PlainCounts plain;
    std::size_t part = 0;
    std::size_t current = 0;
    bool counted = false;
    bool firstTest = true;
    std::string trace = "FT 36\nDC 7\n";
    const auto readOn = [&] {
        fuzz::writeFile("a.tio", trace);
        readTraceFile(walk, "a.tio");
        trace.clear();
    };
    while (bytes.remaining_bytes() > 0) {
        const std::uint32_t step = 63 - model.below(64); // most are hits
        if (step == 0) {
            trace += "NT\n";
            counted = false;
            if (!options.global && !firstTest) {
                plain.startTest();
            }
            firstTest = false;
        } else if (step == 1) {
            trace += "CO\n";
            counted = true;
        } else if (step == 2) {
            part = model.below(static_cast<std::uint32_t>(loadedDescriptions().size()));
            trace += part == 0 ? "FT 36\nDC 7\n" : "FT 26\nDC 7\n";
            current = 0;
        } else if (step == 3) {
            readOn();
        } else {
            const auto known = static_cast<std::uint32_t>(items[part].size());
            const auto [kind, id] =
                items[part][model.below(model.below(2) == 0 ? known : std::min(known, 4U))];
            const std::uint32_t count = counts[model.below(8)];
            const std::uint32_t form = model.below(8);
            const plain::Found found =
                plain::searched(*loadedDescriptions()[part], current, typesOfKinds[kind], id);
            plain.hit(found, count, counted);
            trace.append(keywords[kind]).append(form == 7 ? "  " : " ").append(hexText(id).view());
            trace.append(form == 6 && id < 16 ? "0" : "").append(counted ? " " : "");
            trace.append(counted ? hexText(count).view() : "");
            trace += form == 5 ? "\r\n" : form == 4 ? " x\n" : "\n";
        }
    }
    readOn();
    settleCounts();
    plain.compare();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::require(fuzz::returns([&] {
        FuzzedDataProvider bytes(data, size);
        Model model(bytes);
        compareHits(model, bytes);
    }));
    resetProgram();
    return 0;
}
