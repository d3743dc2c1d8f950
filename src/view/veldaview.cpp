// The second program: one campaign is loaded, and one of the things below is made of it.

#include <array>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "description/model.h"
#include "description/name_pool.h"
#include "support/machine.h"
#include "support/run_files.h"
#include "support/start_up.h"
#include "view/command_line.h"
#include "view/commands.h"

namespace veldacov {

namespace {

int run(const ViewRequest& request) {
    switch (request.command) {
    case ViewCommand::Check: return runCheck(request);
    case ViewCommand::Tests: return runTests(request);
    }
    return static_cast<int>(ExitStatus::Normal);
}

int runGuarded(const std::vector<std::string>& words) {
    try {
        initNamePool();
        const int status = run(readViewCommandLine(words));
        forgetRunFiles();
        freeAllDescriptions();
        freeNamePool();
        return status;
    } catch (const std::bad_alloc&) {
        memoryExhausted();
    } catch (const std::length_error&) { // more than a container could ever hold
        memoryExhausted();
    }
}

} // namespace

} // namespace veldacov

int main(int argumentCount, char** arguments) {
    using namespace veldacov;
    constexpr std::array families = {"cov_", "common_", "view_", "ulmoident_"};
    const ProgramStart start(argumentCount, arguments, "veldaview", families, Installation::Optional);
    escapeControlsInMessages();
    return runGuarded({arguments, arguments + argumentCount});
}
