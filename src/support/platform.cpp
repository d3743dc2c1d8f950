#include "support/platform.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <malloc.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace veldacov::platform {

namespace {

constexpr mode_t newFileMode = 0666;
constexpr mode_t ownFileMode = 0600;
constexpr const char* nullDevice = "/dev/null";
constexpr std::size_t crashStackSize = std::size_t{64} * 1024;
constexpr std::array crashSignals = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr std::array endingSignals = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};

struct CrashState {
    std::string message;
    void (*lastWrites)() = nullptr;
    int status = 0;
    std::vector<char> stack; // the alternate signal stack; kept for the whole run
};
CrashState crash;

volatile std::sig_atomic_t interruptSeen = 0;
struct sigaction interruptBefore;

void onInterrupt(int) {
    interruptSeen = 1;
}

// Only calls that are safe inside a signal handler: the heap may be what is broken.
void onCrash(int) {
    writeAll(STDERR_FILENO, crash.message);
    if (crash.lastWrites != nullptr) {
        crash.lastWrites();
    }
    _exit(crash.status);
}

Descriptor openFile(const std::string& path, int flags, mode_t mode = newFileMode) {
    int number = -1;
    do {
        number = ::open(path.c_str(), flags | O_CLOEXEC, mode);
    } while (number < 0 && errno == EINTR);
    return Descriptor(number);
}

// Gives how many bytes went out before a write failed.
template <typename Call>
std::size_t writeThrough(std::string_view bytes, Call write) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t written = write(bytes.data() + done, bytes.size() - done, done);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            break;
        }
        done += static_cast<std::size_t>(written);
    }
    return done;
}

template <typename Call>
std::optional<std::size_t> readThrough(Call read) {
    ssize_t count = 0;
    do {
        count = read();
    } while (count < 0 && errno == EINTR);
    return count >= 0 ? std::optional(static_cast<std::size_t>(count)) : std::nullopt;
}

bool isNullDevice(const struct stat& status) {
    struct stat null {};
    return ::stat(nullDevice, &null) == 0 && S_ISCHR(null.st_mode) && status.st_rdev == null.st_rdev;
}

FileKind kindOf(const struct stat& status) {
    switch (status.st_mode & S_IFMT) {
    case S_IFREG: return FileKind::Regular;
    case S_IFDIR: return FileKind::Directory;
    case S_IFIFO: return FileKind::Pipe;
    case S_IFCHR: return isNullDevice(status) ? FileKind::NullDevice : FileKind::Other;
    default: return FileKind::Other;
    }
}

FileStatus statusOf(const struct stat& status) {
    return {status.st_mtime, kindOf(status), {status.st_dev, status.st_ino, {}}};
}

} // namespace

Descriptor::Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) {
        close();
        number_ = std::exchange(other.number_, -1);
    }
    return *this;
}

Descriptor::~Descriptor() {
    close();
}

bool Descriptor::close() {
    const int number = std::exchange(number_, -1);
    return number < 0 || ::close(number) == 0;
}

Descriptor openForReading(const std::string& path) {
    Descriptor file = openFile(path, O_RDONLY);
    struct stat status {};
    if (file.isOpen() && (::fstat(file.number(), &status) != 0 || S_ISDIR(status.st_mode))) {
        return {};
    }
    return file;
}

Descriptor createForWriting(const std::string& path) {
    return openFile(path, O_WRONLY | O_CREAT | O_TRUNC);
}

Descriptor openForAppending(const std::string& path) {
    return openFile(path, O_WRONLY | O_CREAT | O_APPEND);
}

Descriptor openForUpdate(const std::string& path) {
    return openFile(path, O_RDWR);
}

Descriptor createIfMissing(const std::string& path) {
    return openFile(path, O_RDWR | O_CREAT);
}

ExclusiveCreation createExclusively(const std::string& path) {
    ExclusiveCreation creation;
    creation.file = openFile(path, O_RDWR | O_CREAT | O_EXCL);
    creation.existedAlready = !creation.file.isOpen() && errno == EEXIST;
    return creation;
}

bool createFolder(const std::string& path) {
    return ::mkdir(path.c_str(), S_IRWXU | S_IRWXG | S_IRWXO) == 0;
}

Descriptor lockFolder(const std::string& path) {
    Descriptor folder = openFile(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (folder.isOpen() && ::flock(folder.number(), LOCK_EX | LOCK_NB) != 0) {
        return {};
    }
    return folder;
}

bool exchangeNames(const std::string& one, const std::string& other) {
    return ::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0;
}

bool rename(const std::string& from, const std::string& to) {
    return std::rename(from.c_str(), to.c_str()) == 0;
}

std::uint32_t processNumber() {
    return static_cast<std::uint32_t>(::getpid());
}

Descriptor createUnnamed(const std::string& directory) {
    Descriptor file = openFile(directory, O_RDWR | O_TMPFILE, ownFileMode);
    if (!file.isOpen()) { // a file system that cannot have files without a name: take the name away
        std::string name = directory + "/veldacov-XXXXXX";
        file = Descriptor(::mkostemp(name.data(), O_CLOEXEC));
        if (file.isOpen()) {
            removeFile(name);
        }
    }
    return file;
}

bool isTerminal(int descriptor) {
    return ::isatty(descriptor) == 1;
}

Descriptor duplicate(int descriptor) {
    return Descriptor(::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

bool removeFile(const std::string& path) {
    return ::unlink(path.c_str()) == 0;
}

void rewindFile(int descriptor) {
    static_cast<void>(::lseek(descriptor, 0, SEEK_SET));
}

std::optional<std::size_t> readSome(int descriptor, char* into, std::size_t size) {
    return readThrough([&] { return ::read(descriptor, into, size); });
}

std::size_t readAt(int descriptor, std::uint64_t position, char* into, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const auto read = [&] {
            return ::pread(descriptor, into + done, size - done, static_cast<off_t>(position + done));
        };
        const std::size_t count = readThrough(read).value_or(0);
        if (count == 0) {
            break;
        }
        done += count;
    }
    return done;
}

bool writeAll(int descriptor, std::string_view bytes) {
    const auto write = [&](const char* from, std::size_t size, std::size_t) {
        return ::write(descriptor, from, size);
    };
    return writeThrough(bytes, write) == bytes.size();
}

std::size_t writeAt(int descriptor, std::uint64_t position, std::string_view bytes) {
    return writeThrough(bytes, [&](const char* from, std::size_t size, std::size_t done) {
        return ::pwrite(descriptor, from, size, static_cast<off_t>(position + done));
    });
}

bool cutFile(int descriptor, std::uint64_t length) {
    return ::ftruncate(descriptor, static_cast<off_t>(length)) == 0;
}

std::optional<std::uint64_t> fileLength(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(status.st_size);
}

std::optional<FileStatus> fileStatus(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return statusOf(status);
}

std::optional<FileStatus> fileStatus(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
        return std::nullopt;
    }
    return statusOf(status);
}

std::optional<FileIdentity> identityOfMissing(const std::string& path) {
    constexpr int mostLinks = 40; // as many as the system follows
    std::filesystem::path end = path;
    std::error_code failure;
    for (int links = 0; links < mostLinks && std::filesystem::is_symlink(end, failure); ++links) {
        end = end.parent_path() / std::filesystem::read_symlink(end, failure);
    }
    const std::string directory = end.has_parent_path() ? end.parent_path().string() : ".";
    const std::optional<FileStatus> found = fileStatus(directory);
    if (!found || found->kind != FileKind::Directory) {
        return std::nullopt;
    }
    return FileIdentity{found->identity.device, found->identity.number, end.filename().string()};
}

std::tm localTime(std::int64_t secondsSince1970) {
    const auto instant = static_cast<std::time_t>(secondsSince1970);
    std::tm local{};
    ::localtime_r(&instant, &local);
    return local;
}

void keepFreedMemory() {
    constexpr int largestBuffer = 32 * 1024 * 1024; // larger ones still come and go as mappings
    ::mallopt(M_MMAP_THRESHOLD, largestBuffer);
    ::mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    ::mallopt(M_TOP_PAD, 1024 * 1024);
}

void preferLargePages(void* block, std::size_t size) {
    static_cast<void>(::madvise(block, size, MADV_HUGEPAGE));
}

std::optional<std::string> userName() {
    std::vector<char> work(1024);
    struct passwd entry {};
    struct passwd* found = nullptr;
    int result = 0;
    while ((result = ::getpwuid_r(::geteuid(), &entry, work.data(), work.size(), &found)) == ERANGE) {
        work.resize(work.size() * 2);
    }
    if (result != 0 || found == nullptr) {
        return std::nullopt;
    }
    return std::string(found->pw_name);
}

std::string systemErrorText() {
    return std::strerror(errno);
}

void reserveStandardDescriptors() {
    for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
        if (::fcntl(number, F_GETFD) == -1 && errno == EBADF) {
            // The lowest free number is `number` itself. A write must still fail: the null device is opened for
            // reading only, and where there is none, the root directory takes its place, for neither.
            if (::open(nullDevice, O_RDONLY) < 0) {
                static_cast<void>(::open("/", O_PATH));
            }
        }
    }
}

void installCrashHandler(std::string_view message, void (*lastWrites)(), int status) {
    crash.message = message;
    crash.lastWrites = lastWrites;
    crash.status = status;
    crash.stack.resize(crashStackSize);

    stack_t stack{};
    stack.ss_sp = crash.stack.data();
    stack.ss_size = crash.stack.size();
    ::sigaltstack(&stack, nullptr);

    struct sigaction action {};
    action.sa_handler = onCrash;
    action.sa_flags = SA_ONSTACK | static_cast<int>(SA_RESETHAND);
    ::sigemptyset(&action.sa_mask);
    for (const int signal : crashSignals) {
        ::sigaction(signal, &action, nullptr);
    }
}

InterruptWatch::InterruptWatch() {
    interruptSeen = 0;
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, &interruptBefore);
}

InterruptWatch::~InterruptWatch() {
    ::sigaction(SIGINT, &interruptBefore, nullptr);
}

bool InterruptWatch::interrupted() {
    return interruptSeen != 0;
}

EndingSignalsHeld::EndingSignalsHeld() : before_() {
    sigset_t held;
    ::sigemptyset(&held);
    for (const int signal : endingSignals) {
        ::sigaddset(&held, signal);
    }
    ::sigprocmask(SIG_BLOCK, &held, &before_);
}

EndingSignalsHeld::~EndingSignalsHeld() {
    ::sigprocmask(SIG_SETMASK, &before_, nullptr);
}

void letTooLargeFilesFail() {
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
}

} // namespace veldacov::platform
