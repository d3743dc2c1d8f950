#pragma once

// Memory for what lives until the end of the run: millions of small records and texts. Taking memory moves a
// pointer; nothing is given back but all at once.

#include <algorithm>
#include <memory_resource>
#include <string_view>

namespace veldacov {

// Where arenas take their blocks from. Large blocks stand on large pages where the system has them: touching
// the memory of a big description for the first time then costs a fraction.
class BlockSource : public std::pmr::memory_resource {
    void* do_allocate(std::size_t size, std::size_t alignment) override;
    void do_deallocate(void* block, std::size_t size, std::size_t alignment) override;
    [[nodiscard]] bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override;
};
std::pmr::memory_resource& blockSource();

class Arena : public std::pmr::monotonic_buffer_resource {
public:
    Arena() : std::pmr::monotonic_buffer_resource(firstBlock, &blockSource()) {}

    // Keeps a copy of a text. Every copy is an object of its own, equal texts included.
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
    static constexpr std::size_t firstBlock = std::size_t{64} * 1024; // the next ones grow in proportion

    char* room(std::size_t size) { return static_cast<char*>(allocate(size, 1)); }
};

} // namespace veldacov
