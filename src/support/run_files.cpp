#include "support/run_files.h"

#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "support/machine.h"
#include "support/platform.h"

namespace veldacov {

namespace {

using platform::FileIdentity;
using platform::FileKind;

struct RunFiles {
    std::vector<std::string> namesToCompare; // of given files whose identities are not known yet
    std::set<FileIdentity> given;
    std::map<FileIdentity, std::string>
        made; // with the names of listings, which may be appended to; others have none
    std::set<FileIdentity> pipesOpened;
    std::map<std::string, InputFile> pipesKept; // by name
    bool copiesPipes = false;
};
RunFiles files;

// Where a file is or would be; none when it is there and not regular, and when it cannot be created either.
std::optional<FileIdentity> identityOf(const std::string& name) {
    const std::optional<platform::FileStatus> status = platform::fileStatus(name);
    if (!status) {
        return platform::identityOfMissing(name);
    }
    return status->kind == FileKind::Regular ? std::optional(status->identity) : std::nullopt;
}

const std::set<FileIdentity>& givenIdentities() {
    for (const std::string& name : std::exchange(files.namesToCompare, {})) {
        if (std::optional<FileIdentity> identity = identityOf(name)) {
            files.given.insert(*std::move(identity));
        }
    }
    return files.given;
}

void rememberMade(int descriptor, const std::string& listingName) {
    const std::optional<platform::FileStatus> status = platform::fileStatus(descriptor);
    if (status && status->kind == FileKind::Regular) {
        files.made.emplace(status->identity, listingName);
    }
}

OutputFile create(const std::string& name, const std::string& listingName) {
    const std::optional<FileIdentity> identity = identityOf(name);
    if (identity && (givenIdentities().contains(*identity) || files.made.contains(*identity))) {
        return {};
    }
    platform::Descriptor file = platform::createForWriting(name);
    rememberMade(file.number(), listingName);
    return {std::move(file), name};
}

InputFile openUnlessDevice(const std::string& name, FileKind kind) {
    return kind == FileKind::Directory || kind == FileKind::Other ? InputFile{} : openInput(name);
}

// The rest of an input in a file of its own, which can be read from its start as often as needed.
InputFile copyOf(InputFile& input) {
    const std::string given = getEnvironment("TMPDIR").value_or("");
    const std::string directory = given.empty() ? "/var/tmp" : given;
    InputFile copy;
    copy.name = input.name;
    copy.file = platform::createUnnamed(directory);
    OutputFile out(platform::duplicate(copy.file.number()), directory);
    for (std::string_view bytes = readBytes(input); !bytes.empty(); bytes = readBytes(input)) {
        out.put(bytes);
    }
    out.finish();
    return copy;
}

// Reading the copy moves the position of all its descriptors.
InputFile openCopy(const InputFile& copy) {
    platform::rewindFile(copy.file.number());
    InputFile input;
    input.name = copy.name;
    input.file = platform::duplicate(copy.file.number());
    return input;
}

} // namespace

void forgetRunFiles() {
    files = {};
}

void protectFile(std::string name) {
    files.namesToCompare.push_back(std::move(name));
}

InputFile openGivenFile(const std::string& name) {
    protectFile(name);
    const std::optional<platform::FileStatus> status = platform::fileStatus(name);
    if (!status || (status->kind == FileKind::Pipe && !files.pipesOpened.insert(status->identity).second)) {
        return {};
    }
    return openUnlessDevice(name, status->kind);
}

void keepGivenFile(InputFile input) {
    const std::optional<platform::FileStatus> status = platform::fileStatus(input.file.number());
    if (!status || status->kind != FileKind::Pipe) {
        return;
    }
    rewindInput(input);
    InputFile kept = files.copiesPipes ? copyOf(input) : std::move(input);
    std::string name = kept.name;
    files.pipesKept.emplace(std::move(name), std::move(kept));
}

InputFile reopenGivenFile(const std::string& name) {
    const auto kept = files.pipesKept.find(name);
    if (kept == files.pipesKept.end()) {
        const std::optional<platform::FileStatus> status = platform::fileStatus(name);
        return status ? openUnlessDevice(name, status->kind) : InputFile{};
    }
    if (files.copiesPipes) {
        return openCopy(kept->second);
    }
    InputFile input = std::move(kept->second);
    files.pipesKept.erase(kept);
    return input;
}

void copyGivenPipes() {
    files.copiesPipes = true;
}

OutputFile createOutput(const std::string& name, const QString& failure) {
    OutputFile out = create(name, {});
    if (!out.isOpen()) {
        fatalError(filled(failure, {name}));
    }
    return out;
}

OutputFile outputOnStandardOutput() {
    rememberMade(platform::standardOutput, {});
    return standardOutput();
}

bool standardOutputIsGiven() {
    const std::optional<platform::FileStatus> status = platform::fileStatus(platform::standardOutput);
    return status && status->kind == FileKind::Regular && givenIdentities().contains(status->identity);
}

OutputFile createListing(const std::string& name) {
    return create(name, name);
}

OutputFile appendToListing(const std::string& name) {
    const std::optional<FileIdentity> identity = identityOf(name);
    if (identity) {
        const auto made = files.made.find(*identity);
        if (made == files.made.end() || made->second != name) {
            return {};
        }
    }
    return {platform::openForAppending(name), name};
}

} // namespace veldacov
