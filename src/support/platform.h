#pragma once

// The few calls that differ between operating systems: descriptors, file status, local time, user, signals.
// Nothing here prints or translates; failures are return values.

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

namespace veldacov::platform {

// A file descriptor that is closed with its owner; -1 when it holds none.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor&& other) noexcept;
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor();

    [[nodiscard]] int number() const { return number_; }
    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    // Closes now; false when the system reports that written bytes may be lost.
    bool close();

private:
    int number_ = -1;
};

// Opens an existing file for reading; none when it cannot be read or is a directory. A pipe waits for its writer.
Descriptor openForReading(const std::string& path);
// Opens for writing, created when missing; truncated, or written at its end.
Descriptor createForWriting(const std::string& path);
Descriptor openForAppending(const std::string& path);
// Opens a file for reading and writing in place: an existing one, or one that is created when missing.
Descriptor openForUpdate(const std::string& path);
Descriptor createIfMissing(const std::string& path);
// Creates an empty file that must not exist yet; when it cannot be created, systemErrorText says why.
struct ExclusiveCreation {
    Descriptor file;
    bool existedAlready = false;
};
ExclusiveCreation createExclusively(const std::string& path);
// Creates a file without a name in a directory, for reading and writing; it is gone when it is closed.
Descriptor createUnnamed(const std::string& directory);
// Descriptors that every process starts with.
constexpr int standardOutput = 1;
constexpr int standardError = 2;
bool isTerminal(int descriptor);
// A descriptor of its own for an open file.
Descriptor duplicate(int descriptor);
bool removeFile(const std::string& path);
// Goes back to the start of a file.
void rewindFile(int descriptor);

// Creates a folder that must not exist yet.
bool createFolder(const std::string& path);
// A folder that no other process has locked, locked until the descriptor is closed; none when it is not there, is no
// folder itself (but a link to one), or is locked.
Descriptor lockFolder(const std::string& path);
// Gives a name to what has another one, and that name back, in one step; false where the file system cannot.
bool exchangeNames(const std::string& one, const std::string& other);
// Gives a file or folder another name, in place of what had it; a folder only in place of an empty one.
bool rename(const std::string& from, const std::string& to);
// Number of this process.
std::uint32_t processNumber();

// Reads up to `size` bytes; 0 at the end of the file, none after a read error.
std::optional<std::size_t> readSome(int descriptor, char* into, std::size_t size);
// Reads at a position, up to the end of the file or a read error.
std::size_t readAt(int descriptor, std::uint64_t position, char* into, std::size_t size);
// Writes all bytes at the descriptor's position; false when one could not be written.
bool writeAll(int descriptor, std::string_view bytes);
// Writes bytes at a position, in one call where the system allows it; gives how many were written.
std::size_t writeAt(int descriptor, std::uint64_t position, std::string_view bytes);
// Ends the file at a length; false when the system does not allow it.
bool cutFile(int descriptor, std::uint64_t length);
// Length of the file in bytes; none when the system does not tell.
std::optional<std::uint64_t> fileLength(int descriptor);

// Other: devices, but for the null device, and sockets.
enum class FileKind : std::uint8_t { Regular, Directory, Pipe, NullDevice, Other };
// What tells files apart, whatever names lead to them: an existing one its device and number there; a missing one,
// with a name, those of the directory where it would be.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    std::string missingName;

    bool operator<(const FileIdentity& other) const {
        return std::tie(device, number, missingName) <
               std::tie(other.device, other.number, other.missingName);
    }
};
struct FileStatus {
    std::int64_t modificationTime = 0; // seconds since 1970
    FileKind kind = FileKind::Other;
    FileIdentity identity;
};
// None when the file cannot be examined.
std::optional<FileStatus> fileStatus(const std::string& path);
std::optional<FileStatus> fileStatus(int descriptor);
// The identity that a missing file would have if it were created, at the end of symbolic links that lead nowhere yet; none
// without a directory.
std::optional<FileIdentity> identityOfMissing(const std::string& path);

// An instant (seconds since 1970) in the time zone of the user.
std::tm localTime(std::int64_t secondsSince1970);

// Keeps freed memory for the next request. Giving the buffers of one file back to the system and taking them anew
// for the next would cost more than reading the files.
void keepFreedMemory();

// Asks for large pages behind a block of memory; without them nothing changes but the speed of first touches.
void preferLargePages(void* block, std::size_t size);

// Name of the effective user in the user database; none when the database does not know him.
std::optional<std::string> userName();

// The text of the last failed call of this thread.
std::string systemErrorText();

// Gives descriptors 0 to 2 a harmless target when the parent closed them, so that no file opened later
// receives what is meant for a standard stream. Writing to a stream that was closed still fails.
void reserveStandardDescriptors();

// Ends the process from a crash signal (segmentation violation and its kin): writes `message` to standard
// error, calls `lastWrites` to save buffered output, and exits with `status` at once. Runs on a stack of its
// own, so that an exhausted stack is reported too. `message` is copied; `lastWrites` may only write.
void installCrashHandler(std::string_view message, void (*lastWrites)(), int status);

// While one is alive, an interrupt (Ctrl+C) only sets a flag; the previous handling returns with its end.
class InterruptWatch {
public:
    InterruptWatch();
    ~InterruptWatch();
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;
    [[nodiscard]] static bool interrupted();
};

// While one is alive, signals that would end the process (interrupt, termination, hang-up, a pipe without reader) wait;
// one that has come meanwhile ends the process with the holder's end.
class EndingSignalsHeld {
public:
    EndingSignalsHeld();
    ~EndingSignalsHeld();
    EndingSignalsHeld(const EndingSignalsHeld&) = delete;
    EndingSignalsHeld& operator=(const EndingSignalsHeld&) = delete;

private:
    sigset_t before_;
};

// A file that may not grow further fails the write, as a full disk does, instead of ending the process.
void letTooLargeFilesFail();

} // namespace veldacov::platform
