// Micro benchmarks: the steps of a run on their own, each over inputs made for it in a temporary directory.

#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "description/fdcL.h"
#include "description/hit_counting.h"
#include "description/item_index.h"
#include "description/model.h"
#include "description/name_pool.h"
#include "inputs.h"
#include "report/hit_lines.h"
#include "report/report.h"
#include "report/tio.h"
#include "support/files.h"
#include "support/output.h"
#include "support/platform.h"

namespace {

using namespace veldacov;
using namespace veldacov::bench;

// A directory that goes away with its owner.
class Directory {
public:
    Directory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "veldacov-micro-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~Directory() { std::filesystem::remove_all(path_); }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    [[nodiscard]] std::string file(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

// What the program tells its user meanwhile is not wanted here.
class Quiet {
public:
    Quiet() : standardError_(::dup(STDERR_FILENO)) {
        const int nowhere = ::open("/dev/null", O_WRONLY);
        ::dup2(nowhere, STDERR_FILENO);
        ::close(nowhere);
    }
    ~Quiet() {
        ::dup2(standardError_, STDERR_FILENO);
        ::close(standardError_);
    }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    int standardError_;
};

struct Inputs {
    Directory directory;
    InputSettings settings;
    InputSummary summary;
    explicit Inputs(InputSettings wanted) : settings(std::move(wanted)) {
        settings.directory = directory.file("");
        summary = writeInputs(settings);
    }
    [[nodiscard]] std::string description() const { return directory.file("f0.fdc"); }
    [[nodiscard]] std::string trace() const { return directory.file("t.tio"); }
};

InputSettings oneFile(std::uint32_t services, std::uint64_t hits, Pattern pattern = Pattern::Bursts) {
    InputSettings settings;
    settings.services = services;
    settings.hits = hits;
    settings.pattern = pattern;
    return settings;
}

void forgetAll() {
    freeAllDescriptions();
    initNamePool();
}
FileDescription& load(const std::string& name) {
    TraceFileList traces;
    forgetAll();
    loadFdcFile(&name, 0, traces);
    return *loadedDescriptions().front();
}

std::int64_t total(const benchmark::State& state, std::uint64_t perIteration) {
    return static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(perIteration);
}

void lineReading(benchmark::State& state) {
    const Inputs inputs(oneFile(100, 1'000'000));
    std::uint64_t lines = 0; // of the file
    for (auto _ : state) {
        InputFile file = openInput(inputs.trace());
        Line line;
        for (lines = 0; readLine(file, line); ++lines) {
            benchmark::DoNotOptimize(line.cursor);
        }
    }
    state.SetItemsProcessed(total(state, lines));
    state.SetBytesProcessed(total(state, std::filesystem::file_size(inputs.trace())));
}
BENCHMARK(lineReading);

template <std::uint32_t (*read)(std::optional<std::string_view>, std::string_view)>
void numberReading(benchmark::State& state) {
    constexpr std::array<std::string_view, 8> texts = {"0", "7", "12", "93", "504", "618", "2999", "41007"};
    for (auto _ : state) {
        for (const std::string_view text : texts) {
            benchmark::DoNotOptimize(read(text, "file"));
        }
    }
    state.SetItemsProcessed(total(state, texts.size()));
}
BENCHMARK(numberReading<readDecimalValue>)->Name("numberReading/decimal");
BENCHMARK(numberReading<readHexValue>)->Name("numberReading/hex");

// Blocks with identifiers far apart go through a hash table, others index an array.
void itemLookup(benchmark::State& state, std::uint32_t distance) {
    constexpr std::uint32_t blocks = 10'000;
    const Directory directory;
    const std::string name = directory.file("f.fdc");
    {
        std::ofstream out(name);
        out << "VE 3.0e A\nFC \"a.c\" \"src/\"\nFD 0\nTC BS\n";
        for (std::uint32_t i = 0; i < blocks; ++i) {
            out << "BL " << i * distance << " simple \"f\" THEN " << i + 1 << " " << i + 1 << "\n";
        }
        out << "DC 1\n";
    }
    FileDescription& description = load(name);
    for (std::uint32_t id = 0; auto _ : state) {
        id = (id + 7919) % blocks;
        benchmark::DoNotOptimize(findItem(description, ItemKind::Block, id * distance));
    }
    state.SetItemsProcessed(total(state, 1));
}
BENCHMARK_CAPTURE(itemLookup, dense, 1);
BENCHMARK_CAPTURE(itemLookup, sparse, 100'003);

// The hits of a trace, from its bytes to the model, without the rest of a run. As in a run, a hit without a
// count is recorded once per test.
void hitRecording(benchmark::State& state, Pattern pattern, bool counted) {
    InputSettings settings = oneFile(100, 1'000'000, pattern);
    settings.counted = counted;
    const Inputs inputs(settings);
    FileDescription& description = load(inputs.description());
    const Counting counting = counted ? Counting::Accumulate : Counting::Replace;
    constexpr std::uint16_t allTypes = 0xFFFF;
    const KnownHits known = knownHits(description, counting, allTypes, false);
    const auto record = [&](Hit hit) { recordHit(description, hit.kind, hit.id, hit.count, counting); };
    for (auto _ : state) {
        TraceCursor cursor = startOfTraces();
        cursor.currentPart = &description;
        openTrace(cursor, inputs.trace());
        while (const std::optional<LineKind> kind = nextTraceLine(cursor, SkippedParts::Ignored)) {
            if (*kind == LineKind::FT) {
                readFilePart(cursor);
            } else if (*kind == LineKind::CO) {
                cursor.countOriented = true;
            } else if (*kind >= LineKind::TP && *kind <= LineKind::TE) {
                record(readHit(cursor, *kind));
                takeHitLines(cursor, known, record);
            }
        }
        resetTestCounts();
    }
    state.SetItemsProcessed(total(state, inputs.summary.hits));
    state.SetBytesProcessed(total(state, std::filesystem::file_size(inputs.trace())));
}
BENCHMARK_CAPTURE(hitRecording, bursts, Pattern::Bursts, false);
BENCHMARK_CAPTURE(hitRecording, random, Pattern::Random, false);
BENCHMARK_CAPTURE(hitRecording, counted, Pattern::Bursts, true);

void loading(benchmark::State& state, const InputSettings& settings) {
    const Inputs inputs(settings);
    const Quiet quiet;
    for (auto _ : state) {
        load(inputs.description());
        state.PauseTiming();
        forgetAll();
        state.ResumeTiming();
    }
    const bool composed = settings.compositions != 0; // what counts is then what comes out, not the one line
    state.SetItemsProcessed(total(state, composed ? inputs.summary.items : inputs.summary.lines));
    state.SetBytesProcessed(total(state, std::filesystem::file_size(inputs.description())));
}
BENCHMARK_CAPTURE(loading, lines, oneFile(1000, 0))->Unit(benchmark::kMillisecond);

// One composition: its cases and the pairs that prove its conditions.
InputSettings oneComposition(Form form, std::uint32_t conditions, std::uint32_t cases = 0) {
    InputSettings settings = oneFile(1, 0);
    settings.compositions = 1;
    settings.form = form;
    settings.conditions = conditions;
    settings.cases = cases;
    return settings;
}
BENCHMARK_CAPTURE(loading, expression16, oneComposition(Form::Expression, 16))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(loading, xor12, oneComposition(Form::Xor, 12))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(loading, table12, oneComposition(Form::Table, 12))->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(loading, dontCares2000, oneComposition(Form::DontCares, 32, 2000))
    ->Unit(benchmark::kMillisecond);

void report(const std::string& name) {
    OutputFile out(platform::createForWriting(name), name);
    runCoverageReport(out, {}, CoverageOptions{}, Language::English, [](const CoverageOptions&) {});
    out.finish();
}

// A report of all references, none of them hit.
void referenceWriting(benchmark::State& state) {
    const Inputs inputs(oneFile(1000, 0));
    const Directory directory;
    const Quiet quiet;
    load(inputs.description());
    report(directory.file("report"));
    for (auto _ : state) {
        report("/dev/null");
    }
    state.SetItemsProcessed(total(state, inputs.summary.items));
    state.SetBytesProcessed(total(state, std::filesystem::file_size(directory.file("report"))));
}
BENCHMARK(referenceWriting)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
