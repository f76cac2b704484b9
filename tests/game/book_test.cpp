// The opening book loader run in this process: what each line enters into Aperture and where it stops.
#include "game/book.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "board/init_tables.h"
#include "board/position.h"
#include "game/book_file.h"
#include "search/think.h"
#include "support/board_helpers.h"

namespace vorlek::test {
namespace {

// The moves of the current position's entry as blank-separated move texts, "-" when it has none.
std::string EntryMoves() {
  const BookEntry* entry = FindBookEntry(current->key);
  if (!entry) return "-";
  std::string moves;
  for (int i = 0; i < BOOK_SLOTS && entry->moves[i]; ++i) {
    char text[6];
    MoveToText(text, entry->moves[i], *current);
    if (text[4] == ' ') text[4] = '\0';
    moves += (moves.empty() ? "" : " ") + std::string(text);
  }
  return moves;
}

std::vector<char> TableBytes() {
  const char* bytes = reinterpret_cast<const char*>(Aperture);
  return {bytes, bytes + sizeof Aperture};
}

class BookLoader : public ::testing::Test {
 protected:
  void SetUp() override {
    InitTables();
    SetUpInitialPosition();
    std::memset(Aperture, 0, sizeof Aperture);
  }

  // LoadBookLine's status; the current position must be the same afterwards.
  BookStatus Load(const char* line) {
    const Position before = *current;
    Position* const where = current;
    const BookLineResult result = LoadBookLine(line);
    EXPECT_EQ(current, where) << line;
    EXPECT_EQ(std::memcmp(current, &before, sizeof before), 0) << line;
    return result.status;
  }
};

TEST_F(BookLoader, PositionsReachedByTwoMoveOrdersShareOneEntry) {
  ASSERT_EQ(Load("g1f3 g8f6 b1c3 b8c6 e2e4"), BookStatus::OK);
  ASSERT_EQ(Load("b1c3 b8c6 g1f3 g8f6 d2d4"), BookStatus::OK);
  int used = 0;
  for (const BookEntry& entry : Aperture) used += entry.key != 0;
  EXPECT_EQ(used, 8);  // 5 for the first line, 3 for the second
  ASSERT_TRUE(PlayMoves("g1f3 g8f6 b1c3 b8c6"));
  EXPECT_EQ(EntryMoves(), "e2e4 d2d4");
}

struct SameTableCase {
  const char* name;
  const char* line;
  const char* sameAs;
};
std::ostream& operator<<(std::ostream& out, const SameTableCase& c) { return out << c.name; }

class BookLineSpelling : public BookLoader, public ::testing::WithParamInterface<SameTableCase> {};

TEST_P(BookLineSpelling, FillsTheTableLikeItsPlainForm) {
  ASSERT_EQ(Load(GetParam().sameAs), BookStatus::OK);
  const std::vector<char> plain = TableBytes();
  std::memset(Aperture, 0, sizeof Aperture);
  ASSERT_EQ(Load(GetParam().line), BookStatus::OK);
  EXPECT_EQ(TableBytes(), plain);
}

INSTANTIATE_TEST_SUITE_P(Lines, BookLineSpelling,
                         ::testing::Values(SameTableCase{"BlanksOnly", "     ", ""},
                                           SameTableCase{"SeveralBlanks", "  e2e4   e7e5  g1f3   ", "e2e4 e7e5 g1f3"},
                                           SameTableCase{"CharactersAfterTheFourthIgnored", "e2e4x e7e5\r",
                                                         "e2e4 e7e5"}),
                         [](const auto& info) { return info.param.name; });

struct BadTokenCase {
  const char* name;
  const char* line;
  int tokenStart;
  int tokenLength;
};
std::ostream& operator<<(std::ostream& out, const BadTokenCase& c) { return out << c.name; }

class BadToken : public BookLoader, public ::testing::WithParamInterface<BadTokenCase> {};

// The line is copied into a block of exactly its size, so reading past its end is an overflow that
// the sanitizer build reports.
TEST_P(BadToken, IsABadMoveAndStopsTheLine) {
  const std::string line = GetParam().line;
  const auto exact = std::make_unique<char[]>(line.size() + 1);
  std::memcpy(exact.get(), line.c_str(), line.size() + 1);
  Position* const where = current;
  const BookLineResult result = LoadBookLine(exact.get());
  EXPECT_EQ(result.status, BookStatus::BAD_MOVE);
  EXPECT_EQ(result.tokenStart, GetParam().tokenStart);
  EXPECT_EQ(result.tokenLength, GetParam().tokenLength);
  EXPECT_EQ(current, where);
  EXPECT_EQ(current->key, InitialPosition().key);
}

INSTANTIATE_TEST_SUITE_P(Tokens, BadToken,
                         ::testing::Values(BadTokenCase{"WhiteMoveWithBlackToMove", "e2e4 d2d4", 5, 4},
                                           BadTokenCase{"NoPieceOnTheSquare", "e2e4 e7e5 e2e3", 10, 4},
                                           BadTokenCase{"CastlingWithPiecesBetween", "e2e4 e7e5 e1g1", 10, 4},
                                           BadTokenCase{"ThreeCharactersAtTheEnd", "e2e4 e7e", 5, 3},
                                           BadTokenCase{"TwoCharactersBeforeABlank", "e2 e4", 0, 2},
                                           BadTokenCase{"OneCharacter", "e2e4 e7e5 g", 10, 1},
                                           BadTokenCase{"RankNine", "e2e9", 0, 4},
                                           BadTokenCase{"CapitalLetters", "E2E4", 0, 4},
                                           BadTokenCase{"CarriageReturnAlone", "e2e4 e7e5 \r", 10, 1}),
                         [](const auto& info) { return info.param.name; });

TEST_F(BookLoader, PromotionsTakeTheQueenWhateverTheLetter) {
  ASSERT_EQ(SetUpPosition("1n5k/P7/8/8/8/8/8/K7 w - - 0 1"), 1);
  ASSERT_EQ(Load("a7a8n"), BookStatus::OK);
  ASSERT_EQ(Load("a7b8"), BookStatus::OK);
  EXPECT_EQ(EntryMoves(), "a7a8q a7b8q");
  ASSERT_EQ(SetUpPosition("7k/8/8/8/8/8/p7/7K b - - 0 1"), 1);
  ASSERT_EQ(Load("a2a1"), BookStatus::OK);
  EXPECT_EQ(EntryMoves(), "a2a1q");
}

TEST_F(BookLoader, ANinthMoveInOnePositionFillsTheEntry) {
  for (const char* line : {"a2a3", "b2b3", "c2c3", "d2d3", "e2e3", "f2f3", "g2g3", "h2h3"}) {
    ASSERT_EQ(Load(line), BookStatus::OK) << line;
  }
  EXPECT_EQ(Load("e2e3 e7e5"), BookStatus::OK) << "a move already in the entry needs no slot";
  EXPECT_EQ(EntryMoves(), "a2a3 b2b3 c2c3 d2d3 e2e3 f2f3 g2g3 h2h3");
  const std::vector<char> full = TableBytes();
  EXPECT_EQ(Load("a2a4"), BookStatus::ENTRY_FULL);
  EXPECT_EQ(TableBytes(), full);
}

// A book file read through the engine's line reader.
BookFileResult LoadText(std::string text) {
  FILE* file = fmemopen(text.data(), text.size(), "r");
  const BookFileResult result = LoadBookFile(file);
  std::fclose(file);
  return result;
}

TEST_F(BookLoader, BookFileLinesHoldAtMost198Characters) {
  // 39 knight moves back and forth and four blanks.
  static const char* const SHUFFLE[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
  std::string fits = SHUFFLE[0];
  for (int i = 1; i < 39; ++i) fits += std::string(" ") + SHUFFLE[i % 4];
  fits += "    ";
  ASSERT_EQ(fits.size(), 198u);
  BookFileResult result = LoadText(fits + "\n");
  EXPECT_EQ(result.status, BookStatus::OK);
  EXPECT_EQ(EntryMoves(), "g1f3");

  result = LoadText("d2d4\n" + fits + " \ne2e4\n");
  EXPECT_EQ(result.status, BookStatus::BAD_MOVE);
  EXPECT_TRUE(result.lineTooLong);
  EXPECT_EQ(result.lines, 2);
}

}  // namespace
}  // namespace vorlek::test
