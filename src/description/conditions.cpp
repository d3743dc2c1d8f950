#include "description/conditions.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <span>
#include <utility>

#include "description/condition_list.h"
#include "description/pairs.h"
#include "description/tokens.h"
#include "support/files.h"
#include "support/machine.h"

namespace veldacov {

namespace {

constexpr unsigned wordBits = 64;

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
