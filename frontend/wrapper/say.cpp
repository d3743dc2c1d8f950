// `veldacc-say MANNER NUMBER VALUE...`: says one message of `veldacc` in the language of the user. The manner is `say`,
// or `error` for a warning that the user wants to be an error.

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <QCoreApplication>

#include "messages.h"
#include "support/machine.h"
#include "support/platform.h"
#include "translations.h"

namespace veldacc {

namespace {

using veldacov::TranslatableText;

enum class Kind : std::uint8_t { Output, Info, Warning, Error };

struct MessageText {
    Kind kind;
    TranslatableText text;
};

// By Message.
constexpr std::array messageTexts = {
    MessageText{Kind::Output,
                QT_TRANSLATE_NOOP3(
                    "Veldacc Usage",
                    "Usage: veldacc [options] [--] COMPILER ARGUMENTS...\n"
                    "Compiles C so that the program writes traces, and describes what they can hit.\n\n"
                    "  --fdc-dir DIR       put descriptions into DIR, not beside the objects\n"
                    "  --root DIR          name sources from DIR on, so that names do not depend on where "
                    "the tree stands\n"
                    "  --types LIST        describe these only: PR,RE,AP,BS,BI,BL,BA,CO,CC\n"
                    "  --headers           describe functions in headers, too\n"
                    "  --forced            evaluate all conditions of a decision where that is safe\n"
                    "  --max-cases N       leave out decisions with more cases\n"
                    "  --ordered           keep every hit as it happens\n"
                    "  --strict            what cannot be instrumented is an error\n"
                    "  --time-limit S      compile a source as it is after S seconds (60); 0: never\n"
                    "  --verbose           show the commands of all steps\n"
                    "  --keep-temporary    keep the files between the steps\n"
                    "  --help, --version\n\n"
                    "VELDACC_OPTIONS holds further options, VELDACC=off switches everything off.\n",
                    "the options stay as they are")},
    MessageText{Kind::Output, QT_TRANSLATE_NOOP3("Veldacc Usage", "%1 veldacc %2\n",
                                                 "%1 is the product name, %2 the version")},
    MessageText{Kind::Error,
                QT_TRANSLATE_NOOP3("Veldacc Message", "Unknown option %1; veldacc --help lists them",
                                   "%1 is an option")},
    MessageText{Kind::Error,
                QT_TRANSLATE_NOOP3("Veldacc Message", "Option %1 needs a value", "%1 is an option")},
    MessageText{Kind::Error,
                QT_TRANSLATE_NOOP3("Veldacc Message", "The time limit is a number of seconds, not %1",
                                   "%1 is a text")},
    MessageText{Kind::Error,
                QT_TRANSLATE_NOOP3("Veldacc Message",
                                   "No compiler: veldacc stands in front of one, as in veldacc gcc -c x.c",
                                   "the example stays as it is")},
    MessageText{Kind::Error, QT_TRANSLATE_NOOP3("Veldacc Message", "Cannot run %1: %2",
                                                "%1 is a program, %2 the system's reason")},
    MessageText{Kind::Error, QT_TRANSLATE_NOOP3("Veldacc Message", "Cannot make a temporary directory %1: %2",
                                                "%1 is a name, %2 the system's reason")},
    MessageText{
        Kind::Error,
        QT_TRANSLATE_NOOP3(
            "Veldacc Message",
            "As a compiler launcher, veldacc does not see the links. Make it the compiler instead: configure "
            "in a fresh directory with CC=\"veldacc gcc\" in the environment, without "
            "CMAKE_C_COMPILER_LAUNCHER",
            "names of variables stay as they are")},
    MessageText{Kind::Warning,
                QT_TRANSLATE_NOOP3("Veldacc Message",
                                   "%1: the instrumenter failed (status %2); it is not instrumented",
                                   "%1 is a source, %2 a number")},
    MessageText{Kind::Warning,
                QT_TRANSLATE_NOOP3("Veldacc Message",
                                   "%1: instrumenting took more than %2 seconds; it is not instrumented",
                                   "%1 is a source, %2 a number")},
    MessageText{Kind::Warning,
                QT_TRANSLATE_NOOP3("Veldacc Message",
                                   "%1: the instrumented source does not compile; it is not instrumented",
                                   "%1 is a source")},
    MessageText{Kind::Warning,
                QT_TRANSLATE_NOOP3("Veldacc Message", "Cannot write the description %1", "%1 is a file")},
    MessageText{Kind::Warning,
                QT_TRANSLATE_NOOP3("Veldacc Message", "%1 cannot compile the run-time library:\n%2",
                                   "%1 is a compiler, %2 what it said")},
    MessageText{Kind::Warning,
                QT_TRANSLATE_NOOP3("Veldacc Message", "There is no run-time library %1", "%1 is a file")},
    MessageText{Kind::Info, QT_TRANSLATE_NOOP3("Veldacc Message", "The files between the steps stay in %1",
                                               "%1 is a directory")},
};

void print(Kind kind, const QString& text) {
    switch (kind) {
    case Kind::Output:
        static_cast<void>(
            veldacov::platform::writeAll(veldacov::platform::standardOutput, veldacov::toLocal(text)));
        break;
    case Kind::Info: veldacov::infoMessage(text); break;
    case Kind::Warning: veldacov::warningMessage(text); break;
    case Kind::Error: veldacov::userError(text); break;
    }
}

void saySo(Message number, bool asError, std::vector<std::string> values) {
    const MessageText& message = messageTexts.at(static_cast<std::size_t>(number));
    if (number == Message::Version) {
        values = {veldacov::toLocal(veldacov::getProductName()), std::string(veldacov::toolVersion)};
    }
    QString text =
        veldacov::translate(message.kind == Kind::Output ? "Veldacc Usage" : "Veldacc Message", message.text);
    for (const std::string& value : values) {
        text = text.arg(veldacov::fromLocal(value));
    }
    print(asError ? Kind::Error : message.kind, text);
}

} // namespace

} // namespace veldacc

int main(int argumentCount, char** arguments) {
    using namespace veldacc;
    if (argumentCount < 3) {
        return 2;
    }
    qputenv("QT_NO_GLIB", "1");
    const QCoreApplication application(argumentCount, arguments);
    const Translations translations(QCoreApplication::applicationDirPath());
    veldacov::setProductIdentity(veldacov::translate("ULMOIdent", "Norvik"), QStringLiteral("veldacc"));
    saySo(static_cast<Message>(std::strtol(arguments[2], nullptr, 10)),
          std::string_view(arguments[1]) == "error",
          std::vector<std::string>(arguments + 3, arguments + argumentCount));
    return 0;
}
