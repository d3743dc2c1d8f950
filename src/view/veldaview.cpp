// The second program: one campaign is loaded, and one thing is made of it.

#include <array>

#include "support/machine.h"
#include "support/start_up.h"
#include "view/commands.h"

int main(int argumentCount, char** arguments) {
    using namespace veldacov;
    constexpr std::array families = {"cov_", "common_", "view_", "ulmoident_"};
    const ProgramStart start(argumentCount, arguments, "veldaview", families, Installation::Optional);
    escapeControlsInMessages();
    return runView({arguments, arguments + argumentCount});
}
