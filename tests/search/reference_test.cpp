// The engine against the slow reference of its rules (tests/support/reference.h), on positions of random
// games and on records no game reaches: the three move lists in their order and with their order values,
// the joined list, the generated-move check, the in-check test, the evaluation, the record every move makes
// (bit for bit), and the child's key, counters and static value predicted without making the move.
#include "support/reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "board/all_moves.h"
#include "board/make_move.h"
#include "board/movegen.h"
#include "search/child_key.h"
#include "search/child_value.h"
#include "search/evaluation.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

namespace ref = reference;

// Records and lists as gtest prints them (a record as its bytes), for the message of a difference.
template <typename T>
std::string Show(const T& value) {
  return ::testing::PrintToString(value);
}

// The first rule on which the engine and the reference disagree about `move` made from the current record
// (with its history below it), or "". The static value is predicted for generated moves only; in positions
// of real games the key and the score are also those computed from scratch.
std::string MoveDifference(Move move, bool generated = true, bool realGame = false) {
  const Position parent = *current;
  const uint64_t key = ChildKey(parent, move);
  const ChildClock clock = ChildClockOf(parent, move);
  int value = 0;
  const bool valued = ChildStaticValue(parent, move, value);
  ref::Load(PositionStack, StackIndex(current) + 1);
  MakeMove(move);
  const Position child = *current;
  const uint8_t scanned = clock.scansRepetition ? RepetitionCount(key, clock.fifty, current) : 0;
  const int evaluation = Evaluate(child);
  TakeBack();
  ref::MakeMove(move);
  const std::string where = " of move " + std::to_string(move) + " from " + Show(parent);
  if (std::memcmp(&child, ref::current, sizeof child) != 0)
    return "MakeMove" + where + "\n  engine    " + Show(child) + "\n  reference " + Show(*ref::current);
  if (key != child.key) return "ChildKey" + where;
  if (realGame && (child.key != ComputeKey(child) || child.score != static_cast<int16_t>(ComputeScore(child))))
    return "key or score from scratch" + where;
  const bool moved = child.side != parent.side;  // a value that is no move keeps the side and the counters
  if (moved && (clock.fifty != child.fifty || scanned != child.repetition)) return "ChildClockOf" + where;
  if (generated && valued && value != evaluation) return "ChildStaticValue" + where;
  return "";
}

// The first rule on which the engine and the reference disagree about the current record, or "".
std::string FirstDifference(bool realGame) {
  const Position& p = *current;
  ScoredMoveList captures;
  MoveList checks;
  MoveSetList sets;
  captures.count = checks.count = sets.count = 0;
  GenerateCaptures(p, captures);
  GenerateQuiets(p, sets, checks);
  std::vector<uint64_t> engine, reference;
  for (int i = 0; i < captures.count; ++i)
    engine.push_back(captures.entries[i].move * 1000 + captures.entries[i].order);
  for (const ScoredMove& c : ref::GenerateCaptures(p)) reference.push_back(c.move * 1000 + c.order);
  for (int i = 0; i < checks.count; ++i) engine.push_back(checks.moves[i]);
  const ref::Quiets quiets = ref::GenerateQuiets(p);
  for (Move m : quiets.list) reference.push_back(m);
  for (int i = 0; i < sets.count; ++i) engine.insert(engine.end(), {sets.entries[i].head, sets.entries[i].targets});
  for (const MoveSet& s : quiets.sets) reference.insert(reference.end(), {s.head, s.targets});
  if (engine != reference) return "the generators on " + Show(p) + "\n  " + Show(engine) + "\n  " + Show(reference);
  FlatMoveList all;
  GenerateAllMoves(p, all);
  const std::vector<Move> moves = ref::GenerateAll(p);
  if (std::vector<Move>(all.moves, all.moves + all.count) != moves) return "GenerateAllMoves on " + Show(p);
  if (InCheck(p) != ref::InCheck(p)) return "InCheck on " + Show(p);
  if (Evaluate(p) != ref::Evaluate(p)) return "Evaluate on " + Show(p);
  // The check of remembered moves accepts the generated moves and nothing else: each one changed in one of
  // its fields, castling where it is not generated, squares off the board.
  std::vector<Move> candidates = {MOVE_CASTLE_KING_SIDE, MOVE_CASTLE_QUEEN_SIDE};
  for (Move m : moves) {
    candidates.insert(candidates.end(), {m, m ^ 0x01, m ^ 0x100, m ^ 0x40000, m ^ 0x01000000, m ^ 0x07000000,
                                         m ^ 0x10000000, m ^ 0x30000000, m | 0x400000});
  }
  for (Move m : candidates) {
    if (IsGeneratedMove(p, m) != (std::find(moves.begin(), moves.end(), m) != moves.end()))
      return "IsGeneratedMove of " + std::to_string(m) + " on " + Show(p);
  }
  for (Move m : moves) {
    const std::string d = MoveDifference(m, true, realGame);
    if (!d.empty()) return d;
  }
  return "";
}

// ---- positions of random games ----

// Plays `games` random games of at most `plies` plies from `fen` and calls visit() on every position reached,
// before the next random legal move is made; a game ends early at mate or stalemate, the walk when visit
// returns false.
template <typename Visit>
void WalkRandomGames(const char* fen, uint64_t seed, int games, int plies, Visit visit) {
  test::Random random(seed);
  for (int game = 0; game < games; ++game) {
    ASSERT_EQ(test::SetUpPosition(fen), 1);
    for (int ply = 0; ply < plies; ++ply) {
      if (!visit()) return;
      FlatMoveList list;
      GenerateAllMoves(*current, list);
      std::vector<Move> legal;
      for (int i = 0; i < list.count; ++i)
        if (IsLegalMove(list.moves[i])) legal.push_back(list.moves[i]);
      if (legal.empty()) break;
      MakeMove(legal[random.Below(static_cast<int>(legal.size()))]);
    }
  }
}

class RealGames : public ::testing::TestWithParam<const char*> {};

TEST_P(RealGames, AgreeOnEveryRecordAndMove) {
  int positions = 0;
  WalkRandomGames(GetParam(), 0x5eed, 3, 80, [&] {
    ++positions;
    const std::string d = FirstDifference(true);
    EXPECT_EQ(d, "");
    return d.empty();
  });
  EXPECT_GT(positions, 3);  // moves were made (the crowded set-ups end in a few plies)
}

INSTANTIATE_TEST_SUITE_P(PerftPositions, RealGames, ::testing::ValuesIn(test::PERFT_POSITIONS));
// Crowded set-ups: the lists at their largest (218 legal moves in the first), and beyond what games reach.
INSTANTIATE_TEST_SUITE_P(
    Crowded, RealGames,
    ::testing::Values("R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1",
                      "QqQqQqQq/qQqQqQqQ/QqQqQqQq/qQqQqQqQ/QqQqQqQq/qQqQqQqQ/QqQqQqQq/qQqQqQqQ w - - 0 1",
                      "k7/1Q1Q1Q1Q/Q1Q1Q1Q1/8/8/1Q1Q1Q1Q/Q1Q1Q1Q1/7K w - - 0 1",
                      "rnbqkbnr/PPPPPPPP/8/8/8/8/pppppppp/RNBQKBNR w KQkq - 0 1"));

// ---- records no game reaches ----

void Put(Position& p, int sq, int code, bool own) {
  const Bitboard bit = SquareBit(sq);
  p.type0 = (code & 1) ? p.type0 | bit : p.type0 & ~bit;
  p.type1 = (code & 2) ? p.type1 | bit : p.type1 & ~bit;
  p.type2 = (code & 4) ? p.type2 | bit : p.type2 & ~bit;
  p.own = own ? p.own | bit : p.own & ~bit;
}

// A record of random men: codes 1..7 (7 sets all three planes), up to two kings a side or none, random
// castling rights and en-passant file whatever stands on their squares, random counters, score and key.
Position RandomRecord(test::Random& random) {
  Position p{};
  for (int men = random.Below(24); men > 0; --men) {
    Put(p, random.Below(64), random.Below(4) == 0 ? 7 : 1 + random.Below(5), random.Below(2));
  }
  // Kings, rooks at home and pawns on the en-passant ranks, so that castling and en passant are in play.
  for (int own = 0; own < 2; ++own) {
    const int home = own ? E1 : E8;
    for (int n = random.Below(3); n > 0; --n) Put(p, random.Below(2) ? home : random.Below(64), KING, own);
    if (random.Below(2)) Put(p, home - 4, ROOK, own);
    if (random.Below(2)) Put(p, home + 3, ROOK, own);
  }
  for (int n = random.Below(4); n > 0; --n) Put(p, A5 + random.Below(8), PAWN, random.Below(2));
  if (random.Below(3) == 0) Put(p, A7 + random.Below(8), PAWN, true);  // promotions
  p.castling = static_cast<uint8_t>(random.Next() & ALL_CASTLING);
  p.epFile = static_cast<uint8_t>(random.Below(9));
  p.fifty = static_cast<uint8_t>(random.Below(101));
  p.side = random.Below(2) ? BLACK : WHITE;
  p.score = static_cast<int16_t>(random.Next());
  p.key = random.Next();
  return p;
}

// Each record, then moves of any kind between any squares with any extra byte, fitting their board or not.
TEST(GarbageRecords, AgreeOnEveryRecordAndMove) {
  test::Random random(0x9a7ba9e);
  for (int i = 0; i < 3000; ++i) {
    current = PositionStack;
    *current = RandomRecord(random);
    std::string d = FirstDifference(false);
    for (int n = 0; n < 20 && d.empty(); ++n) {
      const int kind = random.Below(42);
      d = MoveDifference(
          MakeMoveValue(kind, random.Below(64), kind == KIND_EN_PASSANT ? 8 + random.Below(56) : random.Below(64),
                        random.Below(256)),
          false);
    }
    ASSERT_EQ(d, "");
  }
}

}  // namespace
}  // namespace vorlek
