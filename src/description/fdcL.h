#pragma once

// Coverage descriptions (FDC files): what an instrumenting front end says about source files. The reader is called
// fdcL in the contexts of its messages, by which translations go, so the file has that name. Lines start with a
// two-letter kind, the bigramme:
//
//   VE 3.0e cov                       version, one to four token strings; starts a section
//   FC "calc.c" "src/" "comment"      source file, its directory, optional comment
//   FD 1700000000                     when the source was modified last before it was instrumented; 0: unknown
//   TC PR RE AP BS BI BL CO CC        coverage types it was instrumented for
//   PR 0 proc "main" 10 10            entry of a service (endproc, return, term: its exits)
//   AP 0 "main" "f" 12 12             call of f in main
//   BL 0 simple "main" THEN 13 15     block (simple, implicit, logical, atc) with its label
//   CE 0 "main" "a > 0" 13 13         condition with two outcomes: identifiers 0 (true) and 1 (false)
//   CA 2 "main" "b" 13 13             condition with one outcome
//   CC 3 2 0 2 4 A..                  composition of conditions of the service above (conditions.h)
//   DC 123 456                        checksum, optional file key; ends the section
//
// Numbers are decimal. Behind a DC line anything may stand; a further section starts with a VE line right
// behind a line that holds the text "/RIK" while the number of "@" since the DC line is odd.

#include <cstdint>
#include <string>
#include <vector>

namespace veldacov {

// The files that are no descriptions, in command-line order.
using TraceFileList = std::vector<std::string>;

// Loads the sections of a description into the model, or queues the name as that of a trace when the first
// line is no VE line. `requestedTypes` (0: none) only serves to warn about types that the file was not
// instrumented for. A file that cannot be opened is warned about and left out; a malformed description is a
// fatal error.
void loadFdcFile(const std::string* fileName, std::uint16_t requestedTypes, TraceFileList& traceFiles);

} // namespace veldacov
