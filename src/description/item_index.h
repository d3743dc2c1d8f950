#pragma once

// Items by kind and identifier, as hits name them.
//
// Instrumentation numbers the items of a file, so identifiers are mostly dense and different: they index an array, and
// a look-up is one access. An identifier is dense when it is below a small multiple of the number of items; others, of
// descriptions that number sparsely, are in a hash table. Both say the same for identifiers that occur once. (What an
// index takes: docs/performance.md, "Where the time goes".)
//
// Identifiers should be unique, and descriptions exist where they are not. Then the first item from the current service
// on is meant, the one that a search service by service would find; the service where an item was found becomes the
// current one. So an identifier that several services have keeps the first item of each, in service order, and a
// look-up picks among these:
//
//   identifier 7 in services 2, 5 and 9;  current service 5: the item of 5;  current service 6: that of 9;  10: that of 2
//
// What always holds: `repeated` knows an identifier when, and only when, two services have it, and is asked first.
// While nothing is repeated, the current service changes no answer.

#include <cstdint>

#include "description/model.h"

namespace veldacov {

// Makes the indexes that findItem and recordHit need; once, when the description is complete.
void indexItems(FileDescription& description);

// The item of a kind with this identifier, null when the file has none. The search starts at the current
// service, goes round the file's services once, and leaves the service found as the current one. An item of
// kind Call, Block or Condition is the entry of its list; one of kind Procedure is the entry of its service or
// an ExitEntry.
CoverageItem* findItem(FileDescription& description, ItemKind kind, std::uint32_t id);
// Has the next look-up start at the first service of its file.
void forgetCurrentService();

} // namespace veldacov
