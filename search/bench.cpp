#include "search/bench.h"

#include <chrono>
#include <ctime>

#include "board/fen.h"
#include "board/position.h"
#include "search/hash_table.h"

namespace vorlek {

namespace {

double CpuSeconds() {
  timespec t;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

}  // namespace

std::vector<std::string> BenchPositions() {
  return {
      // Openings.
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
      "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e6 0 2",
      "r1bqkbnr/pppp1ppp/2n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R b KQkq - 3 3",
      "rnbqkb1r/p3pppp/1p6/2ppP3/3N4/2P5/PPP1QPPP/R1B1KB1R w KQkq - 0 1",
      "r1bqk2r/pp2bppp/2p5/3pP3/P2Q1P2/2N1B3/1PP3PP/R4RK1 b kq - 0 1",
      // Middlegames, many with a tactical point.
      "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
      "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
      "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
      "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
      "1k1r4/pp1b1R2/3q2pp/4p3/2B5/4Q3/PPP2B2/2K5 b - - 0 1",
      "2q1rr1k/3bbnnp/p2p1pp1/2pPp3/PpP1P1P1/1P2BNNP/2BQ1PRK/7R b - - 0 1",
      "r1b2rk1/2q1b1pp/p2ppn2/1p6/3QP3/1BN1B3/PPP3PP/R4RK1 w - - 0 1",
      "1nk1r1r1/pp2n1pp/4p3/q2pPp1N/b1pP1P2/B1P2R2/2P1B1PP/R2Q2K1 w - - 0 1",
      "3rr1k1/pp3pp1/1qn2np1/8/3p4/PP1R1P2/2P1NQPP/R1B3K1 b - - 0 1",
      "r3r1k1/ppqb1ppp/8/4p1NQ/8/2P5/PP3PPP/R3R1K1 b - - 0 1",
      "2r3k1/1p2q1pp/2b1pr2/p1pp4/6Q1/1P1PP1R1/P1PN2PP/5RK1 w - - 0 1",
      "3rr3/2pq2pk/p2p1pnp/8/2QBPP2/1P6/P5PP/4RRK1 b - - 0 1",
      "3rn2k/ppb2rpp/2ppqp2/5N2/2P1P3/1P5Q/PB3PPP/3RR1K1 w - - 0 1",
      "2rr3k/pp3pp1/1nnqbN1p/3pN3/2pP4/2P3Q1/PPB4P/R4RK1 w - - 0 1",
      "5rk1/1ppb3p/p1pb4/6q1/3P1p1r/2P1R2P/PP1BQ1P1/5RKN w - - 0 1",
      "r1bq2rk/pp3pbp/2p1p1pQ/7P/3P4/2PB1N2/PP3PPR/2KR4 w - - 0 1",
      "5k2/6pp/p1qN4/1p1p4/3P4/2PKP2Q/PP3r2/3R4 b - - 0 1",
      // Endgames.
      "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
      "2r3k1/pppR1pp1/4p3/4P1P1/5P2/1P4K1/P1P5/8 w - - 0 1",
      "4b3/p3kp2/6p1/3pP2p/2pP1P2/4K1P1/P3N2P/8 w - - 0 1",
      "8/7p/5k2/5p2/p1p2P2/Pr1pPK2/1P1R3P/8 b - - 0 1",
      "8/k7/3p4/p2P1p2/P2P1P2/8/8/K7 w - - 0 1",
      "8/8/8/8/8/8/6k1/4K2R w K - 0 1",
      // Promotions.
      "n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - - 0 1",
      "8/1P6/8/8/8/8/6p1/K6k w - - 0 1",
      // Short mates.
      "6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1",
      "kbK5/pp6/1P6/8/8/8/8/R7 w - - 0 1",
  };
}

const std::string* FirstRefusedPosition(const std::vector<std::string>& fens) {
  for (const std::string& fen : fens) {
    Position scratch = InitialPosition();
    if (fen.size() > size_t{MAX_FEN_LENGTH} || !SetBoard(scratch, fen.c_str())) return &fen;
  }
  return nullptr;
}

BenchResult RunBench(const std::vector<std::string>& fens, int depth, IterationListener& listener, int lines) {
  MakeHashTableResident();
  BenchResult result{};
  struct Counting : IterationListener {
    explicit Counting(IterationListener& l) : next(l) {}
    void Finished(const Iteration& it) override {
      nodes += it.nodes;
      next.Finished(it);
    }
    IterationListener& next;
    uint64_t nodes = 0;
  } counting(listener);
  for (const std::string& fen : fens) {
    Position setUp = InitialPosition();
    SetBoard(setUp, fen.c_str());
    NewSearchGame(setUp);
    SearchLimits limits;
    limits.maxDepth = depth;
    limits.lines = lines;
    const auto start = std::chrono::steady_clock::now();
    const double cpuStart = CpuSeconds();
    IterativeDeepening(limits, counting);
    result.seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    result.cpuSeconds += CpuSeconds() - cpuStart;
  }
  result.nodes = counting.nodes;
  return result;
}

}  // namespace vorlek
