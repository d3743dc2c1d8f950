#include "support/input_names.h"

#include <algorithm>
#include <optional>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include "support/platform.h"

namespace veldacov {

class InputNames::Directories {
public:
    // The entries of a directory that match a name filter of the toolkit: several patterns may stand in it, and case
    // does not matter.
    QStringList matches(const QString& directory, const QString& nameFilter) {
        if (isPlain(nameFilter)) {
            QStringList entries = alike(directory, nameFilter);
            if (entries.size() <= 1) {
                return entries;
            }
        }
        return QDir(directory, nameFilter).entryList();
    }

private:
    using EntriesByName = QMultiHash<QString, QString>; // by names without case

    static bool isPlain(const QString& name) {
        return !name.isEmpty() && std::all_of(name.begin(), name.end(), [](QChar character) {
            return character.unicode() < 128 &&
                   (character.isLetterOrNumber() || QStringLiteral("._-+").contains(character));
        });
    }

    // Those whose names differ from the given one at most in case.
    QStringList alike(const QString& directory, const QString& name) {
        QStringList found;
        for (const QString& entry : entriesOf(directory).values(name.toCaseFolded())) {
            if (entry.compare(name, Qt::CaseInsensitive) == 0) { // a folded letter may stand for two
                found.push_back(entry);
            }
        }
        return found;
    }

    const EntriesByName& entriesOf(const QString& directory) {
        const auto known = listed_.constFind(directory);
        if (known != listed_.constEnd()) {
            return *known;
        }
        EntriesByName& entries = listed_[directory];
        for (const QString& entry : QDir(directory).entryList()) {
            entries.insert(entry.toCaseFolded(), entry);
        }
        return entries;
    }

    QHash<QString, EntriesByName> listed_;
};

namespace {

// Neither a file nor a directory: a pipe, a device, a socket.
bool isSpecialFile(const std::string& name) {
    const std::optional<platform::FileStatus> status = platform::fileStatus(name);
    return status && status->kind != platform::FileKind::Regular &&
           status->kind != platform::FileKind::Directory;
}

} // namespace

InputNames::InputNames() : directories_(std::make_unique<Directories>()) {}
InputNames::~InputNames() = default;

void InputNames::expand(const std::string& value, std::vector<std::string>& inputFiles) {
    const QFileInfo pattern(QFile::decodeName(value.c_str()));
    const QString directory = pattern.path();
    const QStringList entries = directories_->matches(directory, pattern.fileName());
    if (entries.isEmpty() || isSpecialFile(value)) {
        inputFiles.push_back(value);
    }
    for (const QString& entry : entries) {
        const QString path = directory + QDir::separator() + entry;
        if (QFileInfo(path).isFile()) { // directories are dropped
            inputFiles.push_back(QFile::encodeName(path).toStdString());
        }
    }
}

} // namespace veldacov
