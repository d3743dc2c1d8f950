#include "support/output.h"

#include <array>
#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

#include "driver/program.h"
#include "unit/test_support.h"

namespace veldacov::test {
namespace {

class Output : public FreshProgram {
protected:
    OutputFile create(const std::string& name) {
        return {platform::createForWriting(path(name)), path(name)};
    }
};

TEST_F(Output, TextsNumbersAndRates) {
    const std::string large(600000, 'x'); // does not fit the buffer
    OutputFile first = create("f");
    first.put(large);
    OutputFile out = std::move(first); // what is buffered moves along
    out.putNumber(0);
    out.putNumber(4294967295U, 12);
    putLine(out, " text ", 'c', std::uint32_t{7}, large);
    for (const double rate : {0.0, 5.25, 33.35, 66.66667, 99.94, 99.96, 100.0}) {
        out.putRate(rate, 5);
    }
    out.putRate(6.25);
    out.finish();
    EXPECT_EQ(read("f"),
              large + "0  4294967295 text c7" + large + "\n  0.0  5.2 33.4 66.7 99.9100.0100.06.2");
}

TEST_F(Output, RatesOfSinglePrecisionAreRoundedLikeThoseOfDouble) {
    OutputFile out = create("single");
    std::string expected;
    for (std::uint32_t total = 1; total <= 700; ++total) {
        for (std::uint32_t hits = 0; hits <= total; ++hits) {
            const auto rate = static_cast<float>(100.0 * hits / total);
            out.putRate(rate, 5);
            std::array<char, 16> text{};
            expected.append(text.data(), static_cast<std::size_t>(std::snprintf(
                                             text.data(), text.size(), "%5.1f", static_cast<double>(rate))));
        }
    }
    out.finish();
    EXPECT_TRUE(read("single") == expected);
}

TEST_F(Output, AnIncompleteFileIsAFatalErrorThatNamesIt) {
    for (const std::size_t size : {1U, 1000000U}) { // found at the finish, and by a full buffer
        const auto writeTooMuch = [&] {
            OutputFile out{platform::Descriptor(::open("/dev/full", O_WRONLY)), "report.txt"};
            out.put(std::string(size, 'x'));
            out.finish();
        };
        EXPECT_EQ(accountOf(writeTooMuch), fatalAccount("Cannot write to file report.txt"));
    }
    const auto fillStandardOutput = [] {
        ::dup2(::open("/dev/full", O_WRONLY), STDOUT_FILENO);
        OutputFile out = standardOutput();
        out.put("a");
        out.finish();
    };
    EXPECT_EXIT(fillStandardOutput(), testing::ExitedWithCode(7), "Cannot write to file standard output\n$");
}

TEST_F(Output, AnEarlyEndLeavesWhatWasWritten) {
    const auto writeAndEnd = [&](const char* name, auto end) {
        setProductIdentity("Norvik", "veldacov");
        OutputFile out;
        out = create(name); // moved: its new place is the one that is saved
        out.put("so far");
        end();
    };
    EXPECT_EXIT(writeAndEnd("fatal", [] { fatalError("stop"); }), testing::ExitedWithCode(7), "stop");
    EXPECT_EXIT(writeAndEnd("crash", [] { std::raise(SIGSEGV); }), testing::ExitedWithCode(9), "support");
    EXPECT_EQ(read("fatal") + read("crash"), "so farso far");
}

// Nothing of a run that ended early, with its outputs open and a test begun, is left in the next one.
TEST_F(Output, ARunCanBeRepeatedInOneProcess) {
    ::unsetenv("VELDA_TPM_ROOT");
    write("a.fdc", descriptionOf("PR 0 proc \"f\" 1 1\nAP 0 \"f\" \"g\" 1 1\n"));
    write("good.tio", "NT \"a\" 1 1\nFT 36\nDC 7\nTA 0\n");
    write("bad.tio", "NT \"a\" 2 2\nFT 36\nDC 7\nTP 0\nNT \"b\" 3 3\nTA 0\nXX\n");
    const auto accountOfRun = [&](const std::string& trace) {
        return accountHere([&] {
            runProgram({"veldacov", path("a.fdc"), path(trace), "-NOGLOBAL", "-TEST=a,b", "-CALL", "-PROC",
                        "-SUMMARY=SERVICE", "-OUTPUT=" + path("report"), "-CIO=" + path("cio")});
        });
    };
    const auto outputs = [&] { // behind their dates
        const std::string report = read("report");
        const std::string cio = read("cio");
        return report.substr(report.find("Test ")) + cio.substr(cio.find("\nT"));
    };
    EXPECT_EQ(accountOfRun("good.tio"), "WARNING: Test b in -TEST option was unknown in trace file list\n");
    const std::string first = outputs();
    for (int round = 0; round < 2; ++round) {
        resetProgram();
        EXPECT_EQ(accountOfRun("bad.tio"), fatalAccount("Unknown opcode in trace file bad.tio"));
        resetProgram();
        accountOfRun("good.tio");
        EXPECT_EQ(outputs(), first);
    }
    EXPECT_NE(first.find("100.0% (1/1), +100.0 (+1)"), std::string::npos) << first;
}

} // namespace
} // namespace veldacov::test
