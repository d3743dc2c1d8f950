#include "driver/banner.h"

#include <QDate>
#include <QTime>

#include "support/machine.h"

namespace veldacov {

namespace {

constexpr std::string_view buildNumber = toolVersion.substr(toolVersion.size() - 7); // its last two parts

std::string buildDate() {
    return toLocal(QDate(2007, 1, 31).toString(Qt::ISODate));
}

std::string buildTime() {
    return toLocal(QTime(18, 16).toString(Qt::ISODate));
}

} // namespace

bool isVersionRequest(std::string_view argument) {
    constexpr std::string_view word = "VERSION";
    if (!argument.starts_with('-')) {
        return false;
    }
    const std::string letters = duplicateUpper(argument.substr(1));
    return !letters.empty() && word.starts_with(letters);
}

void versionEntry(const std::vector<std::string>& words) {
    if (words.size() != 2 || !isVersionRequest(words[1])) {
        return;
    }
    OutputFile out = standardOutput();
    printBanner(out, "", "");
    out.finish();
    endProgram(ExitStatus::Normal);
}

void printBanner(OutputFile& out, std::string_view prefix, std::string_view suffix) {
    const std::string product = toLocal(translate("ULMOIdent", "Corvane Orbis Norvik Suite"));
    const std::string tool = toLocal(translate("Version", "Coverage Report Generator"));
    const std::string system = toLocal(translate("Version", "ms-dos", "Operating system name"));
    out.put(toLocal(filled(
        translate("Version", "%1 %2 %3 %4 %5\n", "%1 is a prefix, %2 a product name, %3 a module name"),
        {prefix, product, tool, toolVersion, suffix})));
    out.put(toLocal(filled(
        translate("Version", "%1 Build Number: %2 %3\n", "%1 is a prefix, %2 a build number, %3 a suffix"),
        {prefix, buildNumber, suffix})));
    out.put(toLocal(filled(
        translate("Version", "%1   Date : %2 %3 %4\n", "%1 is a prefix, %2 a date, %3 a time, %4 a suffix"),
        {prefix, buildDate(), buildTime(), suffix})));
    out.put(
        toLocal(filled(translate("Version", "%1    OS : %2 %3\n",
                                 "%1 is a string prefix, %2 the operating system name, %3 a string suffix"),
                       {prefix, system, suffix})));
}

} // namespace veldacov
