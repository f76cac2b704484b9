// vorlek-uci as a UCI interface drives it: the real program on pipes, its replies byte for byte, the
// position command against set-up positions, a fixed-depth search's node count, and a search that is
// answered, stopped and quit while it runs.
#include <gtest/gtest.h>

#include <ostream>
#include <regex>
#include <string>
#include <tuple>
#include <vector>

#include "support/engine_process.h"
#include "support/uci_output.h"

namespace vorlek::test {
namespace {

const std::string UCI_REPLY =
    "id name Vorlek\n"
    "id author the Vorlek developers\n"
    "option name Hash type spin default 1024 min 1 max 1024\n"
    "option name Clear Hash type button\n"
    "option name Ponder type check default false\n"
    "option name Move Overhead type spin default 50 min 0 max 5000\n"
    "option name MultiPV type spin default 1 min 1 max 32\n"
    "option name UCI_AnalyseMode type check default false\n"
    "option name OwnBook type check default true\n"
    "option name BookFile type string default Aperture.txt\n"
    "uciok\n";

// A whole session: the commands, then the end of the input, at which a search that ends by itself still
// sends its move.
std::string Session(const std::string& commands, const std::optional<std::string>& book = SMALL_BOOK) {
  EngineSession engine(VORLEK_UCI_BINARY, {}, book);
  engine.Send(commands);
  const EngineRun run = engine.Finish();
  ExpectCleanExit(run);
  return run.output;
}

const std::string MIDDLEGAME = "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10";

// UciReplies from the start of a session, book messages included: the handshake, lines that are no command,
// and books that cannot be used, after which the engine still plays, from no book.
struct RepliesCase {
  const char* name;
  std::string commands;
  std::optional<std::string> book;
  std::string start;  // the output's beginning
};
std::ostream& operator<<(std::ostream& out, const RepliesCase& c) { return out << c.name; }

class UciReplies : public ::testing::TestWithParam<RepliesCase> {};

TEST_P(UciReplies, BeginTheOutput) {
  const std::string output =
      Session(GetParam().commands + "isready\nposition startpos\ngo wtime 100 btime 100\n", GetParam().book);
  EXPECT_EQ(output.rfind(GetParam().start, 0), 0u) << output;
  EXPECT_NE(BestMove(output), "") << output;
  if (GetParam().start.find("no book") != std::string::npos) {
    EXPECT_EQ(output.find("book move"), std::string::npos) << output;
  }
}

const std::string BESIDE_THE_ENGINE =
    std::string(VORLEK_UCI_BINARY).substr(0, std::string(VORLEK_UCI_BINARY).rfind('/'));

INSTANTIATE_TEST_SUITE_P(
    Session, UciReplies,
    ::testing::Values(RepliesCase{"Handshake", "uci\n", SMALL_BOOK,
                                  UCI_REPLY + "info string book Aperture.txt: 2 positions\nreadyok\n"},
                      RepliesCase{"DebugRegisterAndUnknown", "debug on\nregister later\nxyzzy 1\n\n", SMALL_BOOK,
                                  "info string unknown command: xyzzy 1\ninfo string book Aperture.txt: 2 positions\n"},
                      // The default book, when the working folder has none, is the one the build put beside the engine.
                      RepliesCase{"BookBesideTheEngine", "", std::nullopt,
                                  "info string book " + BESIDE_THE_ENGINE + "/Aperture.txt: "},
                      RepliesCase{"BookMissing", "setoption name BookFile value missing.txt\n", std::nullopt,
                                  "info string no book: cannot open missing.txt (looked in the working folder and "
                                  "beside the engine)\nreadyok\n"},
                      // A book with a bad line is not half used.
                      RepliesCase{
                          "BookWithABadLine", "", "e2e4 e7e5\ne2e4 x9\n",
                          "info string no book: Aperture.txt line 2: Mossa di apertura non valida!\nreadyok\n"}),
    [](const auto& info) { return info.param.name; });

// Out of the book at b1c3, the engine stays out, also where the game comes back into it (b1c3 g8f6 g1f3 is
// g1f3 g8f6 b1c3); a new game takes the book again.
TEST(Uci, LeavesTheBookAtTheFirstMissUntilANewGame) {
  const std::string clock = "go wtime 100 btime 100\n";
  const std::string output =
      Session("position startpos moves b1c3\n" + clock + "position startpos moves b1c3 g8f6 g1f3\n" + clock +
                  "ucinewgame\nposition startpos moves g1f3\n" + clock,
              "g1f3 g8f6 b1c3 b8c6\n");
  EXPECT_EQ(output.find("book move"), output.rfind("book move")) << output;  // once only
  EXPECT_NE(output.find("info string book move g8f6\n"), std::string::npos) << output;
}

// The same search from two position commands that must give the same game (with the same history where it
// counts); the second may be a refusal that leaves the first in place.
struct PositionCase {
  const char* name;
  std::string position;   // played first, then "go depth 3"
  std::string same;       // the same position, another way
  std::string said = "";  // an "info string" the first must print
};
std::ostream& operator<<(std::ostream& out, const PositionCase& c) { return out << c.name; }

class UciPosition : public ::testing::TestWithParam<PositionCase> {};

TEST_P(UciPosition, GivesTheSameSearchAsItsSetUp) {
  const std::string output = Session("ucinewgame\n" + GetParam().position + "\ngo depth 3\n");
  const std::string expected = Session("ucinewgame\n" + GetParam().same + "\ngo depth 3\n");
  EXPECT_NE(output.find(GetParam().said), std::string::npos) << output;
  EXPECT_EQ(Infos(output), Infos(expected)) << output << expected;
  EXPECT_EQ(BestMove(output), BestMove(expected));
}

INSTANTIATE_TEST_SUITE_P(
    Moves, UciPosition,
    ::testing::Values(
        PositionCase{"Castling", "position startpos moves e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 e1g1",
                     "position fen r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQ1RK1 b kq - 5 4"},
        PositionCase{"EnPassant", "position startpos moves e2e4 a7a6 e4e5 d7d5 e5d6",
                     "position fen rnbqkbnr/1pp1pppp/p2P4/8/8/8/PPPP1PPP/RNBQKBNR b KQkq - 0 3"},
        PositionCase{"Promotions", "position fen 4k3/1P6/8/8/8/8/6p1/4K3 w - - 0 1 moves b7b8n g2g1q",
                     "position fen 1N2k3/8/8/8/8/8/8/4K1q1 w - - 0 2"},
        PositionCase{"UpperCasePromotionLetter", "position fen 4k3/1P6/8/8/8/8/8/4K3 w - - 0 1 moves b7b8Q",
                     "position fen 1Q2k3/8/8/8/8/8/8/4K3 b - - 0 1"},
        PositionCase{"IllegalMoveChangesNothing",
                     "position startpos moves e2e4\nposition startpos moves e2e4 e7e5 e1e3",
                     "position startpos moves e2e4", "info string illegal move e1e3 (move 3 of the list)"},
        PositionCase{"MoveIntoCheckChangesNothing",
                     "position startpos moves e2e4 e7e5\nposition startpos moves e2e4 f7f6 d1h5 a7a6",
                     "position startpos moves e2e4 e7e5", "info string illegal move a7a6 (move 4 of the list)"},
        PositionCase{"RefusedFenChangesNothing",
                     "position startpos moves d2d4\nposition fen 4k3/8/8/8/8/8/8/R3K3 w - - 101 60",
                     "position startpos moves d2d4", "info string position refused: fen 4k3/8/8/8/8/8/8/R3K3"}),
    [](const auto& info) { return info.param.name; });

// A game of any length: 1000 plies of knights going out and back, whose last position stands on the board
// for the 250th time: a repetition, scored 0 at once (every iteration one node more, as nodes count the whole
// search), which stores no move; the move played, the root's first legal move, is shown by one more line
// before "bestmove". One pawn move later the game goes on.
TEST(Uci, RepetitionInALongGame) {
  std::string moves;
  for (int i = 0; i < 250; ++i) moves += " g1f3 g8f6 f3g1 f6g8";
  const std::string output = Session("position startpos moves" + moves + "\ngo depth 2\n");
  const std::vector<Info> repeated = Infos(output);
  ASSERT_EQ(repeated.size(), 3u);
  EXPECT_EQ(repeated[0].score, "cp 0");
  EXPECT_EQ(repeated[0].nodes, 1u);
  EXPECT_EQ(repeated[1].nodes, 2u);
  EXPECT_EQ(repeated[2], (Info{2, "cp 0", 2, "b1a3"}));
  EXPECT_EQ(BestMove(output), "bestmove b1a3");
  const std::vector<Info> later = Infos(Session("position startpos moves" + moves + " e2e4\ngo depth 2\n"));
  ASSERT_EQ(later.size(), 2u);
  EXPECT_GT(later[1].nodes, 100u);
}

// The table in use is the largest power of two of entries that fits the Hash option: the same fixed search
// counts other nodes in a smaller table, and exactly the default's in the whole one.
class UciHashSize : public ::testing::TestWithParam<std::tuple<int, unsigned long long>> {};

TEST_P(UciHashSize, SetsTheEntriesInUse) {
  const auto& [mebibytes, nodes] = GetParam();
  const std::vector<Info> infos =
      Infos(Session("setoption name Hash value " + std::to_string(mebibytes) + "\nisready\nucinewgame\nposition fen " +
                    MIDDLEGAME + "\ngo depth 5\n"));
  ASSERT_EQ(infos.size(), 5u);
  EXPECT_EQ(infos.back().nodes, nodes);
}

INSTANTIATE_TEST_SUITE_P(Mebibytes, UciHashSize,
                         ::testing::Values(std::tuple{1, 766911ull}, std::tuple{16, 721381ull},
                                           std::tuple{1024, 720354ull}));

// "Clear Hash" empties the table but keeps the game: the next search starts where the deepening left off
// (depth 3) and counts the nodes of a cold table.
TEST(Uci, ClearHashEmptiesTheTable) {
  for (const auto& [clear, nodes] : {std::pair{"setoption name Clear Hash\n", 709937ull}, std::pair{"", 350534ull}}) {
    EngineSession engine(VORLEK_UCI_BINARY, {});
    engine.Send("ucinewgame\nposition fen " + MIDDLEGAME + "\ngo depth 5\n");
    engine.ReadUntilLine("bestmove");
    engine.Send(std::string(clear) + "go depth 5\n");
    const std::vector<Info> infos = Infos(engine.ReadUntilLine("bestmove"));
    ASSERT_FALSE(infos.empty());
    EXPECT_EQ(infos.back().nodes, nodes) << clear;
    ExpectCleanExit(engine.Finish());
  }
}

// "readyok" comes when the part of the table in use is resident, and only that part is faulted in: an engine
// told Hash 1 holds at least 60 MiB less than one told Hash 64.
TEST(Uci, ReadyWhenTheTableInUseIsResident) {
  int resident[2];
  for (const int mebibytes : {1, 64}) {
    EngineSession engine(VORLEK_UCI_BINARY, {});
    engine.Send("uci\nsetoption name Hash value " + std::to_string(mebibytes) + "\nisready\n");
    engine.ReadUntilLine("readyok");
    resident[mebibytes == 64] = engine.ResidentMebibytes();
    ExpectCleanExit(engine.Finish());
  }
  EXPECT_GE(resident[1], 64);
  EXPECT_GE(resident[1] - resident[0], 60) << resident[0] << " MiB against " << resident[1] << " MiB";
}

// A game move from the book comes with an "info" line as searches do: depth 0, no node, the static value of
// the position the move leads to, and the move as the variation.
TEST(Uci, BookMoveHasAnInfoLine) {
  const std::string output = Session("position startpos\ngo wtime 1000 btime 1000\n", "d2d4\n");
  EXPECT_NE(output.find("info string book move d2d4\n"
                        "info depth 0 score cp 14 time 0 nodes 0 nps 0 pv d2d4\n"
                        "bestmove d2d4\n"),
            std::string::npos)
      << output;
}

// The variation shown stops at the first position the search scores as a draw at once, although the table
// holds moves beyond it: here every move of black's reaches the fifty-move limit, while the same positions
// were searched before, with the counter at 0.
TEST(Uci, VariationStopsAtADraw) {
  EngineSession engine(VORLEK_UCI_BINARY, {});
  engine.Send("position fen 4k3/8/8/8/8/8/8/R3K3 b - - 0 80\ngo depth 4\n");
  EXPECT_EQ(Infos(engine.ReadUntilLine("bestmove")).back().pv, "e8d7 a1a7 d7c6 e1d2");
  engine.Send("position fen 4k3/8/8/8/8/8/8/R3K3 b - - 99 80\ngo depth 4\n");
  const std::string drawn = engine.ReadUntilLine("bestmove");
  EXPECT_EQ(Infos(drawn).back(), (Info{4, "cp 0", 18, "e8d7"}));
  EXPECT_EQ(BestMove(drawn), "bestmove e8d7");
  ExpectCleanExit(engine.Finish());
}

// Whatever ends the search, the last "info" line before "bestmove" shows the move played: here an iteration
// given up by the node limit.
TEST(Uci, LastInfoShowsTheMovePlayed) {
  const std::string output = Session("setoption name Hash value 1\nposition fen " + MIDDLEGAME + "\ngo nodes 300000\n");
  const std::vector<Info> infos = Infos(output);
  ASSERT_FALSE(infos.empty()) << output;
  EXPECT_EQ(infos.back().pv.substr(0, 4), BestMove(output).substr(9, 4)) << output;
}

// An iteration given up by a limit changes neither the move played nor the table: in a small table the
// positions it searched take the root's entry (the move played is still the last finished iteration's, not
// the root's first capture), and it stores nothing once given up (the next search counts the same nodes).
TEST(Uci, GivenUpIterationChangesNeitherMoveNorTable) {
  const std::string kiwipete = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";
  EXPECT_EQ(BestMove(Session("setoption name Hash value 1\nposition fen " + kiwipete + "\ngo nodes 800000\n")),
            "bestmove e2a6 ponder e6d5");
  EngineSession engine(VORLEK_UCI_BINARY, {});
  engine.Send("setoption name Hash value 1\nposition fen " + MIDDLEGAME + "\ngo nodes 30000\n");
  EXPECT_EQ(BestMove(engine.ReadUntilLine("bestmove")), "bestmove c3d5 ponder e7d8");
  engine.Send("go depth 6\n");
  EXPECT_EQ(Infos(engine.ReadUntilLine("bestmove")).back(), (Info{6, "cp 10", 4691649, "b2b4"}));
  ExpectCleanExit(engine.Finish());
}

// "go nodes N" alone ends the search within N nodes: the iteration that would pass them is given up, and the
// finished ones stay below.
TEST(Uci, NodesAloneLimitTheSearch) {
  const std::vector<Info> infos = Infos(Session("position fen " + MIDDLEGAME + "\ngo nodes 30000\n"));
  ASSERT_FALSE(infos.empty());
  EXPECT_LE(infos.back().nodes, 30000u);
  EXPECT_LT(infos.back().depth, 5);
}

// The speed shown is the nodes over the time: nps and nodes agree with the time in milliseconds to within
// its rounding.
TEST(Uci, SpeedAgreesWithNodesAndTime) {
  const std::string output = Session("position fen " + MIDDLEGAME + "\ngo depth 6\n");
  static const std::regex LINE(R"(info depth \d+ score \S+ \S+ time (\d+) nodes (\d+) nps (\d+))");
  int checked = 0;
  for (std::sregex_iterator it(output.begin(), output.end(), LINE), end; it != end; ++it) {
    const double ms = std::stod((*it)[1]), nodes = std::stod((*it)[2]), nps = std::stod((*it)[3]);
    if (ms < 5) continue;
    EXPECT_LE(nps, nodes * 1000 / ms) << (*it)[0];
    EXPECT_GE(nps + 1, nodes * 1000 / (ms + 1)) << (*it)[0];  // nps is rounded down
    ++checked;
  }
  EXPECT_GT(checked, 0) << output;
}

// The move to ponder on is a legal reply to the move played: both are accepted as the game's next moves.
TEST(Uci, PonderMoveIsALegalReply) {
  EngineSession engine(VORLEK_UCI_BINARY, {});
  engine.Send("position fen " + MIDDLEGAME + "\ngo depth 5\n");
  const std::string best = BestMove(engine.ReadUntilLine("bestmove"));
  static const std::regex BEST(R"(bestmove (\S+) ponder (\S+))");
  std::smatch m;
  ASSERT_TRUE(std::regex_match(best, m, BEST)) << best;
  engine.Send("position fen " + MIDDLEGAME + " moves " + m[1].str() + " " + m[2].str() + "\nisready\n");
  EXPECT_EQ(engine.ReadUntilLine("readyok").find("illegal"), std::string::npos);
  ExpectCleanExit(engine.Finish());
}

// A book file named after the first book was loaded is loaded in its place.
TEST(Uci, ChangedBookFileIsLoaded) {
  EngineSession engine(VORLEK_UCI_BINARY, {}, "e2e4 e7e5\n", {{"other.txt", "d2d4 d7d5\n"}});
  engine.Send("isready\nposition startpos\ngo wtime 1000 btime 1000\n");
  EXPECT_NE(engine.ReadUntilLine("bestmove").find("bestmove e2e4"), std::string::npos);
  engine.Send("setoption name BookFile value other.txt\nucinewgame\nposition startpos\ngo wtime 1000 btime 1000\n");
  const std::string second = engine.ReadUntilLine("bestmove");
  EXPECT_NE(second.find("info string book other.txt: 2 positions\n"), std::string::npos) << second;
  EXPECT_NE(second.find("bestmove d2d4"), std::string::npos) << second;
  ExpectCleanExit(engine.Finish());
}

TEST(Uci, MateIsShownAsAMate) {
  const std::string mating = Session("position fen 6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1\ngo depth 4\n");
  // The variation ends with the mate.
  EXPECT_EQ(Infos(mating).back(), (Info{2, "mate 1", 118, "d1d8"})) << mating;
  EXPECT_EQ(BestMove(mating), "bestmove d1d8");
  const std::string mated = Session("position fen 6k1/5ppp/8/8/8/8/5PPP/3r2K1 w - - 0 1\ngo depth 4\n");
  EXPECT_EQ(BestMove(mated), "bestmove 0000") << mated;
  const std::string later = Session("position fen 8/8/8/8/8/1k6/3q4/K7 w - - 0 1\ngo depth 4\n");
  EXPECT_EQ(Infos(later).back().score, "mate -1") << later;
}

TEST(Uci, PonderHitTurnsThePonderingIntoTheMove) {
  EngineSession engine(VORLEK_UCI_BINARY, {});
  engine.Send("position startpos moves d2d4 d7d5\ngo ponder wtime 2000 btime 2000\n");
  engine.ReadUntilLine("info depth 2 ");
  engine.Send("isready\n");
  EXPECT_EQ(engine.ReadUntilLine("readyok").find("bestmove"), std::string::npos);
  engine.Send("ponderhit\n");
  EXPECT_NE(BestMove(engine.ReadUntilLine("bestmove")), "");
  ExpectCleanExit(engine.Finish());
}

// "quit" ends a search that would take hours, and a new game stops one before it begins.
TEST(Uci, QuitAndNewGameEndASearch) {
  EngineSession engine(VORLEK_UCI_BINARY, {});
  engine.Send("position startpos moves e2e4\ngo infinite\n");
  engine.ReadUntilLine("info depth 2 ");
  engine.Send("ucinewgame\nisready\n");
  EXPECT_NE(engine.ReadUntilLine("readyok").find("bestmove"), std::string::npos);
  engine.Send("go depth 30\n");
  engine.ReadUntilLine("info depth 4 ");
  engine.Send("quit\n");
  ExpectCleanExit(engine.Finish());
}

TEST(Uci, BenchEndsWithNodesAndSpeed) {
  EngineSession engine(VORLEK_UCI_BINARY, {"bench", "5"});
  const EngineRun run = engine.Finish();
  ExpectCleanExit(run);
  EXPECT_EQ(run.output.rfind("4556387 nodes ", 0), 0u) << run.output;
  EXPECT_EQ(run.output.substr(run.output.size() - 5), " nps\n") << run.output;
}

}  // namespace
}  // namespace vorlek::test
