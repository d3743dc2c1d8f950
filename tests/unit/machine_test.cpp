#include "support/machine.h"

#include <csignal>
#include <cstdlib>
#include <new>

#include "unit/test_support.h"

namespace veldacov::test {
namespace {

using testing::ExitedWithCode;

TEST(MachineDeathTest, MessagesNameTheProductAndEndTheProgram) {
    const auto printAll = [] {
        infoMessage("early"); // before the program has named itself
        setProductIdentity("Product", "tool");
        infoMessage("100% of %1, %3");
        warningMessage("text");
        userError("text");
        fatalError(getProductName());
    };
    EXPECT_EXIT(printAll(), ExitedWithCode(7),
                testing::Eq("Norvik <unnamed binary> - INFO: early\nProduct tool - INFO: 100% of %1, %3\n"
                            "Product tool - WARNING: text\nProduct tool - ERROR: text\nProduct tool - FATAL "
                            "ERROR: Product\n"));
    EXPECT_EXIT(internalError("text"), ExitedWithCode(9),
                testing::Eq("Norvik <unnamed binary> - INTERNAL ERROR: text\n\n"));
    EXPECT_EQ(accountOf([] { internalError("text", "a.cpp", 4294967295U); }),
              "INTERNAL ERROR: text\n[a.cpp:4294967295]\n[9]");
}

TEST(MachineDeathTest, CrashesAndMemoryThatRunsOut) {
    const auto crash = [] {
        setProductIdentity("Product", "tool");
        std::raise(SIGSEGV);
    };
    EXPECT_EXIT(crash(), ExitedWithCode(9),
                testing::Eq("Product tool - INTERNAL ERROR: Please, contact your support\n\n"));
    const auto runOut = [] {
        installMemoryGuard();
        { const RefusalIsHandled meanwhile; }
        std::get_new_handler()();
    };
    EXPECT_EXIT(runOut(), ExitedWithCode(7), testing::Eq("Norvik veldacov - FATAL ERROR: No memory left\n"));
    const auto throwUnseen = [] {
        installMemoryGuard();
        setProductIdentity("Product", "tool");
        const auto throwing = [] { throw std::bad_alloc(); };
        const auto escaping = [&]() noexcept { throwing(); };
        escaping();
    };
    EXPECT_EXIT(throwUnseen(), ExitedWithCode(7),
                testing::Eq("Product tool - FATAL ERROR: No memory left\n"));
}

TEST(Machine, Texts) {
    EXPECT_EQ(duplicateUpper("azAZ09_`{@[ \xE9\xC3\xA9"), "AZAZ09_`{@[ \xE9\xC3\xA9");
    EXPECT_EQ(filled("%2 and %1", {"a", "b"}), "b and a");
    EXPECT_EQ(filled("%1 %2 %1", {"%2", "b"}), "b b b") << "a value takes part in the next filling";
    EXPECT_EQ(filled("%1 %3", {"a", "b"}), "a b") << "the lowest number that is left";
    EXPECT_EQ(toLocal(filled("%1", {"\xC3\xA9"})), "\xC3\xA9");
}

TEST(Machine, EnvironmentVariables) {
    ::setenv("VELDACOV_TEST", "", 1);
    EXPECT_EQ(getEnvironment("VELDACOV_TEST", Presence::Mandatory), "");
    ::unsetenv("VELDACOV_TEST");
    EXPECT_EQ(getEnvironment("VELDACOV_TEST"), std::nullopt);
    EXPECT_EQ(accountOf([] { getEnvironment("VELDACOV_TEST", Presence::Mandatory); }),
              fatalAccount("Environment variable not defined: VELDACOV_TEST"));
}

} // namespace
} // namespace veldacov::test
