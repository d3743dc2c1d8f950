#pragma once

// The description being made: sections (one for each file whose functions are described) and their items, in the order in
// which they are added. Identifiers count up from 0 for each kind of hit. Beside each item stands its formula: the
// counters whose sum says how often it was hit.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace veldacc {

// The four keywords of hits, in the order of the run-time library: TP TA TB TE.
enum class HitKind : std::uint8_t { Procedure, Call, Block, Condition };
constexpr std::size_t hitKinds = 4;

// What is described, as the codes of the TC line; BA is written only where there is such a block.
enum TypeMask : std::uint32_t {
    typePR = 1,
    typeRE = 2,
    typeAP = 4,
    typeBS = 8,
    typeBI = 16,
    typeBL = 32,
    typeBA = 64,
    typeCO = 128,
    typeCC = 256,
    allTypes = 511
};
// "PR,RE,AP" -> mask; 0 for an unknown code. RE contains PR, CC contains CO.
std::uint32_t parseTypes(std::string_view list);

struct ItemRef {
    HitKind kind = HitKind::Procedure;
    std::uint32_t id = 0;
    bool described = false; // false: not among the chosen types
};

struct Lines {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
};

struct Section {
    std::string path;      // of the source, to be read for its time
    std::string name;      // of the FC line
    std::string directory; // of the FC line
    std::string items;     // the body lines
    std::array<std::vector<std::vector<std::uint32_t>>, hitKinds> formulas; // of each identifier
    bool hasTransferBlock = false;
    std::string header;         // VE to TC, made at the end
    std::uint32_t checksum = 0; // of the DC line in a trace
    std::uint32_t key = 0;
};

// How much of a section there is: to take back what a function has added.
struct SectionMark {
    std::size_t itemBytes = 0;
    std::array<std::size_t, hitKinds> counts{};
    bool hasTransferBlock = false;
};
SectionMark markSection(const Section& section);
void takeBack(Section& section, const SectionMark& mark);

// A section and the function in it that items are added to.
struct Service {
    Section& section;
    std::string name;
    std::uint32_t types = allTypes;
};

// One operation for each line of a description. `kind` and `label` are the words of the line.
ItemRef addProcedureItem(const Service& service, std::string_view kind, Lines lines);
ItemRef addCall(const Service& service, std::string_view called, Lines lines);
ItemRef addBlock(const Service& service, std::string_view kind, std::string_view label, Lines lines);
ItemRef addTwoOutcomes(const Service& service, std::string_view text,
                       Lines lines); // true; false is the next identifier
ItemRef addOneOutcome(const Service& service, std::string_view text, Lines lines);
// The cases; the first one is returned, the others follow. `cases` is the rest of the line behind their number.
ItemRef addComposition(const Service& service, const std::vector<std::uint32_t>& conditions,
                       std::uint32_t caseCount, std::string_view cases);
ItemRef next(ItemRef item);

// Makes header, checksum and key of a section, and gives its whole text.
struct HeaderFacts {
    bool forced = false;
    std::uint32_t types = allTypes;
};
std::string finishSection(Section& section, const HeaderFacts& facts);

} // namespace veldacc
