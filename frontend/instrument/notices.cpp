#include "notices.h"

#include <array>

#include <QCoreApplication>

#include "support/machine.h"
#include "translations.h"

namespace veldacc {

namespace {

constexpr const char* context = "Veldacc Instrumenter";

enum class Severity : std::uint8_t { Info, Warning, Error };

struct NoticeText {
    Severity severity;
    veldacov::TranslatableText text;
};

// By NoticeKind.
constexpr std::array noticeTexts = {
    NoticeText{Severity::Warning,
               QT_TRANSLATE_NOOP3("Veldacc Instrumenter", "%1:%2: function %3 is left as it is: %4",
                                  "%1 is a source, %2 a line, %3 a function, %4 a construct of C or the "
                                  "parser's message")},
    NoticeText{
        Severity::Info,
        QT_TRANSLATE_NOOP3("Veldacc Instrumenter",
                           "%1:%2: the cases of a decision of %3 conditions are not described: more than %4",
                           "%1 is a source, %2 a line, %3 and %4 are numbers")},
    NoticeText{Severity::Info,
               QT_TRANSLATE_NOOP3("Veldacc Instrumenter",
                                  "%1: what macros made cannot be traced back to them; texts are those of "
                                  "the preprocessed source",
                                  "%1 is a source")},
    NoticeText{Severity::Warning,
               QT_TRANSLATE_NOOP3("Veldacc Instrumenter", "%1: not understood; it is not instrumented",
                                  "%1 is a source")},
    NoticeText{Severity::Warning,
               QT_TRANSLATE_NOOP3("Veldacc Instrumenter", "Cannot read %1", "%1 is a file")},
    NoticeText{Severity::Warning,
               QT_TRANSLATE_NOOP3("Veldacc Instrumenter", "Cannot write %1", "%1 is a file")},
    NoticeText{Severity::Error,
               QT_TRANSLATE_NOOP3("Veldacc Instrumenter", "Unknown option %1", "%1 is an option")},
    NoticeText{Severity::Error, QT_TRANSLATE_NOOP3("Veldacc Instrumenter", "Option %1 cannot be %2",
                                                   "%1 is an option, %2 a text")},
};

// Some values are words of this program, such as the reason why a function is left.
QString shown(const std::string& value) {
    const QString translated = QCoreApplication::translate(context, value.c_str());
    return translated == QString::fromUtf8(value.c_str()) ? veldacov::fromLocal(value) : translated;
}

void say(const Notice& notice, bool strict) {
    const NoticeText& entry = noticeTexts.at(static_cast<std::size_t>(notice.kind));
    QString text = veldacov::translate(context, entry.text);
    for (const std::string& value : notice.values) {
        text = text.arg(shown(value));
    }
    if (entry.severity == Severity::Info) {
        veldacov::infoMessage(text);
    } else if (entry.severity == Severity::Warning && !strict) {
        veldacov::warningMessage(text);
    } else {
        veldacov::userError(text);
    }
}

} // namespace

void sayNotices(const std::vector<Notice>& notices, bool strict, char* program) {
    if (notices.empty()) {
        return; // nearly always: the library is not even begun
    }
    qputenv("QT_NO_GLIB", "1");
    int argumentCount = 1;
    std::array<char*, 2> arguments = {program, nullptr};
    const QCoreApplication application(argumentCount, arguments.data());
    const Translations translations(QCoreApplication::applicationDirPath());
    veldacov::setProductIdentity(veldacov::translate("ULMOIdent", "Norvik"), QStringLiteral("veldacc"));
    for (const Notice& notice : notices) {
        say(notice, strict);
    }
}

} // namespace veldacc
