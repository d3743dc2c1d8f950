#include "view/check.h"

#include <algorithm>
#include <charconv>

#include "support/files.h"
#include "support/shown_text.h"

namespace veldacov {

namespace {

struct Part {
    std::string where; // empty: the whole campaign
    ViewRates rates;
    ViewRate sum;
};

Part partOf(std::string where, const CoverageCounters& totals, const CoverageCounters& hits,
            std::uint16_t types) {
    return {std::move(where), viewRates(totals, hits, types), sumOfRates(totals, hits, types)};
}

Part wholeCampaign(const Campaign& campaign) {
    return partOf({}, campaign.totals, campaign.hits, campaign.types);
}

// Calls visit(part) for everything that is checked on its own.
template <typename Visit>
void forEachPart(const Campaign& campaign, CheckLevel level, Visit visit) {
    if (level == CheckLevel::Total) {
        visit(wholeCampaign(campaign));
    }
    if (level == CheckLevel::File) {
        for (const CampaignFile& file : campaign.files) {
            visit(partOf(file.path, file.totals, file.hits, file.description->coverageTypes));
        }
    }
    if (level == CheckLevel::Service) {
        for (const CampaignService& service : campaign.services) {
            const CampaignFile& file = campaign.files[service.file];
            visit(partOf(file.path + ": " + std::string(nameText(service.service->name)),
                         service.service->counts, service.service->globalCovered,
                         file.description->coverageTypes));
        }
    }
}

bool fails(const ViewRate& rate, const Minimum& minimum, const CheckOptions& options) {
    switch (rate.state) {
    case RateState::None: return false;
    case RateState::NotApplicable: return !options.allowNotApplicable;
    case RateState::Measured: break;
    }
    return isBelow(rate, minimum);
}

bool isDoubtful(const Campaign& campaign, const CheckOptions& options) {
    const bool stale = std::any_of(campaign.strayParts.begin(), campaign.strayParts.end(),
                                   [](const StrayPart& part) { return part.stale; });
    if (stale && !options.allowStale) {
        return true;
    }
    const bool unmatched = std::any_of(campaign.strayParts.begin(), campaign.strayParts.end(),
                                       [](const StrayPart& part) { return !part.stale; });
    return options.strict && (unmatched || campaign.complaints > 0);
}

std::string percentText(const ViewRate& rate) {
    return rateText(rate) + (rate.state == RateState::Measured ? "%" : "");
}

std::string fractionText(const ViewRate& rate) {
    return rate.state == RateState::Measured ? std::to_string(rate.hits) + "/" + std::to_string(rate.total)
                                             : std::string();
}

// ---------------------------------------------------------------------------------------------------------------------
// The text

constexpr std::size_t nameWidth = 12;
constexpr std::size_t percentWidth = 6;

void writeRateLine(OutputFile& out, std::string_view name, const ViewRate& rate) {
    out.put(name);
    out.put(padded("", nameWidth - name.size()));
    out.put(padded(percentText(rate), percentWidth));
    const std::string fraction = fractionText(rate);
    putLine(out, fraction.empty() ? "" : "  ", fraction);
}

void writeRates(OutputFile& out, const ViewRates& rates) {
    for (std::size_t place = 0; place < rates.size(); ++place) {
        writeRateLine(out, viewRateNames[place], rates[place]);
    }
}

// One line per part, the name last because it may be long.
void writePartTable(OutputFile& out, const Campaign& campaign, CheckLevel level) {
    for (const std::string_view name : viewRateNames) {
        out.put(name);
        out.put("  ");
    }
    putLine(out, "name");
    forEachPart(campaign, level, [&](const Part& part) {
        for (std::size_t place = 0; place < part.rates.size(); ++place) {
            out.put(padded(rateText(part.rates[place]), viewRateNames[place].size()));
            out.put("  ");
        }
        putLine(out, shownText(part.where));
    });
    putLine(out, "");
}

class Colouring {
public:
    Colouring(OutputFile& out, Colours colours) : out_(out), on_(colours == Colours::Terminal) {}

    void put(std::string_view colour, std::string_view text) {
        out_.put(on_ ? colour : "");
        out_.put(text);
        out_.put(on_ ? "\x1b[0m" : "");
    }

private:
    OutputFile& out_;
    bool on_;
};
constexpr std::string_view red = "\x1b[1;31m";
constexpr std::string_view green = "\x1b[1;32m";

std::string failureText(const Failure& failure) {
    std::string text(viewRateNames[failure.minimum->rate]);
    text.append(" ").append(percentText(failure.rate));
    if (failure.rate.state == RateState::Measured) {
        text.append(" (").append(fractionText(failure.rate)).append(")");
    }
    return text.append(" < ").append(failure.minimum->text).append("%");
}

void writeFailures(OutputFile& out, const Verdict& verdict, Colours colours) {
    Colouring colouring(out, colours);
    for (const Failure& failure : verdict.failures) {
        colouring.put(red, "below");
        putLine(out, "  ", failureText(failure), failure.where.empty() ? "" : "  ", shownText(failure.where));
    }
    const bool passed = verdict.failures.empty();
    colouring.put(passed ? green : red, passed ? "passed" : "failed");
    putLine(out, ": ", std::to_string(verdict.failures.size()), " of ", std::to_string(verdict.compared),
            " rates below their minimum");
}

// ---------------------------------------------------------------------------------------------------------------------
// Markdown

// A name as a code span, where nothing in it is markup, a mention or a link; for a cell of a table.
std::string codeSpan(std::string_view name) {
    const std::string shown = shownText(name);
    std::size_t longestRun = 0;
    std::size_t run = 0;
    std::string text;
    for (const char character : shown) {
        run = character == '`' ? run + 1 : 0;
        longestRun = std::max(longestRun, run);
        text.append(character == '|' ? "\\" : "") += character;
    }
    const std::string fence(longestRun + 1, '`');
    const std::string gap = longestRun > 0 || text.starts_with(' ') ? " " : "";
    return fence + gap + text + gap + fence;
}

std::string minimumCells(const ViewRate& rate, std::size_t place, const CheckOptions& options) {
    std::string shares;
    bool below = false;
    for (const Minimum& minimum : options.minima) {
        if (minimum.rate == place) {
            shares.append(shares.empty() ? "" : ", ").append(minimum.text).append(" %");
            below = below || fails(rate, minimum, options);
        }
    }
    const bool judged = !shares.empty() && options.level == CheckLevel::Total;
    return shares + " | " + (judged ? below ? "**below**" : "ok" : "");
}

void writeRateTable(OutputFile& out, const Campaign& campaign, const CheckOptions& options) {
    const Part whole = wholeCampaign(campaign);
    putLine(out, "| Rate | Share | Hit | Minimum | |");
    putLine(out, "| --- | ---: | ---: | ---: | --- |");
    for (std::size_t place = 0; place < whole.rates.size(); ++place) {
        const ViewRate& rate = whole.rates[place];
        putLine(out, "| ", viewRateNames[place], " | ", percentText(rate), " | ", fractionText(rate), " | ",
                minimumCells(rate, place, options), " |");
    }
    putLine(out, "| **total** | **", percentText(whole.sum), "** | ", fractionText(whole.sum), " | | |");
}

// A comment that is too long is refused by its receivers.
constexpr std::size_t mostRows = 50;

void writeMore(OutputFile& out, std::size_t rows) {
    if (rows > mostRows) {
        putLine(out, "\nand ", std::to_string(rows - mostRows), " more");
    }
}

void writeFailureTable(OutputFile& out, const Verdict& verdict) {
    putLine(out, "\n| Below its minimum | Rate | Share | Hit | Minimum |");
    putLine(out, "| --- | --- | ---: | ---: | ---: |");
    for (std::size_t place = 0; place < std::min(mostRows, verdict.failures.size()); ++place) {
        const Failure& failure = verdict.failures[place];
        putLine(out, "| ", codeSpan(failure.where), " | ", viewRateNames[failure.minimum->rate], " | ",
                percentText(failure.rate), " | ", fractionText(failure.rate), " | ", failure.minimum->text,
                " % |");
    }
    writeMore(out, verdict.failures.size());
}

void writeStrayTable(OutputFile& out, const Campaign& campaign) {
    putLine(out, "\n| Parts of traces left out | Key | Checksum | Times |");
    putLine(out, "| --- | --- | --- | ---: |");
    for (std::size_t place = 0; place < std::min(mostRows, campaign.strayParts.size()); ++place) {
        const StrayPart& part = campaign.strayParts[place];
        putLine(out, "| ", part.stale ? "another build of " + codeSpan(part.path) : "not described", " | ",
                hexText(part.key.fileKey).view(), " | ", hexText(part.key.checksum).view(), " | ",
                std::to_string(part.times), " |");
    }
    writeMore(out, campaign.strayParts.size());
}

std::string_view headline(const CheckOptions& options, const Verdict& verdict) {
    if ((verdict.status & belowMinimum) != 0) {
        return "### Coverage: below its minimum";
    }
    if ((verdict.status & doubtfulInputs) != 0) {
        return "### Coverage: doubtful inputs";
    }
    return options.minima.empty() ? "### Coverage" : "### Coverage: reaches its minimum";
}

} // namespace

std::optional<Minimum> readMinimum(std::string_view text) {
    constexpr std::size_t mostDecimals = 6;
    const std::size_t equals = std::min(text.find('='), text.size());
    const std::optional<std::size_t> rate = findRate(text.substr(0, equals));
    const std::string_view share = text.substr(std::min(equals + 1, text.size()));
    const std::size_t point = std::min(share.find('.'), share.size());
    const std::string_view decimals = share.substr(std::min(point + 1, share.size()));
    const bool decimalsFit = point == share.size() || (!decimals.empty() && decimals.size() <= mostDecimals);
    const std::string digits = std::string(share.substr(0, point)).append(decimals);
    if (!rate || point == 0 || point > 3 || !decimalsFit ||
        !std::all_of(digits.begin(), digits.end(), [](char digit) { return digit >= '0' && digit <= '9'; })) {
        return std::nullopt;
    }
    Minimum minimum{*rate, std::string(share), 0, 1};
    std::from_chars(digits.data(), digits.data() + digits.size(), minimum.share);
    for (std::size_t decimal = 0; decimal < decimals.size(); ++decimal) {
        minimum.scale *= 10;
    }
    return minimum.share <= 100 * minimum.scale ? std::optional(minimum) : std::nullopt;
}

// Neither product reaches 2^64: hits and totals are below 2^32, the scale is at most a million.
bool isBelow(const ViewRate& rate, const Minimum& minimum) {
    return std::uint64_t{rate.hits} * 100 * minimum.scale < std::uint64_t{rate.total} * minimum.share;
}

Verdict checkCampaign(const Campaign& campaign, const CheckOptions& options) {
    Verdict verdict;
    forEachPart(campaign, options.level, [&](const Part& part) {
        for (const Minimum& minimum : options.minima) {
            ++verdict.compared;
            if (fails(part.rates[minimum.rate], minimum, options)) {
                verdict.failures.push_back({part.where, &minimum, part.rates[minimum.rate]});
            }
        }
    });
    verdict.status =
        (verdict.failures.empty() ? 0 : belowMinimum) | (isDoubtful(campaign, options) ? doubtfulInputs : 0);
    return verdict;
}

void writeVerdict(OutputFile& out, const Campaign& campaign, const CheckOptions& options,
                  const Verdict& verdict, Colours colours) {
    const Part whole = wholeCampaign(campaign);
    if (!options.minima.empty()) {
        writeFailures(out, verdict, colours);
    } else {
        if (options.level != CheckLevel::Total) {
            writePartTable(out, campaign, options.level);
        }
        writeRates(out, whole.rates);
    }
    writeRateLine(out, "TOTAL", whole.sum);
}

void writeVerdictMarkdown(OutputFile& out, const Campaign& campaign, const CheckOptions& options,
                          const Verdict& verdict) {
    putLine(out, headline(options, verdict), "\n");
    writeRateTable(out, campaign, options);
    if (options.level != CheckLevel::Total && !verdict.failures.empty()) {
        writeFailureTable(out, verdict);
    }
    if (!campaign.strayParts.empty()) {
        writeStrayTable(out, campaign);
    }
    if (campaign.complaints != 0) {
        putLine(out,
                "\nWarnings and errors while reading, see the log: ", std::to_string(campaign.complaints));
    }
}

} // namespace veldacov
