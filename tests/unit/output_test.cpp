#include "support/output.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

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

} // namespace
} // namespace veldacov::test
