#include "description/name_pool.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <memory_resource>
#include <new>
#include <utility>

#include "support/arena.h"
#include "support/hash.h"

namespace veldacov {

namespace {

// The names of one bucket: an open table by a second hash, whose size is a power of two.
//
// The bucket of a name is fixed (nameBucket), and 100,000 names are 400 in each. In chains they would cost 200
// comparisons, each in cold memory, for every line of a description. So a bucket is a table of its own, in which the
// name stands at its hash, or in the first free slot behind it:
//
//   eight slots   | - | f 9 | - | g 3b | h 13 | - | - | - |     h, whose hash has the low bits of that of g, stands behind g
//
// What always holds: half of the slots are free, so that a search ends soon; slots have the whole hash, so that other
// names are mostly passed over without a look at them. A look-up costs one access to cold memory (docs/performance.md,
// "Where the time goes").
struct Bucket {
    struct Slot {
        std::size_t hash = 0;
        NameEntry* name = nullptr; // none in a free slot
    };
    std::pmr::vector<Slot> slots;
    std::size_t used = 0;
};

struct NamePool {
    Arena memory;
    std::array<Bucket, nameBucketCount> buckets;
};

// An entry with its text right behind it: comparing a text looks at both.
NameEntry* makeEntry(Arena& memory, std::string_view text) {
    void* room = memory.allocate(sizeof(NameEntry) + text.size(), alignof(NameEntry));
    auto* copy = static_cast<char*>(room) + sizeof(NameEntry);
    std::copy_n(text.data(), text.size(), copy);
    return new (room) NameEntry{{copy, text.size()}};
}

// The slot of a text, or the free one where it belongs.
Bucket::Slot& slotOf(std::pmr::vector<Bucket::Slot>& slots, std::size_t hash, std::string_view text) {
    std::size_t at = hash & (slots.size() - 1);
    while (slots[at].name != nullptr && (slots[at].hash != hash || slots[at].name->text != text)) {
        at = (at + 1) & (slots.size() - 1);
    }
    return slots[at];
}

void grow(Bucket& bucket, Arena& memory) {
    constexpr std::size_t fewest = 16;
    std::pmr::vector<Bucket::Slot> larger(std::max(fewest, 2 * bucket.slots.size()), &memory);
    for (const Bucket::Slot& slot : bucket.slots) {
        if (slot.name != nullptr) {
            slotOf(larger, slot.hash, slot.name->text) = slot;
        }
    }
    bucket.slots = std::move(larger);
}

std::unique_ptr<NamePool>& poolOwner() {
    static auto owner = std::make_unique<NamePool>();
    return owner;
}

} // namespace

void initNamePool() {
    freeNamePool();
}

void freeNamePool() {
    poolOwner() = std::make_unique<NamePool>();
}

std::size_t nameBucket(std::string_view text) {
    std::uint32_t fold = 0x4A4A4A4A;
    while (!text.empty()) {
        const std::string_view part = text.substr(0, sizeof(std::uint32_t)); // its first byte counts least
        for (std::size_t i = 0; i < part.size(); ++i) {
            fold ^= std::uint32_t{static_cast<unsigned char>(part[i])} << (8 * i);
        }
        text.remove_prefix(part.size());
    }
    return fold % nameBucketCount;
}

NameEntry* internName(std::string_view text) {
    if (text.empty()) {
        return nullptr;
    }
    NamePool& pool = *poolOwner();
    Bucket& bucket = pool.buckets[nameBucket(text)];
    if (2 * bucket.used >= bucket.slots.size()) {
        grow(bucket, pool.memory);
    }
    const std::size_t hash = seededHash(text);
    Bucket::Slot& slot = slotOf(bucket.slots, hash, text);
    if (slot.name == nullptr) {
        slot = {hash, makeEntry(pool.memory, text)};
        ++bucket.used;
    }
    return slot.name;
}

std::uint32_t addNameCount(NameCountList& list, const NameEntry* name) {
    const auto [known, isNew] = list.places.try_emplace(name, list.nodes.size());
    if (isNew) {
        list.nodes.push_back({name, 0});
    }
    return ++list.nodes[known->second].count;
}

void freeNameCountList(NameCountList& list) {
    list = {};
}

} // namespace veldacov
