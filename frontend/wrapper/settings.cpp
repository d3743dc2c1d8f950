#include "settings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "messages.h"

namespace veldacc {

namespace {

constexpr int usageError = 2;

enum class Value : std::uint8_t { None, Required };

// An option: either this program does something, or the instrumenter is told.
struct OwnOption {
    std::string_view name;
    Value value;
    void (*apply)(Settings& settings, const std::string& value); // null: handed on
};

std::string absolute(const std::string& path) {
    return std::filesystem::absolute(path).lexically_normal().string();
}

void setTimeLimit(Settings& settings, const std::string& value) {
    const char* end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, settings.timeLimit);
    if (error != std::errc() || stop != end) {
        say(Message::BadTimeLimit, {value});
        std::exit(usageError);
    }
}

constexpr std::array ownOptions = {
    OwnOption{"--fdc-dir", Value::Required,
              [](Settings& settings, const std::string& value) {
                  settings.descriptionDirectory = absolute(value);
              }},
    OwnOption{"--root", Value::Required,
              [](Settings& settings, const std::string& value) { settings.root = absolute(value); }},
    OwnOption{"--time-limit", Value::Required, setTimeLimit},
    OwnOption{"--strict", Value::None,
              [](Settings& settings, const std::string&) { settings.strict = true; }},
    OwnOption{"--verbose", Value::None,
              [](Settings& settings, const std::string&) { settings.verbose = true; }},
    OwnOption{"--keep-temporary", Value::None,
              [](Settings& settings, const std::string&) { settings.keepTemporary = true; }},
    OwnOption{"--help", Value::None,
              [](Settings&, const std::string&) {
                  say(Message::Usage);
                  std::exit(0);
              }},
    OwnOption{"--version", Value::None,
              [](Settings&, const std::string&) {
                  say(Message::Version);
                  std::exit(0);
              }},
    OwnOption{"--forced", Value::None, nullptr},
    OwnOption{"--headers", Value::None, nullptr},
    OwnOption{"--ordered", Value::None, nullptr},
    OwnOption{"--counter-per-item", Value::None, nullptr},
    OwnOption{"--types", Value::Required, nullptr},
    OwnOption{"--max-cases", Value::Required, nullptr},
};

const OwnOption& findOption(const std::string& name) {
    const auto found = std::find_if(ownOptions.begin(), ownOptions.end(),
                                    [&](const OwnOption& option) { return option.name == name; });
    if (found == ownOptions.end()) {
        say(Message::UnknownOption, {name});
        std::exit(usageError);
    }
    return *found;
}

void apply(const OwnOption& option, Settings& settings, const std::string& value) {
    if (option.apply != nullptr) {
        option.apply(settings, value);
        return;
    }
    settings.forInstrumenter.emplace_back(option.name);
    if (option.value == Value::Required) {
        settings.forInstrumenter.push_back(value);
    }
}

// Reads options from the front of the words; gives the number of words that belong to them.
std::size_t readOptions(const Words& words, Settings& settings) {
    std::size_t at = 0;
    while (at < words.size() && words[at].starts_with('-')) {
        const std::string& word = words[at++];
        if (word == "--") {
            break;
        }
        const std::size_t equals = word.find('=');
        const OwnOption& option = findOption(word.substr(0, equals));
        std::string value;
        if (option.value == Value::Required) {
            if (equals == std::string::npos && at == words.size()) {
                say(Message::OptionNeedsValue, {word});
                std::exit(usageError);
            }
            value = equals != std::string::npos ? word.substr(equals + 1) : words[at++];
        } else if (equals != std::string::npos) {
            say(Message::UnknownOption, {word});
            std::exit(usageError);
        }
        apply(option, settings, value);
    }
    return at;
}

} // namespace

Invocation readInvocation(const Words& words) {
    Invocation invocation;
    if (const char* options = std::getenv("VELDACC_OPTIONS")) {
        const Words fromEnvironment = splitWords(options);
        const std::size_t read = readOptions(fromEnvironment, invocation.settings);
        if (read < fromEnvironment.size()) {
            say(Message::UnknownOption, {fromEnvironment[read]});
            std::exit(usageError);
        }
    }
    const std::size_t read = readOptions(words, invocation.settings);
    invocation.command.assign(words.begin() + static_cast<std::ptrdiff_t>(read), words.end());
    if (invocation.command.empty()) {
        say(Message::NoCompiler);
        std::exit(usageError);
    }
    return invocation;
}

} // namespace veldacc
