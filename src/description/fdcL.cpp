#include "description/fdcL.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <memory_resource>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include <QtGlobal>

#include "description/condition_list.h"
#include "description/conditions.h"
#include "description/item_index.h"
#include "description/model.h"
#include "description/tokens.h"
#include "support/files.h"
#include "support/machine.h"
#include "support/run_files.h"
#include "support/tables.h"

namespace veldacov {

namespace {

// Conditions of services that come again, until a composition or the end of the section asks for them.
//
// A service mostly stands in one piece, and its conditions go to its list at once. Were those that come later added to
// the list whenever the lines change from service to service, each list would move again and again and leave holes of
// its own size behind. So they wait here, in shorter form and in line order, those of a service chained by place, and
// the list grows once:
//
//   CA 0 "f" ..   list of f       CA 3 "f" ..   waits <-+         first of f
//   CA 1 "g" ..   list of g       CA 4 "g" ..   waits   |
//   CA 2 "g" ..   list of g       CA 5 "f" ..   waits --+         last of f
struct WaitingCondition {
    const char* text = "";
    std::uint32_t id = 0;
    std::uint32_t startLine = 0;
    std::uint32_t endLine = 0;
    std::uint32_t kind : 2;
    std::uint32_t next : 30; // of the same service; 0 for the last one
};
static_assert(sizeof(WaitingCondition) == 24);
constexpr std::uint32_t mostWaiting = 1U << 30U;

struct WaitingConditions {
    struct Chain {
        std::uint32_t count = 0;
        std::uint32_t first = 0;
        std::uint32_t last = 0;
    };
    std::deque<WaitingCondition> all;
    std::vector<Chain> chains; // by service
};

// The file being read.
struct FdcReader {
    std::string fileName;
    InputFile input;
    Line line;
    std::unique_ptr<FileDescription> section;
    Arena::Mark sectionStart;             // of the memory of its records
    Service* currentService = nullptr;    // that of the line before
    bool serviceNameHasNoEscapes = false; // its name stands in lines as it is
    std::vector<Service> newServices;
    std::vector<ExitEntry> newExits; // of the section, in line order
    std::vector<CallEntry> newCalls;
    std::vector<BlockEntry> newBlocks;
    std::vector<ConditionEntry>
        newConditions;                      // of the current service, since its lines began or a composition
    GrowingConditions list{&blockSource()}; // memory for the list of one service after the other
    bool listIsLent = false; // to the current service, whose lines have begun for the first time
    WaitingConditions waiting;
    std::string scratch;      // for texts with escapes
    DescriptionList sections; // finished ones, in order of appearance
    bool redundancySaid = false;
};

constexpr std::array<std::string_view, 2> readableVersions = {"3.0e", "3.0d"};
constexpr std::string_view sectionMarker = "/RIK";
constexpr char markerFence = '@';

struct TypeCode {
    std::string_view code;
    std::uint16_t bits;
};
constexpr std::array<TypeCode, 11> typeCodes = {{{"PR", type::procedures},
                                                 {"RE", type::exits},
                                                 {"AP", type::calls},
                                                 {"BS", type::simpleBlocks},
                                                 {"BT", type::transferBlocks},
                                                 {"BI", type::implicitBlocks},
                                                 {"BL", type::logicalBlocks},
                                                 {"BA", type::atcBlocks},
                                                 {"CO", type::basicConditions},
                                                 {"CC", type::modifiedConditions | type::compoundConditions},
                                                 {"CF", type::forcedConditions}}};

struct MissingTypeWarning {
    std::uint16_t bit;
    TranslatableText text; // in the context "fdcL-Warning"
};
constexpr std::array<MissingTypeWarning, 10> missingTypeWarnings = {{
    {type::procedures,
     QT_TRANSLATE_NOOP3("fdcL-Warning", "Procedures coverage type won't be computed for file %1",
                        "%1 is a file name")},
    {type::exits,
     QT_TRANSLATE_NOOP3("fdcL-Warning", "Procedures and outputs coverage type won't be computed for file %1",
                        "%1 is a file name")},
    {type::calls, QT_TRANSLATE_NOOP3("fdcL-Warning", "Calls coverage type won't be computed for file %1",
                                     "%1 is a file name")},
    {type::simpleBlocks,
     QT_TRANSLATE_NOOP3("fdcL-Warning", "Simple blocks coverage type won't be computed for file %1",
                        "%1 is a file name")},
    {type::implicitBlocks,
     QT_TRANSLATE_NOOP3("fdcL-Warning", "Implicit blocks coverage type won't be computed for file %1",
                        "%1 is a file name")},
    {type::logicalBlocks,
     QT_TRANSLATE_NOOP3("fdcL-Warning", "Logical blocks coverage type won't be computed for file %1",
                        "%1 is a file name")},
    {type::atcBlocks,
     QT_TRANSLATE_NOOP3("fdcL-Warning",
                        "Asynchronous transfer blocks coverage type won't be computed for file %1",
                        "%1 is a file name")},
    {type::basicConditions,
     QT_TRANSLATE_NOOP3("fdcL-Warning", "Basic conditions coverage type won't be computed for file %1",
                        "%1 is a file name")},
    {type::modifiedConditions,
     QT_TRANSLATE_NOOP3("fdcL-Warning", "Modified conditions coverage type won't be computed for file %1",
                        "%1 is a file name")},
    {type::compoundConditions,
     QT_TRANSLATE_NOOP3("fdcL-Warning", "Compound conditions coverage type won't be computed for file %1",
                        "%1 is a file name")},
}};

// The fatal errors of a description, by what is wrong with it. %1 is the file, unless the comment says otherwise.
namespace fault {
constexpr TranslatableText noVersion =
    QT_TRANSLATE_NOOP3("fdcL-Error", "FDC file without any version string: %1", "%1 is a file name");
constexpr TranslatableText otherVersion =
    QT_TRANSLATE_NOOP3("fdcL-Error", "%1 has been generated with an incompatible version of the product: %2",
                       "%1 is a file name, %2 a version");
constexpr TranslatableText noTokens =
    QT_TRANSLATE_NOOP3("fdcL-Error", "FDC file without any token string: %1", "%1 is a file name");
constexpr TranslatableText headTooShort = {QT_TRANSLATE_NOOP("fdcL-Error", "Bad FDC file")};
constexpr TranslatableText noSourceLine =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Bad or missing FC in FDC file %1", "%1 is a file name");
constexpr TranslatableText noTimeLine =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Bad or missing FD in FDC file %1", "%1 is a file name");
constexpr TranslatableText timeLineTooLong =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Garbage at the end of FD line in FDC file %1", "%1 is a file name");
constexpr TranslatableText noTypesLine =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Bad or missing TC in FDC file %1", "%1 is a file name");
constexpr TranslatableText noTypes =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Bad or missing TC information in FDC file %1", "%1 is a file name");
constexpr TranslatableText unknownType =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Unknown coverage type in FDC file %1", "%1 is a file name");
constexpr TranslatableText noBody = {QT_TRANSLATE_NOOP("fdcL-Error", "No data in FDC")};
constexpr TranslatableText unknownBigramme =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Unknown bigramme %1 in FDC file %2", "%1 is the text, %2 a file name");
constexpr TranslatableText unknownProcedureWord =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Unknown tpr type in FDC file %1", "%1 is a file name");
constexpr TranslatableText secondEntry =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Multiple input in procedure %1", "%1 is a procedure name");
constexpr TranslatableText unknownBlockWord =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Unknown tb type in FDC file %1", "%1 is a file name");
constexpr TranslatableText noChecksumLine =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Bad or missing DC in FDC file %1", "%1 is a file name");
constexpr TranslatableText checksumLineTooLong = QT_TRANSLATE_NOOP3(
    "fdcL-Error", "Garbage at the end of DC line checksum in FDC file %1", "%1 is a file name");
} // namespace fault

// Field descriptions of names, translated in the context "fdcL-Error" when one is missing.
constexpr const char* sourceNameField = QT_TRANSLATE_NOOP("fdcL-Error", "src-file name in FDC file");
constexpr const char* sourceDirectoryField =
    QT_TRANSLATE_NOOP("fdcL-Error", "src-file directory in FDC file");
constexpr const char* entityField = QT_TRANSLATE_NOOP("fdcL-Error", "entity name in FDC file");
constexpr const char* callingField = QT_TRANSLATE_NOOP("fdcL-Error", "calling function in FDC file");
constexpr const char* calledField = QT_TRANSLATE_NOOP("fdcL-Error", "called function in FDC file");
constexpr const char* enclosingField = QT_TRANSLATE_NOOP("fdcL-Error", "enclosing entity in FDC file");
constexpr const char* labelField = QT_TRANSLATE_NOOP("fdcL-Error", "label in FDC file");

// What a PR line describes: the entry of its service or one of its exits.
struct ProcedureKind {
    std::string_view word;
    bool isEntry;
    ExitKind exitKind;
};
constexpr std::array<ProcedureKind, 4> procedureKinds = {{{"proc", true, ExitKind::EndProc},
                                                          {"endproc", false, ExitKind::EndProc},
                                                          {"return", false, ExitKind::Return},
                                                          {"term", false, ExitKind::Term}}};

struct BlockWord {
    std::string_view word;
    BlockKind kind;
};
constexpr std::array<BlockWord, 4> blockWords = {{{"simple", BlockKind::Simple},
                                                  {"implicit", BlockKind::Implicit},
                                                  {"logical", BlockKind::Logical},
                                                  {"atc", BlockKind::Atc}}};

[[noreturn]] void refuse(const TranslatableText& what, std::initializer_list<std::string_view> values) {
    fatalError(filled(translate("fdcL-Error", what), values));
}
[[noreturn]] void refuse(const FdcReader& reader, const TranslatableText& what) {
    refuse(what, {reader.fileName});
}

std::optional<std::string_view> next(FdcReader& reader) {
    return nextToken(reader.line);
}

std::uint32_t nextNumber(FdcReader& reader) {
    return nextDecimal(reader.line, reader.fileName);
}

NameEntry* nextName(FdcReader& reader, const char* field) {
    return readNamedString(reader.line, field, reader.fileName);
}

void addWaiting(WaitingConditions& waiting, const ConditionEntry& condition) {
    const auto place = static_cast<std::uint32_t>(waiting.all.size());
    waiting.all.push_back({condition.text, condition.id, condition.startLine, condition.endLine,
                           static_cast<std::uint32_t>(condition.kind) & 3U, 0});
    if (waiting.chains.size() <= condition.service) {
        waiting.chains.resize(condition.service + std::size_t{1});
    }
    WaitingConditions::Chain& chain = waiting.chains[condition.service];
    if (chain.count++ == 0) {
        chain.first = place;
    } else {
        waiting.all[chain.last].next = place & (mostWaiting - 1);
    }
    chain.last = place;
}

// Hands the conditions that wait for a service to it.
void storeWaiting(WaitingConditions& waiting, Service& service) {
    if (service.place >= waiting.chains.size()) {
        return;
    }
    const auto chain = std::exchange(waiting.chains[service.place], {});
    if (chain.count > 0) {
        reserveConditions(service, chain.count);
    }
    std::uint32_t place = chain.first;
    for (std::uint32_t i = 0; i < chain.count; ++i) {
        const WaitingCondition& waited = waiting.all[place];
        ConditionEntry condition;
        condition.id = waited.id;
        condition.startLine = waited.startLine;
        condition.endLine = waited.endLine;
        condition.service = service.place;
        condition.kind = static_cast<ConditionKind>(waited.kind);
        condition.text = waited.text;
        appendConditions(service, {&condition, 1});
        place = waited.next;
    }
}

// Completes the list of the current service.
void storeConditions(FdcReader& reader) {
    if (reader.currentService == nullptr) {
        return;
    }
    Service& service = *reader.currentService;
    if (service.conditions.empty() && !reader.newConditions.empty()) {
        service.grownConditions = std::exchange(reader.list, GrowingConditions(&blockSource()));
        reader.listIsLent = true;
    }
    storeWaiting(reader.waiting, service);
    if (!reader.newConditions.empty()) {
        appendConditions(service, reader.newConditions);
        reader.newConditions.clear();
    }
}

// The lines of the current service end: its first conditions settle, later ones wait. Long lists stay where they are.
void leaveService(FdcReader& reader) {
    constexpr std::size_t longList = 65536;
    if (reader.currentService == nullptr) {
        return;
    }
    Service& service = *reader.currentService;
    const bool canWait = reader.newConditions.size() <= mostWaiting - reader.waiting.all.size();
    if (service.conditions.empty() || reader.listIsLent || !canWait) {
        storeConditions(reader);
    }
    for (const ConditionEntry& condition : reader.newConditions) {
        addWaiting(reader.waiting, condition);
    }
    reader.newConditions.clear();
    if (std::exchange(reader.listIsLent, false) && service.conditions.size() < longList) {
        reader.list = settleConditions(service);
        reader.list.clear();
    }
}

void storeAllConditions(FdcReader& reader) {
    leaveService(reader);
    for (Service& service : reader.newServices) {
        storeWaiting(reader.waiting, service);
    }
    reader.waiting = {};
}

// A service by its name, without a table for each section: the name remembers the place of the service that was last added
// with it. Sections come one after the other, so that is the right one, or one of an earlier section. What always holds:
// a service of this section whose name is the very entry is the one; if another stands at the place, or none, this section
// has not yet named it.
//
//   section 1: f g h      h remembers 2
//   section 2: h f        h: place 2 is free, so h is new, and remembers 0; f remembers 0, where h stands: f is new
Service* findOrAddService(FdcReader& reader, NameEntry* name) {
    std::vector<Service>& services = reader.newServices;
    if (name->place < services.size() && services[name->place].name == name) {
        return &services[name->place];
    }
    name->place = static_cast<std::uint32_t>(services.size());
    Service& service = services.emplace_back();
    service.name = name;
    service.place = name->place;
    return &service;
}

// Makes the service named next the current one; a new one is appended. Most lines name that of the line before.
Service& nextService(FdcReader& reader, const char* field) {
    if (reader.currentService != nullptr && reader.serviceNameHasNoEscapes &&
        skipQuotedString(reader.line, reader.currentService->name->text)) {
        return *reader.currentService;
    }
    NameEntry* name = nextName(reader, field);
    if (reader.currentService == nullptr || reader.currentService->name != name) {
        leaveService(reader);
        reader.currentService = findOrAddService(reader, name);
        reader.serviceNameHasNoEscapes = name->text.find_first_of("\"\\") == std::string_view::npos;
    }
    return *reader.currentService;
}

// An item of the current service. Its lines end its record; the service spans those of all its items.
void readLineRange(FdcReader& reader, CoverageItem& item) {
    item.startLine = nextNumber(reader);
    item.endLine = nextNumber(reader);
    Service& service = *reader.currentService;
    service.firstLine = std::min(service.firstLine, item.startLine);
    service.lastLine = std::max(service.lastLine, item.endLine);
}

template <typename Item>
Item itemOf(const Service& service, std::uint32_t id) {
    Item item;
    item.id = id;
    item.service = service.place;
    return item;
}

void readEntry(FdcReader& reader, Service& service, std::uint32_t id) {
    if (service.entry) {
        refuse(fault::secondEntry, {service.name->text});
    }
    auto entry = itemOf<CoverageItem>(service, id);
    readLineRange(reader, entry);
    service.entry = entry;
    service.counts[counter::services] = 1;
}

void readExit(FdcReader& reader, Service& service, std::uint32_t id, ExitKind kind) {
    auto exit = itemOf<ExitEntry>(service, id);
    exit.kind = kind;
    readLineRange(reader, exit);
    reader.newExits.push_back(exit);
}

void readProcedureBranch(FdcReader& reader, std::uint32_t id) {
    const ProcedureKind* kind = rowWith(procedureKinds, &ProcedureKind::word, next(reader));
    if (kind == nullptr) {
        refuse(reader, fault::unknownProcedureWord);
    }
    Service& service = nextService(reader, entityField);
    if (kind->isEntry) {
        readEntry(reader, service, id);
    } else {
        readExit(reader, service, id, kind->exitKind);
    }
    ++service.counts[counter::procedureBranches];
    ++reader.section->procedureBranchCount;
}

void readCall(FdcReader& reader, std::uint32_t id) {
    Service& service = nextService(reader, callingField);
    auto call = itemOf<CallEntry>(service, id);
    call.calledName = nextName(reader, calledField);
    readLineRange(reader, call);
    reader.newCalls.push_back(call);
    ++service.counts[counter::calls];
    ++reader.section->callCount;
}

void readBlock(FdcReader& reader, std::uint32_t id) {
    const BlockWord* kind = rowWith(blockWords, &BlockWord::word, next(reader));
    if (kind == nullptr) {
        refuse(reader, fault::unknownBlockWord);
    }
    Service& service = nextService(reader, enclosingField);
    const std::optional<std::string_view> label = next(reader);
    if (!label) {
        reportUnreadableField(labelField, reader.fileName);
    }
    auto block = itemOf<BlockEntry>(service, id);
    block.kind = kind->kind;
    block.label = recordMemory().keepTerminated(*label);
    readLineRange(reader, block);
    reader.newBlocks.push_back(block);
    ++service.counts[*counterOfType(typeOfBlock(kind->kind))];
    ++reader.section->blockCount;
}

void readCondition(FdcReader& reader, std::uint32_t id, ConditionKind kind) {
    Service& service = nextService(reader, enclosingField);
    const std::optional<std::string_view> text = nextQuotedString(reader.line, reader.scratch);
    if (!text) {
        fatalError(translate("fdcL-Assertion", "Cannot retrieve correctly basic condition text"));
    }
    auto condition = itemOf<ConditionEntry>(service, id);
    condition.kind = kind;
    condition.text = recordMemory().keepTerminated(*text);
    readLineRange(reader, condition);
    reader.newConditions.push_back(condition);
    std::uint32_t outcomes = 1;
    if (kind == ConditionKind::Outcome) {
        condition.id = id + 1; // the false outcome
        reader.newConditions.push_back(condition);
        ++outcomes;
    }
    service.counts[counter::basicConditions] += outcomes;
    reader.section->conditionCount += outcomes;
}

void readTwoOutcomeCondition(FdcReader& reader, std::uint32_t id) {
    readCondition(reader, id, ConditionKind::Outcome);
}

void readSingleOutcomeCondition(FdcReader& reader, std::uint32_t id) {
    readCondition(reader, id, ConditionKind::Single);
}

void readCompositionLine(FdcReader& reader, std::uint32_t id) {
    storeConditions(reader);
    readComposition(reader.line, *reader.section, reader.currentService, id, reader.fileName);
}

// All bigrammes, the most frequent first. Those without a handler belong to the frame of a section and are out
// of place in its body.
struct BodyLine {
    std::string_view bigramme;
    void (*read)(FdcReader&, std::uint32_t id);
};
constexpr std::array<BodyLine, 11> bodyLines = {{{"BL", readBlock},
                                                 {"CE", readTwoOutcomeCondition},
                                                 {"AP", readCall},
                                                 {"PR", readProcedureBranch},
                                                 {"CA", readSingleOutcomeCondition},
                                                 {"CC", readCompositionLine},
                                                 {"VE", nullptr},
                                                 {"FC", nullptr},
                                                 {"DC", nullptr},
                                                 {"FD", nullptr},
                                                 {"TC", nullptr}}};

bool isBigramme(std::string_view text, std::string_view bigramme) {
    return text.size() == 2 && text[0] == bigramme[0] && text[1] == bigramme[1];
}

void readBodyLine(FdcReader& reader) {
    const std::string_view bigramme = next(reader).value_or(std::string_view());
    const auto kind = std::find_if(bodyLines.begin(), bodyLines.end(),
                                   [&](const BodyLine& line) { return isBigramme(bigramme, line.bigramme); });
    std::uint32_t id = 0;
    if (kind != bodyLines.end()) {
        id = nextNumber(reader);
    }
    if (kind == bodyLines.end() || kind->read == nullptr) {
        refuse(fault::unknownBigramme, {bigramme, reader.fileName});
    }
    kind->read(reader, id);
}

bool startsChecksumLine(const Line& line) {
    constexpr std::string_view start = "DC ";
    return std::string_view(line.cursor, line.end).starts_with(start);
}

// Reads body lines up to the DC line; false when the file ends before one.
bool readBody(FdcReader& reader) {
    if (!readLine(reader.input, reader.line)) {
        refuse(fault::noBody, {});
    }
    reader.currentService = nullptr;
    reader.listIsLent = false;
    reader.newServices.clear();
    reader.newExits.clear();
    reader.newCalls.clear();
    reader.newBlocks.clear();
    bool more = true;
    do { // a section describes at least one item
        readBodyLine(reader);
        more = readLine(reader.input, reader.line);
    } while (more && !startsChecksumLine(reader.line));
    storeAllConditions(reader);
    return more;
}

void readVersionLine(FdcReader& reader) {
    const std::optional<std::string_view> version = next(reader);
    if (!version) {
        refuse(reader, fault::noVersion);
    }
    if (std::find(readableVersions.begin(), readableVersions.end(), *version) == readableVersions.end()) {
        refuse(fault::otherVersion, {reader.fileName, *version});
    }
    std::optional<std::string_view> token = next(reader);
    if (!token || token->starts_with('#')) {
        refuse(reader, fault::noTokens);
    }
    for (const NameEntry*& tokenString : reader.section->tokenStrings) {
        tokenString = internName(*token);
        token = next(reader);
        if (!token || token->starts_with('#') ||
            (!token->empty() && token->front() >= '0' && token->front() <= '9')) {
            break;
        }
    }
}

void readSourceLine(FdcReader& reader) {
    if (next(reader) != "FC") {
        refuse(reader, fault::noSourceLine);
    }
    FileDescription& section = *reader.section;
    section.sourceName = nextName(reader, sourceNameField);
    section.sourceDirectory = nextName(reader, sourceDirectoryField);
    section.fileKey =
        evalFileKey(std::string(section.sourceDirectory->text).append(section.sourceName->text));
    section.sourceComment = readNamedString(reader.line);
}

void readSourceTimeLine(FdcReader& reader) {
    if (next(reader) != "FD") {
        refuse(reader, fault::noTimeLine);
    }
    reader.section->sourceTime = static_cast<std::int32_t>(readDecimalTime(next(reader), reader.fileName));
    if (next(reader)) {
        refuse(reader, fault::timeLineTooLong);
    }
}

void readTypesLine(FdcReader& reader) {
    if (next(reader) != "TC") {
        refuse(reader, fault::noTypesLine);
    }
    std::optional<std::string_view> code = next(reader);
    if (!code) {
        refuse(reader, fault::noTypes);
    }
    for (; code; code = next(reader)) {
        const TypeCode* known = rowWith(typeCodes, &TypeCode::code, *code);
        if (known == nullptr) {
            refuse(reader, fault::unknownType);
        }
        reader.section->coverageTypes |= known->bits;
    }
}

// Reads the head of a section; the line in hand is its VE line, read up to behind the bigramme.
void readHeader(FdcReader& reader) {
    readVersionLine(reader);
    for (void (*readHeaderLine)(FdcReader&) : {readSourceLine, readSourceTimeLine, readTypesLine}) {
        if (!readLine(reader.input, reader.line)) {
            refuse(fault::headTooShort, {});
        }
        readHeaderLine(reader);
    }
}

void checkSourceTime(const FileDescription& section, const std::string& sourcePath) {
    const std::int64_t known = section.sourceTime != 0 ? fileModificationTime(sourcePath) : 0;
    if (known == 0) {
        return;
    }
    const auto onDisk = static_cast<std::int32_t>(known); // wraps in 2038, as the numbers of descriptions do
    if (onDisk > section.sourceTime) {
        warningMessage(filled(
            translate("fdcL-Warning", "Source file touched after instrumentation: %1", "%1 is a file name"),
            {sourcePath}));
    } else if (onDisk < section.sourceTime) {
        warningMessage(filled(translate("fdcL-Warning", "Older version of src file %1", "%1 is a file name"),
                              {sourcePath}));
    }
}

void checkTypes(const FileDescription& section, std::uint16_t requested, const std::string& sourcePath) {
    if (requested == 0) {
        return;
    }
    if ((requested & section.coverageTypes) == 0) {
        warningMessage(
            filled(translate("fdcL-Warning", "None of requested coverage types will be computed for file %1",
                             "%1 is a file name"),
                   {sourcePath}));
        return;
    }
    for (const MissingTypeWarning& warning : missingTypeWarnings) {
        if ((requested & ~section.coverageTypes & warning.bit) != 0) {
            warningMessage(filled(translate("fdcL-Warning", warning.text), {sourcePath}));
        }
    }
}

void checkSection(const FileDescription* section, std::uint16_t requestedTypes) {
    if (section == nullptr || section->sourceName == nullptr) {
        internalError(translate("fdcL-Assertion", "Bad attempt to validate FDC file"));
    }
    const std::string sourcePath = joinPath(section->sourceDirectory->text, section->sourceName->text);
    protectFile(sourcePath);
    checkSourceTime(*section, sourcePath);
    checkTypes(*section, requestedTypes, sourcePath);
}

void foldTokenStrings(FileDescription& section) {
    std::string joined;
    for (const NameEntry* token : section.tokenStrings) {
        if (token != nullptr) {
            joined.append(joined.empty() ? "" : " ").append(token->text);
        }
    }
    xorFoldText(section.checksum, joined);
}

// `hasLine`: a line that starts with the bigramme and a blank is in hand.
void readChecksumLine(FdcReader& reader, bool hasLine) {
    if (!hasLine || next(reader) != "DC") {
        refuse(reader, fault::noChecksumLine);
    }
    reader.section->checksum = nextNumber(reader);
    if (const std::optional<std::string_view> key = next(reader)) {
        reader.section->fileKey = readDecimalValue(key, reader.fileName);
    }
    if (next(reader)) {
        refuse(reader, fault::checksumLineTooLong);
    }
    foldTokenStrings(*reader.section);
}

void startSection(FdcReader& reader) {
    reader.section = std::make_unique<FileDescription>();
    reader.sectionStart = recordMemory().mark();
}

// Nothing else has taken memory of records since the section began.
void freeSection(FdcReader& reader) {
    if (reader.section == nullptr) {
        internalError(translate("fdcL-Assertion", "Bad attempt to free FDC file"));
    }
    reader.section.reset();
    reader.newServices.clear();
    recordMemory().rewind(reader.sectionStart);
}

// Takes over the items read, those of each service together and in line order, and shows the services where
// theirs stand.
template <typename Entry>
void keepByService(FileDescription& section, std::vector<Entry>& read, std::pmr::vector<Entry>& kept,
                   std::span<Entry> Service::*range) {
    const auto inServiceOrder = [](const Entry& left, const Entry& right) {
        return left.service < right.service;
    };
    if (!std::is_sorted(read.begin(), read.end(), inServiceOrder)) {
        std::stable_sort(read.begin(), read.end(), inServiceOrder);
    }
    kept.assign(read.begin(), read.end());
    for (auto first = kept.begin(); first != kept.end();) {
        const auto last = std::find_if(first, kept.end(), [service = first->service](const Entry& entry) {
            return entry.service != service;
        });
        section.services[first->service].*range = std::span<Entry>(first, last);
        first = last;
    }
}

// Keeps the finished section for the model, unless an earlier file has supplied it.
void keepSection(FdcReader& reader) {
    FileDescription& section = *reader.section;
    if (findDescription(section.fileKey, section.checksum).description != nullptr) {
        freeSection(reader);
        if (!std::exchange(reader.redundancySaid, true)) {
            infoMessage(
                filled(translate("fdcL-Info", "%1 contains redundant static information; it is ignored",
                                 "%1 is a fdc file name"),
                       {reader.fileName}));
        }
        return;
    }
    section.services.assign(std::make_move_iterator(reader.newServices.begin()),
                            std::make_move_iterator(reader.newServices.end()));
    keepByService(section, reader.newExits, section.exits, &Service::exits);
    keepByService(section, reader.newCalls, section.calls, &Service::calls);
    keepByService(section, reader.newBlocks, section.blocks, &Service::blocks);
    indexItems(section);
    reader.sections.push_back(std::move(reader.section));
}

// Reads on to the end of the next line that holds a marker between fences; false at the end of the file.
bool skipToMarker(FdcReader& reader, bool& open) {
    std::size_t matched = 0;
    while (matched < sectionMarker.size()) {
        const std::optional<char> character = readCharacter(reader.input);
        if (!character) {
            return false;
        }
        if (*character == markerFence) {
            open = !open;
            matched = 0;
        } else if (open) {
            matched = *character == sectionMarker[matched] ? matched + 1 : 0;
        }
    }
    for (std::optional<char> character = readCharacter(reader.input); character != '\n';
         character = readCharacter(reader.input)) {
        if (!character) {
            return false;
        }
    }
    return true;
}

// Looks for the VE line of a further section; its bigramme has been read then.
bool findNextSection(FdcReader& reader) {
    bool open = false;
    while (skipToMarker(reader, open)) {
        if (!readLine(reader.input, reader.line)) {
            return false;
        }
        if (next(reader) == "VE") {
            return true;
        }
    }
    return false;
}

void readSections(FdcReader& reader, std::uint16_t requestedTypes) {
    readHeader(reader);
    while (!reader.input.atEnd) {
        checkSection(reader.section.get(), requestedTypes);
        const bool hasChecksumLine = readBody(reader);
        readChecksumLine(reader, hasChecksumLine);
        keepSection(reader);
        if (findNextSection(reader)) {
            startSection(reader);
            readHeader(reader);
        }
    }
}

// Hands the sections of a file that has been read whole to the model, the last one first.
void closeFdcFile(FdcReader* reader) {
    if (reader == nullptr) {
        internalError(translate("fdcL-Assertion", "Bad attempt to close FDC file"));
    }
    for (auto section = reader->sections.rbegin(); section != reader->sections.rend(); ++section) {
        addDescription(std::move(*section));
    }
}

} // namespace

void loadFdcFile(const std::string* fileName, std::uint16_t requestedTypes, TraceFileList& traceFiles) {
    if (fileName == nullptr) {
        internalError(translate("fdcL-Assertion", "Attempt to open unnamed FDC file"));
    }
    FdcReader reader;
    reader.fileName = *fileName;
    reader.input = openGivenFile(*fileName);
    if (!reader.input.isOpen()) {
        warningMessage(
            filled(translate("fdcL-Warning", "Cannot open file %1", "%1 is a file name"), {*fileName}));
        return;
    }
    if (!readLine(reader.input, reader.line)) {
        return;
    }
    if (next(reader) != "VE") {
        keepGivenFile(std::move(reader.input));
        traceFiles.push_back(*fileName);
        return;
    }
    startSection(reader);
    reader.section->fdcName = *fileName;
    readSections(reader, requestedTypes);
    closeFdcFile(&reader);
}

} // namespace veldacov
