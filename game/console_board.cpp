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
  // Always from white's side: a record stored from black's view is turned over first.
  Position p = *current;
  if (p.side == BLACK) FlipBoard(p);
  for (int sq = 0; sq < 64; ++sq) {
    const int code = PieceAt(p, sq) + ((p.own & SquareBit(sq)) ? WHITE_PIECE : 0);
    const char c = (code >= 1 && code <= 14) ? pieceLetters[code - 1] : ' ';
    boardTemplate[42 + 72 * (7 - sq / 8) + 4 * (sq % 8)] = c;
  }
  std::fprintf(engineOut, "%s%s", boardTemplate.data(), "Comando: ");
}

}  // namespace vorlek
