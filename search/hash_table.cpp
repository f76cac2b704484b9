#include "search/hash_table.h"

#include <sys/mman.h>

namespace vorlek {

// Aligned to 2 MiB so that the kernel can back it with huge pages (fewer TLB misses).
alignas(1 << 21) HashEntry HashTable[HASH_TABLE_SIZE];

namespace {

// Asks once for huge pages; the table is untouched memory until the first search writes it.
const bool hugePagesAsked = [] {
  madvise(HashTable, sizeof HashTable, MADV_HUGEPAGE);
  return true;
}();

}  // namespace

void ClearHashTable() {
  // A table nobody wrote since it was last cleared holds only zero keys: leave its memory untouched,
  // so that start-up and "new" stay instant and the gigabyte is not made resident.
  if (!hashTableWritten) return;
  for (auto& entry : HashTable) entry.key = 0;
  hashTableWritten = false;
}

}  // namespace vorlek
