// The engine at its limits, through the real binary: games longer than the position stack, set-ups no
// game can reach, a full book table, absurd clocks and input cut short. Every run must
// end by itself with status 0 and leave no sanitizer report.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/engine_process.h"

namespace {

using vorlek::test::EngineRun;
using vorlek::test::ExpectCleanExit;
using vorlek::test::FEATURE_LINE;
using vorlek::test::HANDSHAKE;

// Clocks of a few centiseconds: one or two quick iterations per move.
const std::string SHORT_CLOCKS = "time 5\notim 5\n";

// Runs the engine with `input`; the book holds only `book` (by default nothing, so every move is searched).
EngineRun RunEngine(const std::string& input, const std::string& book = "") {
  return vorlek::test::RunWithInput(input, book);
}

int CountLines(const std::string& out, const std::string& line) {
  int n = 0;
  std::istringstream lines(out);
  for (std::string l; std::getline(lines, l);) n += l == line;
  return n;
}

std::vector<std::string> MoveLines(const std::string& out) {
  std::vector<std::string> moves;
  std::istringstream lines(out);
  for (std::string l; std::getline(lines, l);) {
    if (l.rfind("move ", 0) == 0) moves.push_back(l);
  }
  return moves;
}

bool HasResultLine(const std::string& out) {
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);) {
    for (const char* result : {"1-0 {", "0-1 {", "1/2-1/2 {"}) {
      if (line.rfind(result, 0) == 0 && line.back() == '}') return true;
    }
  }
  return false;
}

// Every "move" line is a move in coordinates: "move " then four characters and a promotion or a blank.
void ExpectWellFormedMoves(const std::vector<std::string>& moves) {
  for (const std::string& m : moves) {
    const bool wellFormed = m.size() == 10 && m.rfind("move ", 0) == 0 && m[5] >= 'a' && m[5] <= 'h' && m[6] >= '1' &&
                            m[6] <= '8' && m[7] >= 'a' && m[7] <= 'h' && m[8] >= '1' && m[8] <= '8' &&
                            std::string("nbrq ").find(m[9]) != std::string::npos;
    EXPECT_TRUE(wellFormed) << m;
  }
}

// A game far longer than the 600 records of the position stack, typed in force mode: the knights go out
// and back, which repeats the start position every four plies, and the fifty-move count climbs past 100
// and wraps. Every move is accepted; the results are announced and the game goes on; a pawn move ends the
// draw and "go" makes the engine move.
TEST(Stress, GameLongerThanThePositionStack) {
  std::string input = HANDSHAKE + "new\nforce\n";
  const int cycles = 200;  // 800 plies
  for (int i = 0; i < cycles; ++i) input += "g1f3\ng8f6\nf3g1\nf6g8\n";
  input += "e2e4\n" + SHORT_CLOCKS + "go\nquit\n";
  const EngineRun run = RunEngine(input);
  ExpectCleanExit(run);
  EXPECT_EQ(run.output.find("Illegal move"), std::string::npos);
  EXPECT_GT(CountLines(run.output, "1/2-1/2 {pari per ripetizione}"), 0);
  EXPECT_GT(CountLines(run.output, "1/2-1/2 {pari 50 mosse}"), 0);
  const std::vector<std::string> moves = MoveLines(run.output);
  ASSERT_EQ(moves.size(), 1u) << run.output;
  ExpectWellFormedMoves(moves);
}

// The engine playing both sides of a long game by itself: every "go" makes one move, and the game's
// history is slid down the stack many times over.
TEST(Stress, EngineKeepsPlayingPastTheStackSize) {
  std::string input = HANDSHAKE + "new\nforce\n";
  for (int i = 0; i < 150; ++i) input += "g1f3\ng8f6\nf3g1\nf6g8\n";  // 600 plies
  input += "e2e4\ne7e5\n" + SHORT_CLOCKS;
  for (int i = 0; i < 8; ++i) input += "go\n";
  input += "quit\n";
  const EngineRun run = RunEngine(input);
  ExpectCleanExit(run);
  const std::vector<std::string> moves = MoveLines(run.output);
  EXPECT_GE(moves.size(), 1u) << run.output;
  ExpectWellFormedMoves(moves);
}

// Thirty queens: the capture sequences of the first iteration alone would run for hours. The search is
// abandoned at its emergency deadline and the engine still plays a legal move.
TEST(Stress, ExplodingCaptureSequencesStillGiveAMove) {
  const EngineRun run = RunEngine(HANDSHAKE + "setboard QQQQQQQQ/QQQQQQQQ/8/8/8/8/qqqqqqqq/qqqqqqqk w - - 0 1\n" +
                                  SHORT_CLOCKS + "go\nquit\n");
  ExpectCleanExit(run);
  const std::vector<std::string> moves = MoveLines(run.output);
  ASSERT_EQ(moves.size(), 1u) << run.output;
  ExpectWellFormedMoves(moves);
}

// Set-ups no game can reach, each searched by "go" four times over (the engine then plays both sides).
struct SetUpCase {
  const char* name;
  const char* fen;
};
std::ostream& operator<<(std::ostream& out, const SetUpCase& c) { return out << c.name; }

class UnreachableSetUps : public ::testing::TestWithParam<SetUpCase> {};

TEST_P(UnreachableSetUps, EngineMovesLegallyAndGoesOn) {
  const EngineRun run =
      RunEngine(HANDSHAKE + "setboard " + GetParam().fen + "\n" + SHORT_CLOCKS + "go\ngo\ngo\ngo\nquit\n");
  ExpectCleanExit(run);
  // How far the search looks depends on the machine's speed, so the game may end earlier (a side left
  // without men or moves), but then with a result line.
  const std::vector<std::string> moves = MoveLines(run.output);
  EXPECT_GE(moves.size(), 1u) << run.output;
  EXPECT_TRUE(moves.size() == 4u || HasResultLine(run.output)) << run.output;
  ExpectWellFormedMoves(moves);
}

INSTANTIATE_TEST_SUITE_P(
    Stress, UnreachableSetUps,
    ::testing::Values(SetUpCase{"NoKings", "8/8/3q4/8/8/4Q3/8/8 w - - 0 1"},
                      SetUpCase{"NoBlackKing", "8/8/2n5/8/8/8/8/4K2R w K - 0 1"},
                      SetUpCase{"TwoWhiteKings", "k7/8/8/8/8/8/8/K6K w - - 0 1"},
                      SetUpCase{"TwoKingsEachSide", "k6k/8/8/8/8/8/8/K6K b - - 0 1"},
                      SetUpCase{"FortyEightMen",
                                "rnbqkbnr/pppppppp/pppppppp/8/8/PPPPPPPP/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
                      // 56 captures: every pawn takes a knight on either side with four promotions.
                      SetUpCase{"FiftySixCaptures", "nnnnnnnn/PPPPPPPP/8/8/8/8/8/K6k w - - 0 1"},
                      // 66 captures for sixteen queens among sixteen pawns.
                      SetUpCase{"SixtySixCaptures", "QQQQQQQQ/pppppppp/QQQQQQQQ/pppppppp/8/8/8/K6k w - - 0 1"},
                      SetUpCase{"EightQueensEachSide", "qqqqkqqq/8/8/8/8/8/8/QQQQKQQQ w - - 0 1"},
                      SetUpCase{"PawnsOnTheBackRanks", "P3k2P/8/8/8/8/8/8/p3K2p w - - 0 1"},
                      SetUpCase{"CastlingRightsWithoutRooks", "4k3/8/8/8/8/8/8/4K3 w KQkq - 0 1"},
                      SetUpCase{"CastlingRightsWithoutKings", "r6r/8/8/8/8/8/8/R6R b KQkq - 0 1"},
                      SetUpCase{"EnPassantFileWithoutPawn", "4k3/8/8/3P4/8/8/8/4K3 w - e6 0 1"}),
    [](const ::testing::TestParamInfo<SetUpCase>& info) { return std::string(info.param.name); });

// Rights or an en-passant file that the pieces do not back up give no move: the typed move is not found.
struct PhantomMoveCase {
  const char* name;
  const char* fen;
  const char* move;
};
std::ostream& operator<<(std::ostream& out, const PhantomMoveCase& c) { return out << c.name; }

class PhantomMoves : public ::testing::TestWithParam<PhantomMoveCase> {};

TEST_P(PhantomMoves, AreRefusedAsNotFound) {
  const EngineRun run = RunEngine(HANDSHAKE + "setboard " + GetParam().fen + "\n" + GetParam().move + "\nquit\n");
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE +
                            "Illegal move(Pezzo non di turno o casa vuota o casa di destinazione non valida): " +
                            GetParam().move + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Stress, PhantomMoves,
    ::testing::Values(PhantomMoveCase{"KingSideWithoutRook", "4k3/8/8/8/8/8/8/4K3 w KQkq - 0 1", "e1g1"},
                      PhantomMoveCase{"QueenSideWithoutRook", "4k3/8/8/8/8/8/8/4K3 w KQkq - 0 1", "e1c1"},
                      PhantomMoveCase{"BlackWithoutRook", "4k3/8/8/8/8/8/8/4K3 b KQkq - 0 1", "e8g8"},
                      PhantomMoveCase{"RookWithoutKing", "r3k2r/8/8/8/8/8/8/R6R w KQkq - 0 1", "e1g1"},
                      PhantomMoveCase{"EnPassantWithoutPawn", "4k3/8/8/3P4/8/8/8/4K3 w - e6 0 1", "d5e6"},
                      PhantomMoveCase{"EnPassantOntoOwnPiece", "4k3/8/4N3/3PP3/8/8/8/4K3 w - e6 0 1", "d5e6"}),
    [](const ::testing::TestParamInfo<PhantomMoveCase>& info) { return std::string(info.param.name); });

// A book of exactly `positions` positions (at most 8 + 64 + 512 + 1) whose root holds eight moves. White's
// first moves use the a, b, g and h pawns, white's second moves the c, d, e and f pawns, so no two move
// orders reach the same position: the root, 8 positions after white's first move, 64 after black's reply
// (each line continues) and positions - 73 after white's second move (each answered by g8f6).
const char* const FIRST_MOVES[8] = {"a2a3", "a2a4", "b2b3", "b2b4", "g2g3", "g2g4", "h2h3", "h2h4"};
const char* const REPLIES[8] = {"a7a6", "a7a5", "b7b6", "b7b5", "g7g6", "g7g5", "h7h6", "h7h5"};
const char* const SECOND_MOVES[8] = {"c2c3", "c2c4", "d2d3", "d2d4", "e2e3", "e2e4", "f2f3", "f2f4"};

std::string BookOfPositions(int positions) {
  const int afterSecondMove = positions - 1 - 8 - 64;
  std::string book;
  for (int k = 0; k * 64 < afterSecondMove; ++k) {
    for (int pair = 0; pair < 64 && k * 64 + pair < afterSecondMove; ++pair) {
      book += std::string(FIRST_MOVES[pair / 8]) + " " + REPLIES[pair % 8] + " " + SECOND_MOVES[k] + " g8f6\n";
    }
  }
  return book;
}

TEST(Stress, BookOfThreeHundredPositionsLoadsAndIsPlayed) {
  const std::string book = BookOfPositions(300);
  const EngineRun run = RunEngine(HANDSHAKE + "new\ngo\nquit\n", book);
  ExpectCleanExit(run);
  // The book move comes without a thinking line: the output is the feature line and the move.
  const std::vector<std::string> moves = MoveLines(run.output);
  ASSERT_EQ(moves.size(), 1u) << run.output;
  EXPECT_EQ(run.output, FEATURE_LINE + moves[0] + "\n");
  bool fromBook = false;
  for (const char* first : FIRST_MOVES) fromBook = fromBook || moves[0] == std::string("move ") + first + " ";
  EXPECT_TRUE(fromBook) << moves[0];
}

// Clocks and controls no interface sends on purpose: the engine still makes exactly one move.
struct ClockCase {
  const char* name;
  const char* commands;
};
std::ostream& operator<<(std::ostream& out, const ClockCase& c) { return out << c.name; }

class AbsurdClocks : public ::testing::TestWithParam<ClockCase> {};

TEST_P(AbsurdClocks, EngineStillMovesOnce) {
  const EngineRun run = RunEngine(HANDSHAKE + "new\n" + GetParam().commands + "go\nquit\n");
  ExpectCleanExit(run);
  const std::vector<std::string> moves = MoveLines(run.output);
  ASSERT_EQ(moves.size(), 1u) << run.output;
  ExpectWellFormedMoves(moves);
}

INSTANTIATE_TEST_SUITE_P(Stress, AbsurdClocks,
                         ::testing::Values(ClockCase{"TimeZero", "time 0\notim 0\n"},
                                           ClockCase{"TimeNegative", "time -100\notim 5\n"},
                                           ClockCase{"OpponentTimeNegative", "time 1\notim -1\n"},
                                           ClockCase{"TimeBelowIntRange", "time -99999999999\notim 5\n"},
                                           ClockCase{"LevelZero", "level 0 0 0\ntime 10\notim 10\n"},
                                           ClockCase{"LevelNegative", "level -5 1 0\ntime 10\notim 10\n"},
                                           ClockCase{"LevelBelowIntRange", "level -99999999999 1 0\ntime 10\n"},
                                           ClockCase{"LevelOneMove", "level 1 0:01 0\ntime 0\n"}),
                         [](const ::testing::TestParamInfo<ClockCase>& info) { return std::string(info.param.name); });

// Input that stops in the middle of a line: the part read is a whole line, then the run ends quietly.
struct CutInputCase {
  const char* name;
  std::string input;
  bool oneMove;          // the output holds one "move" line (a search's output is not compared)
  std::string expected;  // otherwise the whole output
};
std::ostream& operator<<(std::ostream& out, const CutInputCase& c) { return out << c.name; }

class CutInput : public ::testing::TestWithParam<CutInputCase> {};

TEST_P(CutInput, LastPartIsALine) {
  const EngineRun run = RunEngine(GetParam().input);
  ExpectCleanExit(run);
  if (GetParam().oneMove) {
    EXPECT_EQ(MoveLines(run.output).size(), 1u) << run.output;
  } else {
    EXPECT_EQ(run.output, GetParam().expected);
  }
}

INSTANTIATE_TEST_SUITE_P(Stress, CutInput,
                         ::testing::Values(CutInputCase{"AfterGo", HANDSHAKE + "new\n" + SHORT_CLOCKS + "go", true, ""},
                                           CutInputCase{"InTheHandshake", "xboard\nprot", false,
                                                        FEATURE_LINE + "Errore nell'inizializzatione di XBoard"},
                                           CutInputCase{"AfterTheFirstHandshakeLine", "xboard\n", false, ""}),
                         [](const ::testing::TestParamInfo<CutInputCase>& info) {
                           return std::string(info.param.name);
                         });

}  // namespace
