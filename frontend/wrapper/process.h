#pragma once

// Running other programs, and the files that are only there meanwhile.

#include <sys/types.h>

#include <optional>
#include <string>

#include "words.h"

namespace veldacc {

// How a program ended. `signal` is 0 unless one ended it; `late` when it was stopped for taking too long.
struct Outcome {
    int status = 0;
    int signal = 0;
    bool late = false;

    [[nodiscard]] bool succeeded() const { return status == 0 && signal == 0; }
};

// Where a started program writes; empty names are those of this program.
struct Redirection {
    std::string standardOutput = {};
    std::string standardError = {}; // may name the same file
    std::string standardInput = "/dev/null";
    bool ownDependencies =
        true; // else without the variables by which compilers are told to write dependency files
};

// Starts a program, looked for in PATH, with the environment of this one. When it cannot be run, that is said and
// Failure thrown, with status 127.
pid_t start(const Words& words, const Redirection& redirection);
// Waits for a started program; 0 seconds wait for ever. Seconds are those that the program had of a processor, so that a
// busy machine changes nothing; one that only waits is given ten times as much.
Outcome waitFor(pid_t process, unsigned seconds = 0);
void stop(pid_t process);
Outcome run(const Words& words, const Redirection& redirection = {}, unsigned seconds = 0);

// The first line that a program prints, without its line end; empty when it fails.
std::string answerOf(const Words& words);

// Becomes that program. Failure as above.
[[noreturn]] void become(const Words& words);
// Ends this program as the other one has ended.
[[noreturn]] void endLike(const Outcome& outcome);

// A directory that is removed with its owner, also when a signal ends this program.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string file(const std::string& name) const { return path_ + '/' + name; }
    void keep() { kept_ = true; }

private:
    std::string path_;
    bool kept_ = false;
};

// Makes the program end orderly on SIGINT, SIGTERM and SIGHUP: what it started is stopped, what is temporary removed.
void prepareForSignals();

} // namespace veldacc
