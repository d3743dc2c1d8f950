#include "support/arena.h"

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

} // namespace veldacov
