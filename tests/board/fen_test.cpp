// The FEN reader: which texts it accepts, the record it builds, and texts that end early.
#include "board/fen.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "support/board_helpers.h"

namespace vorlek {
namespace {

constexpr const char* INITIAL_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

struct FieldsCase {
  const char* name;
  const char* fen;
  int side, castling, epFile, fifty;
};
std::ostream& operator<<(std::ostream& out, const FieldsCase& c) { return out << c.name; }

class AcceptedFields : public ::testing::TestWithParam<FieldsCase> {};

TEST_P(AcceptedFields, Stored) {
  const FieldsCase& c = GetParam();
  Position p = InitialPosition();
  ASSERT_EQ(SetBoard(p, c.fen), 1);
  EXPECT_EQ(p.side, c.side);
  EXPECT_EQ(p.castling, c.castling);
  EXPECT_EQ(p.epFile, c.epFile);
  EXPECT_EQ(p.fifty, c.fifty);
  EXPECT_EQ(p.repetition, 0);
  EXPECT_EQ(p.key, ComputeKey(p));
  EXPECT_EQ(p.score, ComputeScore(p));
}

INSTANTIATE_TEST_SUITE_P(
    Board, AcceptedFields,
    ::testing::Values(
        FieldsCase{"Initial", INITIAL_FEN, WHITE, 0x33, EP_NONE, 0},
        FieldsCase{"KqBlackToMove", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b Kq - 0 1", BLACK, 0x21, EP_NONE, 0},
        FieldsCase{"RightsInAnyOrder", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w qkQK - 0 1", WHITE, 0x33, EP_NONE,
                   0},
        FieldsCase{"RightsRepeated", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KKk - 0 1", WHITE, 0x22, EP_NONE,
                   0},
        FieldsCase{"EnPassantE6", "rnbqkbnr/pppp1ppp/8/3Pp3/8/8/PPP1PPPP/RNBQKBNR w KQkq e6 0 3", WHITE, 0x33, 4, 0},
        FieldsCase{"EnPassantH3BlackToMove", "rnbqkbnr/pppppp1p/8/8/6pP/8/PPPPPPP1/RNBQKBNR b KQkq h3 0 3", BLACK, 0x33,
                   7, 0},
        FieldsCase{"EnPassantRestNotRead", "rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR w KQkq d6x 0 3", WHITE, 0x33,
                   3, 0},
        FieldsCase{"HalfmoveClock100", "8/8/8/8/8/8/8/K6k w - - 100 80", WHITE, 0, EP_NONE, 100},
        FieldsCase{"HalfmoveClockLeadingDigits", "8/8/8/8/8/8/8/K6k w - - 7x 1", WHITE, 0, EP_NONE, 7},
        FieldsCase{"NinthCharacterIgnored", "rnbqkbnrX/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", WHITE, 0x33,
                   EP_NONE, 0},
        FieldsCase{"SlashesInARowCountAsOne", "rnbqkbnr//pppppppp/8/8///8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", WHITE,
                   0x33, EP_NONE, 0},
        FieldsCase{"ExtraSpaces", "   rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR   w  KQkq   -  0   1  ", WHITE, 0x33,
                   EP_NONE, 0},
        FieldsCase{"PawnsOnTheEdgeRanks", "P6p/8/8/8/8/8/8/p6P b - - 0 1", BLACK, 0, EP_NONE, 0},
        // The counters may be missing: the text may end after the en-passant field.
        FieldsCase{"EndsAfterTheEnPassantField", "8/8/8/8/8/8/8/K6k b - e3", BLACK, 0, 4, 0}),
    [](const ::testing::TestParamInfo<FieldsCase>& info) { return std::string(info.param.name); });

struct RefusedCase {
  const char* name;
  const char* fen;
};
std::ostream& operator<<(std::ostream& out, const RefusedCase& c) { return out << c.name; }

class Refused : public ::testing::TestWithParam<RefusedCase> {};

TEST_P(Refused, ReturnsZero) {
  Position p = InitialPosition();
  EXPECT_EQ(SetBoard(p, GetParam().fen), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Board, Refused,
    ::testing::Values(
        RefusedCase{"Empty", ""}, RefusedCase{"NoSide", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR"},
        RefusedCase{"EndsInThePlacement", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPP"},
        RefusedCase{"EndsAfterTheCastlingField", "8/8/8/8/8/8/8/K6k w -"},
        RefusedCase{"SideX", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR x KQkq - 0 1"},
        RefusedCase{"RankOfSevenSquares", "rnbqkbn/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
        RefusedCase{"SevenRanks", "rnbqkbnr/pppppppp/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
        RefusedCase{"UnknownPiece", "rnbqkbnr/ppppxppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
        RefusedCase{"DigitNine", "rnbqkbnr/pppppppp/9/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
        RefusedCase{"CastlingLetterX", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkx - 0 1"},
        RefusedCase{"CastlingLettersAndDash", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQ- - 0 1"},
        RefusedCase{"EnPassantE3WhiteToMove", "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e3 0 1"},
        RefusedCase{"EnPassantE6BlackToMove", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq e6 0 1"},
        RefusedCase{"EnPassantRank5", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq e5 0 1"},
        RefusedCase{"HalfmoveClock101", "8/8/8/8/8/8/8/K6k w - - 101 80"},
        RefusedCase{"HalfmoveClockHuge", "8/8/8/8/8/8/8/K6k w - - 99999999999999999999 1"}),
    [](const ::testing::TestParamInfo<RefusedCase>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vorlek
