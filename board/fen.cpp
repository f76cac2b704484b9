#include "board/fen.h"

#include <cstdlib>
#include <cstring>

namespace vorlek {

namespace {

constexpr int FEN_FIELDS = 6;

// Splits the copy into blank-separated fields in place; absent fields stay null.
void SplitFields(char* text, const char* (&fields)[FEN_FIELDS]) {
  for (auto& field : fields) field = nullptr;
  int n = 0;
  char* c = text;
  while (n < FEN_FIELDS) {
    while (*c == ' ') ++c;
    if (!*c) break;
    fields[n++] = c;
    while (*c && *c != ' ') ++c;
    if (!*c) break;
    *c++ = '\0';
  }
}

int CodeOfLetter(char c) {
  switch (c) {
    case 'p':
    case 'P': return PAWN;
    case 'n':
    case 'N': return KNIGHT;
    case 'b':
    case 'B': return BISHOP;
    case 'r':
    case 'R': return ROOK;
    case 'q':
    case 'Q': return QUEEN;
    case 'k':
    case 'K': return KING;
    default: return EMPTY;
  }
}

void PutCode(Position& p, int sq, int code) {
  const Bitboard bit = SquareBit(sq);
  p.type0 = (code & 1) ? p.type0 | bit : p.type0 & ~bit;
  p.type1 = (code & 2) ? p.type1 | bit : p.type1 & ~bit;
  p.type2 = (code & 4) ? p.type2 | bit : p.type2 & ~bit;
}

// Reads the eight rank descriptions, rank 8 first. A missing rank description is a refusal.
bool ReadPlacement(Position& p, const char* placement) {
  const char* c = placement;
  for (int rank = 7; rank >= 0; --rank) {
    while (*c == '/') ++c;  // "/" in a row count as one; a leading one is skipped
    int file = 0;
    while (file < 8) {
      const char ch = *c;
      if (ch == '\0' || ch == '/') return false;  // the rank ends before its eighth square
      ++c;
      const int code = CodeOfLetter(ch);
      if (code != EMPTY) {
        const int sq = rank * 8 + file;
        PutCode(p, sq, code);
        if (ch >= 'A' && ch <= 'Z') p.own |= SquareBit(sq);
        ++file;
      } else if (ch >= '1' && ch <= '8') {
        // A digit that runs past file h stops at the end of the rank.
        for (int n = ch - '0'; n > 0 && file < 8; --n, ++file) PutCode(p, rank * 8 + file, EMPTY);
      } else {
        return false;
      }
    }
    while (*c && *c != '/') ++c;  // characters after the eighth square are ignored
  }
  return true;
}

}  // namespace

int SetBoard(Position& position, const char* text) {
  char copy[MAX_FEN_LENGTH + 1];
  std::strncpy(copy, text, MAX_FEN_LENGTH);
  copy[MAX_FEN_LENGTH] = '\0';
  const char* fields[FEN_FIELDS];
  SplitFields(copy, fields);

  const char* side = fields[1];
  if (!side || !fields[0] || (std::strcmp(side, "w") != 0 && std::strcmp(side, "b") != 0)) return 0;
  const bool blackToMove = side[0] == 'b';

  Position& p = position;
  p.own = p.type0 = p.type1 = p.type2 = 0;
  if (!ReadPlacement(p, fields[0])) return 0;

  const char* castling = fields[2];
  if (!castling) return 0;
  if (std::strcmp(castling, "-") == 0) {
    p.castling = 0;
  } else {
    for (const char* c = castling; *c; ++c) {
      if (!std::strchr("KQkq", *c)) return 0;
    }
    // In white's view: white's rights are the own ones.
    p.castling = 0;
    if (std::strchr(castling, 'K')) p.castling |= OWN_KING_SIDE;
    if (std::strchr(castling, 'Q')) p.castling |= OWN_QUEEN_SIDE;
    if (std::strchr(castling, 'k')) p.castling |= THEIR_KING_SIDE;
    if (std::strchr(castling, 'q')) p.castling |= THEIR_QUEEN_SIDE;
  }

  const char* ep = fields[3];
  if (!ep) return 0;
  if (std::strcmp(ep, "-") == 0) {
    p.epFile = EP_NONE;
  } else if (ep[0] >= 'a' && ep[0] <= 'h' && ep[1] == (blackToMove ? '3' : '6')) {
    p.epFile = static_cast<uint8_t>(ep[0] - 'a');
  } else {
    return 0;
  }

  // The halfmove clock reads as strtol reads it; an absent field reads as 0.
  const long clock = fields[4] ? std::strtol(fields[4], nullptr, 10) : 0;
  if (static_cast<uint32_t>(clock) > 100) return 0;
  p.fifty = static_cast<uint8_t>(clock);

  p.repetition = 0;
  p.side = WHITE;
  p.key = ComputeKey(p);
  p.score = static_cast<int16_t>(ComputeScore(p));
  if (blackToMove) FlipBoard(p);
  return 1;
}

}  // namespace vorlek
