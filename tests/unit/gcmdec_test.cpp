#include "driver/gcmdec.h"

#include <sstream>

#include "driver/grammar.h"
#include "unit/test_support.h"

namespace veldacov::test {
namespace {

using Words = std::vector<std::string>;

// Decodes words (blanks between them); gives the diagnostic without its head and the usage.
std::string diagnosticOf(const CommandGrammar& grammar, const std::string& text) {
    std::istringstream input("demo " + text);
    const Words words{std::istream_iterator<std::string>(input), {}};
    useGrammar(grammar);
    int result = 0;
    const std::string message = outcomeOf([&] { result = decodeCommandLine(words); }).messages;
    EXPECT_EQ(result, message.empty() ? 0 : -1) << text;
    const std::size_t start = message.empty() ? 0 : message.find(" : ") + 3;
    return message.substr(start, message.find('\n') - start);
}

// Rows "words -> diagnostic".
void expectRefused(const CommandGrammar& grammar, const std::string& rows) {
    std::istringstream lines(rows);
    for (std::string row; std::getline(lines, row);) {
        const std::size_t arrow = row.find(" -> ");
        EXPECT_EQ(diagnosticOf(grammar, row.substr(0, arrow)), row.substr(arrow + 4)) << row;
    }
}

TEST(Decoder, ThisProgramsCommandLine) {
    expectRefused(commandGrammar(), R"(a -PRX=RET -> Unknown option, PRX=RET
a -CALL= -> No argument for this option, -CALL=
a -OUTPUT=, -> List forbidden invalid option, -OUTPUT=,
-PROC -NOPROC -> Argument missing, file
a -NOPROC -PROC -TEST=t -EXTEST=t -> Illegal combination of command elements, PROC and NOPROC
a -BLOCK -NOBLOCK -COND -NOCOND -> Illegal combination of command elements, BLOCK and NOBLOCK
a -COND -NOCOND -FILE=f -EXFILE=f -> Illegal combination of command elements, COND and NOCOND
a -FILE=f -EXFILE=f -SE=f -EXS=f -> Illegal combination of command elements, FILE and EXFILE
a -SE=f -EXS=f -TEST=t -EXTEST=t -> Illegal combination of command elements, SERVICE and EXSERVICE
a -TEST=t -EXTEST=t -> Illegal combination of command elements, TEST and EXTEST)");
    const auto refusal = [](const std::string& words) { return diagnosticOf(commandGrammar(), words); };
    const std::string kilo(1024, 'x');
    const std::string longest = kilo + kilo + kilo + kilo + kilo + kilo + kilo + kilo;
    EXPECT_EQ(refusal(kilo + " -CIO=" + kilo + " -CLEAN=" + longest + " -TEST=" + longest), "");
    EXPECT_EQ(refusal(kilo + "x"), "Arg length too large, " + kilo + "x");
    EXPECT_EQ(refusal("a -CLEAN=" + longest + "x"), "Arg length too large, " + longest + "x");
    EXPECT_EQ(refusal("a,b ,c d\\,e"), "");
    EXPECT_EQ(positionalValue(1, 2)->text + positionalValue(1, 3)->text + positionalValue(1, 4)->text,
              "b,cd,e");
    EXPECT_TRUE(!positionalValue(1, 5) && !positionalValue(1, 0) && !positionalValue(2, 1));
}

// Another command line, with other marks: "+MODE:FAST +LEVEL:1;2".
CommandGrammar otherGrammar() {
    const RuleCondition fast{ConditionTarget::Keyword, "MODE", "FAST"};
    const RuleCondition notFull{ConditionTarget::Keyword, "MODE", "FULL", true};
    const RuleCondition levels{ConditionTarget::Argument, "LEVEL"};
    const RuleCondition noLevels{ConditionTarget::Argument, "LEVEL", "", true};
    const RuleCondition run{ConditionTarget::Option, "RUN"};
    const RuleCondition noTrace{ConditionTarget::Option, "TRACE", "", true};
    const ArgumentDef to{"to", ValueType::Text, false, 1, 6, true};
    const ArgumentDef level{"level", ValueType::Integer, true, -3, 10};
    const std::vector<KeywordDef> modes = {{"FASTER"}, {"FAST"}, {"FULL"}}; // FASTE is FAST and more
    CommandGrammar grammar{"demo", '+', ':', ';', {}, {}, {}, "\nUsage demo:\n\t[-XTRA]\n\t[+RUN]\n"};
    grammar.positionals = {{"from", ValueType::Text, false, 2, 5}, to};
    grammar.options = {{"LEVEL", true, level},
                       {"MODE", true, to, modes, false, false, 3},
                       {"RUNNER"},
                       {"RUN"},
                       {"TRACE", false, {}, {}, true}};
    grammar.rules = {{fast, levels}, {run, noTrace}, {notFull, noLevels}};
    return grammar;
}

TEST(Decoder, NumbersKeywordsNegationAndCombinations) {
    expectRefused(otherGrammar(), R"(ab c d -> Too many arguments invalid argument, d
ab;c -> List forbidden invalid argument, ab;c
ab +LEVEL:1;-4 -> Arg value too small, -4
ab +LEVEL:11 -> Arg value too large, 11
ab +LEVEL:9223372036854775808 -> Arg value too large, 9223372036854775808
ab +LEVEL:-9223372036854775809 -> Arg value too small, -9223372036854775809
ab +RU -> Ambiguous option, +RU
ab +MODE:fa -> Ambiguous value of option, fa
ab +MODE:faste +LEVEL:1 -> Illegal combination of command elements, MODE and LEVEL
ab +MODE:FASTER -> Illegal combination of command elements, MODE and LEVEL
ab +RUN -> Illegal combination of command elements, RUN and TRACE)");
    EXPECT_EQ(diagnosticOf(otherGrammar(), "ab c +LEVEL:-3;10 +run +t +level:0"), "");
    EXPECT_TRUE(optionValue(1, 1)->number == -3 && optionValue(1, 2)->number == 10 && !optionValue(1, 4));
    EXPECT_TRUE(findOption("MODE") == 0 && optionValue(2, 1)->text == "FULL" && !optionValue(2, 2))
        << "a default";
    EXPECT_TRUE(findOption("RUNNER") == 0 && findOption("RUN") == 4 && findOption("TRACE") == 5);
    EXPECT_EQ(diagnosticOf(otherGrammar(), "ab +RUNN +not +MODE:faster +L:1"), "");
    EXPECT_TRUE(findOption("RUNNER") == 3 && findOption("RUN") == 0 && findOption("TRACE") == -5);
    EXPECT_TRUE(optionValue(-2, 1)->text == "FASTER" && !optionValue(-2, 2) && !optionValue(3, 1) &&
                !optionValue(0, 1));
    EXPECT_EQ(diagnosticOf(otherGrammar(), "ab"), "");
    EXPECT_EQ(findOption("TRACE"), -5) << "off when it is not given";
    CommandGrammar optionsOnly = otherGrammar();
    optionsOnly.positionals.clear();
    EXPECT_EQ(diagnosticOf(optionsOnly, "+TRACE"), "");
    EXPECT_EQ(diagnosticOf(optionsOnly, "ab"), "Too many arguments invalid argument, ab");
}

TEST(Decoder, DiagnosticsShowTheUsage) {
    useGrammar(otherGrammar());
    const std::string head = "Orbis(R) Norvik Command analysis : ";
    const std::string usage = "\nUsage demo:\n\t[+RUN]\n\n"; // the -XT lines are left out
    EXPECT_EQ(accountOf([] { decodeCommandLine({"demo", "+zz"}); }), head + "Unknown option, zz" + usage);
    EXPECT_EQ(accountOf([] { reportCommandError(CommandError::InvalidCharacterAfterOption, "+x"); }),
              head + "Invalid character following option, +x" + usage);
    EXPECT_EQ(accountOf([] { EXPECT_EQ(findOption("run"), 0); }),
              head + "Internal error, bad option name run\n");
}

class Expansion : public FreshProgram {
protected:
    // The words behind the program's name, each followed by ";".
    static std::string expanded(Words words) {
        useGrammar(commandGrammar());
        words.insert(words.begin(), "@x"); // the name is no response file
        EXPECT_EQ(expandArguments(words), 0);
        std::string all;
        for (std::size_t i = 1; i < words.size(); ++i) {
            all += words[i] + ";";
        }
        return all;
    }
};

TEST_F(Expansion, ReferencesToTheEnvironment) {
    ::setenv("VT_DIR", "dir", 1);
    ::setenv("VT_REF", "$VT_DIR", 1);
    ::setenv("VT_NONE", "", 1);
    EXPECT_EQ(expanded({"$VT_DIR/a", "-OUTPUT=$VT_DIR.$VT_DIR", "$$VT_DIR"}), "dir/a;-OUTPUT=dir.dir;$dir;");
    EXPECT_EQ(expanded({"$VT_REF$VT_DIR", "$VT_NONE", "a$VT_NONE.b"}), "$VT_DIRdir;;a.b;");
    EXPECT_EQ(expanded({"$VT_DIRx", "$", "a$-$VT_NO/"}), "$VT_DIRx;$;a$-$VT_NO/;") << "undefined";
    EXPECT_EQ(expanded({"@" + write("f", "$VT_DIR/a \"$VT_DIR b\"")}), "dir/a;dir b;");
}

TEST_F(Expansion, ResponseFiles) {
    const auto wordsOf = [this](const std::string& text) { return expanded({"@" + write("f", text)}); };
    EXPECT_EQ(wordsOf("# comment\na.fdc \\\nb.tio\n"), "a.fdc;b.tio;");
    EXPECT_EQ(wordsOf(" \t# x\n#y\na#b # c"), "a#b;#;c;");
    EXPECT_EQ(wordsOf("\"two words\"\ta\" \"b \"\" \"open\nend "), "two words;a b;open\nend ;");
    EXPECT_EQ(wordsOf("a\\\nb c\\\r\nd e\\"), "ab;c;d;e;");
    EXPECT_EQ(wordsOf("a\\,b \\\"c d\\\\e"), "a\\,b;\\\"c;d\\\\e;");
    EXPECT_EQ(wordsOf("@x -option=x\r\n"), "@x;-option=x;") << "they do not nest";
    const std::string name = write("long", std::string(5000, 'x'));
    EXPECT_EQ(expanded({"1", "-oPtIoN=" + name, "-OPTIONS=2"}),
              "1;" + std::string(5000, 'x') + ";-OPTIONS=2;");
    for (const std::string& unreadable : {path("missing"), path("")}) { // a directory is no file
        Words words = {"x", "@" + name, "@" + unreadable};
        const Words before = words;
        const std::string message = outcomeOf([&] { EXPECT_EQ(expandArguments(words), -1); }).messages;
        EXPECT_NE(message.find(" : File not found " + unreadable + "\nUsage"), std::string::npos) << message;
        EXPECT_EQ(words, before);
    }
}

} // namespace
} // namespace veldacov::test
