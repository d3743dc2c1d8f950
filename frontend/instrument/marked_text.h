#pragma once

// A preprocessed text and its line markers: which file, and which line of it, each byte comes from.
//
//     # 1 "x.c"                     the source
//     # 1 "/usr/include/stdio.h" 1 3 4     1: a file is entered; 3: a system header
//     # 5 "x.c" 2                   2: back in the file that included it
//     # 52 "gram.y"                 neither: lines were skipped, or a #line renames what follows
//
// A file that is entered is an instance: the same header included twice is two. A #line in a file does not make another
// file of it: the instance keeps the name under which it was entered, and the line that the user's editor shows is found
// by reading the #line lines of the file itself (`physicalLine`).
//
// A marker may be indented, as the directive was that it stands for; and a line of a comment may look like one ("# 1 note").
// So what a directive is has to be told by who knows C's tokens.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace veldacc {

constexpr std::uint32_t noInstance = 0xFFFFFFFFU;

struct FileInstance {
    std::string name;                  // as the compiler names it
    std::uint32_t parent = noInstance; // the instance that includes it
    std::uint32_t includeLine = 0;     // where, in the parent
    bool system = false;               // a system header
};

// The lines behind one marker.
struct MarkedSpan {
    std::uint32_t offset = 0; // of the line behind the marker
    std::uint32_t instance = 0;
    std::uint32_t line = 0; // of the line at offset
    std::uint32_t name = 0; // what #line calls the file: index into names
    bool system = false;    // marked as a system header's text (in expansions of their macros, too)
};

// A #line of a source: the line behind it is called `line` of `name`.
struct LineRenaming {
    std::uint32_t physicalLine = 0; // of the line behind the directive
    std::uint32_t line = 0;
    std::string name; // empty: the name stays
};

struct MarkedText {
    std::string text;
    std::vector<FileInstance> instances; // the first is the source itself
    std::vector<MarkedSpan> spans;       // ascending
    std::vector<std::string> names;
    std::vector<std::uint32_t> lineStarts;            // ascending
    std::vector<std::vector<LineRenaming>> renamings; // of each instance; empty without #line
};

struct Place {
    std::uint32_t instance = noInstance;
    std::uint32_t line = 0;
    bool system = false;
};

// The offsets of the # of all directives of a text, ascending.
using DirectiveFinder = std::function<std::vector<std::uint32_t>(const std::string& text)>;

// Takes a text apart; `source` is what the compiler was given. It is read, and so are files that #line lines occur in.
MarkedText readMarkers(std::string text, const std::string& source, const DirectiveFinder& findDirectives);

Place placeAt(const MarkedText& text, std::uint32_t offset);

// What the compiler calls the place in its messages, after #line; no name where there is no place.
struct Presumed {
    std::string name;
    std::uint32_t line = 0;
};
Presumed presumedAt(const MarkedText& text, std::uint32_t offset);

// The place as seen from an instance: of what that instance includes, the line of the #include. noInstance when the
// place is not within it.
Place placeWithin(const MarkedText& text, Place place, std::uint32_t instance);

} // namespace veldacc
