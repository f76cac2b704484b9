// The rules the game loop applies on the position stack: the opponent's move in coordinate notation,
// found among the generated moves, checked and made; and the end of the game by mate, stalemate, fifty
// moves or repetition, and which comes first.
#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <string>

#include "board/position.h"
#include "board/user_move.h"
#include "game/game_end.h"
#include "support/board_helpers.h"

namespace vorlek::test {
namespace {

constexpr const char* INITIAL = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
constexpr const char* CORNERS = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
constexpr const char* PAWN_ON_C7 = "4k3/2P5/8/8/8/8/8/4K3 w - - 0 1";
#define KNIGHTS_OUT_AND_BACK "g1f3 g8f6 f3g1 f6g8 "

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

class ReadUserMoveCodes : public ::testing::TestWithParam<UserMoveCase> {};

TEST_P(ReadUserMoveCodes, CodeAndPosition) {
  const UserMoveCase& c = GetParam();
  ASSERT_EQ(SetUpPosition(c.fen), 1);
  ASSERT_TRUE(PlayMoves(c.before));
  Position* const at = current;
  const Position before = *current;
  EXPECT_EQ(ReadUserMove(c.text), c.code);
  if (c.code == MOVE_OK) {
    ASSERT_EQ(current, at + 1);
    EXPECT_EQ(current->key, ComputeKey(*current));
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
        UserMoveCase{"PromotionLetterOnAPawnPush", INITIAL, "", "e2e4q", MOVE_NOT_FOUND},
        UserMoveCase{"TrailingBlank", INITIAL, "", "e2e4 ", MOVE_BAD_PROMOTION},
        UserMoveCase{"BadLetterBeforeAnyLook", INITIAL, "", "a5a6x", MOVE_BAD_PROMOTION},
        UserMoveCase{"BlackInRealSquares", INITIAL, "e2e4", "e7e5", MOVE_OK, "e5", 'p'},
        UserMoveCase{"BlackTypesAWhiteMove", INITIAL, "e2e4", "d2d4", MOVE_NOT_FOUND},
        UserMoveCase{"PromoteToKnight", PAWN_ON_C7, "", "c7c8n", MOVE_OK, "c8", 'N'},
        UserMoveCase{"PromotionWithoutLetter", PAWN_ON_C7, "", "c7c8", MOVE_NOT_FOUND},
        UserMoveCase{"PromotionCapitalLetter", PAWN_ON_C7, "", "c7c8Q", MOVE_BAD_PROMOTION},
        UserMoveCase{"BlackPromotesTaking", "4k3/8/8/8/8/8/1p6/R3K3 b Q - 0 1", "", "b2a1q", MOVE_OK, "a1", 'q'},
        UserMoveCase{"EnPassant", INITIAL, "e2e4 a7a6 e4e5 d7d5", "e5d6", MOVE_OK, "d5", '.'},
        UserMoveCase{"EnPassantTooLate", INITIAL, "e2e4 a7a6 e4e5 d7d5 a2a3 a6a5", "e5d6", MOVE_NOT_FOUND},
        UserMoveCase{"PinnedBishopOffThePin", "4k3/8/8/8/b7/8/2B5/3K4 w - - 0 1", "", "c2d3", MOVE_LEAVES_CHECK},
        UserMoveCase{"BlackPawnLeavesThePin", "4k3/3p4/8/8/B7/8/8/5K2 b - - 0 1", "", "d7d6", MOVE_LEAVES_CHECK},
        UserMoveCase{"CastleKingSide", CORNERS, "", "e1g1", MOVE_OK, "f1", 'R'},
        UserMoveCase{"CastleQueenSide", CORNERS, "", "e1c1", MOVE_OK, "d1", 'R'},
        UserMoveCase{"BlackCastlesKingSide", CORNERS, "a1b1", "e8g8", MOVE_OK, "f8", 'r'},
        // A set-up's rights and en-passant file are taken at their word: castling moves the rook the right
        // stands for, and en passant takes the pawn behind the target square, here making them appear.
        UserMoveCase{"CastlingRightWithoutRook", "4k3/8/8/8/8/8/8/4K3 w KQkq - 0 1", "", "e1g1", MOVE_OK, "f1", 'R'},
        UserMoveCase{"EnPassantWithoutPawn", "4k3/8/8/3P4/8/8/8/4K3 w - e6 0 1", "", "d5e6", MOVE_OK, "e5", 'p'}),
    [](const ::testing::TestParamInfo<UserMoveCase>& info) { return std::string(info.param.name); });

// The result of the position after the moves; judging it leaves the position as it was.
struct EndCase {
  const char* name;
  const char* fen;
  const char* moves;
  int result;
};
std::ostream& operator<<(std::ostream& out, const EndCase& c) { return out << c.name; }

class GameEnd : public ::testing::TestWithParam<EndCase> {};

TEST_P(GameEnd, Result) {
  const EndCase& c = GetParam();
  ASSERT_EQ(SetUpPosition(c.fen), 1);
  ASSERT_TRUE(PlayMoves(c.moves));
  Position* const at = current;
  const Position before = *current;
  EXPECT_EQ(CheckGameEnd(), c.result);
  EXPECT_EQ(current, at);
  EXPECT_EQ(std::memcmp(current, &before, sizeof(Position)), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Game, GameEnd,
    ::testing::Values(EndCase{"FoolsMate", INITIAL, "f2f3 e7e5 g2g4 d8h4", RESULT_BLACK_WINS},
                      EndCase{"BackRankMate", "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "a1a8", RESULT_WHITE_WINS},
                      EndCase{"CheckAnsweredOnlyByCapture", "6k1/5ppp/8/8/8/5q2/8/R5K1 w - - 0 1", "a1a8", RESULT_NONE},
                      EndCase{"StalemateWithFiftyAt100", "7k/5Q2/6K1/8/8/8/8/8 b - - 100 80", "", RESULT_STALEMATE},
                      EndCase{"MateWithFiftyAt100", "rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 100 3",
                              "", RESULT_BLACK_WINS},
                      EndCase{"NoGeneratedMoveAtAll", "8/8/8/8/8/p7/P7/K7 b - - 0 1", "", RESULT_STALEMATE},
                      EndCase{"OnlyPseudoLegalMovesLeft", "k7/P7/1K6/8/8/8/8/8 b - - 0 1", "", RESULT_STALEMATE},
                      EndCase{"Fifty99", "4k3/8/8/8/8/8/8/4K2R w - - 99 80", "", RESULT_NONE},
                      EndCase{"Fifty100", "4k3/8/8/8/8/8/8/4K2R w - - 100 80", "", RESULT_FIFTY_MOVES},
                      EndCase{"ThirdOccurrence", INITIAL, KNIGHTS_OUT_AND_BACK KNIGHTS_OUT_AND_BACK, RESULT_REPETITION},
                      // Repetition is judged before fifty moves.
                      EndCase{"RepetitionAtFifty", "4k3/8/8/8/8/8/8/4K2R w - - 92 80",
                              "h1h2 e8d8 h2h1 d8e8 h1h2 e8d8 h2h1 d8e8", RESULT_REPETITION},
                      EndCase{"FourthOccurrence", INITIAL,
                              KNIGHTS_OUT_AND_BACK KNIGHTS_OUT_AND_BACK KNIGHTS_OUT_AND_BACK, RESULT_NONE}),
    [](const ::testing::TestParamInfo<EndCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek::test
