#include "support/input_names.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMultiHash>
#include <QSet>

#include "support/platform.h"

namespace veldacov {

// Only names with wildcards ask the toolkit, whose search of a directory costs what is in it.
class InputNames::Directories {
public:
    // The entries of a directory that match a name filter of the toolkit, in its order: semicolons or blanks stand
    // between the names of a filter, and case does not matter.
    QStringList matches(const QString& directory, const QString& nameFilter) {
        const QStringList names = QDir::nameFiltersFromString(nameFilter);
        if (const Listing* listing = canBeLookedUp(names) ? listed(directory) : nullptr) {
            if (const std::optional<QStringList> found = inOrder(alike(*listing, names))) {
                return *found;
            }
        }
        return QDir(directory, nameFilter).entryList();
    }

private:
    struct Listing {
        QStringList entries;                   // in the order of the system
        QMultiHash<QString, qsizetype> places; // of each entry, by its name without case
    };
    struct Found {
        QString sortedAs;
        qsizetype place = 0;
        QString entry;
    };

    // A filter without any name takes everything.
    static bool canBeLookedUp(const QStringList& names) {
        const auto hasWildcard = [](const QString& name) {
            return std::any_of(name.begin(), name.end(),
                               [](QChar character) { return QStringLiteral("*?[").contains(character); });
        };
        return std::none_of(names.begin(), names.end(), hasWildcard) &&
               !std::all_of(names.begin(), names.end(), [](const QString& name) { return name.isEmpty(); });
    }

    // Null for what is not there. One directory may be named in as many ways as it has files: by each way it is looked
    // for once, and it is listed once.
    const Listing* listed(const QString& directory) {
        const auto known = byName_.constFind(directory);
        if (known != byName_.constEnd()) {
            return *known;
        }
        const std::optional<platform::FileStatus> status =
            platform::fileStatus(QFile::encodeName(directory).toStdString());
        if (!status) {
            return nullptr;
        }
        const auto [place, isNew] = listings_.try_emplace(status->identity);
        if (isNew) {
            fill(place->second, directory);
        }
        byName_.insert(directory, &place->second);
        return &place->second;
    }

    static void fill(Listing& listing, const QString& directory) {
        listing.entries = QDir(directory, QString(), QDir::Unsorted).entryList();
        for (qsizetype place = 0; place < listing.entries.size(); ++place) {
            listing.places.insert(listing.entries[place].toCaseFolded(), place);
        }
    }

    // Those whose names differ from one of the given ones at most in case.
    static std::vector<Found> alike(const Listing& listing, const QStringList& names) {
        std::vector<Found> found;
        QSet<QString> lookedUp;
        for (const QString& name : names) {
            const QString folded = name.toCaseFolded();
            if (lookedUp.contains(folded)) {
                continue;
            }
            lookedUp.insert(folded);
            const auto [first, last] = listing.places.equal_range(folded);
            for (auto place = first; place != last; ++place) {
                const QString& entry = listing.entries[*place];
                found.push_back({entry.toLower(), *place, entry});
            }
        }
        return found;
    }

    // In the toolkit's order: by small letters, and among equal ones as the system lists them. None when only the
    // toolkit knows the order: its sort does not keep that of equal ones when there are more than a few.
    static std::optional<QStringList> inOrder(std::vector<Found> found) {
        constexpr std::size_t keepsOrderUpTo = 16;
        const auto key = [](const Found& entry) { return std::tie(entry.sortedAs, entry.place); };
        std::sort(found.begin(), found.end(),
                  [key](const Found& left, const Found& right) { return key(left) < key(right); });
        const bool anyEqual =
            std::adjacent_find(found.begin(), found.end(), [](const Found& left, const Found& right) {
                return left.sortedAs == right.sortedAs;
            }) != found.end();
        if (anyEqual && found.size() > keepsOrderUpTo) {
            return std::nullopt;
        }
        QStringList entries;
        for (const Found& entry : found) {
            entries.push_back(entry.entry);
        }
        return entries;
    }

    std::map<platform::FileIdentity, Listing> listings_;
    QHash<QString, const Listing*> byName_;
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
