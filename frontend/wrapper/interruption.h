#pragma once

namespace veldacc {

// Thrown where the program waits, when a signal asks it to end: what is temporary goes away with its owners, and
// main ends the program by the same signal.
struct Interruption {
    int signal = 0;
};

// Thrown when the program cannot go on; what there is to say has been said.
struct Failure {
    int status = 1;
};

} // namespace veldacc
