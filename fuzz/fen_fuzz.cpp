// Fuzz target: SetBoard on arbitrary text, then the invariants of the record it builds and of every
// record one pseudo-legal move away from it. Set-up positions may be anything the reader accepts:
// no kings or several, dozens of queens, pawns on the first and last ranks, rights without rooks.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "board/all_moves.h"
#include "board/attacks.h"
#include "board/fen.h"
#include "board/init_tables.h"
#include "board/make_move.h"
#include "board/movegen.h"
#include "board/position.h"
#include "search/evaluation.h"

using namespace vorlek;

namespace {

[[noreturn]] void Fail(const char* what, const Position& p) {
  std::fprintf(stderr,
               "invariant broken: %s\n  own %016llx type0 %016llx type1 %016llx type2 %016llx\n"
               "  castling %02x epFile %d fifty %d side %d score %d key %016llx\n",
               what, static_cast<unsigned long long>(p.own), static_cast<unsigned long long>(p.type0),
               static_cast<unsigned long long>(p.type1), static_cast<unsigned long long>(p.type2), p.castling, p.epFile,
               p.fifty, p.side, p.score, static_cast<unsigned long long>(p.key));
  std::abort();
}

// The record's own sets agree with each other, and its key and score with its pieces. The score is
// an i16, so with dozens of promoted pieces it agrees only modulo 2^16.
void CheckRecord(const Position& p) {
  if (p.own & ~Occupancy(p)) Fail("own outside the occupancy", p);
  if (p.type0 & p.type1 & p.type2) Fail("piece code 7 on the board", p);
  if (p.castling & ~ALL_CASTLING) Fail("castling bits outside the two nibbles", p);
  if (p.epFile > EP_NONE) Fail("en-passant file out of range", p);
  if (p.side != WHITE && p.side != BLACK) Fail("side neither white nor black", p);
  if (ComputeKey(p) != p.key) Fail("key differs from the key computed from scratch", p);
  if (static_cast<int16_t>(ComputeScore(p)) != p.score) Fail("score differs from the score computed from scratch", p);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  InitTables();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  current = PositionStack;
  *current = InitialPosition();
  if (SetBoard(*current, text.c_str()) != 1) {
    // A refused text may leave a half-written board, which the engine goes on with.
    if (current->own & ~Occupancy(*current)) Fail("own outside the occupancy after a refusal", *current);
    return 0;
  }
  const Position start = *current;
  CheckRecord(start);
  static_cast<void>(Evaluate(start));
  static_cast<void>(InCheck());

  FlatMoveList list;
  GenerateAllMoves(start, list);
  for (int i = 0; i < list.count; ++i) {
    const Move m = list.moves[i];
    if (!IsGeneratedMove(start, m)) Fail("a generated move is not recognised by IsGeneratedMove", start);
    // Every pseudo-legal move, legal or not, as the search makes it. Castling or en passant whose men are
    // not there (the set-up's rights or en-passant file claim them) toggles squares as the move says and
    // leaves a record no game reaches, which the engine goes on with; it is only looked at.
    MakeMove(m);
    if (MenWhereTheMoveSays(start, m)) CheckRecord(*current);
    static_cast<void>(Evaluate(*current));
    static_cast<void>(InCheck());
    TakeBack();
    if (current != PositionStack || std::memcmp(current, &start, sizeof start) != 0) {
      Fail("taking a move back did not restore the record", start);
    }
  }
  static Move sorted[ALL_MOVES_LIST_SIZE];
  std::copy(list.moves, list.moves + list.count, sorted);
  std::sort(sorted, sorted + list.count);
  if (std::adjacent_find(sorted, sorted + list.count) != sorted + list.count) Fail("a move generated twice", start);
  static_cast<void>(HasLegalMove());
  if (current != PositionStack) Fail("the legality test moved current", start);
  return 0;
}
