#include "outputs/flow.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "description/conditions.h"
#include "description/hit_counting.h"
#include "description/item_index.h"
#include "report/auth.h"
#include "report/hit_lines.h"
#include "report/report_text.h"
#include "report/session.h"
#include "report/tio.h"
#include "support/files.h"
#include "support/machine.h"

namespace veldacov {

namespace {

// A text in the two languages of the report.
struct FlowText {
    std::string_view english;
    std::string_view french;
};
constexpr FlowText title = {"Orbis(R) Norvik Suite Coverage - Path trace",
                            "Orbis(R) Norvik Suite Coverage - Trace de chemin"};
constexpr FlowText testWord = {"Test", "Test"};

struct FlowState {
    OutputFile* out = nullptr;
    const CoverageOptions* options = nullptr;
    Language language = Language::English;
    std::uint16_t types = 0;
    TraceCursor trace;
};

std::string_view text(const FlowState& flow, const FlowText& texts) {
    return flow.language == Language::French ? texts.french : texts.english;
}

std::string_view text(const FlowState& flow, ReportLabel label) {
    return labelText(label, flow.language);
}

void handleTestLine(FlowState& flow) {
    enterTest(flow.trace, identityOf(flow.trace, readTestLine(flow.trace)).test, *flow.options);
}

void handleDateLine(FlowState& flow) {
    flow.trace.testDate = readTestDate(flow.trace);
    const NameEntry* test =
        flow.trace.currentTest != nullptr ? flow.trace.currentTest : flow.trace.defaultTest;
    const NameEntry* date = flow.trace.testDate;
    putLine(*flow.out, text(flow, testWord), " ", test->text, date != nullptr ? " " : "", nameText(date));
}

void handleFilePart(FlowState& flow) {
    const PartKey part = readFilePart(flow.trace);
    flow.trace.currentPart = findDescription(part.fileKey, part.checksum).description;
    const bool selected =
        flow.trace.currentPart != nullptr && GetFileAuth(flow.trace.currentPart->sourceName, *flow.options);
    flow.trace.state = selected ? ReadState::Recording : ReadState::SkippingPart;
}

void writeStep(FlowState& flow, std::string_view label, std::string_view detail, std::uint32_t line) {
    putLine(*flow.out, "\t", label, detail.empty() ? "" : " ", detail, ", ", text(flow, ReportLabel::Line),
            " ", line);
}

void writeProcedureStep(FlowState& flow, const Service& service, const CoverageItem& item) {
    if (typeOfItem(service, ItemKind::Procedure, item) == type::procedures) {
        writeStep(flow, text(flow, ReportLabel::Incoming), service.name->text, item.startLine);
    } else {
        const ExitKind kind = static_cast<const ExitEntry&>(item).kind;
        writeStep(flow, text(flow, exitLabel(kind)), service.name->text, item.startLine);
    }
}

void writeConditionStep(FlowState& flow, const Service& service, const ConditionEntry& condition) {
    if (condition.kind != ConditionKind::Case) {
        writeStep(flow, condition.text, outcomeText(service, condition), condition.startLine);
    }
}

void writeHitStep(FlowState& flow, const Service& service, ItemKind kind, const CoverageItem& item) {
    switch (kind) {
    case ItemKind::Procedure: writeProcedureStep(flow, service, item); break;
    case ItemKind::Call: {
        const auto& call = static_cast<const CallEntry&>(item);
        writeStep(flow, call.calledName->text, service.name->text, call.startLine);
        break;
    }
    case ItemKind::Block: {
        const auto& block = static_cast<const BlockEntry&>(item);
        writeStep(flow, block.label, service.name->text, blockLine(block));
        break;
    }
    case ItemKind::Condition:
        writeConditionStep(flow, service, static_cast<const ConditionEntry&>(item));
        break;
    }
}

void retellHit(FlowState& flow, Hit hit) {
    if ((flow.types & typesOfKind(hit.kind)) == 0) {
        return;
    }
    FileDescription& part = *flow.trace.currentPart;
    if (const CoverageItem* item = findItem(part, hit.kind, hit.id)) {
        writeHitStep(flow, part.services[item->service], hit.kind, *item);
    }
}

// A hit line, and those that follow it.
void handleHits(FlowState& flow, LineKind kind) {
    retellHit(flow, readHit(flow.trace, kind));
    takeHitLines(flow.trace, noKnownHits, [&flow](Hit hit) { retellHit(flow, hit); });
}

void retellTrace(FlowState& flow, const std::string& traceFile) {
    openTrace(flow.trace, traceFile);
    while (const std::optional<LineKind> kind = nextTraceLine(flow.trace, SkippedParts::Ignored)) {
        switch (*kind) {
        case LineKind::NT: handleTestLine(flow); break;
        case LineKind::DT: handleDateLine(flow); break;
        case LineKind::CO: flow.trace.countOriented = true; break;
        case LineKind::FT: handleFilePart(flow); break;
        default: handleHits(flow, *kind); break;
        }
    }
}

} // namespace

void writePathTrace(OutputFile& out, const TraceFileList& traceFiles, const CoverageOptions& options,
                    Language language) {
    FlowState flow;
    flow.out = &out;
    flow.options = &options;
    flow.language = language;
    flow.types = typesOr(options, typesOfAllDescriptions());
    flow.trace = startOfTraces();
    writeHead(out, text(flow, title));
    out.put(separatorLine);
    for (const std::string& traceFile : traceFiles) {
        retellTrace(flow, traceFile);
    }
    out.put(separatorLine);
}

} // namespace veldacov
