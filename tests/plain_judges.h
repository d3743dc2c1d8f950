#pragma once

// Slow and obvious versions of what the program does quickly. Tests and fuzz targets compare the two.

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "description/model.h"

namespace veldacov::plain {

inline bool bitOf(std::uint32_t number, std::uint32_t bit) {
    return bit < 32 && (number >> bit & 1U) != 0;
}

// The value of the expression at `at` for case k; moves `at` behind it and counts the conditions met.
inline bool evaluate(std::string_view expression, std::size_t& at, std::uint32_t k,
                     std::uint32_t& condition) {
    const char node = expression[at++];
    if (node == '.') {
        return bitOf(k, condition++);
    }
    const bool left = evaluate(expression, at, k, condition);
    if (node == 'N') {
        return !left;
    }
    const bool right = evaluate(expression, at, k, condition);
    return node == 'X' ? left != right : (node == 'A' || node == 'a' ? left && right : left || right);
}

// Whether two vectors differ at position j, where both care, and nowhere else.
inline bool differAt(const std::string& a, const std::string& b, std::size_t j) {
    for (std::size_t i = 0; i < a.size(); ++i) {
        const bool care = a[i] != 'X' && b[i] != 'X';
        if (i == j ? !care || a[i] == b[i] : care && a[i] != b[i]) {
            return false;
        }
    }
    return true;
}

struct Found {
    CoverageItem* item = nullptr;
    std::uint16_t type = 0;
    Service* service = nullptr;
};

// The first item of the types with this identifier, from the service `current` to the last, then from the
// first; its service becomes the current one.
inline Found searched(FileDescription& file, std::size_t& current, std::uint16_t types, std::uint32_t id) {
    Found found;
    for (std::size_t i = 0; i < file.services.size() && found.item == nullptr; ++i) {
        const std::size_t place = (current + i) % file.services.size();
        forEachItem(file.services[place], [&](auto& record, std::uint16_t type) {
            if constexpr (std::is_base_of_v<CoverageItem, std::decay_t<decltype(record)>>) {
                if (found.item == nullptr && (type & types) != 0 && record.id == id) {
                    found = {&record, type, &file.services[place]};
                }
            }
        });
        current = found.item != nullptr ? place : current;
    }
    return found;
}

} // namespace veldacov::plain
