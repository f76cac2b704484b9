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

// True once something has been stored since the table was last cleared.
inline bool hashTableWritten = false;

inline HashEntry& HashEntryFor(uint64_t key) { return HashTable[key & HASH_MASK]; }

// The remembered move of the position with this key, or MOVE_NONE.
inline Move ProbeHashMove(uint64_t key) {
  const HashEntry& e = HashEntryFor(key);
  return e.key == key ? e.move : MOVE_NONE;
}

// Always replaces whatever the entry held.
inline void StoreHashMove(uint64_t key, Move move) {
  HashEntry& e = HashEntryFor(key);
  e.key = key;
  e.move = move;
  hashTableWritten = true;
}

// Sets every entry's key to 0; the move words keep their contents.
void ClearHashTable();

}  // namespace vorlek
