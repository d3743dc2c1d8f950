#pragma once

// The start of a program: memory, signals and descriptors, the toolkit, and the language of its user.

#include <memory>
#include <span>

namespace veldacov {

// What becomes of a start without an installation directory (NORVIKDIR) with translations.
enum class Installation : bool {
    Optional, // texts are English
    Required  // the program ends with status 1
};

// Lives as long as the program.
class ProgramStart {
public:
    // The families are the first parts of the names of translation files ("cov_"); where two have a text, the later
    // one wins. `executable` names the program in its messages. All arguments must outlive the start.
    ProgramStart(int& argumentCount, char** arguments, const char* executable,
                 std::span<const char* const> families, Installation installation);
    ~ProgramStart();
    ProgramStart(const ProgramStart&) = delete;
    ProgramStart& operator=(const ProgramStart&) = delete;

private:
    struct Toolkit;
    std::unique_ptr<Toolkit> toolkit_;
};

} // namespace veldacov
