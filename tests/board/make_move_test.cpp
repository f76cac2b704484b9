// Copy-make: the record after each move against values computed from scratch, along random games and
// for chosen moves (castling rights, repetition counts, non-moves).
#include "board/make_move.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "board/all_moves.h"
#include "board/history.h"
#include "board/init_tables.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

bool SameRecord(const Position& a, const Position& b) { return std::memcmp(&a, &b, sizeof(Position)) == 0; }

bool SamePosition(const Position& a, const Position& b) {
  return a.own == b.own && a.type0 == b.type0 && a.type1 == b.type1 && a.type2 == b.type2 && a.castling == b.castling &&
         a.epFile == b.epFile && a.side == b.side;
}

// Castling rights as a FEN field, whoever is to move.
std::string Rights(const Position& p) {
  const int white = p.side == WHITE ? p.castling & 0x0f : p.castling >> 4;
  const int black = p.side == WHITE ? p.castling >> 4 : p.castling & 0x0f;
  std::string s;
  if (white & 2) s += 'K';
  if (white & 1) s += 'Q';
  if (black & 2) s += 'k';
  if (black & 1) s += 'q';
  return s.empty() ? "-" : s;
}

// Facts of a record reached by a move from `before`, checked against the boards alone.
void ExpectConsistentAfterMove(const Position& before, const Position& after, const std::string& where) {
  const Bitboard occupancy = Occupancy(after);
  ASSERT_EQ(after.key, ComputeKey(after)) << where;
  ASSERT_EQ(after.score, ComputeScore(after)) << where;
  ASSERT_EQ(after.side, before.side ^ BLACK) << where;
  ASSERT_EQ(after.own & ~occupancy, 0u) << where;
  ASSERT_EQ(after.type0 & after.type1 & after.type2, 0u) << where << ": piece code 7";
  ASSERT_EQ(after.castling & ~0x33, 0) << where;

  // A right held means the king and that rook still stand at home.
  const Bitboard own = after.own, opponent = occupancy ^ after.own;
  if (after.castling & 0x02) {
    ASSERT_TRUE((own & Kings(after) & SquareBit(4)) && (own & Rooks(after) & SquareBit(7))) << where;
  }
  if (after.castling & 0x01) {
    ASSERT_TRUE((own & Kings(after) & SquareBit(4)) && (own & Rooks(after) & SquareBit(0))) << where;
  }
  if (after.castling & 0x20) {
    ASSERT_TRUE((opponent & Kings(after) & SquareBit(60)) && (opponent & Rooks(after) & SquareBit(63))) << where;
  }
  if (after.castling & 0x10) {
    ASSERT_TRUE((opponent & Kings(after) & SquareBit(60)) && (opponent & Rooks(after) & SquareBit(56))) << where;
  }

  // The mover's pawns, seen from the mover before and after the move.
  const Bitboard moverPawnsBefore = before.own & Pawns(before);
  const Bitboard moverPawnsAfter = MirrorBoard(opponent & Pawns(after));
  const bool captured = PopCount(occupancy) < PopCount(Occupancy(before));
  const bool pawnMoved = moverPawnsBefore != moverPawnsAfter;
  ASSERT_EQ(after.fifty, captured || pawnMoved ? 0 : static_cast<uint8_t>(before.fifty + 1)) << where;

  // A double step leaves its file; nothing else does.
  int doubleStep = EP_NONE;
  for (int file = 0; file < 8; ++file) {
    if ((moverPawnsBefore & ~moverPawnsAfter) == SquareBit(8 + file) &&
        (moverPawnsAfter & ~moverPawnsBefore) == SquareBit(24 + file))
      doubleStep = file;
  }
  ASSERT_EQ(after.epFile, doubleStep) << where;
}

// The earlier occurrences of the current position within the plies its fifty counter covers.
int CountEarlierOccurrences() {
  const int reach = std::min<int>(current->fifty, StackIndex(current));
  for (int distance = 2; distance <= reach; distance += 2) {
    if (SamePosition(*(current - distance), *current)) return (current - distance)->repetition + 1;
  }
  return 0;
}

class MakeMoveFacts : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

struct GamesSummary {
  int repeatedPositions = 0;
  int longestGame = 0;
};

// Random games in which a side often walks its last piece back, so that positions recur. Each game
// runs until mate, stalemate, `maxPlies` or, when asked, the fifty-move limit; the history is kept in room
// as the game does it.
GamesSummary PlayRandomGames(int games, int maxPlies, uint64_t seed, bool stopAtFiftyMoves) {
  GamesSummary summary;
  test::Random random(seed);
  for (int game = 0; game < games; ++game) {
    const char* fen = test::PERFT_POSITIONS[game % 7];
    EXPECT_EQ(test::SetUpPosition(fen), 1);
    droppedPlies = 0;
    std::vector<Move> played;
    for (int ply = 0; ply < maxPlies && !(stopAtFiftyMoves && current->fifty >= 100); ++ply) {
      KeepRoomAboveHistory();
      EXPECT_EQ(GamePly(), ply);
      const std::vector<Move> legal = test::LegalMoves();
      if (legal.empty()) break;
      Move move = legal[random.Below(static_cast<int>(legal.size()))];
      if (played.size() >= 2 && random.Below(3) == 0) {
        const Move last = played[played.size() - 2];
        const Move back = MakeMoveValue(MoveKind(last), MoveTo(last), MoveFrom(last), 0);
        for (Move m : legal) {
          if (m == back && MoveKind(m) >= KNIGHT && MoveKind(m) <= KING) move = m;
        }
      }
      const std::string where = std::string(fen) + " game " + std::to_string(game) + " ply " + std::to_string(ply);
      const Position before = *current;
      EXPECT_TRUE(MakeMoveIfLegal(move)) << where;
      played.push_back(move);
      EXPECT_TRUE(SameRecord(*(current - 1), before)) << where << ": the earlier record changed";
      ExpectConsistentAfterMove(before, *current, where);
      EXPECT_EQ(current->repetition, CountEarlierOccurrences()) << where;
      if (::testing::Test::HasFailure()) return summary;
      summary.repeatedPositions += current->repetition > 0;
      summary.longestGame = std::max(summary.longestGame, ply + 1);
    }
  }
  return summary;
}

TEST_F(MakeMoveFacts, RecordsStayConsistentAlongRandomGames) {
  const GamesSummary summary = PlayRandomGames(300, 300, 6, true);
  EXPECT_GT(summary.repeatedPositions, 300);
}

TEST_F(MakeMoveFacts, LongGamesKeepRoomAboveTheirHistory) {
  // Longer than the stack: the history is slid down while ply counts and repetition counts stay exact,
  // and the fifty counter runs on past 100 (and wraps past 255) when nobody stops the game.
  const GamesSummary summary = PlayRandomGames(7, 1000, 7, false);
  EXPECT_GT(summary.longestGame, POSITION_STACK_SIZE);
}

struct RightsCase {
  const char* name;
  const char* fen;
  const char* moves;
  const char* rights;
};
std::ostream& operator<<(std::ostream& out, const RightsCase& c) { return out << c.name; }

class CastlingRights : public ::testing::TestWithParam<RightsCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_P(CastlingRights, AfterMoves) {
  const RightsCase& c = GetParam();
  ASSERT_EQ(test::SetUpPosition(c.fen), 1);
  ASSERT_TRUE(test::PlayMoves(c.moves));
  EXPECT_EQ(Rights(*current), c.rights);
  EXPECT_EQ(current->key, ComputeKey(*current));
  EXPECT_EQ(current->score, ComputeScore(*current));
}

constexpr const char* CORNERS = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";

INSTANTIATE_TEST_SUITE_P(
    Board, CastlingRights,
    ::testing::Values(
        // Rights lost stay lost when the piece walks home; the random games check the rest.
        RightsCase{"H1RookComesBack", CORNERS, "h1g1 a8b8 g1h1", "Qk"},
        RightsCase{"KingComesBack", CORNERS, "e1f1 e8f8 f1e1 f8e8", "-"},
        RightsCase{"PromotionTakesTheA8Corner", "r3k2r/1P6/8/8/8/8/8/R3K2R w KQkq - 0 1", "b7a8q", "KQk"},
        RightsCase{"OtherPiecesKeepTheRights", "r3k2r/8/8/8/8/8/8/RN2K2R w KQkq - 0 1", "b1c3 a8b8", "KQk"}),
    [](const ::testing::TestParamInfo<RightsCase>& info) { return std::string(info.param.name); });

struct RepetitionCase {
  const char* name;
  const char* moves;
  int repetition;
};
std::ostream& operator<<(std::ostream& out, const RepetitionCase& c) { return out << c.name; }

class RepetitionCount : public ::testing::TestWithParam<RepetitionCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_P(RepetitionCount, FromTheInitialPosition) {
  test::SetUpInitialPosition();
  ASSERT_TRUE(test::PlayMoves(GetParam().moves));
  EXPECT_EQ(current->repetition, GetParam().repetition);
}

#define KNIGHTS_OUT_AND_BACK "g1f3 g8f6 f3g1 f6g8 "
INSTANTIATE_TEST_SUITE_P(
    Board, RepetitionCount,
    ::testing::Values(RepetitionCase{"FirstOccurrence", "g1f3 g8f6", 0},
                      RepetitionCase{"SecondOccurrence", KNIGHTS_OUT_AND_BACK, 1},
                      RepetitionCase{"ThirdOccurrence", KNIGHTS_OUT_AND_BACK KNIGHTS_OUT_AND_BACK, 2},
                      RepetitionCase{"ByAnotherRoute", "g1f3 g8f6 b1c3 b8c6 c3b1 c6b8 f3g1 f6g8", 1},
                      RepetitionCase{"PawnMoveStartsAfresh", KNIGHTS_OUT_AND_BACK "e2e3 e7e6 " KNIGHTS_OUT_AND_BACK, 1},
                      // The en-passant file is part of the position even when nobody can take.
                      RepetitionCase{"DoubleStepPositionDiffers", "e2e4 e7e5 " KNIGHTS_OUT_AND_BACK, 0},
                      RepetitionCase{"AfterACapture", "e2e4 d7d5 e4d5 d8d5 g1f3 d5d8 f3g1 d8d5 g1f3 d5d8 f3g1 d8d5",
                                     2}),
    [](const ::testing::TestParamInfo<RepetitionCase>& info) { return std::string(info.param.name); });

TEST_F(MakeMoveFacts, RepetitionScanStopsWhereTheFiftyCounterEnds) {
  // The same position four plies back counts only when the fifty counter reaches four plies back.
  for (int fifty : {2, 3}) {
    test::SetUpInitialPosition();
    ASSERT_TRUE(test::PlayMoves("g1f3 g8f6 f3g1"));
    current->fifty = static_cast<uint8_t>(fifty);
    ASSERT_TRUE(test::PlayMoves("f6g8"));
    EXPECT_EQ(current->key, PositionStack[0].key);
    EXPECT_EQ(current->fifty, fifty + 1);
    EXPECT_EQ(current->repetition, fifty == 3 ? 1 : 0);
  }
}

TEST_F(MakeMoveFacts, NonMovesPushAnUnchangedCopy) {
  for (Move m : {Move{0}, Move{7}, Move{8}, Move{15}, Move{16}, Move{23}, Move{40}, MakeMoveValue(0, 12, 28, 0)}) {
    ASSERT_EQ(test::SetUpPosition("r3k2r/8/8/3pP3/8/8/8/R3K2R w KQkq d6 5 1"), 1);
    const Position before = *current;
    MakeMove(m);
    EXPECT_EQ(StackIndex(current), 1) << "move " << m;
    EXPECT_TRUE(SameRecord(*current, before)) << "move " << m;
    EXPECT_EQ(current->side, WHITE);
  }
}

}  // namespace
}  // namespace vorlek
