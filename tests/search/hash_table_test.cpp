// The table of remembered moves: one entry per low 26 bits of the key, a hit only on all 64 bits,
// always replace, and a clear that zeroes keys and keeps move words.
#include "search/hash_table.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/board_helpers.h"

namespace vorlek {
namespace {

constexpr uint64_t KEY = 0x0123456789abcdefULL;
constexpr Move MOVE_A = MakeMoveValue(KNIGHT, 6, 21, 0);
constexpr Move MOVE_B = MakeMoveValue(PAWN, 12, 28, 0);

class HashTableTest : public ::testing::Test {
 protected:
  void SetUp() override { ClearHashTable(); }
  void TearDown() override { ClearHashTable(); }
};

TEST_F(HashTableTest, StoredMoveIsFoundAgain) {
  EXPECT_EQ(ProbeHashMove(KEY), MOVE_NONE);
  StoreHashMove(KEY, MOVE_A);
  EXPECT_EQ(ProbeHashMove(KEY), MOVE_A);
  EXPECT_EQ(HashTable[KEY & HASH_MASK].key, KEY);
  EXPECT_EQ(HashTable[KEY & HASH_MASK].move, MOVE_A);
}

TEST_F(HashTableTest, EveryKeyBitCounts) {
  StoreHashMove(KEY, MOVE_A);
  for (int bit = 0; bit < 64; ++bit) {
    EXPECT_EQ(ProbeHashMove(KEY ^ (uint64_t{1} << bit)), MOVE_NONE) << bit;
  }
}

TEST_F(HashTableTest, LastStoreOwnsTheIndex) {
  const uint64_t sameIndex = KEY ^ (uint64_t{1} << 26) ^ (uint64_t{1} << 63);
  ASSERT_EQ(sameIndex & HASH_MASK, KEY & HASH_MASK);
  StoreHashMove(KEY, MOVE_A);
  StoreHashMove(sameIndex, MOVE_B);
  EXPECT_EQ(ProbeHashMove(KEY), MOVE_NONE);
  EXPECT_EQ(ProbeHashMove(sameIndex), MOVE_B);
  StoreHashMove(KEY, MOVE_B);
  StoreHashMove(KEY, MOVE_A);
  EXPECT_EQ(ProbeHashMove(KEY), MOVE_A);
  EXPECT_EQ(ProbeHashMove(sameIndex), MOVE_NONE);
}

TEST_F(HashTableTest, ClearZeroesKeysAndKeepsMoves) {
  // Indexes at both ends of the table and on both sides of the boundaries of its 64-entry chunks.
  const std::vector<uint64_t> indexes = {0, 1, 63, 64, 65, 127, 4095, 4096, 1234567, HASH_MASK - 64, HASH_MASK};
  test::Random random(7);
  std::vector<uint64_t> keys;
  for (const uint64_t index : indexes) keys.push_back((random.Next() & ~HASH_MASK) | index | (uint64_t{1} << 63));
  for (int i = 0; i < 2000; ++i) keys.push_back(random.Next() | 1);
  for (size_t i = 0; i < keys.size(); ++i) StoreHashMove(keys[i], static_cast<Move>(i + 1));
  std::vector<Move> moves;
  for (const uint64_t key : keys) moves.push_back(HashEntryFor(key).move);

  ClearHashTable();
  for (size_t i = 0; i < keys.size(); ++i) {
    EXPECT_EQ(ProbeHashMove(keys[i]), MOVE_NONE) << i;
    EXPECT_EQ(HashEntryFor(keys[i]).key, 0u) << i;
    EXPECT_EQ(HashEntryFor(keys[i]).move, moves[i]) << i;
  }
  // The neighbours of a stored entry in its chunk were never written and stay zero too.
  for (const uint64_t index : indexes) {
    for (uint64_t near = index & ~uint64_t{63}; near <= (index | 63); ++near) EXPECT_EQ(HashTable[near].key, 0u);
  }
}

}  // namespace
}  // namespace vorlek
