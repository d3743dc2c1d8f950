#pragma once

// Keeps copies of many small texts in large blocks.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace veldacov {

// The copies stay where they are, and are valid as long as the store. Every copy is an object of its own,
// equal texts included.
class TextStore {
public:
    std::string_view keep(std::string_view text) {
        char* copy = room(text.size());
        std::copy_n(text.data(), text.size(), copy);
        return {copy, text.size()};
    }
    // The same with a NUL byte behind it, for texts that have none: their length need not be kept.
    const char* keepTerminated(std::string_view text) {
        char* copy = room(text.size() + 1);
        *std::copy_n(text.data(), text.size(), copy) = '\0';
        return copy;
    }

private:
    char* room(std::size_t size) {
        if (size > free_) {
            free_ = std::max(size, blockSize);
            blocks_.push_back(std::make_unique_for_overwrite<char[]>(free_));
            next_ = blocks_.back().get();
        }
        free_ -= size;
        return std::exchange(next_, next_ + size);
    }

    static constexpr std::size_t blockSize = std::size_t{16} * 1024;

    std::vector<std::unique_ptr<char[]>> blocks_;
    char* next_ = nullptr;
    std::size_t free_ = 0;
};

} // namespace veldacov
