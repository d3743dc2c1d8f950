#include "outputs/TPM_Write_CommandLine.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <new>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "description/model.h"
#include "outputs/TPM_Error.h"
#include "report/auth.h"
#include "support/files.h"
#include "support/machine.h"
#include "support/output.h"
#include "support/platform.h"

namespace veldacov {

namespace {

constexpr const char* rootVariable = "VELDA_TPM_ROOT";
constexpr const char* userVariable = "VELDA_TPM_USER";
constexpr std::size_t mostValues = 9999;
constexpr std::size_t wordSize = 4;
constexpr std::size_t entrySize = 2 * wordSize;

// A file of the database, with what a measure that fails needs to make it again what it was.
struct ChangingFile {
    std::string name;
    platform::Descriptor descriptor;
    bool created = false; // by this measure
    bool changed = false; // and so:
    std::uint64_t lengthBefore = 0;
    std::uint64_t changedFrom = 0;
    std::string bytesBefore; // those that were written over
};

// One measure on its way into its database.
struct Measure {
    ChangingFile index;
    ChangingFile database;
    std::string lockFile;
    std::uint32_t key = 0;
    std::uint32_t time = 0;
    std::span<const std::uint32_t> values;
    std::vector<std::uint32_t> totals;

    // Time, key, and a value and a total each.
    [[nodiscard]] std::size_t recordSize() const { return 2 * wordSize * (values.size() + 1); }
};

// Where the index has the measure's key.
struct IndexEntry {
    std::uint64_t position = 0;                // of its entry; the end of the file when it has none
    std::optional<std::uint32_t> recordOffset; // of its latest record
};

// Shows a problem; every step of the database gives false then.
bool problem(const QString& message) {
    showTpmError(message);
    return false;
}

void putWord(std::string& bytes, std::uint32_t word) {
    for (std::size_t i = 0; i < wordSize; ++i) {
        bytes += static_cast<char>(word >> (8 * i) & 0xFFU);
    }
}

std::uint32_t wordAt(const std::string& bytes, std::size_t number) {
    std::uint32_t word = 0;
    for (std::size_t i = wordSize; i-- > 0;) {
        word = word << 8U | static_cast<unsigned char>(bytes[number * wordSize + i]);
    }
    return word;
}

std::uint32_t valueIn(const std::string& record, std::size_t i) {
    return wordAt(record, 2 + 2 * i);
}

std::uint32_t totalIn(const std::string& record, std::size_t i) {
    return wordAt(record, 3 + 2 * i);
}

std::string indexEntry(std::uint32_t key, std::uint64_t offset) {
    std::string bytes;
    putWord(bytes, key);
    putWord(bytes, static_cast<std::uint32_t>(offset));
    return bytes;
}

std::string recordBytes(const Measure& measure) {
    std::string bytes;
    putWord(bytes, measure.time);
    putWord(bytes, measure.key);
    for (std::size_t i = 0; i < measure.values.size(); ++i) {
        putWord(bytes, measure.values[i]);
        putWord(bytes, measure.totals[i]);
    }
    return bytes;
}

// A file's bytes from a position on, as far as there are any.
std::string bytesAt(const platform::Descriptor& file, std::uint64_t position, std::size_t size) {
    std::string bytes(size, '\0');
    bytes.resize(platform::readAt(file.number(), position, bytes.data(), size));
    return bytes;
}

std::uint64_t lengthOf(const platform::Descriptor& file) {
    return platform::fileLength(file.number()).value_or(0);
}

bool openOrCreate(ChangingFile& file) {
    const bool existed = fileExists(file.name);
    file.descriptor = platform::createIfMissing(file.name);
    file.created = !existed && file.descriptor.isOpen();
    return file.descriptor.isOpen();
}

// Writes over what is at a position, or behind the end; gives how many bytes went out.
std::size_t writeTo(ChangingFile& file, std::uint64_t position, const std::string& bytes) {
    file.lengthBefore = lengthOf(file.descriptor);
    file.changedFrom = position;
    file.bytesBefore = bytesAt(file.descriptor, position,
                               std::min<std::uint64_t>(bytes.size(), file.lengthBefore - position));
    const std::size_t written = platform::writeAt(file.descriptor.number(), position, bytes);
    file.changed = written > 0;
    return written;
}

// Makes a file again what it was before the measure; false when the system does not let it.
bool restore(ChangingFile& file) {
    if (file.created) {
        return platform::removeFile(file.name);
    }
    if (!file.changed) {
        return true;
    }
    if (!file.descriptor.isOpen()) { // it was its close that failed
        file.descriptor = platform::openForUpdate(file.name);
    }
    const int number = file.descriptor.number();
    return platform::writeAt(number, file.changedFrom, file.bytesBefore) == file.bytesBefore.size() &&
           platform::cutFile(number, file.lengthBefore);
}

// The record goes only when no entry can name it any more.
void takeBack(Measure& measure) {
    if (restore(measure.index)) {
        restore(measure.database);
    }
}

// The lock file, held from its creation to its removal.
class DatabaseLock {
public:
    explicit DatabaseLock(const std::string& name) : name_(name) {}
    ~DatabaseLock() { // still held when memory runs out meanwhile: a lock that stays would stop every later run
        if (file_.isOpen()) {
            static_cast<void>(platform::removeFile(name_));
        }
    }
    DatabaseLock(const DatabaseLock&) = delete;
    DatabaseLock& operator=(const DatabaseLock&) = delete;

    // Creates the lock file; waits while another process has it. False, after showing why, without the lock.
    bool take() {
        platform::ExclusiveCreation creation = platform::createExclusively(name_);
        if (creation.existedAlready) {
            creation = waitForOther();
        } else if (!creation.file.isOpen()) {
            return problemOfCreation();
        }
        file_ = std::move(creation.file);
        return file_.isOpen();
    }

    // Removes the lock file; false, after showing why, when that fails.
    bool release() {
        const bool closed = file_.close();
        const std::string reasonOfClose = closed ? std::string() : platform::systemErrorText();
        const bool removed = platform::removeFile(name_);
        if (closed && removed) {
            return true;
        }
        const std::string reason = closed ? platform::systemErrorText() : reasonOfClose;
        showTpmError(translate("Error", "Error unlocking transaction"));
        writeStandardError(fromLocal(reason) + QLatin1Char('\n'));
        return false;
    }

private:
    bool problemOfCreation() {
        const std::string reason = platform::systemErrorText();
        showTpmError(filled(translate("Error", "Cannot open file :%1\n", "%1 is a file name"), {name_}));
        return problem(filled(translate("Error", "Reason is : %1\n", "%1 is a system message"), {reason}));
    }

    platform::ExclusiveCreation waitForOther() {
        flushOpenOutputs(); // who waits for long may be ended from outside: the report is written by then
        platform::ExclusiveCreation creation = retryUntilInterrupted();
        if (creation.file.isOpen()) {
            showTpmError(translate("Error", "File is now available"));
        } else if (creation.existedAlready) {
            showTpmError(filled(
                translate("Error", "User break.\n  File is still in use.\n  Please wait until previous "
                                   "task has finished\n      or remove file: %1"),
                {name_}));
        } else {
            problemOfCreation(); // the directory is gone, or no longer writable
        }
        return creation;
    }

    // The message asks for an interrupt: one that answers it at once is seen, too.
    platform::ExclusiveCreation retryUntilInterrupted() {
        constexpr std::chrono::milliseconds pause(10); // an update takes less than one
        const platform::InterruptWatch watch;
        showTpmError(filled(
            translate("Error", "File is currently in use.\n  Please break\n      or wait until previous "
                               "task has finished\n      or remove file: %1"),
            {name_}));
        platform::ExclusiveCreation creation = platform::createExclusively(name_);
        while (creation.existedAlready && !platform::InterruptWatch::interrupted()) {
            std::this_thread::sleep_for(pause);
            creation = platform::createExclusively(name_);
        }
        return creation;
    }

    const std::string& name_;
    platform::Descriptor file_;
};

// Starts a database: the first record's totals are its values. A missing index file is created behind the
// record, or a run that is killed in between would leave an index that no record can be found with.
bool createDatabase(Measure& measure) {
    measure.totals.assign(measure.values.begin(), measure.values.end());
    if (!openOrCreate(measure.database)) {
        return problem(translate("Error", "Unable to create DataBase file"));
    }
    const std::uint64_t offset = lengthOf(measure.database.descriptor);
    const std::string record = recordBytes(measure);
    const std::size_t written = writeTo(measure.database, offset, record);
    if (written < entrySize) {
        return problem(translate("Error", "Unable to write in DataBase file"));
    }
    if (written < record.size()) {
        return problem(translate("Error", "Unable write in DataBase file"));
    }
    if (!openOrCreate(measure.index)) {
        return problem(translate("Error", "Unable to create TPM file"));
    }
    const std::string entry = indexEntry(measure.key, offset);
    const std::size_t entryWritten = writeTo(measure.index, lengthOf(measure.index.descriptor), entry);
    if (entryWritten < wordSize) {
        return problem(translate("Error", "Unable to write in Index file"));
    }
    if (entryWritten < entry.size()) {
        return problem(translate("Error", "Unable to write fail in Index file"));
    }
    if (!measure.index.descriptor.close()) {
        return problem(translate("Error", "Unable to close Index file"));
    }
    return measure.database.descriptor.close() || problem(translate("Error", "Unable close DataBase file"));
}

// The key's entry; a rest of less than an entry at the end of the file is none. None, after showing why, when
// the index cannot be read.
std::optional<IndexEntry> findInIndex(const platform::Descriptor& index, std::uint32_t key) {
    const std::uint64_t length = lengthOf(index);
    const std::string bytes = bytesAt(index, 0, length);
    if (bytes.size() < length) {
        problem(translate("Error", "Unable to read index file"));
        return std::nullopt;
    }
    for (std::size_t entry = 0; (entry + 1) * entrySize <= length; ++entry) {
        if (wordAt(bytes, 2 * entry) == key) {
            return IndexEntry{entry * entrySize, wordAt(bytes, 2 * entry + 1)};
        }
    }
    return IndexEntry{length, std::nullopt};
}

// The last record of the database, which holds the running totals. None after showing why.
std::optional<std::string> lastRecord(const platform::Descriptor& database, std::size_t size) {
    const std::uint64_t length = lengthOf(database);
    if (length < size) {
        problem(translate("Error", "Reposition in DataBase file fail"));
        return std::nullopt;
    }
    std::string record = bytesAt(database, length - size, size);
    if (record.size() < size) {
        problem(translate("Error", "Unable to read DataBase file"));
        return std::nullopt;
    }
    return record;
}

// The totals with the measure's values in place of those of the key's latest record, if it has one.
bool computeTotals(Measure& measure, std::optional<std::uint32_t> recordOffset) {
    platform::Descriptor database = platform::openForUpdate(measure.database.name);
    if (!database.isOpen()) {
        return problem(translate("Error", "Unable to open DataBase file"));
    }
    const std::size_t size = measure.recordSize();
    std::string replaced(size, '\0'); // a key without a record has had zeros
    if (recordOffset) {
        replaced = bytesAt(database, *recordOffset, size);
        if (replaced.size() < size) {
            return problem(translate("Error", "Unable to read DataBase file"));
        }
    }
    const std::optional<std::string> last = lastRecord(database, size);
    if (!last) {
        return false;
    }
    for (std::size_t i = 0; i < measure.values.size(); ++i) {
        measure.totals.push_back(totalIn(*last, i) - valueIn(replaced, i) + measure.values[i]); // wraps
    }
    return database.close() || problem(translate("Error", "Unable to close DataBase"));
}

// Appends the record; gives its offset. None after showing why.
std::optional<std::uint64_t> appendRecord(Measure& measure) {
    if (!openOrCreate(measure.database)) {
        problem(translate("Error", "Unable to open DataBase file"));
        return std::nullopt;
    }
    const std::uint64_t offset = lengthOf(measure.database.descriptor);
    const std::string record = recordBytes(measure);
    if (writeTo(measure.database, offset, record) < record.size()) {
        problem(translate("Error", "Unable to update DataBase file"));
        return std::nullopt;
    }
    if (!measure.database.descriptor.close()) {
        problem(translate("Error", "Unable close DataBase file"));
        return std::nullopt;
    }
    return offset;
}

bool updateDatabase(Measure& measure) {
    measure.index.descriptor = platform::openForUpdate(measure.index.name);
    if (!measure.index.descriptor.isOpen()) {
        return problem(translate("Error", "Unable to open index file"));
    }
    const std::optional<IndexEntry> found = findInIndex(measure.index.descriptor, measure.key);
    if (!found || !computeTotals(measure, found->recordOffset)) {
        return false;
    }
    const std::optional<std::uint64_t> offset = appendRecord(measure);
    if (!offset) {
        return false;
    }
    const std::string entry = indexEntry(measure.key, *offset);
    if (writeTo(measure.index, found->position, entry) < entry.size()) {
        return problem(translate("Error", "Unable to update Index File"));
    }
    return measure.index.descriptor.close() || problem(translate("Error", "Unable to close Index file"));
}

bool createOrUpdate(Measure& measure) {
    const bool hasIndex = platform::openForUpdate(measure.index.name).isOpen();
    if (!hasIndex &&
        fileExists(measure.index.name)) { // never start anew beside an index that cannot be opened now
        return problem(translate("Error", "Unable to create TPM file"));
    }
    return hasIndex ? updateDatabase(measure) : createDatabase(measure);
}

// Runs the update; memory that runs out is a problem of the database, and the lock is released all the same. A measure
// that fails leaves no trace.
bool update(Measure& measure) {
    const RefusalIsHandled here;
    bool done = false;
    try {
        done = createOrUpdate(measure);
    } catch (const std::bad_alloc&) {
        problem(translate("Error", "Unable to allocate memory"));
    }
    if (!done) {
        takeBack(measure);
    }
    return done;
}

bool updateUnderLock(Measure& measure) {
    DatabaseLock lock(measure.lockFile);
    if (!lock.take()) {
        return false;
    }
    const platform::EndingSignalsHeld untilReleased; // or the lock would stay, and the next run wait for ever
    const bool done = update(measure);
    return lock.release() && done;
}

// Fills the file names and the time; false, after showing why, when the database has no place.
bool locate(Measure& measure, const std::string& name) {
    const std::optional<std::string> root = getEnvironment(rootVariable);
    if (!root) {
        return problem(translate("Error", "VELDA_TPM_ROOT is not set!",
                                 "VELDA_TPM_ROOT is an environment variable name"));
    }
    if (!fileExists(*root)) {
        return problem(filled(
            translate("Error", "VELDA_TPM_ROOT directory does not exist: %1", "%1 is a directory name"),
            {*root}));
    }
    if (measure.time == 0) {
        measure.time = static_cast<std::uint32_t>(presentTime());
    }
    std::optional<std::string> user = getEnvironment(userVariable);
    if (!user) {
        user = platform::userName();
    }
    if (!user) {
        return problem(translate("Error", "Unable to get User name\n"));
    }
    if (measure.values.size() > mostValues) {
        return problem(translate("Error", "Too many measure sub values"));
    }
    const std::string base = *root + "/" + name + "." + *user + "." + std::to_string(measure.values.size());
    measure.index.name = base + ".idx";
    measure.database.name = base + ".tpm";
    measure.lockFile = base + ".lck";
    return true;
}

void measureFile(const FileDescription& description, const CoverageOptions& options) {
    CoverageCounters hit{};
    CoverageCounters described{};
    for (const Service& service : description.services) {
        if (GetServiceAuth(service.name, options)) {
            sumCounters(described, service.counts);
            sumCounters(hit, coveredOf(service, options));
        }
    }
    std::vector<std::uint32_t> values(hit.begin(), hit.end());
    values.insert(values.end(), described.begin(), described.end());
    writeMeasure("Coverage", description.fileKey, 0, values);
}

} // namespace

void writeCoverageMeasures(const CoverageOptions& options) {
    if (!getEnvironment(rootVariable)) {
        return;
    }
    for (const auto& description : loadedDescriptions()) {
        if (GetFileAuth(description->sourceName, options)) {
            measureFile(*description, options);
        }
    }
}

bool writeMeasure(const std::string& name, std::uint32_t key, std::uint32_t time,
                  std::span<const std::uint32_t> values) {
    Measure measure;
    measure.key = key;
    measure.time = time;
    measure.values = values;
    return !(locate(measure, name) && updateUnderLock(measure));
}

} // namespace veldacov
