// search/hash_table.h — the transposition table: the best move found for a position, by key.
#pragma once
#include <cstddef>
#include <cstdint>

#include "board/move.h"

namespace vorlek {

struct HashEntry {
  uint64_t key;  // 0: never written, or cleared
  uint32_t move;
};

constexpr uint64_t HASH_MASK = 0x3ffffff;
constexpr size_t HASH_TABLE_SIZE = size_t{1} << 26;

extern HashEntry HashTable[HASH_TABLE_SIZE];

// Which 1 KiB chunks of the table (64 entries each) were stored into since the last clear, one bit
// per chunk, so that clearing after a short search does not sweep the whole gigabyte.
constexpr int HASH_CHUNK_SHIFT = 6;
constexpr size_t HASH_CHUNK_WORDS = (HASH_TABLE_SIZE >> HASH_CHUNK_SHIFT) / 64;
extern uint64_t hashChunksWritten[HASH_CHUNK_WORDS];

inline HashEntry& HashEntryFor(uint64_t key) { return HashTable[key & HASH_MASK]; }

// The remembered move of the position with this key, or MOVE_NONE.
inline Move ProbeHashMove(uint64_t key) {
  const HashEntry& e = HashEntryFor(key);
  return e.key == key ? e.move : MOVE_NONE;
}

// Always replaces whatever the entry held.
inline void StoreHashMove(uint64_t key, Move move) {
  const size_t index = key & HASH_MASK;
  HashTable[index].key = key;
  HashTable[index].move = move;
  const size_t chunk = index >> HASH_CHUNK_SHIFT;
  hashChunksWritten[chunk / 64] |= uint64_t{1} << (chunk % 64);
}

// Asks the memory system for the entry of `key` ahead of its probe.
inline void PrefetchHashEntry(uint64_t key) { __builtin_prefetch(&HashEntryFor(key)); }

// Sets every entry's key to 0; the move words keep their contents.
void ClearHashTable();

}  // namespace vorlek
