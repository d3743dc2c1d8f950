#include "outputs/listing.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "description/conditions.h"
#include "description/model.h"
#include "report/auth.h"
#include "report/labels.h"
#include "report/session.h"
#include "support/files.h"
#include "support/machine.h"
#include "support/output.h"
#include "support/run_files.h"

namespace veldacov {

namespace {

enum class NoteLabel : std::uint8_t {
    Incoming,
    RegularLeaving,
    Return,
    Termination,
    CallOf,
    SimpleBlock,
    ImplicitBlock,
    LogicalBlock,
    AtcBlock,
    BasicCondition,
    ModifiedCondition,
    CompoundCondition,
    ForcedModifiedCondition,
    ForcedCompoundCondition
};

// By NoteLabel. Listings are in English.
constexpr std::array<std::string_view, 14> noteLabels = {"Incoming",
                                                         "Regular leaving",
                                                         "Return",
                                                         "Termination",
                                                         "Call of",
                                                         "Simple block",
                                                         "Implicit block",
                                                         "Logical block",
                                                         "Asynchronous transfer block",
                                                         "Basic condition",
                                                         "Modified condition",
                                                         "Compound condition",
                                                         "Forced modified condition",
                                                         "Forced compound condition"};

constexpr std::string_view unmarked = "   ";
constexpr std::string_view partiallyHit = "-->";
constexpr std::string_view notHit = "==>";

constexpr std::string_view withinSource = "*****";
constexpr std::string_view behindSource = "+++++";

constexpr std::string_view listingExtension = ".lsc";

// What is said about an item, under the line that it belongs to. There may be millions; the texts behind the label
// are made when the note is written.
struct ListingNote {
    using PutText = void (*)(OutputFile&, const ListingNote&);
    std::uint32_t line = 0; // from 1
    bool hit = false;       // such notes are counted and not written
    NoteLabel label = NoteLabel::Incoming;
    PutText putText = nullptr; // with the blank before it; null for notes without one
    const Service* service = nullptr;
    const HitRecord* record = nullptr;
    const Composition* composition = nullptr; // of a modified condition
};
using Notes = std::vector<ListingNote>;

// The listing being written.
struct Listing {
    InputFile source;
    OutputFile out;
    std::string_view sourceName;
    std::uint32_t linesCopied = 0;
    bool pastEnd = false;
    std::uint16_t types = 0;
};

void putCall(OutputFile& out, const ListingNote& note) {
    out.put(' ');
    out.put(static_cast<const CallEntry*>(note.record)->calledName->text);
}

void putBlock(OutputFile& out, const ListingNote& note) {
    out.put(' ');
    out.put(static_cast<const BlockEntry*>(note.record)->label);
}

void putBasicCondition(OutputFile& out, const ListingNote& note) {
    const auto& condition = *static_cast<const ConditionEntry*>(note.record);
    out.put(' ');
    out.put(condition.text);
    if (condition.kind == ConditionKind::Outcome) {
        out.put(' ');
        out.put(outcomeText(*note.service, condition));
    }
}

void putModifiedCondition(OutputFile& out, const ListingNote& note) {
    const auto& modified = *static_cast<const ModifiedCondition*>(note.record);
    out.put(' ');
    out.put(conditionText(*note.service, modified.basicCondition));
    out.put(' ');
    if (modified.pairs.empty()) {
        out.put(labelText(ReportLabel::NoVectorPair, Language::English));
    }
    const auto place = static_cast<std::size_t>(&modified - note.composition->modifiedConditions.data());
    pairsText(*note.service, *note.composition, place, [&out](std::string_view piece) { out.put(piece); });
}

void putCase(OutputFile& out, const ListingNote& note) {
    const auto* entry = static_cast<const ConditionEntry*>(note.record);
    const auto place = static_cast<std::uint32_t>(entry - note.service->conditions.data());
    out.put(' ');
    out.put(conditionText(*note.service, place));
}

// Collects the notes of one service under a mask of types.
class NoteCollector {
public:
    NoteCollector(const Service& service, std::uint16_t types, Notes& notes)
        : service_(service), types_(types), notes_(notes) {}

    void collect() {
        if (has(type::procedures) && service_.entry) {
            add(service_.entry->startLine, *service_.entry, NoteLabel::Incoming);
        }
        if (has(type::exits)) {
            collectExits();
        }
        if (has(type::calls)) {
            for (const CallEntry& call : service_.calls) {
                add(call.startLine, call, NoteLabel::CallOf, putCall);
            }
        }
        if (has(type::simpleBlocks)) {
            collectBlocks();
        }
        if (has(type::basicConditions)) {
            collectBasicConditions();
            collectModifiedConditions();
            collectCompoundCases();
        }
    }

private:
    [[nodiscard]] bool has(std::uint16_t bit) const { return (types_ & bit) != 0; }

    void add(std::uint32_t line, const HitRecord& record, NoteLabel label,
             ListingNote::PutText putText = nullptr, const Composition* composition = nullptr) {
        notes_.push_back(
            {line, (record.flags & everHit) != 0, label, putText, &service_, &record, composition});
    }

    void collectExits() {
        for (const ExitEntry& exit : service_.exits) {
            add(exit.startLine, exit,
                static_cast<NoteLabel>(exit.kind)); // kinds 1 to 3 follow the entry
        }
    }

    void collectBlocks() {
        struct BlockNote {
            std::uint16_t neededType;
            NoteLabel label;
        };
        constexpr std::array<BlockNote, 4> byKind = {{{type::simpleBlocks, NoteLabel::SimpleBlock},
                                                      {type::implicitBlocks, NoteLabel::ImplicitBlock},
                                                      {type::logicalBlocks, NoteLabel::LogicalBlock},
                                                      {type::atcBlocks, NoteLabel::AtcBlock}}};
        for (const BlockEntry& block : service_.blocks) {
            const BlockNote& note = byKind[static_cast<std::size_t>(block.kind)];
            if (has(note.neededType)) {
                add(blockLine(block), block, note.label, putBlock);
            }
        }
    }

    void collectBasicConditions() {
        for (const ConditionEntry& condition : service_.conditions) {
            if (condition.kind != ConditionKind::Case) {
                add(condition.kind == ConditionKind::Single ? condition.endLine : condition.startLine,
                    condition, NoteLabel::BasicCondition, putBasicCondition);
            }
        }
    }

    void collectModifiedConditions() {
        if (!has(type::modifiedConditions)) {
            return;
        }
        const NoteLabel label =
            has(type::forcedConditions) ? NoteLabel::ForcedModifiedCondition : NoteLabel::ModifiedCondition;
        for (const Composition& composition : service_.compositions) {
            for (const ModifiedCondition& modified : composition.modifiedConditions) {
                add(service_.conditions[modified.basicCondition].startLine, modified, label,
                    putModifiedCondition, &composition);
            }
        }
    }

    void collectCompoundCases() {
        if (!has(type::compoundConditions)) {
            return;
        }
        const NoteLabel label =
            has(type::forcedConditions) ? NoteLabel::ForcedCompoundCondition : NoteLabel::CompoundCondition;
        for (const Composition& composition : service_.compositions) {
            for (std::uint32_t i = 0; i < composition.caseCount; ++i) {
                const CoverageItem& item = service_.conditions[composition.firstCase + i];
                add(item.endLine, item, label, putCase);
            }
        }
    }

    const Service& service_;
    std::uint16_t types_;
    Notes& notes_;
};

// Copies one source line behind its number and a marker; nothing when the source has no more.
void copyLine(Listing& listing, std::string_view marker) {
    std::string_view text;
    if (!readRawLine(listing.source, text)) {
        return;
    }
    listing.out.putNumber(++listing.linesCopied, 5);
    listing.out.put(' ');
    listing.out.put(marker);
    listing.out.put('|');
    listing.out.put(text);
}

void copyRest(Listing& listing) {
    while (!listing.pastEnd && !listing.source.atEnd) {
        copyLine(listing, unmarked);
    }
}

// Copies the lines before `line`. Line 0 wraps: it lies behind the end of every source.
void copyLinesBefore(Listing& listing, std::uint32_t line) {
    if (listing.pastEnd) {
        return;
    }
    while (listing.linesCopied < line - 1 && !listing.source.atEnd) {
        copyLine(listing, unmarked);
    }
    if (listing.source.atEnd) {
        listing.pastEnd = true;
        warningMessage(
            filled(translate("User Warning",
                             "Some unexecuted branches do not come from file %1, they are copied at the end "
                             "of listing file.",
                             "%1 is the name of the file"),
                   {listing.sourceName}));
    }
}

void writeNote(Listing& listing, const ListingNote& note) {
    const std::string_view mark = listing.pastEnd ? behindSource : withinSource;
    listing.out.put(mark);
    listing.out.put(' ');
    listing.out.put(noteLabels[static_cast<std::size_t>(note.label)]);
    if (note.putText != nullptr) {
        note.putText(listing.out, note);
    }
    putLine(listing.out, " ", mark);
}

// The notes of one line. Their numbers are kept in 16 bits and wrap there.
void printGroup(Listing& listing, Notes::const_iterator first, Notes::const_iterator last) {
    const auto hitNotes = static_cast<std::uint16_t>(
        std::count_if(first, last, [](const ListingNote& note) { return note.hit; }));
    const auto missedNotes = static_cast<std::uint16_t>(
        std::count_if(first, last, [](const ListingNote& note) { return !note.hit; }));
    const std::string_view missedMarker = hitNotes == 0 ? notHit : partiallyHit;
    copyLinesBefore(listing, first->line);
    copyLine(listing, missedNotes == 0 ? unmarked : missedMarker);
    if (missedNotes == 0) {
        return;
    }
    for (auto note = first; note != last; ++note) {
        if (!note->hit) {
            writeNote(listing, *note);
        }
    }
}

// Notes of one line stay in the order in which they were collected.
void printNotes(Listing& listing, Notes notes) {
    std::stable_sort(notes.begin(), notes.end(), [](const ListingNote& left, const ListingNote& right) {
        return left.line < right.line;
    });
    for (auto first = notes.cbegin(); first != notes.cend();) {
        const auto last = std::find_if(
            first, notes.cend(), [line = first->line](const ListingNote& note) { return note.line != line; });
        printGroup(listing, first, last);
        first = last;
    }
}

std::vector<const Service*> selectedServices(const FileDescription& description,
                                             const CoverageOptions& options) {
    std::vector<const Service*> services;
    for (const Service& service : description.services) {
        if (GetServiceAuth(service.name, options)) {
            services.push_back(&service);
        }
    }
    return services;
}

// Whether each service begins behind the end of the one before it.
bool areInOrder(const std::vector<const Service*>& services) {
    std::uint32_t previousLastLine = 0;
    for (const Service* service : services) {
        if (service->firstLine <= previousLastLine) {
            return false;
        }
        previousLastLine = service->lastLine;
    }
    return true;
}

void writeHeader(Listing& listing, const FileDescription& description) {
    OutputFile& out = listing.out;
    out.put(separatorLine);
    putLine(out, "\n\tOrbis(R) Norvik Suite Coverage - Listing");
    putLine(out, "\tTool version:             ", toolVersion);
    putLine(out, "\n\tFile: ", listing.sourceName, " (", description.sourceDirectory->text, ")");
    putLine(out, "\n\tSource time:        ", dateText(description.sourceTime));
    putLine(out, "\tListing time:       ", dateText(presentTime()));
    if (description.sourceComment != nullptr) {
        putLine(out, "\t(", description.sourceComment->text, ")");
    }
    out.put('\n');
    out.put(separatorLine);
    putLine(out, "(Following annotated lines were not hit ", notHit, ", or partially hit ", partiallyHit,
            ")");
}

// Opens the listing file; the first description of a path creates it, further ones append.
bool openListing(Listing& listing, const std::string& listingPath, NameCountList& tally) {
    const bool isFirst = addNameCount(tally, internName(listingPath)) == 1;
    listing.out = isFirst ? createListing(listingPath) : appendToListing(listingPath);
    if (!listing.out.isOpen()) {
        warningMessage(filled(translate("User Warning", "Cannot create annotated listing %1",
                                        "%1 is the name of the listing file"),
                              {listingPath}));
        return false;
    }
    infoMessage(filled(isFirst ? translate("User Info", "Creating annotated listing of %1",
                                           "%1 is the corresponding source file name")
                               : translate("User Info", "Appending annotated listing of %1",
                                           "%1 is the corresponding source file name"),
                       {listing.sourceName}));
    return true;
}

bool openFiles(Listing& listing, const FileDescription& description, const CoverageOptions& options,
               NameCountList& tally) {
    const std::string_view directory = description.sourceDirectory->text;
    const std::string sourcePath = joinPath(directory, listing.sourceName);
    listing.source = openRegularInput(sourcePath);
    if (!listing.source.isOpen()) {
        warningMessage(
            filled(translate("User Warning", "Cannot create annotated listing, source file %1 not found",
                             "%1 is the name of the source file"),
                   {sourcePath}));
        return false;
    }
    const std::string_view target = options.listingDirectory ? *options.listingDirectory : directory;
    return openListing(listing, changeExtension(joinPath(target, listing.sourceName), listingExtension),
                       tally);
}

void writeListing(const FileDescription& description, const CoverageOptions& options, NameCountList& tally) {
    Listing listing;
    listing.sourceName = description.sourceName->text;
    listing.types = typesOr(options, description.coverageTypes);
    if (!openFiles(listing, description, options, tally)) {
        return;
    }
    writeHeader(listing, description);
    const std::vector<const Service*> services = selectedServices(description, options);
    const bool inOrder = areInOrder(services);
    Notes notes;
    for (const Service* service : services) {
        NoteCollector(*service, listing.types, notes).collect();
        if (inOrder) {
            printNotes(listing, std::move(notes));
            notes = {};
        }
    }
    printNotes(listing, std::move(notes));
    copyRest(listing);
    listing.out.finish();
}

} // namespace

void writeListings(const CoverageOptions& options) {
    NameCountList tally; // how many descriptions each listing path has had
    for (const auto& description : loadedDescriptions()) {
        if (!description->placeholder && GetFileAuth(description->sourceName, options)) {
            writeListing(*description, options, tally);
        }
    }
}

} // namespace veldacov
