#include "report/cio.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "description/hit_counting.h"
#include "report/rates.h"
#include "support/files.h"
#include "support/machine.h"
#include "support/run_files.h"

namespace veldacov {

namespace {

// Services and items lie all over the memory; those of so many turns later are asked for early.
constexpr std::size_t ahead = 8;

// The services printed in one block; a File line stands before each run of services of one file name.
struct CioBlock {
    const NameEntry* fileName = nullptr;
    bool anyPrinted = false;
};

const std::string& text(CioFile& cio, ReportLabel label) {
    std::string& known = cio.labels[static_cast<std::size_t>(label)];
    if (known.empty()) {
        known = cioLabelText(label);
    }
    return known;
}

// True for what was hit since it was last looked at, and has not yet been counted in this period.
bool takeNewHit(CioFile& cio, HitRecord& record) {
    if ((record.flags & hitFlag) == 0) {
        return false;
    }
    record.flags &= static_cast<std::uint8_t>(~hitFlag);
    if ((record.flags & countedInPeriod) != 0) {
        return false;
    }
    record.flags |= countedInPeriod;
    cio.countedRecords.push_back(&record);
    return true;
}

// Sums up by service what the test that ends has hit first in this period. It looks at what was hit in the test only:
// whatever else still has its hitFlag belongs to services that are not selected.
void takeNewHits(CioFile& cio) {
    const std::vector<TestHit>& hits = hitsOfTest();
    for (std::size_t i = 0; i < hits.size(); ++i) {
        if (i + ahead < hits.size()) {
            __builtin_prefetch(hits[i + ahead].record, 1);
            __builtin_prefetch(&serviceOf(hits[i + ahead]).selectedPlace);
        }
        const TestHit& hit = hits[i];
        const std::int32_t place = serviceOf(hit).selectedPlace;
        if (place >= 0 && takeNewHit(cio, *hit.record)) {
            CoverageCounters& newHits = cio.newHits[static_cast<std::size_t>(place)];
            ++newHits[*counterOfType(typeOf(hit))];
            if (typeOf(hit) == type::procedures) {
                newHits[counter::services] = 1;
            }
        }
    }
}

bool anyCounted(const CoverageCounters& counters) {
    return std::any_of(counters.begin(), counters.end(), [](std::uint32_t count) { return count != 0; });
}

// A selected service with its file.
struct CioEntry {
    const FileDescription* description = nullptr;
    Service* service = nullptr;
};

CioEntry entryAt(const CioFile& cio, std::size_t place) {
    const SelectedService& selected = cio.selection->services[place];
    return {cio.selection->files[selected.file].description, selected.service};
}

// Places of the selected services that the current test has hit, in order.
std::vector<std::size_t> placesHitInTest() {
    std::vector<std::size_t> places;
    for (const Service* service : servicesHitInTest()) {
        if (service->selectedPlace >= 0) {
            places.push_back(static_cast<std::size_t>(service->selectedPlace));
        }
    }
    std::sort(places.begin(), places.end());
    return places;
}

void writeServiceLines(CioFile& cio, CioBlock& block, const CioEntry& entry) {
    const NameEntry* fileName = entry.description->sourceName;
    if (!block.anyPrinted || block.fileName != fileName) {
        putLine(cio.out, " ", text(cio, ReportLabel::File), " ", fileName->text);
    }
    block = {fileName, true};
    putLine(cio.out, "    ", entry.service->name->text);
}

void putSingleRate(CioFile& cio, std::uint32_t total, std::uint32_t hits, std::size_t width) {
    cio.out.putRate(static_cast<float>(ratePercentage(total, hits)), width);
}

// `newHits` may be null.
void writeRateLines(CioFile& cio, const CioEntry& entry, const CoverageCounters& hits,
                    const CoverageCounters* newHits) {
    for (const RateRow& row : rateRows) {
        if ((cio.typesInUse & row.bit) == 0) {
            continue;
        }
        const std::string& label = text(cio, labelOf(row, cio.typesInUse));
        const std::uint32_t total = rowSum(row, entry.service->counts);
        if (total == 0) {
            putLine(cio.out, "       ", label, "\t",
                    text(cio, zeroTotalLabel(entry.description->coverageTypes, row.bit)));
            continue;
        }
        const std::uint32_t rowHits = rowSum(row, hits);
        cio.out.put("       ");
        cio.out.put(label);
        cio.out.put('\t');
        putSingleRate(cio, total, rowHits, 5);
        cio.out.put("% (");
        cio.out.putNumber(rowHits);
        cio.out.put('/');
        cio.out.putNumber(total);
        cio.out.put(')');
        if (newHits != nullptr) {
            const std::uint32_t rowNewHits = rowSum(row, *newHits);
            cio.out.put(", +");
            putSingleRate(cio, total, rowNewHits, 0);
            cio.out.put(" (+");
            cio.out.putNumber(rowNewHits);
            cio.out.put(')');
        }
        cio.out.put('\n');
    }
}

void writeRemark(CioFile& cio, ReportLabel remark) {
    if ((cio.typesInUse & type::modifiedConditions) != 0) {
        putLine(cio.out, " (", text(cio, remark), ")");
    }
}

void finishBlock(CioFile& cio, const CioBlock& block) {
    if (!block.anyPrinted) {
        putLine(cio.out, " ", text(cio, ReportLabel::NothingHit));
    }
}

// Adds what a test hit first to its service's period.
void addToPeriod(CioFile& cio, std::size_t place, const CoverageCounters& newHits) {
    if (anyCounted(newHits)) {
        if (!anyCounted(cio.accumulated[place])) {
            cio.placesInPeriod.push_back(place);
        }
        sumCounters(cio.accumulated[place], newHits);
    }
}

} // namespace

void openCio(CioFile& cio, const CoverageOptions& options, const Selection& selection,
             std::uint16_t typesInUse) {
    cio = {};
    cio.selection = &selection;
    cio.typesInUse = typesInUse;
    cio.out = createOutput(*options.cioFile, translate("Fatal Error", "Cannot create CIO file %1",
                                                       "%1 is the name of the cio file"));
    putLine(cio.out, "# CIO File from Orbis(R) Norvik Suite Coverage");
    putLine(cio.out, "# Tool version: ", toolVersion);
    putLine(cio.out, "# Generation date: ", dateText(presentTime()));
    cio.newHits.resize(selection.services.size());
    cio.accumulated.resize(selection.services.size());
}

void writeCioTestBlock(CioFile& cio, std::int32_t testNumber, const std::string& traceFileName) {
    if (testNumber == -1) {
        fatalError(filled(
            translate("Fatal Error", "No current test number in file %1", "%1 is the name of the file"),
            {traceFileName}));
    }
    putLine(cio.out, "T", static_cast<std::uint32_t>(testNumber));
    if (!cio.noTestBlockYet) {
        writeRemark(cio, cio.noServiceBlockYet ? ReportLabel::PreviousTests
                                               : ReportLabel::PreviousTestsAndServices);
    }
    cio.noTestBlockYet = false;
    takeNewHits(cio);
    CioBlock block;
    const std::vector<std::size_t> places = placesHitInTest();
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (i + 2 * ahead < places.size()) {
            const Service* service = entryAt(cio, places[i + 2 * ahead]).service;
            __builtin_prefetch(service);
            __builtin_prefetch(&service->testCovered);
            __builtin_prefetch(entryAt(cio, places[i + ahead]).service->name);
        }
        const std::size_t place = places[i];
        const CioEntry entry = entryAt(cio, place);
        if (anyCounted(entry.service->testCovered)) {
            writeServiceLines(cio, block, entry);
            const CoverageCounters newHits = std::exchange(cio.newHits[place], {});
            addToPeriod(cio, place, newHits);
            writeRateLines(cio, entry, entry.service->testCovered, &newHits);
        }
    }
    finishBlock(cio, block);
}

void writeCioServiceBlock(CioFile& cio, std::int32_t serviceNumber, const std::string& traceFileName) {
    if (serviceNumber == -1) {
        fatalError(filled(
            translate("Fatal Error", "No current service number in file %1", "%1 is the name of the file"),
            {traceFileName}));
    }
    putLine(cio.out, "O", static_cast<std::uint32_t>(serviceNumber));
    if (!cio.noServiceBlockYet) {
        writeRemark(cio, ReportLabel::PreviousServices);
    }
    cio.noServiceBlockYet = false;
    CioBlock block;
    std::vector<std::size_t> places = std::exchange(cio.placesInPeriod, {});
    std::sort(places.begin(), places.end());
    for (const std::size_t place : places) {
        const CioEntry entry = entryAt(cio, place);
        writeServiceLines(cio, block, entry);
        writeRateLines(cio, entry, cio.accumulated[place], nullptr);
        cio.accumulated[place] = {};
    }
    for (HitRecord* record : std::exchange(cio.countedRecords, {})) {
        record->flags &= static_cast<std::uint8_t>(~countedInPeriod);
    }
    finishBlock(cio, block);
}

void writeCioGlobalBlock(CioFile& cio) {
    putLine(cio.out, "G");
    CioBlock block;
    for (std::size_t place = 0; place < cio.selection->services.size(); ++place) {
        const CioEntry entry = entryAt(cio, place);
        writeServiceLines(cio, block, entry);
        const CoverageCounters& hits = entry.service->globalCovered;
        if ((cio.typesInUse & type::procedures) != 0) {
            putLine(cio.out, "       ", text(cio, ReportLabel::Hit), "\t", text(cio, enteredLabel(hits)));
        }
        writeRateLines(cio, entry, hits, nullptr);
    }
}

void closeCio(CioFile& cio) {
    cio.out.finish();
}

} // namespace veldacov
