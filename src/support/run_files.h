#pragma once

// The files of a run: those that it is given, and those that it makes.
//
// Made files never destroy given ones, nor each other. Given are the inputs, the response files, and the sources that
// descriptions name, whether the run reads them or not. Two names mean one file when they lead to the same existing
// file, or to the same place where there is none yet, so that a first run and a second one get the same answer. An
// output whose name means a given file, or an output that the run has made already, is not opened. Only regular files
// count: devices keep nothing, and pipes pass on what they get.
//
// An input that is a pipe can be read once, and its first line tells a description from a trace long before traces
// are read. So the stream of a trace is kept, with the bytes that were read; where traces are read a second time, a copy
// in an unnamed temporary file is kept instead.

#include <string>

#include <QString>

#include "support/files.h"
#include "support/output.h"

namespace veldacov {

// Forgets the files of the run, and closes what is kept of them.
void forgetRunFiles();

// Says that the run is given this file. Only remembers the name: names are compared when there is an output.
void protectFile(std::string name);

// Opens an input to see what it is. Not open when it cannot be read: it is a directory, a device but the null one, a
// socket, or a pipe that was opened before under any name.
InputFile openGivenFile(const std::string& name);
// Hands back an input whose first line has been read, to be read from its start later.
void keepGivenFile(InputFile input);
// Opens an input that was handed back, anew.
InputFile reopenGivenFile(const std::string& name);
// Each input handed back from now on will be opened anew twice. The copies of pipes stand in the directory TMPDIR, or
// /var/tmp; when that is full, a fatal error names it.
void copyGivenPipes();

// Creates an output that the command line names. `failure` is the fatal error, with %1 for the name, when that is not
// possible.
OutputFile createOutput(const std::string& name, const QString& failure);
// Standard output as an output of the run.
OutputFile outputOnStandardOutput();
// Whether standard output leads into a given file, as of `>>`.
bool standardOutputIsGiven();
// Creates a listing, or appends to one that was created under the same name. Not open when that is not possible.
OutputFile createListing(const std::string& name);
OutputFile appendToListing(const std::string& name);

} // namespace veldacov
