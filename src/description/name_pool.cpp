#include "description/name_pool.h"

#include <array>
#include <deque>

#include "support/text_store.h"

namespace veldacov {

namespace {

struct NamePool {
    TextStore texts;
    std::deque<NameEntry> entries; // a deque: entries never move
    std::array<std::unordered_map<std::string_view, NameEntry*>, nameBucketCount> buckets;
};
NamePool pool;

} // namespace

void initNamePool() {
    freeNamePool();
}

void freeNamePool() {
    pool = {};
}

std::size_t nameBucket(std::string_view text) {
    std::uint32_t fold = 0x4A4A4A4A;
    for (std::size_t i = 0; i < text.size(); ++i) {
        fold ^= static_cast<std::uint32_t>(static_cast<unsigned char>(text[i])) << (8 * (i % 4));
    }
    return fold % nameBucketCount;
}

NameEntry* internName(std::string_view text) {
    if (text.empty()) {
        return nullptr;
    }
    auto& bucket = pool.buckets[nameBucket(text)];
    if (const auto known = bucket.find(text); known != bucket.end()) {
        return known->second;
    }
    pool.entries.push_back({pool.texts.keep(text), 0});
    NameEntry* entry = &pool.entries.back();
    bucket.emplace(entry->text, entry);
    return entry;
}

std::uint32_t addNameCount(NameCountList& list, const NameEntry* name) {
    const auto [place, isNew] = list.places.try_emplace(name, list.nodes.size());
    if (isNew) {
        list.nodes.push_back({name, 0});
    }
    return ++list.nodes[place->second].count;
}

void freeNameCountList(NameCountList& list) {
    list = {};
}

} // namespace veldacov
