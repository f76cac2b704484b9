// Move text: the squares and promotion letter read from coordinate notation, and the engine's own move text,
// always in white's coordinates whichever side moves.
#include "board/notation.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "board/movegen.h"

namespace vorlek {
namespace {

struct TextCase {
  const char* text;
  bool squares;  // the first four characters are two squares
  int from = -1, to = -1;
};
std::ostream& operator<<(std::ostream& out, const TextCase& c) { return out << c.text; }

class ReadSquares : public ::testing::TestWithParam<TextCase> {};

TEST_P(ReadSquares, FromTheFirstFourCharacters) {
  int from = -1, to = -1;
  EXPECT_EQ(ReadMoveSquares(GetParam().text, from, to), GetParam().squares);
  if (!GetParam().squares) return;
  EXPECT_EQ(from, GetParam().from);
  EXPECT_EQ(to, GetParam().to);
}

INSTANTIATE_TEST_SUITE_P(Texts, ReadSquares,
                         ::testing::Values(TextCase{"e2e4", true, E2, E4}, TextCase{"a1h8q", true, A1, H8},
                                           TextCase{"h7a2 and more", true, H7, A2}, TextCase{"e2e9", false},
                                           TextCase{"e2i4", false}, TextCase{"e0e4", false}, TextCase{"E2e4", false},
                                           TextCase{"e2e", false}, TextCase{"", false}));

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
