// Writes descriptions and traces to measure with: veldacov_generate --name=value ...
// Says on standard output what it has written, as name=value fields.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "inputs.h"

namespace {

using veldacov::bench::Form;
using veldacov::bench::InputSettings;
using veldacov::bench::InputSummary;
using veldacov::bench::Layout;
using veldacov::bench::Pattern;

// A choice is an enumerator; its words stand in the order of the enumerators.
template <typename Choice>
struct ChoiceField {
    Choice InputSettings::*field;
    std::vector<std::string_view> words;
};
using Field =
    std::variant<std::string InputSettings::*, std::uint32_t InputSettings::*, std::uint64_t InputSettings::*,
                 bool InputSettings::*, ChoiceField<Layout>, ChoiceField<Form>, ChoiceField<Pattern>>;
struct Option {
    std::string_view name;
    Field field;
};

const std::vector<Option>& options() {
    static const std::vector<Option> all = {
        {"directory", &InputSettings::directory},
        {"files", &InputSettings::files},
        {"services", &InputSettings::services},
        {"items", &InputSettings::items},
        {"source-lines", &InputSettings::sourceLines},
        {"layout", ChoiceField<Layout>{&InputSettings::layout, {"plain", "alternating"}}},
        {"compositions", &InputSettings::compositions},
        {"conditions", &InputSettings::conditions},
        {"cases", &InputSettings::cases},
        {"form", ChoiceField<Form>{&InputSettings::form, {"expression", "table", "dontcares", "xor"}}},
        {"tests", &InputSettings::tests},
        {"traces", &InputSettings::traces},
        {"hits", &InputSettings::hits},
        {"hits-per-test", &InputSettings::hitsPerTest},
        {"part-hits", &InputSettings::partHits},
        {"pattern", ChoiceField<Pattern>{&InputSettings::pattern, {"bursts", "once", "random"}}},
        {"counted", &InputSettings::counted},
        {"lcov", &InputSettings::lcov},
    };
    return all;
}

std::optional<std::uint64_t> numberIn(const std::string& text) {
    char* end = nullptr;
    const std::uint64_t number = std::strtoull(text.c_str(), &end, 10);
    return text.empty() || *end != '\0' ? std::nullopt : std::optional(number);
}

// One for each kind of field; false when the value does not fit it.
struct Setter {
    InputSettings& settings;
    const std::string& value;

    bool operator()(std::string InputSettings::*field) const {
        settings.*field = value;
        return true;
    }
    bool operator()(bool InputSettings::*field) const {
        settings.*field = true;
        return value.empty();
    }
    template <typename Number>
    bool operator()(Number InputSettings::*field) const {
        const std::optional<std::uint64_t> number = numberIn(value);
        settings.*field = static_cast<Number>(number.value_or(0));
        return number && *number <= std::numeric_limits<Number>::max();
    }
    template <typename Choice>
    bool operator()(const ChoiceField<Choice>& choice) const {
        for (std::size_t i = 0; i < choice.words.size(); ++i) {
            if (choice.words[i] == value) {
                settings.*choice.field = static_cast<Choice>(i);
                return true;
            }
        }
        return false;
    }
};

bool apply(InputSettings& settings, const std::string& word) {
    const std::size_t equals = word.find('=');
    const std::string value = equals == std::string::npos ? "" : word.substr(equals + 1);
    for (const Option& option : options()) {
        if (word.substr(0, equals) == "--" + std::string(option.name)) {
            return std::visit(Setter{settings, value}, option.field);
        }
    }
    return false;
}

bool isPossible(const InputSettings& settings) {
    constexpr std::uint64_t mostIds = std::numeric_limits<std::uint32_t>::max();
    return settings.files > 0 && settings.services > 0 && settings.items >= 2 && settings.partHits > 0 &&
           settings.conditions > 0 && std::uint64_t{settings.services} * settings.items * 2 < mostIds;
}

} // namespace

int main(int argumentCount, char** arguments) {
    InputSettings settings;
    for (const std::string& word : std::vector<std::string>(arguments + 1, arguments + argumentCount)) {
        if (!apply(settings, word)) {
            std::cerr << "veldacov_generate: not understood: " << word << "\n";
            return 2;
        }
    }
    if (!isPossible(settings)) {
        std::cerr << "veldacov_generate: a number is too small or too large\n";
        return 2;
    }
    const InputSummary summary = writeInputs(settings);
    std::cout << "lines=" << summary.lines << " items=" << summary.items << " hits=" << summary.hits << "\n";
    return 0;
}
