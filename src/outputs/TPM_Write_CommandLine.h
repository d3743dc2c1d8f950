#pragma once

// The measure database: measures taken over time, per user and measure, in the directory that VELDA_TPM_ROOT names.
// Messages call it Test Process Monitor, hence the names of these files. Three files hang off the base
// <root>/<measure>.<user>.<number of values>:
//
//   .idx   entries of two words: key, byte offset of the key's latest record in the database file
//   .tpm   records, only ever appended: time, key, then per value the value and its total over all keys;
//          one that fails is cut off again
//   .lck   exists while a process updates the two others
//
// All words are unsigned, 32 bits, little-endian. Sums wrap at 2^32. A record is in the database file before
// an index entry names it, so that a killed run never leaves an entry without its record.

#include <cstdint>
#include <span>
#include <string>

#include "report/options.h"

namespace veldacov {

// Adds a "Coverage" record for every selected description, when VELDA_TPM_ROOT is set: what was hit and what
// is described, by counter. Problems are shown and do not stop the run.
void writeCoverageMeasures(const CoverageOptions& options);

// Adds one record; `time` is in seconds since 1970, 0 for now. True on error, like the status of a command and unlike the
// other operations; it has been shown then. Waits as long as another process holds the lock, until an interrupt; open
// outputs are flushed before.
bool writeMeasure(const std::string& name, std::uint32_t key, std::uint32_t time,
                  std::span<const std::uint32_t> values);

} // namespace veldacov
