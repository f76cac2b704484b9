// Move text: the promotion letter read from coordinate notation, and the engine's own move text, always in
// white's coordinates whichever side moves. (Squares are read by every move typed in the protocol tests.)
#include "board/notation.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "board/movegen.h"

namespace vorlek {
namespace {

TEST(ReadPromotionLetter, LowerCaseLettersAndTheEndOfTheText) {
  EXPECT_EQ(ReadPromotionLetter('n'), KNIGHT);
  EXPECT_EQ(ReadPromotionLetter('b'), BISHOP);
  EXPECT_EQ(ReadPromotionLetter('r'), ROOK);
  EXPECT_EQ(ReadPromotionLetter('q'), QUEEN);
  EXPECT_EQ(ReadPromotionLetter('\0'), EMPTY);
  for (const char letter : {'Q', 'k', 'p', ' ', 'x'}) EXPECT_EQ(ReadPromotionLetter(letter), -1) << letter;
}

struct MoveTextCase {
  Move move;
  int side;
  const char* text;
};
std::ostream& operator<<(std::ostream& out, const MoveTextCase& c) { return out << c.text; }

class MoveText : public ::testing::TestWithParam<MoveTextCase> {};

TEST_P(MoveText, InWhitesCoordinatesWithTheLetterOrABlank) {
  char text[MOVE_TEXT_SIZE];
  MoveToText(text, GetParam().move, GetParam().side);
  EXPECT_STREQ(text, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Moves, MoveText,
    ::testing::Values(MoveTextCase{MakeMoveValue(PAWN, E2, E4, 0), WHITE, "e2e4 "},
                      // Black's moves are stored in black's view: e2e4 there is e7e5 on the board.
                      MoveTextCase{MakeMoveValue(PAWN, E2, E4, 0), BLACK, "e7e5 "},
                      MoveTextCase{MOVE_CASTLE_KING_SIDE, BLACK, "e8g8 "},
                      MoveTextCase{MOVE_CASTLE_QUEEN_SIDE, WHITE, "e1c1 "},
                      MoveTextCase{MakeMoveValue(KIND_PROMOTION, A7, A8, KNIGHT << 4), WHITE, "a7a8n"},
                      MoveTextCase{MakeMoveValue(KIND_PROMOTION, A7, A8, BISHOP << 4), WHITE, "a7a8b"},
                      MoveTextCase{MakeMoveValue(KIND_CAPTURE_PROMOTION, B7, A8, ROOK << 4 | KNIGHT), BLACK, "b2a1r"},
                      MoveTextCase{MakeMoveValue(KIND_PROMOTION, H7, H8, QUEEN << 4), BLACK, "h2h1q"},
                      MoveTextCase{MakeMoveValue(KIND_EN_PASSANT, E5, D6, 0), WHITE, "e5d6 "}));

}  // namespace
}  // namespace vorlek
