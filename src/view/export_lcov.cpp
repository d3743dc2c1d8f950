// LCOV tracefiles: a record per source, or per test and source.
//
//   TN:night                       test; empty in a merged file
//   SF:src/tank.c
//   FN:12,open_valve               with --mcdc FN:12,20,open_valve
//   FNDA:3,open_valve
//   FNF:1
//   FNH:1
//   BRDA:14,0,0,3                  line, decision, branch, count or -
//   BRF:1
//   BRH:1
//   MCDC:14,2,t,1,0,level > 3      line, conditions, sense, proven, index, text
//   MCF:1
//   MCH:1
//   DA:14,3
//   LF:1
//   LH:1
//   end_of_record

#include <algorithm>
#include <iterator>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "support/machine.h"
#include "view/export.h"
#include "view/progress.h"

namespace veldacov {

namespace {

bool isControl(char character) {
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7f;
}
bool fitsFunction(char character) {
    return !isControl(character) && character != ',';
}
bool fitsLine(char character) {
    return !isControl(character);
}
bool fitsTest(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_';
}

using Fits = bool (*)(char);

std::string mapped(std::string_view name, Fits fits) {
    std::string text(name);
    std::replace_if(
        text.begin(), text.end(), [fits](char character) { return !fits(character); }, '_');
    return text.empty() ? "_" : text;
}

// Names that a field can carry, each different from the others. Those that fit as they are keep their text.
std::vector<std::string> mappedNames(const std::vector<std::string_view>& names, Fits fits) {
    std::vector<std::string> texts(names.size());
    std::unordered_set<std::string> used;
    std::vector<std::size_t> others;
    for (std::size_t i = 0; i < names.size(); ++i) {
        texts[i] = mapped(names[i], fits);
        if (texts[i] != names[i] || !used.insert(texts[i]).second) {
            others.push_back(i);
        }
    }
    std::unordered_map<std::string, std::uint32_t> numbers; // the last number given to a text
    for (const std::size_t i : others) {
        const std::string text = texts[i];
        std::uint32_t& number = numbers.try_emplace(text, 1).first->second;
        while (!used.insert(texts[i]).second) {
            texts[i] = text + "_" + std::to_string(++number);
        }
    }
    return texts;
}

class LcovWriter {
public:
    LcovWriter(OutputFile& out, const Campaign& campaign, const ExportOptions& options)
        : out_(out), campaign_(campaign), options_(options), sources_(sourcesOf(campaign)) {
        std::vector<std::string_view> paths;
        for (const Source& source : sources_) {
            paths.push_back(source.path);
        }
        paths_ = mappedNames(paths, fitsLine);
    }

    void writeMerged() {
        Progress progress(progressText(), sources_.size());
        for (std::size_t source = 0; source < sources_.size(); ++source) {
            writeRecord("", source, campaign_.counts);
            progress.step();
        }
        tellLeftOut();
    }
    void writePerTest();

private:
    static QString progressText() { return translate("View", "Writing: %1 of %2", "%1 and %2 are numbers"); }
    void writeRecord(std::string_view test, std::size_t source, std::span<const std::uint32_t> counts);
    void writeFunctions();
    void writeBranches();
    void writeProofs();
    void writeProof(const ProofEvidence& proof);
    void writeLines();
    void tellLeftOut() const;

    [[nodiscard]] std::vector<std::size_t> sourcesWith(const std::vector<std::uint32_t>& numbers,
                                                       const std::vector<std::size_t>& sourceOfFile) const;
    [[nodiscard]] std::vector<std::vector<std::size_t>> sourcesOfTests() const;
    template <typename Found>
    void putSum(std::string_view found, std::string_view hit, Found count, Found countHit) {
        putLine(out_, found, static_cast<std::uint32_t>(count));
        putLine(out_, hit, static_cast<std::uint32_t>(countHit));
    }

    OutputFile& out_;
    const Campaign& campaign_;
    const ExportOptions& options_;
    std::vector<Source> sources_;
    std::vector<std::string> paths_; // of the sources, as the field can carry them
    SourceEvidence evidence_;
    std::set<std::pair<std::size_t, std::size_t>> leftOut_; // decisions: source and place among its proofs
    std::size_t source_ = 0;
};

void LcovWriter::writeRecord(std::string_view test, std::size_t source,
                             std::span<const std::uint32_t> counts) {
    source_ = source;
    evidenceOf(campaign_, sources_[source], counts, evidence_);
    putLine(out_, "TN:", test);
    putLine(out_, "SF:", paths_[source]);
    writeFunctions();
    writeBranches();
    if (options_.mcdc) {
        writeProofs();
    }
    writeLines();
    putLine(out_, "end_of_record");
}

void LcovWriter::writeFunctions() {
    std::vector<std::string_view> given;
    for (const FunctionEvidence& function : evidence_.functions) {
        given.push_back(nameText(function.name));
    }
    const std::vector<std::string> names = mappedNames(given, fitsFunction);
    std::size_t hit = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const FunctionEvidence& function = evidence_.functions[i];
        if (options_.mcdc) {
            putLine(out_, "FN:", function.line, ',', function.lastLine, ',', names[i]);
        } else {
            putLine(out_, "FN:", function.line, ',', names[i]);
        }
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        putLine(out_, "FNDA:", evidence_.functions[i].count, ',', names[i]);
        hit += evidence_.functions[i].count != 0 ? 1 : 0;
    }
    putSum("FNF:", "FNH:", names.size(), hit);
}

void LcovWriter::writeBranches() {
    std::size_t hit = 0;
    for (const BranchEvidence& branch : evidence_.branches) {
        hit += branch.count != 0 ? 1 : 0;
        if (branch.evaluated) {
            putLine(out_, "BRDA:", branch.line, ',', branch.decision, ',', branch.number, ',', branch.count);
        } else {
            putLine(out_, "BRDA:", branch.line, ',', branch.decision, ',', branch.number, ",-");
        }
    }
    if (!evidence_.branches.empty()) {
        putSum("BRF:", "BRH:", evidence_.branches.size(), hit);
    }
}

// Readers know a decision by its line and its size: of several alike the first is written.
void LcovWriter::writeProofs() {
    const std::span<const ProofEvidence> proofs(evidence_.proofs);
    std::set<std::pair<std::uint32_t, std::uint32_t>> written;
    std::size_t found = 0;
    std::size_t hit = 0;
    for (std::size_t first = 0; first < proofs.size(); first += proofs[first].conditions) {
        if (!written.insert({proofs[first].line, proofs[first].conditions}).second) {
            leftOut_.insert({source_, first});
            continue;
        }
        for (const ProofEvidence& proof : proofs.subspan(first, proofs[first].conditions)) {
            writeProof(proof);
            found += 2;
            hit += proof.proven ? 2 : 0;
        }
    }
    if (found != 0) {
        putSum("MCF:", "MCH:", found, hit);
    }
}

void LcovWriter::writeProof(const ProofEvidence& proof) {
    const std::string text = mapped(unquoted(proof.text), fitsLine);
    const char proven = proof.proven ? '1' : '0';
    for (const char sense : {'t', 'f'}) {
        putLine(out_, "MCDC:", proof.line, ',', proof.conditions, ',', sense, ',', proven, ',', proof.index,
                ',', text);
    }
}

void LcovWriter::writeLines() {
    std::size_t hit = 0;
    for (const LineEvidence& line : evidence_.lines) {
        putLine(out_, "DA:", line.line, ',', line.count);
        hit += line.count != 0 ? 1 : 0;
    }
    putSum("LF:", "LH:", evidence_.lines.size(), hit);
}

void LcovWriter::tellLeftOut() const {
    if (!leftOut_.empty()) {
        infoMessage(filled(translate("View",
                                     "MCDC records of %1 decisions are left out: an earlier decision of as "
                                     "many conditions begins on the same line",
                                     "%1 is a number"),
                           {std::to_string(leftOut_.size())}));
    }
}

// The places of the sources that items belong to, ascending. The numbers ascend, too.
std::vector<std::size_t> LcovWriter::sourcesWith(const std::vector<std::uint32_t>& numbers,
                                                 const std::vector<std::size_t>& sourceOfFile) const {
    std::set<std::size_t> sources;
    const auto& services = campaign_.services;
    auto service = services.begin();
    for (auto number = numbers.begin(); number != numbers.end();) {
        service = std::prev(std::upper_bound(
            service, services.end(), *number,
            [](std::uint32_t wanted, const CampaignService& next) { return wanted < next.firstItem; }));
        sources.insert(sourceOfFile[service->file]);
        number = std::lower_bound(number, numbers.end(), itemNumbers(*service).end);
    }
    return {sources.begin(), sources.end()};
}

// The sources that each test has records of: those that it hits. The first has those that no test hits, too: they count as
// much.
std::vector<std::vector<std::size_t>> LcovWriter::sourcesOfTests() const {
    std::vector<std::size_t> sourceOfFile(campaign_.files.size());
    for (std::size_t source = 0; source < sources_.size(); ++source) {
        for (const std::uint32_t file : sources_[source].files) {
            sourceOfFile[file] = source;
        }
    }
    std::vector<bool> isHit(sources_.size());
    std::vector<std::vector<std::size_t>> ofTests;
    std::vector<std::uint32_t> items;
    for (const CampaignTest& test : campaign_.tests) {
        readItems(test, items);
        ofTests.push_back(sourcesWith(items, sourceOfFile));
        for (const std::size_t source : ofTests.back()) {
            isHit[source] = true;
        }
    }
    for (std::size_t source = 0; source < sources_.size(); ++source) {
        if (!isHit[source]) {
            ofTests.front().push_back(source);
        }
    }
    return ofTests;
}

void LcovWriter::writePerTest() {
    std::vector<std::string_view> given;
    for (const CampaignTest& test : campaign_.tests) {
        given.push_back(shownName(test));
    }
    const std::vector<std::string> names = mappedNames(given, fitsTest);
    const std::vector<std::vector<std::size_t>> sources = sourcesOfTests();
    std::vector<std::uint32_t> counts(campaign_.itemCount); // of one test
    std::vector<std::uint32_t> items;
    Progress progress(progressText(), campaign_.tests.size());
    for (std::size_t test = 0; test < campaign_.tests.size(); ++test) {
        readItems(campaign_.tests[test], items);
        const std::vector<std::uint32_t>& testCounts = campaign_.tests[test].counts;
        for (std::size_t i = 0; i < items.size(); ++i) {
            counts[items[i]] = testCounts.empty() ? 1 : testCounts[i];
        }
        for (const std::size_t source : sources[test]) {
            writeRecord(names[test], source, counts);
        }
        for (const std::uint32_t item : items) {
            counts[item] = 0;
        }
        progress.step();
    }
    tellLeftOut();
}

} // namespace

void exportLcov(OutputFile& out, const Campaign& campaign, const ExportOptions& options) {
    LcovWriter writer(out, campaign, options);
    if (options.perTest && !campaign.tests.empty()) {
        writer.writePerTest();
    } else {
        writer.writeMerged();
    }
}

} // namespace veldacov
