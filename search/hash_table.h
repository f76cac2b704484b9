// search/hash_table.h — the transposition table: the best move found for a position, by key.
// 2^26 entries of a full 64-bit key and a move, one entry per index, always replaced, cleared only by a
// new game. It stores no score, no depth and no bound: it orders moves and holds the principal variation.
#pragma once
#include <cstdint>

#include "board/move.h"

namespace vorlek {

constexpr uint64_t HASH_MASK = 0x3ffffff;  // a key's entry is the one at index key & HASH_MASK

// The remembered move of the position with this key (all 64 bits compared), or MOVE_NONE.
Move ProbeHashMove(uint64_t key);

// Writes key and move into the key's entry, whatever it held.
void StoreHashMove(uint64_t key, Move move);

// Asks the memory system for the key's entry ahead of its probe.
void PrefetchHashEntry(uint64_t key);

// Sets every entry's key to 0; the move words keep their contents.
void ClearHashTable();

// Faults the table's gigabyte in (in huge pages where the kernel gives them) without writing an entry,
// so that the first search does not pay for it. The first starts that on a thread of its own and returns
// at once; the second does it before it returns.
void StartHashTablePrefault();
void PrefaultHashTable();

}  // namespace vorlek
