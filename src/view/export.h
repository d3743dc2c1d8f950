#pragma once

// What other programs read: a campaign as JSON (all of it), as LCOV tracefile and as Cobertura XML (lines and branches,
// by the rule of evidence.h). Each is written as a stream: beside the campaign, memory holds one source at a time.

#include <cstdint>
#include <span>
#include <string>

#include "support/output.h"
#include "view/campaign.h"
#include "view/evidence.h"

namespace veldacov {

enum class ExportFormat : std::uint8_t { Json, Lcov, Cobertura };

struct ExportOptions {
    ExportFormat format = ExportFormat::Json;
    bool perTest = false;    // LCOV: a record per test and source
    bool mcdc = false;       // LCOV: modified conditions, for readers of version 2.2 and later
    std::uint32_t split = 1; // Cobertura: how many files
};

// JSON (docs/formats/veldaview-json.md). Needs a campaign with CampaignDetail::Tests.
void exportJson(OutputFile& out, const Campaign& campaign);

// LCOV tracefile (docs/formats/lcov.md). Needs CampaignDetail::TestCounts for a record per test, else Tests.
void exportLcov(OutputFile& out, const Campaign& campaign, const ExportOptions& options);

// Cobertura XML (docs/formats/cobertura.md) of some sources in the order of their paths, which are relative to `root`.
// Needs a campaign with CampaignDetail::Tests.
void exportCobertura(OutputFile& out, const Campaign& campaign, std::span<const Source> sources,
                     const std::string& root);

// The sources in so many runs of about the same number of items; no more runs than sources.
std::vector<std::span<const Source>> splitSources(const Campaign& campaign, std::span<const Source> sources,
                                                  std::uint32_t parts);

} // namespace veldacov
