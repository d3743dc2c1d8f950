#pragma once

// Verdicts: the rates of a campaign, and what of them is below what was asked for. Shares are compared as fractions, never
// as they are printed: 799 of 1000 is below 80.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/output.h"
#include "view/campaign.h"
#include "view/view_rates.h"

namespace veldacov {

// A rate has to be at least share / scale percent.
struct Minimum {
    std::size_t rate = 0; // place in viewRateNames
    std::string text;     // of the share, as it was given
    std::uint32_t share = 0;
    std::uint32_t scale = 1; // a power of ten
};

// Reads "decisions=80" or "decisions=79.95": a share of 0 to 100 with up to six decimals. None for anything else.
std::optional<Minimum> readMinimum(std::string_view text);

bool isBelow(const ViewRate& rate, const Minimum& minimum);

enum class CheckLevel : std::uint8_t { Total, File, Service };

struct CheckOptions {
    std::vector<Minimum> minima;
    CheckLevel level = CheckLevel::Total;
    bool strict = false;
    bool allowNotApplicable = false;
    bool allowStale = false;
};

// Bits of the status.
constexpr int belowMinimum = 2;
constexpr int doubtfulInputs =
    4; // a stale part; with `strict` also unmatched parts, and warnings while loading

// A rate that does not reach its minimum; of the whole campaign, a file or a service.
struct Failure {
    std::string where; // empty: the whole campaign
    const Minimum* minimum = nullptr;
    ViewRate rate;
};
struct Verdict {
    std::vector<Failure> failures; // in the order of files and services, then of the minima
    std::size_t compared = 0;
    int status = 0;
};

// The options must outlive the verdict.
Verdict checkCampaign(const Campaign& campaign, const CheckOptions& options);

// What people and log patterns read. With minima what is below, without the rates; then in any case a line that starts
// with "TOTAL". With `colours` for a terminal that has them.
enum class Colours : bool { None, Terminal };
void writeVerdict(OutputFile& out, const Campaign& campaign, const CheckOptions& options,
                  const Verdict& verdict, Colours colours);
// The same as Markdown, to be the comment of a merge request.
void writeVerdictMarkdown(OutputFile& out, const Campaign& campaign, const CheckOptions& options,
                          const Verdict& verdict);

} // namespace veldacov
