#include "report/report_text.h"

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "description/conditions.h"
#include "description/hit_counting.h"
#include "report/auth.h"
#include "report/rates.h"
#include "support/files.h"
#include "support/machine.h"

namespace veldacov {

namespace {

// One block of rates: of a file, a service or a conclusion.
struct CoverageBlock {
    const Service* service = nullptr; // set for a service's block only
    std::string_view prefix;
    std::string_view name;              // empty: no name line
    const NameEntry* comment = nullptr; // follows the name
    const CoverageCounters* totals = nullptr;
    const CoverageCounters* hits = nullptr;
    std::uint16_t instrumentedTypes = 0; // tells "none" from "n/a"
    std::uint16_t typesInUse = 0;        // the rates shown
    bool countOriented = false;          // references show counts
};

std::string_view text(const TraceSession& session, ReportLabel label) {
    return labelText(label, session.language);
}

const CoverageCounters& hitsOf(const TraceSession& session, const Service& service) {
    return coveredOf(service, *session.options);
}

std::uint32_t hitsOf(const TraceSession& session, const HitRecord& record) {
    assert(countsAreSettled());
    return session.options->global ? record.globalHits : record.testHits;
}

// References are written by functions that put their text, because most have none to write: texts of cases and pairs
// are made when their line is written, and those of pairs never stand in memory as a whole.

// The form of tests without counts lists the references that were not hit, with -BRANCH=COV those that were.
template <typename PutText>
void writeUncountedReference(TraceSession& session, const HitRecord& record, std::uint32_t line,
                             PutText putText) {
    if ((hitsOf(session, record) != 0) == session.options->branchCoverage) {
        OutputFile& out = *session.reportStream;
        out.put("\t\t\t\t");
        putText(out);
        putLine(out, ", ", text(session, ReportLabel::Line), " ", line);
    }
}

template <typename PutText>
void writeCountedReference(TraceSession& session, const HitRecord& record, std::uint32_t line,
                           PutText putText) {
    const std::uint32_t count = hitsOf(session, record);
    OutputFile& out = *session.reportStream;
    out.put(count == 0 ? "\t\t\t*****\t" : "\t\t\t\t");
    putText(out);
    putLine(out, ", ", text(session, ReportLabel::Line), " ", line, ", ", count, " ",
            text(session, ReportLabel::Times),
            count == mostHits ? text(session, ReportLabel::MaximumReached) : "");
}

template <typename PutText>
void writeReference(TraceSession& session, const CoverageBlock& block, const HitRecord& record,
                    std::uint32_t line, PutText putText) {
    if (block.countOriented) {
        writeCountedReference(session, record, line, putText);
    } else {
        writeUncountedReference(session, record, line, putText);
    }
}

auto putting(std::string_view text) {
    return [text](OutputFile& out) { out.put(text); };
}

void writeEntryReference(TraceSession& session, const CoverageBlock& block) {
    const Service& service = *block.service;
    if (!service.entry) {
        internalError(translate("Internal Error", "No entry point in proc"));
    }
    writeReference(session, block, *service.entry, service.entry->startLine,
                   putting(text(session, ReportLabel::Incoming)));
}

void writeProcedureBranches(TraceSession& session, const CoverageBlock& block) {
    const Service& service = *block.service;
    writeEntryReference(session, block);
    for (const ExitEntry& exit : service.exits) {
        writeReference(session, block, exit, exit.startLine, putting(text(session, exitLabel(exit.kind))));
    }
}

void writeCalls(TraceSession& session, const CoverageBlock& block) {
    const Service& service = *block.service;
    for (const CallEntry& call : service.calls) {
        writeReference(session, block, call, call.startLine, putting(call.calledName->text));
    }
}

template <BlockKind kind>
void writeBlocks(TraceSession& session, const CoverageBlock& block) {
    const Service& service = *block.service;
    for (const BlockEntry& entry : service.blocks) {
        if (entry.kind == kind) {
            writeReference(session, block, entry, blockLine(entry), putting(entry.label));
        }
    }
}

void writeBasicConditions(TraceSession& session, const CoverageBlock& block) {
    const Service& service = *block.service;
    for (const ConditionEntry& condition : service.conditions) {
        if (condition.kind != ConditionKind::Case) {
            writeReference(session, block, condition, condition.startLine, [&](OutputFile& out) {
                const std::string_view outcome = outcomeText(service, condition);
                out.put(condition.text);
                out.put(outcome.empty() ? "" : " ");
                out.put(outcome);
            });
        }
    }
}

void putModifiedCondition(const TraceSession& session, OutputFile& out, const Service& service,
                          const Composition& composition, std::size_t place) {
    const ModifiedCondition& modified = composition.modifiedConditions[place];
    out.put(conditionText(service, modified.basicCondition));
    out.put(' ');
    if (modified.pairs.empty()) {
        out.put(text(session, ReportLabel::NoVectorPair));
    }
    pairsText(service, composition, place, [&out](std::string_view piece) { out.put(piece); });
}

void writeModifiedConditions(TraceSession& session, const CoverageBlock& block) {
    const Service& service = *block.service;
    for (const Composition& composition : service.compositions) {
        for (std::size_t place = 0; place < composition.modifiedConditions.size(); ++place) {
            const ModifiedCondition& modified = composition.modifiedConditions[place];
            writeUncountedReference(
                session, modified, service.conditions[modified.basicCondition].startLine,
                [&](OutputFile& out) { putModifiedCondition(session, out, service, composition, place); });
        }
    }
}

void writeCompoundCases(TraceSession& session, const CoverageBlock& block) {
    const Service& service = *block.service;
    for (const Composition& composition : service.compositions) {
        for (std::uint32_t i = 0; i < composition.caseCount; ++i) {
            const std::uint32_t place = composition.firstCase + i;
            const CoverageItem& item = service.conditions[place];
            writeReference(session, block, item, item.startLine,
                           [&](OutputFile& out) { out.put(conditionText(service, place)); });
        }
    }
}

using ReferenceWriter = void (*)(TraceSession&, const CoverageBlock&);
// By References, from ProcedureBranches on.
constexpr std::array<ReferenceWriter, 9> referenceWriters = {writeProcedureBranches,
                                                             writeCalls,
                                                             writeBlocks<BlockKind::Simple>,
                                                             writeBlocks<BlockKind::Implicit>,
                                                             writeBlocks<BlockKind::Logical>,
                                                             writeBlocks<BlockKind::Atc>,
                                                             writeBasicConditions,
                                                             writeModifiedConditions,
                                                             writeCompoundCases};

void writeReferences(TraceSession& session, References references, const CoverageBlock& block) {
    if (references != References::None && block.service != nullptr &&
        session.options->summaryLevel == SummaryLevel::None) {
        referenceWriters[static_cast<std::size_t>(references) - 1](session, block);
    }
}

void writeRate(TraceSession& session, std::string_view prefix, ReportLabel label, std::uint32_t total,
               std::uint32_t hits, ReportLabel zeroTotal) {
    OutputFile& out = *session.reportStream;
    if (total == 0) {
        putLine(out, "\t\t", prefix, text(session, label), " ", text(session, zeroTotal));
        return;
    }
    out.put("\t\t");
    out.put(prefix);
    out.put(text(session, label));
    out.put(' ');
    out.putRate(ratePercentage(total, hits), 5);
    putLine(out, "% (", hits, "/", total, ")");
}

void writeNameLine(TraceSession& session, const CoverageBlock& block) {
    if (block.name.empty()) {
        return;
    }
    putLine(*session.reportStream, block.prefix, block.name, " :");
    if (block.comment != nullptr) {
        putLine(*session.reportStream, block.prefix, "  (", block.comment->text, ")");
    }
}

// The services entered: a rate for files and conclusions, one line for a service.
void writeEntries(TraceSession& session, const CoverageBlock& block) {
    const std::uint32_t total = (*block.totals)[counter::services];
    const std::uint32_t hits = (*block.hits)[counter::services];
    if (total == 0) {
        return;
    }
    if (block.service == nullptr) {
        writeRate(session, block.prefix, ReportLabel::Functions, total, hits,
                  zeroTotalLabel(block.instrumentedTypes, type::procedures));
        return;
    }
    putLine(*session.reportStream, "\t\t", block.prefix, text(session, ReportLabel::Hit), " ",
            text(session, enteredLabel(*block.hits)));
    // With exits in use the entry is among their references.
    if ((block.typesInUse & type::exits) == 0 && block.countOriented) {
        writeEntryReference(session, block);
    }
}

bool isShown(const RateRow& row, const CoverageCounters& totals) {
    switch (row.guard) {
    case RowGuard::Always: return true;
    case RowGuard::WhenDescribed: return rowSum(row, totals) > 0;
    case RowGuard::WhenThereAreExits: break;
    }
    return haveExits(totals);
}

void writeCoverageBlock(TraceSession& session, const CoverageBlock& block) {
    writeNameLine(session, block);
    if ((block.typesInUse & type::procedures) != 0) {
        writeEntries(session, block);
    }
    for (const RateRow& row : rateRows) {
        if ((block.typesInUse & row.bit) != 0 && isShown(row, *block.totals)) {
            writeRate(session, block.prefix, labelOf(row, block.typesInUse), rowSum(row, *block.totals),
                      rowSum(row, *block.hits), zeroTotalLabel(block.instrumentedTypes, row.bit));
            writeReferences(session, row.references, block);
        }
    }
}

void writeRemark(TraceSession& session, ReportLabel remark) {
    putLine(*session.reportStream, "(", text(session, remark), ")");
}

void writeTestTitle(TraceSession& session, const ReportedTest& test) {
    if (!session.options->global) {
        writeSeparator(session);
        putLine(*session.reportStream, "Test ", nameText(test.currentTest), " :",
                test.testDate != nullptr ? " " : "", nameText(test.testDate));
    }
    writeSeparator(session);
}

void writeRemarks(TraceSession& session, const ReportedTest& test) {
    const CoverageOptions& options = *session.options;
    const std::uint16_t types = typesOr(options, session.typesOfAllFiles);
    if (options.summaryLevel == SummaryLevel::None && types != type::procedures && !test.countOriented) {
        writeRemark(session,
                    options.branchCoverage ? ReportLabel::ReferencesHit : ReportLabel::ReferencesNotHit);
    }
    if (!options.global && (types & type::modifiedConditions) != 0 && session.testReported) {
        writeRemark(session, ReportLabel::PreviousTests);
    }
}

// Calls visit(file place, counters) with what of each selected service was hit. Costs what was hit in a test.
template <typename Visit>
void forEachServiceHit(const TraceSession& session, Visit visit) {
    const Selection& selection = session.selection;
    if (session.options->global) {
        for (const SelectedService& selected : selection.services) {
            visit(selected.file, hitsOf(session, *selected.service));
        }
        return;
    }
    for (const Service* service : servicesHitInTest()) {
        if (service->selectedPlace >= 0) {
            const SelectedService& selected =
                selection.services[static_cast<std::size_t>(service->selectedPlace)];
            visit(selected.file, hitsOf(session, *service));
        }
    }
}

void writeFileBlocks(TraceSession& session, const SelectedFile& file, const CoverageCounters& hits,
                     bool countOriented) {
    const FileDescription& description = *file.description;
    const std::uint16_t types = typesOr(*session.options, description.coverageTypes);
    writeCoverageBlock(session, {nullptr, "", description.sourceName->text, description.sourceComment,
                                 &file.totals, &hits, description.coverageTypes, types, countOriented});
    if (session.options->summaryLevel > SummaryLevel::Service) {
        return;
    }
    for (const SelectedService& selected : session.selection.servicesOf(file)) {
        const Service& service = *selected.service;
        writeCoverageBlock(session,
                           {&service, "\t", service.name->text, nullptr, &service.counts,
                            &hitsOf(session, service), description.coverageTypes, types, countOriented});
    }
}

void writeFiles(TraceSession& session, bool countOriented) {
    std::vector<CoverageCounters> hits(session.selection.files.size());
    forEachServiceHit(session, [&](std::size_t file, const CoverageCounters& serviceHits) {
        sumCounters(hits[file], serviceHits);
    });
    for (std::size_t place = 0; place < hits.size(); ++place) {
        writeFileBlocks(session, session.selection.files[place], hits[place], countOriented);
    }
}

void writeConclusion(TraceSession& session, std::string_view name, const CoverageCounters& totals,
                     const CoverageCounters& hits) {
    writeSeparator(session);
    writeCoverageBlock(session, {nullptr, "", name, nullptr, &totals, &hits, session.reportedTypes,
                                 typesOr(*session.options, session.typesOfAllFiles), false});
}

// All selected services, whether their file is selected or not.
void sumOverall(TraceSession& session) {
    session.overallTotals = {};
    session.overallHits = {};
    for (const auto& description : loadedDescriptions()) {
        for (const Service& service : description->services) {
            if (GetServiceAuth(service.name, *session.options)) {
                sumCounters(session.overallTotals, service.counts);
                sumCounters(session.overallHits, service.globalCovered);
            }
        }
    }
}

} // namespace

void writeSeparator(TraceSession& session) {
    session.reportStream->put(separatorLine);
}

void writeHead(OutputFile& out, std::string_view title) {
    out.put(separatorLine);
    putLine(out, "\n\t\t", title);
    putLine(out, "\n\t\t    Tool version:    ", toolVersion);
    putLine(out, "\n\t\t\t  ", dateText(presentTime()), "\n");
}

void writeReportHeader(TraceSession& session) {
    writeHead(*session.reportStream, text(session, ReportLabel::Title));
}

void writeTestReport(TraceSession& session, const ReportedTest& test) {
    if (session.options->summaryLevel != SummaryLevel::Conclusion) {
        writeTestTitle(session, test);
    }
    writeRemarks(session, test);
    session.reportedTypes |= session.selection.types;
    if (session.options->summaryLevel != SummaryLevel::Conclusion) {
        writeFiles(session, test.countOriented);
    }
    CoverageCounters conclusionHits{};
    forEachServiceHit(session,
                      [&](std::size_t, const CoverageCounters& hits) { sumCounters(conclusionHits, hits); });
    const std::string name =
        session.options->global
            ? std::string(text(session, ReportLabel::Conclusion))
            : std::string(text(session, ReportLabel::ConclusionTest)).append(nameText(test.currentTest));
    writeConclusion(session, name, session.selection.totals, conclusionHits);
    session.testReported = true;
}

void writeFinalConclusion(TraceSession& session) {
    sumOverall(session);
    writeConclusion(session, text(session, ReportLabel::Conclusion), session.overallTotals,
                    session.overallHits);
}

} // namespace veldacov
