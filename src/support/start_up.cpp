#include "support/start_up.h"

#include <cstdlib>
#include <deque>
#include <optional>

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QTranslator>

#include "support/machine.h"
#include "support/platform.h"

namespace veldacov {

namespace {

// Sets an environment variable, or unsets it; gives what it was.
std::optional<QByteArray> exchangeVariable(const char* name, const std::optional<QByteArray>& value) {
    std::optional<QByteArray> before;
    if (qEnvironmentVariableIsSet(name)) {
        before = qgetenv(name);
    }
    value ? qputenv(name, *value) : qunsetenv(name);
    return before;
}

// Ends the run with a text that cannot be translated yet, where the directory is required.
void refuseStart(const QString& message, Installation installation) {
    if (installation == Installation::Required) {
        writeStandardError(message);
        endProgram(ExitStatus::NoLocaleDirectory);
    }
}

// The directory of the translation files, below the installation directory; empty when there is none.
QString localeDirectory(Installation required) {
    const char* installation = std::getenv("NORVIKDIR");
    if (installation == nullptr || *installation == '\0') {
        refuseStart(QStringLiteral("Fatal Error: please setup NORVIKDIR environment variable.\n"), required);
        return {};
    }
    QString path = QFile::decodeName(installation) + QDir::separator() + "lib" + QDir::separator() + "locale";
    if (!QFileInfo(path).isDir()) {
        refuseStart(QStringLiteral("Fatal Error: directory doesn't exist '") + path + QStringLiteral("'\n"),
                    required);
        return {};
    }
    return path;
}

} // namespace

struct ProgramStart::Toolkit {
    Toolkit(int& argumentCount, char** arguments) : application(argumentCount, arguments) {}

    void installTranslations(const QString& directory, std::span<const char* const> families) {
        for (const char* family : families) {
            QTranslator& translator = translators.emplace_back();
            if (translator.load(family + QLocale().name(), directory)) {
                QCoreApplication::installTranslator(&translator);
            }
        }
    }

    QCoreApplication application;
    std::deque<QTranslator> translators;
};

ProgramStart::ProgramStart(int& argumentCount, char** arguments, const char* executable,
                           std::span<const char* const> families, Installation installation) {
    // The toolkit's own remarks are no texts of the program.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    platform::reserveStandardDescriptors();
    platform::letTooLargeFilesFail();
    platform::keepFreedMemory();
    installMemoryGuard();
    // The program runs no event loop, and that library aborts when memory runs out. Words of the command line may refer
    // to variables, so the environment becomes what it was.
    const auto before = exchangeVariable("QT_NO_GLIB", QByteArray("1"));
    toolkit_ = std::make_unique<Toolkit>(argumentCount, arguments);
    exchangeVariable("QT_NO_GLIB", before);
    if (const QString directory = localeDirectory(installation); !directory.isEmpty()) {
        toolkit_->installTranslations(directory, families);
    }
    setProductIdentity(translate("ULMOIdent", "Norvik"), QString::fromLatin1(executable));
}

ProgramStart::~ProgramStart() = default;

} // namespace veldacov
