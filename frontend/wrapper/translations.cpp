#include "translations.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocale>

namespace veldacc {

namespace {

constexpr std::array families = {"acc_", "common_", "ulmoident_"};

// Beside the library directory, or in the tree of the report generator's package.
QStringList candidates(const QString& libraryDirectory) {
    QStringList directories;
    if (qEnvironmentVariableIsSet("NORVIKDIR")) {
        directories << QFile::decodeName(qgetenv("NORVIKDIR")) + QStringLiteral("/lib/locale");
    }
    return directories << libraryDirectory + QStringLiteral("/../locale")
                       << libraryDirectory + QStringLiteral("/../norvik/lib/locale");
}

} // namespace

Translations::Translations(const QString& libraryDirectory) {
    for (std::size_t family = 0; family < families.size(); ++family) {
        for (const QString& directory : candidates(libraryDirectory)) {
            if (translators_[family].load(families[family] + QLocale().name(), directory)) {
                QCoreApplication::installTranslator(&translators_[family]);
                break;
            }
        }
    }
}

} // namespace veldacc
