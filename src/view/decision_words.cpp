#include "view/decision_words.h"

#include <map>
#include <set>

#include "description/conditions.h"
#include "description/pairs.h"
#include "view/evidence.h"
#include "view/html_text.h"

namespace veldacov {

namespace {

// A table of more rows is not read.
constexpr std::uint32_t mostCases = 128;

} // namespace

DecisionWords::DecisionWords(OutputFile& out, const Campaign& campaign, const CampaignService& service,
                             const Composition& composition)
    : out_(out), campaign_(campaign), service_(service), composition_(composition),
      firstCondition_(itemNumbers(service).conditions) {
    chooseCases();
}

void DecisionWords::chooseCases() {
    if (composition_.caseCount <= mostCases) {
        for (std::uint32_t place = 0; place < composition_.caseCount; ++place) {
            shown_.push_back(place);
        }
        return;
    }
    std::set<std::uint32_t> chosen;
    for (const ModifiedCondition& modified : composition_.modifiedConditions) {
        if (const VectorPair* pair = nearestPair(service_, modified, campaign_.counts)) {
            chosen.insert({caseOf(pair->first), caseOf(pair->second)});
        }
    }
    for (std::uint32_t place = 0; place < composition_.caseCount && chosen.size() < mostCases; ++place) {
        if (isHitCase(place)) {
            chosen.insert(place);
        }
    }
    shown_.assign(chosen.begin(), chosen.end());
}

std::string_view DecisionWords::textOf(const ModifiedCondition& modified) const {
    return unquoted(service_.service->conditions[modified.basicCondition].text);
}

void DecisionWords::putCode(std::string_view text) const {
    out_.put("<code>");
    putHtml(out_, text);
    out_.put("</code>");
}

void DecisionWords::putHead(bool counted) const {
    out_.put("<thead><tr><th scope=col>Case");
    for (const ModifiedCondition& modified : composition_.modifiedConditions) {
        out_.put("<th scope=col>");
        putCode(textOf(modified));
    }
    out_.put("<th scope=col>Outcome<th scope=col>Mark");
    out_.put(counted ? "<th scope=col>Hits" : "");
    out_.put("<th scope=col>Tests</thead>\n<tbody>\n");
}

std::uint32_t DecisionWords::caseOf(std::uint32_t place) const {
    return caseNamedBy(*service_.service, composition_, place);
}

std::string DecisionWords::valuesOf(std::uint32_t caseNumber) const {
    std::string values = caseValues(composition_, caseNumber);
    values.resize(composition_.modifiedConditions.size(), 'X');
    return values;
}

void DecisionWords::putCase(std::uint32_t place) const {
    const std::string values = valuesOf(place);
    for (const char& value : values) {
        out_.put("<td>");
        putHtml(out_, {&value, 1});
    }
    out_.put(caseOutcome(composition_, place) ? "<td>T" : "<td>F");
}

void DecisionWords::putNoteOfHidden() const {
    if (shown_.size() < composition_.caseCount) {
        putLine(out_, "<p class=note>", composition_.caseCount - static_cast<std::uint32_t>(shown_.size()),
                " more cases are not shown.</p>");
    }
}

// "`a` false while `b` is true and `c` is false"; conditions that the case does not evaluate are left out.
void DecisionWords::putMissingCase(const ModifiedCondition& modified, std::uint32_t place) const {
    const std::string values = valuesOf(place);
    const auto& conditions = composition_.modifiedConditions;
    const auto own = static_cast<std::size_t>(&modified - conditions.data());
    putCode(textOf(modified));
    out_.put(values[own] == 'T' ? " true" : " false");
    std::string_view before = " while ";
    for (std::size_t other = 0; other < conditions.size(); ++other) {
        if (other == own || values[other] == 'X') {
            continue;
        }
        out_.put(before);
        putCode(textOf(conditions[other]));
        out_.put(values[other] == 'T' ? " is true" : " is false");
        before = " and ";
    }
    out_.put(" (case ");
    out_.putNumber(place + 1);
    out_.put(asksForBoth(values) ? ", where one text has both values)" : ")");
}

// Whether two conditions of one text have different values, which no test can give them unless evaluating them changes them.
bool DecisionWords::asksForBoth(std::string_view values) const {
    std::map<std::string_view, char> known;
    for (std::size_t place = 0; place < composition_.modifiedConditions.size(); ++place) {
        const std::string_view text = textOf(composition_.modifiedConditions[place]);
        if (values[place] != 'X' && known.try_emplace(text, values[place]).first->second != values[place]) {
            return true;
        }
    }
    return false;
}

void DecisionWords::putProof(const ModifiedCondition& modified) const {
    const VectorPair* pair = nearestPair(service_, modified, campaign_.counts);
    putCode(textOf(modified));
    if (pair == nullptr) {
        putLine(out_,
                " has no pair of cases that differ in it alone and in the outcome: no test can prove it.");
        return;
    }
    const std::uint32_t first = caseOf(pair->first);
    const std::uint32_t second = caseOf(pair->second);
    const bool firstIsHit = isHitPlace(pair->first);
    const bool secondIsHit = isHitPlace(pair->second);
    if (firstIsHit && secondIsHit) {
        putLine(out_, " is proven by cases ", first + 1, " and ", second + 1, ".");
        return;
    }
    const bool lacksBoth = !firstIsHit && !secondIsHit;
    out_.put(lacksBoth ? ": two tests are missing: " : ": a test is missing: ");
    if (!firstIsHit) {
        putMissingCase(modified, first);
    }
    out_.put(lacksBoth ? ", and " : "");
    if (!secondIsHit) {
        putMissingCase(modified, second);
    }
    if (!lacksBoth) {
        putLine(out_, ". Case ", (firstIsHit ? first : second) + 1, " is hit.");
        return;
    }
    putLine(out_, ".");
}

} // namespace veldacov
