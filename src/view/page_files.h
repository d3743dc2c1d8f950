#pragma once

// The files of pages that are the same in every run: src/view/pages/style.css and script.js, put in when the program is built.

#include <string_view>

namespace veldacov {

extern const std::string_view pageStyle;
extern const std::string_view pageScript;

} // namespace veldacov
