// The program: a straight sequence of steps, each done by the module of its name.

#include <array>
#include <string>
#include <vector>

#include "driver/banner.h"
#include "driver/program.h"
#include "support/machine.h"
#include "support/start_up.h"

int main(int argumentCount, char** arguments) {
    using namespace veldacov;
    constexpr std::array families = {"cov_", "common_", "cab_", "ulmoident_"};
    const ProgramStart start(argumentCount, arguments, "veldacov", families, Installation::Required);
    const std::vector<std::string> words(arguments, arguments + argumentCount);
    versionEntry(words);
    runProgram(words);
    return static_cast<int>(ExitStatus::Normal);
}
