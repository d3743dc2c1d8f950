// The reference that the program is compared with: the least that has to be done to know which items a trace
// hits. Every byte is looked at once, every identifier is turned into a number, every hit is noted under its
// file and kind (counts are added up in counted tests). No descriptions, no model, no report, no checks.
//
//   veldacov_scan t.tio ...      prints the number of hit lines and of the different items hit

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <numeric>
#include <unordered_map>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t blockSize = std::size_t{256} * 1024;

constexpr std::uint8_t noDigit = 16;
constexpr std::array<std::uint8_t, 256> digitValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(noDigit);
    for (std::uint8_t digit = 0; digit < 16; ++digit) {
        values[static_cast<unsigned char>("0123456789abcdef"[digit])] = digit;
        values[static_cast<unsigned char>("0123456789ABCDEF"[digit])] = digit;
    }
    return values;
}();

// Kind of a hit by the second letter of its keyword: TP, TA, TB, TE.
constexpr std::size_t kindCount = 4;
constexpr std::array<std::uint8_t, 256> kindOfLetter = [] {
    std::array<std::uint8_t, 256> kinds{};
    kinds.fill(kindCount);
    for (std::uint8_t kind = 0; kind < kindCount; ++kind) {
        kinds[static_cast<unsigned char>("PABE"[kind])] = kind;
    }
    return kinds;
}();

// What is noted of the items of a file, by kind and identifier: a mark, in counted tests a count.
template <typename Mark>
using Marks = std::array<std::vector<Mark>, kindCount>;
struct Part {
    Marks<std::uint8_t> hit;
    Marks<std::uint32_t> counts;
};

struct Scan {
    std::unordered_map<std::uint64_t, Part> parts; // by key and checksum
    Part* part = &parts[0];
    std::uint32_t fileKey = 0; // of the last FT line
    bool counted = false;
    std::uint64_t hitLines = 0;
};

// The least significant digit comes first. Gives the first character that is no digit.
inline const char* readHex(const char* at, std::uint32_t& value) {
    value = digitValues[static_cast<unsigned char>(*at)];
    unsigned shift = 4;
    for (std::uint8_t digit = 0; (digit = digitValues[static_cast<unsigned char>(*++at)]) != noDigit;) {
        value |= static_cast<std::uint32_t>(digit) << (shift & 31U);
        shift += 4;
    }
    return at;
}

template <typename Mark>
void makeRoom(std::vector<Mark>& marks, std::uint32_t id) {
    marks.resize(std::max<std::size_t>(std::size_t{id} + 1, 2 * marks.size()));
}

inline const char* behindLine(const char* at) {
    while (*at++ != '\n') {
    }
    return at;
}

// The hit lines that stand next. Gives the line behind them.
template <bool counted, typename Mark>
const char* takeHits(Marks<Mark>& marksByKind, std::uint64_t& hitLines, const char* at, const char* end) {
    std::uint64_t lines = 0;
    for (; at < end && at[0] == 'T'; ++lines) {
        const std::uint8_t kind = kindOfLetter[static_cast<unsigned char>(at[1])];
        if (kind == kindCount) {
            break;
        }
        std::uint32_t id = 0;
        at = readHex(at + 3, id);
        std::vector<Mark>& marks = marksByKind[kind];
        if (id >= marks.size()) {
            makeRoom(marks, id);
        }
        if constexpr (counted) {
            std::uint32_t count = 0;
            at = readHex(at + 1, count);
            marks[id] += count;
        } else {
            marks[id] = 1;
        }
        at = behindLine(at);
    }
    hitLines += lines;
    return at;
}

void takeOther(Scan& scan, const char* line) {
    if (line[0] == 'N' && line[1] == 'T') {
        scan.counted = false;
    } else if (line[0] == 'C' && line[1] == 'O') {
        scan.counted = true;
    } else if (line[0] == 'F' && line[1] == 'T') {
        readHex(line + 3, scan.fileKey);
    } else if (line[0] == 'D' && line[1] == 'C') {
        std::uint32_t checksum = 0;
        readHex(line + 3, checksum);
        scan.part = &scan.parts[std::uint64_t{scan.fileKey} << 32U | checksum];
    }
}

// Complete lines.
void takeLines(Scan& scan, const char* at, const char* end) {
    while (at < end) {
        at = scan.counted ? takeHits<true>(scan.part->counts, scan.hitLines, at, end)
                          : takeHits<false>(scan.part->hit, scan.hitLines, at, end);
        if (at < end) {
            takeOther(scan, at);
            at = behindLine(at);
        }
    }
}

bool scanFile(Scan& scan, const char* name) {
    const int file = ::open(name, O_RDONLY);
    if (file < 0) {
        return false;
    }
    std::vector<char> buffer(blockSize);
    std::size_t carried = 0; // bytes of a line that the block before ended in
    for (ssize_t count = 0; (count = ::read(file, buffer.data() + carried, buffer.size() - carried)) > 0;) {
        const std::size_t size = carried + static_cast<std::size_t>(count);
        std::size_t complete = size;
        while (complete > 0 && buffer[complete - 1] != '\n') {
            --complete;
        }
        takeLines(scan, buffer.data(), buffer.data() + complete);
        carried = size - complete;
        std::memmove(buffer.data(), buffer.data() + complete, carried);
    }
    ::close(file);
    return true;
}

std::size_t itemsHit(const Scan& scan) {
    std::size_t items = 0;
    for (const auto& [key, part] : scan.parts) {
        for (std::size_t kind = 0; kind < part.hit.size(); ++kind) {
            const auto& hit = part.hit[kind];
            const auto& counts = part.counts[kind];
            for (std::size_t id = 0; id < std::max(hit.size(), counts.size()); ++id) {
                items += (id < hit.size() && hit[id] != 0) || (id < counts.size() && counts[id] != 0) ? 1 : 0;
            }
        }
    }
    return items;
}

} // namespace

int main(int argumentCount, char** arguments) {
    Scan scan;
    for (int i = 1; i < argumentCount; ++i) {
        if (!scanFile(scan, arguments[i])) {
            std::perror(arguments[i]);
            return 1;
        }
    }
    std::printf("hits=%llu items=%zu\n", static_cast<unsigned long long>(scan.hitLines), itemsHit(scan));
    return 0;
}
