// The measure database: its bytes over several runs, damaged files, and its lock.

#include <chrono>
#include <csignal>
#include <thread>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "description/hit_counting.h"
#include "outputs/TPM_Write_CommandLine.h"
#include "unit/test_support.h"

namespace veldacov::test {
namespace {

using Words = std::vector<std::uint32_t>;

std::string bytesOf(const Words& words) {
    std::string bytes;
    for (const std::uint32_t word : words) {
        for (const unsigned shift : {0U, 8U, 16U, 24U}) {
            bytes += static_cast<char>(word >> shift & 0xffU);
        }
    }
    return bytes;
}

// The database M.u1.2 in a directory of its own.
class TpmTest : public FreshProgram {
protected:
    TpmTest() {
        ::setenv("VELDA_TPM_ROOT", path("").c_str(), 1); // ends in a separator, which stays
        ::setenv("VELDA_TPM_USER", "u1", 1);
    }
    ~TpmTest() override {
        ::unsetenv("VELDA_TPM_ROOT");
        ::unsetenv("VELDA_TPM_USER");
    }

    // Writes a measure; gives what was shown, behind "! " when an error was reported, without prefix and root.
    std::string writeShowing(std::uint32_t key, std::uint32_t time, const Words& values) const {
        bool failed = false;
        const std::string shown = accountHere([&] { failed = writeMeasure("M", key, time, values); });
        return (failed ? "! " : "") + replacedThrough(shown, " - Test Process Monitor: ", "");
    }

    // Calls `action` from another thread once the writer waits for the lock (or does not, for a long time).
    template <typename Action>
    static std::thread onceWaiting(Action action) {
        return std::thread([action] {
            const auto latest = std::chrono::steady_clock::now() + std::chrono::seconds(20);
            struct sigaction handling {};
            while (::sigaction(SIGINT, nullptr, &handling) == 0 && handling.sa_handler == SIG_DFL) {
                if (std::chrono::steady_clock::now() > latest) {
                    return;
                }
                std::this_thread::yield();
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20)); // so that it waits indeed
            action();
        });
    }
};

TEST_F(TpmTest, RecordsAreAppendedAndTheirTotalsRun) {
    const struct {
        std::uint32_t key, time;
        Words values, index, lastRecord;
    } rows[] = {
        {0x11, 100, {5, 7}, {0x11, 0}, {100, 0x11, 5, 5, 7, 7}},
        {0x22, 101, {1, 2}, {0x11, 0, 0x22, 24}, {101, 0x22, 1, 6, 2, 9}},
        {0x11, 102, {3, 9}, {0x11, 48, 0x22, 24}, {102, 0x11, 3, 4, 9, 11}},
        {0x22, 103, {4294967295, 0}, {0x11, 48, 0x22, 72}, {103, 0x22, 4294967295, 2, 0, 9}},
        {0x33, 104, {0, 0}, {0x11, 48, 0x22, 72, 0x33, 96}, {104, 0x33, 0, 2, 0, 9}},
    };
    std::string database;
    for (const auto& row : rows) {
        EXPECT_EQ(writeShowing(row.key, row.time, row.values), "");
        database += bytesOf(row.lastRecord);
        EXPECT_EQ(read("M.u1.2.idx"), bytesOf(row.index)) << row.time;
        EXPECT_EQ(read("M.u1.2.tpm"), database) << row.time;
        EXPECT_FALSE(std::filesystem::exists(path("M.u1.2.lck")));
    }
    ::setenv("VELDA_TPM_USER", "u2", 1);
    EXPECT_EQ(writeShowing(0x04030201, 0x08070605, {}), "");
    EXPECT_EQ(read("M.u2.0.idx"), std::string("\1\2\3\4\0\0\0\0", 8));
    EXPECT_EQ(read("M.u2.0.tpm"), "\5\6\7\10\1\2\3\4");
    EXPECT_EQ(writeShowing(7, 0, {}), "");
    EXPECT_NE(read("M.u2.0.tpm").substr(8), bytesOf({0, 7})); // no time is the time of the call
    ::unsetenv("VELDA_TPM_USER");                             // then the system says who runs the program
    const struct passwd* user = ::getpwuid(::geteuid());
    EXPECT_EQ(writeShowing(7, 1, {}), user != nullptr ? "" : "! Unable to get User name\n\n");
    if (user != nullptr) {
        EXPECT_EQ(read("M." + std::string(user->pw_name) + ".0.tpm"), bytesOf({1, 7}));
    }
}

TEST_F(TpmTest, DamagedFilesAreShown) {
    const std::string record = bytesOf({100, 1, 5, 5, 7, 7});
    const std::string entry = bytesOf({1, 0});
    const std::string full = "/dev/full";        // a link to it: all writing fails
    const std::string nowhere = "/nowhere/file"; // a link to it: cannot be created
    const std::array<std::string, 2> names = {"M.u1.2.idx", "M.u1.2.tpm"};
    const std::array<std::string, 3> rows[] = {
        // index, database, what is shown; "" for no file
        {"dir", record, "Unable to create TPM file"},
        {"", "dir", "Unable to create DataBase file"},
        {"", full, "Unable to write in DataBase file"},
        {nowhere, "", "Unable to create TPM file"},
        {nowhere, "rest", "Unable to create TPM file"},
        {entry, "", "Unable to open DataBase file"},
        {entry, "dir", "Unable to open DataBase file"},
        {"rest", "short", "Reposition in DataBase file fail"},
        {entry, "short", "Unable to read DataBase file"},
        {bytesOf({1, 8}), record, "Unable to read DataBase file"},
        {full, record, "Unable to update Index File"},
        {entry.substr(0, 7), record, ""}, // a rest of an entry is passed over
        {"", "rest", ""}};
    for (const auto& row : rows) {
        for (const std::size_t i : {0U, 1U}) {
            const std::string& name = names[i];
            std::filesystem::remove_all(path(name));
            if (row[i] == "dir") {
                std::filesystem::create_directory(path(name));
            } else if (row[i] == full || row[i] == nowhere) {
                std::filesystem::create_symlink(row[i], path(name));
            } else if (!row[i].empty()) {
                write(name, row[i]);
            }
        }
        EXPECT_EQ(writeShowing(1, 100, {5, 7}), row[2].empty() ? "" : "! " + row[2] + "\n");
        EXPECT_FALSE(std::filesystem::exists(path("M.u1.2.lck")));
        for (const std::size_t i : {0U, 1U}) {
            if (!row[2].empty() && row[i] != "dir" &&
                row[i] != full) { // a measure that fails leaves no trace
                EXPECT_EQ(read(names[i]), row[i] == nowhere ? "" : row[i]) << row[2];
                EXPECT_EQ(std::filesystem::exists(path(names[i])), !row[i].empty() && row[i] != nowhere)
                    << row[2];
            }
        }
    }
    EXPECT_EQ(read("M.u1.2.idx"), bytesOf({1, 4})); // behind what the last row found
    EXPECT_EQ(read("M.u1.2.tpm"), "rest" + record);
}

TEST_F(TpmTest, ADatabaseWithoutAPlaceIsShown) {
    EXPECT_EQ(writeShowing(1, 1, Words(9999)), "");
    EXPECT_EQ(writeShowing(1, 1, Words(10000)), "! Too many measure sub values\n");
    ::setenv("VELDA_TPM_ROOT", write("file", "").c_str(), 1);
    EXPECT_EQ(writeShowing(1, 1, {}),
              "! Cannot open file :file/M.u1.0.lck\n\nReason is : Not a directory\n\n");
    ::setenv("VELDA_TPM_ROOT", path("missing").c_str(), 1);
    EXPECT_EQ(writeShowing(1, 1, {}), "! VELDA_TPM_ROOT directory does not exist: missing\n");
    ::unsetenv("VELDA_TPM_ROOT");
    EXPECT_EQ(writeShowing(1, 1, {}), "! VELDA_TPM_ROOT is not set!\n");
    EXPECT_EQ(outcomeOf([] { writeCoverageMeasures({}); }).messages, "");
}

// Whole programs that wait are tests of their own (database_faults.py); this one is about what a wait leaves behind.
TEST_F(TpmTest, InterruptsAreHandledDuringAWaitOnly) {
    ::signal(SIGINT, SIG_DFL);
    const std::string lock = write("M.u1.1.lck", "");
    std::thread removing = onceWaiting([&] { std::filesystem::remove(lock); });
    EXPECT_EQ(writeShowing(1, 1, {1}),
              "File is currently in use.\n  Please break\n      or wait until previous task has finished\n"
              "      or remove file: /M.u1.1.lck\nFile is now available\n");
    removing.join();
    EXPECT_EQ(read("M.u1.1.tpm"), bytesOf({1, 1, 1, 1}));
    EXPECT_EQ(::signal(SIGINT, SIG_DFL), SIG_DFL);
}

TEST_F(TpmTest, CoverageMeasuresHoldHitsAndItemsOfSelectedServices) {
    FileDescription& a =
        load(descriptionOf("PR 0 proc \"f\" 1 1\nPR 1 return \"f\" 1 1\nAP 0 \"f\" \"g\" 1 1\n"
                           "AP 1 \"h\" \"f\" 1 1\n"));
    load(descriptionOf("AP 0 \"f\" \"g\" 1 1\n", "b.c", "98"));
    internName("b.c")->flags = mark::exFile;
    internName("h")->flags = mark::exService;
    recordHit(a, ItemKind::Call, 0, 1, Counting::Replace);
    resetTestCounts();
    recordHit(a, ItemKind::Procedure, 1, 1, Counting::Replace);
    CoverageOptions options;
    for (const std::uint32_t callHits : {1U, 0U}) {
        options.global = callHits == 1; // of all tests or of the last one
        EXPECT_EQ(outcomeOf([&] { writeCoverageMeasures(options); }).messages, "");
        std::string record;
        for (const std::uint32_t value : {0U, 1U, callHits, 0U, 0U, 0U, 0U, 0U, 0U, 0U, // hit
                                          1U, 2U, 1U,       0U, 0U, 0U, 0U, 0U, 0U, 0U}) {
            record += bytesOf({value, value});
        }
        EXPECT_EQ(read("Coverage.u1.20.idx"), bytesOf({99, options.global ? 0U : 168U}));
        EXPECT_EQ(read("Coverage.u1.20.tpm").substr(options.global ? 8 : 168 + 8), record);
    }
}

} // namespace
} // namespace veldacov::test
