#pragma once

// The process-wide pool of names. Every distinct text exists once, so two names are equal exactly when their
// entries are the same object, and other modules mark names through the flags of the entry.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace veldacov {

struct NameEntry {
    std::string_view text;   // in memory of the pool
    std::uint32_t flags = 0; // free for the users of the pool
    std::uint32_t place =
        0; // owned by the reader of descriptions: that of the service last added with this name
};

// Empties the pool; every entry handed out before is gone.
void initNamePool();
void freeNamePool();

// The entry of a text, created on first use; null for an empty text. Entries stay where they are until the
// pool is freed. Expected constant time.
NameEntry* internName(std::string_view text);

// The bucket of a text, 0 to 249.
constexpr std::size_t nameBucketCount = 250;
std::size_t nameBucket(std::string_view text);

// The text of an entry, empty for none.
inline std::string_view nameText(const NameEntry* entry) {
    return entry != nullptr ? entry->text : std::string_view();
}

// How often each name was added, in the order of the first additions.
struct NameCountList {
    struct Node {
        const NameEntry* name = nullptr;
        std::uint32_t count = 0;
    };
    std::vector<Node> nodes;
    std::unordered_map<const NameEntry*, std::size_t> places; // of each name in `nodes`
};

// Adds a name once more and gives its count, 1 the first time.
std::uint32_t addNameCount(NameCountList& list, const NameEntry* name);
void freeNameCountList(NameCountList& list);

} // namespace veldacov
