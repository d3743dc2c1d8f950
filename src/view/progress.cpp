#include "view/progress.h"

#include <string>
#include <utility>

#include "support/machine.h"
#include "support/platform.h"

namespace veldacov {

namespace {

constexpr std::chrono::milliseconds firstShow(500);
constexpr std::chrono::milliseconds betweenShows(100);

bool lineStands = false;

void takeLineBack() {
    if (lineStands) {
        writeStandardError(QStringLiteral("\r\x1b[K"));
        lineStands = false;
    }
}

} // namespace

Progress::Progress(QString what, std::size_t steps)
    : what_(std::move(what)), steps_(steps), onTerminal_(platform::isTerminal(platform::standardError)),
      nextShow_(Clock::now() + firstShow) {
    setBeforeMessages(takeLineBack);
}

Progress::~Progress() {
    takeLineBack();
    setBeforeMessages(nullptr);
}

void Progress::step() {
    ++done_;
    if (!onTerminal_ || Clock::now() < nextShow_) {
        return;
    }
    nextShow_ = Clock::now() + betweenShows;
    writeStandardError(QStringLiteral("\r\x1b[K") +
                       filled(what_, {std::to_string(done_), std::to_string(steps_)}));
    lineStands = true;
}

} // namespace veldacov
