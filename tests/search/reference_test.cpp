// The engine against the slow reference of its rules (tests/support/reference.h), on positions of random
// games and on records no game reaches: the three move lists in their order and with their order values,
// the joined list, the generated-move check, the in-check test, the evaluation, the record every move makes
// (bit for bit), the child's key, counters and static value predicted without making the move, and fixed
// searches node for node.
#include "support/reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "board/all_moves.h"
#include "board/init_tables.h"
#include "board/make_move.h"
#include "board/movegen.h"
#include "search/child_key.h"
#include "search/child_value.h"
#include "search/deepening.h"
#include "search/evaluation.h"
#include "search/hash_table.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

namespace ref = reference;

std::string Show(const Position& p) {
  char text[200];
  std::snprintf(text, sizeof text, "{0x%llx, 0x%llx, 0x%llx, 0x%llx, 0x%x, %d, %d, %d, %d, %d, 0x%llx}",
                static_cast<unsigned long long>(p.own), static_cast<unsigned long long>(p.type0),
                static_cast<unsigned long long>(p.type1), static_cast<unsigned long long>(p.type2), p.castling,
                p.epFile, p.fifty, p.repetition, p.side, p.score, static_cast<unsigned long long>(p.key));
  return text;
}

// Values of one kind in a row, for comparing lists and showing the first that differs.
template <typename T>
std::string Show(const std::vector<T>& values) {
  std::string s;
  for (const T& v : values) s += std::to_string(static_cast<unsigned long long>(v)) + " ";
  return s;
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

class RealGames : public ::testing::TestWithParam<const char*> {};

TEST_P(RealGames, AgreeOnEveryRecordAndMove) {
  InitTables();
  const char* fens[] = {GetParam()};
  int positions = 0;
  ASSERT_TRUE(test::WalkRandomGames(fens, 0x5eed, 3, 80, [&](const char*, int) {
    ++positions;
    const std::string d = FirstDifference(true);
    EXPECT_EQ(d, "");
    return d.empty();
  }));
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

// Iterations 1..3 from a new game, one table for all, as the deepening runs them; the last two cases shuffle
// pieces first: repetition counts, and the fifty-move counter reaching 100 inside the tree.
class FixedSearch : public ::testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(FixedSearch, ScoresNodesAndRootMovesAgree) {
  InitTables();
  NewSearchGame();
  ASSERT_EQ(test::SetUpPosition(GetParam().first), 1);
  ASSERT_TRUE(test::PlayMoves(GetParam().second));
  ref::Load(PositionStack, StackIndex(current) + 1);
  ref::ClearTable();
  for (int depth = 1; depth <= 3; ++depth) {
    nodes = 0;
    EXPECT_EQ(Search(depth, -(MATE_SCORE + depth), MATE_SCORE + depth), ref::Iteration(depth)) << depth;
    EXPECT_EQ(nodes, ref::nodes) << depth;
    EXPECT_EQ(HashMoveAtIndex(current->key), ref::TableMove(current->key)) << depth;
  }
}

std::vector<std::pair<const char*, const char*>> SearchCases() {
  std::vector<std::pair<const char*, const char*>> cases;
  for (const char* fen : test::PERFT_POSITIONS) cases.emplace_back(fen, "");
  cases.emplace_back(test::PERFT_POSITIONS[0], "g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1");
  cases.emplace_back("4k3/8/8/8/8/8/8/R3K3 w - - 92 1", "a1a2 e8d8 a2a1 d8e8 a1a2 e8d8");
  return cases;
}

INSTANTIATE_TEST_SUITE_P(Positions, FixedSearch, ::testing::ValuesIn(SearchCases()));

// ---- records no game reaches ----

// What a random record may hold beyond pieces of codes 1..6, up to two kings a side (or none), castling
// rights whose king and rook stand at home, and an en-passant file whose pawn has just passed.
struct Garbage {
  const char* name;
  bool codeSeven;      // men of code 7 (all three planes set)
  bool loneRights;     // rights whatever stands on e1, a1 and h1 (and e8, a8, h8)
  bool loneEnPassant;  // an en-passant file whatever stands behind it
  bool misfitMoves;    // also made: moves of any kind between any squares, with any extra byte
};
void PrintTo(const Garbage& g, std::ostream* os) { *os << g.name; }

void Put(Position& p, int sq, int code, bool own) {
  const Bitboard bit = SquareBit(sq);
  p.type0 = (code & 1) ? p.type0 | bit : p.type0 & ~bit;
  p.type1 = (code & 2) ? p.type1 | bit : p.type1 & ~bit;
  p.type2 = (code & 4) ? p.type2 | bit : p.type2 & ~bit;
  p.own = own ? p.own | bit : p.own & ~bit;
}

Position RandomRecord(test::Random& random, const Garbage& g) {
  Position p{};
  for (int men = random.Below(24); men > 0; --men) {
    Put(p, random.Below(64), g.codeSeven && random.Below(4) == 0 ? 7 : 1 + random.Below(5), random.Below(2));
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
  const Bitboard opponent = Opponent(p);
  auto at = [&](Bitboard side, int sq, int code) { return (side & SquareBit(sq)) && PieceAt(p, sq) == code; };
  if (!g.loneRights) {
    if (!at(p.own, E1, KING) || !at(p.own, A1, ROOK)) p.castling &= ~OWN_QUEEN_SIDE;
    if (!at(p.own, E1, KING) || !at(p.own, H1, ROOK)) p.castling &= ~OWN_KING_SIDE;
    if (!at(opponent, E8, KING) || !at(opponent, A8, ROOK)) p.castling &= ~THEIR_QUEEN_SIDE;
    if (!at(opponent, E8, KING) || !at(opponent, H8, ROOK)) p.castling &= ~THEIR_KING_SIDE;
  }
  if (!g.loneEnPassant && p.epFile != EP_NONE &&
      !MenWhereTheMoveSays(p, MakeMoveValue(KIND_EN_PASSANT, 0, A6 + p.epFile, 0)))
    p.epFile = EP_NONE;
  p.fifty = static_cast<uint8_t>(random.Below(101));
  p.side = random.Below(2) ? BLACK : WHITE;
  p.score = static_cast<int16_t>(random.Next());
  p.key = random.Next();
  return p;
}

class GarbageRecords : public ::testing::TestWithParam<Garbage> {};

TEST_P(GarbageRecords, AgreeOnEveryRecordAndMove) {
  InitTables();
  test::Random random(0x9a7ba9e);
  for (int i = 0; i < 1500; ++i) {
    current = PositionStack;
    *current = RandomRecord(random, GetParam());
    std::string d = FirstDifference(false);
    for (int n = 0; n < 20 && d.empty() && GetParam().misfitMoves; ++n) {
      const int kind = random.Below(42);
      d = MoveDifference(
          MakeMoveValue(kind, random.Below(64), kind == KIND_EN_PASSANT ? 8 + random.Below(56) : random.Below(64),
                        random.Below(256)),
          false);
    }
    ASSERT_EQ(d, "");
  }
}

// Iterations 1 and 2 on each record, one table for both.
TEST_P(GarbageRecords, FixedSearchesAgree) {
  InitTables();
  test::Random random(0x5ea5c4);
  for (int i = 0; i < 100; ++i) {
    NewSearchGame();
    current = PositionStack;
    *current = RandomRecord(random, GetParam());
    ref::Load(*current);
    ref::ClearTable();
    for (int depth = 1; depth <= 2; ++depth) {
      nodes = 0;
      ASSERT_EQ(Search(depth, -(MATE_SCORE + depth), MATE_SCORE + depth), ref::Iteration(depth)) << Show(*current);
      ASSERT_EQ(nodes, ref::nodes) << Show(*current) << " depth " << depth;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Records, GarbageRecords,
                         ::testing::Values(Garbage{"plain", false, false, false, false},
                                           Garbage{"codeSeven", true, false, false, false},
                                           Garbage{"loneRights", false, true, false, false},
                                           Garbage{"loneEnPassant", false, false, true, false},
                                           Garbage{"everything", true, true, true, true}));

}  // namespace
}  // namespace vorlek
