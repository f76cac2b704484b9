#include "search/hash_table.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <thread>

namespace vorlek {

namespace {

struct HashEntry {
  uint64_t key;  // 0: never written, or cleared
  Move move;
};

constexpr size_t HASH_TABLE_SIZE = size_t{1} << 26;

// The array sits in a struct: some compilers build an array of padded records element by element in
// memory at compile time (gigabytes for this one), but a zero record whole.
struct HashTableData {
  HashEntry entries[HASH_TABLE_SIZE];
};

// Aligned to 2 MiB so that the kernel can back it with huge pages (fewer TLB misses).
alignas(1 << 21) HashTableData HashTable;

// Which 1 KiB chunks of the table (64 entries each) were stored into since the last clear, one bit per
// chunk, so that clearing after a short search does not sweep the whole gigabyte.
constexpr int HASH_CHUNK_SHIFT = 6;
constexpr size_t HASH_CHUNK_WORDS = (HASH_TABLE_SIZE >> HASH_CHUNK_SHIFT) / 64;
uint64_t hashChunksWritten[HASH_CHUNK_WORDS];

// Asks once for huge pages; the table stays untouched memory until it is faulted in or written.
const bool hugePagesAsked = [] {
  madvise(&HashTable, sizeof HashTable, MADV_HUGEPAGE);
  return true;
}();

inline HashEntry& EntryFor(uint64_t key) { return HashTable.entries[key & HASH_MASK]; }

}  // namespace

Move ProbeHashMove(uint64_t key) {
  HashEntry& e = EntryFor(key);
  return std::atomic_ref<uint64_t>(e.key).load(std::memory_order_relaxed) == key ? e.move : MOVE_NONE;
}

void StoreHashMove(uint64_t key, Move move) {
  const size_t index = key & HASH_MASK;
  std::atomic_ref<uint64_t>(HashTable.entries[index].key).store(key, std::memory_order_relaxed);
  HashTable.entries[index].move = move;
  const size_t chunk = index >> HASH_CHUNK_SHIFT;
  hashChunksWritten[chunk / 64] |= uint64_t{1} << (chunk % 64);
}

void PrefetchHashEntry(uint64_t key) { __builtin_prefetch(&EntryFor(key)); }

void ClearHashTable() {
  // Only StoreHashMove writes keys, and it marks its chunk: every other chunk holds zero keys already.
  // Start-up and "new" stay instant.
  for (size_t word = 0; word < HASH_CHUNK_WORDS; ++word) {
    for (uint64_t bits = hashChunksWritten[word]; bits; bits &= bits - 1) {
      const size_t first = (word * 64 + static_cast<size_t>(__builtin_ctzll(bits))) << HASH_CHUNK_SHIFT;
      for (size_t i = first; i < first + (size_t{1} << HASH_CHUNK_SHIFT); ++i) {
        std::atomic_ref<uint64_t>(HashTable.entries[i].key).store(0, std::memory_order_relaxed);
      }
    }
    hashChunksWritten[word] = 0;
  }
}

void PrefaultHashTable() {
  // Linux 5.14 and later fault the pages in writable without touching their contents. A call holds the
  // process's memory map while it works, so it is made one huge page at a time: another thread that maps
  // memory (a new thread's stack, a growing heap) waits for one page at most.
  constexpr size_t CHUNK = size_t{1} << 21;
  char* const table = reinterpret_cast<char*>(&HashTable);
  bool populated = true;
  for (size_t offset = 0; offset < sizeof HashTable && populated; offset += CHUNK) {
    populated = madvise(table + offset, CHUNK, MADV_POPULATE_WRITE) == 0;
  }
  if (populated) return;
  // Elsewhere one key per page is touched by an atomic addition of zero: it writes no entry, even while a
  // search stores into the table on another thread (the table's keys are only read and written atomically).
  constexpr size_t ENTRIES_PER_PAGE = 4096 / sizeof(HashEntry);
  for (size_t i = 0; i < HASH_TABLE_SIZE; i += ENTRIES_PER_PAGE) {
    std::atomic_ref<uint64_t>(HashTable.entries[i].key).fetch_add(0, std::memory_order_relaxed);
  }
}

void StartHashTablePrefault() {
  std::thread([] {
    // At the lowest priority: the work fills time in which the engine waits for its interface, and never
    // takes a processor from a search.
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), 19);
    PrefaultHashTable();
  }).detach();
}

}  // namespace vorlek
