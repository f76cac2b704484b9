// vorlek-uci as an analysis engine: several best lines (MultiPV), the root restricted to chosen moves
// (searchmoves), and analysis without the book. The real program on pipes.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <regex>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "support/engine_process.h"
#include "support/uci_output.h"

namespace vorlek::test {
namespace {

// The lines of the last iteration, in the order printed.
std::vector<Info> LastIteration(const std::string& output) {
  std::vector<Info> all = Infos(output), last;
  for (const Info& l : all)
    if (l.depth == all.back().depth) last.push_back(l);
  return last;
}

// A session with a small table: these searches are short, and scores do not depend on the table's size.
std::string RunUci(const std::string& commands) {
  EngineSession engine(VORLEK_UCI_BINARY, {});
  engine.Send("setoption name Hash value 16\n" + commands);
  const EngineRun run = engine.Finish();
  ExpectCleanExit(run);
  return run.output;
}

int Centipawns(const std::string& score) { return std::stoi(score.substr(3)); }

const std::string MIDDLEGAME = "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10";
const std::string KIWIPETE = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";
const std::string ENDGAME = "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1";

// Three lines at depth 4: each line's score is exactly the score of its move searched alone (the position
// after the move searched to depth 3, negated), the lines are sorted best first and their moves differ.
class UciMultiPv : public ::testing::TestWithParam<std::string> {};

TEST_P(UciMultiPv, EachLineIsExactAndTheyAreSorted) {
  const std::string fen = GetParam();
  const std::string output = RunUci("setoption name MultiPV value 3\nposition fen " + fen + "\ngo depth 4\n");
  const std::vector<Info> lines = LastIteration(output);
  ASSERT_EQ(lines.size(), 3u);
  std::set<std::string> moves;
  for (size_t k = 0; k < lines.size(); ++k) {
    EXPECT_EQ(lines[k].multipv, static_cast<int>(k) + 1);
    if (k > 0) {
      EXPECT_GE(Centipawns(lines[k - 1].score), Centipawns(lines[k].score));
    }
    const std::string move = FirstMove(lines[k].pv);
    moves.insert(move);
    const std::vector<Info> alone = Infos(RunUci("position fen " + fen + " moves " + move + "\ngo depth 3\n"));
    ASSERT_FALSE(alone.empty());
    EXPECT_EQ(Centipawns(lines[k].score), -Centipawns(alone.back().score)) << move;
  }
  EXPECT_EQ(moves.size(), 3u);
  // The move played is the best line's.
  EXPECT_EQ(BestMove(output).substr(9, 4), FirstMove(lines[0].pv));
}

INSTANTIATE_TEST_SUITE_P(Positions, UciMultiPv, ::testing::Values(MIDDLEGAME, KIWIPETE, ENDGAME));

// The searches of three lines are fixed like the engine's own: their nodes are a signature of the order the
// lines are searched in (each after the first begins with the move that held its place in the iteration
// before, and the best line's move goes back into the root's entry).
TEST(UciMultiPvNodes, AreASignature) {
  const std::vector<Info> lines =
      LastIteration(RunUci("setoption name MultiPV value 3\nposition fen " + MIDDLEGAME + "\ngo depth 5\n"));
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0].nodes, 766864u);
  EXPECT_EQ(lines[2].nodes, 1762426u);
}

// One line is the engine's own search, byte for byte: no "multipv" field, the same nodes.
TEST(UciMultiPvOne, IsTheSearchOfOneLine) {
  const std::string search = "ucinewgame\nposition fen " + MIDDLEGAME + "\ngo depth 5\n";
  const std::string plain = RunUci(search), one = RunUci("setoption name MultiPV value 1\n" + search);
  const std::regex time(" time \\d+ | nps \\d+");
  EXPECT_EQ(std::regex_replace(one, time, " "), std::regex_replace(plain, time, " "));
  EXPECT_EQ(plain.find("multipv"), std::string::npos);
}

// With fewer legal moves than lines, every iteration shows each legal move once.
TEST(UciMultiPvFewMoves, ShowsEveryLegalMove) {
  const std::string output =
      RunUci("setoption name MultiPV value 5\nposition fen 7k/8/8/8/8/8/8/K7 w - - 0 1\ngo depth 3\n");
  for (int depth = 1; depth <= 3; ++depth) {
    std::multiset<std::string> moves;
    for (const Info& l : Infos(output))
      if (l.depth == depth) moves.insert(FirstMove(l.pv));
    EXPECT_EQ(moves, (std::multiset<std::string>{"a1a2", "a1b1", "a1b2"})) << depth;
  }
}

// "searchmoves": only the legal moves named are searched, at every depth and in every line; a move that is
// not legal is named in an info string; when none is, every move is searched and the engine says so.
struct SearchMovesCase {
  const char* name;
  std::string commands;
  std::set<std::string> allowed;  // the moves every line may begin with (empty: any)
  std::string said;
  size_t linesPerDepth;
};
std::ostream& operator<<(std::ostream& out, const SearchMovesCase& c) { return out << c.name; }

class UciSearchMoves : public ::testing::TestWithParam<SearchMovesCase> {};

TEST_P(UciSearchMoves, RestrictTheRoot) {
  const SearchMovesCase& c = GetParam();
  const std::string output = RunUci(c.commands);
  EXPECT_NE(output.find(c.said), std::string::npos) << output;
  const std::vector<Info> lines = Infos(output);
  ASSERT_FALSE(lines.empty());
  for (const Info& l : lines) {
    if (!c.allowed.empty()) {
      EXPECT_EQ(c.allowed.count(FirstMove(l.pv)), 1u) << l.pv;
    }
  }
  EXPECT_EQ(LastIteration(output).size(), c.linesPerDepth);
  const std::string best = BestMove(output).substr(9, 4);
  if (!c.allowed.empty()) {
    EXPECT_EQ(c.allowed.count(best), 1u) << best;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Lists, UciSearchMoves,
    ::testing::Values(
        SearchMovesCase{"Legal", "position startpos\ngo depth 4 searchmoves a2a3 h2h4\n", {"a2a3", "h2h4"}, "", 1},
        SearchMovesCase{"OneIllegal",
                        "position startpos\ngo depth 4 searchmoves a2a3 e2e5 h2h4\n",
                        {"a2a3", "h2h4"},
                        "info string searchmoves: e2e5 is not a legal move here\n",
                        1},
        SearchMovesCase{"NoneLegal",
                        "position startpos\ngo depth 3 searchmoves e2e5 e7e5\n",
                        {},
                        "info string searchmoves: no legal move named; every move is searched\n",
                        1},
        SearchMovesCase{"WithLines",
                        "setoption name MultiPV value 3\nposition fen " + KIWIPETE +
                            "\ngo depth 3 searchmoves e2a6 d5e6 a1b1 g2g3\n",
                        {"e2a6", "d5e6", "a1b1", "g2g3"},
                        "",
                        3},
        SearchMovesCase{"FewerThanLines",
                        "setoption name MultiPV value 3\nposition startpos\ngo depth 3 searchmoves b1c3 g1f3\n",
                        {"b1c3", "g1f3"},
                        "",
                        2}),
    [](const auto& info) { return info.param.name; });

// Analysis never plays from the book: the interface that says so (UCI_AnalyseMode), a fixed time per move
// (ChessX's analysis pane sends "go movetime"), "go infinite" even with clocks given. A game under a clock does.
class UciAnalysisBook : public ::testing::TestWithParam<std::tuple<std::string, bool>> {};

TEST_P(UciAnalysisBook, IsPlayedOnlyInGames) {
  const auto& [commands, fromBook] = GetParam();
  EngineSession engine(VORLEK_UCI_BINARY, {}, "e2e4 e7e5\n");
  engine.Send("uci\n" + commands + "\n");
  const std::string output = engine.ReadUntilLine("bestmove");
  engine.Send("stop\n");
  ExpectCleanExit(engine.Finish());
  EXPECT_EQ(output.find("info string book move e2e4") != std::string::npos, fromBook) << output;
}

INSTANTIATE_TEST_SUITE_P(
    Goes, UciAnalysisBook,
    ::testing::Values(
        std::tuple{"position startpos\ngo wtime 1000 btime 1000", true},
        std::tuple{"setoption name UCI_AnalyseMode value true\nposition startpos\ngo wtime 1000 btime 1000", false},
        std::tuple{"position startpos\ngo movetime 300", false},
        std::tuple{"position startpos\ngo infinite wtime 1000 btime 1000\nisready\nstop", false},
        std::tuple{"setoption name MultiPV value 2\nposition startpos\ngo wtime 1000 btime 1000", false}));

}  // namespace
}  // namespace vorlek::test
