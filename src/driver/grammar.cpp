#include "driver/grammar.h"

#include <cstdint>
#include <string_view>

#include <QtGlobal>

namespace veldacov {

namespace {

// -FLOW is accepted without being listed.
constexpr const char* usage =
    QT_TRANSLATE_NOOP("Command-line", "\nUsage veldacov:\n"
                                      "<file>[,file]\n"
                                      "\t[-PROC[=<RET>]]\n"
                                      "\t[-NOPROC]\n"
                                      "\t[-CALL|-NOCALL]\n"
                                      "\t[-BLOCK[=<IMPLICIT|DECISION|LOGICAL|ATC>]]\n"
                                      "\t[-NOBLOCK]\n"
                                      "\t[-COND[=<MODIFIED|COMPOUND>]]\n"
                                      "\t[-NOCOND]\n"
                                      "\t[-OUTPUT=<file>]\n"
                                      "\t[-LISTING[=<directory>]]\n"
                                      "\t[-GLOBAL|-NOGLOBAL]\n"
                                      "\t[-CLEAN=<newtiofile>]\n"
                                      "\t[-MERGETESTS]\n"
                                      "\t[-BRANCH=<NOCOV|COV>]\n"
                                      "\t[-SUMMARY=<SERVICE|FILE|CONCLUSION>]\n"
                                      "\t[-FILE=<file>[,file]]\n"
                                      "\t[-EXFILE=<file>[,file]]\n"
                                      "\t[-SERVICE=<name>[,name]]\n"
                                      "\t[-EXSERVICE=<name>[,name]]\n"
                                      "\t[-TEST=<test>[,test]]\n"
                                      "\t[-EXTEST=<test>[,test]]\n"
                                      "\t[-CIO=<file>]\n");

constexpr std::int32_t shortest = 1;
constexpr std::int32_t longest = 1024;
constexpr std::int32_t longestList = 8192;

ArgumentDef value(std::string_view name) {
    return {.name = name, .min = shortest, .max = longest};
}

ArgumentDef list(std::string_view name) {
    return {.name = name, .isList = true, .min = shortest, .max = longestList};
}

CombinationRule notTogether(std::string_view first, std::string_view second) {
    return {{.option = first}, {.option = second}};
}

} // namespace

CommandGrammar commandGrammar() {
    CommandGrammar grammar;
    grammar.programName = "veldacov";
    grammar.usage = usage;
    // The one argument name that a diagnostic may show: its translation stands there.
    grammar.positionals = {
        {.name = QT_TRANSLATE_NOOP("Command-line", "file"), .isList = true, .min = shortest, .max = longest}};
    grammar.options = {
        {.name = "PROC", .argument = value("proc type"), .keywords = {{"RET"}}},
        {.name = "NOPROC"},
        {.name = "CALL", .negatable = true},
        {.name = "BLOCK",
         .argument = value("block type"),
         .keywords = {{"ATC"}, {"LOGICAL"}, {"DECISION"}, {"IMPLICIT"}}},
        {.name = "NOBLOCK"},
        {.name = "COND", .argument = value("cond type"), .keywords = {{"COMPOUND"}, {"MODIFIED"}}},
        {.name = "NOCOND"},
        {.name = "OUTPUT", .argumentMandatory = true, .argument = value("file")},
        {.name = "LISTING", .argument = value("directory")},
        {.name = "GLOBAL", .negatable = true, .defaultOn = true},
        {.name = "CLEAN",
         .argumentMandatory = true,
         .argument = ArgumentDef{.name = "newtiofile", .min = shortest, .max = longestList}},
        {.name = "MERGETESTS"},
        {.name = "BRANCH",
         .argumentMandatory = true,
         .argument = value("branch type"),
         .keywords = {{"COV"}, {"NOCOV"}}},
        {.name = "SUMMARY",
         .argumentMandatory = true,
         .argument = value("summary type"),
         .keywords = {{"CONCLUSION"}, {"FILE"}, {"SERVICE"}}},
        {.name = "FILE", .argumentMandatory = true, .argument = list("file")},
        {.name = "EXFILE", .argumentMandatory = true, .argument = list("file")},
        {.name = "SERVICE", .argumentMandatory = true, .argument = list("name")},
        {.name = "EXSERVICE", .argumentMandatory = true, .argument = list("name")},
        {.name = "TEST", .argumentMandatory = true, .argument = list("test")},
        {.name = "EXTEST", .argumentMandatory = true, .argument = list("test")},
        {.name = "CIO", .argumentMandatory = true, .argument = value("file")},
        {.name = "FLOW", .argumentMandatory = true, .argument = value("file")},
    };
    grammar.rules = {notTogether("PROC", "NOPROC"),       notTogether("BLOCK", "NOBLOCK"),
                     notTogether("COND", "NOCOND"),       notTogether("FILE", "EXFILE"),
                     notTogether("SERVICE", "EXSERVICE"), notTogether("TEST", "EXTEST")};
    return grammar;
}

} // namespace veldacov
