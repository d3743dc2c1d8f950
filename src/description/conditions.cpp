#include "description/conditions.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <span>
#include <utility>

#include <QtGlobal>

#include "description/condition_list.h"
#include "description/pairs.h"
#include "description/tokens.h"
#include "support/files.h"
#include "support/machine.h"

namespace veldacov {

namespace {

constexpr unsigned wordBits = 64;

// The fatal errors of a composition, in the order in which its line is read. %1 is the file.
namespace fault {
constexpr TranslatableText basicConditionCount = QT_TRANSLATE_NOOP3(
    "fdcL-Error", "Bad number of basic condition in a composition in file %1", "%1 is a file name");
constexpr TranslatableText caseCount =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Bad number of cases in a composition in file %1", "%1 is a file name");
constexpr TranslatableText cases = QT_TRANSLATE_NOOP3(
    "fdcL-Error", "Bad cases or expression in a composition in file %1", "%1 is a file name");
constexpr TranslatableText frontier =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Bad frontier for a composition in file %1", "%1 is a file name");
constexpr TranslatableText composition =
    QT_TRANSLATE_NOOP3("fdcL-Error", "Bad composition in file %1", "%1 is a file name");
} // namespace fault

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

// Expressions are evaluated for 64 cases at a time. Case k gives condition j the value of bit j of k, so the values of
// a condition in 64 neighbouring cases are known in advance, one bit for each case, and one operation on words does for
// 64 cases what the expression says once:
//
//   case          7 6 5 4 3 2 1 0
//   condition 0   1 0 1 0 1 0 1 0
//   condition 1   1 1 0 0 1 1 0 0
//   A..           1 0 0 0 1 0 0 0
//
// From condition 6 on, a condition has one value in the whole word. Cases behind the last one are evaluated, too, and
// nobody looks at them. (docs/performance.md, "How cost grows".)

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

void require(bool holds, const TranslatableText& what, std::string_view fileName) {
    if (!holds) {
        fatalError(filled(translate("fdcL-Error", what), {fileName}));
    }
}

// The fields of a CC line behind its identifier; nothing of them has been looked up.
struct CompositionLine {
    std::int16_t basicConditionCount = 0; // 1 or more; what does not fit wraps
    std::vector<std::uint32_t> basicConditionIds;
    std::uint32_t caseCount = 0;           // 1 or more
    std::string_view cases;                // lies in the line, like an expression
    std::optional<std::uint32_t> frontier; // none for an expression
};

CompositionLine readCompositionLine(Line& line, std::string_view fileName) {
    const auto readNumber = [&] { return readDecimalValue(nextToken(line), fileName); };
    CompositionLine read;
    read.basicConditionCount = static_cast<std::int16_t>(readNumber());
    require(read.basicConditionCount >= 1, fault::basicConditionCount, fileName);
    for (std::int16_t i = 0; i < read.basicConditionCount; ++i) {
        read.basicConditionIds.push_back(readNumber());
    }
    read.caseCount = readNumber();
    require(read.caseCount != 0, fault::caseCount, fileName);
    const std::optional<std::string_view> cases = nextToken(line);
    require(cases.has_value(), fault::cases, fileName);
    read.cases = *cases;
    if (const std::optional<std::string_view> frontier = nextToken(line)) {
        read.frontier = readDecimalValue(frontier, fileName);
        require(read.frontier != expressionFrontier, fault::frontier, fileName);
    }
    return read;
}

// What the line says, without cases in the service.
Composition compositionOf(const CompositionLine& read) {
    Composition composition;
    composition.basicConditionCount = read.basicConditionCount;
    composition.basicConditionIds = recordMemory().keep<std::uint32_t>(read.basicConditionIds);
    composition.caseCount = read.caseCount;
    composition.frontier = read.frontier.value_or(expressionFrontier);
    const std::size_t tableSize = read.basicConditionIds.size() * read.caseCount;
    composition.cases = recordMemory().keep(read.frontier ? read.cases.substr(0, tableSize) : read.cases);
    if (!read.frontier) {
        composition.outcomes = CalculVector(composition.cases, composition.caseCount);
    }
    return composition;
}

const ConditionEntry& requiredCondition(const Service& service, std::uint32_t id, std::string_view fileName) {
    const std::optional<std::uint32_t> place = findCondition(service, id);
    require(place.has_value(), fault::composition, fileName);
    return service.conditions[*place];
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

// The vector of a case of a table ends early where the table does.
std::string_view tableVector(const Composition& composition, std::uint32_t caseNumber) {
    const auto width = static_cast<std::size_t>(composition.basicConditionCount);
    const std::size_t start = std::size_t{caseNumber} * width;
    return start < composition.cases.size() ? composition.cases.substr(start, width) : std::string_view();
}

bool isTable(const Composition& composition) {
    return composition.frontier != expressionFrontier;
}

void appendCaseValues(std::string& text, const Composition& composition, std::uint32_t caseNumber) {
    if (isTable(composition)) {
        text += tableVector(composition, caseNumber);
        return;
    }
    for (std::uint32_t j = 0; j < static_cast<std::uint32_t>(composition.basicConditionCount); ++j) {
        text += j < 32 && (caseNumber >> j & 1U) != 0 ? 'T' : 'F';
    }
}

// A table that is too short ends the text where its characters end.
void appendCase(std::string& text, const Composition& composition, std::uint32_t caseNumber) {
    const std::size_t start = text.size();
    appendCaseValues(text, composition, caseNumber);
    if (text.size() - start == static_cast<std::size_t>(composition.basicConditionCount)) {
        text += caseOutcome(composition, caseNumber) ? "=T" : "=F";
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
    appendCase(text, composition, place - composition.firstCase);
}

} // namespace

std::uint64_t conditionWord(std::uint32_t condition, std::uint64_t firstCase) {
    constexpr std::array<std::uint64_t, 6> alternating = {0xAAAAAAAAAAAAAAAA, 0xCCCCCCCCCCCCCCCC,
                                                          0xF0F0F0F0F0F0F0F0, 0xFF00FF00FF00FF00,
                                                          0xFFFF0000FFFF0000, 0xFFFFFFFF00000000};
    if (condition < alternating.size()) {
        return alternating[condition];
    }
    return condition < 32 && (firstCase >> condition & 1U) != 0 ? ~std::uint64_t{0} : 0;
}

void readComposition(Line& line, FileDescription& description, Service* service, std::uint32_t id,
                     std::string_view fileName) {
    const CompositionLine read = readCompositionLine(line, fileName);
    require(service != nullptr, fault::composition, fileName);
    const ConditionEntry first = requiredCondition(*service, read.basicConditionIds.front(), fileName);
    const ConditionEntry last = requiredCondition(*service, read.basicConditionIds.back(), fileName);

    Composition composition = compositionOf(read);
    appendCases(*service, composition, id, first.startLine, last.endLine);
    service->counts[counter::compoundConditions] += composition.caseCount;
    description.conditionCount += composition.caseCount;
    computeModifiedConditions(service, &service->compositions.emplace_back(std::move(composition)));
    service->counts[counter::modifiedConditions] += static_cast<std::uint32_t>(read.basicConditionIds.size());
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

std::string caseValues(const Composition& composition, std::uint32_t caseNumber) {
    std::string values;
    appendCaseValues(values, composition, caseNumber);
    return values;
}

bool caseOutcome(const Composition& composition, std::uint32_t caseNumber) {
    return isTable(composition)
               ? caseNumber < composition.frontier
               : (composition.outcomes[caseNumber / wordBits] >> (caseNumber % wordBits) & 1U) != 0;
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
    return isTrueOutcome(service, condition) ? "True" : "False";
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
