// The program: a straight sequence of steps, each done by the module of its name.

#include <array>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QTranslator>

#include "driver/banner.h"
#include "driver/program.h"
#include "support/machine.h"
#include "support/platform.h"

namespace veldacov {

namespace {

constexpr std::array translationFamilies = {"cov_", "common_", "cab_", "ulmoident_"};
using Translators = std::array<QTranslator, translationFamilies.size()>;

// Sets an environment variable, or unsets it; gives what it was.
std::optional<QByteArray> exchangeVariable(const char* name, const std::optional<QByteArray>& value) {
    std::optional<QByteArray> before;
    if (qEnvironmentVariableIsSet(name)) {
        before = qgetenv(name);
    }
    value ? qputenv(name, *value) : qunsetenv(name);
    return before;
}

// The directory of the translation files, below the installation directory. Without it the run ends here,
// with texts that cannot be translated yet.
QString localeDirectory() {
    const char* installation = std::getenv("NORVIKDIR");
    if (installation == nullptr || *installation == '\0') {
        writeStandardError(QStringLiteral("Fatal Error: please setup NORVIKDIR environment variable.\n"));
        endProgram(ExitStatus::NoLocaleDirectory);
    }
    QString path = QFile::decodeName(installation) + QDir::separator() + "lib" + QDir::separator() + "locale";
    if (!QFileInfo(path).isDir()) {
        writeStandardError(QStringLiteral("Fatal Error: directory doesn't exist '") + path +
                           QStringLiteral("'\n"));
        endProgram(ExitStatus::NoLocaleDirectory);
    }
    return path;
}

void installTranslations(Translators& translators) {
    const QString directory = localeDirectory();
    for (std::size_t family = 0; family < translators.size(); ++family) {
        const QString fileName = translationFamilies[family] + QLocale().name();
        if (translators[family].load(fileName, directory)) {
            QCoreApplication::installTranslator(&translators[family]);
        }
    }
}

} // namespace

} // namespace veldacov

int main(int argumentCount, char** arguments) {
    using namespace veldacov;
    // The toolkit's own remarks are no texts of this program.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    platform::reserveStandardDescriptors();
    platform::letTooLargeFilesFail();
    platform::keepFreedMemory();
    installMemoryGuard();
    // The program runs no event loop, and that library aborts when memory runs out. Words of the command line may refer
    // to variables, so the environment becomes what it was.
    const auto before = exchangeVariable("QT_NO_GLIB", QByteArray("1"));
    const QCoreApplication application(argumentCount, arguments);
    exchangeVariable("QT_NO_GLIB", before);
    Translators translators;
    installTranslations(translators);
    setProductIdentity(translate("ULMOIdent", "Norvik"), QStringLiteral("veldacov"));
    const std::vector<std::string> words(arguments, arguments + argumentCount);
    versionEntry(words);
    runProgram(words);
    return static_cast<int>(ExitStatus::Normal);
}
