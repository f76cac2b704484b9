#include "search/hash_table.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <thread>

namespace vorlek {

namespace {

struct HashEntry {
  uint64_t key;  // 0: never written, or cleared
  Move move;
};

constexpr size_t HASH_TABLE_SIZE = size_t{1} << 26;
static_assert(HASH_TABLE_SIZE - 1 == HASH_MASK && HASH_TABLE_SIZE * sizeof(HashEntry) == size_t{HASH_TABLE_MEBIBYTES}
                                                                                             << 20);

// The array sits in a struct: some compilers build an array of padded records element by element in
// memory at compile time (gigabytes for this one), but a zero record whole.
struct HashTableData {
  HashEntry entries[HASH_TABLE_SIZE];
};

// Aligned to 2 MiB so that the kernel can back it with huge pages (fewer TLB misses).
constexpr size_t HUGE_PAGE = size_t{1} << 21;
alignas(HUGE_PAGE) HashTableData HashTable;

// The part in use: entries 0 to hashMask.
uint64_t hashMask = HASH_MASK;

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

inline HashEntry& EntryFor(uint64_t key) { return HashTable.entries[key & hashMask]; }

size_t BytesInUse() { return (hashMask + 1) * sizeof(HashEntry); }

// Faulting in is done one huge page (a piece) at a time, taken from a common counter, so that a thread
// that must have the table now joins a background one: pieces are taken until none is left, then the
// pieces still being faulted by the other are waited for.
constexpr size_t FULL_PIECES = sizeof(HashTableData) / HUGE_PAGE;
std::atomic<size_t> piecesInUse{FULL_PIECES};
std::atomic<size_t> nextPiece{0};
std::atomic<size_t> piecesDone{0};
std::atomic<bool> backgroundRunning{false};

void FaultPiece(size_t piece) {
  char* const table = reinterpret_cast<char*>(&HashTable);
  const size_t begin = piece * HUGE_PAGE, length = std::min(HUGE_PAGE, BytesInUse() - begin);
  // Linux 5.14 and later fault the pages in writable without touching their contents. A call holds the
  // process's memory map while it works, so it covers one huge page: another thread that maps memory (a
  // new thread's stack, a growing heap) waits for one page at most.
  if (madvise(table + begin, length, MADV_POPULATE_WRITE) == 0) return;
  // Elsewhere one key per page is touched by an atomic addition of zero: it writes no entry, even while a
  // search stores into the table on another thread (the table's keys are only read and written atomically).
  constexpr size_t ENTRIES_PER_PAGE = 4096 / sizeof(HashEntry);
  for (size_t i = begin / sizeof(HashEntry); i < (begin + length) / sizeof(HashEntry); i += ENTRIES_PER_PAGE) {
    std::atomic_ref<uint64_t>(HashTable.entries[i].key).fetch_add(0, std::memory_order_relaxed);
  }
}

void FaultPieces() {
  for (size_t piece; (piece = nextPiece.fetch_add(1)) < piecesInUse.load();) {
    FaultPiece(piece);
    piecesDone.fetch_add(1);
    piecesDone.notify_all();
  }
}

// Ends a background faulting: no piece is taken any more, and the one being faulted is finished.
void StopBackgroundFaulting() {
  nextPiece.store(SIZE_MAX / 2);
  backgroundRunning.wait(true);
}

}  // namespace

Move ProbeHashMove(uint64_t key) {
  HashEntry& e = EntryFor(key);
  return std::atomic_ref<uint64_t>(e.key).load(std::memory_order_relaxed) == key ? e.move : MOVE_NONE;
}

void StoreHashMove(uint64_t key, Move move) {
  const size_t index = key & hashMask;
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

void SetHashTableSize(int mebibytes) {
  StopBackgroundFaulting();
  ClearHashTable();
  const size_t bytes = static_cast<size_t>(std::clamp(mebibytes, 1, HASH_TABLE_MEBIBYTES)) << 20;
  const size_t entries = std::bit_floor(bytes / sizeof(HashEntry));
  hashMask = entries - 1;
  // The memory beyond the part in use goes back to the system (it reads as zero keys when touched again).
  char* const table = reinterpret_cast<char*>(&HashTable);
  const size_t kept = (BytesInUse() + HUGE_PAGE - 1) / HUGE_PAGE * HUGE_PAGE;
  if (kept < sizeof HashTable) madvise(table + kept, sizeof HashTable - kept, MADV_DONTNEED);
  piecesInUse.store(kept / HUGE_PAGE);
  piecesDone.store(0);
  nextPiece.store(0);
}

size_t HashTableEntries() { return hashMask + 1; }

void StartHashTablePrefault() {
  backgroundRunning.store(true);
  std::thread([] {
    // At the lowest priority: the work fills time in which the engine waits for its interface, and never
    // takes a processor from a search.
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), 19);
    FaultPieces();
    backgroundRunning.store(false);
    backgroundRunning.notify_all();
  }).detach();
}

void MakeHashTableResident() {
  FaultPieces();
  for (size_t done; (done = piecesDone.load()) < piecesInUse.load();) piecesDone.wait(done);
}

bool HashTableResident() { return piecesDone.load() >= piecesInUse.load(); }

}  // namespace vorlek
