#pragma once

// What `veldacc` says to its user. The program starts for every file of a build and nearly never says anything, so
// the texts and their translation live in a program of their own, `veldacc-say`, which is started to say one of them.

#include <string>
#include <vector>

namespace veldacc {

// In the order of the table in say.cpp.
enum class Message : int {
    Usage,
    Version,
    UnknownOption,
    OptionNeedsValue,
    BadTimeLimit,
    NoCompiler,
    CannotRun,
    CannotMakeTemporary,
    LauncherRefused,
    InstrumenterCrashed,
    InstrumenterTooSlow,
    InstrumentedDoesNotCompile,
    CannotWriteDescription,
    CannotBuildRuntime,
    NoRuntime,
    TemporaryKept,
};

// Says it on standard error (the first two on standard output), its placeholders filled; the second as an error where
// it is a warning otherwise.
void say(Message message, const std::vector<std::string>& values = {});
void sayAsError(Message message, const std::vector<std::string>& values = {});

} // namespace veldacc
