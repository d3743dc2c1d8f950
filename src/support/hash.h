#pragma once

// Hashes for tables over what inputs say. They depend on a number that every run draws anew: nobody can choose names or
// identifiers that all meet in one bucket of a table. So nothing that is printed may follow the order of such a table.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>

#define XXH_INLINE_ALL // a call would cost more than the hash of a number or of most names
#include <xxhash.h>

namespace veldacov {

// The number of this run.
extern const std::uint64_t hashSeed;

inline std::size_t seededHash(std::string_view bytes) noexcept {
    return XXH3_64bits_withSeed(bytes.data(), bytes.size(), hashSeed);
}

// Hash function of numbers, for tables of the standard library. Most files have their numbers in order: a run of them
// goes to as many buckets in order, which the processor is fast with, and only where the run begins cannot be foreseen.
struct NumberHash {
    std::size_t operator()(std::uint64_t number) const noexcept {
        constexpr unsigned runBits = 12;
        const std::uint64_t run = number >> runBits;
        return XXH3_64bits_withSeed(&run, sizeof run, hashSeed) + number % (1U << runBits);
    }
};

// Values by numbers of descriptions and traces.
template <typename Number, typename Value>
using NumberMap = std::unordered_map<Number, Value, NumberHash>;

} // namespace veldacov
