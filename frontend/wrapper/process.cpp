#include "process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

#include "interruption.h"
#include "messages.h"

namespace veldacc {

namespace {

constexpr int cannotRunStatus = 127; // as shells have it

volatile std::sig_atomic_t interruptingSignal = 0;
volatile std::sig_atomic_t timeIsUp = 0;

// A signal that comes just before the call that it should end is followed by another one.
void noteInterruption(int signal) {
    interruptingSignal = signal;
    alarm(1);
}

void endIfInterrupted() {
    if (interruptingSignal != 0) {
        throw Interruption{interruptingSignal};
    }
}

void noteTime(int /*signal*/) {
    timeIsUp = 1;
}

// Without SA_RESTART: a signal ends the call that waits.
void handle(int signal, void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    static_cast<void>(sigaction(signal, &action, nullptr));
}

std::vector<char*> pointersTo(const Words& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (const std::string& word : words) {
        pointers.push_back(const_cast<char*>(word.c_str())); // the calls take it so, and do not write
    }
    pointers.push_back(nullptr);
    return pointers;
}

class FileActions {
public:
    FileActions() { posix_spawn_file_actions_init(&actions_); }
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    void open(int descriptor, const std::string& path, int flags) {
        if (!path.empty()) {
            posix_spawn_file_actions_addopen(&actions_, descriptor, path.c_str(), flags, 0666);
        }
    }
    void duplicate(int from, int to) { posix_spawn_file_actions_adddup2(&actions_, from, to); }
    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_ = {};
};

// From the given number of seconds on, the time is up, and up again every second: a signal that comes just before
// the call that it should end is followed by another.
class Alarm {
public:
    explicit Alarm(unsigned seconds) {
        timeIsUp = 0;
        if (seconds != 0) {
            set(seconds, 1);
        }
    }
    ~Alarm() { set(0, 0); }
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;

private:
    static void set(unsigned first, unsigned next) {
        const itimerval times = {.it_interval = {.tv_sec = next, .tv_usec = 0},
                                 .it_value = {.tv_sec = first, .tv_usec = 0}};
        static_cast<void>(setitimer(ITIMER_REAL, &times, nullptr));
    }
};

constexpr std::array<std::string_view, 2> dependencyVariables = {"DEPENDENCIES_OUTPUT=",
                                                                 "SUNPRO_DEPENDENCIES="};

std::vector<char*> environmentWithoutDependencies() {
    std::vector<char*> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        if (std::none_of(dependencyVariables.begin(), dependencyVariables.end(), [&](std::string_view name) {
                return std::string_view(*variable).starts_with(name);
            })) {
            variables.push_back(*variable);
        }
    }
    variables.push_back(nullptr);
    return variables;
}

constexpr unsigned patience = 10; // for programs that do not compute

bool hasHadItsTime(pid_t process, unsigned seconds, std::chrono::steady_clock::time_point begin) {
    clockid_t clock = 0;
    timespec used = {};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &used) != 0) {
        return true;
    }
    return used.tv_sec >= static_cast<time_t>(seconds) ||
           std::chrono::steady_clock::now() - begin >= std::chrono::seconds(seconds) * patience;
}

[[noreturn]] void failBecauseOf(int error, const std::string& program) {
    say(Message::CannotRun, {program, std::generic_category().message(error)});
    throw Failure{cannotRunStatus};
}

Outcome outcomeOf(int wait) {
    return WIFSIGNALED(wait) ? Outcome{.status = 128 + WTERMSIG(wait), .signal = WTERMSIG(wait)}
                             : Outcome{.status = WEXITSTATUS(wait)};
}

} // namespace

pid_t start(const Words& words, const Redirection& redirection) {
    endIfInterrupted();
    FileActions actions;
    constexpr int create = O_WRONLY | O_CREAT | O_TRUNC;
    actions.open(STDIN_FILENO, redirection.standardInput, O_RDONLY);
    actions.open(STDOUT_FILENO, redirection.standardOutput, create);
    if (!redirection.standardError.empty() && redirection.standardError == redirection.standardOutput) {
        actions.duplicate(STDOUT_FILENO, STDERR_FILENO);
    } else {
        actions.open(STDERR_FILENO, redirection.standardError, create);
    }
    pid_t process = 0;
    const std::vector<char*> pointers = pointersTo(words);
    std::vector<char*> variables;
    if (!redirection.ownDependencies) {
        variables = environmentWithoutDependencies();
    }
    char** const environment = variables.empty() ? environ : variables.data();
    const int error =
        posix_spawnp(&process, words.front().c_str(), actions.get(), nullptr, pointers.data(), environment);
    if (error != 0) {
        failBecauseOf(error, words.front());
    }
    return process;
}

Outcome waitFor(pid_t process, unsigned seconds) {
    const Alarm alarm(seconds);
    const auto begin = std::chrono::steady_clock::now();
    int wait = 0;
    while (waitpid(process, &wait, 0) < 0 && errno == EINTR) {
        if (interruptingSignal != 0) {
            stop(process);
            endIfInterrupted();
        }
        if (timeIsUp != 0 && hasHadItsTime(process, seconds, begin)) {
            stop(process);
            return {.status = 1, .late = true};
        }
    }
    endIfInterrupted(); // the same signal may have ended the other program
    return outcomeOf(wait);
}

void stop(pid_t process) {
    static_cast<void>(kill(process, SIGKILL));
    while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

Outcome run(const Words& words, const Redirection& redirection, unsigned seconds) {
    return waitFor(start(words, redirection), seconds);
}

std::string answerOf(const Words& words) {
    const TemporaryDirectory directory;
    const std::string file = directory.file("answer");
    if (!run(words, {.standardOutput = file, .standardError = "/dev/null"}).succeeded()) {
        return {};
    }
    const std::string text = readFile(file).value_or("");
    return text.substr(0, text.find_first_of("\r\n"));
}

void become(const Words& words) {
    const std::vector<char*> pointers = pointersTo(words);
    execvp(pointers.front(), pointers.data());
    failBecauseOf(errno, words.front());
}

void endLike(const Outcome& outcome) {
    if (outcome.signal != 0) {
        handle(outcome.signal, SIG_DFL);
        static_cast<void>(raise(outcome.signal));
    }
    std::_Exit(outcome.status);
}

TemporaryDirectory::TemporaryDirectory() {
    const char* parent = std::getenv("TMPDIR");
    path_ = std::string(parent != nullptr && *parent != '\0' ? parent : "/tmp") + "/veldacc-XXXXXX";
    if (mkdtemp(path_.data()) == nullptr) {
        say(Message::CannotMakeTemporary, {path_, std::generic_category().message(errno)});
        throw Failure{1};
    }
}

TemporaryDirectory::~TemporaryDirectory() {
    if (!kept_) {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
}

void prepareForSignals() {
    handle(SIGCHLD, SIG_DFL); // who ignores it is never told how a program ended
    handle(SIGALRM, noteTime);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
            handle(signal, noteInterruption);
        }
    }
}

} // namespace veldacc
