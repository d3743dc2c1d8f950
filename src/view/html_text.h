#pragma once

// Bytes as text of a page. Names and sources come from anywhere: none of them may end the text that it stands in, or look
// like something else.
//
//   < > & " '               their entities: the same text is safe inside of an element and of a quoted attribute
//   control characters      their pictures, U+2400 and so on; a tab stays
//   what is no UTF-8        U+FFFD for each byte
//   what turns text round   \u202e: the bidirectional controls, also characters without width, show what is not there

#include <string_view>

#include "support/output.h"

namespace veldacov {

void putHtml(OutputFile& out, std::string_view bytes);

} // namespace veldacov
