#pragma once

// Memory for what lives until the end of the run: millions of small records and texts. Taking memory moves a
// pointer; single objects are not given back. What is given back is all that was taken since a moment: a part of a
// file that turns out not to be wanted leaves nothing behind.
//
// The blocks grow in proportion to what was taken before:
//
//   block 0 |texts and records |   block 1 |texts and re              |   block 2 |                      |
//                                                       ^ next_       ^ end_      free since a rewinding
//
// What always holds: memory is taken from the block `current_`, blocks before it are done with, and blocks behind it
// are free.
//
// A container in an arena leaves its old memory there whenever it grows. So only what knows its size, or grows rarely,
// lies in one.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <memory_resource>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

namespace veldacov {

// Where arenas take their blocks from. Large blocks stand on large pages where the system has them: touching
// the memory of a big description for the first time then costs a fraction (docs/performance.md, "Where
// the time goes").
class BlockSource : public std::pmr::memory_resource {
    void* do_allocate(std::size_t size, std::size_t alignment) override;
    void do_deallocate(void* block, std::size_t size, std::size_t alignment) override;
    [[nodiscard]] bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override;
};
std::pmr::memory_resource& blockSource();

class Arena : public std::pmr::memory_resource {
public:
    // A moment: what was taken before it.
    struct Mark {
        std::size_t block = 0;
        std::byte* next = nullptr; // null: before the first block
    };

    Arena(); // the source of its blocks is there before it, and so outlives it
    ~Arena() override;
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    // Keeps a copy of a text. Every copy is an object of its own, equal texts included.
    std::string_view keep(std::string_view text) {
        char* copy = room(text.size());
        std::copy_n(text.data(), text.size(), copy);
        return {copy, text.size()};
    }
    // The same for records that need no end of life.
    template <typename Record>
    std::span<Record> keep(std::span<const Record> records) {
        static_assert(std::is_trivially_copyable_v<Record>);
        auto* copies = static_cast<Record*>(allocate(records.size_bytes(), alignof(Record)));
        std::uninitialized_copy(records.begin(), records.end(), copies);
        return {copies, records.size()};
    }
    // The same as a text with a NUL byte behind it, for texts that have none: their length need not be kept.
    const char* keepTerminated(std::string_view text) {
        char* copy = room(text.size() + 1);
        *std::copy_n(text.data(), text.size(), copy) = '\0';
        return copy;
    }

    [[nodiscard]] Mark mark() const { return {current_, next_}; }
    // Gives back all that was taken since the mark. Nothing of it may be used from then on, not even to end its life.
    void rewind(Mark mark);

private:
    struct Block {
        std::byte* start = nullptr;
        std::size_t size = 0;
    };

    void* do_allocate(std::size_t size, std::size_t alignment) override {
        void* taken = next_;
        auto left = static_cast<std::size_t>(end_ - next_);
        if (next_ == nullptr || std::align(alignment, size, taken, left) == nullptr) {
            return allocateInNextBlock(size, alignment);
        }
        next_ = static_cast<std::byte*>(taken) + size;
        return taken;
    }
    void do_deallocate(void* /*memory*/, std::size_t /*size*/, std::size_t /*alignment*/) override {}
    [[nodiscard]] bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override {
        return this == &other;
    }

    char* room(std::size_t size) {
        if (size > static_cast<std::size_t>(end_ - next_)) {
            return static_cast<char*>(allocateInNextBlock(size, 1));
        }
        auto* taken = reinterpret_cast<char*>(next_);
        next_ += size;
        return taken;
    }
    void* allocateInNextBlock(std::size_t size, std::size_t alignment);

    std::vector<Block> blocks_;
    std::size_t nextSize_ = std::size_t{64} * 1024; // of a new block, unless more is asked for
    std::size_t current_ = 0;
    std::byte* next_ = nullptr; // in the current block: the first free byte
    std::byte* end_ = nullptr;
};

} // namespace veldacov
