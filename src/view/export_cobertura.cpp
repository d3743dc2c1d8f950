// Cobertura XML, document type coverage-04: packages are directories, classes are sources.
//
//   <coverage ...totals...><sources><source>.</source></sources><packages>
//     <package name="src"><classes>
//       <class name="tank_c" filename="src/tank.c" ...><methods/><lines>
//         <line number="14" hits="3" branch="true" condition-coverage="50% (1/2)">
//           <conditions><condition number="0" type="jump" coverage="50%"/></conditions></line>
//
// Totals stand before what they are totals of, so evidence is worked out twice: for the sums, and to be written.

#include <algorithm>
#include <map>

#include <QIODevice>
#include <QLocale>
#include <QXmlStreamWriter>

#include "support/files.h"
#include "support/machine.h"
#include "view/export.h"
#include "view/progress.h"

namespace veldacov {

namespace {

// Where the XML writer writes to. The output is borrowed.
class OutputDevice : public QIODevice {
public:
    explicit OutputDevice(OutputFile& out) : out_(out) { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

protected:
    qint64 readData(char* /*data*/, qint64 /*most*/) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override {
        out_.put(std::string_view(data, static_cast<std::size_t>(size)));
        return size;
    }

private:
    OutputFile& out_;
};

struct Share {
    std::uint64_t covered = 0;
    std::uint64_t valid = 0;

    void add(bool isCovered) {
        covered += isCovered ? 1 : 0;
        ++valid;
    }
};
Share& operator+=(Share& into, const Share& from) {
    into.covered += from.covered;
    into.valid += from.valid;
    return into;
}
struct Sums {
    Share lines;
    Share branches;
};
Sums& operator+=(Sums& into, const Sums& from) {
    into.lines += from.lines;
    into.branches += from.branches;
    return into;
}

Sums sumsOf(const SourceEvidence& evidence) {
    Sums sums;
    for (const LineEvidence& line : evidence.lines) {
        sums.lines.add(line.count != 0);
    }
    for (const BranchEvidence& branch : evidence.branches) {
        sums.branches.add(branch.count != 0);
    }
    return sums;
}

// Names are bytes; what XML cannot carry is replaced.
QString xmlText(std::string_view bytes) {
    QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    const auto isForbidden = [](QChar character) {
        const char16_t code = character.unicode();
        return (code < 0x20 && code != '\t' && code != '\n' && code != '\r') || code >= 0xfffe;
    };
    std::replace_if(text.begin(), text.end(), isForbidden, QChar(QChar::ReplacementCharacter));
    return text;
}

std::string_view directoryOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

// The same names as those of other writers: dots separate packages, and stand in no class.
QString packageName(std::string_view directory) {
    return xmlText(directory).replace(QLatin1Char('/'), QLatin1Char('.'));
}
QString className(std::string_view path) {
    return xmlText(path.substr(path.rfind('/') + 1)).replace(QLatin1Char('.'), QLatin1Char('_'));
}

// Nothing to cover is nothing covered. All digits that matter: 1 means all, also of millions of lines.
QString rate(const Share& share) {
    if (share.valid == 0) {
        return QStringLiteral("0.0");
    }
    const double exact = static_cast<double>(share.covered) / static_cast<double>(share.valid);
    return QString::number(exact, 'g', QLocale::FloatingPointShortest);
}
QString percentage(const Share& share) {
    return QString::number(share.covered * 100 / share.valid) + QLatin1Char('%');
}

class CoberturaWriter {
public:
    CoberturaWriter(OutputFile& out, const Campaign& campaign, std::span<const Source> sources)
        : device_(out), xml_(&device_), campaign_(campaign), sources_(sources),
          progress_(translate("View", "Writing: %1 of %2", "%1 and %2 are numbers"), 2 * sources.size()) {
        xml_.setAutoFormatting(true);
        xml_.setAutoFormattingIndent(0);
        for (const Source& source : sources_) {
            sums_.push_back(sumsOf(evidence(source)));
        }
    }

    void write(const std::string& root);

private:
    const SourceEvidence& evidence(const Source& source) {
        evidenceOf(campaign_, source, campaign_.counts, evidence_);
        progress_.step();
        return evidence_;
    }
    // The sums of sources [first, last).
    [[nodiscard]] Sums sumsOfRange(std::size_t first, std::size_t last) const {
        Sums sums;
        for (std::size_t i = first; i < last; ++i) {
            sums += sums_[i];
        }
        return sums;
    }
    void putRates(const Sums& sums) {
        xml_.writeAttribute(QStringLiteral("line-rate"), rate(sums.lines));
        xml_.writeAttribute(QStringLiteral("branch-rate"), rate(sums.branches));
        xml_.writeAttribute(QStringLiteral("complexity"), QStringLiteral("0.0"));
    }
    void putShare(const QString& what, const Share& share) {
        xml_.writeAttribute(what + QStringLiteral("-covered"), QString::number(share.covered));
        xml_.writeAttribute(what + QStringLiteral("-valid"), QString::number(share.valid));
    }
    void putHead(const std::string& root);
    void putPackage(std::string_view directory, const std::vector<std::size_t>& members);
    void putClass(std::size_t place);
    void putLine(const LineEvidence& line, const Share& branches);

    OutputDevice device_;
    QXmlStreamWriter xml_;
    const Campaign& campaign_;
    std::span<const Source> sources_;
    Progress progress_;
    std::vector<Sums> sums_; // of the sources
    SourceEvidence evidence_;
};

QString timeStamp() {
    const std::string fixed = getEnvironment("SOURCE_DATE_EPOCH").value_or("");
    const bool isNumber = !fixed.empty() && fixed.find_first_not_of("0123456789") == std::string::npos;
    return isNumber ? QString::fromStdString(fixed) : QString::number(presentTime());
}

void CoberturaWriter::putHead(const std::string& root) {
    const Sums all = sumsOfRange(0, sources_.size());
    xml_.writeStartDocument();
    xml_.writeDTD(QStringLiteral(
        "<!DOCTYPE coverage SYSTEM \"http://cobertura.sourceforge.net/xml/coverage-04.dtd\">"));
    xml_.writeStartElement(QStringLiteral("coverage"));
    putRates(all);
    putShare(QStringLiteral("lines"), all.lines);
    putShare(QStringLiteral("branches"), all.branches);
    xml_.writeAttribute(QStringLiteral("version"), xmlText("veldaview " + std::string(toolVersion)));
    xml_.writeAttribute(QStringLiteral("timestamp"), timeStamp());
    xml_.writeStartElement(QStringLiteral("sources"));
    xml_.writeTextElement(QStringLiteral("source"), root.empty() ? QStringLiteral(".") : xmlText(root));
    xml_.writeEndElement();
}

void CoberturaWriter::putLine(const LineEvidence& line, const Share& branches) {
    xml_.writeStartElement(QStringLiteral("line"));
    xml_.writeAttribute(QStringLiteral("number"), QString::number(line.line));
    xml_.writeAttribute(QStringLiteral("hits"), QString::number(line.count));
    if (branches.valid == 0) {
        xml_.writeAttribute(QStringLiteral("branch"), QStringLiteral("false"));
        xml_.writeEndElement();
        return;
    }
    const QString covered = percentage(branches);
    xml_.writeAttribute(QStringLiteral("branch"), QStringLiteral("true"));
    xml_.writeAttribute(QStringLiteral("condition-coverage"),
                        covered + QStringLiteral(" (") + QString::number(branches.covered) +
                            QLatin1Char('/') + QString::number(branches.valid) + QLatin1Char(')'));
    xml_.writeStartElement(QStringLiteral("conditions"));
    xml_.writeEmptyElement(QStringLiteral("condition"));
    xml_.writeAttribute(QStringLiteral("number"), QStringLiteral("0"));
    xml_.writeAttribute(QStringLiteral("type"), QStringLiteral("jump"));
    xml_.writeAttribute(QStringLiteral("coverage"), covered);
    xml_.writeEndElement();
    xml_.writeEndElement();
}

void CoberturaWriter::putClass(std::size_t place) {
    const Source& source = sources_[place];
    xml_.writeStartElement(QStringLiteral("class"));
    xml_.writeAttribute(QStringLiteral("name"), className(source.path));
    xml_.writeAttribute(QStringLiteral("filename"), xmlText(source.path));
    putRates(sums_[place]);
    xml_.writeEmptyElement(QStringLiteral("methods"));
    xml_.writeStartElement(QStringLiteral("lines"));
    const SourceEvidence& found = evidence(source);
    auto branch = found.branches.begin(); // every branch stands on one of the lines, in their order
    for (const LineEvidence& line : found.lines) {
        Share branches;
        for (; branch != found.branches.end() && branch->line == line.line; ++branch) {
            branches.add(branch->count != 0);
        }
        putLine(line, branches);
    }
    xml_.writeEndElement();
    xml_.writeEndElement();
}

void CoberturaWriter::putPackage(std::string_view directory, const std::vector<std::size_t>& members) {
    Sums sums;
    for (const std::size_t place : members) {
        sums += sums_[place];
    }
    xml_.writeStartElement(QStringLiteral("package"));
    xml_.writeAttribute(QStringLiteral("name"), packageName(directory));
    putRates(sums);
    xml_.writeStartElement(QStringLiteral("classes"));
    for (const std::size_t place : members) {
        putClass(place);
    }
    xml_.writeEndElement();
    xml_.writeEndElement();
}

void CoberturaWriter::write(const std::string& root) {
    putHead(root);
    xml_.writeStartElement(QStringLiteral("packages"));
    std::map<std::string_view, std::vector<std::size_t>> packages;
    for (std::size_t place = 0; place < sources_.size(); ++place) {
        packages[directoryOf(sources_[place].path)].push_back(place);
    }
    for (const auto& [directory, members] : packages) {
        putPackage(directory, members);
    }
    xml_.writeEndElement();
    xml_.writeEndElement();
    xml_.writeEndDocument();
}

std::uint64_t itemsOf(const Campaign& campaign, const Source& source) {
    std::uint64_t items = 0;
    for (const std::uint32_t place : source.files) {
        const CampaignFile& file = campaign.files[place];
        const CampaignService& last = campaign.services[file.firstService + file.serviceCount - 1];
        items += itemNumbers(last).end - campaign.services[file.firstService].firstItem;
    }
    return items;
}

} // namespace

void exportCobertura(OutputFile& out, const Campaign& campaign, std::span<const Source> sources,
                     const std::string& root) {
    CoberturaWriter(out, campaign, sources).write(root);
}

std::vector<std::span<const Source>> splitSources(const Campaign& campaign, std::span<const Source> sources,
                                                  std::uint32_t parts) {
    const std::uint64_t most = std::min<std::uint64_t>(parts, sources.size());
    std::vector<std::span<const Source>> runs;
    std::uint64_t taken = 0; // items in sources before `first`, then up to the next
    std::size_t first = 0;
    for (std::size_t next = 0; next < sources.size(); ++next) {
        taken += itemsOf(campaign, sources[next]);
        const std::size_t left = sources.size() - next - 1;
        const bool isFull = taken * most >= (runs.size() + 1) * std::uint64_t{campaign.itemCount};
        const bool needsRest = left < most - runs.size(); // each later run must have a source
        if (runs.size() + 1 < most && (isFull || needsRest)) {
            runs.push_back(sources.subspan(first, next + 1 - first));
            first = next + 1;
        }
    }
    runs.push_back(sources.subspan(first));
    return runs;
}

} // namespace veldacov
