#include "support/hash.h"

#include <QHashFunctions>

namespace veldacov {

const std::uint64_t hashSeed = QHashSeed::globalSeed(); // from what the system hands to each new process

} // namespace veldacov
