#include "driver/gcmdec.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <new>
#include <utility>

#include <QRegularExpression>
#include <QtGlobal>

#include "support/machine.h"
#include "support/response_words.h"
#include "support/tables.h"

namespace veldacov {

namespace {

// The grammar with what was parsed.
CommandGrammar decoder;

// By CommandError, in the context "CAB".
constexpr std::array<const char*, 22> diagnosticTexts = {
    QT_TRANSLATE_NOOP("CAB", "Arg value too small,"),
    QT_TRANSLATE_NOOP("CAB", "Arg value too large,"),
    QT_TRANSLATE_NOOP("CAB", "Arg length too small,"),
    QT_TRANSLATE_NOOP("CAB", "Arg length too large,"),
    QT_TRANSLATE_NOOP("CAB", "Too many arguments invalid argument,"),
    QT_TRANSLATE_NOOP("CAB", "List forbidden invalid argument,"),
    QT_TRANSLATE_NOOP("CAB", "Unknown option,"),
    QT_TRANSLATE_NOOP("CAB", "Invalid character following option,"),
    QT_TRANSLATE_NOOP("CAB", "An option can't be used twice,"),
    QT_TRANSLATE_NOOP("CAB", "Mandatory argument for this option,"),
    QT_TRANSLATE_NOOP("CAB", "No argument for this option,"),
    QT_TRANSLATE_NOOP("CAB", "List forbidden invalid option,"),
    QT_TRANSLATE_NOOP("CAB", "Argument missing,"),
    QT_TRANSLATE_NOOP("CAB", "Ambiguous option,"),
    QT_TRANSLATE_NOOP("CAB", "Unknown value of option,"),
    QT_TRANSLATE_NOOP("CAB", "Ambiguous value of option,"),
    QT_TRANSLATE_NOOP("CAB", "Illegal combination of command elements,"),
    QT_TRANSLATE_NOOP("CAB", "File not found"),
    QT_TRANSLATE_NOOP("CAB", "Command analysis: No memory left"),
    QT_TRANSLATE_NOOP("CAB", "Command analysis"),
    QT_TRANSLATE_NOOP("CAB", "Internal error, bad option name"),
    QT_TRANSLATE_NOOP("CAB", "and"),
};

QString diagnosticText(CommandError code) {
    return translate("CAB", diagnosticTexts[static_cast<std::size_t>(code)]);
}

QString diagnosticHead(CommandError part) {
    return QStringLiteral("%1 %2 %3")
        .arg(translate("CAB", "Orbis(R)"))
        .arg(getProductName())
        .arg(diagnosticText(part));
}

QString usageText() {
    static const QRegularExpression hiddenOptions(QStringLiteral("\\t\\[-XT.*\\n"));
    return translate("Command-line", decoder.usage).remove(hiddenOptions);
}

bool refuse(CommandError code, std::string_view argument) {
    reportCommandError(code, argument);
    return false;
}

// Runs a step of the decoder; memory that runs out is a diagnostic of its own here.
template <typename Step>
int guarded(Step step) {
    const RefusalIsHandled here;
    try {
        return step() ? 0 : -1;
    } catch (const std::bad_alloc&) {
        writeStandardError(diagnosticHead(CommandError::NoMemoryLeft));
        return -1;
    }
}

// The name of the response file that a word stands for, none for other words.
std::optional<std::string> responseFileOf(std::string_view word) {
    constexpr std::string_view optionName = "OPTION";
    if (word.starts_with('@')) {
        return std::string(word.substr(1));
    }
    if (!word.starts_with(decoder.optionPrefix) || word.size() < optionName.size() + 2) {
        return std::nullopt;
    }
    if (duplicateUpper(word.substr(1, optionName.size())) != optionName ||
        word[optionName.size() + 1] != decoder.valueSeparator) {
        return std::nullopt;
    }
    return std::string(word.substr(optionName.size() + 2));
}

bool appendResponseWords(const std::string& fileName, std::vector<std::string>& words) {
    std::optional<std::vector<std::string>> read = responseWords(fileName);
    if (!read) {
        return refuse(CommandError::FileNotFound, fileName);
    }
    std::move(read->begin(), read->end(), std::back_inserter(words));
    return true;
}

// Places of the list separators of a text, from `from` on.
std::vector<std::size_t> listSeparators(std::string_view text, std::size_t from) {
    std::vector<std::size_t> positions;
    for (std::size_t at = from; at < text.size(); ++at) {
        if (text[at] == decoder.listSeparator && (at == 0 || text[at - 1] != '\\')) {
            positions.push_back(at);
        }
    }
    return positions;
}

std::vector<std::string_view> listPieces(std::string_view text, const std::vector<std::size_t>& separators) {
    std::vector<std::string_view> pieces;
    std::size_t start = 0;
    for (const std::size_t separator : separators) {
        pieces.push_back(text.substr(start, separator - start));
        start = separator + 1;
    }
    pieces.push_back(text.substr(start));
    return pieces;
}

std::string withoutSeparatorEscapes(std::string_view piece) {
    std::string value;
    for (std::size_t at = 0; at < piece.size(); ++at) {
        if (piece[at] == '\\' && at + 1 < piece.size() && piece[at + 1] == decoder.listSeparator) {
            continue;
        }
        value += piece[at];
    }
    return value;
}

// How many leading characters agree with an upper-case name; 0 when the text goes on with anything else
// before the name has ended. A value separator may follow at any time.
std::size_t commonLength(std::string_view text, std::string_view name) {
    std::size_t length = 0;
    while (length < text.size() && length < name.size() && upperCase(text[length]) == name[length]) {
        ++length;
    }
    const bool goesOn = length < text.size() && text[length] != decoder.valueSeparator;
    return length < name.size() && goesOn ? 0 : length;
}

std::size_t optionLength(std::string_view text, std::string_view name) {
    const std::size_t length = commonLength(text, name);
    const bool goesOn = length < text.size() && text[length] != decoder.valueSeparator;
    return goesOn ? 0 : length;
}

// The best of several candidates for an abbreviated text: an exact match wins at once, else the longest.
template <typename Candidate>
struct BestMatch {
    Candidate candidate{};
    std::size_t length = 0;
    bool ambiguous = false;
    bool exact = false;

    void offer(const Candidate& offered, std::size_t offeredLength, std::size_t nameLength) {
        if (exact || offeredLength == 0) {
            return;
        }
        exact = offeredLength == nameLength;
        if (exact || offeredLength > length) {
            candidate = offered;
            length = offeredLength;
            ambiguous = false;
        } else if (offeredLength == length) {
            ambiguous = true;
        }
    }
};

// Replaces a value by the keyword that it abbreviates.
bool chooseKeyword(std::vector<KeywordDef>& keywords, std::string& value) {
    BestMatch<KeywordDef*> best;
    for (KeywordDef& keyword : keywords) {
        best.offer(&keyword, commonLength(value, keyword.name), keyword.name.size());
    }
    if (best.candidate == nullptr) {
        return refuse(CommandError::UnknownValue, value);
    }
    if (best.ambiguous) {
        return refuse(CommandError::AmbiguousValue, value);
    }
    best.candidate->chosen = true;
    value = best.candidate->name;
    return true;
}

bool parseText(ArgumentDef& argument, std::vector<KeywordDef>* keywords, std::string_view piece) {
    if (piece.size() < static_cast<std::size_t>(argument.min)) {
        return refuse(CommandError::LengthTooSmall, piece);
    }
    if (piece.size() > static_cast<std::size_t>(argument.max)) {
        return refuse(CommandError::LengthTooLarge, piece);
    }
    std::string value = withoutSeparatorEscapes(piece);
    if (keywords != nullptr && !keywords->empty() && !chooseKeyword(*keywords, value)) {
        return false;
    }
    argument.values.push_back({std::move(value), 0});
    return true;
}

bool parseNumber(ArgumentDef& argument, std::string_view piece) {
    std::int64_t number = 0;
    const auto result = std::from_chars(piece.data(), piece.data() + piece.size(), number);
    if (result.ec == std::errc::result_out_of_range) {
        number = piece.starts_with('-') ? std::numeric_limits<std::int64_t>::min()
                                        : std::numeric_limits<std::int64_t>::max();
    }
    if (number < argument.min) {
        return refuse(CommandError::ValueTooSmall, piece);
    }
    if (number > argument.max) {
        return refuse(CommandError::ValueTooLarge, piece);
    }
    argument.values.push_back({std::string(piece), number});
    return true;
}

bool parseValue(ArgumentDef& argument, std::vector<KeywordDef>* keywords, std::string_view piece) {
    return argument.valueType == ValueType::Text ? parseText(argument, keywords, piece)
                                                 : parseNumber(argument, piece);
}

bool parseValues(ArgumentDef& argument, std::vector<KeywordDef>* keywords,
                 const std::vector<std::string_view>& pieces) {
    return std::all_of(pieces.begin(), pieces.end(),
                       [&](std::string_view piece) { return parseValue(argument, keywords, piece); });
}

bool decodePositional(std::string_view word, std::size_t& positionalWords) {
    if (decoder.positionals.empty()) {
        return refuse(CommandError::TooManyArguments, word);
    }
    ArgumentDef& argument = decoder.positionals[std::min(positionalWords, decoder.positionals.size() - 1)];
    ++positionalWords;
    if (!argument.values.empty() && !argument.isList) {
        return refuse(CommandError::TooManyArguments, word);
    }
    const std::vector<std::size_t> separators = listSeparators(word, 1); // not the word's first character
    if (!separators.empty() && !argument.isList) {
        return refuse(CommandError::ListForbiddenForArgument, word);
    }
    return parseValues(argument, nullptr, listPieces(word, separators));
}

struct OptionMatch {
    OptionDef* option = nullptr;
    int state = 1;
};

BestMatch<OptionMatch> matchOption(std::string_view text) {
    BestMatch<OptionMatch> best;
    for (OptionDef& option : decoder.options) {
        const std::size_t length = optionLength(text, option.name);
        best.offer({&option, 1}, length, option.name.size());
        const std::string negated = std::string("NO").append(option.name);
        const std::size_t negatedLength = option.negatable ? optionLength(text, negated) : 0;
        if (negatedLength > length) { // an option does not compete with itself
            best.offer({&option, -1}, negatedLength, negated.size());
        }
    }
    return best;
}

// `value` is the text behind the separator, none without one.
bool decodeOptionValue(OptionDef& option, std::string_view word, std::optional<std::string_view> value) {
    if (option.argumentMandatory && (!value || value->empty())) {
        return refuse(CommandError::MandatoryArgument, word);
    }
    if (!option.argument && value) {
        return refuse(CommandError::NoArgument, word);
    }
    if (!value || value->empty()) {
        return true;
    }
    const std::vector<std::size_t> separators = listSeparators(*value, 0);
    if (!separators.empty() && !option.argument->isList) {
        return refuse(CommandError::ListForbiddenForOption, word);
    }
    return parseValues(*option.argument, &option.keywords, listPieces(*value, separators));
}

bool decodeOption(std::string_view word) {
    const std::string_view text = word.substr(1);
    const BestMatch<OptionMatch> match = matchOption(text);
    if (match.candidate.option == nullptr) {
        return refuse(CommandError::UnknownOption, text);
    }
    if (match.ambiguous) {
        return refuse(CommandError::AmbiguousOption, word);
    }
    OptionDef& option = *match.candidate.option;
    if (match.length < text.size() && text[match.length] != decoder.valueSeparator) {
        return refuse(CommandError::InvalidCharacterAfterOption, word);
    }
    if (option.state != 0 && !(option.argument && option.argument->isList)) {
        return refuse(CommandError::OptionUsedTwice, word);
    }
    option.state = match.candidate.state;
    return decodeOptionValue(option, word,
                             match.length < text.size() ? std::optional(text.substr(match.length + 1))
                                                        : std::nullopt);
}

bool decodeWords(const std::vector<std::string>& words) {
    std::size_t positionalWords = 0;
    return words.empty() || std::all_of(words.begin() + 1, words.end(), [&](const std::string& word) {
               return word.starts_with(decoder.optionPrefix) ? decodeOption(word)
                                                             : decodePositional(word, positionalWords);
           });
}

bool checkPositionals() {
    for (const ArgumentDef& argument : decoder.positionals) {
        if (argument.values.empty() && !argument.optional) {
            return refuse(CommandError::ArgumentMissing, argument.name);
        }
    }
    return true;
}

bool applyDefaults() {
    for (OptionDef& option : decoder.options) {
        if (option.state == 0 && option.defaultOn) {
            option.state = 1;
        }
        if (option.state == 0 && option.negatable) {
            option.state = -1;
        }
        const bool noneChosen = std::none_of(option.keywords.begin(), option.keywords.end(),
                                             [](const KeywordDef& keyword) { return keyword.chosen; });
        if (option.defaultKeyword != 0 && noneChosen && option.argument &&
            !parseValue(*option.argument, &option.keywords,
                        option.keywords[option.defaultKeyword - 1].name)) {
            return false;
        }
    }
    return true;
}

bool holds(const RuleCondition& condition) {
    const OptionDef* option = rowWith(decoder.options, &OptionDef::name, condition.option);
    bool positive = false;
    switch (condition.target) {
    case ConditionTarget::Keyword:
        positive =
            std::any_of(option->keywords.begin(), option->keywords.end(), [&](const KeywordDef& keyword) {
                return keyword.name == condition.keyword && keyword.chosen;
            });
        break;
    case ConditionTarget::Argument: positive = option->argument && !option->argument->values.empty(); break;
    case ConditionTarget::Option: positive = option->state == 1; break;
    }
    return positive != condition.negated;
}

bool checkCombinations() {
    for (const CombinationRule& rule : decoder.rules) {
        if (holds(rule.first) && holds(rule.second)) {
            return refuse(CommandError::IllegalCombination,
                          std::string(rule.first.option)
                              .append(" ")
                              .append(toLocal(diagnosticText(CommandError::And)))
                              .append(" ")
                              .append(rule.second.option));
        }
    }
    return true;
}

const ValueNode* nthValue(const ArgumentDef& argument, std::size_t n) {
    return n >= 1 && n <= argument.values.size() ? &argument.values[n - 1] : nullptr;
}

} // namespace

void useGrammar(CommandGrammar grammar) {
    decoder = std::move(grammar);
}

int expandArguments(std::vector<std::string>& words) {
    return guarded([&] {
        std::vector<std::string> expanded;
        for (std::size_t i = 0; i < words.size(); ++i) {
            const std::optional<std::string> responseFile = i > 0 ? responseFileOf(words[i]) : std::nullopt;
            if (!responseFile) {
                expanded.push_back(withEnvironment(words[i]));
            } else if (!appendResponseWords(*responseFile, expanded)) {
                return false;
            }
        }
        words = std::move(expanded);
        return true;
    });
}

int decodeCommandLine(const std::vector<std::string>& words) {
    return guarded(
        [&] { return decodeWords(words) && checkPositionals() && applyDefaults() && checkCombinations(); });
}

int findOption(std::string_view name) {
    for (std::size_t place = 0; place < decoder.options.size(); ++place) {
        if (decoder.options[place].name == name) {
            return decoder.options[place].state * static_cast<int>(place + 1);
        }
    }
    reportCommandError(CommandError::BadOptionName, name);
    return 0;
}

const ValueNode* optionValue(int position, std::size_t n) {
    const auto place = static_cast<std::size_t>(std::abs(position));
    if (place == 0 || place > decoder.options.size() || !decoder.options[place - 1].argument) {
        return nullptr;
    }
    return nthValue(*decoder.options[place - 1].argument, n);
}

const ValueNode* positionalValue(std::size_t k, std::size_t n) {
    return k >= 1 && k <= decoder.positionals.size() ? nthValue(decoder.positionals[k - 1], n) : nullptr;
}

void releaseDecoderMemory() {
    decoder = {};
}

void reportCommandError(CommandError code, std::optional<std::string_view> argument) {
    QString line =
        diagnosticHead(CommandError::CommandAnalysis) + QStringLiteral(" : ") + diagnosticText(code);
    if (argument) {
        line += QLatin1Char(' ') + translate("Command-line", std::string(*argument).c_str());
    }
    if (code != CommandError::BadOptionName) {
        line += usageText();
    }
    writeStandardError(line + QLatin1Char('\n'));
}

} // namespace veldacov
