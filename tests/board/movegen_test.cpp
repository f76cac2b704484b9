// The two move generators: agreement with a slow square-by-square generator (contents and order) on
// positions from random games and crowded set-ups, list capacities, and chosen capture and check lists.
// Castling through attacked squares is left to the perft counts.
#include "board/movegen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "board/all_moves.h"
#include "board/fen.h"
#include "board/init_tables.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

using test::Sq;
using test::Squares;

// ---- the slow reference generator ----

// A square-by-square copy of a position: piece code and owner per square, in the side to move's view.
struct Mailbox {
  int code[64];
  bool own[64];
  int epFile;
  int castling;

  Bitboard occupied = 0;

  explicit Mailbox(const Position& p) : epFile(p.epFile), castling(p.castling) {
    for (int sq = 0; sq < 64; ++sq) {
      code[sq] = PieceAt(p, sq);
      own[sq] = (p.own >> sq) & 1;
      if (code[sq] != EMPTY) occupied |= SquareBit(sq);
    }
  }
  bool Empty(int sq) const { return code[sq] == EMPTY; }
  bool Own(int sq, int c) const { return code[sq] == c && own[sq]; }
  bool Opponent(int sq) const { return code[sq] != EMPTY && !own[sq]; }
  int LowestOwn(int c) const {
    for (int sq = 0; sq < 64; ++sq)
      if (Own(sq, c)) return sq;
    return -1;
  }
  int LowestOpponent(int c) const {
    for (int sq = 0; sq < 64; ++sq)
      if (code[sq] == c && !own[sq]) return sq;
    return -1;
  }
  Bitboard Reach(int sq, int c) const {
    switch (c) {
      case KNIGHT: return test::WalkKnightJumps(sq);
      case BISHOP: return test::WalkBishopLines(sq, occupied);
      case ROOK: return test::WalkRookLines(sq, occupied);
      case QUEEN: return test::WalkRookLines(sq, occupied) | test::WalkBishopLines(sq, occupied);
      case KING: return test::WalkKingSteps(sq);
      default: return 0;
    }
  }
  // Whether an opponent piece attacks sq; opponent pawns move down the board.
  bool AttackedByOpponent(int sq) const {
    for (int from = 0; from < 64; ++from) {
      if (!Opponent(from)) continue;
      if (code[from] == PAWN) {
        const int f = from % 8, r = from / 8;
        if (r > 0 && ((f > 0 && sq == from - 9) || (f < 7 && sq == from - 7))) return true;
      } else if (Reach(from, code[from]) & SquareBit(sq)) {
        return true;
      }
    }
    return false;
  }
};

struct Generated {
  std::vector<ScoredMove> captures;
  std::vector<Move> checks;
  std::vector<MoveSet> sets;

  std::vector<Move> Flat() const {
    std::vector<Move> all;
    for (const ScoredMove& s : captures) all.push_back(s.move);
    all.insert(all.end(), checks.begin(), checks.end());
    for (const MoveSet& s : sets) ForEachSquare(s.targets, [&](int to) { all.push_back(WithTarget(s.head, to)); });
    return all;
  }
};

void AddPromotions(std::vector<ScoredMove>& list, int kind, int from, int to, int victim) {
  list.push_back({MakeMoveValue(kind, from, to, QUEEN << 4 | victim), victim == KING ? 96 : 85});
  list.push_back({MakeMoveValue(kind, from, to, ROOK << 4 | victim), -1});
  list.push_back({MakeMoveValue(kind, from, to, BISHOP << 4 | victim), -2});
  list.push_back({MakeMoveValue(kind, from, to, KNIGHT << 4 | victim), -3});
}

std::vector<ScoredMove> ReferenceCaptures(const Mailbox& b) {
  std::vector<ScoredMove> list;
  if (b.epFile != EP_NONE) {
    const int t = 40 + b.epFile;
    if (t % 8 != 0 && b.Own(t - 9, PAWN)) list.push_back({MakeMoveValue(KIND_EN_PASSANT, t - 9, t, 0), 21});
    if (t % 8 != 7 && b.Own(t - 7, PAWN)) list.push_back({MakeMoveValue(KIND_EN_PASSANT, t - 7, t, 0), 21});
  }
  bool pawnOnSeventh = false;
  for (int sq = 48; sq < 56; ++sq) pawnOnSeventh = pawnOnSeventh || b.Own(sq, PAWN);
  if (pawnOnSeventh) {
    for (int t = 57; t < 64; ++t)
      if (b.Opponent(t) && t % 8 != 0 && b.Own(t - 9, PAWN))
        AddPromotions(list, KIND_CAPTURE_PROMOTION, t - 9, t, b.code[t]);
    for (int t = 56; t < 63; ++t)
      if (b.Opponent(t) && t % 8 != 7 && b.Own(t - 7, PAWN))
        AddPromotions(list, KIND_CAPTURE_PROMOTION, t - 7, t, b.code[t]);
    for (int t = 56; t < 64; ++t)
      if (b.Empty(t) && b.Own(t - 8, PAWN)) AddPromotions(list, KIND_PROMOTION, t - 8, t, EMPTY);
  }
  for (int t = 9; t < 56; ++t)
    if (b.Opponent(t) && t % 8 != 0 && b.Own(t - 9, PAWN))
      list.push_back({MakeMoveValue(KIND_CAPTURE + PAWN, t - 9, t, b.code[t]), b.code[t] * 16 + 5});
  for (int t = 7; t < 56; ++t)
    if (b.Opponent(t) && t % 8 != 7 && b.Own(t - 7, PAWN))
      list.push_back({MakeMoveValue(KIND_CAPTURE + PAWN, t - 7, t, b.code[t]), b.code[t] * 16 + 5});
  for (int piece : {KNIGHT, BISHOP, ROOK, QUEEN, KING}) {
    for (int from = 0; from < 64; ++from) {
      if (!b.Own(from, piece)) continue;
      if (piece == KING && from != b.LowestOwn(KING)) continue;
      for (int t = 0; t < 64; ++t) {
        if (b.Opponent(t) && (b.Reach(from, piece) & SquareBit(t)))
          list.push_back({MakeMoveValue(KIND_CAPTURE + piece, from, t, b.code[t]), b.code[t] * 16 + (6 - piece)});
      }
    }
  }
  return list;
}

// Rays from the opponent's king, in the order of the generator's directions, as file and rank steps.
constexpr int KING_RAYS[8][2] = {{1, -1}, {-1, 1}, {-1, -1}, {1, 1}, {0, -1}, {0, 1}, {-1, 0}, {1, 0}};

void ReferenceQuiets(const Mailbox& b, std::vector<Move>& checks, std::vector<MoveSet>& sets) {
  const Bitboard occupied = b.occupied;
  Bitboard rookChecks = 0, bishopChecks = 0, knightChecks = 0, pawnChecks = 0, discoverers = 0, kingLine = 0;
  const int k = b.LowestOpponent(KING);
  if (k >= 0) {
    rookChecks = test::WalkRookLines(k, occupied);
    bishopChecks = test::WalkBishopLines(k, occupied);
    knightChecks = test::WalkKnightJumps(k);
    if (k % 8 != 7 && k >= 7) pawnChecks |= SquareBit(k - 7);
    if (k % 8 != 0 && k >= 9) pawnChecks |= SquareBit(k - 9);
    for (const auto& ray : KING_RAYS) {
      const bool straight = ray[0] == 0 || ray[1] == 0;
      Bitboard line = 0;
      int first = -1, second = -1;
      for (int f = k % 8 + ray[0], r = k / 8 + ray[1]; f >= 0 && f < 8 && r >= 0 && r < 8; f += ray[0], r += ray[1]) {
        line |= SquareBit(r * 8 + f);
        if (b.Empty(r * 8 + f) || second >= 0) continue;
        (first < 0 ? first : second) = r * 8 + f;
      }
      if (second < 0 || !b.own[second] || !b.own[first]) continue;
      const int slider = b.code[second], blocker = b.code[first];
      if (slider != QUEEN && slider != (straight ? ROOK : BISHOP)) continue;
      if (blocker == KNIGHT || blocker == PAWN || blocker == (straight ? BISHOP : ROOK))
        discoverers |= SquareBit(first);
      if (blocker == KING) kingLine = line;
    }
  }

  if ((b.castling & 0x01) && b.Empty(1) && b.Empty(2) && b.Empty(3) && !b.AttackedByOpponent(4) &&
      !b.AttackedByOpponent(3) && !b.AttackedByOpponent(2))
    checks.push_back(MOVE_CASTLE_QUEEN_SIDE);
  if ((b.castling & 0x02) && b.Empty(5) && b.Empty(6) && !b.AttackedByOpponent(4) && !b.AttackedByOpponent(5) &&
      !b.AttackedByOpponent(6))
    checks.push_back(MOVE_CASTLE_KING_SIDE);

  auto split = [&](int piece, int from, Bitboard targets, Bitboard checking) {
    for (int t = 0; t < 64; ++t)
      if (targets & checking & SquareBit(t)) checks.push_back(MakeMoveValue(piece, from, t, 0));
    if (targets & ~checking) sets.push_back({MakeMoveValue(piece, from, 0, 0), targets & ~checking});
  };
  const Bitboard empty = ~occupied;
  const int king = b.LowestOwn(KING);
  if (king >= 0) split(KING, king, test::WalkKingSteps(king) & empty, kingLine ? ~kingLine : 0);
  for (int from = 0; from < 64; ++from)
    if (b.Own(from, QUEEN)) split(QUEEN, from, b.Reach(from, QUEEN) & empty, rookChecks | bishopChecks);
  const Bitboard all = ~Bitboard{0};
  for (int from = 0; from < 64; ++from)
    if (b.Own(from, ROOK))
      split(ROOK, from, b.Reach(from, ROOK) & empty, (discoverers & SquareBit(from)) ? all : rookChecks);
  for (int from = 0; from < 64; ++from)
    if (b.Own(from, BISHOP))
      split(BISHOP, from, b.Reach(from, BISHOP) & empty, (discoverers & SquareBit(from)) ? all : bishopChecks);
  for (int from = 0; from < 64; ++from)
    if (b.Own(from, KNIGHT))
      split(KNIGHT, from, b.Reach(from, KNIGHT) & empty, (discoverers & SquareBit(from)) ? all : knightChecks);
  for (int from = 0; from < 48; ++from) {
    if (!b.Own(from, PAWN) || !b.Empty(from + 8)) continue;
    Bitboard targets = SquareBit(from + 8);
    if (from >= 8 && from < 16 && b.Empty(from + 16)) targets |= SquareBit(from + 16);
    split(PAWN, from, targets, (discoverers & SquareBit(from)) ? all : pawnChecks);
  }
}

Generated Reference(const Position& p) {
  const Mailbox b(p);
  Generated g;
  g.captures = ReferenceCaptures(b);
  ReferenceQuiets(b, g.checks, g.sets);
  return g;
}

// The engine's two generators, run only after the reference has shown the lists fit.
Generated Engine(const Position& p) {
  ScoredMoveList captures;
  MoveList checks;
  MoveSetList sets;
  captures.count = checks.count = sets.count = 0;
  GenerateCaptures(p, captures);
  GenerateQuiets(p, sets, checks);
  Generated g;
  g.captures.assign(captures.entries, captures.entries + captures.count);
  g.checks.assign(checks.moves, checks.moves + checks.count);
  g.sets.assign(sets.entries, sets.entries + sets.count);
  return g;
}

std::string MoveName(Move m) {
  char text[32];
  std::snprintf(text, sizeof text, "{%d %c%c-%c%c %02x}", MoveKind(m), 'a' + MoveFrom(m) % 8, '1' + MoveFrom(m) / 8,
                'a' + MoveTo(m) % 8, '1' + MoveTo(m) / 8, MoveExtra(m));
  return text;
}

std::string Names(const std::vector<Move>& moves) {
  std::string s;
  for (Move m : moves) s += MoveName(m) + " ";
  return s;
}

// Compares the engine with the reference on one position: the set of moves, then lists and order.
void ExpectSameAsReference(const Position& p, const std::string& where) {
  const Generated ref = Reference(p);
  ASSERT_LE(ref.captures.size(), static_cast<size_t>(CAPTURE_LIST_SIZE)) << where;
  ASSERT_LE(ref.checks.size(), static_cast<size_t>(QUIET_LIST_SIZE)) << where;
  ASSERT_LE(ref.sets.size(), static_cast<size_t>(MOVE_SET_LIST_SIZE)) << where;
  ASSERT_LE(ref.Flat().size(), static_cast<size_t>(ALL_MOVES_LIST_SIZE)) << where;

  FlatMoveList flat;
  GenerateAllMoves(p, flat);
  const std::vector<Move> got(flat.moves, flat.moves + flat.count), want = ref.Flat();
  const std::set<Move> gotSet(got.begin(), got.end()), wantSet(want.begin(), want.end());
  std::vector<Move> missing, extra;
  std::set_difference(wantSet.begin(), wantSet.end(), gotSet.begin(), gotSet.end(), std::back_inserter(missing));
  std::set_difference(gotSet.begin(), gotSet.end(), wantSet.begin(), wantSet.end(), std::back_inserter(extra));
  ASSERT_TRUE(missing.empty() && extra.empty())
      << where << "\nmissing: " << Names(missing) << "\nextra: " << Names(extra);
  ASSERT_EQ(got.size(), gotSet.size()) << where << ": a move generated twice";
  ASSERT_EQ(got, want) << where << ": same moves in another order";

  const Generated engine = Engine(p);
  ASSERT_EQ(engine.captures.size(), ref.captures.size()) << where;
  for (size_t i = 0; i < ref.captures.size(); ++i)
    ASSERT_EQ(engine.captures[i].order, ref.captures[i].order) << where << " " << MoveName(ref.captures[i].move);
  ASSERT_EQ(engine.checks, ref.checks) << where << "\ngot: " << Names(engine.checks) << "\nwant: " << Names(ref.checks);
  ASSERT_EQ(engine.sets.size(), ref.sets.size()) << where;
  for (size_t i = 0; i < ref.sets.size(); ++i) {
    ASSERT_EQ(engine.sets[i].head, ref.sets[i].head) << where;
    ASSERT_EQ(engine.sets[i].targets, ref.sets[i].targets) << where;
  }
}

// IsGeneratedMove accepts exactly the generated moves among many candidates built from the position.
void ExpectIsGeneratedMoveAgrees(const Position& p, const std::string& where) {
  const std::vector<Move> moves = Reference(p).Flat();
  const std::set<Move> generated(moves.begin(), moves.end());
  const int kinds[] = {1, 2, 3, 4, 5, 6, 9, 10, 11, 12, 13, 14, 17, 22, 25, 38, 41, 7, 15, 18};
  for (int kind : kinds) {
    for (int from = 0; from < 64; ++from) {
      for (int to = 0; to < 64; ++to) {
        const int victim = PieceAt(p, to);
        const int extras[] = {0,    victim, victim ^ 1,    KING,          0x20,          0x30,          0x40,
                              0x50, 0x60,   0x10 | victim, 0x20 | victim, 0x50 | victim, 0x60 | victim, 0x80 | victim};
        for (int extra : extras) {
          const Move m = MakeMoveValue(kind, from, to, extra);
          ASSERT_EQ(IsGeneratedMove(p, m), generated.count(m) == 1) << where << " " << MoveName(m);
        }
      }
    }
  }
}

class MoveGeneration : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

// ---- agreement with the reference ----

TEST_F(MoveGeneration, AgreesWithTheReferenceAlongRandomGames) {
  int positions = 0;
  ASSERT_TRUE(test::WalkRandomGames(test::PERFT_POSITIONS, 4, 8, 150, [&](const char* fen, int ply) {
    ExpectSameAsReference(*current, std::string(fen) + " ply " + std::to_string(ply));
    if (++positions % 500 == 0 && !HasFatalFailure()) ExpectIsGeneratedMoveAgrees(*current, fen);
    return !HasFatalFailure();
  }));
  EXPECT_GT(positions, 5000);
}

// A crowded board: `men` pieces on random squares, at most one king per side, pawns on any rank and no
// castling rights. Half of the boards have an en-passant file, with the pawn that has just made its double
// step, the two squares it passed empty and, often, pawns beside it that can take it.
Position CrowdedPosition(test::Random& random, int men) {
  Position p = InitialPosition();
  p.own = p.type0 = p.type1 = p.type2 = 0;
  p.castling = 0;
  p.epFile = EP_NONE;
  Bitboard keptEmpty = 0;
  auto put = [&](int sq, int code, bool own) {
    if (code & 1) p.type0 |= SquareBit(sq);
    if (code & 2) p.type1 |= SquareBit(sq);
    if (code & 4) p.type2 |= SquareBit(sq);
    if (own) p.own |= SquareBit(sq);
  };
  if (random.Below(2)) {
    const int file = random.Below(8);
    p.epFile = static_cast<uint8_t>(file);
    put(32 + file, PAWN, false);
    keptEmpty = SquareBit(40 + file) | SquareBit(48 + file);
    if (file > 0 && random.Below(2)) put(31 + file, PAWN, true);
    if (file < 7 && random.Below(2)) put(33 + file, PAWN, true);
  }
  bool king[2] = {false, false};
  while (PopCount(Occupancy(p)) < std::min(men, 64 - PopCount(keptEmpty))) {
    const int sq = random.Below(64);
    if ((Occupancy(p) | keptEmpty) & SquareBit(sq)) continue;
    const bool own = random.Below(2);
    const int code = 1 + random.Below(6);
    if (code == KING && king[own]) continue;
    if (code == KING) king[own] = true;
    put(sq, code, own);
  }
  return p;
}

TEST_F(MoveGeneration, AgreesWithTheReferenceOnCrowdedSetUps) {
  test::Random random(5);
  for (int i = 0; i < 400; ++i) {
    const Position p = CrowdedPosition(random, 12 + random.Below(53));
    ExpectSameAsReference(p, "crowded set-up " + std::to_string(i));
    if (HasFatalFailure()) return;
    if (i % 40 == 0) {
      ExpectIsGeneratedMoveAgrees(p, "crowded set-up " + std::to_string(i));
      if (HasFatalFailure()) return;
    }
  }
}

// Set-ups with many queens and men: the lists stay within their capacities.
struct CapacityCase {
  const char* name;
  const char* fen;
};
std::ostream& operator<<(std::ostream& out, const CapacityCase& c) { return out << c.name; }

class ListCapacity : public ::testing::TestWithParam<CapacityCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_P(ListCapacity, GeneratorsStayWithinTheirLists) {
  Position p = InitialPosition();
  ASSERT_EQ(SetBoard(p, GetParam().fen), 1);
  ExpectSameAsReference(p, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    Board, ListCapacity,
    ::testing::Values(
        // 218 legal moves, the most known for a legal position.
        CapacityCase{"MostMovesKnown", "R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1"},
        CapacityCase{"NineQueensEachSide", "QQQQQQQQ/1Q6/8/k7/7K/8/6q1/qqqqqqqq w - - 0 1"},
        CapacityCase{"QueensAmongQueens",
                     "QqQqQqQq/qQqQqQqQ/QqQqQqQq/qQqQqQqQ/QqQqQqQq/qQqQqQqQ/QqQqQqQq/qQqQqQqQ w - - 0 1"},
        CapacityCase{"QueensFacingAcrossTheBoard", "qqqqqqqq/qqqqqqqq/8/8/8/8/QQQQQQQQ/QQQQQKQQ w - - 0 1"},
        CapacityCase{"KnightsAndQueensCrowd",
                     "nqnqnqnq/QNQNQNQN/nqnqnqnq/QNQNQNQN/nqnqnqnq/QNQNQNQN/nqnqnqnq/QNQNQNQN w - - 0 1"},
        CapacityCase{"SixteenQueensOnAnOpenBoard", "k7/1Q1Q1Q1Q/Q1Q1Q1Q1/8/8/1Q1Q1Q1Q/Q1Q1Q1Q1/7K w - - 0 1"},
        CapacityCase{"QueensCheckingFromEverySide", "QQ4QQ/Q6Q/8/3k4/8/8/Q6Q/QQ4QK w - - 0 1"},
        CapacityCase{"PromotionsEverywhere", "rnbqkbnr/PPPPPPPP/8/8/8/8/pppppppp/RNBQKBNR w KQkq - 0 1"},
        CapacityCase{"SixtyFourMen",
                     "rrrrrrrr/RRRRRRRR/nnnnnnnn/NNNNNNNN/bbbbbbbb/BBBBBBBB/qqqqqqqq/QQQQQQQQ w - - 0 1"}),
    [](const ::testing::TestParamInfo<CapacityCase>& info) { return std::string(info.param.name); });

TEST_F(MoveGeneration, MostMovesKnownHas218LegalMoves) {
  ASSERT_EQ(test::SetUpPosition("R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1"), 1);
  EXPECT_EQ(test::LegalMoves().size(), 218u);
}

// ---- chosen positions ----

struct CaptureListCase {
  const char* name;
  const char* fen;
  std::vector<ScoredMove> first;  // the list begins with these entries
  size_t size;                    // and has this many
};
std::ostream& operator<<(std::ostream& out, const CaptureListCase& c) { return out << c.name; }

class CaptureList : public ::testing::TestWithParam<CaptureListCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_P(CaptureList, BeginsWith) {
  const CaptureListCase& c = GetParam();
  ASSERT_EQ(test::SetUpPosition(c.fen), 1);
  const Generated g = Engine(*current);
  ASSERT_GE(g.captures.size(), c.first.size());
  for (size_t i = 0; i < c.first.size(); ++i) {
    EXPECT_EQ(MoveName(g.captures[i].move), MoveName(c.first[i].move)) << "entry " << i;
    EXPECT_EQ(g.captures[i].order, c.first[i].order) << "entry " << i;
  }
  EXPECT_EQ(g.captures.size(), c.size);
}

ScoredMove Entry(int kind, const char* from, const char* to, int extra, int order) {
  return {MakeMoveValue(kind, Sq(from), Sq(to), extra), order};
}

INSTANTIATE_TEST_SUITE_P(
    Board, CaptureList,
    ::testing::Values(
        CaptureListCase{
            "PromotionsB7",
            "r3k3/1P6/8/8/8/8/8/4K3 w - - 0 1",
            {Entry(25, "b7", "a8", 0x54, 85), Entry(25, "b7", "a8", 0x44, -1), Entry(25, "b7", "a8", 0x34, -2),
             Entry(25, "b7", "a8", 0x24, -3), Entry(17, "b7", "b8", 0x50, 85), Entry(17, "b7", "b8", 0x40, -1),
             Entry(17, "b7", "b8", 0x30, -2), Entry(17, "b7", "b8", 0x20, -3)},
            8},
        CaptureListCase{
            "PromotionsUpperRightFirst",
            "r1n1k3/1P6/8/8/8/8/8/4K3 w - - 0 1",
            {Entry(25, "b7", "c8", 0x52, 85), Entry(25, "b7", "c8", 0x42, -1), Entry(25, "b7", "c8", 0x32, -2),
             Entry(25, "b7", "c8", 0x22, -3), Entry(25, "b7", "a8", 0x54, 85), Entry(25, "b7", "a8", 0x44, -1),
             Entry(25, "b7", "a8", 0x34, -2), Entry(25, "b7", "a8", 0x24, -3), Entry(17, "b7", "b8", 0x50, 85)},
            12},
        CaptureListCase{"QueenPromotionTakingTheKing",
                        "1k6/P7/8/8/8/8/8/4K3 w - - 0 1",
                        {Entry(25, "a7", "b8", 0x56, 96), Entry(25, "a7", "b8", 0x46, -1),
                         Entry(25, "a7", "b8", 0x36, -2), Entry(25, "a7", "b8", 0x26, -3),
                         Entry(17, "a7", "a8", 0x50, 85)},
                        8},
        CaptureListCase{"RookTakesTheKing", "4k3/8/8/8/8/8/8/4R2K w - - 0 1", {Entry(12, "e1", "e8", 6, 98)}, 1},
        CaptureListCase{"EnPassantBeforePawnCaptures",
                        "4k3/8/5n2/3pP3/8/8/8/4K3 w - d6 0 1",
                        {Entry(41, "e5", "d6", 0, 21), Entry(9, "e5", "f6", KNIGHT, 37)},
                        2},
        CaptureListCase{"EnPassantFromBothSides",
                        "4k3/8/8/3PpP2/8/8/8/4K3 w - e6 0 1",
                        {Entry(41, "d5", "e6", 0, 21), Entry(41, "f5", "e6", 0, 21)},
                        2},
        CaptureListCase{
            "EnPassantOnFileANotFromFileH", "4k3/8/8/pP6/7P/8/8/4K3 w - a6 0 1", {Entry(41, "b5", "a6", 0, 21)}, 1},
        CaptureListCase{
            "EnPassantOnFileHNotFromFileA", "4k3/8/P7/6Pp/8/8/8/4K3 w - h6 0 1", {Entry(41, "g5", "h6", 0, 21)}, 1},
        CaptureListCase{
            "PawnsBeforePiecesVictimsBySquare",
            "4k3/8/8/2q1r3/1P6/3N4/8/4K3 w - - 0 1",
            {Entry(9, "b4", "c5", QUEEN, 85), Entry(10, "d3", "c5", QUEEN, 84), Entry(10, "d3", "e5", ROOK, 68)},
            3},
        CaptureListCase{
            "EveryAttackerOnOneVictim",
            "k7/8/8/4K3/3q3Q/1NP5/5B2/3R4 w - - 0 1",
            {Entry(9, "c3", "d4", QUEEN, 85), Entry(10, "b3", "d4", QUEEN, 84), Entry(11, "f2", "d4", QUEEN, 83),
             Entry(12, "d1", "d4", QUEEN, 82), Entry(13, "h4", "d4", QUEEN, 81), Entry(14, "e5", "d4", QUEEN, 80)},
            6}),
    [](const ::testing::TestParamInfo<CaptureListCase>& info) { return std::string(info.param.name); });

struct QuietCase {
  const char* name;
  const char* fen;
  const char* checks;   // the checking list as "e4d6 e4f6", castling as "O-O-O" and "O-O"
  const char* setFrom;  // one piece's set entry: its square and its targets, or empty
  const char* setTargets;
};
std::ostream& operator<<(std::ostream& out, const QuietCase& c) { return out << c.name; }

class QuietLists : public ::testing::TestWithParam<QuietCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

std::string QuietText(Move m, int side) {
  if (m == MOVE_CASTLE_QUEEN_SIDE) return "O-O-O";
  if (m == MOVE_CASTLE_KING_SIDE) return "O-O";
  const int from = side == BLACK ? Mirror(MoveFrom(m)) : MoveFrom(m),
            to = side == BLACK ? Mirror(MoveTo(m)) : MoveTo(m);
  return std::string{static_cast<char>('a' + from % 8), static_cast<char>('1' + from / 8),
                     static_cast<char>('a' + to % 8), static_cast<char>('1' + to / 8)};
}

TEST_P(QuietLists, ChecksAndSets) {
  const QuietCase& c = GetParam();
  ASSERT_EQ(test::SetUpPosition(c.fen), 1);
  const Generated g = Engine(*current);
  std::string checks;
  for (Move m : g.checks) {
    if (!checks.empty()) checks += ' ';
    checks += QuietText(m, current->side);
  }
  EXPECT_EQ(checks, c.checks);
  if (*c.setFrom) {
    const MoveSet* found = nullptr;
    for (const MoveSet& s : g.sets)
      if (MoveFrom(s.head) == Sq(c.setFrom)) found = &s;
    ASSERT_NE(found, nullptr) << "no set for " << c.setFrom;
    EXPECT_EQ(found->targets, Squares(c.setTargets));
  }
  ExpectSameAsReference(*current, c.name);
}

INSTANTIATE_TEST_SUITE_P(
    Board, QuietLists,
    ::testing::Values(
        QuietCase{"KnightChecksFirst", "4k3/8/8/8/4N3/8/8/K7 w - - 0 1", "e4d6 e4f6", "e4", "c3 c5 d2 f2 g3 g5"},
        QuietCase{"BishopDiscoversTheRook", "4k3/8/8/8/4B3/8/8/4R2K w - - 0 1",
                  "e4b1 e4c2 e4g2 e4d3 e4f3 e4d5 e4f5 e4c6 e4g6 e4b7 e4h7 e4a8", "e1", "a1 b1 c1 d1 e2 e3 f1 g1"},
        QuietCase{"RookDiscoversTheBishop", "7k/8/8/8/8/2R5/8/B6K w - - 0 1",
                  "c3c1 c3c2 c3a3 c3b3 c3d3 c3e3 c3f3 c3g3 c3h3 c3c4 c3c5 c3c6 c3c7 c3c8", "", ""},
        QuietCase{"PawnPushStillCountsAsDiscovery", "4k3/8/8/8/8/4P3/8/4R2K w - - 0 1", "e3e4", "", ""},
        QuietCase{"QueenIsNoDiscoverer", "4k3/8/8/8/4Q3/8/8/4R2K w - - 0 1", "e4a4 e4e5 e4c6 e4e6 e4g6 e4e7 e4a8", "",
                  ""},
        QuietCase{"KingStepsOffTheLineDiscover", "4k3/8/8/8/4K3/8/8/4R3 w - - 0 1", "e4d3 e4f3 e4d4 e4f4 e4d5 e4f5",
                  "e4", "e3 e5"},
        QuietCase{"PawnChecks", "4k3/8/8/3P4/8/5P2/8/4K3 w - - 0 1", "", "d5", "d6"},
        QuietCase{"PawnCheckSquares", "8/8/4k3/8/3P1P2/8/8/4K3 w - - 0 1", "d4d5 f4f5", "", ""}),
    [](const ::testing::TestParamInfo<QuietCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek
