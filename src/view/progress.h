#pragma once

// What a user at a terminal sees of long work: one line of standard error, taken back when the work is done or a message
// comes. Elsewhere, and in the first moments, nothing.

#include <chrono>
#include <cstddef>

#include <QString>

namespace veldacov {

// One piece of work of so many steps. There is one at a time.
class Progress {
public:
    // `what` is translated, with %1 and %2 for the steps done and all steps.
    Progress(QString what, std::size_t steps);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void step();

private:
    using Clock = std::chrono::steady_clock;

    QString what_;
    std::size_t steps_;
    std::size_t done_ = 0;
    bool onTerminal_;
    Clock::time_point nextShow_;
};

} // namespace veldacov
