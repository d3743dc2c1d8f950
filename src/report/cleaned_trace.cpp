#include "report/cleaned_trace.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "description/tokens.h"
#include "support/machine.h"
#include "support/run_files.h"

namespace veldacov {

namespace {

std::string testLine(const CoverageOptions& options, const CleanedTest& test) {
    if (options.mergeTests) {
        return "NT " + quotedText(toLocal(translate("Merged test", "Merged test",
                                                    "The test name to display for a set of merged tests")));
    }
    return test.test != nullptr ? "NT " + quotedText(test.test->text) : "NT";
}

std::string dateLine(const CoverageOptions& options, const CleanedTest& test) {
    if (options.mergeTests) {
        return "DT " + quotedText(dateText(presentTime()));
    }
    return test.testDate != nullptr ? "DT " + quotedText(test.testDate->text) : "DT";
}

struct WrittenHit {
    std::uint32_t id = 0;
    std::uint32_t count = 0;
};

void writeHit(OutputFile& out, ItemKind kind, WrittenHit hit, bool countOriented) {
    std::array<char, longestHitLine> line{};
    const std::string_view keyword = keywordOf(kind);
    char* at = std::copy(keyword.begin(), keyword.end(), line.data());
    *at++ = ' ';
    at = putHex(at, hit.id);
    if (countOriented) {
        *at++ = ' ';
        at = putHex(at, hit.count);
    }
    *at++ = '\n';
    out.put({line.data(), static_cast<std::size_t>(at - line.data())});
}

void writePart(OutputFile& out, KeptPart& part, bool countOriented) {
    putLine(out, "FT ", hexText(part.description->fileKey).view());
    putLine(out, "DC ", hexText(part.description->checksum).view());
    for (const ItemKind kind : itemKinds) {
        forEachKeptHit(part, kind, [&](std::uint32_t id, std::uint32_t count) {
            writeHit(out, kind, {id, count}, countOriented);
        });
    }
}

} // namespace

void writeCleanedTrace(CleanedTrace& cleaned, const CoverageOptions& options, const CleanedTest& test) {
    OutputFile& out = cleaned.cleanStream;
    if (!out.isOpen()) {
        out = createOutput(*options.cleanFile, translate("Fatal Error", "Cannot write to file %1",
                                                         "%1 is the name of the cleaned tio file"));
    }
    putLine(out, testLine(options, test));
    putLine(out, dateLine(options, test));
    if (test.countOriented) {
        putLine(out, "CO");
    }
    std::vector<KeptPart*>& parts = cleaned.keptHits.partsWithHits;
    std::sort(parts.begin(), parts.end(), [](const KeptPart* left, const KeptPart* right) {
        return left->description->place < right->description->place;
    });
    for (KeptPart* part : parts) {
        if (!part->description->otherChecksumSeen) {
            writePart(out, *part, test.countOriented);
        }
    }
    forgetKeptHits(cleaned.keptHits);
}

void finishCleanedTrace(CleanedTrace& cleaned) {
    if (cleaned.cleanStream.isOpen()) {
        cleaned.cleanStream.finish();
    }
}

} // namespace veldacov
