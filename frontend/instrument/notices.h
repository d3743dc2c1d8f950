#pragma once

// What the instrumenter has to tell its user: collected while it works, said at the end in the user's language.

#include <cstdint>
#include <string>
#include <vector>

namespace veldacc {

// In the order of the table in notices.cpp, which names the values of each.
enum class NoticeKind : std::uint8_t {
    FunctionLeft,
    CasesLeft,
    MacrosNotMapped,
    NotUnderstood,
    CannotRead,
    CannotWrite,
    UnknownOption,
    BadValue,
};

struct Notice {
    NoticeKind kind = NoticeKind::FunctionLeft;
    std::vector<std::string> values = {};
};

// Prints them on standard error; warnings as errors with `strict`. `program` is argv[0].
void sayNotices(const std::vector<Notice>& notices, bool strict, char* program);

} // namespace veldacc
