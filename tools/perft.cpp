// vorlek-perft — counts the legal leaf nodes of a position with the engine's own generators,
// make-move and legality test.
//   vorlek-perft [--divide] DEPTH [FEN]
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "app/command_line.h"
#include "board/all_moves.h"
#include "board/fen.h"
#include "board/history.h"
#include "board/init_tables.h"
#include "board/make_move.h"
#include "board/notation.h"
#include "board/position.h"

using namespace vorlek;

namespace {

constexpr int MAX_PERFT_DEPTH = 64;

constexpr ProgramText PROGRAM = {
    "vorlek-perft",
    "usage: vorlek-perft [--divide] DEPTH [FEN] | --help | --version\n"
    "  Counts the legal leaf nodes DEPTH plies below a position (default: the initial position), with the\n"
    "  engine's own move generators, make-move and legality test. --divide gives the count below each move.\n"};

}  // namespace

int main(int argc, char** argv) {
  if (const auto status = AnswerCommonOptions(argc, argv, PROGRAM, {"--divide"})) return *status;
  int arg = 1;
  bool divide = false;
  if (arg < argc && std::strcmp(argv[arg], "--divide") == 0) {
    divide = true;
    ++arg;
  }
  if (arg >= argc) return UsageError(PROGRAM);
  char* end;
  const long depth = std::strtol(argv[arg], &end, 10);
  if (*end || depth < 0 || depth > MAX_PERFT_DEPTH) {
    std::fprintf(stderr, "vorlek-perft: depth must be a number from 0 to %d\n", MAX_PERFT_DEPTH);
    return 2;
  }
  ++arg;

  InitTables();
  StartGame(InitialPosition());
  if (arg < argc) {
    std::string fen;
    for (; arg < argc; ++arg) {
      if (!fen.empty()) fen += ' ';
      fen += argv[arg];
    }
    if (fen.size() > size_t{MAX_FEN_LENGTH} || !SetBoard(*current, fen.c_str())) {
      std::fprintf(stderr, "vorlek-perft: position refused: %s\n", fen.c_str());
      return 2;
    }
  }

  const auto start = std::chrono::steady_clock::now();
  uint64_t total = 0;
  if (divide && depth > 0) {
    FlatMoveList list;
    GenerateAllMoves(*current, list);
    for (int i = 0; i < list.count; ++i) {
      char text[MOVE_TEXT_SIZE];
      MoveToText(text, list.moves[i], current->side);
      if (!MakeMoveIfLegal(list.moves[i])) continue;
      const uint64_t leaves = Perft(static_cast<int>(depth) - 1);
      TakeBack();
      text[4] = text[4] == ' ' ? '\0' : text[4];
      std::printf("%s %llu\n", text, static_cast<unsigned long long>(leaves));
      total += leaves;
    }
  } else {
    total = Perft(static_cast<int>(depth));
  }
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("%llu\n", static_cast<unsigned long long>(total));
  std::fprintf(stderr, "%.3f s, %.0f leaves/s\n", seconds, seconds > 0 ? total / seconds : 0.0);
  return 0;
}
