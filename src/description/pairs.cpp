#include "description/pairs.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <numeric>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "description/condition_list.h"
#include "description/conditions.h"
#include "description/hit_counting.h"
#include "support/machine.h"

namespace veldacov {

namespace {

constexpr unsigned wordBits = 64;
constexpr std::uint32_t manyCases = 1000; // from here on the user is told that it takes time

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

// The search for the pairs of a case table: which true case and which false case differ in one position only, where
// both care? Bits answer for 64 positions at once: the exclusive or of two vectors has the positions where they differ,
// the masks take out those where one has an X, and a pair is what leaves a single bit. It also says for which basic
// condition, so that one pass finds the pairs of all conditions (docs/performance.md, "How cost grows").
//
//   a = TXF   value 1-0   care 101
//   b = FTF   value 010   care 111    (1-0 ^ 010) & 101 & 111 = 100: a pair of the first condition
//
// Any characters may stand in a table, and differ where they are not the same. Those other than X are numbered in the
// order met, and the bits of these numbers lie in as many planes; a table of T and F needs one plane.
//
// A table may be shorter than its cases say, and they may be billions: all cases behind its end look alike, so they
// share the last row, and what is found for it holds for each of them.
//
// What always holds: the pairs of a condition are found in the order of their true cases, and among these of their
// false cases. Texts are printed in this order, and PairHits searches by it.
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

// True cases times false cases, a few operations each: the way that all tables can go.
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

// The same for two characters and one word, the usual case. Looks at the words themselves: pairs found meanwhile leave
// them where they are.
struct OnlyDifferenceInWord {
    const std::uint64_t* values;
    const std::uint64_t* cares;

    std::optional<std::size_t> operator()(std::size_t a, std::size_t b) const {
        const std::uint64_t differences = (values[a] ^ values[b]) & cares[a] & cares[b];
        return hasSingleBit(differences)
                   ? std::optional(static_cast<std::size_t>(std::countr_zero(differences)))
                   : std::nullopt;
    }
};

// Without don't-cares, and with two characters and one word, the partners of a case are known: the false
// cases whose vector has one bit the other way. So a table of all vectors costs look-ups and no comparisons.
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
                         OnlyDifferenceInWord{masks.values.data(), masks.cares.data()});
    } else {
        pairByComparison(composition, masks, places,
                         [&](std::size_t a, std::size_t b) { return onlyDifference(masks, a, b); });
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
        : service_(service), composition_(composition) {}

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
        return caseNamedBy(service_, composition_, place);
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

} // namespace

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

} // namespace veldacov
