// The engine against the slow reference of its rules (tests/support/reference.h): move lists in their
// order, made records bit for bit, the in-check test, the evaluation and fixed searches node for node, on
// positions of real games and on records no game can reach.
#include "support/reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "board/all_moves.h"
#include "board/attacks.h"
#include "board/fen.h"
#include "board/init_tables.h"
#include "board/make_move.h"
#include "board/movegen.h"
#include "board/notation.h"
#include "search/deepening.h"
#include "search/evaluation.h"
#include "search/hash_table.h"
#include "search/search.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

namespace ref = reference;

// One iteration of the engine's search at `depth`, with the deepening's window.
int EngineIteration(int depth) {
  nodes = 0;
  return Search(depth, -(MATE_SCORE + depth), MATE_SCORE + depth);
}

std::string Show(const Position& p) {
  char text[200];
  std::snprintf(text, sizeof text, "{0x%llx, 0x%llx, 0x%llx, 0x%llx, 0x%x, %d, %d, %d, %d, %d, 0x%llx}",
                static_cast<unsigned long long>(p.own), static_cast<unsigned long long>(p.type0),
                static_cast<unsigned long long>(p.type1), static_cast<unsigned long long>(p.type2), p.castling,
                p.epFile, p.fifty, p.repetition, p.side, p.score, static_cast<unsigned long long>(p.key));
  return text;
}
std::string Show(Move m) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08x", m);
  return text;
}
std::string Show(const std::vector<Move>& moves) {
  std::string s;
  for (Move m : moves) s += Show(m) + " ";
  return s;
}
bool SameRecord(const Position& a, const Position& b) { return std::memcmp(&a, &b, sizeof(Position)) == 0; }

// The record `move` makes from the current one, by the engine and by the reference; "" when equal.
std::string MakeMoveDifference(Move move) {
  ref::Load(PositionStack, StackIndex(current) + 1);
  MakeMove(move);
  const Position engine = *current;
  TakeBack();
  ref::MakeMove(move);
  const Position reference = *ref::current;
  if (SameRecord(engine, reference)) return "";
  return "MakeMove " + Show(move) + ":\n  engine    " + Show(engine) + "\n  reference " + Show(reference);
}

// The first rule on which the engine and the reference disagree about the current record (its history
// below it on the stack), or "" when they agree on all: the three lists, the joined list, the in-check
// test, the evaluation and the record made by every move either side generates.
std::string FirstDifference() {
  const Position& p = *current;
  ScoredMoveList captures;
  MoveList checks;
  MoveSetList sets;
  captures.count = checks.count = sets.count = 0;
  GenerateCaptures(p, captures);
  GenerateQuiets(p, sets, checks);
  std::vector<Move> engineCaptures, engineChecks, engineSets, engineAll;
  std::vector<Move> refCaptures, refChecks, refSets;
  for (int i = 0; i < captures.count; ++i) engineCaptures.push_back(captures.entries[i].move);
  for (int i = 0; i < captures.count; ++i) engineCaptures.push_back(static_cast<Move>(captures.entries[i].order));
  for (const ScoredMove& c : ref::GenerateCaptures(p)) refCaptures.push_back(c.move);
  for (const ScoredMove& c : ref::GenerateCaptures(p)) refCaptures.push_back(static_cast<Move>(c.order));
  engineChecks.assign(checks.moves, checks.moves + checks.count);
  const ref::Quiets quiets = ref::GenerateQuiets(p);
  refChecks = quiets.list;
  for (int i = 0; i < sets.count; ++i) {
    engineSets.push_back(sets.entries[i].head);
    engineSets.push_back(static_cast<Move>(sets.entries[i].targets));
    engineSets.push_back(static_cast<Move>(sets.entries[i].targets >> 32));
  }
  for (const MoveSet& set : quiets.sets) {
    refSets.push_back(set.head);
    refSets.push_back(static_cast<Move>(set.targets));
    refSets.push_back(static_cast<Move>(set.targets >> 32));
  }
  FlatMoveList all;
  GenerateAllMoves(p, all);
  engineAll.assign(all.moves, all.moves + all.count);
  const std::vector<Move> refAll = ref::GenerateAll(p);
  const std::string record = " on " + Show(p) + "\n  engine    ";
  if (engineCaptures != refCaptures)
    return "GenerateCaptures (moves, then orders)" + record + Show(engineCaptures) + "\n  reference " +
           Show(refCaptures);
  if (engineChecks != refChecks)
    return "GenerateQuiets list" + record + Show(engineChecks) + "\n  reference " + Show(refChecks);
  if (engineSets != refSets)
    return "GenerateQuiets sets (head, targets)" + record + Show(engineSets) + "\n  reference " + Show(refSets);
  if (engineAll != refAll) return "GenerateAllMoves" + record + Show(engineAll) + "\n  reference " + Show(refAll);
  if (InCheck(p) != ref::InCheck(p)) return "InCheck" + record + std::to_string(InCheck(p));
  if (Evaluate(p) != ref::Evaluate(p)) return "Evaluate" + record + std::to_string(Evaluate(p));
  for (Move m : refAll) {
    const std::string d = MakeMoveDifference(m);
    if (!d.empty()) return d + "\n  from " + Show(p);
  }
  return "";
}

// ---- positions of real games ----

class RealGames : public ::testing::TestWithParam<const char*> {};

TEST_P(RealGames, MoveListsRecordsChecksAndValuesAgree) {
  InitTables();
  const char* fens[] = {GetParam()};
  int positions = 0;
  ASSERT_TRUE(test::WalkRandomGames(fens, 0x5eed, 3, 80, [&](const char*, int) {
    ++positions;
    const std::string d = FirstDifference();
    EXPECT_EQ(d, "");
    return d.empty();
  }));
  EXPECT_GT(positions, 100);
}

INSTANTIATE_TEST_SUITE_P(PerftPositions, RealGames, ::testing::ValuesIn(test::PERFT_POSITIONS));

// Iterations 1..3 from a new game, one table for all, as the deepening runs them. The last two cases shuffle
// pieces before the search: repetition counts, and the fifty-move counter reaching 100 inside the tree.
struct SearchCase {
  const char* fen;
  const char* moves;
};
void PrintTo(const SearchCase& c, std::ostream* os) { *os << c.fen << " " << c.moves; }

class FixedSearch : public ::testing::TestWithParam<SearchCase> {};

TEST_P(FixedSearch, ScoresNodesAndRootMovesAgree) {
  InitTables();
  NewSearchGame();
  test::SetUpInitialPosition();
  ASSERT_EQ(SetBoard(*current, GetParam().fen), 1);
  ASSERT_TRUE(test::PlayMoves(GetParam().moves));
  ref::Load(PositionStack, StackIndex(current) + 1);
  ref::ClearTable();
  for (int depth = 1; depth <= 3; ++depth) {
    const int score = EngineIteration(depth);
    EXPECT_EQ(score, ref::Iteration(depth)) << depth;
    EXPECT_EQ(nodes, ref::nodes) << depth;
    EXPECT_EQ(HashMoveAtIndex(current->key), ref::TableMove(current->key)) << depth;
  }
}

std::vector<SearchCase> SearchCases() {
  std::vector<SearchCase> cases;
  for (const char* fen : test::PERFT_POSITIONS) cases.push_back({fen, ""});
  cases.push_back({test::PERFT_POSITIONS[0], "g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1"});
  cases.push_back({"4k3/8/8/8/8/8/8/R3K3 w - - 92 1", "a1a2 e8d8 a2a1 d8e8 a1a2 e8d8"});
  return cases;
}

INSTANTIATE_TEST_SUITE_P(Positions, FixedSearch, ::testing::ValuesIn(SearchCases()));

// ---- records no game reaches ----

// What a random record may hold beyond pieces of codes 1..6, one or two kings a side or none, castling
// rights whose king and rook stand at home, and an en-passant file whose pawn has just passed.
struct Garbage {
  const char* name;
  bool codeSeven;      // pieces of code 7 (all three planes set)
  bool loneRights;     // rights whatever stands on e1, a1 and h1 (and e8, a8, h8)
  bool loneEnPassant;  // an en-passant file whatever stands behind it
  bool misfitMoves;    // also promotions onto occupied squares and castling kinds between other squares
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
  const int men = random.Below(24);
  for (int i = 0; i < men; ++i) {
    const int code = g.codeSeven && random.Below(4) == 0 ? 7 : 1 + random.Below(5);
    Put(p, random.Below(64), code, random.Below(2));
  }
  // Kings, rooks at home and pawns on the en-passant ranks, so that castling and en passant are in play.
  for (int own = 0; own < 2; ++own) {
    const int home = own ? 4 : 60;
    for (int n = random.Below(3); n > 0; --n) Put(p, random.Below(2) ? home : random.Below(64), KING, own);
    if (random.Below(2)) Put(p, home - 4, ROOK, own);
    if (random.Below(2)) Put(p, home + 3, ROOK, own);
  }
  for (int n = random.Below(4); n > 0; --n) Put(p, 32 + random.Below(8), PAWN, random.Below(2));
  if (random.Below(3) == 0) Put(p, 48 + random.Below(8), PAWN, true);  // promotions
  p.castling = static_cast<uint8_t>(random.Next() & 0x33);
  p.epFile = static_cast<uint8_t>(random.Below(9));
  const Bitboard occupancy = Occupancy(p), opponent = occupancy ^ p.own;
  auto at = [&](Bitboard side, int sq, int code) { return (side & SquareBit(sq)) && PieceAt(p, sq) == code; };
  if (!g.loneRights) {
    if (!at(p.own, 4, KING) || !at(p.own, 0, ROOK)) p.castling &= ~0x01;
    if (!at(p.own, 4, KING) || !at(p.own, 7, ROOK)) p.castling &= ~0x02;
    if (!at(opponent, 60, KING) || !at(opponent, 56, ROOK)) p.castling &= ~0x10;
    if (!at(opponent, 60, KING) || !at(opponent, 63, ROOK)) p.castling &= ~0x20;
  }
  if (!g.loneEnPassant && p.epFile != EP_NONE &&
      (!at(opponent, 32 + p.epFile, PAWN) || (occupancy & SquareBit(40 + p.epFile))))
    p.epFile = EP_NONE;
  p.fifty = static_cast<uint8_t>(random.Below(101));
  p.side = random.Below(2) ? BLACK : WHITE;
  p.score = static_cast<int16_t>(random.Next());
  p.key = random.Next();
  return p;
}

// A move of any kind 0..41 between any squares, with any extra byte: no generator, book or table gives such
// moves, but make-move follows its rules for them all the same. Unless `anywhere`, castling keeps its own
// squares and a promotion goes to a square that is empty when its piece is set there.
Move RandomMove(test::Random& random, const Position& p, bool anywhere) {
  const int kind = random.Below(42);
  int from = random.Below(64), to = kind == KIND_EN_PASSANT ? 8 + random.Below(56) : random.Below(64);
  if (!anywhere && (kind == KIND_CASTLE_KING_SIDE || kind == KIND_CASTLE_QUEEN_SIDE)) {
    from = 4;
    to = kind == KIND_CASTLE_KING_SIDE ? 6 : 2;
  }
  if (!anywhere && (kind == KIND_PROMOTION || kind == KIND_CAPTURE_PROMOTION)) {
    while (from == to || (kind == KIND_PROMOTION && (Occupancy(p) & SquareBit(to)))) to = random.Below(64);
  }
  return MakeMoveValue(kind, from, to, random.Below(256));
}

class GarbageRecords : public ::testing::TestWithParam<Garbage> {};

TEST_P(GarbageRecords, ListsRecordsChecksAndValuesAgree) {
  InitTables();
  test::Random random(0x9a7ba9e);
  int differing = 0;
  std::string first;
  for (int i = 0; i < 2000; ++i) {
    current = PositionStack;
    *current = RandomRecord(random, GetParam());
    std::string d = FirstDifference();
    for (int n = 0; n < 20 && d.empty(); ++n)
      d = MakeMoveDifference(RandomMove(random, *current, GetParam().misfitMoves));
    if (!d.empty() && ++differing == 1) first = d;
  }
  EXPECT_EQ(differing, 0) << first;
}

// Iterations 1 and 2 on each record, one table for both.
TEST_P(GarbageRecords, FixedSearchesAgree) {
  if (GetParam().misfitMoves) GTEST_SKIP() << "a search makes generated and remembered moves only";
  InitTables();
  test::Random random(0x5ea5c4);
  for (int i = 0; i < 100; ++i) {
    NewSearchGame();
    test::SetUpInitialPosition();
    *current = RandomRecord(random, GetParam());
    ref::Load(*current);
    ref::ClearTable();
    for (int depth = 1; depth <= 2; ++depth) {
      const int score = EngineIteration(depth);
      ASSERT_EQ(score, ref::Iteration(depth)) << Show(*current) << " depth " << depth;
      ASSERT_EQ(nodes, ref::nodes) << Show(*current) << " depth " << depth;
    }
  }
}

// The in-check test and the evaluation name their sets by planes, code 7 included, on every kind of record.
TEST(AnyRecord, InCheckAndEvaluateAgree) {
  InitTables();
  test::Random random(0xc0de7);
  for (int i = 0; i < 3000; ++i) {
    const Position p = RandomRecord(random, Garbage{"any", true, true, true, true});
    ASSERT_EQ(InCheck(p), ref::InCheck(p)) << Show(p);
    ASSERT_EQ(Evaluate(p), ref::Evaluate(p)) << Show(p);
  }
}

// Records no game reaches, each family bringing out some rules; the examples below name each rule.
INSTANTIATE_TEST_SUITE_P(Records, GarbageRecords,
                         ::testing::Values(Garbage{"plain", false, false, false, false},
                                           Garbage{"codeSeven", true, false, false, false},
                                           Garbage{"loneRights", false, true, false, false},
                                           Garbage{"loneEnPassant", false, false, true, false},
                                           Garbage{"misfitMoves", false, false, false, true}));

// ---- one record for each rule that records no game reaches bring out ----

// A record set up from `fen` (white to move, so squares are real), the pieces on `sevens` turned into
// code 7 of the same colour, then `move` made when it is not 0.
struct RuleCase {
  const char* rule;
  const char* fen;
  const char* sevens;
  Move move;
  bool (*referenceFact)(const Position&);  // what the rule gives, checked on the reference
};
void PrintTo(const RuleCase& c, std::ostream* os) { *os << c.rule; }

bool Contains(const std::vector<Move>& moves, Move m) {
  return std::find(moves.begin(), moves.end(), m) != moves.end();
}
bool NoMoveFrom(const Position& p, const char* square) {
  for (Move m : ref::GenerateAll(p))
    if (MoveFrom(m) == test::Sq(square)) return false;
  return true;
}

class Rules : public ::testing::TestWithParam<RuleCase> {
 protected:
  void SetUp() override {
    InitTables();
    ASSERT_EQ(test::SetUpPosition(GetParam().fen), 1);
    const Bitboard sevens = test::Squares(GetParam().sevens);
    current->type0 |= sevens;
    current->type1 |= sevens;
    current->type2 |= sevens;
    ref::Load(*current);
  }
};

TEST_P(Rules, ReferenceFollowsTheRule) { EXPECT_TRUE(GetParam().referenceFact(*current)) << Show(*current); }

TEST_P(Rules, EngineFollowsTheRule) {
  EXPECT_EQ(FirstDifference(), "");
  if (GetParam().move) {
    EXPECT_EQ(MakeMoveDifference(GetParam().move), "");
  }
}

INSTANTIATE_TEST_SUITE_P(
    Examples, Rules,
    ::testing::Values(
        // The generators move the own pieces of each exact code 1..6, so code 7 never moves. The engine's
        // bishops (own & type0 & type1) and queens (own & type0 & type2) take it in: kinds 11, 13, 3 and 5.
        RuleCase{"code 7 does not move", "4k3/8/5p2/8/3B4/8/8/4K3 w - - 0 1", "d4", 0,
                 [](const Position& p) { return NoMoveFrom(p, "d4"); }},
        // The king that moves is the lowest own piece of code 6; the engine takes the lowest of
        // own & type1 & type2, here the code 7 on b1, and leaves e1 without moves.
        RuleCase{"code 7 below the king is no king", "4k3/8/8/8/8/8/8/1B2K3 w - - 0 1", "b1", 0,
                 [](const Position& p) { return NoMoveFrom(p, "b1") && !NoMoveFrom(p, "e1"); }},
        // The opponent's king square K for the check squares: the engine takes a lower code 7 (a5) for it
        // and counts h1h5 as the check instead of h1h8.
        RuleCase{"an opponent code 7 is not the king in check", "4k3/8/8/p7/8/8/8/4K2R w - - 0 1", "a5", 0,
                 [](const Position& p) {
                   return ref::GenerateQuiets(p).list == std::vector<Move>{MakeMoveValue(ROOK, 7, 63, 0)};
                 }},
        // A king line needs the own king as the first piece on the ray; the engine's own & type1 & type2
        // takes the code 7 on a4 for it and sends the king's steps off the a-file to the check list.
        RuleCase{"code 7 opens no king line", "k7/8/8/8/B7/8/8/R3K3 w - - 0 1", "a4", 0,
                 [](const Position& p) {
                   for (Move m : ref::GenerateQuiets(p).list)
                     if (MoveKind(m) == KING) return false;
                   return true;
                 }},
        // Castling's attack test looks for opponent knights, pawns, kings, rooks, bishops and queens by their
        // codes; the engine's sets (type2 & (type0 | ~type1), type0 & (type1 | type2), type1 & type2) also take
        // code 7, as on f8 here.
        RuleCase{"an opponent code 7 does not bar castling", "4kb2/8/8/8/8/8/8/4K2R w K - 0 1", "f8", 0,
                 [](const Position& p) { return Contains(ref::GenerateQuiets(p).list, MOVE_CASTLE_KING_SIDE); }},
        // Castling trusts its right and does not look for the rook on its corner; the engine does.
        RuleCase{"castling without the rook", "4k3/8/8/8/8/8/8/4K3 w K - 0 1", "", 0,
                 [](const Position& p) { return Contains(ref::GenerateQuiets(p).list, MOVE_CASTLE_KING_SIDE); }},
        // Nor for the king on e1.
        RuleCase{"castling without king and rook", "4k3/8/8/8/8/8/8/8 w Q - 0 1", "", 0,
                 [](const Position& p) { return Contains(ref::GenerateQuiets(p).list, MOVE_CASTLE_QUEEN_SIDE); }},
        // En passant needs the file and the own pawn beside it only; the engine also asks for the
        // opponent's pawn on e5 and an empty e6.
        RuleCase{"en passant without the opponent's pawn", "4k3/8/8/3P4/8/8/8/4K3 w - e6 0 1", "", 0,
                 [](const Position& p) {
                   return ref::GenerateCaptures(p).size() == 1 &&
                          ref::GenerateCaptures(p)[0].move == MakeMoveValue(KIND_EN_PASSANT, 35, 44, 0);
                 }},
        RuleCase{"en passant onto an occupied square", "4k3/8/4n3/3Pp3/8/8/8/4K3 w - e6 0 1", "", 0,
                 [](const Position& p) {
                   return ref::GenerateCaptures(p)[0].move == MakeMoveValue(KIND_EN_PASSANT, 35, 44, 0);
                 }},
        // A promotion sets the planes of its piece on the to-square; the engine toggles them, so a queen
        // made on the rook of d8 leaves a pawn there (100 ^ 101) instead of a queen (100 | 101).
        RuleCase{"a promotion sets its planes", "3rk3/3P4/8/8/8/8/8/4K3 w - - 0 1", "",
                 MakeMoveValue(KIND_PROMOTION, 51, 59, QUEEN << 4),
                 [](const Position&) {
                   ref::MakeMove(MakeMoveValue(KIND_PROMOTION, 51, 59, QUEEN << 4));
                   const Position& after = *ref::current;  // black to move: d8 is square 3
                   return (after.type0 & after.type2 & ~after.type1 & ~after.own & SquareBit(3)) != 0;
                 }},
        // Castling king side changes the key by the king's keys on e1 and g1 and the rook's on h1 and f1,
        // whatever squares the move names; the engine takes the king's keys on the move's from and to.
        RuleCase{"castling keys are those of e1, g1, h1 and f1", "4k3/8/8/8/8/8/8/3K3R w - - 0 1", "",
                 MakeMoveValue(KIND_CASTLE_KING_SIDE, 3, 5, 0), [](const Position& p) {
                   const auto& s = SquareTable.slots;
                   ref::MakeMove(MakeMoveValue(KIND_CASTLE_KING_SIDE, 3, 5, 0));
                   return ref::current->key == (p.key ^ s[KING | 8][4].key ^ s[KING | 8][6].key ^ s[ROOK | 8][7].key ^
                                                s[ROOK | 8][5].key ^ SquareTable.sideKey);
                 }}));

// Quiescence: the engine values a capture's child without making it (search/child_value.h). Taking the
// opponent's only code-7 piece, which Evaluate counts as its king and as a bishop, removes that king's
// placement term too; a bound between the two values would show a prediction that kept it.
TEST(SearchExamples, CapturingCodeSevenValuesTheChildAsEvaluateDoes) {
  InitTables();
  NewSearchGame();
  test::SetUpInitialPosition();
  ASSERT_EQ(SetBoard(*current, "8/8/8/3b4/8/8/8/3QK3 w - - 0 1"), 1);
  current->type2 |= SquareBit(test::Sq("d5"));
  ref::Load(*current);
  nodes = ref::nodes = 0;
  EXPECT_EQ(Quiesce(30630, 30730), ref::Quiesce(30630, 30730));  // the reference: 30638
}

// The engine checks a remembered move before making it (IsGeneratedMove), with the generators' sets: an own
// code 7 below the king (b1 here, king on e1) is no king, so the king move e1e2 that iteration 1 remembers is
// tried first in iteration 2, as the reference, which makes the remembered move as it stands, tries it.
TEST(SearchExamples, RememberedKingMoveIsTriedFirst) {
  InitTables();
  NewSearchGame();
  test::SetUpInitialPosition();
  *current =
      Position{0x2001010044280d3, 0x804515802408862, 0x1804500002020012, 0x1a011000048082d3, 0, 8, 95, 0, 0, 18929,
               0x5fbb8a947a2efe6e};
  ref::Load(*current);
  ref::ClearTable();
  for (int depth = 1; depth <= 2; ++depth) {
    EXPECT_EQ(EngineIteration(depth), ref::Iteration(depth)) << depth;
    EXPECT_EQ(nodes, ref::nodes) << depth;  // the reference: 1193, then 117
  }
}

// ---- a set-up refused at its halfmove clock, then a book line played on the wrong board ----

// "setboard 4k3/8/8/8/8/8/8/R3K3 w - - 101 60" is refused at the clock after the placement, castling and
// en-passant fields were written; the rest of the record is the initial position's, key included, so the
// book (d2d4 g8f6 c2c4 g7g6 b1c3 f8g7 e2e4 d7d6 g1f3 e8g8) finds its moves there and plays them onto this
// board. Then two searches at depth 1, as "time 0" allows, each followed by the root's move.
struct Reproduction {
  int score[2];
  uint64_t nodes[2];
  Move move[2];
};

const std::string BOOK_LINE = "d2d4 g8f6 c2c4 g7g6 b1c3 f8g7 e2e4 d7d6 g1f3 e8g8";

// The book's moves: those generated in the positions of the line itself, the first with the token's squares.
std::vector<Move> BookMoves() {
  ref::Load(InitialPosition());
  std::vector<Move> moves;
  for (size_t i = 0; i + 4 <= BOOK_LINE.size(); i += 5) {
    int from, to;
    ReadMoveSquares(&BOOK_LINE[i], from, to);
    from = ViewSquare(from, ref::current->side);
    to = ViewSquare(to, ref::current->side);
    const std::vector<Move> all = ref::GenerateAll(*ref::current);
    const auto found =
        std::find_if(all.begin(), all.end(), [&](Move m) { return MoveFrom(m) == from && MoveTo(m) == to; });
    if (found == all.end()) break;
    moves.push_back(*found);
    ref::MakeMove(*found);
  }
  return moves;
}

Position RefusedSetUp() {
  InitTables();
  NewSearchGame();
  test::SetUpInitialPosition();
  EXPECT_EQ(SetBoard(*current, "4k3/8/8/8/8/8/8/R3K3 w - - 101 60"), 0);
  return *current;
}

TEST(RefusedSetUp, KeepsThePiecesAndTheInitialKey) {
  const Position p = RefusedSetUp();
  const Position initial = InitialPosition();
  EXPECT_EQ(p.own, test::Squares("a1 e1"));
  EXPECT_EQ(p.type0, 0u);
  EXPECT_EQ(p.type1, test::Squares("e1 e8"));
  EXPECT_EQ(p.type2, test::Squares("a1 e1 e8"));
  EXPECT_EQ(p.castling, 0);
  EXPECT_EQ(p.epFile, EP_NONE);
  EXPECT_EQ(p.fifty, 0);
  EXPECT_EQ(p.key, initial.key);
  EXPECT_EQ(BookMoves().size(), 10u);
}

Reproduction ReferenceRun() {
  const Position start = RefusedSetUp();
  const std::vector<Move> book = BookMoves();
  ref::Load(start);
  for (Move m : book) ref::MakeMove(m);
  ref::ClearTable();
  Reproduction r{};
  for (int i = 0; i < 2; ++i) {
    r.score[i] = ref::Iteration(1);
    r.nodes[i] = ref::nodes;
    r.move[i] = ref::TableMove(ref::current->key);
    ref::MakeMove(r.move[i]);
  }
  return r;
}

TEST(RefusedSetUp, ReferenceSearch) {
  const Reproduction r = ReferenceRun();
  // White's rook on g8 takes the rook on h8; the code-7 piece on f8 that the castling left does not move.
  EXPECT_EQ(r.score[0], 544);
  EXPECT_EQ(r.nodes[0], 65u);
  EXPECT_EQ(r.move[0], MakeMoveValue(KIND_CAPTURE + ROOK, test::Sq("g8"), test::Sq("h8"), ROOK));
  // Black's knight f6 to g4 (f3 to g5 in black's view).
  EXPECT_EQ(r.score[1], -552);
  EXPECT_EQ(r.nodes[1], 35u);
  EXPECT_EQ(r.move[1], MakeMoveValue(KNIGHT, test::Sq("f3"), test::Sq("g5"), 0));
}

// Moving the code-7 piece on f8 as a bishop and as a queen would give 87 nodes, and then, taking d6 with it
// in the replies to black's moves, -664 in 53 nodes.
TEST(RefusedSetUp, EngineSearchesAsTheReference) {
  const Reproduction expected = ReferenceRun();
  const std::vector<Move> book = BookMoves();
  RefusedSetUp();
  for (Move m : book) MakeMove(m);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(EngineIteration(1), expected.score[i]) << i;
    EXPECT_EQ(nodes, expected.nodes[i]) << i;
    EXPECT_EQ(HashMoveAtIndex(current->key), expected.move[i]) << i;
    MakeMove(expected.move[i]);
  }
}

}  // namespace
}  // namespace vorlek
