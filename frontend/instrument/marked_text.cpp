#include "marked_text.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>
#include <unordered_map>

namespace veldacc {

namespace {

struct Marker {
    std::uint32_t line = 0;
    std::string name;
    bool hasName = false;
    bool enters = false;
    bool returns = false;
    bool system = false;
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view skipBlanks(std::string_view text) {
    const std::size_t at = text.find_first_not_of(" \t");
    return at == std::string_view::npos ? std::string_view{} : text.substr(at);
}

// Reads `"name"` with \" and \\ and octal escapes resolved.
std::string_view readName(std::string_view rest, std::string& name) {
    std::size_t i = 1;
    for (; i < rest.size() && rest[i] != '"'; ++i) {
        if (rest[i] == '\\' && i + 3 < rest.size() && isDigit(rest[i + 1]) && isDigit(rest[i + 2]) &&
            isDigit(rest[i + 3])) {
            name +=
                static_cast<char>((rest[i + 1] - '0') * 64 + (rest[i + 2] - '0') * 8 + (rest[i + 3] - '0'));
            i += 3;
        } else {
            if (rest[i] == '\\' && i + 1 < rest.size()) {
                ++i;
            }
            name += rest[i];
        }
    }
    return i < rest.size() ? rest.substr(i + 1) : std::string_view{};
}

std::string_view lineFrom(std::string_view text, std::size_t offset) {
    return text.substr(offset, text.find('\n', offset) - offset);
}

// From its # on: `# 12 "name" flags` and `#line 12 "name"`.
std::optional<Marker> readMarker(std::string_view line) {
    line = skipBlanks(line.substr(1));
    if (line.starts_with("line")) {
        line = skipBlanks(line.substr(4));
    }
    if (line.empty() || !isDigit(line[0])) {
        return std::nullopt;
    }
    Marker marker;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), marker.line);
    if (error != std::errc{}) {
        return std::nullopt;
    }
    line = skipBlanks(line.substr(static_cast<std::size_t>(end - line.data())));
    if (!line.empty() && line[0] == '"') {
        marker.hasName = true;
        line = readName(line, marker.name);
    }
    for (const char flag : line) {
        marker.enters |= flag == '1';
        marker.returns |= flag == '2';
        marker.system |= flag == '3';
    }
    return marker;
}

// The lines of a file are its line ends before an offset, so the offsets are given in ascending order.
std::vector<LineRenaming> readRenamings(const std::string& fileName, const DirectiveFinder& findDirectives) {
    std::ifstream file(fileName, std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    std::vector<LineRenaming> renamings;
    std::uint32_t line = 1;
    auto counted = text.begin();
    for (const std::uint32_t offset : findDirectives(text)) {
        const auto at = text.begin() + offset;
        line += static_cast<std::uint32_t>(std::count(counted, at, '\n'));
        counted = at;
        if (const std::optional<Marker> marker = readMarker(lineFrom(text, offset))) {
            renamings.push_back({line + 1, marker->line, marker->name});
        }
    }
    return renamings;
}

struct Reader {
    MarkedText& out;
    std::unordered_map<std::string, std::uint32_t> nameIndex;
    std::uint32_t current = noInstance;
    std::string presumedName;
};

std::uint32_t indexOfName(Reader& reader, const std::string& name) {
    const auto [at, isNew] =
        reader.nameIndex.try_emplace(name, static_cast<std::uint32_t>(reader.out.names.size()));
    if (isNew) {
        reader.out.names.push_back(name);
    }
    return at->second;
}

void followMarker(Reader& reader, const Marker& marker, std::uint32_t nextLine) {
    MarkedText& out = reader.out;
    if (reader.current == noInstance || marker.enters) {
        out.instances.push_back({marker.name, reader.current, 0, marker.system});
        reader.current = static_cast<std::uint32_t>(out.instances.size() - 1);
    } else if (marker.returns && out.instances[reader.current].parent != noInstance) {
        out.instances[reader.current].includeLine = marker.line > 0 ? marker.line - 1 : 0;
        reader.current = out.instances[reader.current].parent;
    }
    if (marker.hasName) {
        reader.presumedName = marker.name;
    }
    out.spans.push_back(
        {nextLine, reader.current, marker.line, indexOfName(reader, reader.presumedName), marker.system});
}

// The line that an editor shows for line `line` of what #line calls `name`: the latest renaming that covers it.
std::uint32_t physicalLine(const std::vector<LineRenaming>& renamings, const std::string& fileName,
                           const std::string& name, std::uint32_t line) {
    std::string present = fileName;
    std::uint32_t first = 1;  // physical line that the present naming begins with
    std::uint32_t called = 1; // and what it is called
    for (std::size_t i = 0; i <= renamings.size(); ++i) {
        const std::uint32_t end = i < renamings.size() ? renamings[i].physicalLine : 0xFFFFFFFFU;
        if (present == name && line >= called && line - called < end - first) {
            return first + (line - called);
        }
        if (i < renamings.size()) {
            if (!renamings[i].name.empty()) {
                present = renamings[i].name;
            }
            first = end;
            called = renamings[i].line;
        }
    }
    return line;
}

// The last marker before a byte; null in front of the first.
const MarkedSpan* spanAt(const MarkedText& text, std::uint32_t offset) {
    const auto after =
        std::upper_bound(text.spans.begin(), text.spans.end(), offset,
                         [](std::uint32_t value, const MarkedSpan& span) { return value < span.offset; });
    return after == text.spans.begin() ? nullptr : &*(after - 1);
}

// The line that the marker gives to a byte behind it.
std::uint32_t lineIn(const MarkedText& text, const MarkedSpan& span, std::uint32_t offset) {
    const auto lineOf = [&](std::uint32_t at) {
        return std::upper_bound(text.lineStarts.begin(), text.lineStarts.end(), at) - text.lineStarts.begin();
    };
    return span.line + static_cast<std::uint32_t>(lineOf(offset) - lineOf(span.offset));
}

} // namespace

MarkedText readMarkers(std::string text, const std::string& source, const DirectiveFinder& findDirectives) {
    MarkedText out;
    out.text = std::move(text);
    Reader reader{out, {}, noInstance, {}};
    const std::string_view all = out.text;
    for (std::size_t at = 0; at < all.size(); at += lineFrom(all, at).size() + 1) {
        out.lineStarts.push_back(static_cast<std::uint32_t>(at));
    }
    for (const std::uint32_t offset : findDirectives(out.text)) {
        const std::string_view line = lineFrom(all, offset);
        if (const std::optional<Marker> marker = readMarker(line)) {
            followMarker(reader, *marker, offset + static_cast<std::uint32_t>(line.size() + 1));
        }
    }
    if (!out.instances.empty()) {
        out.instances[0].name = source; // some preprocessors begin with a name of their own
    }
    out.renamings.resize(out.instances.size());
    std::vector<bool> renamed(out.instances.size());
    for (const MarkedSpan& span : out.spans) {
        const std::string& name = out.names[span.name];
        if (name != out.instances[span.instance].name && !name.starts_with("<")) {
            renamed[span.instance] = true;
        }
    }
    for (std::size_t i = 0; i < out.instances.size(); ++i) {
        if (renamed[i] || (i == 0 && !out.instances.empty())) {
            out.renamings[i] = readRenamings(out.instances[i].name, findDirectives);
        }
    }
    return out;
}

Presumed presumedAt(const MarkedText& text, std::uint32_t offset) {
    const MarkedSpan* span = spanAt(text, offset);
    return span == nullptr ? Presumed{} : Presumed{text.names[span->name], lineIn(text, *span, offset)};
}

Place placeAt(const MarkedText& text, std::uint32_t offset) {
    const MarkedSpan* span = spanAt(text, offset);
    if (span == nullptr) {
        return {};
    }
    const std::uint32_t line = lineIn(text, *span, offset);
    const std::vector<LineRenaming>& renamings = text.renamings[span->instance];
    return {span->instance,
            renamings.empty()
                ? line
                : physicalLine(renamings, text.instances[span->instance].name, text.names[span->name], line),
            span->system};
}

Place placeWithin(const MarkedText& text, Place place, std::uint32_t instance) {
    while (place.instance != instance && place.instance != noInstance) {
        const FileInstance& inner = text.instances[place.instance];
        place = {inner.parent, inner.includeLine, place.system};
    }
    return place;
}

} // namespace veldacc
