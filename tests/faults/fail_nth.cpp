// Preloaded into the program: lets one of its calls fail, and stops its clock so that runs can be compared.
//
//   FAULT_KIND  allocation, write, read, close or open; null: opening the null device; nothing fails without it
//   FAULT_AT    which call of the kind, the first being 1; 0 only counts
//   FAULT_HOW   on: this call and all later ones fail; once: only this one; short: it does half of its work;
//               part: half of its work, and all later ones fail; torn: half of its work, and the next one fails;
//               interrupt: a signal came before it
//   FAULT_LOG   where the file of each failing call is noted ("at OFFSET FILE"), and at the end "calls NUMBER"
//
// Counting starts at main: the loader is not meant. Messages on standard error do not count either; nothing is left
// to tell the user when they fail.

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

using Main = int (*)(int, char**, char**);

Main programMain = nullptr;
bool counting = false;
const char* kind = "";
const char* how = "on";
unsigned long failAt = 0;
unsigned long calls = 0;
int logFile = -1;

enum class Fate { Done, Fails, Halved, Interrupted };

Fate fateOf(const char* callKind) {
    if (!counting || std::strcmp(callKind, kind) != 0) {
        return Fate::Done;
    }
    ++calls;
    if (failAt == 0 || calls < failAt) {
        return Fate::Done;
    }
    if (calls > failAt) {
        const bool tornNow = std::strcmp(how, "torn") == 0 && calls == failAt + 1;
        return tornNow || std::strcmp(how, "on") == 0 || std::strcmp(how, "part") == 0 ? Fate::Fails
                                                                                       : Fate::Done;
    }
    switch (*how) {
    case 's':
    case 't':
    case 'p': return Fate::Halved;
    case 'i': return Fate::Interrupted;
    default: return Fate::Fails;
    }
}

void note(const char* text, std::size_t length) {
    if (logFile >= 0) {
        syscall(SYS_write, logFile, text, length);
    }
}

void noteFile(int descriptor, long offset) {
    std::array<char, 64> link{};
    std::array<char, 1024> line{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    const int head = std::snprintf(line.data(), line.size(), "at %ld ", offset);
    const ssize_t length = readlink(link.data(), line.data() + head, line.size() - 64);
    line[static_cast<std::size_t>(head + length)] = '\n';
    note(line.data(), static_cast<std::size_t>(head + length + 1));
}

bool refusesMemory() {
    if (fateOf("allocation") == Fate::Done) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

template <typename Result, typename Call>
Result failing(const char* callKind, int error, int descriptor, std::size_t size, Call call) {
    const Fate fate = fateOf(callKind);
    if (fate == Fate::Done) {
        return call(size);
    }
    noteFile(descriptor, lseek(descriptor, 0, SEEK_CUR));
    if (fate == Fate::Halved && size > 1) {
        return call(size / 2);
    }
    errno = fate == Fate::Interrupted ? EINTR : error;
    return -1;
}

int openOrFail(int directory, const char* path, int flags, mode_t mode) {
    const Fate fate = fateOf(std::strcmp(path, "/dev/null") == 0 ? "null" : "open");
    if (fate != Fate::Done) {
        note("at 0 ", 5);
        note(path, std::strlen(path));
        note("\n", 1);
        errno = fate == Fate::Interrupted ? EINTR : EMFILE;
        return -1;
    }
    return static_cast<int>(syscall(SYS_openat, directory, path, flags, mode));
}

void noteCalls() {
    std::array<char, 32> line{};
    const int length = std::snprintf(line.data(), line.size(), "calls %lu\n", calls);
    note(line.data(), static_cast<std::size_t>(length));
}

int countedMain(int argumentCount, char** arguments, char** environment) {
    const auto value = [](const char* name, const char* otherwise) {
        const char* found = std::getenv(name);
        return found != nullptr ? found : otherwise;
    };
    kind = value("FAULT_KIND", "");
    how = value("FAULT_HOW", "on");
    failAt = std::strtoul(value("FAULT_AT", "0"), nullptr, 10);
    if (const char* name = std::getenv("FAULT_LOG")) {
        constexpr int outOfTheWay = 100;
        const int file =
            static_cast<int>(syscall(SYS_openat, AT_FDCWD, name, O_WRONLY | O_CREAT | O_APPEND, 0666));
        logFile = static_cast<int>(syscall(SYS_fcntl, file, F_DUPFD_CLOEXEC, outOfTheWay));
        syscall(SYS_close, file);
        std::atexit(noteCalls);
    }
    counting = true;
    return programMain(argumentCount, arguments, environment);
}

} // namespace

extern "C" {

int __libc_start_main(Main main, int argumentCount, char** arguments, void (*start)(), void (*finish)(),
                      void (*finishLoader)(), void* stackEnd) {
    programMain = main;
    const auto next = reinterpret_cast<decltype(&__libc_start_main)>(dlsym(RTLD_NEXT, "__libc_start_main"));
    return next(countedMain, argumentCount, arguments, start, finish, finishLoader, stackEnd);
}

void* malloc(std::size_t size) noexcept {
    return refusesMemory() ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    return refusesMemory() ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) noexcept {
    return refusesMemory() ? nullptr : __libc_realloc(block, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return refusesMemory() ? nullptr : __libc_memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
    *block = refusesMemory() ? nullptr : __libc_memalign(alignment, size);
    return *block != nullptr ? 0 : ENOMEM;
}

ssize_t write(int file, const void* from, std::size_t size) {
    const auto call = [&](std::size_t length) { return syscall(SYS_write, file, from, length); };
    return file == STDERR_FILENO ? call(size) : failing<ssize_t>("write", ENOSPC, file, size, call);
}

ssize_t pwrite(int file, const void* from, std::size_t size, off_t place) {
    return failing<ssize_t>("write", ENOSPC, file, size, [&](std::size_t length) {
        return syscall(SYS_pwrite64, file, from, length, place);
    });
}

ssize_t read(int file, void* into, std::size_t size) {
    return failing<ssize_t>("read", EIO, file, size,
                            [&](std::size_t length) { return syscall(SYS_read, file, into, length); });
}

ssize_t pread(int file, void* into, std::size_t size, off_t place) {
    return failing<ssize_t>("read", EIO, file, size, [&](std::size_t length) {
        return syscall(SYS_pread64, file, into, length, place);
    });
}

ssize_t pwrite64(int file, const void* from, std::size_t size, off64_t place) {
    return pwrite(file, from, size, place);
}
ssize_t pread64(int file, void* into, std::size_t size, off64_t place) {
    return pread(file, into, size, place);
}

// A descriptor is free again even when its close reports that bytes were lost.
int close(int file) {
    const bool fails = fateOf("close") != Fate::Done;
    if (fails) {
        noteFile(file, 0);
    }
    const auto result = static_cast<int>(syscall(SYS_close, file));
    errno = fails ? EIO : errno;
    return fails ? -1 : result;
}

int openat(int directory, const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return openOrFail(directory, path, flags, mode);
}

int open(const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return openOrFail(AT_FDCWD, path, flags, mode);
}

int open64(const char* path, int flags, ...) __attribute__((alias("open")));
int openat64(int directory, const char* path, int flags, ...) __attribute__((alias("openat")));

std::time_t time(std::time_t* into) noexcept {
    constexpr std::time_t instant = 1795389409;
    if (into != nullptr) {
        *into = instant;
    }
    return instant;
}
}
