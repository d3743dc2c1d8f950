#include "instrument.h"

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <initializer_list>
#include <map>
#include <set>
#include <string_view>

#include "velda_abi_text.h"
#include "walk.h"

namespace veldacc {

namespace {

namespace fs = std::filesystem;

// The sections by the files that they describe.
struct Sections {
    const SourceInput& input;
    std::deque<Section> all;
    std::map<std::string, std::uint32_t> byPath;
    std::vector<std::set<std::string>> functions; // names, of each section
};

std::uint32_t sectionOf(Sections& sections, const std::string& fileName) {
    const fs::path path = fs::absolute(fileName).lexically_normal();
    const auto [at, isNew] =
        sections.byPath.try_emplace(path.string(), static_cast<std::uint32_t>(sections.all.size()));
    if (!isNew) {
        return at->second;
    }
    Section section;
    section.path = path.string();
    section.name = path.filename().string();
    fs::path directory = path.parent_path();
    if (!sections.input.root.empty()) {
        const fs::path within =
            directory.lexically_relative(fs::absolute(sections.input.root).lexically_normal());
        if (!within.empty() && *within.begin() != "..") {
            directory = within;
        }
    }
    section.directory = directory == "." || directory == "./" ? "./" : directory.string() + '/';
    sections.all.push_back(std::move(section));
    sections.functions.emplace_back();
    return at->second;
}

bool isHeader(const std::string& name) {
    return name.ends_with(".h");
}

// A function that is to be described.
struct Candidate {
    const clang::FunctionDecl* function = nullptr;
    std::uint32_t token = 0;
    std::uint32_t instance = 0;
};

std::vector<Candidate> findFunctions(const Unit& unit) {
    std::vector<Candidate> found;
    for (const clang::Decl* declaration : unit.parsed.context.getTranslationUnitDecl()->decls()) {
        const auto* function = llvm::dyn_cast<clang::FunctionDecl>(declaration);
        if (function == nullptr || !function->doesThisDeclarationHaveABody() || function->isImplicit() ||
            !llvm::isa_and_nonnull<clang::CompoundStmt>(function->getBody())) {
            continue;
        }
        const std::uint32_t brace = firstToken(unit, function->getBody());
        const std::uint32_t begin = findToken(unit, function->getBeginLoc());
        const std::uint32_t token = begin == noToken ? brace : begin;
        if (token == noToken || brace == noToken) {
            continue;
        }
        const Place place = placeOfToken(unit, token);
        if (place.instance == noInstance) {
            continue;
        }
        const FileInstance& file = unit.marks.instances[place.instance];
        if (file.system || (place.instance != 0 && isHeader(file.name) && !unit.settings.headers) ||
            isSystemMacroBody(unit, brace)) {
            continue;
        }
        found.push_back({function, token, place.instance});
    }
    std::sort(found.begin(), found.end(),
              [](const Candidate& a, const Candidate& b) { return a.token < b.token; });
    return found;
}

// What Clang did not understand within a function.
void refuseErrors(const Unit& unit, const Candidate& candidate) {
    const std::uint32_t begin = textOffset(unit.parsed, unit.parsed.tokens[candidate.token].getLocation());
    const std::uint32_t end = textOffset(unit.parsed, candidate.function->getBody()->getEndLoc());
    for (const ParseError& error : unit.parsed.errors) {
        if (error.offset >= begin && error.offset <= end) {
            std::uint32_t token = candidate.token;
            while (token + 1 < unit.parsed.tokens.size() &&
                   textOffset(unit.parsed, unit.parsed.tokens[token + 1].getLocation()) <= error.offset) {
                ++token;
            }
            throw CannotInstrument(token, error.message);
        }
    }
}

// Whether the compiler has complained about what was made of the function: it names lines as #line does.
bool wasRefused(const Unit& unit, const Candidate& candidate, const std::vector<std::string>& refused) {
    if (refused.empty()) {
        return false;
    }
    const Presumed begin =
        presumedAt(unit.marks, textOffset(unit.parsed, unit.parsed.tokens[candidate.token].getLocation()));
    const Presumed end =
        presumedAt(unit.marks, textOffset(unit.parsed, candidate.function->getBody()->getEndLoc()));
    return std::any_of(refused.begin(), refused.end(), [&](const std::string& place) {
        const std::size_t colon = place.rfind(':');
        const unsigned long line = std::strtoul(place.c_str() + colon + 1, nullptr, 10);
        return place.compare(0, colon, begin.name) == 0 && begin.line <= line && line <= end.line;
    });
}

// `FunctionLeft` with its values.
Notice functionLeft(const Unit& unit, const std::string& function, std::uint32_t token,
                    const std::string& reason) {
    const Place place = placeOfToken(unit, token);
    return {NoticeKind::FunctionLeft,
            {unit.marks.instances[place.instance].name, std::to_string(place.line), function, reason}};
}

void append(std::string& text, std::initializer_list<std::string_view> parts) {
    for (const std::string_view part : parts) {
        text += part;
    }
}

std::string joined(const std::vector<std::uint32_t>& numbers) {
    std::string text;
    for (const std::uint32_t number : numbers) {
        append(text, {text.empty() ? "" : ",", std::to_string(number), "u"});
    }
    return text;
}

// The words of one section's formulas; see the interface of the run-time library.
std::vector<std::uint32_t> formulaWords(const Section& section) {
    std::vector<std::uint32_t> words;
    for (const auto& ofKind : section.formulas) {
        for (const std::vector<std::uint32_t>& formula : ofKind) {
            if (formula.empty()) {
                words.push_back(0xFFFFFFFFU);
            }
            for (std::size_t i = 0; i < formula.size(); ++i) {
                words.push_back(formula[i] * 4 + (i + 1 < formula.size() ? 1U : 0U));
            }
        }
    }
    return words;
}

// What stands in front of the code: declarations, counters, the registration.
std::string prologue(const std::deque<Section>& sections, const Counters& counters) {
    const bool counts = counters.way != Counting::Ordered;
    std::string out = "# 1 \"<velda>\" 3\n" + std::string(abiText);
    if (counts && counters.used > 0) {
        append(out, {"static velda_count velda_counters[", std::to_string(counters.used), "];\n"});
    }
    std::string table;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        const Section& section = sections[i];
        std::string formulas = "0u,0";
        const std::vector<std::uint32_t> words =
            counts ? formulaWords(section) : std::vector<std::uint32_t>{};
        if (!words.empty()) {
            const std::string name = "velda_formulas_" + std::to_string(i);
            append(out, {"static const unsigned int ", name, "[]={", joined(words), "};\n"});
            formulas = std::to_string(words.size()) + "u," + name;
        }
        append(table, {i == 0 ? "{" : ",{", std::to_string(section.key), "u,",
                       std::to_string(section.checksum), "u,{"});
        for (std::size_t kind = 0; kind < hitKinds; ++kind) {
            append(table, {kind == 0 ? "" : ",", std::to_string(section.formulas[kind].size()), "u"});
        }
        append(table, {"},", formulas, "}"});
    }
    append(out, {"static const struct velda_section velda_sections[]={", table, "};\n"});
    for (std::size_t i = 0; i < counters.caseMaps.size(); ++i) {
        append(out, {"static const unsigned int velda_cases_", std::to_string(i), "[]={",
                     joined(counters.caseMaps[i]), "};\n"});
    }
    append(out, {"static struct velda_unit velda_unit={1u,", std::to_string(sections.size()), "u,",
                 std::to_string(counts ? counters.used : 0), "u,velda_sections,",
                 counts && counters.used > 0 ? "velda_counters" : "0", ",0};\n"});
    out += "static __attribute__((constructor(101),no_instrument_function)) void velda_join(void)"
           "{veldacc_has_to_link_this_program_too(&velda_unit,1);}\n"
           "static __attribute__((destructor(101),no_instrument_function)) void velda_leave(void)"
           "{veldacc_has_to_link_this_program_too(&velda_unit,0);}\n";
    return out;
}

struct Work {
    const Unit& unit;
    Sections& sections;
    Counters counters;
    Edits edits;
    InstrumentedSource& result;
};

// Describes one function, or takes back what was begun and says why not.
void instrumentFunction(Work& work, const Candidate& candidate) {
    const std::uint32_t index = sectionOf(
        work.sections, candidate.instance == 0 ? work.sections.input.sourceName
                                               : work.unit.marks.instances[candidate.instance].name);
    Section& section = work.sections.all[index];
    const std::string name = candidate.function->getNameAsString();
    const SectionMark sectionMark = markSection(section);
    const EditsMark editsMark = markEdits(work.edits);
    const Counters countersBefore{work.counters.way, work.counters.used, {}};
    const std::size_t mapsBefore = work.counters.caseMaps.size();
    try {
        if (!work.sections.functions[index].insert(name).second) {
            throw CannotInstrument(
                candidate.token, QT_TRANSLATE_NOOP("Veldacc Instrumenter", "a second function of this name"));
        }
        refuseErrors(work.unit, candidate);
        if (wasRefused(work.unit, candidate, work.sections.input.leave)) {
            throw CannotInstrument(
                candidate.token,
                QT_TRANSLATE_NOOP("Veldacc Instrumenter", "the compiler refuses it instrumented"));
        }
        HitTarget target{work.counters, section, index};
        FunctionWalk walk(work.unit, work.edits, target, {section, name, work.unit.settings.types},
                          candidate.instance);
        walk.run(candidate.function);
        work.result.remarks.insert(work.result.remarks.end(), walk.remarks.begin(), walk.remarks.end());
    } catch (const CannotInstrument& problem) {
        takeBack(section, sectionMark);
        takeBack(work.edits, editsMark);
        work.counters.used = countersBefore.used;
        work.counters.caseMaps.resize(mapsBefore);
        work.result.left.push_back(functionLeft(
            work.unit, name, problem.token == noToken ? candidate.token : problem.token, problem.what()));
    }
}

void instrumentUnit(const SourceInput& input, const Unit& unit, InstrumentedSource& result) {
    Sections sections{input, {}, {}, {}};
    Work work{unit, sections, {input.settings.way, 0, {}}, {}, result};
    for (const Candidate& candidate : findFunctions(unit)) {
        instrumentFunction(work, candidate);
    }
    // Sections without a function that could be described have no place in a description.
    const auto isEmpty = [](const Section& section) { return section.items.empty(); };
    if (std::all_of(sections.all.begin(), sections.all.end(), isEmpty)) {
        return;
    }
    for (Section& section : sections.all) {
        const std::string text = finishSection(section, {input.settings.forced, input.settings.types});
        if (!section.items.empty()) {
            result.description += (result.description.empty() ? "" : "@/RIK\n") + text;
        }
    }
    // The first marker names the source for the compiler and the debugger: it stays in front, and is said again behind.
    const std::string text = applyEdits(work.edits, unit.text, unit.tokens);
    const std::size_t firstLine = text.starts_with("#") ? text.find('\n') + 1 : 0;
    const std::string marker = text.substr(0, firstLine);
    result.text = marker + prologue(sections.all, work.counters) + marker + text.substr(firstLine);
}

} // namespace

std::optional<InstrumentedSource> instrument(const SourceInput& input) {
    InstrumentedSource result;
    std::vector<TextToken> tokens;
    const auto use = [&](const std::string& parsedText, bool isMap) {
        bool done = false;
        const bool began = parseText(parsedText, input.parse, [&](ParsedUnit& parsed) {
            if (tokens.empty()) {
                tokens = tokenize(input.text, parsed.context.getLangOpts());
            }
            if (!tokensAgree(parsed, input.text, tokens)) {
                return;
            }
            const clang::LangOptions& language = parsed.context.getLangOpts();
            const MarkedText marks = readMarkers(parsedText, input.sourceName, [&](const std::string& of) {
                return directivesOf(of, language);
            });
            instrumentUnit(input, Unit{parsed, marks, input.text, tokens, input.settings}, result);
            result.usedMap = isMap;
            done = true;
        });
        return began && done;
    };
    if ((!input.map.empty() && use(input.map, true)) || use(input.text, false)) {
        return result;
    }
    return std::nullopt;
}

} // namespace veldacc
