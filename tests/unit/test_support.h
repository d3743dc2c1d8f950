#pragma once

// What the unit tests share: the end of the program as an exception, standard error as a string, files in a
// fresh directory.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "description/fdcL.h"
#include "description/model.h"
#include "description/name_pool.h"
#include "support/machine.h"
#include "support/run_files.h"

namespace veldacov::test {

struct Ended {
    ExitStatus status;
};

// What a call printed on standard error, and how it ended the program (Normal: it returned).
struct Outcome {
    ExitStatus status = ExitStatus::Normal;
    std::string messages;
};

template <typename Call>
Outcome outcomeOf(Call call) {
    Outcome outcome;
    setProgramEnd([](ExitStatus status) { throw Ended{status}; });
    testing::internal::CaptureStderr();
    try {
        call();
    } catch (const Ended& ended) {
        outcome.status = ended.status;
    }
    outcome.messages = testing::internal::GetCapturedStderr();
    setProgramEnd(nullptr);
    return outcome;
}

// Replaces, on every line that has `mark`, all from the start of the line through the mark.
inline std::string replacedThrough(std::string text, const std::string& mark, const std::string& instead) {
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark)) {
        const std::size_t start = text.rfind('\n', at) + 1; // 0 on the first line
        text.replace(start, at + mark.size() - start, instead);
    }
    return text;
}

// A call's messages without product and executable, then the exit status if it ended the program:
// "WARNING: text\nFATAL ERROR: text\n[7]".
template <typename Call>
std::string accountOf(Call call) {
    const Outcome outcome = outcomeOf(call);
    std::string account = outcome.messages;
    for (const std::string kind : {"INFO: ", "WARNING: ", "ERROR: ", "FATAL ERROR: ", "INTERNAL ERROR: "}) {
        account = replacedThrough(account, " - " + kind, kind);
    }
    if (outcome.status != ExitStatus::Normal) {
        account += "[" + std::to_string(static_cast<int>(outcome.status)) + "]";
    }
    return account;
}

inline std::string fatalAccount(const std::string& text) {
    return "FATAL ERROR: " + text + "\n[7]";
}
inline std::string internalAccount(const std::string& text) {
    return "INTERNAL ERROR: " + text + "\n\n[9]";
}

// A description of src/a.c with the given body lines, of all coverage types, checksum 7 and key 99 (the token
// string "A" folds to 0x41000000, which the number of the DC line takes out).
inline std::string descriptionOf(const std::string& body, const std::string& source = "a.c",
                                 const std::string& key = "99") {
    return "VE 3.0e A\nFC \"" + source + "\" \"src/\"\nFD 0\nTC PR RE AP BS BI BL BA CO CC\n" + body +
           "DC 1090519047 " + key + "\n";
}

// Starts with an empty model and name pool, in an empty directory that goes away with the test.
class FreshProgram : public testing::Test {
protected:
    FreshProgram() {
        std::string pattern = (std::filesystem::temp_directory_path() / "veldacov-test-XXXXXX").string();
        directory_ = ::mkdtemp(pattern.data());
        freeAllDescriptions();
        initNamePool();
    }
    ~FreshProgram() override {
        forgetRunFiles();
        freeAllDescriptions();
        freeNamePool();
        std::filesystem::remove_all(directory_);
    }
    FreshProgram(const FreshProgram&) = delete;
    FreshProgram& operator=(const FreshProgram&) = delete;

    [[nodiscard]] std::string path(const std::string& name) const { return (directory_ / name).string(); }

    // Writes a file of the test's directory; gives its path.
    std::string write(const std::string& name, std::string_view text) const {
        std::ofstream(path(name), std::ios::binary) << text;
        return path(name);
    }

    [[nodiscard]] std::string read(const std::string& name) const {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // The account of a call, with the names of the test's files without their directory.
    template <typename Call>
    std::string accountHere(Call call) const {
        std::string account = accountOf(call);
        const std::string directory = path("");
        for (std::size_t at = account.find(directory); at != std::string::npos;
             at = account.find(directory)) {
            account.erase(at, directory.size());
        }
        return account;
    }

    // Loads a description that is in order; gives its first section.
    FileDescription& load(const std::string& text) const {
        TraceFileList traces;
        const std::string name = write("loaded.fdc", text);
        EXPECT_EQ(accountOf([&] { loadFdcFile(&name, 0, traces); }), "") << text;
        return *loadedDescriptions().back();
    }

private:
    std::filesystem::path directory_;
};

} // namespace veldacov::test
