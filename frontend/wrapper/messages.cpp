#include "messages.h"

#include <cstdio>

#include "installation.h"
#include "process.h"

namespace veldacc {

namespace {

void tell(const char* manner, Message message, const std::vector<std::string>& values) {
    const std::string program = ownFile("veldacc-say");
    static bool asked = false;
    if (asked && message == Message::CannotRun) { // it is the saying that cannot be run
        static_cast<void>(std::fprintf(stderr, "veldacc: %s: %s\n", values[0].c_str(), values[1].c_str()));
        return;
    }
    asked = true;
    Words words = {program, manner, std::to_string(static_cast<int>(message))};
    words.insert(words.end(), values.begin(), values.end());
    static_cast<void>(run(words));
    asked = false;
}

} // namespace

void say(Message message, const std::vector<std::string>& values) {
    tell("say", message, values);
}

void sayAsError(Message message, const std::vector<std::string>& values) {
    tell("error", message, values);
}

} // namespace veldacc
