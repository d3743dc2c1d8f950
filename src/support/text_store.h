#pragma once

// Keeps copies of many small texts in large blocks.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace veldacov {

// The copies stay where they are, and are valid as long as the store. Every copy is an object of its own,
// equal texts included.
class TextStore {
public:
    std::string_view keep(std::string_view text) {
        if (text.size() > free_) {
            const std::size_t size = std::max(text.size(), blockSize);
            blocks_.push_back(std::make_unique_for_overwrite<char[]>(size));
            next_ = blocks_.back().get();
            free_ = size;
        }
        char* copy = next_;
        std::copy_n(text.data(), text.size(), copy);
        next_ += text.size();
        free_ -= text.size();
        return {copy, text.size()};
    }

private:
    static constexpr std::size_t blockSize = std::size_t{16} * 1024;

    std::vector<std::unique_ptr<char[]>> blocks_;
    char* next_ = nullptr;
    std::size_t free_ = 0;
};

} // namespace veldacov
