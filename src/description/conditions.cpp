#include "description/conditions.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <iterator>
#include <numeric>
#include <optional>
#include <span>
#include <utility>

#include "description/tokens.h"
#include "support/machine.h"

namespace veldacov {

namespace {

constexpr unsigned wordBits = 64;
constexpr std::uint32_t manyCases = 1000; // from here on the user is told that it takes time

enum class NodeArity : std::uint8_t { Condition, Unary, Binary, Invalid };

NodeArity arityOf(char letter) {
    switch (letter) {
    case '.': return NodeArity::Condition;
    case 'N': return NodeArity::Unary;
    case 'A':
    case 'a':
    case 'O':
    case 'o':
    case 'X': return NodeArity::Binary;
    default: return NodeArity::Invalid;
    }
}

// The complete expression at the start of a text; what follows it is ignored.
struct Expression {
    std::string_view nodes;
    std::uint32_t conditionCount = 0;
};

Expression completeExpression(std::string_view text) {
    std::size_t operandsMissing = 1;
    std::size_t length = 0;
    std::uint32_t conditionCount = 0;
    while (operandsMissing > 0) {
        const NodeArity arity = length < text.size() ? arityOf(text[length]) : NodeArity::Invalid;
        switch (arity) {
        case NodeArity::Condition:
            --operandsMissing;
            ++conditionCount;
            break;
        case NodeArity::Unary: break;
        case NodeArity::Binary: ++operandsMissing; break;
        case NodeArity::Invalid:
            internalError(translate("fdcL-Assertion", "Bad expression in CalculVector()"));
        }
        ++length;
    }
    return {text.substr(0, length), conditionCount};
}

// The values of basic condition `condition` in the 64 cases of a word: bit `condition` of each case number.
std::uint64_t conditionWord(std::uint32_t condition, std::uint64_t firstCase) {
    constexpr std::array<std::uint64_t, 6> alternating = {0xAAAAAAAAAAAAAAAA, 0xCCCCCCCCCCCCCCCC,
                                                          0xF0F0F0F0F0F0F0F0, 0xFF00FF00FF00FF00,
                                                          0xFFFF0000FFFF0000, 0xFFFFFFFF00000000};
    if (condition < alternating.size()) {
        return alternating[condition];
    }
    return condition < 32 && (firstCase >> condition & 1U) != 0 ? ~std::uint64_t{0} : 0;
}

std::uint64_t combined(char letter, std::uint64_t left, std::uint64_t right) {
    switch (letter) {
    case 'A':
    case 'a': return left & right;
    case 'O':
    case 'o': return left | right;
    default: return left ^ right;
    }
}

// Evaluates the expression for 64 cases at once, from its last node to its first, so that operands are on the
// stack before their operator. The stack is the caller's to save its allocation.
std::uint64_t outcomeWord(const Expression& expression, std::uint64_t firstCase,
                          std::vector<std::uint64_t>& stack) {
    stack.clear();
    std::uint32_t condition = expression.conditionCount;
    for (auto node = expression.nodes.rbegin(); node != expression.nodes.rend(); ++node) {
        if (*node == '.') {
            stack.push_back(conditionWord(--condition, firstCase));
        } else if (*node == 'N') {
            stack.back() = ~stack.back();
        } else {
            const std::uint64_t left = stack.back();
            stack.pop_back();
            stack.back() = combined(*node, left, stack.back());
        }
    }
    return stack.back();
}

std::uint32_t idOfCase(const Service& service, const Composition& composition, std::uint64_t caseNumber) {
    return service.conditions[composition.firstCase].id + static_cast<std::uint32_t>(caseNumber);
}

// Finds the entries of cases by identifier, as pairs name them.
class CasePlaces {
public:
    CasePlaces(const Service& service, const Composition& composition)
        : service_(service), composition_(composition), firstCase_(composition.firstCase),
          inStep_(composition.casesInStep) {}

    [[nodiscard]] std::uint32_t operator()(std::uint64_t caseNumber) const {
        if (inStep_) {
            return firstCase_ + static_cast<std::uint32_t>(caseNumber);
        }
        const auto place = findCondition(service_, idOfCase(service_, composition_, caseNumber));
        if (!place) {
            internalError(translate("fdcL-Assertion", "Cannot find condition in current procedure"));
        }
        return *place;
    }

private:
    const Service& service_;
    const Composition& composition_;
    std::uint32_t firstCase_;
    bool inStep_;
};

// Places run in step with case numbers unless an earlier condition of the service has the identifier of a case.
bool areCasesInStep(const Service& service, const Composition& composition) {
    for (std::uint32_t i = 0; service.conditionPlaces != nullptr && i < composition.caseCount; ++i) {
        if (findCondition(service, idOfCase(service, composition, i)) != composition.firstCase + i) {
            return false;
        }
    }
    return true;
}

void addPair(ModifiedCondition* modified, std::uint32_t first, std::uint32_t second) {
    if (modified == nullptr) {
        internalError(translate("fdcL-Assertion", "Cannot add a couple of vectors"));
    }
    modified->pairs.push_back({first, second});
}

// The cases of a word that have bit j clear and another outcome than the case with bit j set. The partner is
// found in the same word for low bits, in a later word for others.
std::uint64_t casesWithOtherOutcome(const std::vector<std::uint64_t>& outcomes, std::size_t word,
                                    std::uint32_t j) {
    const std::uint64_t bit = std::uint64_t{1} << j;
    if (bit < wordBits) {
        return (outcomes[word] ^ outcomes[word] >> bit) & ~conditionWord(j, 0);
    }
    const std::size_t partner = word + bit / wordBits;
    const bool bitIsClear = (word * wordBits & bit) == 0;
    return bitIsClear && partner < outcomes.size() ? outcomes[word] ^ outcomes[partner] : 0;
}

// Cases whose numbers differ in bit j only differ in basic condition j only.
void pairExpressionCases(Composition& composition, const CasePlaces& places) {
    for (std::uint32_t j = 0; j < composition.modifiedConditions.size() && j < 32; ++j) {
        const std::uint64_t bit = std::uint64_t{1} << j;
        for (std::size_t word = 0; word < composition.outcomes.size(); ++word) {
            std::uint64_t candidates = casesWithOtherOutcome(composition.outcomes, word, j);
            for (; candidates != 0; candidates &= candidates - 1) {
                const std::uint64_t c =
                    word * wordBits + static_cast<std::uint64_t>(std::countr_zero(candidates));
                if (c + bit <
                    composition.caseCount) { // fewer cases than combinations: not every case has a partner
                    addPair(&composition.modifiedConditions[j], places(c), places(c + bit));
                }
            }
        }
    }
}

// The vectors of a case table as bit masks. The characters other than X are numbered in the order met, and
// the bits of these numbers lie in as many planes; a table of T and F needs one plane. All cases behind the end
// of a table that is too short look alike, and share the last row.
struct CaseMasks {
    std::uint32_t rows = 0;
    std::size_t words = 0;             // of 64 basic conditions each
    std::size_t planes = 0;            // of `words` words each
    std::vector<std::uint64_t> values; // by row, plane, word
    std::vector<std::uint64_t> cares;  // by row, word: a bit where the character is not X
    bool anyDontCare = false;
};

char tableCharacter(const Composition& composition, std::size_t at) {
    return at < composition.cases.size() ? composition.cases[at] : '\0';
}

CaseMasks masksOf(const Composition& composition) {
    constexpr std::size_t unnumbered = 256;
    const auto width = static_cast<std::size_t>(composition.basicConditionCount);
    const std::size_t rowsWithText = (composition.cases.size() + width - 1) / width;
    const std::size_t rows = std::min<std::size_t>(composition.caseCount, rowsWithText + 1);
    std::array<std::size_t, 256> numbers{};
    numbers.fill(unnumbered);
    std::size_t used = 0;
    for (std::size_t at = 0; at < width * rows; ++at) {
        const char character = tableCharacter(composition, at);
        std::size_t& number = numbers[static_cast<unsigned char>(character)];
        if (character != 'X' && number == unnumbered) {
            number = used++;
        }
    }

    CaseMasks masks;
    masks.rows = static_cast<std::uint32_t>(rows);
    masks.words = (width + wordBits - 1) / wordBits;
    masks.planes = used == 0 ? 0 : static_cast<std::size_t>(std::bit_width(used - 1));
    masks.values.resize(rows * masks.planes * masks.words);
    masks.cares.resize(rows * masks.words);
    for (std::size_t at = 0; at < width * rows; ++at) {
        const std::size_t row = at / width;
        const std::size_t word = at % width / wordBits;
        const std::uint64_t bit = std::uint64_t{1} << (at % width % wordBits);
        const char character = tableCharacter(composition, at);
        if (character == 'X') {
            masks.anyDontCare = true;
            continue;
        }
        masks.cares[row * masks.words + word] |= bit;
        const std::size_t number = numbers[static_cast<unsigned char>(character)];
        for (std::size_t plane = 0; plane < masks.planes; ++plane) {
            if ((number >> plane & 1U) != 0) {
                masks.values[(row * masks.planes + plane) * masks.words + word] |= bit;
            }
        }
    }
    return masks;
}

// Without the population count, which the oldest processors do not have and compilers therefore call.
bool hasSingleBit(std::uint64_t word) {
    return word != 0 && (word & (word - 1)) == 0;
}

// The only position where two rows differ and both care; none when there is no such position or several.
std::optional<std::size_t> onlyDifference(const CaseMasks& masks, std::size_t a, std::size_t b) {
    std::optional<std::size_t> position;
    for (std::size_t word = 0; word < masks.words; ++word) {
        std::uint64_t differences = 0;
        for (std::size_t plane = 0; plane < masks.planes; ++plane) {
            differences |= masks.values[(a * masks.planes + plane) * masks.words + word] ^
                           masks.values[(b * masks.planes + plane) * masks.words + word];
        }
        differences &= masks.cares[a * masks.words + word] & masks.cares[b * masks.words + word];
        if (differences == 0) {
            continue;
        }
        if (position || !hasSingleBit(differences)) {
            return std::nullopt;
        }
        position = word * wordBits + static_cast<std::size_t>(std::countr_zero(differences));
    }
    return position;
}

// One pass over the pairs finds those of all basic conditions.
template <typename OnlyDifference>
void pairByComparison(Composition& composition, const CaseMasks& masks, const CasePlaces& places,
                      OnlyDifference onlyDifferenceOf) {
    const std::uint32_t trueCases = composition.frontier;
    const auto pairUp = [&](std::uint32_t a, std::uint32_t row, std::uint32_t firstCase,
                            std::uint32_t endCase) {
        if (const auto position = onlyDifferenceOf(a, row)) {
            for (std::uint32_t b = firstCase; b < endCase; ++b) {
                addPair(&composition.modifiedConditions[*position], places(a), places(b));
            }
        }
    };
    for (std::uint32_t a = 0; a < std::min(trueCases, masks.rows); ++a) {
        for (std::uint32_t b = trueCases; b < masks.rows; ++b) {
            pairUp(a, b, b, b + 1);
        }
        pairUp(a, masks.rows - 1, std::max(trueCases, masks.rows), composition.caseCount);
    }
}

// The same for two characters and one word, the usual case.
std::optional<std::size_t> onlyDifferenceInWord(const CaseMasks& masks, std::size_t a, std::size_t b) {
    const std::uint64_t differences = (masks.values[a] ^ masks.values[b]) & masks.cares[a] & masks.cares[b];
    return hasSingleBit(differences) ? std::optional(static_cast<std::size_t>(std::countr_zero(differences)))
                                     : std::nullopt;
}

// Without don't-cares, and with two characters and one word, the partners of a case are known: the false
// cases whose vector has one bit the other way.
void pairByLookup(Composition& composition, const CaseMasks& masks, const CasePlaces& places) {
    const std::uint32_t trueCases = composition.frontier;
    struct FalseCase {
        std::uint64_t vector;
        std::uint32_t number;
    };
    std::vector<FalseCase> falseCases;
    falseCases.reserve(composition.caseCount - trueCases);
    for (std::uint32_t b = trueCases; b < composition.caseCount; ++b) {
        falseCases.push_back({masks.values[b], b});
    }
    std::stable_sort(falseCases.begin(), falseCases.end(), [](const FalseCase& left, const FalseCase& right) {
        return left.vector < right.vector;
    });
    for (std::uint32_t a = 0; a < trueCases; ++a) {
        for (std::size_t j = 0; j < composition.modifiedConditions.size(); ++j) {
            const std::uint64_t wanted = masks.values[a] ^ (std::uint64_t{1} << j);
            auto partner = std::lower_bound(
                falseCases.begin(), falseCases.end(), wanted,
                [](const FalseCase& candidate, std::uint64_t vector) { return candidate.vector < vector; });
            for (; partner != falseCases.end() && partner->vector == wanted; ++partner) {
                addPair(&composition.modifiedConditions[j], places(a), places(partner->number));
            }
        }
    }
}

void pairTableCases(Composition& composition, const CasePlaces& places) {
    if (composition.frontier == 0 || composition.frontier >= composition.caseCount) {
        return; // no pair without a true and a false case
    }
    const CaseMasks masks = masksOf(composition);
    if (masks.planes == 0) {
        return; // one character besides X: no two cases differ
    }
    const bool isSimple = masks.planes == 1 && masks.words == 1;
    if (isSimple && !masks.anyDontCare && masks.rows == composition.caseCount) {
        pairByLookup(composition, masks, places);
    } else if (isSimple) {
        pairByComparison(composition, masks, places,
                         [&](std::size_t a, std::size_t b) { return onlyDifferenceInWord(masks, a, b); });
    } else {
        pairByComparison(composition, masks, places,
                         [&](std::size_t a, std::size_t b) { return onlyDifference(masks, a, b); });
    }
}

std::uint32_t requiredCondition(const Service& service, std::uint32_t id, std::string_view fileName) {
    const std::optional<std::uint32_t> place = findCondition(service, id);
    if (!place) {
        fatalError(
            filled(translate("fdcL-Error", "Bad composition in file %1", "%1 is a file name"), {fileName}));
    }
    return *place;
}

void appendCases(Service& service, Composition& composition, std::uint32_t id, std::uint32_t startLine,
                 std::uint32_t endLine) {
    composition.firstCase = static_cast<std::uint32_t>(service.conditions.size());
    reserveConditions(service, composition.caseCount);
    ConditionEntry entry;
    entry.kind = ConditionKind::Case;
    entry.service = service.place;
    entry.startLine = startLine;
    entry.endLine = endLine;
    std::array<ConditionEntry, 32> entries;
    std::fill_n(entries.begin(), std::min<std::size_t>(composition.caseCount, entries.size()), entry);
    for (std::uint32_t i = 0; i < composition.caseCount;) {
        const auto count = std::min<std::uint32_t>(composition.caseCount - i, entries.size());
        for (ConditionEntry& next : std::span(entries).first(count)) {
            next.id = id + i++; // wraps as identifiers do
        }
        appendConditions(service, std::span(entries).first(count));
    }
}

// Which pairs of a composition have been hit.
//
// A test may hit one case of a million for the first time, and the next test another one. So the pairs are not gone
// through again: a first hit can complete the pairs of its case only, and these are looked up. Pairs stand in the
// order of their first cases. Those of an expression stand in the order of their second cases, too; for a table that
// order is made when it is first needed. Where the pairs are few beside the cases hit, all are looked at.
//
// What always holds: a pair names the entries that have the identifiers of its cases, so that the identifier of an
// entry tells the case number, also where an earlier condition of the service has that identifier.
class PairHits {
public:
    PairHits(const Service& service, const Composition& composition)
        : service_(service), composition_(composition), firstId_(idOfCase(service, composition, 0)) {}

    // Whether one of the pairs has been hit, given the cases first hit since this was asked last.
    [[nodiscard]] bool anyIsHit(ModifiedCondition& modified, std::span<const std::uint32_t> cases) const {
        constexpr std::size_t pairsPerLookUp = 32; // that cost as much as a look-up
        if (modified.pairs.size() / pairsPerLookUp <= cases.size()) {
            return std::any_of(modified.pairs.begin(), modified.pairs.end(),
                               [this](const VectorPair& pair) { return isHit(pair); });
        }
        return std::any_of(cases.begin(), cases.end(), [&](std::uint32_t caseNumber) {
            return anyIsHitWithFirst(modified, caseNumber) || anyIsHitWithSecond(modified, caseNumber);
        });
    }

private:
    [[nodiscard]] std::uint32_t caseOf(std::uint32_t place) const {
        return service_.conditions[place].id - firstId_; // wraps as identifiers do
    }
    [[nodiscard]] bool isHit(const VectorPair& pair) const {
        return ((service_.conditions[pair.first].flags & service_.conditions[pair.second].flags) & everHit) !=
               0;
    }
    [[nodiscard]] bool isTable() const { return composition_.frontier != expressionFrontier; }

    // Whether an element for the case satisfies, of elements in the order of their cases.
    template <typename Element, typename CaseOf, typename Satisfies>
    static bool anyOfCase(const std::vector<Element>& elements, std::uint32_t caseNumber,
                          CaseOf caseOfElement, Satisfies satisfies) {
        auto element = std::partition_point(elements.begin(), elements.end(), [&](const Element& candidate) {
            return caseOfElement(candidate) < caseNumber;
        });
        for (; element != elements.end() && caseOfElement(*element) == caseNumber; ++element) {
            if (satisfies(*element)) {
                return true;
            }
        }
        return false;
    }

    [[nodiscard]] bool anyIsHitWithFirst(const ModifiedCondition& modified, std::uint32_t caseNumber) const {
        return anyOfCase(
            modified.pairs, caseNumber, [this](const VectorPair& pair) { return caseOf(pair.first); },
            [this](const VectorPair& pair) { return isHit(pair); });
    }

    [[nodiscard]] bool anyIsHitWithSecond(ModifiedCondition& modified, std::uint32_t caseNumber) const {
        if (!isTable()) {
            return anyOfCase(
                modified.pairs, caseNumber, [this](const VectorPair& pair) { return caseOf(pair.second); },
                [this](const VectorPair& pair) { return isHit(pair); });
        }
        if (caseNumber < composition_.frontier) {
            return false; // the first cases of a table's pairs are true, the second ones false
        }
        return anyOfCase(
            inOrderOfSecondCases(modified), caseNumber,
            [&](std::uint32_t at) { return caseOf(modified.pairs[at].second); },
            [&](std::uint32_t at) { return isHit(modified.pairs[at]); });
    }

    [[nodiscard]] const std::vector<std::uint32_t>& inOrderOfSecondCases(ModifiedCondition& modified) const {
        if (modified.bySecondCase == nullptr) {
            auto places = std::make_unique<std::vector<std::uint32_t>>(modified.pairs.size());
            std::iota(places->begin(), places->end(), 0U);
            std::sort(places->begin(), places->end(), [&](std::uint32_t left, std::uint32_t right) {
                return caseOf(modified.pairs[left].second) < caseOf(modified.pairs[right].second);
            });
            modified.bySecondCase = std::move(places);
        }
        return *modified.bySecondCase;
    }

    const Service& service_;
    const Composition& composition_;
    std::uint32_t firstId_;
};

// Finds the modified conditions of a composition that first hits of some cases have brought to be covered.
void proveConditions(Service& service, Composition& composition, std::span<const std::uint32_t> cases) {
    const PairHits pairHits(service, composition);
    for (ModifiedCondition& modified : composition.modifiedConditions) {
        if (!cases.empty() && !modified.proven && pairHits.anyIsHit(modified, cases)) {
            modified.proven = true;
            provenConditions().all.push_back({&service, &modified});
        }
    }
}

// First hits of one service, in the order of their places.
using FirstHits = std::span<const FirstHit>;

// Usually the pairs that name a case are those of the composition that it belongs to, and nothing names a basic
// condition.
void proveConditionsInStep(FirstHits hits) {
    Service& service = *hits.front().service;
    std::vector<Composition>& compositions = service.compositions;
    const auto isBefore = [](const FirstHit& hit, std::uint32_t place) { return hit.place < place; };
    while (!hits.empty()) {
        auto composition = std::upper_bound(compositions.begin(), compositions.end(), hits.front().place,
                                            [](std::uint32_t place, const Composition& candidate) {
                                                return place < candidate.firstCase + candidate.caseCount;
                                            });
        if (composition == compositions.end()) {
            return;
        }
        const auto first = std::lower_bound(hits.begin(), hits.end(), composition->firstCase, isBefore);
        const auto last =
            std::lower_bound(first, hits.end(), composition->firstCase + composition->caseCount, isBefore);
        std::vector<std::uint32_t> cases;
        std::transform(first, last, std::back_inserter(cases),
                       [&](const FirstHit& hit) { return hit.place - composition->firstCase; });
        proveConditions(service, *composition, cases);
        hits = FirstHits(last, hits.end());
    }
}

// Where identifiers of cases are repeated, the pairs of several compositions may name one entry.
void proveConditionsByIdentifier(Service& service, FirstHits hits) {
    std::vector<std::uint32_t> ids;
    std::transform(hits.begin(), hits.end(), std::back_inserter(ids),
                   [&](const FirstHit& hit) { return service.conditions[hit.place].id; });
    std::sort(ids.begin(), ids.end());
    for (Composition& composition : service.compositions) {
        const std::uint32_t firstId = idOfCase(service, composition, 0);
        std::vector<std::uint32_t> cases;
        // Identifiers wrap: those of the cases may go on from 0.
        for (auto id = std::lower_bound(ids.begin(), ids.end(), firstId);
             id != ids.end() && *id - firstId < composition.caseCount; ++id) {
            cases.push_back(*id - firstId);
        }
        for (auto id = ids.begin(); id != ids.end() && *id < firstId && *id - firstId < composition.caseCount;
             ++id) {
            cases.push_back(*id - firstId);
        }
        proveConditions(service, composition, cases);
    }
}

void proveConditions(FirstHits hits) {
    Service& service = *hits.front().service;
    if (service.allCasesInStep) {
        proveConditionsInStep(hits);
    } else {
        proveConditionsByIdentifier(service, hits);
    }
}

// The vector of a case of a table ends early where the table does.
std::string_view tableVector(const Composition& composition, std::uint32_t caseNumber) {
    const auto width = static_cast<std::size_t>(composition.basicConditionCount);
    const std::size_t start = std::size_t{caseNumber} * width;
    return start < composition.cases.size() ? composition.cases.substr(start, width) : std::string_view();
}

void appendExpressionCase(std::string& text, const Composition& composition, std::uint32_t caseNumber) {
    for (std::uint32_t j = 0; j < static_cast<std::uint32_t>(composition.basicConditionCount); ++j) {
        text += j < 32 && (caseNumber >> j & 1U) != 0 ? 'T' : 'F';
    }
    const bool outcome = (composition.outcomes[caseNumber / wordBits] >> (caseNumber % wordBits) & 1U) != 0;
    text += outcome ? "=T" : "=F";
}

// A table that is too short ends the text where its characters end.
void appendTableCase(std::string& text, const Composition& composition, std::uint32_t caseNumber) {
    const std::string_view vector = tableVector(composition, caseNumber);
    text += vector;
    if (vector.size() == static_cast<std::size_t>(composition.basicConditionCount)) {
        text += caseNumber < composition.frontier ? "=T" : "=F";
    }
}

void appendConditionText(std::string& text, const Service& service, std::uint32_t place) {
    const ConditionEntry& entry = service.conditions[place];
    if (entry.kind != ConditionKind::Case) {
        text += entry.text;
        return;
    }
    const auto behind = std::upper_bound(
        service.compositions.begin(), service.compositions.end(), place,
        [](std::uint32_t wanted, const Composition& composition) { return wanted < composition.firstCase; });
    const Composition& composition = *std::prev(behind);
    const bool isTable = composition.frontier != expressionFrontier;
    (isTable ? appendTableCase : appendExpressionCase)(text, composition, place - composition.firstCase);
}

} // namespace

void readComposition(Line& line, FileDescription& description, Service* service, std::uint32_t id,
                     std::string_view fileName) {
    const auto readNumber = [&] { return readDecimalValue(nextToken(line), fileName); };
    Composition composition;
    composition.basicConditionCount = static_cast<std::int16_t>(readNumber());
    if (composition.basicConditionCount < 1) {
        fatalError(filled(translate("fdcL-Error", "Bad number of basic condition in a composition in file %1",
                                    "%1 is a file name"),
                          {fileName}));
    }
    const auto width = static_cast<std::size_t>(composition.basicConditionCount);
    std::vector<std::uint32_t> basicConditionIds;
    for (std::size_t i = 0; i < width; ++i) {
        basicConditionIds.push_back(readNumber());
    }
    composition.basicConditionIds = recordMemory().keep<std::uint32_t>(basicConditionIds);
    composition.caseCount = readNumber();
    if (composition.caseCount == 0) {
        fatalError(filled(
            translate("fdcL-Error", "Bad number of cases in a composition in file %1", "%1 is a file name"),
            {fileName}));
    }
    const std::optional<std::string_view> cases = nextToken(line);
    if (!cases) {
        fatalError(filled(translate("fdcL-Error", "Bad cases or expression in a composition in file %1",
                                    "%1 is a file name"),
                          {fileName}));
    }
    const std::optional<std::string_view> frontier = nextToken(line);
    composition.frontier = frontier ? readDecimalValue(frontier, fileName) : expressionFrontier;
    if (frontier && composition.frontier == expressionFrontier) {
        fatalError(
            filled(translate("fdcL-Error", "Bad frontier for a composition in file %1", "%1 is a file name"),
                   {fileName}));
    }
    if (service == nullptr) {
        fatalError(
            filled(translate("fdcL-Error", "Bad composition in file %1", "%1 is a file name"), {fileName}));
    }
    const std::uint32_t first = requiredCondition(*service, composition.basicConditionIds.front(), fileName);
    const std::uint32_t last = requiredCondition(*service, composition.basicConditionIds.back(), fileName);

    const std::size_t tableSize = frontier ? width * composition.caseCount : cases->size();
    composition.cases = recordMemory().keep(cases->substr(0, tableSize));
    if (!frontier) {
        composition.outcomes = CalculVector(composition.cases, composition.caseCount);
    }
    appendCases(*service, composition, id, service->conditions[first].startLine,
                service->conditions[last].endLine);
    service->counts[counter::compoundConditions] += composition.caseCount;
    description.conditionCount += composition.caseCount;
    computeModifiedConditions(service, &service->compositions.emplace_back(std::move(composition)));
    service->counts[counter::modifiedConditions] += static_cast<std::uint32_t>(width);
}

void computeModifiedConditions(Service* service, Composition* composition) {
    if (service == nullptr || composition == nullptr) {
        internalError(translate("fdcL-Error", "Cannot calculate modified conditions without composition"));
    }
    if (composition->caseCount > manyCases) {
        infoMessage(
            filled(translate("fdcL-Info",
                             "Computing modified conditions from %1compound conditions, it can take a few "
                             "minutes ...",
                             "%1 is a number"),
                   {std::to_string(composition->caseCount)}));
    }
    composition->modifiedConditions.resize(composition->basicConditionIds.size());
    for (std::size_t j = composition->basicConditionIds.size(); j-- > 0;) {
        const std::optional<std::uint32_t> place = findCondition(*service, composition->basicConditionIds[j]);
        if (!place) {
            internalError(translate("fdcL-Assertion", "Cannot find condition in current procedure"));
        }
        composition->modifiedConditions[j].basicCondition = *place;
    }
    composition->casesInStep = areCasesInStep(*service, *composition);
    service->allCasesInStep = service->allCasesInStep && composition->casesInStep;
    const CasePlaces places(*service, *composition);
    if (composition->frontier == expressionFrontier) {
        pairExpressionCases(*composition, places);
    } else {
        pairTableCases(*composition, places);
    }
}

std::vector<std::uint64_t> CalculVector(std::string_view expression, std::uint32_t caseCount) {
    const Expression complete = completeExpression(expression);
    std::vector<std::uint64_t> outcomes;
    std::vector<std::uint64_t> stack;
    outcomes.reserve(caseCount / wordBits + 1);
    for (std::uint64_t firstCase = 0; firstCase < caseCount; firstCase += wordBits) {
        outcomes.push_back(outcomeWord(complete, firstCase, stack));
    }
    return outcomes;
}

void computeModifiedConditionHits() {
    std::vector<FirstHit> hits = takeFirstHitsOfConditions();
    std::sort(hits.begin(), hits.end(), [](const FirstHit& left, const FirstHit& right) {
        return std::pair(left.service, left.place) < std::pair(right.service, right.place);
    });
    for (auto first = hits.cbegin(); first != hits.cend();) {
        const auto last = std::find_if(first, hits.cend(),
                                       [&](const FirstHit& hit) { return hit.service != first->service; });
        proveConditions(FirstHits(first, last));
        first = last;
    }
    ProvenConditions& proven = provenConditions();
    for (; proven.countedInTest < proven.all.size(); ++proven.countedInTest) {
        const ProvenCondition& next = proven.all[proven.countedInTest];
        countHit(*next.service, *next.condition, type::modifiedConditions, 1, Counting::Replace);
    }
}

std::string conditionText(const Service& service, std::uint32_t place) {
    std::string text;
    appendConditionText(text, service, place);
    return text;
}

std::string_view outcomeText(const Service& service, const ConditionEntry& condition) {
    if (condition.kind != ConditionKind::Outcome) {
        return "";
    }
    const bool isLast = &condition == &service.conditions.back();
    return !isLast && (&condition)[1].text == condition.text ? "True" : "False";
}

void pairsText(const Service& service, const Composition& composition, std::size_t place,
               const std::function<void(std::string_view)>& put) {
    std::string text = "#" + std::to_string(place + 1) + " (";
    for (const VectorPair& pair : composition.modifiedConditions[place].pairs) {
        appendConditionText(text, service, pair.first);
        text += '/';
        appendConditionText(text, service, pair.second);
        text += ')';
        put(text);
        text = ", (";
    }
}

} // namespace veldacov
