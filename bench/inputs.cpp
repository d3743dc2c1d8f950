#include "inputs.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "support/files.h"
#include "support/output.h"
#include "support/platform.h"

namespace veldacov::bench {

namespace {

// Own numbers instead of the library's distributions, which differ between libraries (splitmix64).
struct Random {
    std::uint64_t state = 0;

    std::uint64_t operator()() {
        std::uint64_t mixed = state += 0x9E3779B97F4A7C15;
        mixed = (mixed ^ mixed >> 30U) * 0xBF58476D1CE4E5B9;
        mixed = (mixed ^ mixed >> 27U) * 0x94D049BB133111EB;
        return mixed ^ mixed >> 31U;
    }
    // By multiplication: faster than a remainder, and as even.
    std::uint32_t below(std::uint32_t limit) {
        return static_cast<std::uint32_t>((((*this)() >> 32U) * limit) >> 32U);
    }
};

constexpr std::size_t kindCount = 4;
constexpr std::array<std::string_view, kindCount> hitKeywords = {"TP ", "TA ", "TB ", "TE "};
enum Kind : std::size_t { Procedure, Call, Block, Condition };

// A kind of line in a description: its bigramme, and the fields before and behind the service's name. A call
// has the name of the called service as its detail.
struct LineForm {
    std::string_view bigramme;
    std::size_t kind;
    std::string_view word;
    std::string_view detail;
};
constexpr LineForm entryForm = {"PR ", Procedure, "proc ", ""};
constexpr LineForm exitForm = {"PR ", Procedure, "return ", ""};
// What stands between entry and exit, again and again. The last one ends a loop over all of them.
constexpr std::array<LineForm, 6> bodyForms = {{{"BL ", Block, "simple ", "BODY "},
                                                {"CE ", Condition, "", "\"request->count > limit\" "},
                                                {"BL ", Block, "simple ", "THEN "},
                                                {"AP ", Call, "", ""},
                                                {"BL ", Block, "implicit ", "ELSE "},
                                                {"BL ", Block, "logical ", "WHILE "}}};

// The lines of one service; all services are alike. The identifiers of a kind run on from service to service.
struct PlannedLine {
    const LineForm* form = nullptr;
    std::uint32_t offset = 0; // of its identifier among those of its kind and service
    bool endsLoop = false;
};
struct Plan {
    std::vector<PlannedLine> lines;
    std::array<std::uint32_t, kindCount> idsPerService{};
    std::uint32_t services = 0;

    [[nodiscard]] std::uint32_t id(std::uint32_t service, const PlannedLine& line) const {
        return service * idsPerService[line.form->kind] + line.offset;
    }
    [[nodiscard]] std::uint32_t itemsPerFile() const {
        return services * (idsPerService[0] + idsPerService[1] + idsPerService[2] + idsPerService[3]);
    }
    // Of an item among all of its file.
    [[nodiscard]] std::size_t place(std::size_t kind, std::uint32_t id) const {
        std::size_t before = 0;
        for (std::size_t lower = 0; lower < kind; ++lower) {
            before += idsPerService[lower];
        }
        return before * services + id;
    }
};

Plan makePlan(const InputSettings& settings) {
    Plan plan;
    plan.services = settings.services;
    const auto add = [&plan](const LineForm& form, bool endsLoop) {
        std::uint32_t& ids = plan.idsPerService[form.kind];
        plan.lines.push_back({&form, ids, endsLoop});
        ids += form.kind == Condition ? 2 : 1;
    };
    add(entryForm, false);
    for (std::size_t i = 0; i + 2 < settings.items; ++i) {
        const std::size_t form = i % bodyForms.size();
        add(bodyForms[form], form + 1 == bodyForms.size());
    }
    add(exitForm, false);
    return plan;
}

OutputFile create(const InputSettings& settings, const std::string& name) {
    const std::string path = joinPath(settings.directory, name);
    return {platform::createForWriting(path), path};
}

// A file as both its description and the traces know it.
struct DescribedFile {
    std::string sourceName;
    std::uint32_t checksumField = 0; // as the description states it, without the token strings
    std::uint32_t key = 0;
    std::uint32_t checksum = 0;
};
constexpr std::string_view tokenString = "BENCH";

DescribedFile describedFile(const InputSettings& settings, std::uint32_t number) {
    DescribedFile file;
    file.sourceName = "src" + std::to_string(number) + ".c";
    file.key = evalFileKey(settings.directory + file.sourceName);
    file.checksumField = (number + 1) * 2654435761U;
    file.checksum = file.checksumField;
    xorFoldText(file.checksum, tokenString);
    return file;
}

// --- Descriptions

std::string serviceName(std::uint32_t file, std::uint32_t service) {
    return "file" + std::to_string(file) + "_service" + std::to_string(service);
}

void writeBodyLine(OutputFile& out, const InputSettings& settings, const Plan& plan, std::uint32_t file,
                   std::uint32_t service, std::uint32_t number) {
    const PlannedLine& line = plan.lines[number];
    const LineForm& form = *line.form;
    std::string called;
    if (form.kind == Call) {
        called = "\"" + serviceName(file, (service * 7 + number) % plan.services) + "\" ";
    }
    const std::uint64_t size = plan.lines.size();
    const std::uint64_t place = service * size + number;
    const auto sourceLine = static_cast<std::uint32_t>(
        settings.sourceLines == 0 ? place + 1 : place * settings.sourceLines / (size * plan.services) + 1);
    putLine(out, form.bigramme, plan.id(service, line), " ", form.word, "\"", serviceName(file, service),
            "\" ", called, form.detail, sourceLine, " ", sourceLine);
}

// A prefix expression of `count` conditions joined by one operator.
std::string joined(char letter, std::uint32_t count) {
    return std::string(count - 1, letter) + std::string(count, '.');
}

struct CaseField {
    std::string text;
    std::uint32_t count = 0;
    std::uint32_t trueCases = 0;
};

std::uint32_t caseCount(const InputSettings& settings) {
    const std::uint64_t all = std::uint64_t{1} << std::min(settings.conditions, 31U);
    return static_cast<std::uint32_t>(settings.cases == 0 ? all
                                                          : std::min<std::uint64_t>(all, settings.cases));
}

// Two neighbouring conditions that are both true: most vectors are, and the false ones have partners.
CaseField tableField(std::uint32_t width, std::uint32_t count) {
    CaseField field;
    field.count = count;
    for (const bool wanted : {true, false}) {
        for (std::uint32_t vector = 0; vector < count; ++vector) {
            if (((vector & vector >> 1U & 0x55555555U) != 0) == wanted) {
                for (std::uint32_t j = 0; j < width; ++j) {
                    field.text += (vector >> j & 1U) != 0 ? 'T' : 'F';
                }
                field.trueCases += wanted ? 1 : 0;
            }
        }
    }
    return field;
}

CaseField caseField(const InputSettings& settings, Random& random) {
    const std::uint32_t width = settings.conditions;
    CaseField field;
    field.count = caseCount(settings);
    switch (settings.form) {
    case Form::Expression:
        field.text = width < 2 ? "." : "O" + joined('A', width / 2) + joined('A', width - width / 2);
        break;
    case Form::Xor: field.text = joined('X', width); break;
    case Form::Table: return tableField(width, field.count);
    case Form::DontCares:
        field.trueCases = field.count / 2;
        for (std::uint64_t i = 0; i < std::uint64_t{width} * field.count; ++i) {
            field.text += "TFX"[random.below(3)];
        }
        break;
    }
    return field;
}

void writeComposition(OutputFile& out, const InputSettings& settings, const Plan& plan, std::uint32_t number,
                      Random& random) {
    const CaseField cases = caseField(settings, random);
    const std::string name = "\"decision" + std::to_string(number) + "\" ";
    const auto place = static_cast<std::uint32_t>(plan.lines.size() * plan.services) + number + 1;
    const std::uint32_t firstId =
        plan.services * plan.idsPerService[Condition] + number * (2 * settings.conditions + cases.count);
    putLine(out, "PR ", plan.services * plan.idsPerService[Procedure] + number, " proc ", name, place, " ",
            place);
    std::string ids;
    for (std::uint32_t j = 0; j < settings.conditions; ++j) {
        putLine(out, "CE ", firstId + 2 * j, " ", name, "\"input[", j, "] > 0\" ", place, " ", place);
        ids += std::to_string(firstId + 2 * j) + " ";
    }
    const bool isTable = settings.form == Form::Table || settings.form == Form::DontCares;
    putLine(out, "CC ", firstId + 2 * settings.conditions, " ", settings.conditions, " ", ids, cases.count,
            " ", cases.text, isTable ? " " + std::to_string(cases.trueCases) : std::string());
}

void writeDescription(const InputSettings& settings, const Plan& plan, std::uint32_t number) {
    const DescribedFile file = describedFile(settings, number);
    OutputFile out = create(settings, "f" + std::to_string(number) + ".fdc");
    putLine(out, "VE 3.0e ", tokenString);
    putLine(out, "FC \"", file.sourceName, "\" \"", settings.directory, "\"");
    putLine(out, "FD 0");
    putLine(out, "TC PR RE AP BS BI BL CO CC");
    const auto size = static_cast<std::uint32_t>(plan.lines.size());
    for (std::uint32_t i = 0; i < plan.services * size; ++i) {
        if (settings.layout == Layout::Plain) {
            writeBodyLine(out, settings, plan, number, i / size, i % size);
        } else {
            writeBodyLine(out, settings, plan, number, i % plan.services, i / plan.services);
        }
    }
    Random random;
    for (std::uint32_t i = 0; number == 0 && i < settings.compositions; ++i) {
        writeComposition(out, settings, plan, i, random);
    }
    putLine(out, "DC ", file.checksumField);
    out.finish();
}

void writeSource(const InputSettings& settings, std::uint32_t number) {
    OutputFile out = create(settings, describedFile(settings, number).sourceName);
    for (std::uint32_t line = 1; line <= settings.sourceLines; ++line) {
        putLine(out, "    total = total + weight[", line, "] * reading(input, ", line % 16, ");");
    }
    out.finish();
}

// --- Traces

// Counts by item, file after file; empty when nobody asks for them.
using Tally = std::vector<std::uint64_t>;

struct TraceMaker {
    const InputSettings& settings;
    const Plan& plan;
    std::vector<DescribedFile> files;
    Random random{1};
    Tally tally;
};

// Where the program stands.
struct Step {
    std::uint32_t service = 0;
    std::uint32_t line = 0;
};

void advance(TraceMaker& maker, Step& step) {
    const Pattern pattern = maker.settings.pattern;
    const auto size = static_cast<std::uint32_t>(maker.plan.lines.size());
    if (pattern == Pattern::Random) {
        step = {maker.random.below(maker.plan.services), maker.random.below(size)};
    } else if (pattern == Pattern::Bursts && maker.plan.lines[step.line].endsLoop &&
               maker.random.below(4) != 0) {
        step.line -= static_cast<std::uint32_t>(bodyForms.size()) - 1;
    } else if (++step.line == size) {
        step.line = 0;
        step.service = pattern == Pattern::Bursts ? maker.random.below(maker.plan.services)
                                                  : (step.service + 1) % maker.plan.services;
    }
}

void writeHit(OutputFile& out, TraceMaker& maker, std::uint32_t file, const Step& step) {
    const PlannedLine& line = maker.plan.lines[step.line];
    const std::size_t kind = line.form->kind;
    const std::uint32_t outcome = kind == Condition ? maker.random.below(2) : 0;
    const std::uint32_t id = maker.plan.id(step.service, line) + outcome;
    std::uint32_t count = 1;
    if (maker.settings.counted) {
        // Counts of one to three digits, small ones more often.
        count = 1 + maker.random.below(1U << (1 + maker.random.below(10)));
        putLine(out, hitKeywords[kind], hexText(id).view(), " ", hexText(count).view());
    } else {
        putLine(out, hitKeywords[kind], hexText(id).view());
    }
    if (!maker.tally.empty()) {
        maker.tally[std::size_t{file} * maker.plan.itemsPerFile() + maker.plan.place(kind, id)] += count;
    }
}

void writeTest(OutputFile& out, TraceMaker& maker, std::uint32_t number, std::uint64_t hits) {
    constexpr std::uint32_t firstDate = 1700000000;
    putLine(out, "NT \"test ", number, "\" ", hexText(number + 1).view());
    putLine(out, "DT ", hexText(firstDate + number).view());
    if (maker.settings.counted) {
        putLine(out, "CO");
    }
    while (hits > 0) {
        const std::uint64_t partHits = std::min<std::uint64_t>(hits, maker.settings.partHits);
        const std::uint32_t file = maker.random.below(maker.settings.files);
        putLine(out, "FT ", hexText(maker.files[file].key).view());
        putLine(out, "DC ", hexText(maker.files[file].checksum).view());
        Step step{maker.random.below(maker.plan.services), 0};
        for (std::uint64_t i = 0; i < partHits; ++i) {
            writeHit(out, maker, file, step);
            advance(maker, step);
        }
        hits -= partHits;
    }
}

void writeLineRecords(const TraceMaker& maker, const std::string& name) {
    OutputFile out = create(maker.settings, name + ".info");
    const std::uint32_t items = maker.plan.itemsPerFile();
    for (std::uint32_t file = 0; file < maker.settings.files; ++file) {
        const auto counts = maker.tally.begin() + static_cast<std::ptrdiff_t>(std::size_t{file} * items);
        putLine(out, "TN:", name);
        putLine(out, "SF:", maker.files[file].sourceName);
        for (std::uint32_t item = 0; item < items; ++item) {
            putLine(out, "DA:", item + 1, ",", std::to_string(counts[item]));
        }
        putLine(out, "LF:", items);
        putLine(out, "LH:", static_cast<std::uint32_t>(items - std::count(counts, counts + items, 0U)));
        putLine(out, "end_of_record");
    }
    out.finish();
}

std::uint64_t share(std::uint64_t whole, std::uint64_t parts, std::uint64_t number) {
    return whole * (number + 1) / parts - whole * number / parts;
}

void writeTraces(const InputSettings& settings, const Plan& plan, std::uint64_t hits) {
    TraceMaker maker{settings, plan, {}, {1}, {}};
    for (std::uint32_t file = 0; file < settings.files; ++file) {
        maker.files.push_back(describedFile(settings, file));
    }
    std::uint32_t test = 0;
    for (std::uint32_t trace = 0; trace < settings.traces; ++trace) {
        const std::string name = settings.traces == 1 ? "t" : "t" + std::to_string(trace);
        maker.tally.assign(settings.lcov ? std::size_t{settings.files} * plan.itemsPerFile() : 0, 0);
        OutputFile out = create(settings, name + ".tio");
        for (std::uint64_t n = share(settings.tests, settings.traces, trace); n > 0; --n, ++test) {
            writeTest(out, maker, test, share(hits, settings.tests, test));
        }
        out.finish();
        if (settings.lcov) {
            writeLineRecords(maker, name);
        }
    }
}

} // namespace

InputSummary writeInputs(const InputSettings& settings) {
    const Plan plan = makePlan(settings);
    for (std::uint32_t file = 0; file < settings.files; ++file) {
        writeDescription(settings, plan, file);
        if (settings.sourceLines != 0) {
            writeSource(settings, file);
        }
    }
    InputSummary summary;
    summary.lines = std::uint64_t{settings.files} * settings.services * plan.lines.size() +
                    std::uint64_t{settings.compositions} * (settings.conditions + 2);
    summary.items =
        std::uint64_t{settings.files} * plan.itemsPerFile() +
        std::uint64_t{settings.compositions} * (1 + 2 * settings.conditions + caseCount(settings));
    if (settings.traces > 0 && settings.tests > 0) {
        summary.hits =
            settings.hitsPerTest == 0 ? settings.hits : std::uint64_t{settings.hitsPerTest} * settings.tests;
        writeTraces(settings, plan, summary.hits);
    }
    return summary;
}

} // namespace veldacov::bench
