#pragma once

// One source while it is instrumented: the parse, the text that is compiled, and where each token stands.

#include <stdexcept>
#include <string>
#include <string_view>

#include <QtGlobal>

#include "counting.h"
#include "edits.h"
#include "marked_text.h"
#include "parse.h"
#include "token_map.h"

namespace veldacc {

struct Settings {
    bool forced = false;
    bool headers = false;
    bool overflowTraps = false; // -ftrapv and the sanitizers
    std::uint32_t types = allTypes;
    std::uint64_t maxCases = 1000;
    Counting way = Counting::Shared;
};

struct Unit {
    const ParsedUnit& parsed;
    const MarkedText& marks; // of the text that was parsed
    const std::string& text; // that is compiled
    const std::vector<TextToken>& tokens;
    const Settings& settings;
};

// A function that has to be copied as it is; `what` names the construct. Words that are not C are marked for translators.
struct CannotInstrument : std::runtime_error {
    CannotInstrument(std::uint32_t where, const std::string& construct)
        : std::runtime_error(construct), token(where) {}
    std::uint32_t token;
};

constexpr std::uint32_t noToken = 0xFFFFFFFFU;

// The token at a location of the tree; noToken when there is none.
std::uint32_t findToken(const Unit& unit, clang::SourceLocation location);

// First and last token of a statement; the semicolon belongs to it. noToken where the tree has no place in the text.
std::uint32_t firstToken(const Unit& unit, const clang::Stmt* statement);
std::uint32_t lastToken(const Unit& unit, const clang::Stmt* statement);

// Where a token stands for the user.
Place placeOfToken(const Unit& unit, std::uint32_t token);

// Whether a token comes from the body of a system header's macro; arguments of such macros do not.
bool isSystemMacroBody(const Unit& unit, std::uint32_t token);

std::string_view tokenText(const Unit& unit, std::uint32_t token);

// The user's spelling from one token to another.
std::string spelling(const Unit& unit, std::uint32_t first, std::uint32_t last);

} // namespace veldacc
