#include "game/console_board.h"

#include <array>
#include <cstdio>

#include "board/position.h"
#include "game/game_state.h"

namespace vorlek {

namespace {

constexpr int TEMPLATE_SIZE = 650;
constexpr char BORDER[] = "  +---+---+---+---+---+---+---+---+\n";
constexpr char FILES[] = "    A   B   C   D   E   F   G   H\n";

constexpr auto MakeTemplate() {
  std::array<char, TEMPLATE_SIZE + 1> t{};
  int n = 0;
  auto put = [&](const char* s) {
    while (*s) t[n++] = *s++;
  };
  put("\n\n");
  put(BORDER);
  for (int rank = 8; rank >= 1; --rank) {
    t[n++] = static_cast<char>('0' + rank);
    put(" |");
    for (int file = 0; file < 8; ++file) put("   |");
    put("\n");
    put(BORDER);
  }
  put("\n");
  put(FILES);
  put("\n");
  t[n] = '\0';
  return t;
}

// Kept for the whole run and rewritten in place: every drawing writes all 64 squares.
auto boardTemplate = MakeTemplate();
static_assert(MakeTemplate()[TEMPLATE_SIZE] == '\0' && MakeTemplate()[TEMPLATE_SIZE - 1] == '\n');

constexpr char pieceLetters[] = "pcatdr  PCATDR";

}  // namespace

void ShowBoard() {
  const Position& p = *current;
  Bitboard white = p.own, type0 = p.type0, type1 = p.type1, type2 = p.type2;
  if (p.side == BLACK) {
    white = MirrorBoard(Occupancy(p) ^ p.own);
    type0 = MirrorBoard(type0);
    type1 = MirrorBoard(type1);
    type2 = MirrorBoard(type2);
  }
  for (int sq = 0; sq < 64; ++sq) {
    int code = static_cast<int>(((type2 >> sq) & 1) * 4 + ((type1 >> sq) & 1) * 2 + ((type0 >> sq) & 1));
    if ((white >> sq) & 1) code += 8;
    const char c = (code >= 1 && code <= 14) ? pieceLetters[code - 1] : ' ';
    boardTemplate[42 + 72 * (7 - sq / 8) + 4 * (sq % 8)] = c;
  }
  std::fprintf(engineOut, "%s%s", boardTemplate.data(), "Comando: ");
}

}  // namespace vorlek
