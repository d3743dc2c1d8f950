#include "descriptions.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include "compiler_line.h"
#include "words.h"

namespace veldacc {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view ownerMark = "# object ";
constexpr int mostVariants = 1000;

// Builds run in parallel: who looks at the descriptions of a directory has it for itself.
class DirectoryLock {
public:
    explicit DirectoryLock(const fs::path& directory)
        : descriptor_(open(directory.c_str(), O_RDONLY | O_CLOEXEC)) {
        static_cast<void>(flock(descriptor_, LOCK_EX));
    }
    ~DirectoryLock() { close(descriptor_); }
    DirectoryLock(const DirectoryLock&) = delete;
    DirectoryLock& operator=(const DirectoryLock&) = delete;

private:
    int descriptor_;
};

// A kept file: what the instrumenter wrote, and the lines about its owners.
struct Kept {
    std::string description;
    std::vector<std::string> owners;
};

Kept split(const std::string& text) {
    Kept kept;
    std::size_t end = text.size();
    for (;;) { // owners stand at the end, from the last to the first
        const std::size_t lineEnd = end;
        const std::size_t begin = lineEnd < 2 ? 0 : text.rfind('\n', lineEnd - 2) + 1;
        if (lineEnd == 0 || text.compare(begin, ownerMark.size(), ownerMark) != 0) {
            break;
        }
        kept.owners.insert(kept.owners.begin(), text.substr(begin, lineEnd - begin));
        end = begin;
    }
    kept.description = text.substr(0, end);
    return kept;
}

std::string join(const Kept& kept) {
    std::string text = kept.description;
    for (const std::string& owner : kept.owners) {
        text += owner;
    }
    return text;
}

// Libtool's objects for shared libraries stand in a directory below that of the others, and one description is enough.
fs::path besideObject(const std::string& object) {
    fs::path directory = fs::absolute(object).lexically_normal().parent_path();
    const std::string last = directory.filename();
    return last == ".libs" || last == "_libs" ? directory.parent_path() : directory;
}

// The directory of a description, the name it should have and the line about its owner.
struct Place {
    fs::path directory;
    std::string stem;
    std::string owner;

    [[nodiscard]] fs::path variant(int number) const {
        return directory / (number == 1 ? stem + ".fdc" : stem + '-' + std::to_string(number) + ".fdc");
    }
};

Place placeOf(const Described& described, const std::string& directory) {
    Place place;
    place.directory = directory.empty() ? besideObject(described.object) : fs::path(directory);
    place.stem = withoutSuffix(baseName(described.source));
    if (place.stem == "-") {
        place.stem = "stdin";
    }
    const fs::path object = fs::absolute(described.object).lexically_normal();
    place.owner = std::string(ownerMark) + '"' + object.lexically_relative(place.directory).string() + '"';
    if (described.linked) {
        place.owner += " \"" + described.source + '"';
    }
    place.owner += '\n';
    return place;
}

bool replaceFile(const fs::path& path, const std::string& text) {
    const fs::path fresh = path.string() + ".new";
    std::error_code error;
    if (!writeFile(fresh, text)) {
        fs::remove(fresh, error);
        return false;
    }
    fs::rename(fresh, path, error);
    return !error;
}

// Takes the owner from all files of the place, files without any owner away, and adds it to the file with this
// description. True when there was one.
bool claimExisting(const Place& place, const std::string& description) {
    bool found = false;
    for (int number = 1; number <= mostVariants; ++number) {
        const fs::path path = place.variant(number);
        const std::optional<std::string> text = readFile(path);
        if (!text) {
            if (number > 1) { // the first may have gone while there are others
                break;
            }
            continue;
        }
        const Kept before = split(*text);
        if (before.owners.empty()) { // not made here
            continue;
        }
        Kept after = before;
        std::erase(after.owners, place.owner);
        if (!found && !description.empty() && before.description == description) {
            after.owners.push_back(place.owner);
            std::sort(after.owners.begin(), after.owners.end());
            found = true;
        }
        std::error_code error;
        if (after.owners.empty()) {
            fs::remove(path, error);
        } else if (after.owners != before.owners) {
            static_cast<void>(replaceFile(path, join(after)));
        }
    }
    return found;
}

} // namespace

Keeping keepDescription(const std::string& made, const Described& described, const std::string& directory) {
    const Place place = placeOf(described, directory);
    std::error_code error;
    fs::create_directories(place.directory, error);
    const DirectoryLock lock(place.directory);
    const std::optional<std::string> description = readFile(made);
    if (claimExisting(place, description.value_or("")) || !description) {
        return {};
    }
    int number = 1;
    while (number < mostVariants && fs::exists(place.variant(number), error)) {
        ++number;
    }
    const fs::path path = place.variant(number);
    return {.done = replaceFile(path, *description + place.owner), .file = path};
}

void forgetDescription(const Described& described, const std::string& directory) {
    const Place place = placeOf(described, directory);
    std::error_code error;
    if (fs::is_directory(place.directory, error)) {
        const DirectoryLock lock(place.directory);
        static_cast<void>(claimExisting(place, ""));
    }
}

} // namespace veldacc
