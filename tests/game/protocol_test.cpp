// The xboard protocol as the real engine speaks it on a pipe: handshake, command table, replies,
// results, the game log and the fatal book messages, compared byte for byte.
#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <regex>
#include <string>

#include "support/engine_process.h"

namespace vorlek::test {
namespace {

std::string ErrorLine(const std::string& line) { return "Error(comando non previsto): " + line + "\n"; }

const std::string HANDSHAKE_FAILED = "Errore nell'inizializzatione di XBoard";
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
                      HandshakeCase{"Protover3", "xboard\nprotover 3\n", FEATURE_LINE},
                      HandshakeCase{"CarriageReturnAfterXboard", "xboard\r\nprotover 2\n",
                                    FEATURE_LINE + HANDSHAKE_FAILED},
                      HandshakeCase{"WrongFirstWord", "new\nprotover 2\n", FEATURE_LINE + HANDSHAKE_FAILED},
                      HandshakeCase{"CommandsAfterFailureIgnored", "xboard\nprotover 1\nnew\ne2e4\n",
                                    FEATURE_LINE + HANDSHAKE_FAILED},
                      HandshakeCase{"NoInput", "", ""}, HandshakeCase{"InputEndsAfterFirstLine", "xboard\n", ""}),
    [](const auto& info) { return info.param.name; });

// Lines answered with the error line and lines without a reply. Each is followed by "new" and white's
// e2e4, so the reply shows the engine still works.
class UnknownLine : public ::testing::TestWithParam<std::string> {};

TEST_P(UnknownLine, IsAnsweredWithTheErrorLine) {
  const EngineRun run = RunWithInput(HANDSHAKE + GetParam() + "\nnew\ne2e4\n");
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + ErrorLine(GetParam()) + "move e7e5 \n");
}

INSTANTIATE_TEST_SUITE_P(Lines, UnknownLine,
                         ::testing::Values("", "hello", "setboard", "time x", "level x", "white", "NEW", "new ", " new",
                                           "quit ", "e2", "i2i4", "protover 2"));

class SilentLine : public ::testing::TestWithParam<std::string> {};

TEST_P(SilentLine, GetsNoReply) {
  const EngineRun run = RunWithInput(HANDSHAKE + GetParam() + "\nnew\ne2e4\n");
  ExpectCleanExit(run);
  EXPECT_EQ(run.output, FEATURE_LINE + "move e7e5 \n");
}

INSTANTIATE_TEST_SUITE_P(Lines, SilentLine,
                         ::testing::Values("undo", "remove", "draw", "post", "force", "accepted setboard", "time -5",
                                           "time !", "otim 100", "level 40 0:30 0", "level !"));

// Book lines "w1 b1 w2 g8f6": eight single pawn steps for white's first move, eight black answers,
// eight second white moves (double steps on the other files and a knight move). Every position
// after w1 b1 w2 is new, so a book of n lines asks for this many entries: one for the initial
// position, one per first move, one per first move pair and one per line.
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

// Four full first moves (4 x 73 entries) plus one, plus the first of its answers, need 294 entries;
// five more lines make 300, the sixth asks for the 301st.
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
const std::string FOOLS_BOOK = "f2f3 e7e5 g2g4 d8h4\n";
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
        // A move of 198 characters is read whole (its fifth is no promotion letter); one character more
        // makes it a line that does not fit, answered as unknown, and the position stays.
        SessionCase{"Move198", "e2e4" + std::string(194, 'x') + "\n",
                    BAD_PROMOTION + "e2e4" + std::string(194, 'x') + "\n"},
        SessionCase{"Move199", "e2e4" + std::string(195, 'x') + "\ne2e4\n", ErrorLine("e2e4" + std::string(194, 'x')),
                    "Avversario: e2e4\n"},
        // Refused moves; the legal move after each shows that the position stayed.
        SessionCase{"UnreachableSquare", "e2e5\ne2e4\n", NOT_FOUND + "e2e5\n", "Avversario: e2e4\n"},
        SessionCase{"CastlingThroughPieces", "e1g1\ne2e4\n", NOT_FOUND + "e1g1\n", "Avversario: e2e4\n"},
        SessionCase{"PromotionLetterOnAPawnStep", "e2e4q\ne2e4\n", NOT_FOUND + "e2e4q\n", "Avversario: e2e4\n"},
        SessionCase{"WhiteOnBlacksTurn", "e2e4\nd2d4\ne7e5\n", NOT_FOUND + "d2d4\n",
                    "Avversario: e2e4\nAvversario: e7e5\n"},
        SessionCase{"TrailingBlank", "e2e4 \ne2e4\n", BAD_PROMOTION + "e2e4 \n", "Avversario: e2e4\n"},
        SessionCase{"UpperCasePromotion", "e2e4Q\ne2e4\n", BAD_PROMOTION + "e2e4Q\n", "Avversario: e2e4\n"},
        SessionCase{"PinnedPawn", "e2e4\ne7e5\nd1h5\nf7f6\ng7g6\n", LEAVES_CHECK + "f7f6\n",
                    "Avversario: e2e4\nAvversario: e7e5\nAvversario: d1h5\nAvversario: g7g6\n"},
        SessionCase{"NotAnsweringCheck", "e2e4\nf7f6\nd1h5\na7a6\ng7g6\n", LEAVES_CHECK + "a7a6\n",
                    "Avversario: e2e4\nAvversario: f7f6\nAvversario: d1h5\nAvversario: g7g6\n"},
        // Castling rights or an en-passant file that the pieces do not back up give no move.
        SessionCase{"CastlingRightWithoutRook", "setboard 4k3/8/8/8/8/8/8/4K3 w KQkq - 0 1\ne1g1\nquit\n",
                    NOT_FOUND + "e1g1\n"},
        SessionCase{"EnPassantWithoutPawn", "setboard 4k3/8/8/3P4/8/8/8/4K3 w - e6 0 1\nd5e6\nquit\n",
                    NOT_FOUND + "d5e6\n"},
        // The engine moves only when it is its turn: not before "new", not in force mode.
        SessionCase{"NoAnswerBeforeNew", "e2e4\ne7e5\n", "", "Avversario: e2e4\nAvversario: e7e5\n"},
        SessionCase{"ForceStopsTheEngine", "new\nforce\ne2e4\ne7e5\n", "", "Avversario: e2e4\nAvversario: e7e5\n"},
        SessionCase{"GoPlaysTheSideToMove", "new\nforce\ne2e4\ne7e5\ngo\n", "move g1f3 \n",
                    "Avversario: e2e4\nAvversario: e7e5\nVorlek: g1f3 \n", "e2e4 e7e5 g1f3\n"},
        SessionCase{"GoAtStartPlaysWhite", "go\ne7e5\n", "move e2e4 \nmove g1f3 \n",
                    "Vorlek: e2e4 \nAvversario: e7e5\nVorlek: g1f3 \n", "e2e4 e7e5 g1f3\n"},
        SessionCase{"CastlingTypedAsKingMove", "new\ne2e4\ng1f3\nf1c4\ne1g1\n",
                    "move e7e5 \nmove b8c6 \nmove g8f6 \nmove f8c5 \n",
                    "Avversario: e2e4\nVorlek: e7e5 \nAvversario: g1f3\nVorlek: b8c6 \nAvversario: f1c4\n"
                    "Vorlek: g8f6 \nAvversario: e1g1\nVorlek: f8c5 \n",
                    "e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 e1g1 f8c5\n"},
        // Results, typed in force mode.
        SessionCase{"FoolsMate", FOOLS_MATE, "0-1 {vince il nero}\n", FOOLS_MATE_LOG},
        SessionCase{"ScholarsMate", "e2e4\ne7e5\nf1c4\nb8c6\nd1h5\ng8f6\nh5f7\n", "1-0 {vince il bianco}\n",
                    "Avversario: e2e4\nAvversario: e7e5\nAvversario: f1c4\nAvversario: b8c6\nAvversario: d1h5\n"
                    "Avversario: g8f6\nAvversario: h5f7\n1-0 {vince il bianco}\n"},
        SessionCase{"Stalemate", "setboard 7k/8/6Q1/8/8/8/8/K7 w - - 0 1\ng6f7\n", "1/2-1/2 {pari per stallo}\n",
                    "Avversario: g6f7\n1/2-1/2 {pari per stallo}\n"},
        SessionCase{"ThirdOccurrence", "g1f3\ng8f6\nf3g1\nf6g8\ng1f3\ng8f6\nf3g1\nf6g8\n",
                    "1/2-1/2 {pari per ripetizione}\n",
                    "Avversario: g1f3\nAvversario: g8f6\nAvversario: f3g1\nAvversario: f6g8\n"
                    "Avversario: g1f3\nAvversario: g8f6\nAvversario: f3g1\nAvversario: f6g8\n"
                    "1/2-1/2 {pari per ripetizione}\n"},
        SessionCase{"FiftyMoves", "setboard 7k/8/8/8/8/8/8/K6R w - - 99 80\nh1h2\n", "1/2-1/2 {pari 50 mosse}\n",
                    "Avversario: h1h2\n1/2-1/2 {pari 50 mosse}\n"},
        // A position set up as finished is not announced.
        SessionCase{"SetboardDoesNotJudge", "setboard 7k/5Q2/8/8/8/8/8/K7 b - - 0 1\n", ""},
        // After a result the engine does not move until "new".
        SessionCase{"NewClearsResult", FOOLS_MATE + "go\nnew\ne2e4\n", "0-1 {vince il nero}\nmove e7e5 \n",
                    FOOLS_MATE_LOG + "Avversario: e2e4\nVorlek: e7e5 \n"},
        // The engine's move ends the game; a second game's lines follow the first's in the same log.
        SessionCase{"TwoGamesOneLog", "new\nf2f3\ng2g4\nnew\nf2f3\ng2g4\n",
                    "move e7e5 \nmove d8h4 \n0-1 {vince il nero}\nmove e7e5 \nmove d8h4 \n0-1 {vince il nero}\n",
                    FOOLS_GAME_LOG + FOOLS_GAME_LOG, FOOLS_BOOK},
        // A missing or bad book ends the run with its message before the log is opened.
        SessionCase{"MissingBook", "new\ne2e4\n", "File delle aperture non trovato!\n", std::nullopt, std::nullopt},
        SessionCase{"BookBlackMoveFirst", "quit\n", BAD_BOOK, std::nullopt, "e7e5\n"},
        SessionCase{"BookShortToken", "quit\n", BAD_BOOK, std::nullopt, "e2e4 e7\n"},
        SessionCase{"BookEightMovesInOnePositionFit", "quit\n", "", "", EIGHT_ANSWERS},
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
  ASSERT_EQ(run.output.rfind(FEATURE_LINE, 0), 0u) << run.output;
  EXPECT_TRUE(std::regex_match(run.output.substr(FEATURE_LINE.size()), std::regex("move ([a-e])2\\1[3] \n")))
      << run.output;
}

// Moves found by searching, with clocks so small that one iteration is all there is time for.
struct SearchCase {
  const char* name;
  const char* fen;
  std::string move;
};
std::ostream& operator<<(std::ostream& out, const SearchCase& c) { return out << c.name; }

class SearchedMove : public ::testing::TestWithParam<SearchCase> {};

TEST_P(SearchedMove, IsPrintedAfterTheThinkingLines) {
  const EngineRun run = RunWithInput(HANDSHAKE + "setboard " + GetParam().fen + "\ntime 10\notim 10\ngo\n");
  ExpectCleanExit(run);
  const std::string tail = "\nmove " + GetParam().move + "\n";
  ASSERT_GT(run.output.size(), FEATURE_LINE.size() + tail.size());
  EXPECT_EQ(run.output.substr(0, FEATURE_LINE.size()), FEATURE_LINE);
  EXPECT_EQ(run.output.substr(run.output.size() - tail.size()), tail);
  // The thinking lines go to the log too, before the engine's move.
  const std::string logTail = "\nVorlek: " + GetParam().move + "\n";
  ASSERT_GT(run.log.value_or("").size(), logTail.size());
  EXPECT_EQ(run.log->substr(run.log->size() - logTail.size()), logTail);
}

INSTANTIATE_TEST_SUITE_P(Positions, SearchedMove,
                         ::testing::Values(SearchCase{"OnlyLegalMove", "k7/8/8/8/8/8/1r6/K7 w - - 0 1", "a1b2 "},
                                           SearchCase{"PromotionLetter", "k7/2P5/8/8/8/8/8/7K w - - 0 1", "c7c8q"},
                                           SearchCase{"BlackOnlyLegalMove", "7k/6R1/8/8/8/8/8/K7 b - - 0 1", "h8g7 "}),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace vorlek::test
