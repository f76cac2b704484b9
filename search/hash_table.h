// search/hash_table.h — the transposition table: the best move found for a position, by key.
// Entries of a full 64-bit key and a move, one entry per index, always replaced, cleared only by a new
// game. It stores no score, no depth and no bound: it orders moves and holds the principal variation.
// The engine's table has 2^26 entries (1 GiB); a front end may use a smaller part of it.
#pragma once
#include <cstddef>
#include <cstdint>

#include "board/move.h"

namespace vorlek {

constexpr uint64_t HASH_MASK = 0x3ffffff;   // the whole table: a key's entry is the one at index key & HASH_MASK
constexpr int HASH_TABLE_MEBIBYTES = 1024;  // the whole table's memory

// The remembered move of the position with this key (all 64 bits compared), or MOVE_NONE.
Move ProbeHashMove(uint64_t key);

// Writes key and move into the key's entry, whatever it held.
void StoreHashMove(uint64_t key, Move move);

// Asks the memory system for the key's entry ahead of its probe.
void PrefetchHashEntry(uint64_t key);

// Sets every entry's key to 0; the move words keep their contents.
void ClearHashTable();

// Uses the largest power-of-two number of entries that fits in `mebibytes` (1 to HASH_TABLE_MEBIBYTES; the
// whole table, 2^26 entries, at the largest): only that part is probed, stored into, cleared and faulted
// in, and the memory of the rest is given back. The table is cleared. Not during a search.
void SetHashTableSize(int mebibytes);

// Entries in use (a power of two).
size_t HashTableEntries();

// Faulting the part in use in (writable, in huge pages where the kernel gives them) without writing an
// entry, so that no search pays for it. StartHashTablePrefault does it on a thread of its own at the lowest
// priority and returns at once. MakeHashTableResident returns once the part in use is resident: it faults
// what is left on the calling thread, beside a background one. HashTableResident says whether it is.
void StartHashTablePrefault();
void MakeHashTableResident();
bool HashTableResident();

}  // namespace vorlek
