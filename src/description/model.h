#pragma once

// The coverage model: what the descriptions say, and the place where hits are counted.
//
//   loadedDescriptions()              in loading order
//     FileDescription                 one per described source file
//       Service                       in order of first mention
//         entry, exits, calls, blocks, conditions (with their CoverageItem), compositions
//           Composition               a compound condition; its cases are entries of `conditions`
//             ModifiedCondition       one per basic condition, with the pairs of cases that prove it
//
// Each record owns what is below it; records and texts lie in the model's arena, lists of conditions that came in several
// pieces on the heap. Records stay where they are once their file is loaded; from then on only hits, flags and
// placeholders change.
//
// A place is an index: of a record in the list that holds it.
//
// What is done with the records: item_index.h finds items, hit_counting.h counts their hits, condition_list.h,
// conditions.h and pairs.h know conditions, their compositions, and the pairs of cases that prove a condition.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <memory_resource>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "description/name_pool.h"
#include "support/arena.h"
#include "support/hash.h"

namespace veldacov {

// The memory of all records; it is given back by freeAllDescriptions.
Arena& recordMemory();

// Bits of a coverage-type mask, shared by options, descriptions and outputs.
namespace type {
constexpr std::uint16_t procedures = 0x001;
constexpr std::uint16_t exits = 0x002;
constexpr std::uint16_t calls = 0x004;
constexpr std::uint16_t simpleBlocks = 0x008;
constexpr std::uint16_t transferBlocks = 0x010; // accepted, counts nothing
constexpr std::uint16_t implicitBlocks = 0x020;
constexpr std::uint16_t logicalBlocks = 0x040;
constexpr std::uint16_t atcBlocks = 0x080;
constexpr std::uint16_t basicConditions = 0x100;
constexpr std::uint16_t modifiedConditions = 0x200;
constexpr std::uint16_t compoundConditions = 0x400;
constexpr std::uint16_t forcedConditions = 0x800;
} // namespace type

// Places in CoverageCounters.
namespace counter {
constexpr std::size_t services = 0;
constexpr std::size_t procedureBranches = 1;
constexpr std::size_t calls = 2;
constexpr std::size_t simpleBlocks = 3;
constexpr std::size_t implicitBlocks = 4;
constexpr std::size_t logicalBlocks = 5;
constexpr std::size_t atcBlocks = 6;
constexpr std::size_t basicConditions = 7;
constexpr std::size_t modifiedConditions = 8;
constexpr std::size_t compoundConditions = 9;
} // namespace counter

using CoverageCounters = std::array<std::uint32_t, 10>;

void sumCounters(CoverageCounters& into, const CoverageCounters& from);

// The counter of the items of a coverage type, none for types that count nothing. Entries count twice: as a
// procedure branch, and beside it as a service entered (see countHit).
constexpr std::optional<std::size_t> counterOfType(std::uint16_t coverageType) {
    constexpr std::size_t none = std::tuple_size_v<CoverageCounters>;
    constexpr std::array<std::size_t, 12> byTypeBit = {counter::procedureBranches,
                                                       counter::procedureBranches,
                                                       counter::calls,
                                                       counter::simpleBlocks,
                                                       none,
                                                       counter::implicitBlocks,
                                                       counter::logicalBlocks,
                                                       counter::atcBlocks,
                                                       counter::basicConditions,
                                                       counter::modifiedConditions,
                                                       counter::compoundConditions,
                                                       none};
    const auto bit = static_cast<std::size_t>(std::countr_zero(coverageType));
    return bit < byTypeBit.size() && byTypeBit[bit] != none ? std::optional(byTypeBit[bit]) : std::nullopt;
}

enum class ItemKind : std::uint8_t { Procedure = 1, Call = 2, Block = 3, Condition = 4 };
inline constexpr std::array itemKinds = {ItemKind::Procedure, ItemKind::Call, ItemKind::Block,
                                         ItemKind::Condition};
// Place of a kind in tables by kind.
constexpr std::size_t kindIndex(ItemKind kind) {
    return static_cast<std::size_t>(kind) - 1;
}

// Hit counts stop here instead of wrapping.
constexpr std::uint32_t mostHits = 2147483647;

// Flags of a hit record.
constexpr std::uint8_t hitFlag = 0x01; // hit; the CIO writer takes it back when it has counted the hit
constexpr std::uint8_t countedInPeriod = 0x02; // owned by the CIO writer
constexpr std::uint8_t hitInTest = 0x04;       // hit in the current test, be it with a count of 0
constexpr std::uint8_t everHit = 0x10;         // hit in some test

// What is counted for an item or a modified condition.
struct HitRecord {
    std::uint32_t testHits = 0;   // in the current test
    std::uint32_t globalHits = 0; // as last recorded over all tests
    std::uint8_t flags = 0;
};

// Programs have millions of items: each entry takes 32 or 40 bytes (docs/performance.md, "Where the time goes").
struct CoverageItem : HitRecord {
    std::uint32_t id = 0; // of the instrumentation, expected to be unique within its section and kind
    std::uint32_t startLine = 0;
    std::uint32_t endLine = 0;
    std::uint32_t service = 0; // place of its service in the file
};

enum class ExitKind : std::uint8_t { EndProc = 1, Return = 2, Term = 3 };
struct ExitEntry : CoverageItem {
    ExitKind kind = ExitKind::EndProc;
};

struct CallEntry : CoverageItem {
    const NameEntry* calledName = nullptr;
};

enum class BlockKind : std::uint8_t { Simple = 0, Implicit = 1, Logical = 2, Atc = 3 };
constexpr std::uint16_t typeOfBlock(BlockKind kind) {
    constexpr std::array types = {type::simpleBlocks, type::implicitBlocks, type::logicalBlocks,
                                  type::atcBlocks};
    return types[static_cast<std::size_t>(kind)];
}
struct BlockEntry : CoverageItem {
    BlockKind kind = BlockKind::Simple;
    const char* label = ""; // in the model's arena
};

enum class ConditionKind : std::uint8_t { Outcome = 0, Single = 1, Case = 2 };
constexpr std::uint16_t typeOfCondition(ConditionKind kind) {
    return kind == ConditionKind::Case ? type::compoundConditions : type::basicConditions;
}
// The two outcomes of a condition are adjacent, the true one first, and share one text object. That is how they are told
// apart: a true outcome is one whose neighbour behind it has the very same object (isTrueOutcome). Equal texts of different
// conditions are different objects, because the arena keeps each copy. A case has no text of its own: conditionText makes
// it.
struct ConditionEntry : CoverageItem {
    ConditionKind kind = ConditionKind::Outcome;
    const char* text = ""; // with its quotes; in the model's arena
};

// Outside of the arena: memory that is left is given back.
using GrowingConditions = std::pmr::vector<ConditionEntry>;

// Pointers have eight bytes where these sizes matter.
constexpr bool haveSize(std::size_t size, std::size_t wanted) {
    return sizeof(void*) != 8 || size == wanted;
}
static_assert(haveSize(sizeof(ExitEntry), 32) && haveSize(sizeof(CallEntry), 40) &&
              haveSize(sizeof(BlockEntry), 40) && haveSize(sizeof(ConditionEntry), 40));

// Two cases that differ in one basic condition and in their outcome, as places in the service's conditions.
struct VectorPair {
    std::uint32_t first = 0;
    std::uint32_t second = 0;
};

struct ModifiedCondition : HitRecord {
    bool proven = false;              // one of its pairs has been hit; from then on every test covers it
    std::uint32_t basicCondition = 0; // place of its (first) entry in the service's conditions
    std::vector<VectorPair> pairs;    // in the order found: that of their first cases
    // Places of the pairs in the order of their second cases; made for many pairs of a table, when first needed.
    std::unique_ptr<std::vector<std::uint32_t>> bySecondCase;
};

constexpr std::uint32_t expressionFrontier = 4294967295;

struct Composition {
    std::uint32_t firstCase = 0; // place of case 0 in the service's conditions; the others follow it
    std::uint32_t caseCount = 0;
    std::int16_t basicConditionCount = 0;
    bool casesInStep = true; // looking up the identifier of a case gives that case, not an earlier condition
    std::uint32_t frontier = 0; // leading cases with outcome true; expressionFrontier: `cases`
                                // is an expression and `outcomes` tells
    std::span<const std::uint32_t> basicConditionIds;  // in order; in the model's arena, like the next
    std::string_view cases;                            // table or expression
    std::vector<std::uint64_t> outcomes;               // bit c of the words: outcome of case c
    std::vector<ModifiedCondition> modifiedConditions; // in basic-condition order
};

// Descriptions and traces may jump from service to service: what every line touches stands in the first cache line,
// what hits touch behind it.
struct alignas(64) Service {
    const NameEntry* name = nullptr;
    std::uint32_t place = 0; // in the services of its file
    std::uint32_t file = 0;  // place of that in loadedDescriptions
    std::uint32_t firstLine = 4294967295;
    std::uint32_t lastLine = 0;
    CoverageCounters counts{};
    bool allCasesInStep = true; // those of its compositions
    bool touchedInTest = false; // stands in the list of services that resetTestCounts has to visit
    std::int32_t selectedPlace =
        -1; // owned by the selection: place among its services; -1 when it is not selected
    CoverageCounters testCovered{};
    CoverageCounters globalCovered{};
    std::optional<CoverageItem> entry;
    std::span<ExitEntry> exits; // these three look at the items of the file
    std::span<CallEntry> calls;
    std::span<BlockEntry> blocks;
    std::span<ConditionEntry> conditions; // in the model's arena, or looks at grownConditions
    std::vector<Composition> compositions;
    // While conditions are added, and for those that came in several pieces: what grows here leaves nothing behind,
    // and a long list stands on large pages.
    GrowingConditions grownConditions{&blockSource()};
    // First place of each condition identifier, while conditions do not come in ascending order of their
    // identifiers; none otherwise (see findCondition).
    std::unique_ptr<NumberMap<std::uint32_t, std::uint32_t>> conditionPlaces;
};

static_assert(sizeof(void*) + 4 * sizeof(std::uint32_t) + sizeof(CoverageCounters) <= alignof(Service),
              "the first cache line");

// Items of one kind by identifier: see item_index.h.
struct ItemIndex {
    std::pmr::vector<CoverageItem*> dense{&recordMemory()}; // null where there is no such item
    struct RareItems {
        NumberMap<std::uint32_t, CoverageItem*> sparse;
        NumberMap<std::uint32_t, std::vector<CoverageItem*>> repeated;
    };
    std::unique_ptr<RareItems> rare; // none when all identifiers are dense and different
};

// What is known of the hits of one kind: see hit_counting.h.
struct SeenHits {
    std::span<std::uint8_t> bits;   // by dense identifier: those of namespace seen
    std::span<std::uint32_t> aside; // 0, or 1 + the counts since the test's first hit, yet to be added
};

struct FileDescription {
    std::string fdcName; // empty on further sections of the same file and on placeholders
    std::uint32_t fileKey = 0;
    std::uint32_t checksum = 0;
    std::int32_t sourceTime = 0;
    std::uint16_t coverageTypes = 0;
    NameEntry* sourceName = nullptr;
    const NameEntry* sourceDirectory = nullptr;
    std::uint32_t procedureBranchCount = 0;
    std::uint32_t callCount = 0;
    std::uint32_t blockCount = 0;
    std::uint32_t conditionCount = 0;
    std::uint32_t place = 0; // in loadedDescriptions
    bool idsRepeat = false;  // items of a kind have one identifier; each hit moves the current service then
    std::array<SeenHits, itemKinds.size()> seenHits; // by kind; see there
    bool keySeenBefore = false; // an earlier description has its key, and another checksum
    // The next three are those of kept_hits, for the cleaned trace.
    bool placeholder = false;       // made for a traced file that nothing describes
    bool countOriented = false;     // of a placeholder: its traces carry counts
    bool otherChecksumSeen = false; // of a placeholder: its key is described with another checksum
    std::pmr::vector<Service> services{&recordMemory()}; // in order of first mention
    // Of all services; those of a service stand together.
    std::pmr::vector<ExitEntry> exits{&recordMemory()};
    std::pmr::vector<CallEntry> calls{&recordMemory()};
    std::pmr::vector<BlockEntry> blocks{&recordMemory()};
    const NameEntry* sourceComment = nullptr;
    std::array<const NameEntry*, 4> tokenStrings{};
    std::array<ItemIndex, 4> itemIndexes; // by kind; made by indexItems
};

using DescriptionList = std::vector<std::unique_ptr<FileDescription>>;

// All descriptions, in loading order, then the placeholders.
DescriptionList& loadedDescriptions();
// All coverage types that some description was instrumented for.
std::uint16_t typesOfAllDescriptions();
void addDescription(std::unique_ptr<FileDescription> description);
void freeAllDescriptions();

// The first description with this key and checksum, null when there is none. `otherChecksum`: a description
// with this key and another checksum stands before it. Forgets the current service. Expected constant time.
struct FoundDescription {
    FileDescription* description = nullptr;
    bool otherChecksum = false;
};
FoundDescription findDescription(std::uint32_t fileKey, std::uint32_t checksum);

// The coverage type of an item that findItem gave for a kind.
std::uint16_t typeOfItem(const Service& service, ItemKind kind, const CoverageItem& item);

// Whether a condition is the true one of two outcomes; the false one stands right behind it.
inline bool isTrueOutcome(const Service& service, const ConditionEntry& condition) {
    const bool isLast = &condition == &service.conditions.back();
    return condition.kind == ConditionKind::Outcome && !isLast && (&condition)[1].text == condition.text;
}
// The line that outputs show for a block: an implicit one stands where its statement ends.
inline std::uint32_t blockLine(const BlockEntry& block) {
    return block.kind == BlockKind::Implicit ? block.endLine : block.startLine;
}
// Calls visit(record, coverage type) for every item and modified condition of a service, in the order entry,
// exits, calls, blocks, conditions, modified conditions.
template <typename Visit>
void forEachItem(Service& service, Visit visit) {
    if (service.entry) {
        visit(*service.entry, type::procedures);
    }
    for (ExitEntry& exit : service.exits) {
        visit(exit, type::exits);
    }
    for (CallEntry& call : service.calls) {
        visit(call, type::calls);
    }
    for (BlockEntry& block : service.blocks) {
        visit(block, typeOfBlock(block.kind));
    }
    for (ConditionEntry& condition : service.conditions) {
        visit(condition, typeOfCondition(condition.kind));
    }
    for (Composition& composition : service.compositions) {
        for (ModifiedCondition& modified : composition.modifiedConditions) {
            visit(modified, type::modifiedConditions);
        }
    }
}

} // namespace veldacov
