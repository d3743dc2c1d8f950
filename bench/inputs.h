#pragma once

// Made-up descriptions and traces of any size, the same on every machine: what the benchmarks run on.
//
//   f0.fdc, f1.fdc ...   descriptions of src0.c, src1.c ... (the sources too, when they have lines)
//   t.tio                the trace; t0.tio, t1.tio ... when the tests are split over several
//   t.info, ...          the same hits as coverage records of lines, one line per item, on request

#include <cstdint>
#include <string>

namespace veldacov::bench {

enum class Pattern : std::uint8_t {
    Bursts, // service by service, each from entry to exit, with its loops run through several times
    Once,   // service by service without loops: each item at its first hit, as a program that notes hits once
    Random  // any item of the file
};
enum class Layout : std::uint8_t {
    Plain,      // service by service
    Alternating // each line of a description belongs to another service than the line before
};
enum class Form : std::uint8_t {
    Expression, // the first half of the conditions or the second half, as an expression: few pairs
    Table,      // a table of vectors of T and F
    DontCares,  // a table with X in it
    Xor         // exclusive or, as an expression: every case is in a pair of every condition
};

struct InputSettings {
    std::string directory = ".";
    std::uint32_t files = 1;
    std::uint32_t services = 20;   // per file
    std::uint32_t items = 20;      // described lines per service, at least entry and exit
    std::uint32_t sourceLines = 0; // per source; 0: no sources
    Layout layout = Layout::Plain;

    std::uint32_t compositions = 0; // in the first file, each in a service of its own; never hit
    std::uint32_t conditions = 4;   // of each
    std::uint32_t cases = 0;        // at most; 0: all combinations
    Form form = Form::Expression;

    std::uint32_t tests = 1;
    std::uint32_t traces = 1;       // files that the tests are split over; 0: none
    std::uint64_t hits = 1'000'000; // lines, shared out evenly to the tests
    std::uint32_t hitsPerTest = 0;  // sets the number of hits, unless 0
    std::uint32_t partHits = 1000;  // hit lines of one file before the next file's turn
    Pattern pattern = Pattern::Bursts;
    bool counted = false;
    bool lcov = false;
};

struct InputSummary {
    std::uint64_t lines = 0; // body lines of the descriptions
    std::uint64_t items = 0; // that can be hit; a condition has two, a composition one per case
    std::uint64_t hits = 0;  // lines
};

// Writes the files into the directory, which must exist.
InputSummary writeInputs(const InputSettings& settings);

} // namespace veldacov::bench
