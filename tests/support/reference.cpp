#include "support/reference.h"

#include <cstdlib>

#include "board/attacks.h"
#include "board/square_table.h"
#include "search/evaluation.h"

namespace vorlek::reference {

Position stack[STACK_SIZE];
Position* current = stack;

namespace {

bool Has(Bitboard b, int sq) { return sq >= 0 && sq < 64 && ((b >> sq) & 1); }
Bitboard Bit(int sq) { return Bitboard{1} << sq; }
int File(int sq) { return sq % 8; }
int Rank(int sq) { return sq / 8; }
Bitboard Occupied(const Position& p) { return p.type0 | p.type1 | p.type2; }

// The piece code on a square, read from the three planes: 0..7.
int CodeAt(const Position& p, int sq) {
  return static_cast<int>(((p.type0 >> sq) & 1) + 2 * ((p.type1 >> sq) & 1) + 4 * ((p.type2 >> sq) & 1));
}

// The squares of each code 0..7 held by the side to move (own) and by its opponent (occupancy ^ own).
struct Pieces {
  Bitboard own[8], opp[8];
  // The generators' kings: every man whose code has the two upper planes, code 6 or 7.
  Bitboard OwnKings() const { return own[6] | own[7]; }
  Bitboard OppKings() const { return opp[6] | opp[7]; }
};
Pieces PiecesOf(const Position& p) {
  Pieces pieces{};
  for (int sq = 0; sq < 64; ++sq) {
    if (Has(p.own, sq)) pieces.own[CodeAt(p, sq)] |= Bit(sq);
    if (Has(Occupied(p) ^ p.own, sq)) pieces.opp[CodeAt(p, sq)] |= Bit(sq);
  }
  return pieces;
}

std::vector<int> Ascending(Bitboard b) {
  std::vector<int> squares;
  for (int sq = 0; sq < 64; ++sq)
    if (Has(b, sq)) squares.push_back(sq);
  return squares;
}
int Lowest(Bitboard b) { return b ? Ascending(b).front() : -1; }

Bitboard ByteSwap(Bitboard b) {
  Bitboard r = 0;
  for (int rank = 0; rank < 8; ++rank) r |= ((b >> (8 * rank)) & 0xff) << (8 * (7 - rank));
  return r;
}

void FlipBoard(Position& p) {
  p.own = ByteSwap(Occupied(p) ^ p.own);
  p.type0 = ByteSwap(p.type0);
  p.type1 = ByteSwap(p.type1);
  p.type2 = ByteSwap(p.type2);
  p.castling = static_cast<uint8_t>((p.castling >> 4) | (p.castling << 4));
  p.side ^= 8;
  p.key ^= SquareTable.sideKey;
  p.score = static_cast<int16_t>(-p.score);
}

// ---- move generation ----

// The squares a knight, bishop, rook, queen or king on s attacks.
Bitboard Attacks(int piece, int s, Bitboard occ) {
  return piece == 2   ? KnightAttacks[s]
         : piece == 3 ? BishopAttacks(s, occ)
         : piece == 4 ? RookAttacks(s, occ)
         : piece == 5 ? QueenAttacks(s, occ)
                      : KingAttacks[s];
}

void AddCapture(std::vector<ScoredMove>& list, int kind, int from, int to, int extra, int order) {
  list.push_back({MakeMoveValue(kind, from, to, extra), order});
}

void AddPromotions(std::vector<ScoredMove>& list, int kind, int from, int to, int victim) {
  AddCapture(list, kind, from, to, 5 << 4 | victim, victim == 6 ? 96 : 85);
  AddCapture(list, kind, from, to, 4 << 4 | victim, -1);
  AddCapture(list, kind, from, to, 3 << 4 | victim, -2);
  AddCapture(list, kind, from, to, 2 << 4 | victim, -3);
}

// Whether an opponent piece attacks castling square sq: knight, pawn or king on the fixed squares, a rook
// or queen (bishop or queen) as the first piece on a line from sq.
bool CastlingSquareAttacked(const Position& p, const Pieces& pieces, int sq, Bitboard kingSquares) {
  const Bitboard pawnSquares = (File(sq) != 0 ? Bit(sq + 7) : 0) | (File(sq) != 7 ? Bit(sq + 9) : 0);
  return (KnightAttacks[sq] & pieces.opp[2]) || (pawnSquares & pieces.opp[1]) || (kingSquares & pieces.OppKings()) ||
         (RookAttacks(sq, Occupied(p)) & (pieces.opp[4] | pieces.opp[5])) ||
         (BishopAttacks(sq, Occupied(p)) & (pieces.opp[3] | pieces.opp[5]));
}

// One piece's quiet targets: the checking ones (all of them for a discoverer) to the list, ascending,
// the rest as one set.
void AddQuiets(Quiets& q, int piece, int from, Bitboard targets, Bitboard checking) {
  for (int to : Ascending(targets & checking)) q.list.push_back(MakeMoveValue(piece, from, to, 0));
  if (targets & ~checking) q.sets.push_back({MakeMoveValue(piece, from, 0, 0), targets & ~checking});
}

}  // namespace

void Load(const Position* records, int count) {
  for (int i = 0; i < count; ++i) stack[i] = records[i];
  current = stack + count - 1;
}

std::vector<ScoredMove> GenerateCaptures(const Position& p) {
  std::vector<ScoredMove> list;
  const Pieces pieces = PiecesOf(p);
  const Bitboard occ = Occupied(p), opp = occ ^ p.own, pawns = pieces.own[1];
  // En passant looks at the file and the own pawns only: the file says an opponent's pawn has just passed.
  if (p.epFile != 8) {
    const int t = 40 + p.epFile;
    if (Has(pawns, t - 9) && File(t) != 0) AddCapture(list, 41, t - 9, t, 0, 21);
    if (Has(pawns, t - 7) && File(t) != 7) AddCapture(list, 41, t - 7, t, 0, 21);
  }
  // Pawns take to the upper right (from t - 9, t not on file a), then to the upper left (t - 7, not file h).
  const int steps[2][2] = {{9, 0}, {7, 7}};
  if (pawns & 0x00ff000000000000ULL) {
    for (const auto& [step, edge] : steps)
      for (int t = 56; t < 64; ++t)
        if (Has(opp, t) && File(t) != edge && Has(pawns, t - step)) AddPromotions(list, 25, t - step, t, CodeAt(p, t));
    for (int t = 56; t < 64; ++t)
      if (!Has(occ, t) && Has(pawns, t - 8)) AddPromotions(list, 17, t - 8, t, 0);
  }
  for (const auto& [step, edge] : steps)
    for (int t = 0; t < 56; ++t)
      if (Has(opp, t) && File(t) != edge && Has(pawns, t - step))
        AddCapture(list, 9, t - step, t, CodeAt(p, t), CodeAt(p, t) * 16 + 5);
  for (int piece = 2; piece <= 6; ++piece) {
    // Every piece of the code, ascending; of the kings only the lowest.
    const Bitboard movers = piece == 6 ? (pieces.OwnKings() ? Bit(Lowest(pieces.OwnKings())) : 0) : pieces.own[piece];
    for (int s : Ascending(movers))
      for (int t : Ascending(Attacks(piece, s, occ) & opp))
        AddCapture(list, 8 + piece, s, t, CodeAt(p, t), CodeAt(p, t) * 16 + 6 - piece);
  }
  return list;
}

Quiets GenerateQuiets(const Position& p) {
  Quiets q;
  const Pieces pieces = PiecesOf(p);
  const Bitboard occ = Occupied(p), empty = ~occ;
  Bitboard R = 0, B = 0, N = 0, P = 0, discoverers = 0, kingLine = 0;
  // Without an opponent king there are no check squares and no discoveries, as in the engine.
  const int K = Lowest(pieces.OppKings());
  if (K >= 0) {
    R = RookAttacks(K, occ);
    B = BishopAttacks(K, occ);
    N = KnightAttacks[K];
    P = (K >= 7 && File(K - 7) != 0 ? Bit(K - 7) : 0) | (K >= 9 && File(K - 9) != 7 ? Bit(K - 9) : 0);
    for (int d = 0; d < 8; ++d) {  // Rays: -7, +7, -9, +9, -8, +8, -1, +1
      const std::vector<int> on = Ascending(Rays[d][K] & occ);
      if (on.size() < 2) continue;
      const bool rises = d % 2 == 1, straight = d >= 4;
      const int first = rises ? on[0] : on[on.size() - 1], second = rises ? on[1] : on[on.size() - 2];
      if (!Has(pieces.own[5] | pieces.own[straight ? 4 : 3], second)) continue;
      if (Has(pieces.own[2] | pieces.own[1] | pieces.own[straight ? 3 : 4], first)) discoverers |= Bit(first);
      if (Has(pieces.OwnKings(), first)) kingLine = Rays[d][K];
    }
  }
  // Castling trusts its rights: king and rook are not looked for.
  if ((p.castling & 1) && !(occ & (Bit(1) | Bit(2) | Bit(3))) &&
      !CastlingSquareAttacked(p, pieces, 4, Bit(9) | Bit(10)) &&
      !CastlingSquareAttacked(p, pieces, 3, Bit(9) | Bit(10)) &&
      !CastlingSquareAttacked(p, pieces, 2, Bit(9) | Bit(10)))
    q.list.push_back(MOVE_CASTLE_QUEEN_SIDE);
  if ((p.castling & 2) && !(occ & (Bit(5) | Bit(6))) && !CastlingSquareAttacked(p, pieces, 4, Bit(14)) &&
      !CastlingSquareAttacked(p, pieces, 5, Bit(14)) && !CastlingSquareAttacked(p, pieces, 6, Bit(14)))
    q.list.push_back(MOVE_CASTLE_KING_SIDE);
  const int k = Lowest(pieces.OwnKings());
  if (k >= 0) AddQuiets(q, 6, k, KingAttacks[k] & empty, kingLine ? ~kingLine : 0);
  // Then queens, rooks, bishops, knights and pawns; a discoverer's moves all give check.
  const Bitboard checking[6] = {0, P, N, B, R, R | B};
  for (int piece = 5; piece >= 1; --piece) {
    for (int s : Ascending(pieces.own[piece])) {
      const Bitboard single = s + 8 < 56 && !Has(occ, s + 8) ? Bit(s + 8) : 0;
      const Bitboard twice = single && Rank(s) == 1 && !Has(occ, s + 16) ? Bit(s + 16) : 0;
      const Bitboard targets = piece == 1 ? single | twice : Attacks(piece, s, occ) & empty;
      AddQuiets(q, piece, s, targets, Has(discoverers, s) ? ~0ULL : checking[piece]);
    }
  }
  return q;
}

std::vector<Move> GenerateAll(const Position& p) {
  std::vector<Move> all;
  for (const ScoredMove& c : GenerateCaptures(p)) all.push_back(c.move);
  const Quiets q = GenerateQuiets(p);
  for (Move m : q.list) all.push_back(m);
  for (const MoveSet& set : q.sets)
    for (int to : Ascending(set.targets)) all.push_back(set.head | static_cast<Move>(to) << 16);
  return all;
}

// ---- make move ----

void MakeMove(Move move) {
  if (current + 1 == stack + STACK_SIZE) std::abort();
  *(current + 1) = *current;
  Position& p = *++current;
  const int kind = MoveKind(move), from = MoveFrom(move), to = MoveTo(move), extra = MoveExtra(move);
  const int side = p.side, sb = side >> 3, victim = extra & 15, promotion = (extra >> 4) & 7;
  const Bitboard F = Bit(from), T = Bit(to);
  const auto& slots = SquareTable.slots;
  auto ownKey = [&](int code, int sq) { return slots[code | (side ^ 8)][sq].key; };
  auto oppKey = [&](int code, int sq) { return slots[code | side][Mirror(sq)].key; };
  auto ownValue = [&](int code, int sq) { return slots[code | (side ^ 8)][sq].value; };
  auto oppValue = [&](int code, int sq) { return slots[code | side][Mirror(sq)].value; };
  auto addScore = [&](int delta) { p.score = static_cast<int16_t>(p.score + delta); };
  Bitboard* const planes[3] = {&p.type0, &p.type1, &p.type2};
  auto toggle = [&](int code, Bitboard b) {
    for (int i = 0; i < 3; ++i) *planes[i] ^= (code >> i & 1) ? b : 0;
  };
  auto set = [&](int code, Bitboard b) {
    for (int i = 0; i < 3; ++i) *planes[i] |= (code >> i & 1) ? b : 0;
  };
  auto clear = [&](Bitboard b) {
    for (Bitboard* plane : planes) *plane &= ~b;
  };
  auto clearEp = [&] {
    if (p.epFile != 8) p.key ^= SquareTable.epKeys[p.epFile];
    p.epFile = 8;
  };
  auto clearRight = [&](int bit) {
    if (!(p.castling & bit)) return;
    p.castling &= static_cast<uint8_t>(~bit);
    p.key ^= SquareTable.castlingKeys[bit == 2 ? 0 + sb : bit == 1 ? 2 + sb : bit == 0x20 ? 1 - sb : 3 - sb];
  };
  auto pieceRights = [&](int piece) {
    if (piece == 4 && from == 7) clearRight(2);
    if (piece == 4 && from == 0) clearRight(1);
    if (piece == 6) clearRight(2), clearRight(1);
  };
  auto cornerCapture = [&] { clearRight(to == 63 ? 0x20 : to == 56 ? 0x10 : 0); };

  if (kind >= 1 && kind <= 6) {
    p.own ^= F | T;
    toggle(kind, F | T);
    p.key ^= ownKey(kind, from) ^ ownKey(kind, to);
    addScore(ownValue(kind, to) - ownValue(kind, from));
    clearEp();
    if (kind == 1 && Rank(from) == 1 && Rank(to) == 3) {
      p.epFile = static_cast<uint8_t>(File(to));
      p.key ^= SquareTable.epKeys[p.epFile];
    }
    pieceRights(kind);
    p.fifty = kind == 1 ? 0 : p.fifty + 1;
    p.repetition = 0;  // kinds 2..6: found by the scan below
  } else if (kind >= 9 && kind <= 14) {
    const int piece = kind - 8;
    clear(T);
    toggle(piece, F | T);
    p.own ^= F | T;
    p.key ^= ownKey(piece, from) ^ ownKey(piece, to) ^ oppKey(victim, to);
    addScore(oppValue(victim, to) + ownValue(piece, to) - ownValue(piece, from));
    clearEp();
    pieceRights(piece);
    cornerCapture();
    p.fifty = p.repetition = 0;
  } else if (kind == 17 || kind == 25) {
    p.own ^= F | T;
    if (kind == 25) clear(T);
    p.type0 ^= F;
    set(promotion, T);  // set, not toggled: a promotion onto an occupied square keeps the planes there
    p.key ^= ownKey(1, from) ^ ownKey(promotion, to) ^ (kind == 25 ? oppKey(victim, to) : 0);
    addScore(ownValue(promotion, to) - ownValue(1, from) + (kind == 25 ? oppValue(victim, to) : 0));
    clearEp();
    if (kind == 25) cornerCapture();
    p.fifty = p.repetition = 0;
  } else if (kind == 41) {
    p.own ^= F | T;
    p.type0 ^= F | T | Bit(to - 8);
    p.key ^= ownKey(1, from) ^ ownKey(1, to) ^ oppKey(1, to - 8);
    clearEp();  // with no file set no en-passant key leaves the key, as in the engine
    addScore(oppValue(1, to - 8) + ownValue(1, to) - ownValue(1, from));
    p.fifty = p.repetition = 0;
  } else if (kind == 22 || kind == 38) {
    const int kingTo = kind == 22 ? 6 : 2, rookFrom = kind == 22 ? 7 : 0, rookTo = kind == 22 ? 5 : 3;
    p.own ^= F | T | Bit(rookFrom) | Bit(rookTo);
    p.type1 ^= F | T;
    p.type2 ^= F | T | Bit(rookFrom) | Bit(rookTo);
    // The board takes the move's from and to; the keys and the score name the fixed squares.
    p.key ^= ownKey(6, 4) ^ ownKey(6, kingTo) ^ ownKey(4, rookFrom) ^ ownKey(4, rookTo);
    addScore(ownValue(6, kingTo) - ownValue(6, 4));
    clearEp();
    clearRight(2);
    clearRight(1);
    p.fifty++;
    p.repetition = 0;
  } else {
    return;  // not a move: an unchanged copy, same side to move
  }
  reference::FlipBoard(p);
  // Repetition: the same key 2, 4, ... plies back, within fifty; no history lies below the stack.
  for (int distance = 2; kind >= 2 && kind <= 6 && distance <= p.fifty && distance <= current - stack; distance += 2) {
    if ((current - distance)->key == p.key) {
      p.repetition = static_cast<uint8_t>((current - distance)->repetition + 1);
      break;
    }
  }
}

// ---- in check and evaluation ----

bool InCheck(const Position& p) {
  // A position without a king is not in check, as in the engine.
  const int k = Lowest(p.own & p.type1 & p.type2);
  if (k < 0) return false;
  const Bitboard occ = Occupied(p), enemy = occ ^ p.own, K = Bit(k);
  const Bitboard rooksQueens = p.type2 & (p.type0 | ~p.type1), bishopsQueens = p.type0 & (p.type1 | p.type2);
  const Bitboard pawns = p.type0 & ~p.type1 & ~p.type2, knights = p.type1 & ~p.type0 & ~p.type2;
  const Bitboard pawnSquares = ((K << 7) & 0x7f7f7f7f7f7f7f7fULL) | ((K << 9) & 0xfefefefefefefefeULL);
  return (RookAttacks(k, occ) & enemy & rooksQueens) || (BishopAttacks(k, occ) & enemy & bishopsQueens) ||
         (pawnSquares & enemy & pawns) || (KnightAttacks[k] & enemy & knights) ||
         (KingAttacks[k] & enemy & p.type1 & p.type2);
}

int Evaluate(const Position& p) {
  const Bitboard occ = Occupied(p), opp = occ ^ p.own;
  const int men = static_cast<int>(Ascending(occ).size());
  auto kingTerm = [&](int i) { return ((32 - men) * KingEndgameTable[i] + men * KingOpeningTable[i]) >> 5; };
  const size_t ownBishops = Ascending(p.own & p.type0 & p.type1).size();
  const size_t oppBishops = Ascending(opp & p.type0 & p.type1).size();
  int result = p.score + (ownBishops == 2 ? 50 : 0) - (oppBishops == 2 ? 50 : 0);
  // A side without a king adds no king term, as in the engine.
  const int ownKing = Lowest(p.own & p.type1 & p.type2), oppKing = Lowest(opp & p.type1 & p.type2);
  if (ownKing >= 0) result += kingTerm(ownKing);
  if (oppKing >= 0) result -= kingTerm(64 + oppKing);
  return result;
}

}  // namespace vorlek::reference
