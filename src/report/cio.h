#pragma once

// The CIO file (-CIO): rates per service, written in step with the traces.
//
//   T<test>      one block per selected test: its hits, and what it hit first in the current period
//   O<service>   one block per period of one service number: what the period added
//   G            one block over all tests
//    File <name>
//       <service>
//          <label>\t<rate>% (<hits>/<total>), +<rate> (+<new hits>)

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "report/auth.h"
#include "report/labels.h"
#include "report/options.h"
#include "support/output.h"

namespace veldacov {

// The open file and what it remembers from block to block.
struct CioFile {
    OutputFile out;
    const Selection* selection = nullptr; // the services shown; borrowed
    std::uint16_t typesInUse = 0;         // govern every block
    bool noTestBlockYet = true;
    bool noServiceBlockYet = true;
    std::vector<CoverageCounters>
        newHits; // by selected service: hit first in the test that ends; zero in between
    std::vector<CoverageCounters> accumulated; // by selected service: hit first since the last O block
    std::vector<std::size_t> placesInPeriod;   // of the services in which anything was
    std::vector<HitRecord*> countedRecords;    // with the mark countedInPeriod
    std::array<std::string, static_cast<std::size_t>(ReportLabel::Count)> labels; // looked up once
};

// Creates the file that the options name, a failure is a fatal error. The selection has to live as long as the file.
void openCio(CioFile& cio, const CoverageOptions& options, const Selection& selection,
             std::uint16_t typesInUse);
// The block of the test that ends, before its counts are reset; a test without a number (-1) is a fatal error that
// names the trace being read.
void writeCioTestBlock(CioFile& cio, std::int32_t testNumber, const std::string& traceFileName);
// The block of a period; no service number (-1) is a fatal error that names the trace being read.
void writeCioServiceBlock(CioFile& cio, std::int32_t serviceNumber, const std::string& traceFileName);
void writeCioGlobalBlock(CioFile& cio);
// Completes the file.
void closeCio(CioFile& cio);

} // namespace veldacov
