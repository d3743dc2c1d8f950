#include "view/page_folder.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "support/files.h"
#include "support/machine.h"

namespace veldacov {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view listName = "veldaview-pages.txt";
constexpr std::string_view listHead = "Pages of veldaview. What is listed here is replaced by the next run.";
constexpr std::string_view newPrefix = ".veldaview-pages-";
constexpr std::array pageFolders = {"source", "tests"};

[[noreturn]] void cannotCreate(const std::string& name) {
    fatalError(filled(translate("View", "Cannot create folder %1", "%1 is the name of a folder"), {name}));
}

// The folder's own name, wherever links to it stand.
std::string placeOf(const std::string& target) {
    std::error_code failed;
    const fs::path absolute = fs::absolute(target, failed);
    if (failed) { // no name at all, or the present folder is gone
        cannotCreate(target);
    }
    fs::path place = fs::weakly_canonical(absolute, failed);
    if (!place.has_filename()) { // "out/" is out
        place = place.parent_path();
    }
    return failed || !place.has_filename() ? target : place.string();
}

// The names on a folder's list; none when it has no list.
std::set<std::string> listedNames(const std::string& folder) {
    std::set<std::string> names;
    InputFile list = openRegularInput(joinPath(folder, listName));
    std::string_view line;
    if (!list.isOpen() || !readRawLine(list, line) || !line.starts_with(listHead)) {
        return names;
    }
    names.insert(std::string(listName));
    while (readRawLine(list, line)) {
        names.insert(std::string(line.substr(0, line.find('\n'))));
    }
    return names;
}

// What is in a folder and is no page; empty when there is nothing of the kind.
std::string strangerIn(const std::string& folder) {
    const std::set<std::string> names = listedNames(folder);
    std::error_code failed;
    fs::recursive_directory_iterator entry(folder, failed);
    for (; !failed && entry != fs::recursive_directory_iterator(); entry.increment(failed)) {
        std::string name = entry->path().lexically_relative(folder).string();
        const bool isPageFolder = !names.empty() &&
                                  entry->symlink_status().type() == fs::file_type::directory &&
                                  (name == pageFolders[0] || name == pageFolders[1]);
        const bool isPage = names.contains(name) && entry->symlink_status().type() == fs::file_type::regular;
        if (!isPageFolder && !isPage) {
            return name;
        }
    }
    return failed ? "." : "";
}

// A fatal error when the place is taken by something else.
void checkTarget(const std::string& target, const std::string& name) {
    std::error_code failed;
    const fs::file_status status = fs::symlink_status(target, failed);
    if (status.type() == fs::file_type::not_found) {
        return;
    }
    if (status.type() != fs::file_type::directory) {
        fatalError(filled(translate("View", "%1 is no folder", "%1 is the name of a file"), {name}));
    }
    const std::string stranger = strangerIn(target);
    if (!stranger.empty()) {
        fatalError(filled(translate("View", "Folder %1 has something that is no page of an earlier run: %2",
                                    "%1 is the name of a folder, %2 of a file in it"),
                          {name, stranger}));
    }
}

void removeFolder(const std::string& folder) {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

// Folders that killed runs have left: nobody holds them, and they have a list, or nothing at all yet.
void removeLeftOvers(const fs::path& parent) {
    std::error_code failed;
    fs::directory_iterator entry(parent, failed);
    for (; !failed && entry != fs::directory_iterator(); entry.increment(failed)) {
        const std::string path = entry->path().string();
        if (!entry->path().filename().string().starts_with(newPrefix)) {
            continue;
        }
        const platform::Descriptor lock = platform::lockFolder(path);
        std::error_code unreadable;
        if (lock.isOpen() && (fileExists(joinPath(path, listName)) || fs::is_empty(path, unreadable))) {
            removeFolder(path);
        }
    }
}

// A fatal error ends the program without unwinding.
std::string unfinished;
void removeUnfinished() {
    if (!unfinished.empty()) {
        removeFolder(std::exchange(unfinished, {}));
    }
}

std::string createBeside(const fs::path& parent) {
    constexpr int mostTries = 1000;
    std::error_code failed;
    fs::create_directories(parent, failed);
    const std::string start = (parent / newPrefix).string() + std::to_string(platform::processNumber()) + "-";
    for (int number = 0; number < mostTries; ++number) {
        std::string folder = start + std::to_string(number);
        if (platform::createFolder(folder)) {
            return folder;
        }
    }
    return {};
}

// In two steps, where the file system cannot exchange names: in between there is no folder of the name.
bool replaceInSteps(const std::string& folder, const std::string& target) {
    const std::string old = folder + "-old";
    if (!platform::rename(target, old)) {
        return false;
    }
    if (!platform::rename(folder, target)) {
        platform::rename(old, target);
        return false;
    }
    removeFolder(old);
    return true;
}

} // namespace

PageFolder::PageFolder(const std::string& target) : name_(target), target_(placeOf(target)) {
    checkTarget(target_, name_);
    const fs::path parent = fs::path(target_).parent_path();
    removeLeftOvers(parent);
    folder_ = createBeside(parent);
    if (folder_.empty()) {
        cannotCreate(target);
    }
    static const int registered = std::atexit(removeUnfinished);
    static_cast<void>(registered);
    unfinished = folder_;
    lock_ = platform::lockFolder(folder_);
    for (const char* name : pageFolders) {
        if (!platform::createFolder(joinPath(folder_, name))) {
            cannotCreate(joinPath(folder_, name));
        }
    }
    list_ = create(std::string(listName));
    putLine(list_, listHead);
}

PageFolder::~PageFolder() {
    removeUnfinished();
}

OutputFile PageFolder::create(const std::string& name) {
    const std::string path = joinPath(folder_, name);
    platform::ExclusiveCreation creation = platform::createExclusively(path);
    if (!creation.file.isOpen()) {
        fatalError(filled(translate("Fatal Error", "Cannot create output file %1"), {path}));
    }
    if (list_.isOpen()) {
        putLine(list_, name);
    }
    return {std::move(creation.file), path};
}

void PageFolder::publish() {
    list_.finish();
    const platform::EndingSignalsHeld held;
    checkTarget(target_, name_); // it may have changed meanwhile
    std::error_code failed;
    const fs::file_status before = fs::status(target_, failed);
    if (before.type() == fs::file_type::not_found) {
        if (!platform::rename(folder_, target_)) {
            cannotCreate(name_);
        }
        unfinished.clear();
        return;
    }
    fs::permissions(folder_, before.permissions(), failed);
    if (!platform::exchangeNames(folder_, target_) && !replaceInSteps(folder_, target_)) {
        cannotCreate(name_);
    }
    removeUnfinished(); // after an exchange these are the old pages
}

} // namespace veldacov
