// The xboard protocol as the real engine speaks it on a pipe: handshake, command table, replies,
// results, the game log and the fatal book messages, compared byte for byte.
#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <regex>
#include <set>
#include <string>
#include <tuple>

#include "support/engine_process.h"

namespace vorlek::test {
namespace {

const std::string FEATURE_LINE =
    "feature setboard=1 playother=1 sigint=0 analyze=0 colors=0 time=1 myname=\"Vorlek\" done=1\n";
std::string ErrorLine(const std::string& line) { return "Error(comando non previsto): " + line + "\n"; }

const std::string HANDSHAKE_FAILED = FEATURE_LINE + "Errore nell'inizializzatione di XBoard";
const std::string BAD_BOOK = "Mossa di apertura non valida!\n";
const std::string NOT_FOUND = "Illegal move(Pezzo non di turno o casa vuota o casa di destinazione non valida): ";
const std::string BAD_PROMOTION = "Illegal move(Valore promozione errato): ";
const std::string LEAVES_CHECK = "Illegal move(Lasciato re sotto scacco): ";

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
    ::testing::Values(HandshakeCase{"Protover2", "xboard\nprotover 2\n", FEATURE_LINE},
                      HandshakeCase{"CarriageReturnAfterXboard", "xboard\r\nprotover 2\n", HANDSHAKE_FAILED},
                      HandshakeCase{"WrongFirstWord", "new\nprotover 2\n", HANDSHAKE_FAILED},
                      HandshakeCase{"CommandsAfterFailureIgnored", "xboard\nprotover 1\nnew\ne2e4\n", HANDSHAKE_FAILED},
                      HandshakeCase{"NoInput", "", ""}, HandshakeCase{"InputEndsAfterFirstLine", "xboard\n", ""}),
    [](const auto& info) { return info.param.name; });

// Lines answered with the error line (true) and lines without a reply (false). Each is followed by "new"
// and white's e2e4, so the reply shows the engine still works.
class CommandLine : public ::testing::TestWithParam<std::tuple<std::string, bool>> {};

TEST_P(CommandLine, IsAnsweredOnlyWhenUnknown) {
  const auto& [line, unknown] = GetParam();
  const EngineRun run = RunWithInput(HANDSHAKE + line + "\nnew\ne2e4\n");
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + (unknown ? ErrorLine(line) : "") + "move e7e5 \n");
}

INSTANTIATE_TEST_SUITE_P(Unknown, CommandLine,
                         ::testing::Combine(::testing::Values("", "hello", "setboard", "setboard  ", "time x",
                                                              "level x", "white", "NEW", "new ", " new", "quit ", "e2",
                                                              "i2i4", "e2e9"),
                                            ::testing::Values(true)));
INSTANTIATE_TEST_SUITE_P(Silent, CommandLine,
                         ::testing::Combine(::testing::Values("undo", "remove", "draw", "post", "force",
                                                              "accepted setboard", "accepted done", "time -5", "time !",
                                                              "otim 100", "level 40 0:30 0", "level !"),
                                            ::testing::Values(false)));

// Book lines "w1 b1 w2 g8f6" (w1 a single pawn step, w2 a double step on another file or a knight move)
// where every position after w2 is new: n lines ask for an entry for the initial position, one per
// first move, one per first move pair and one per line.
std::string FanOutBook(int lineCount) {
  static const char* const BLACK_ANSWERS[8] = {"a7a5", "b7b6", "c7c5", "d7d6", "e7e5", "f7f5", "g7g6", "h7h5"};
  std::string book;
  for (int line = 0; line < lineCount; ++line) {
    const char first = static_cast<char>('a' + line / 64), second = static_cast<char>('a' + line % 8);
    const std::string w2 = second == first ? (first == 'f' ? "g1h3" : "g1f3") : std::string{second, '2', second, '4'};
    book += std::string{first, '2', first, '3'} + " " + BLACK_ANSWERS[line / 8 % 8] + " " + w2 + " g8f6\n";
  }
  return book;
}

// Four full first moves (4 x 73 entries), one more and its first answer take 294 entries, five lines 300.
constexpr int LINES_FOR_300_ENTRIES = 4 * 64 + 5;

struct SessionCase {
  const char* name;
  std::string input;   // after the handshake
  std::string output;  // after the feature line
  std::optional<std::string> log = "";
  std::optional<std::string> book = SMALL_BOOK;
};
std::ostream& operator<<(std::ostream& out, const SessionCase& c) { return out << c.name; }

class Session : public ::testing::TestWithParam<SessionCase> {};

TEST_P(Session, OutputAndLog) {
  const EngineRun run = RunWithInput(HANDSHAKE + GetParam().input, GetParam().book);
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + GetParam().output);
  EXPECT_EQ(run.log, GetParam().log);
}

const std::string X198(198, 'x');
const std::string OPENING_LOG = "Avversario: e2e4\nVorlek: e7e5 \n";
const std::string FOOLS_MATE = "f2f3\ne7e5\ng2g4\nd8h4\n";
const std::string FOOLS_MATE_LOG =
    "Avversario: f2f3\nAvversario: e7e5\nAvversario: g2g4\nAvversario: d8h4\n0-1 {vince il nero}\n";
const std::string FOOLS_GAME_LOG =
    "Avversario: f2f3\nVorlek: e7e5 \nAvversario: g2g4\nVorlek: d8h4 \n0-1 {vince il nero}\n";
const std::string EIGHT_ANSWERS =
    "e2e4 a7a6\ne2e4 b7b6\ne2e4 c7c6\ne2e4 d7d6\ne2e4 e7e6\ne2e4 f7f6\ne2e4 g7g6\ne2e4 h7h6\n";

INSTANTIATE_TEST_SUITE_P(
    Lines, Session,
    ::testing::Values(
        // Input read line by line: the end of input, lines without a newline, lines too long for the buffer.
        SessionCase{"EndsAfterMove", "e2e4\n", "", "Avversario: e2e4\n"},
        SessionCase{"LastLineWithoutNewlineIsAMove", "new\ne2e4", "move e7e5 \n", OPENING_LOG},
        SessionCase{"QuitEndsTheRun", "quit\nnew\ne2e4\n", ""},
        SessionCase{"Line300", std::string(300, 'x') + "\nnew\ne2e4\n", ErrorLine(X198) + "move e7e5 \n", OPENING_LOG},
        SessionCase{"Line199", std::string(199, 'x') + "\nnew\ne2e4\n", ErrorLine(X198) + "move e7e5 \n", OPENING_LOG},
        SessionCase{"Line198IsAWholeLine", X198 + "\n", ErrorLine(X198)},
        // A move of 198 characters is read whole: its fifth character is no promotion letter.
        SessionCase{"Move198", "e2e4" + std::string(194, 'x') + "\n",
                    BAD_PROMOTION + "e2e4" + std::string(194, 'x') + "\n"},
        // Refused moves; the legal move after each shows that the position stayed.
        SessionCase{"UnreachableSquare", "e2e5\ne2e4\n", NOT_FOUND + "e2e5\n", "Avversario: e2e4\n"},
        SessionCase{"WhiteOnBlacksTurn", "e2e4\nd2d4\ne7e5\n", NOT_FOUND + "d2d4\n",
                    "Avversario: e2e4\nAvversario: e7e5\n"},
        SessionCase{"TrailingBlank", "e2e4 \ne2e4\n", BAD_PROMOTION + "e2e4 \n", "Avversario: e2e4\n"},
        SessionCase{"PinnedPawn", "e2e4\ne7e5\nd1h5\nf7f6\ng7g6\n", LEAVES_CHECK + "f7f6\n",
                    "Avversario: e2e4\nAvversario: e7e5\nAvversario: d1h5\nAvversario: g7g6\n"},
        // The engine moves only when it is its turn: not before "new", not in force mode.
        SessionCase{"NoAnswerBeforeNew", "e2e4\ne7e5\n", "", "Avversario: e2e4\nAvversario: e7e5\n"},
        SessionCase{"ForceStopsTheEngine", "new\nforce\ne2e4\ne7e5\n", "", "Avversario: e2e4\nAvversario: e7e5\n"},
        SessionCase{"GoPlaysTheSideToMove", "new\nforce\ne2e4\ne7e5\ngo\n", "move g1f3 \n",
                    "Avversario: e2e4\nAvversario: e7e5\nVorlek: g1f3 \n", "e2e4 e7e5 g1f3\n"},
        SessionCase{"GoAtStartPlaysWhite", "go\ne7e5\n", "move e2e4 \nmove g1f3 \n",
                    "Vorlek: e2e4 \nAvversario: e7e5\nVorlek: g1f3 \n", "e2e4 e7e5 g1f3\n"},
        // Results, typed in force mode.
        SessionCase{"FoolsMate", FOOLS_MATE, "0-1 {vince il nero}\n", FOOLS_MATE_LOG},
        SessionCase{"ScholarsMate", "e2e4\ne7e5\nf1c4\nb8c6\nd1h5\ng8f6\nh5f7\n", "1-0 {vince il bianco}\n",
                    "Avversario: e2e4\nAvversario: e7e5\nAvversario: f1c4\nAvversario: b8c6\nAvversario: d1h5\n"
                    "Avversario: g8f6\nAvversario: h5f7\n1-0 {vince il bianco}\n"},
        SessionCase{"Stalemate", "setboard 7k/8/6Q1/8/8/8/8/K7 w - - 0 1\ng6f7\n", "1/2-1/2 {pari per stallo}\n",
                    "Avversario: g6f7\n1/2-1/2 {pari per stallo}\n"},
        // A position set up as finished is not announced.
        SessionCase{"SetboardDoesNotJudge", "setboard 7k/5Q2/8/8/8/8/8/K7 b - - 0 1\n", ""},
        // After a result the engine does not move until "new".
        SessionCase{"NewClearsResult", FOOLS_MATE + "go\nnew\ngo\n", "0-1 {vince il nero}\nmove e2e4 \n",
                    FOOLS_MATE_LOG + "Vorlek: e2e4 \n"},
        // The engine's move ends the game; a second game's lines follow the first's in the same log.
        SessionCase{"TwoGamesOneLog", "new\nf2f3\ng2g4\nnew\nf2f3\ng2g4\n",
                    "move e7e5 \nmove d8h4 \n0-1 {vince il nero}\nmove e7e5 \nmove d8h4 \n0-1 {vince il nero}\n",
                    FOOLS_GAME_LOG + FOOLS_GAME_LOG, "f2f3 e7e5 g2g4 d8h4\n"},
        // A missing or bad book ends the run with its message before the log is opened.
        SessionCase{"MissingBook", "new\ne2e4\n", "File delle aperture non trovato!\n", std::nullopt, std::nullopt},
        SessionCase{"BookBlackMoveFirst", "quit\n", BAD_BOOK, std::nullopt, "e7e5\n"},
        SessionCase{"BookShortToken", "quit\n", BAD_BOOK, std::nullopt, "e2e4 e7\n"},
        SessionCase{"BookEightMovesInOnePositionFit", "quit\n", "", "", EIGHT_ANSWERS},
        SessionCase{"BookLine198Fits", "quit\n", "", "", std::string(189, ' ') + "e2e4 e7e5\n"},
        SessionCase{"BookLine199", "quit\n", BAD_BOOK, std::nullopt, std::string(190, ' ') + "e2e4 e7e5\n"},
        SessionCase{"BookNinthMoveInOnePosition", "quit\n", "Errore nel vettore Aperture, ricerca mossa", std::nullopt,
                    EIGHT_ANSWERS + "e2e4 a7a5\n"},
        SessionCase{"BookPosition301", "quit\n", "Errore nel vettore Aperture", std::nullopt,
                    FanOutBook(LINES_FOR_300_ENTRIES + 1)}),
    [](const auto& info) { return info.param.name; });

// A book of 300 positions loads, and the engine's first move is one of the book's first moves, chosen
// without a search (no thinking line).
TEST(Book, FullTableLoadsAndTheFirstMoveComesFromIt) {
  const EngineRun run = RunWithInput(HANDSHAKE + "new\ngo\n", FanOutBook(LINES_FOR_300_ENTRIES));
  ExpectCleanExit(run);
  bool fromBook = false;
  for (char file = 'a'; file <= 'e'; ++file)
    fromBook |= run.output == FEATURE_LINE + "move " + file + "2" + file + "3 \n";
  EXPECT_TRUE(fromBook) << run.output;
}

// The time column of thinking lines ("%5d%02d" after the depth and the score) replaced by "TIME".
std::string WithoutTimes(const std::string& output) {
  return std::regex_replace(output, std::regex("^( .{10}).{7}", std::regex::multiline), "$1TIME");
}

// The generators take the kings from the planes type1 and type2 alone, as the check test does: after the
// book's moves on a refused set-up, the man of code 7 on g1 moves as a king, and the engine plays on
// instead of declaring a mate that is not one.
TEST(Search, ManOfCodeSevenMovesAsAKing) {
  std::string input = HANDSHAKE +
                      "force\nsetboard r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq a3 0 1\ntime 0\n"
                      "otim 0\n";
  for (int i = 0; i < 10; ++i) input += "go\n";
  const EngineRun run = RunWithInput(input, "d2d4 g8f6 c2c4 g7g6 g1f3 f8g7 g2g3 e8g8 f1g2\n");
  ExpectCleanExit(run);
  EXPECT_EQ(WithoutTimes(run.output), FEATURE_LINE +
                                          "move d2d4 \nmove g8f6 \nmove c2c4 \nmove g7g6 \nmove g1f3 \nmove f8g7 \n"
                                          "move g2g3 \nmove e8g8 \nmove f1g2 \n"
                                          "  1     612TIME       36196 g7f8  \n\nmove f1f2 \n");
}

// A bad book ends the run with the designed message on standard output; standard error names the file, the
// line, the token and the reason, and the tool that explains more.
TEST(Book, BadLineIsNamedOnStandardError) {
  const EngineRun run = RunWithInput(HANDSHAKE + "new\n", "e2e4 e7e5\ne2e4 c7c5 g1f3 x9\n");
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + BAD_BOOK);
  EXPECT_EQ(run.errors, "vorlek: " + run.folder +
                            "/Aperture.txt, riga 2, mossa \"x9\": non è una mossa della posizione a "
                            "cui arriva la riga; i dettagli con: vorlek-book check " +
                            run.folder + "/Aperture.txt\n");
}

// A log that cannot be written (here a folder stands where the file would be) leaves the game as it was;
// standard error says once that it is not being logged.
TEST(Log, UnwritableLogIsSaidOnceAndThePlayGoesOn) {
  const EngineRun run = RunWithInput(HANDSHAKE + "new\ne2e4\n", SMALL_BOOK, {{"partita.log/kept", ""}});
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + "move e7e5 \n");
  EXPECT_EQ(run.errors, "vorlek: non posso scrivere partita.log nella cartella di lavoro " + run.folder +
                            " (Is a directory): la partita non viene registrata\n");
}

// Black to move, a mate in two: the deepening stops at the mate whatever the clock. Each thinking line
// shows black's and white's moves in real squares, and goes to the game log as to standard output.
TEST(Search, ThinkingLinesOfBlackInRealSquaresAndInTheLog) {
  const EngineRun run = RunWithInput(
      HANDSHAKE + "setboard r7/8/8/8/8/1p6/PP6/KBk5 b - - 0 1\ntime 100000\notim 100000\ngo\n", SMALL_BOOK);
  ExpectCleanExit(run);
  const std::string thinking =
      "  1     134TIME          72 c1d2  \n"
      "  2     131TIME         143 c1d2  a2a3  \n"
      "  3     137TIME         640 a8a5  a2a3  a5d5  \n"
      "  4   15001TIME        2086 a8a3  b2a3  b3b2  \n";
  EXPECT_EQ(WithoutTimes(run.output), FEATURE_LINE + thinking + "\nmove a8a3 \n");
  EXPECT_EQ(WithoutTimes(run.log.value_or("")), thinking + "Vorlek: a8a3 \n");
}

// Every answer the book holds for a position is played: a hundred games of 1. e2e4 against a book of eight
// answers meet all eight.
TEST(Book, EveryAnswerIsDrawn) {
  std::string input = HANDSHAKE;
  for (int i = 0; i < 100; ++i) input += "new\ne2e4\n";
  const EngineRun run = RunWithInput(input, EIGHT_ANSWERS);
  ExpectCleanExit(run);
  std::set<std::string> answers;
  for (size_t at = run.output.find("move "); at != std::string::npos; at = run.output.find("move ", at + 1))
    answers.insert(run.output.substr(at + 5, 4));
  EXPECT_EQ(answers, (std::set<std::string>{"a7a6", "b7b6", "c7c6", "d7d6", "e7e6", "f7f6", "g7g6", "h7h6"}));
}

// A book line may hold a promotion (written with its four squares' characters): it loads, and the engine
// plays it as a queen promotion.
TEST(Book, PromotionInALine) {
  const EngineRun run = RunWithInput(HANDSHAKE + "force\na2a4\nb7b5\na4b5\na7a6\nb5a6\nc8b7\na6b7\ng8f6\ngo\n",
                                     "a2a4 b7b5 a4b5 a7a6 b5a6 c8b7 a6b7 g8f6 b7a8\n");
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + "move b7a8q\n");
}

// A pawn move, a capture or castling starts the repetition count afresh: the position after it, met again
// once, is no draw; met a third time, it is.
struct RepetitionCase {
  const char* name;
  std::string before;  // ends with the position that the irreversible move leaves, stood on twice
  std::string cycle;   // four moves that come back to the position after the irreversible move
};
std::ostream& operator<<(std::ostream& out, const RepetitionCase& c) { return out << c.name; }

class RepetitionAfter : public ::testing::TestWithParam<RepetitionCase> {};

TEST_P(RepetitionAfter, AnIrreversibleMove) {
  std::string moves = GetParam().before + " " + GetParam().cycle + " " + GetParam().cycle;
  std::string input = HANDSHAKE, log;
  for (size_t at = 0; at < moves.size();) {
    const size_t end = std::min(moves.find(' ', at), moves.size());
    const std::string move = moves.substr(at, end - at);
    if (!move.empty()) {
      input += move + "\n";
      log += "Avversario: " + move + "\n";
    }
    at = end + 1;
  }
  const EngineRun run = RunWithInput(input);
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + "1/2-1/2 {pari per ripetizione}\n");
  EXPECT_EQ(run.log, log + "1/2-1/2 {pari per ripetizione}\n");
}

INSTANTIATE_TEST_SUITE_P(
    Moves, RepetitionAfter,
    ::testing::Values(RepetitionCase{"PawnMove", "g1f3 g8f6 f3g1 f6g8 e2e3", "g8f6 g1f3 f6g8 f3g1"},
                      RepetitionCase{"Capture", "e2e4 d7d5 g1f3 g8f6 f3g1 f6g8 e4d5", "g8f6 g1f3 f6g8 f3g1"},
                      RepetitionCase{"Castling", "e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 b1c3 g8f6 c3b1 f6g8 e1g1",
                                     "g8f6 b1c3 f6g8 c3b1"}),
    [](const auto& info) { return info.param.name; });

// The game log of a run replaces the one of an earlier run.
TEST(Log, StartsAfreshInEveryRun) {
  const EngineRun run = RunWithInput(HANDSHAKE + "e2e4\n", SMALL_BOOK, {{"partita.log", "an earlier run\n"}});
  ExpectCleanExit(run);
  EXPECT_EQ(run.log, "Avversario: e2e4\n");
}

// Without a book the engine ends with its message on standard output, and names the folder it looked in
// on standard error, which interfaces do not read as protocol.
TEST(Book, MissingBookNamesTheWorkingFolderOnStandardError) {
  const EngineRun run = RunWithInput(HANDSHAKE + "new\n", std::nullopt);
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + "File delle aperture non trovato!\n");
  EXPECT_NE(run.errors.find("Aperture.txt non trovato nella cartella di lavoro " + run.folder + ":"), std::string::npos)
      << run.errors;
}

}  // namespace
}  // namespace vorlek::test
