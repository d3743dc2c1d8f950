#include "outputs/flow.h"

#include <string_view>

#include "report/auth.h"
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
    flow.trace.currentTest = identityOf(flow.trace, readTestLine(flow.trace)).test;
    const NameEntry* test = flow.trace.currentTest;
    const bool selected = test == nullptr || GetTestAuth(test, *flow.options);
    flow.trace.state = selected ? ReadState::Recording : ReadState::SkippingTest;
    flow.trace.countOriented = false;
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

void writeProcedureStep(FlowState& flow, const ItemPlace& place) {
    const Service& service = *place.service;
    if (place.type != type::procedures) {
        const ExitEntry& exit = service.exits[place.position];
        writeStep(flow, text(flow, exitLabel(exit.kind)), service.name->text, exit.item.startLine);
        return;
    }
    if (!service.entry) {
        internalError(translate("Internal Error", "No entry point in proc"));
    }
    writeStep(flow, text(flow, ReportLabel::Incoming), service.name->text, service.entry->startLine);
}

void writeConditionStep(FlowState& flow, const ItemPlace& place) {
    const ConditionEntry& condition = place.service->conditions[place.position];
    if (condition.kind != ConditionKind::Case) {
        writeStep(flow, condition.text, outcomeText(*place.service, place.position),
                  condition.item.startLine);
    }
}

void writeHitStep(FlowState& flow, ItemKind kind, const ItemPlace& place) {
    const Service& service = *place.service;
    switch (kind) {
    case ItemKind::Procedure: writeProcedureStep(flow, place); break;
    case ItemKind::Call: {
        const CallEntry& call = service.calls[place.position];
        writeStep(flow, call.calledName->text, service.name->text, call.item.startLine);
        break;
    }
    case ItemKind::Block: {
        const BlockEntry& block = service.blocks[place.position];
        writeStep(flow, block.label, service.name->text, blockLine(block));
        break;
    }
    case ItemKind::Condition: writeConditionStep(flow, place); break;
    }
}

void retellHit(FlowState& flow, const Hit& hit) {
    if ((flow.types & typesOfKind(hit.kind)) == 0) {
        return;
    }
    if (const std::optional<ItemPlace> place = findItem(*flow.trace.currentPart, hit.kind, hit.id)) {
        writeHitStep(flow, hit.kind, *place);
    }
}

// A hit line, and those in plain form that follow it.
void handleHits(FlowState& flow, LineKind kind) {
    retellHit(flow, readHit(flow.trace, kind));
    takePlainHits(flow.trace, [&flow](const Hit& hit) { retellHit(flow, hit); });
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
