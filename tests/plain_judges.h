#pragma once

// Slow and obvious versions of what the program does quickly. Tests and fuzz targets compare the two.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

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

// The cases of a composition and their pairs, by definition; one without a frontier has an expression.
class Cases {
public:
    Cases(std::uint32_t width, std::uint32_t caseCount, std::string_view cases,
          std::optional<std::uint32_t> frontier)
        : isTable_(frontier.has_value()), vectors_(caseCount, std::string(width, '\0')) {
        for (std::uint32_t k = 0; k < caseCount; ++k) {
            for (std::uint32_t j = 0; j < width; ++j) {
                const std::size_t at = std::size_t{k} * width + j;
                vectors_[k][j] = !isTable_ ? "FT"[bitOf(k, j)] : at < cases.size() ? cases[at] : '\0';
            }
            std::size_t start = 0;
            std::uint32_t condition = 0;
            outcomes_.push_back(isTable_ ? k < *frontier : evaluate(cases, start, k, condition));
        }
    }

    // Ends where a table that is too short does.
    std::string text(std::uint32_t k) const { return (vectors_[k] + (outcomes_[k] ? "=T" : "=F")).c_str(); }

    // The pairs of a condition as case numbers, in order.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> pairs(std::uint32_t j) const {
        std::vector<std::pair<std::uint32_t, std::uint32_t>> found;
        for (std::uint32_t a = 0; a < vectors_.size(); ++a) {
            for (std::uint32_t b = 0; b < vectors_.size(); ++b) {
                const bool partners = isTable_ ? outcomes_[a] && differAt(vectors_[a], vectors_[b], j)
                                               : j < 32 && b != a && b == (a | 1U << j);
                if (outcomes_[a] != outcomes_[b] && partners) {
                    found.emplace_back(a, b);
                }
            }
        }
        return found;
    }

private:
    bool isTable_;
    std::vector<std::string> vectors_;
    std::vector<bool> outcomes_;
};

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
