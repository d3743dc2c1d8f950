#pragma once

// JSON as a stream into an output: memory does not grow with the text.
//
// Names are bytes. Those that are no UTF-8 stand there twice: as text in which what is wrong is replaced, and beside it
// exactly, in base64:
//
//   "name":"caf\ufffd","nameBase64":"Y2Fm6Q=="

#include <array>
#include <cstddef>
#include <string_view>

// An empty stack of the writer adds to a null pointer before it compares; nothing comes of it, but sanitizers stop there.
#define RAPIDJSON_FORCEINLINE __attribute__((no_sanitize("pointer-overflow")))
#include <rapidjson/writer.h>

#include "support/output.h"

namespace veldacov {

// What the writer writes to. The output is borrowed.
class JsonStream {
public:
    using Ch = char;

    explicit JsonStream(OutputFile& out) : out_(&out) {}
    void Put(char character) {
        if (used_ == buffer_.size()) {
            Flush();
        }
        buffer_[used_++] = character;
    }
    void Flush() {
        out_->put(std::string_view(buffer_.data(), used_));
        used_ = 0;
    }

private:
    OutputFile* out_;
    std::size_t used_ = 0;
    std::array<char, 16384> buffer_{};
};

using JsonWriter = rapidjson::Writer<JsonStream>;

// Writes a key that is a literal of this program.
inline void putKey(JsonWriter& json, std::string_view key) {
    json.Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
}
// Writes a text that is known to be UTF-8.
inline void putText(JsonWriter& json, std::string_view text) {
    json.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}
// Writes a member whose value is a name.
void putName(JsonWriter& json, std::string_view key, std::string_view bytes);

} // namespace veldacov
