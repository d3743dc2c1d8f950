#include "support.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include <QCoreApplication>

#include "description/tokens.h"
#include "driver/program.h"
#include "support/files.h"
#include "support/machine.h"

namespace veldacov::fuzz {

namespace {

struct Ended {};

std::string& directory() {
    static std::string name;
    return name;
}

// A number as the program reads it; none at the end of the line.
std::optional<std::uint32_t> nextNumber(Line& line) {
    const std::optional<std::string_view> token = nextToken(line);
    if (!token) {
        return std::nullopt;
    }
    std::uint32_t value = 0;
    for (const char digit : *token) {
        value = value * 10 + static_cast<std::uint32_t>(digit - '0'); // wraps at 2^32
    }
    return value;
}

// The number of cases of a CC line, 0 for other lines.
std::uint32_t casesOf(std::string_view text) {
    Line line{text.data(), text.data() + text.size()};
    if (nextToken(line) != "CC" || !nextNumber(line)) {
        return 0;
    }
    const auto width = static_cast<std::int16_t>(nextNumber(line).value_or(0));
    for (std::int16_t i = 0; i < width; ++i) {
        if (!nextNumber(line)) {
            return 0;
        }
    }
    return nextNumber(line).value_or(0);
}

} // namespace

std::vector<std::string_view> partsOf(std::string_view bytes, std::size_t count) {
    std::vector<std::string_view> parts(count);
    for (std::size_t i = 0; i + 1 < count; ++i) {
        const std::size_t end = std::min(bytes.find(partSeparator), bytes.size());
        parts[i] = bytes.substr(0, end);
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    parts.back() = bytes;
    return parts;
}

void writeFile(const std::string& name, std::string_view bytes) {
    std::ofstream(name, std::ios::binary) << bytes;
}

bool hasFile(const std::string& name) {
    return std::filesystem::exists(name);
}

std::string contentOf(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void clearDirectory() {
    for (const auto& entry : std::filesystem::directory_iterator(directory())) {
        std::filesystem::remove_all(entry.path());
    }
}

bool returns(const std::function<void()>& call) {
    try {
        call();
        return true;
    } catch (const Ended&) {
        return false;
    }
}

bool runs(const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {"veldacov"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const bool done = returns([&] { runProgram(words); });
    resetProgram();
    return done;
}

std::string descriptionOf(std::string_view body, const std::string& source, const std::string& key) {
    return "VE 3.0e A\nFC \"" + source + "\" \"src\"\nFD 0\nTC PR RE AP BS BI BL BA CO CC\n" +
           std::string(body) + "DC 1090519047 " + key + "\n";
}

std::string smallBody() {
    std::string body = "PR 0 proc \"f\" 1 9\nPR 1 proc \"g\" 1 9\n";
    for (int i = 0; i < 16; ++i) {
        const std::string id = std::to_string(i);
        const std::string service = i % 4 == 0 ? "\"g\"" : "\"f\"";
        body += i < 2 ? "" : "PR " + id + " return " + service + " 2 2\n";
        body += "AP " + id + " " + service + " \"h\" 3 3\n";
        body += "BL " + id + (i % 2 == 0 ? " implicit " : " atc ") + service + " L 4 5\n";
        body += i < 12 ? "CA " + id + " " + service + " \"c\" 6 6\n" : "";
    }
    return body + "CC 12 2 10 11 4 A..\n";
}

bool asksForManyCases(std::string_view text, std::uint64_t limit) {
    std::uint64_t cases = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        cases += casesOf(text.substr(0, end));
        text.remove_prefix(end);
    }
    return cases > limit;
}

std::string withoutPaths(std::string_view text) {
    std::string harmless(text);
    for (std::size_t i = 0; i < harmless.size(); ++i) {
        if (harmless[i] == '/' && (i == 0 || harmless[i - 1] != '@')) {
            harmless[i] = '_';
        }
    }
    return harmless;
}

} // namespace veldacov::fuzz

extern "C" int LLVMFuzzerInitialize(int* argumentCount, char*** arguments) {
    using namespace veldacov;
    static const QCoreApplication application(*argumentCount, *arguments);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    std::string pattern = (std::filesystem::temp_directory_path() / "veldacov-fuzz-XXXXXX").string();
    fuzz::directory() = ::mkdtemp(pattern.data());
    std::filesystem::current_path(fuzz::directory());
    std::atexit([] { std::filesystem::remove_all(fuzz::directory()); });
    setProgramEnd([](ExitStatus) { throw fuzz::Ended(); });
    return 0;
}
