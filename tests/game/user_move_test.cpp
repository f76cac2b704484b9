// The opponent's move in coordinate notation: found among the generated moves, checked and made.
#include "game/user_move.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>

#include "board/init_tables.h"
#include "board/position.h"
#include "support/board_helpers.h"

namespace vorlek {
namespace {

using test::Sq;

constexpr const char* INITIAL = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
constexpr const char* CORNERS = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
constexpr const char* PAWN_ON_C7 = "4k3/2P5/8/8/8/8/8/4K3 w - - 0 1";

struct UserMoveCase {
  const char* name;
  const char* fen;
  const char* before;  // moves played first
  const char* text;
  int code;
  const char* square = "";  // on success: a real square and the piece now on it, white pieces in capitals
  char piece = 0;
};
std::ostream& operator<<(std::ostream& out, const UserMoveCase& c) { return out << c.name; }

// The piece on a real square as a FEN letter, '.' when empty.
char PieceOnRealSquare(const Position& p, int sq) {
  const int stored = p.side == BLACK ? Mirror(sq) : sq;
  const int code = PieceAt(p, stored);
  if (code == EMPTY) return '.';
  const bool white = ((p.own >> stored) & 1) == (p.side == WHITE);
  const char letter = " pnbrqk"[code];
  return white ? static_cast<char>(letter - 'a' + 'A') : letter;
}

class ReadUserMoveCodes : public ::testing::TestWithParam<UserMoveCase> {
 protected:
  static void SetUpTestSuite() { InitTables(); }
};

TEST_P(ReadUserMoveCodes, CodeAndPosition) {
  const UserMoveCase& c = GetParam();
  ASSERT_EQ(test::SetUpPosition(c.fen), 1);
  ASSERT_TRUE(test::PlayMoves(c.before));
  Position* const at = current;
  const Position before = *current;
  EXPECT_EQ(ReadUserMove(c.text), c.code);
  if (c.code == MOVE_OK) {
    ASSERT_EQ(current, at + 1);
    EXPECT_EQ(current->side, before.side ^ BLACK);
    EXPECT_EQ(current->key, ComputeKey(*current));
    EXPECT_EQ(current->score, ComputeScore(*current));
    EXPECT_EQ(PieceOnRealSquare(*current, Sq(c.text)), '.');
    EXPECT_EQ(PieceOnRealSquare(*current, Sq(c.square)), c.piece) << c.square;
  } else {
    EXPECT_EQ(current, at);
    EXPECT_EQ(std::memcmp(current, &before, sizeof(Position)), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Game, ReadUserMoveCodes,
    ::testing::Values(
        UserMoveCase{"E2E4", INITIAL, "", "e2e4", MOVE_OK, "e4", 'P'},
        UserMoveCase{"PawnThreeSquares", INITIAL, "", "e2e5", MOVE_NOT_FOUND},
        UserMoveCase{"OpponentsPawn", INITIAL, "", "e7e5", MOVE_NOT_FOUND},
        UserMoveCase{"PromotionLetterOnAPawnPush", INITIAL, "", "e2e4q", MOVE_NOT_FOUND},
        UserMoveCase{"TrailingBlank", INITIAL, "", "e2e4 ", MOVE_BAD_PROMOTION},
        UserMoveCase{"BadLetterBeforeAnyLook", INITIAL, "", "a5a6x", MOVE_BAD_PROMOTION},
        UserMoveCase{"BlackInRealSquares", INITIAL, "e2e4", "e7e5", MOVE_OK, "e5", 'p'},
        UserMoveCase{"BlackTypesAWhiteMove", INITIAL, "e2e4", "d2d4", MOVE_NOT_FOUND},
        UserMoveCase{"PromoteToQueen", PAWN_ON_C7, "", "c7c8q", MOVE_OK, "c8", 'Q'},
        UserMoveCase{"PromoteToKnight", PAWN_ON_C7, "", "c7c8n", MOVE_OK, "c8", 'N'},
        UserMoveCase{"PromotionWithoutLetter", PAWN_ON_C7, "", "c7c8", MOVE_NOT_FOUND},
        UserMoveCase{"PromotionCapitalLetter", PAWN_ON_C7, "", "c7c8Q", MOVE_BAD_PROMOTION},
        UserMoveCase{"PromotionToKing", PAWN_ON_C7, "", "c7c8k", MOVE_BAD_PROMOTION},
        UserMoveCase{"BlackPromotesTakingInTheCorner", "4k3/8/8/8/8/8/1p6/R3K3 b Q - 0 1", "", "b2a1q", MOVE_OK, "a1",
                     'q'},
        UserMoveCase{"EnPassant", INITIAL, "e2e4 a7a6 e4e5 d7d5", "e5d6", MOVE_OK, "d5", '.'},
        UserMoveCase{"EnPassantLandsBehind", INITIAL, "e2e4 a7a6 e4e5 d7d5", "e5d6", MOVE_OK, "d6", 'P'},
        UserMoveCase{"EnPassantTooLate", INITIAL, "e2e4 a7a6 e4e5 d7d5 a2a3 a6a5", "e5d6", MOVE_NOT_FOUND},
        UserMoveCase{"PinnedBishopAlongThePin", "4k3/8/8/8/b7/8/2B5/3K4 w - - 0 1", "", "c2b3", MOVE_OK, "b3", 'B'},
        UserMoveCase{"PinnedBishopOffThePin", "4k3/8/8/8/b7/8/2B5/3K4 w - - 0 1", "", "c2d3", MOVE_LEAVES_CHECK},
        UserMoveCase{"KingNextToKing", "8/8/8/8/8/3k4/8/4K3 w - - 0 1", "", "e1e2", MOVE_LEAVES_CHECK},
        UserMoveCase{"IgnoringCheck", "4k3/4r3/8/8/8/8/8/R3K3 w - - 0 1", "", "a1a2", MOVE_LEAVES_CHECK},
        UserMoveCase{"InterposingAnswersCheck", "4k3/4r3/8/8/8/8/3R4/4K3 w - - 0 1", "", "d2e2", MOVE_OK, "e2", 'R'},
        UserMoveCase{"BlackKingStaysOnTheFile", "4k3/8/8/8/8/8/8/4R1K1 b - - 0 1", "", "e8e7", MOVE_LEAVES_CHECK},
        UserMoveCase{"BlackPawnLeavesThePin", "4k3/3p4/8/8/B7/8/8/5K2 b - - 0 1", "", "d7d6", MOVE_LEAVES_CHECK},
        UserMoveCase{"CastleKingSide", CORNERS, "", "e1g1", MOVE_OK, "f1", 'R'},
        UserMoveCase{"CastleQueenSide", CORNERS, "", "e1c1", MOVE_OK, "d1", 'R'},
        UserMoveCase{"BlackCastlesKingSide", CORNERS, "a1b1", "e8g8", MOVE_OK, "f8", 'r'},
        UserMoveCase{"CastlingThroughCheck", "r3kr2/8/8/8/8/8/8/R3K2R w KQq - 0 1", "", "e1g1", MOVE_NOT_FOUND},
        UserMoveCase{"CastlingOutOfCheck", "r3k2r/4r3/8/8/8/8/8/R3K2R w KQ - 0 1", "", "e1c1", MOVE_NOT_FOUND},
        UserMoveCase{"CastlingAfterTheRookMoved", CORNERS, "h1h2 a8a7 h2h1 a7a8", "e1g1", MOVE_NOT_FOUND}),
    [](const ::testing::TestParamInfo<UserMoveCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek
