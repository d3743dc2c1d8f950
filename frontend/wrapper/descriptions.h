#pragma once

// Where descriptions are kept: x.fdc of x.c, whatever the object is called. A source may be compiled several times:
// twice alike by libtool (x.o and .libs/x.o), or with other macros for another program. Equal descriptions are one file,
// x.fdc; different ones are x.fdc, x-2.fdc and so on. So that the next compilation of an object replaces what the last
// one left, each file tells which objects it describes, behind its last DC line, where readers of descriptions look no
// more:
//
//     # object "x.o"
//     # object "prog" "src/x.c"      the program of a call that compiled and linked, and which of its sources
//
// Names are relative to the directory of the description.

#include <string>

namespace veldacc {

// What a description is of.
struct Described {
    std::string source; // as it was given to the compiler
    std::string object; // what the compiler writes: an object or, of a call that links, the program
    bool linked = false;
};

// Keeps the description that stands in file `made` for what it describes: in `directory`, or beside the object when that is
// empty. False when it cannot be written; `file` is then the name.
struct Keeping {
    bool done = true;
    std::string file;
};
Keeping keepDescription(const std::string& made, const Described& described, const std::string& directory);

// The object is compiled as it is: what has been kept for it goes away.
void forgetDescription(const Described& described, const std::string& directory);

} // namespace veldacc
