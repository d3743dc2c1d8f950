#pragma once

// The generic command decoder. It knows nothing of this program: a grammar of records says which positional words,
// options, values, keywords and combinations there are, and the decoder keeps what it parsed in the same records.
//
// An option word starts with the prefix and may carry a value behind the separator (-pr=ret). Names are
// matched without regard to case and may be abbreviated as long as they stay unique. A value may be a list.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veldacov {

enum class ValueType : char { Text = 'C', Integer = 'I', Long = 'L' };

// A parsed value: the text for "C", the number for "I" and "L".
struct ValueNode {
    std::string text;
    std::int64_t number = 0;
};

struct ArgumentDef {
    std::string_view name; // shown in diagnostics
    ValueType valueType = ValueType::Text;
    bool isList = false;
    std::int32_t min = 0; // of the length of a text, of the value of a number
    std::int32_t max = 0;
    bool optional = false;          // positional arguments only
    std::deque<ValueNode> values{}; // in command-line order
};

struct KeywordDef {
    std::string_view name; // upper case
    bool chosen = false;
};

struct OptionDef {
    std::string_view name; // upper case
    bool argumentMandatory = false;
    std::optional<ArgumentDef> argument{}; // none: the option takes no value
    std::vector<KeywordDef> keywords{};    // the allowed values; empty: any
    bool negatable = false;                // "no" and the name switches it off
    bool defaultOn = false;
    std::size_t defaultKeyword = 0; // from 1; 0: none
    int state = 0;                  // 1 given, -1 given in the "no" form, 0 not given
};

// What a combination rule looks at: a keyword that was chosen, an argument that has values, or an option that
// is on.
enum class ConditionTarget : std::uint8_t { Keyword = 1, Argument = 2, Option = 3 };
struct RuleCondition {
    ConditionTarget target = ConditionTarget::Option;
    std::string_view option{};  // the option concerned
    std::string_view keyword{}; // of the option, for a keyword
    bool negated = false;
};
// Broken when both conditions hold.
struct CombinationRule {
    RuleCondition first;
    RuleCondition second;
};

struct CommandGrammar {
    std::string_view programName;
    char optionPrefix = '-';
    char valueSeparator = '=';
    char listSeparator = ','; // an ordinary character behind a backslash
    std::vector<ArgumentDef> positionals;
    std::vector<OptionDef> options;
    std::vector<CombinationRule> rules;
    const char* usage = ""; // translated in the context "Command-line"
};

// The diagnostics, by code.
enum class CommandError : std::uint8_t {
    ValueTooSmall,
    ValueTooLarge,
    LengthTooSmall,
    LengthTooLarge,
    TooManyArguments,
    ListForbiddenForArgument,
    UnknownOption,
    InvalidCharacterAfterOption,
    OptionUsedTwice,
    MandatoryArgument,
    NoArgument,
    ListForbiddenForOption,
    ArgumentMissing,
    AmbiguousOption,
    UnknownValue,
    AmbiguousValue,
    IllegalCombination,
    FileNotFound,
    NoMemoryLeft,
    CommandAnalysis,
    BadOptionName,
    And
};

// Starts a command line of this grammar; what an earlier one left is released.
void useGrammar(CommandGrammar grammar);

// Reads response files (@file, -option=file) and replaces references to environment variables ($NAME).
// Returns 0 and replaces the words, or prints a diagnostic, returns -1 and leaves them as they are.
int expandArguments(std::vector<std::string>& words);

// Parses the words behind the first one. Returns 0, or -1 after printing the first diagnostic.
int decodeCommandLine(const std::vector<std::string>& words);

// Place of an option from 1, when it is on; minus its place when it is off by its "no" form (a negatable
// option that is not given is off, too); 0 when it is not given. A name that the grammar does not have is a
// diagnostic and gives 0.
int findOption(std::string_view name);
// The n-th value (from 1) of the option at a place (its sign does not matter), of the k-th positional
// argument; null when there are fewer. Valid until releaseDecoderMemory.
const ValueNode* optionValue(int position, std::size_t n);
const ValueNode* positionalValue(std::size_t k, std::size_t n);
void releaseDecoderMemory();

// Prints one diagnostic, with the word or name it concerns, and the usage text.
void reportCommandError(CommandError code, std::optional<std::string_view> argument);

} // namespace veldacov
