// A run that adds measures to a database that holds any bytes: an index and a file of records, each there or not.

#include "outputs/TPM_Write_CommandLine.h"
#include "support.h"

using namespace veldacov;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const std::string index = "Coverage.u.20.idx";
    const std::string records = "Coverage.u.20.tpm";
    ::setenv("VELDA_TPM_ROOT", ".", 1);
    ::setenv("VELDA_TPM_USER", "u", 1);
    const std::string_view bytes = fuzz::textOf(data, size).substr(2);
    const std::size_t indexSize = std::min<std::size_t>(data[1], bytes.size());
    const bool hasIndex = (data[0] & 1U) != 0;
    const bool hasRecords = (data[0] & 2U) != 0;
    fuzz::clearDirectory();
    if (hasIndex) {
        fuzz::writeFile(index, bytes.substr(0, indexSize));
    }
    if (hasRecords) {
        fuzz::writeFile(records, bytes.substr(indexSize));
    }
    fuzz::writeFile("a.fdc", fuzz::descriptionOf(fuzz::smallBody()));
    fuzz::writeFile("b.fdc", fuzz::descriptionOf("PR 0 proc \"f\" 1 9\n", "b.c", "98"));
    fuzz::writeFile("a.tio", "NT\nFT 36\nDC 7\nTP 0\n");
    for (int round = 0; round < 2; ++round) {
        const std::string before = fuzz::contentOf(records);
        fuzz::require(fuzz::runs({"a.fdc", "b.fdc", "a.tio", "-OUTPUT=report"}));
        fuzz::require(!fuzz::hasFile("Coverage.u.20.lck"));
        const std::string after = fuzz::contentOf(records);
        constexpr std::size_t recordSize = 168;
        fuzz::require(after.starts_with(before)); // records are only ever appended, whole ones
        fuzz::require((after.size() - before.size()) % recordSize == 0);
        fuzz::require(after.size() - before.size() <= 2 * recordSize);
        if (!hasIndex && !hasRecords) { // whatever a new database is, it can be used
            fuzz::require(after.size() == before.size() + 2 * recordSize);
        }
    }
    return 0;
}
