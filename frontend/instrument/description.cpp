#include "description.h"

#include <cstdlib>

#include "support/files.h"

namespace veldacc {

namespace {

struct TypeCode {
    std::string_view code;
    std::uint32_t mask;
};
constexpr std::array<TypeCode, 9> typeCodes = {{{"PR", typePR},
                                                {"RE", typeRE},
                                                {"AP", typeAP},
                                                {"BS", typeBS},
                                                {"BI", typeBI},
                                                {"BL", typeBL},
                                                {"BA", typeBA},
                                                {"CO", typeCO},
                                                {"CC", typeCC}}};

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
        }
        result += c;
    }
    return result + '"';
}

std::string linesText(Lines lines) {
    return std::to_string(lines.first) + ' ' + std::to_string(lines.last) + '\n';
}

ItemRef addItem(const Service& service, std::uint32_t type, HitKind kind, std::uint32_t count) {
    if ((service.types & type) == 0) {
        return {};
    }
    auto& formulas = service.section.formulas[static_cast<std::size_t>(kind)];
    const auto id = static_cast<std::uint32_t>(formulas.size());
    formulas.resize(id + count);
    return {kind, id, true};
}

std::uint32_t blockType(std::string_view kind) {
    return kind == "simple" ? typeBS : kind == "implicit" ? typeBI : kind == "logical" ? typeBL : typeBA;
}

std::uint32_t crc32(std::string_view text) {
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const char c : text) {
        crc ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0);
        }
    }
    return ~crc;
}

constexpr std::string_view tokenString = "VELDACC";

} // namespace

std::uint32_t parseTypes(std::string_view list) {
    std::uint32_t mask = 0;
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        const std::string_view code = list.substr(0, comma);
        std::uint32_t found = 0;
        for (const TypeCode& known : typeCodes) {
            if (known.code == code) {
                found = known.mask;
            }
        }
        if (found == 0) {
            return 0;
        }
        mask |= found | typePR | (found == typeCC ? typeCO : 0U);
        list = comma == std::string_view::npos ? std::string_view{} : list.substr(comma + 1);
    }
    return mask;
}

SectionMark markSection(const Section& section) {
    SectionMark mark{section.items.size(), {}, section.hasTransferBlock};
    for (std::size_t kind = 0; kind < hitKinds; ++kind) {
        mark.counts[kind] = section.formulas[kind].size();
    }
    return mark;
}

void takeBack(Section& section, const SectionMark& mark) {
    section.items.resize(mark.itemBytes);
    for (std::size_t kind = 0; kind < hitKinds; ++kind) {
        section.formulas[kind].resize(mark.counts[kind]);
    }
    section.hasTransferBlock = mark.hasTransferBlock;
}

ItemRef addProcedureItem(const Service& service, std::string_view kind, Lines lines) {
    const ItemRef item = addItem(service, kind == "proc" ? typePR : typeRE, HitKind::Procedure, 1);
    if (item.described) {
        service.section.items += "PR " + std::to_string(item.id) + ' ' + std::string(kind) + ' ' +
                                 quoted(service.name) + ' ' + linesText(lines);
    }
    return item;
}

ItemRef addCall(const Service& service, std::string_view called, Lines lines) {
    const ItemRef item = addItem(service, typeAP, HitKind::Call, 1);
    if (item.described) {
        service.section.items += "AP " + std::to_string(item.id) + ' ' + quoted(service.name) + ' ' +
                                 quoted(called) + ' ' + linesText(lines);
    }
    return item;
}

ItemRef addBlock(const Service& service, std::string_view kind, std::string_view label, Lines lines) {
    const ItemRef item = addItem(service, blockType(kind), HitKind::Block, 1);
    if (!item.described) {
        return item;
    }
    service.section.items += "BL " + std::to_string(item.id) + ' ' + std::string(kind) + ' ' +
                             quoted(service.name) + ' ' + std::string(label) + ' ' + linesText(lines);
    service.section.hasTransferBlock |= kind == "atc";
    return item;
}

ItemRef addTwoOutcomes(const Service& service, std::string_view text, Lines lines) {
    const ItemRef item = addItem(service, typeCO, HitKind::Condition, 2);
    if (item.described) {
        service.section.items += "CE " + std::to_string(item.id) + ' ' + quoted(service.name) + ' ' +
                                 quoted(text) + ' ' + linesText(lines);
    }
    return item;
}

ItemRef addOneOutcome(const Service& service, std::string_view text, Lines lines) {
    const ItemRef item = addItem(service, typeCO, HitKind::Condition, 1);
    if (item.described) {
        service.section.items += "CA " + std::to_string(item.id) + ' ' + quoted(service.name) + ' ' +
                                 quoted(text) + ' ' + linesText(lines);
    }
    return item;
}

ItemRef addComposition(const Service& service, const std::vector<std::uint32_t>& conditions,
                       std::uint32_t caseCount, std::string_view cases) {
    const ItemRef item = addItem(service, typeCC, HitKind::Condition, caseCount);
    if (!item.described) {
        return item;
    }
    std::string& out = service.section.items;
    out += "CC " + std::to_string(item.id) + ' ' + std::to_string(conditions.size());
    for (const std::uint32_t id : conditions) {
        out += ' ' + std::to_string(id);
    }
    out += ' ' + std::to_string(caseCount) + ' ' + std::string(cases) + '\n';
    return item;
}

ItemRef next(ItemRef item) {
    ++item.id;
    return item;
}

std::string finishSection(Section& section, const HeaderFacts& facts) {
    const bool fixedTime = std::getenv("SOURCE_DATE_EPOCH") != nullptr;
    std::int64_t time = fixedTime ? 0 : veldacov::fileModificationTime(section.path);
    if (time < 0 || time > 0x7FFFFFFF) {
        time = 0;
    }
    section.header = "VE 3.0e " + std::string(tokenString) + " # veldacc\nFC " + quoted(section.name) + ' ' +
                     quoted(section.directory) + "\nFD " + std::to_string(time) + "\nTC";
    for (const TypeCode& type : typeCodes) {
        if ((facts.types & type.mask) != 0 && (type.mask != typeBA || section.hasTransferBlock)) {
            section.header += ' ' + std::string(type.code);
        }
    }
    section.header += facts.forced ? " CF\n" : "\n";

    // The time is no part of what the checksum answers for: a touched source has the same items.
    std::string summed = section.header.substr(0, section.header.find("\nFD ") + 1);
    summed += section.header.substr(section.header.find("TC"));
    const std::uint32_t number = crc32(summed + section.items);
    section.checksum = number;
    veldacov::xorFoldText(section.checksum, tokenString);
    section.key = veldacov::evalFileKey(section.directory + section.name);
    return section.header + section.items + "DC " + std::to_string(number) + '\n';
}

} // namespace veldacc
