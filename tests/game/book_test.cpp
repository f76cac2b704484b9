// The opening book loader run in this process: what each line enters into Aperture, where it stops,
// and the shipped book.
#include "game/book.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "board/all_moves.h"
#include "board/init_tables.h"
#include "board/make_move.h"
#include "board/position.h"
#include "game/book_file.h"
#include "search/think.h"
#include "support/board_helpers.h"

namespace vorlek::test {
namespace {

int UsedEntries() {
  int used = 0;
  for (const BookEntry& entry : Aperture) used += entry.key != 0;
  return used;
}

int UsedSlots(const BookEntry& entry) {
  int used = 0;
  while (used < BOOK_SLOTS && entry.moves[used]) ++used;
  return used;
}

// The moves of the current position's entry as blank-separated move texts, "-" when it has none.
std::string EntryMoves() {
  const BookEntry* entry = FindBookEntry(current->key);
  if (!entry) return "-";
  std::string moves;
  for (int i = 0; i < UsedSlots(*entry); ++i) {
    char text[6];
    MoveToText(text, entry->moves[i], *current);
    if (text[4] == ' ') text[4] = '\0';
    if (!moves.empty()) moves += ' ';
    moves += text;
  }
  return moves;
}

// The entries reached by playing `moves` from the initial position, as EntryMoves gives them.
std::string EntryMovesAfter(const char* moves) {
  Position* const start = current;
  EXPECT_TRUE(PlayMoves(moves)) << moves;
  std::string result = EntryMoves();
  current = start;
  return result;
}

std::vector<char> TableBytes() {
  const char* bytes = reinterpret_cast<const char*>(Aperture);
  return {bytes, bytes + sizeof Aperture};
}

// Lines "w2w3 b7b6 x2x4 y7y5" on files chosen so that no two move orders reach one position, every
// one of them with at least one position that no earlier line has reached.
std::vector<std::string> FanOutLines() {
  std::vector<std::string> lines;
  for (char w = 'a'; w <= 'h'; ++w) {
    for (char b = 'a'; b <= 'h'; ++b) {
      for (char x = 'a'; x <= 'h'; ++x) {
        if (x == w) continue;
        const char y = b == 'a' ? 'b' : 'a';
        lines.push_back(std::string{w, '2', w, '3', ' ', b, '7', b, '6', ' ', x, '2', x, '4', ' ', y, '7', y, '5'});
      }
    }
  }
  return lines;
}

class BookLoader : public ::testing::Test {
 protected:
  void SetUp() override {
    InitTables();
    SetUpInitialPosition();
    std::memset(Aperture, 0, sizeof Aperture);
  }

  BookStatus Load(const char* line) {
    const Position before = *current;
    Position* const where = current;
    const BookLineResult result = LoadBookLine(line);
    EXPECT_EQ(current, where) << line;
    EXPECT_EQ(std::memcmp(current, &before, sizeof before), 0) << line;
    return result.status;
  }
};

TEST_F(BookLoader, LinesWithACommonStartShareItsEntries) {
  ASSERT_EQ(Load("e2e4 e7e5"), BookStatus::OK);
  ASSERT_EQ(Load("e2e4 c7c5"), BookStatus::OK);
  EXPECT_EQ(UsedEntries(), 2);
  EXPECT_EQ(Aperture[0].key, InitialPosition().key);
  EXPECT_EQ(EntryMovesAfter(""), "e2e4");
  EXPECT_EQ(EntryMovesAfter("e2e4"), "e7e5 c7c5");
  // The position after a line's last move takes no entry.
  EXPECT_EQ(EntryMovesAfter("e2e4 e7e5"), "-");
}

TEST_F(BookLoader, EntriesHoldTheGeneratedMovesOfTheirPosition) {
  ASSERT_EQ(Load("e2e4 e7e5 g1f3 b8c6 f1b5"), BookStatus::OK);
  PlayMoves("e2e4 e7e5");
  const BookEntry* entry = FindBookEntry(current->key);
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->moves[0], FindMove("g1f3"));
  EXPECT_EQ(entry->moves[1], MOVE_NONE);
  PlayMoves("g1f3");
  entry = FindBookEntry(current->key);
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->moves[0], FindMove("b8c6"));
}

TEST_F(BookLoader, PositionsReachedByTwoMoveOrdersShareOneEntry) {
  ASSERT_EQ(Load("g1f3 g8f6 b1c3 b8c6 e2e4"), BookStatus::OK);
  ASSERT_EQ(Load("b1c3 b8c6 g1f3 g8f6 d2d4"), BookStatus::OK);
  EXPECT_EQ(UsedEntries(), 8);  // 5 for the first line, 3 for the second
  EXPECT_EQ(EntryMovesAfter("g1f3 g8f6 b1c3 b8c6"), "e2e4 d2d4");
}

TEST_F(BookLoader, TheSameLineTwiceAddsNothing) {
  ASSERT_EQ(Load("d2d4 g8f6 c2c4 e7e6"), BookStatus::OK);
  const std::vector<char> once = TableBytes();
  ASSERT_EQ(Load("d2d4 g8f6 c2c4 e7e6"), BookStatus::OK);
  EXPECT_EQ(TableBytes(), once);
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

INSTANTIATE_TEST_SUITE_P(
    Lines, BookLineSpelling,
    ::testing::Values(SameTableCase{"EmptyLine", "", ""}, SameTableCase{"BlanksOnly", "     ", ""},
                      SameTableCase{"SeveralBlanks", "  e2e4   e7e5  g1f3   ", "e2e4 e7e5 g1f3"},
                      SameTableCase{"CharactersAfterTheFourthIgnored", "e2e4x e7e5\r", "e2e4 e7e5"},
                      SameTableCase{"CastlingAsTheKingsMove", "e2e4 e7e5 g1f3 g8f6 f1c4 f8c5 e1g1 e8g8",
                                    "e2e4 e7e5 g1f3 g8f6 f1c4 f8c5 e1g1 e8g8"}),
    [](const auto& info) { return info.param.name; });

TEST_F(BookLoader, EmptyAndBlankLinesLeaveTheTableEmpty) {
  EXPECT_EQ(Load(""), BookStatus::OK);
  EXPECT_EQ(Load("      "), BookStatus::OK);
  EXPECT_EQ(UsedEntries(), 0);
}

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
                         ::testing::Values(BadTokenCase{"BlackMoveWithWhiteToMove", "e7e5", 0, 4},
                                           BadTokenCase{"WhiteMoveWithBlackToMove", "e2e4 d2d4", 5, 4},
                                           BadTokenCase{"NoPieceOnTheSquare", "e2e4 e7e5 e2e3", 10, 4},
                                           BadTokenCase{"PieceCannotGoThere", "e2e4 e7e5 g1g3", 10, 4},
                                           BadTokenCase{"CastlingWithPiecesBetween", "e2e4 e7e5 e1g1", 10, 4},
                                           BadTokenCase{"ThreeCharactersAtTheEnd", "e2e4 e7e", 5, 3},
                                           BadTokenCase{"TwoCharactersBeforeABlank", "e2 e4", 0, 2},
                                           BadTokenCase{"OneCharacter", "e2e4 e7e5 g", 10, 1},
                                           BadTokenCase{"FileOutsideTheBoard", "i2i4", 0, 4},
                                           BadTokenCase{"RankZero", "e0e4", 0, 4},
                                           BadTokenCase{"RankNine", "e2e9", 0, 4},
                                           BadTokenCase{"CapitalLetters", "E2E4", 0, 4},
                                           BadTokenCase{"CarriageReturnAlone", "e2e4 e7e5 \r", 10, 1}),
                         [](const auto& info) { return info.param.name; });

struct PromotionCase {
  const char* fen;
  const char* token;
  const char* entered;  // the move text of the move the token enters
};
std::ostream& operator<<(std::ostream& out, const PromotionCase& c) { return out << c.token << " in " << c.fen; }

class BookPromotion : public BookLoader, public ::testing::WithParamInterface<PromotionCase> {};

TEST_P(BookPromotion, TakesTheQueenWhateverTheLetter) {
  ASSERT_EQ(SetUpPosition(GetParam().fen), 1);
  ASSERT_EQ(Load(GetParam().token), BookStatus::OK);
  EXPECT_EQ(EntryMoves(), GetParam().entered);
}

INSTANTIATE_TEST_SUITE_P(Promotions, BookPromotion,
                         ::testing::Values(PromotionCase{"7k/P7/8/8/8/8/8/K7 w - - 0 1", "a7a8", "a7a8q"},
                                           PromotionCase{"7k/P7/8/8/8/8/8/K7 w - - 0 1", "a7a8n", "a7a8q"},
                                           PromotionCase{"1n5k/P7/8/8/8/8/8/K7 w - - 0 1", "a7b8", "a7b8q"},
                                           PromotionCase{"7k/8/8/8/8/8/p7/7K b - - 0 1", "a2a1", "a2a1q"}));

TEST_F(BookLoader, ANinthMoveInOnePositionFillsTheEntry) {
  const char* const eight[] = {"a2a3", "b2b3", "c2c3", "d2d3", "e2e3", "f2f3", "g2g3", "h2h3"};
  for (const char* line : eight) ASSERT_EQ(Load(line), BookStatus::OK) << line;
  EXPECT_EQ(Load("e2e3 e7e5"), BookStatus::OK) << "a move already in the entry needs no slot";
  EXPECT_EQ(EntryMoves(), "a2a3 b2b3 c2c3 d2d3 e2e3 f2f3 g2g3 h2h3");
  const std::vector<char> full = TableBytes();
  const BookLineResult result = LoadBookLine("a2a4");
  EXPECT_EQ(result.status, BookStatus::ENTRY_FULL);
  EXPECT_EQ(result.tokenStart, 0);
  EXPECT_EQ(current, PositionStack);
  EXPECT_EQ(TableBytes(), full);
}

TEST_F(BookLoader, TheThreeHundredAndFirstPositionFillsTheTable) {
  const std::vector<std::string> lines = FanOutLines();
  size_t loaded = 0;
  BookLineResult result{};
  for (; loaded < lines.size(); ++loaded) {
    result = LoadBookLine(lines[loaded].c_str());
    if (result.status != BookStatus::OK) break;
  }
  ASSERT_LT(loaded, lines.size());
  EXPECT_EQ(result.status, BookStatus::TABLE_FULL);
  EXPECT_EQ(UsedEntries(), BOOK_SIZE);
  EXPECT_EQ(current, PositionStack);
  EXPECT_EQ(current->key, InitialPosition().key);

  // With the table full, a line may still end in new positions and add moves in known ones.
  const std::string known = lines[loaded - 1];
  const std::string newEnding = known.substr(0, 15) + "h7h5";
  EXPECT_EQ(Load(newEnding.c_str()), BookStatus::OK);
  EXPECT_EQ(Load((known + " h2h4").c_str()), BookStatus::TABLE_FULL);
  EXPECT_EQ(UsedEntries(), BOOK_SIZE);
}

// A book file read through the engine's line reader.
BookFileResult LoadText(const std::string& text) {
  std::string copy = text;
  FILE* file = fmemopen(copy.data(), copy.size(), "r");
  const BookFileResult result = LoadBookFile(file);
  std::fclose(file);
  return result;
}

// 39 knight moves back and forth, 194 characters.
std::string KnightShuffle() {
  const char* const moves[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
  std::string line = moves[0];
  for (int i = 1; i < 39; ++i) line += std::string(" ") + moves[i % 4];
  return line;
}

TEST_F(BookLoader, BookFileLinesHoldAtMost198Characters) {
  const std::string fits = KnightShuffle() + std::string(4, ' ');
  ASSERT_EQ(fits.size(), 198u);
  BookFileResult result = LoadText(fits + "\n");
  EXPECT_EQ(result.status, BookStatus::OK);
  EXPECT_EQ(EntryMoves(), "g1f3");

  result = LoadText("d2d4\n" + fits + " \ne2e4\n");
  EXPECT_EQ(result.status, BookStatus::BAD_MOVE);
  EXPECT_TRUE(result.lineTooLong);
  EXPECT_EQ(result.lines, 2);
}

TEST_F(BookLoader, BookFileStopsAtTheFirstBadLine) {
  const BookFileResult result = LoadText("e2e4 e7e5\n\n  \ne2e4 e2e5\nd2d4\n");
  EXPECT_EQ(result.status, BookStatus::BAD_MOVE);
  EXPECT_FALSE(result.lineTooLong);
  EXPECT_EQ(result.lines, 4);
  EXPECT_EQ(result.tokenStart, 5);
  EXPECT_EQ(result.tokenLength, 4);
  EXPECT_STREQ(result.line, "e2e4 e2e5");
  EXPECT_EQ(EntryMoves(), "e2e4") << "the line after the bad one is not read";
}

TEST_F(BookLoader, BookFileClearsTheTableAndReadsALastLineWithoutNewline) {
  ASSERT_EQ(Load("c2c4"), BookStatus::OK);
  const BookFileResult result = LoadText("e2e4 e7e5\nd2d4 d7d5");
  EXPECT_EQ(result.status, BookStatus::OK);
  EXPECT_EQ(result.lines, 2);
  EXPECT_EQ(EntryMoves(), "e2e4 d2d4");
  EXPECT_EQ(UsedEntries(), 3);
}

// The shipped book: the engine loads it, and every move of every line is legal where it is played.
TEST_F(BookLoader, TheShippedBookLoadsAndHoldsOnlyLegalMoves) {
  FILE* file = std::fopen(VORLEK_SOURCE_DIR "/Aperture.txt", "r");
  ASSERT_NE(file, nullptr);
  const BookFileResult result = LoadBookFile(file);
  std::fclose(file);
  ASSERT_EQ(result.status, BookStatus::OK) << "line " << result.lines << ": " << result.line;
  EXPECT_GE(UsedEntries(), 250) << "the book should use most of the table";
  EXPECT_EQ(EntryMoves(), "e2e4 d2d4 c2c4 g1f3");

  file = std::fopen(VORLEK_SOURCE_DIR "/Aperture.txt", "r");
  ASSERT_NE(file, nullptr);
  char line[256];
  for (int number = 1; std::fgets(line, sizeof line, file); ++number) {
    line[std::strcspn(line, "\n")] = '\0';
    int plies = 0;
    for (const char* token = std::strtok(line, " "); token; token = std::strtok(nullptr, " ")) {
      const Move move = FindMove(token);
      ASSERT_NE(move, MOVE_NONE) << "line " << number << ": " << token;
      EXPECT_TRUE(IsLegalMove(move)) << "line " << number << ": " << token;
      MakeMove(move);
      ++plies;
    }
    EXPECT_GE(plies, 8) << "line " << number;
    current = PositionStack;
  }
  std::fclose(file);
}

}  // namespace
}  // namespace vorlek::test
