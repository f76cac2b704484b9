#include "search/hash_table.h"

#include <sys/mman.h>

namespace vorlek {

// Aligned to 2 MiB so that the kernel can back it with huge pages (fewer TLB misses).
alignas(1 << 21) HashEntry HashTable[HASH_TABLE_SIZE];
uint64_t hashChunksWritten[HASH_CHUNK_WORDS];

namespace {

// Asks once for huge pages; the table is untouched memory until the first search writes it.
const bool hugePagesAsked = [] {
  madvise(HashTable, sizeof HashTable, MADV_HUGEPAGE);
  return true;
}();

}  // namespace

void ClearHashTable() {
  // Only StoreHashMove writes keys, and it marks its chunk: every other chunk holds zero keys
  // already. Start-up and "new" stay instant, and untouched memory is never made resident.
  for (size_t word = 0; word < HASH_CHUNK_WORDS; ++word) {
    for (uint64_t bits = hashChunksWritten[word]; bits; bits &= bits - 1) {
      const size_t first = (word * 64 + static_cast<size_t>(__builtin_ctzll(bits))) << HASH_CHUNK_SHIFT;
      for (size_t i = first; i < first + (size_t{1} << HASH_CHUNK_SHIFT); ++i) HashTable[i].key = 0;
    }
    hashChunksWritten[word] = 0;
  }
}

}  // namespace vorlek
