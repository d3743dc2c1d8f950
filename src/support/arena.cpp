#include "support/arena.h"

#include <algorithm>
#include <new>

#include "support/platform.h"

namespace veldacov {

namespace {

constexpr std::size_t largePage = std::size_t{2} * 1024 * 1024;

std::align_val_t alignmentOf(std::size_t size, std::size_t alignment) {
    return std::align_val_t{size >= 2 * largePage ? std::max(alignment, largePage) : alignment};
}

} // namespace

void* BlockSource::do_allocate(std::size_t size, std::size_t alignment) {
    void* block = ::operator new(size, alignmentOf(size, alignment));
    if (size >= 2 * largePage) {
        platform::preferLargePages(block, size);
    }
    return block;
}

void BlockSource::do_deallocate(void* block, std::size_t size, std::size_t alignment) {
    ::operator delete(block, alignmentOf(size, alignment));
}

bool BlockSource::do_is_equal(const std::pmr::memory_resource& other) const noexcept {
    return this == &other;
}

std::pmr::memory_resource& blockSource() {
    static BlockSource source;
    return source;
}

Arena::Arena() {
    blockSource();
}

Arena::~Arena() {
    for (const Block& block : blocks_) {
        blockSource().deallocate(block.start, block.size);
    }
}

void Arena::rewind(Mark mark) {
    current_ = mark.block;
    next_ = mark.next;
    end_ = next_ != nullptr ? blocks_[current_].start + blocks_[current_].size : nullptr;
}

// Free blocks that are too small are passed over; a later rewinding makes them of use again.
void* Arena::allocateInNextBlock(std::size_t size, std::size_t alignment) {
    const std::size_t needed = size + alignment;
    std::size_t block = next_ != nullptr ? current_ + 1 : 0;
    while (block < blocks_.size() && blocks_[block].size < needed) {
        ++block;
    }
    if (block == blocks_.size()) {
        blocks_.reserve(blocks_.size() + 1);
        const std::size_t taken = std::max(nextSize_, needed);
        blocks_.push_back({static_cast<std::byte*>(blockSource().allocate(taken)), taken});
        nextSize_ += nextSize_ / 2;
    }
    current_ = block;
    next_ = blocks_[block].start;
    end_ = next_ + blocks_[block].size;
    return do_allocate(size, alignment);
}

} // namespace veldacov
