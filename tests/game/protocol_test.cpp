// The xboard protocol as the real engine speaks it on a pipe: handshake, command table, replies,
// results, the game log and the fatal start-up messages, compared byte for byte.
#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>

#include "support/engine_process.h"

namespace vorlek::test {
namespace {

const std::string HANDSHAKE_FAILED = "Errore nell'inizializzatione di XBoard";

std::string ErrorLine(const std::string& line) { return "Error(comando non previsto): " + line + "\n"; }

const std::string NOT_FOUND = "Illegal move(Pezzo non di turno o casa vuota o casa di destinazione non valida): ";
const std::string BAD_PROMOTION = "Illegal move(Valore promozione errato): ";
const std::string LEAVES_CHECK = "Illegal move(Lasciato re sotto scacco): ";

// ---------------------------------------------------------------------------------------------
// Handshake

struct HandshakeCase {
  const char* name;
  std::string input;
  std::string output;
};
std::ostream& operator<<(std::ostream& out, const HandshakeCase& c) { return out << c.name; }

class Handshake : public ::testing::TestWithParam<HandshakeCase> {};

TEST_P(Handshake, PrintsFeatureLineThenGoesOnOrFails) {
  const EngineRun run = RunWithInput(GetParam().input);
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, GetParam().output);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, Handshake,
    ::testing::Values(
        HandshakeCase{"Protover2", "xboard\nprotover 2\n", FEATURE_LINE},
        HandshakeCase{"Protover3", "xboard\nprotover 3\n", FEATURE_LINE},
        HandshakeCase{"Protover2ThenQuit", "xboard\nprotover 2\nquit\n", FEATURE_LINE},
        HandshakeCase{"Protover1", "xboard\nprotover 1\n", FEATURE_LINE + HANDSHAKE_FAILED},
        HandshakeCase{"Protover10", "xboard\nprotover 10\n", FEATURE_LINE + HANDSHAKE_FAILED},
        HandshakeCase{"CarriageReturnAfterXboard", "xboard\r\nprotover 2\n", FEATURE_LINE + HANDSHAKE_FAILED},
        HandshakeCase{"WrongFirstWord", "new\nprotover 2\n", FEATURE_LINE + HANDSHAKE_FAILED},
        HandshakeCase{"CommandsAfterFailureIgnored", "xboard\nprotover 1\nnew\ne2e4\n",
                      FEATURE_LINE + HANDSHAKE_FAILED},
        HandshakeCase{"LongFirstLine", std::string(300, 'x') + "\nprotover 2\n", FEATURE_LINE + HANDSHAKE_FAILED},
        HandshakeCase{"NoInput", "", ""}, HandshakeCase{"InputEndsAfterFirstLine", "xboard\n", ""}),
    [](const auto& info) { return info.param.name; });

// ---------------------------------------------------------------------------------------------
// Fatal start-up messages: the book file

TEST(StartUp, MissingBookEndsTheRunBeforeTheLogIsOpened) {
  const EngineRun run = RunWithInput(HANDSHAKE + "new\ne2e4\n", std::nullopt);
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + "File delle aperture non trovato!\n");
  EXPECT_FALSE(run.log.has_value());
}

// Book lines "w1 b1 w2 g8f6": eight single pawn steps for white's first move, eight black answers,
// eight second white moves (double steps on the other files and a knight move). Every position
// after w1 b1 w2 is new, so a book of n lines asks for this many entries: one for the initial
// position, one per first move, one per first move pair and one per line.
std::string FanOutBook(int lineCount) {
  static const char* const BLACK_ANSWERS[8] = {"a7a5", "b7b6", "c7c5", "d7d6", "e7e5", "f7f5", "g7g6", "h7h5"};
  std::string book;
  int lines = 0;
  for (char first = 'a'; first <= 'h'; ++first) {
    for (const char* answer : BLACK_ANSWERS) {
      for (char second = 'a'; second <= 'h'; ++second) {
        if (lines == lineCount) return book;
        std::string w2 = second == first ? (first == 'f' ? "g1h3" : "g1f3") : std::string{second, '2', second, '4'};
        book += std::string{first, '2', first, '3'} + " " + answer + " " + w2 + " g8f6\n";
        ++lines;
      }
    }
  }
  return book;
}

struct BookFailureCase {
  const char* name;
  std::string book;
  std::string output;  // after the feature line; nothing for a book that loads
};
std::ostream& operator<<(std::ostream& out, const BookFailureCase& c) { return out << c.name; }

class BookFile : public ::testing::TestWithParam<BookFailureCase> {};

TEST_P(BookFile, BadBookEndsTheRunWithItsMessage) {
  const EngineRun run = RunWithInput(HANDSHAKE + "quit\n", GetParam().book);
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + GetParam().output);
}

// Four full first moves (4 x 73 entries) plus one, plus the first of its answers, need 294 entries;
// five more lines make 300, the sixth asks for the 301st.
constexpr int LINES_FOR_300_ENTRIES = 4 * 64 + 5;

INSTANTIATE_TEST_SUITE_P(
    Books, BookFile,
    ::testing::Values(
        BookFailureCase{"BlackMoveFirst", "e7e5\n", "Mossa di apertura non valida!\n"},
        BookFailureCase{"UnreachableSquare", "e2e4 e7e5\ne2e5\n", "Mossa di apertura non valida!\n"},
        BookFailureCase{"ShortToken", "e2e4 e7\n", "Mossa di apertura non valida!\n"},
        BookFailureCase{"NinthMoveInOnePosition",
                        "e2e4 a7a6\ne2e4 b7b6\ne2e4 c7c6\ne2e4 d7d6\ne2e4 e7e6\ne2e4 f7f6\ne2e4 g7g6\ne2e4 h7h6\n"
                        "e2e4 a7a5\n",
                        "Errore nel vettore Aperture, ricerca mossa"},
        BookFailureCase{"EightMovesInOnePositionFit",
                        "e2e4 a7a6\ne2e4 b7b6\ne2e4 c7c6\ne2e4 d7d6\ne2e4 e7e6\ne2e4 f7f6\ne2e4 g7g6\ne2e4 h7h6\n", ""},
        BookFailureCase{"Position301", FanOutBook(LINES_FOR_300_ENTRIES + 1), "Errore nel vettore Aperture"},
        BookFailureCase{"Positions300Fit", FanOutBook(LINES_FOR_300_ENTRIES), ""}),
    [](const auto& info) { return info.param.name; });

// ---------------------------------------------------------------------------------------------
// The command table: lines that are answered with the error line, lines that are silent.
// Each is followed by "new" and white's e2e4, so the reply shows the engine still works.

class UnknownLine : public ::testing::TestWithParam<std::string> {};

TEST_P(UnknownLine, IsAnsweredWithTheErrorLine) {
  const EngineRun run = RunWithInput(HANDSHAKE + GetParam() + "\nnew\ne2e4\n");
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + ErrorLine(GetParam()) + "move e7e5 \n");
}

INSTANTIATE_TEST_SUITE_P(Lines, UnknownLine,
                         ::testing::Values("", "hello", "setboard", "setboard ", "time", "time x", "otim", "level",
                                           "level x", "white", "black", "random", "hard", "easy", "computer", "O-O",
                                           "playother", "accepted usermove", "NEW", "new ", " new", "quit ", "e2",
                                           "i2i4", "e9e4", "protover 2", "xboard"));

class SilentLine : public ::testing::TestWithParam<std::string> {};

TEST_P(SilentLine, GetsNoReply) {
  const EngineRun run = RunWithInput(HANDSHAKE + GetParam() + "\nnew\ne2e4\n");
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + "move e7e5 \n");
}

INSTANTIATE_TEST_SUITE_P(Lines, SilentLine,
                         ::testing::Values("undo", "remove", "draw", "post", "nopost", "force", "new",
                                           "accepted setboard", "accepted playother", "accepted sigint",
                                           "accepted analyze", "accepted colors", "accepted time", "accepted myname",
                                           "accepted done", "time 100", "time -5", "time !", "otim 100", "otim !",
                                           "level 40 0:30 0", "level 40 5 0", "level 0 5 0", "level !"));

// ---------------------------------------------------------------------------------------------
// End of input and lines that do not fit the line buffer

struct InputCase {
  const char* name;
  std::string input;   // after the handshake
  std::string output;  // after the feature line
  std::string log;
};
std::ostream& operator<<(std::ostream& out, const InputCase& c) { return out << c.name; }

class Input : public ::testing::TestWithParam<InputCase> {};

TEST_P(Input, IsReadLineByLine) {
  const EngineRun run = RunWithInput(HANDSHAKE + GetParam().input);
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + GetParam().output);
  EXPECT_EQ(run.log, GetParam().log);
}

const std::string X198(198, 'x');

INSTANTIATE_TEST_SUITE_P(
    Lines, Input,
    ::testing::Values(InputCase{"EndsRightAfterHandshake", "", "", ""}, InputCase{"EndsAfterNew", "new\n", "", ""},
                      // The last move is not acted on twice when the input ends.
                      InputCase{"EndsAfterMove", "e2e4\n", "", "Avversario: e2e4\n"},
                      InputCase{"LastLineWithoutNewlineIsAMove", "new\ne2e4", "move e7e5 \n",
                                "Avversario: e2e4\nVorlek: e7e5 \n"},
                      InputCase{"LastLineWithoutNewlineIsUnknown", "hello", ErrorLine("hello"), ""},
                      InputCase{"QuitWithoutNewline", "new\nquit", "", ""},
                      InputCase{"QuitEndsTheRun", "quit\nnew\ne2e4\n", "", ""},
                      InputCase{"Line300", std::string(300, 'x') + "\nnew\ne2e4\n", ErrorLine(X198) + "move e7e5 \n",
                                "Avversario: e2e4\nVorlek: e7e5 \n"},
                      InputCase{"Line5000", std::string(5000, 'x') + "\nnew\ne2e4\n", ErrorLine(X198) + "move e7e5 \n",
                                "Avversario: e2e4\nVorlek: e7e5 \n"},
                      InputCase{"Line199", std::string(199, 'x') + "\nnew\ne2e4\n", ErrorLine(X198) + "move e7e5 \n",
                                "Avversario: e2e4\nVorlek: e7e5 \n"},
                      InputCase{"Line198IsAWholeLine", X198 + "\n", ErrorLine(X198), ""},
                      // A move of 198 characters is read whole (its fifth is no promotion letter); one character
                      // more makes it a line that does not fit, answered as unknown, and the position stays.
                      InputCase{"Move198", "e2e4" + std::string(194, 'x') + "\n",
                                BAD_PROMOTION + "e2e4" + std::string(194, 'x') + "\n", ""},
                      InputCase{"Move199", "e2e4" + std::string(195, 'x') + "\ne2e4\n",
                                ErrorLine("e2e4" + std::string(194, 'x')), "Avversario: e2e4\n"},
                      InputCase{"LongLineEndingInput", std::string(5000, 'x'), ErrorLine(X198), ""}),
    [](const auto& info) { return info.param.name; });

// ---------------------------------------------------------------------------------------------
// The opponent's moves

struct IllegalMoveCase {
  const char* name;
  std::string before;  // moves accepted first, one per line
  std::string move;
  std::string reply;  // the refusal, before the move text
  std::string after;  // a legal move for the same side, proving the position did not change
};
std::ostream& operator<<(std::ostream& out, const IllegalMoveCase& c) { return out << c.name; }

class IllegalMove : public ::testing::TestWithParam<IllegalMoveCase> {};

TEST_P(IllegalMove, IsRefusedAndThePositionStays) {
  const IllegalMoveCase& c = GetParam();
  std::string log;
  for (size_t start = 0; start < c.before.size();) {
    const size_t end = c.before.find('\n', start);
    log += "Avversario: " + c.before.substr(start, end - start) + "\n";
    start = end + 1;
  }
  const EngineRun run = RunWithInput(HANDSHAKE + c.before + c.move + "\n" + c.after + "\n");
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + c.reply + c.move + "\n");
  EXPECT_EQ(run.log, log + "Avversario: " + c.after + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Moves, IllegalMove,
    ::testing::Values(IllegalMoveCase{"UnreachableSquare", "", "e2e5", NOT_FOUND, "e2e4"},
                      IllegalMoveCase{"BlackPieceOnWhitesTurn", "", "e7e5", NOT_FOUND, "e2e4"},
                      IllegalMoveCase{"EmptySquare", "", "e3e4", NOT_FOUND, "e2e4"},
                      IllegalMoveCase{"OntoOwnPiece", "", "e1e2", NOT_FOUND, "e2e4"},
                      IllegalMoveCase{"CastlingThroughPieces", "", "e1g1", NOT_FOUND, "e2e4"},
                      IllegalMoveCase{"PromotionLetterOnAPawnStep", "", "e2e4q", NOT_FOUND, "e2e4"},
                      IllegalMoveCase{"WhiteOnBlacksTurn", "e2e4\n", "d2d4", NOT_FOUND, "e7e5"},
                      IllegalMoveCase{"TrailingBlank", "", "e2e4 ", BAD_PROMOTION, "e2e4"},
                      IllegalMoveCase{"UpperCasePromotion", "", "e2e4Q", BAD_PROMOTION, "e2e4"},
                      IllegalMoveCase{"KingPromotion", "", "e2e4k", BAD_PROMOTION, "e2e4"},
                      IllegalMoveCase{"PinnedPawn", "e2e4\ne7e5\nd1h5\n", "f7f6", LEAVES_CHECK, "g7g6"},
                      IllegalMoveCase{"KingOntoAttackedSquare", "e2e4\nf7f5\nd1h5\n", "e8f7", LEAVES_CHECK, "g7g6"},
                      IllegalMoveCase{"NotAnsweringCheck", "e2e4\nf7f6\nd1h5\n", "a7a6", LEAVES_CHECK, "g7g6"}),
    [](const auto& info) { return info.param.name; });

struct PlayCase {
  const char* name;
  std::string book;
  std::string input;   // after the handshake
  std::string output;  // after the feature line
  std::string log;
};
std::ostream& operator<<(std::ostream& out, const PlayCase& c) { return out << c.name; }

class Play : public ::testing::TestWithParam<PlayCase> {};

TEST_P(Play, EngineMovesOnlyWhenItIsItsTurn) {
  const EngineRun run = RunWithInput(HANDSHAKE + GetParam().input, GetParam().book);
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + GetParam().output);
  EXPECT_EQ(run.log, GetParam().log);
}

const std::string FOOLS_MATE = "f2f3\ne7e5\ng2g4\nd8h4\n";
const std::string FOOLS_MATE_LOG =
    "Avversario: f2f3\nAvversario: e7e5\nAvversario: g2g4\nAvversario: d8h4\n0-1 {vince il nero}\n";
const std::string FOOLS_BOOK = "f2f3 e7e5 g2g4 d8h4\n";
const std::string FOOLS_GAME_LOG =
    "Avversario: f2f3\nVorlek: e7e5 \nAvversario: g2g4\nVorlek: d8h4 \n0-1 {vince il nero}\n";

INSTANTIATE_TEST_SUITE_P(
    Games, Play,
    ::testing::Values(
        // Before "new" the engine plays neither side.
        PlayCase{"NoAnswerBeforeNew", SMALL_BOOK, "e2e4\ne7e5\n", "", "Avversario: e2e4\nAvversario: e7e5\n"},
        PlayCase{"NewMakesEngineBlack", SMALL_BOOK, "new\ne2e4\n", "move e7e5 \n", "Avversario: e2e4\nVorlek: e7e5 \n"},
        PlayCase{"ForceStopsTheEngine", SMALL_BOOK, "new\nforce\ne2e4\ne7e5\n", "",
                 "Avversario: e2e4\nAvversario: e7e5\n"},
        PlayCase{"GoPlaysTheSideToMove", "e2e4 e7e5 g1f3\n", "new\nforce\ne2e4\ne7e5\ngo\n", "move g1f3 \n",
                 "Avversario: e2e4\nAvversario: e7e5\nVorlek: g1f3 \n"},
        PlayCase{"GoAtStartPlaysWhite", "e2e4 e7e5 g1f3\n", "go\ne7e5\n", "move e2e4 \nmove g1f3 \n",
                 "Vorlek: e2e4 \nAvversario: e7e5\nVorlek: g1f3 \n"},
        PlayCase{"CastlingTypedAsKingMove", "e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 e1g1 f8c5\n",
                 "new\ne2e4\ng1f3\nf1c4\ne1g1\n", "move e7e5 \nmove b8c6 \nmove g8f6 \nmove f8c5 \n",
                 "Avversario: e2e4\nVorlek: e7e5 \nAvversario: g1f3\nVorlek: b8c6 \nAvversario: f1c4\n"
                 "Vorlek: g8f6 \nAvversario: e1g1\nVorlek: f8c5 \n"},
        // Results, typed in force mode.
        PlayCase{"FoolsMate", SMALL_BOOK, FOOLS_MATE, "0-1 {vince il nero}\n", FOOLS_MATE_LOG},
        PlayCase{"ScholarsMate", SMALL_BOOK, "e2e4\ne7e5\nf1c4\nb8c6\nd1h5\ng8f6\nh5f7\n", "1-0 {vince il bianco}\n",
                 "Avversario: e2e4\nAvversario: e7e5\nAvversario: f1c4\nAvversario: b8c6\nAvversario: d1h5\n"
                 "Avversario: g8f6\nAvversario: h5f7\n1-0 {vince il bianco}\n"},
        PlayCase{"Stalemate", SMALL_BOOK, "setboard 7k/8/6Q1/8/8/8/8/K7 w - - 0 1\ng6f7\n",
                 "1/2-1/2 {pari per stallo}\n", "Avversario: g6f7\n1/2-1/2 {pari per stallo}\n"},
        PlayCase{"ThirdOccurrence", SMALL_BOOK, "g1f3\ng8f6\nf3g1\nf6g8\ng1f3\ng8f6\nf3g1\nf6g8\n",
                 "1/2-1/2 {pari per ripetizione}\n",
                 "Avversario: g1f3\nAvversario: g8f6\nAvversario: f3g1\nAvversario: f6g8\n"
                 "Avversario: g1f3\nAvversario: g8f6\nAvversario: f3g1\nAvversario: f6g8\n"
                 "1/2-1/2 {pari per ripetizione}\n"},
        PlayCase{"FiftyMoves", SMALL_BOOK, "setboard 7k/8/8/8/8/8/8/K6R w - - 99 80\nh1h2\n",
                 "1/2-1/2 {pari 50 mosse}\n", "Avversario: h1h2\n1/2-1/2 {pari 50 mosse}\n"},
        PlayCase{"NinetyNinePliesAreNotFifty", SMALL_BOOK, "setboard 7k/8/8/8/8/8/8/K6R w - - 98 80\nh1h2\n", "",
                 "Avversario: h1h2\n"},
        // A position set up as finished is not announced.
        PlayCase{"SetboardDoesNotJudge", SMALL_BOOK, "setboard 7k/5Q2/8/8/8/8/8/K7 b - - 0 1\n", "", ""},
        // After a result the engine does not move until "new".
        PlayCase{"NoMoveAfterResult", SMALL_BOOK, FOOLS_MATE + "go\n", "0-1 {vince il nero}\n", FOOLS_MATE_LOG},
        PlayCase{"NewClearsResult", SMALL_BOOK, FOOLS_MATE + "go\nnew\ne2e4\n", "0-1 {vince il nero}\nmove e7e5 \n",
                 FOOLS_MATE_LOG + "Avversario: e2e4\nVorlek: e7e5 \n"},
        // The engine's move ends the game; a second game's lines follow the first's in the same log.
        PlayCase{"EngineMates", FOOLS_BOOK, "new\nf2f3\ng2g4\n", "move e7e5 \nmove d8h4 \n0-1 {vince il nero}\n",
                 FOOLS_GAME_LOG},
        PlayCase{"TwoGamesOneLog", FOOLS_BOOK, "new\nf2f3\ng2g4\nnew\nf2f3\ng2g4\n",
                 "move e7e5 \nmove d8h4 \n0-1 {vince il nero}\nmove e7e5 \nmove d8h4 \n0-1 {vince il nero}\n",
                 FOOLS_GAME_LOG + FOOLS_GAME_LOG}),
    [](const auto& info) { return info.param.name; });

// ---------------------------------------------------------------------------------------------
// Moves found by searching, with clocks so small that one iteration is all there is time for.

struct SearchCase {
  const char* name;
  const char* fen;
  std::string move;    // the reply line, which must end the output
  std::string result;  // the result line that follows it, if any
};
std::ostream& operator<<(std::ostream& out, const SearchCase& c) { return out << c.name; }

class SearchedMove : public ::testing::TestWithParam<SearchCase> {};

TEST_P(SearchedMove, IsPrintedAfterTheThinkingLines) {
  const SearchCase& c = GetParam();
  const EngineRun run = RunWithInput(HANDSHAKE + "setboard " + c.fen + "\ntime 10\notim 10\ngo\n");
  ExpectCleanExit(run);
  const std::string tail = "\nmove " + c.move + "\n" + c.result;
  ASSERT_GT(run.output.size(), FEATURE_LINE.size() + tail.size());
  EXPECT_EQ(run.output.substr(0, FEATURE_LINE.size()), FEATURE_LINE);
  EXPECT_EQ(run.output.substr(run.output.size() - tail.size()), tail);
  // The thinking lines go to the log too, before the engine's move.
  ASSERT_TRUE(run.log.has_value());
  const std::string logTail = "\nVorlek: " + c.move + "\n" + c.result;
  ASSERT_GT(run.log->size(), logTail.size());
  EXPECT_EQ(run.log->substr(run.log->size() - logTail.size()), logTail);
}

INSTANTIATE_TEST_SUITE_P(Positions, SearchedMove,
                         ::testing::Values(SearchCase{"OnlyLegalMove", "k7/8/8/8/8/8/1r6/K7 w - - 0 1", "a1b2 ", ""},
                                           SearchCase{"PromotionLetter", "k7/2P5/8/8/8/8/8/7K w - - 0 1", "c7c8q", ""},
                                           SearchCase{"BlackOnlyLegalMove", "7k/6R1/8/8/8/8/8/K7 b - - 0 1", "h8g7 ",
                                                      ""}),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace vorlek::test
