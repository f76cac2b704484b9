// board/movegen.h — pseudo-legal move generation for the side to move.
// Every caller (move reader, game-end test, book loader, search, quiescence search) uses these two
// generators; callers that need another order reorder what they produce. Each piece set is exactly the
// men of its code, except the kings: those are read from the two planes type1 and type2 alone, as the check
// test reads them, so that a man of code 7 (no position reached by moves holds one) moves as a king.
#pragma once
#include "board/attacks.h"
#include "board/castling.h"
#include "board/move.h"
#include "board/position.h"

namespace vorlek {

// The square a pawn capturing en passant moves to, in the mover's view (the pawn it takes is one below).
constexpr int EnPassantTarget(int epFile) { return A6 + epFile; }

// Order values of the capture list: higher is tried first.
constexpr int CaptureOrder(int victim, int piece) { return victim * 16 + (KING - piece); }
constexpr int EN_PASSANT_ORDER = CaptureOrder(PAWN, PAWN);
constexpr int QUEEN_PROMOTION_ORDER = 85;
constexpr int QUEEN_PROMOTION_TAKING_KING_ORDER = 96;
constexpr int UNDER_PROMOTION_ORDER[8] = {0, 0, -3, -2, -1, 0, 0, 0};  // knight, bishop, rook

namespace detail {

inline void AddCapture(ScoredMoveList& list, int kind, int from, int to, int extra, int order) {
  list.entries[list.count++] = {MakeMoveValue(kind, from, to, extra), order};
}

// The four promotions of one pawn move, queen first, under-promotions ordered last.
inline void AddPromotions(ScoredMoveList& list, int kind, int from, int to, int victim) {
  AddCapture(list, kind, from, to, QUEEN << 4 | victim,
             victim == KING ? QUEEN_PROMOTION_TAKING_KING_ORDER : QUEEN_PROMOTION_ORDER);
  for (const int piece : {ROOK, BISHOP, KNIGHT}) {
    AddCapture(list, kind, from, to, piece << 4 | victim, UNDER_PROMOTION_ORDER[piece]);
  }
}

inline void AddPieceCaptures(const Position& p, ScoredMoveList& list, int piece, int from, Bitboard targets) {
  ForEachSquare(targets, [&](int to) {
    const int victim = PieceAt(p, to);
    AddCapture(list, KIND_CAPTURE + piece, from, to, victim, CaptureOrder(victim, piece));
  });
}

// Splits a piece's quiet targets: checking ones to the list (ascending), the rest into one set.
inline void AddQuiets(MoveSetList& sets, MoveList& list, int piece, int from, Bitboard targets, Bitboard checking) {
  ForEachSquare(targets & checking, [&](int to) { list.moves[list.count++] = MakeMoveValue(piece, from, to, 0); });
  const Bitboard rest = targets & ~checking;
  if (rest) sets.entries[sets.count++] = {MakeMoveValue(piece, from, 0, 0), rest};
}

// Squares from which an enemy knight or pawn would attack the castling king's path, and the path
// squares themselves for the slider test.
constexpr Bitboard QUEEN_SIDE_PATH = SquareBit(E1) | SquareBit(D1) | SquareBit(C1);
constexpr Bitboard KING_SIDE_PATH = SquareBit(E1) | SquareBit(F1) | SquareBit(G1);
constexpr Bitboard QUEEN_SIDE_BETWEEN = SquareBit(B1) | SquareBit(C1) | SquareBit(D1);
constexpr Bitboard KING_SIDE_BETWEEN = SquareBit(F1) | SquareBit(G1);
constexpr Bitboard KnightsAround(Bitboard path) {
  Bitboard b = 0;
  for (int sq = 0; sq < 64; ++sq)
    if (path & SquareBit(sq)) b |= KnightAttacks[sq];
  return b;
}
// Only these king squares: the others next to the path touch e1 (or, h2, face the h1 rook).
constexpr Bitboard QUEEN_SIDE_KINGS = SquareBit(B2) | SquareBit(C2);
constexpr Bitboard KING_SIDE_KINGS = SquareBit(G2);

// Whether an enemy man attacks a square of the castling king's path.
inline bool PathAttacked(const Position& p, Bitboard path, Bitboard kingSquares) {
  const Bitboard occupancy = Occupancy(p);
  const Bitboard enemy = occupancy ^ p.own;
  if (enemy &
      ((KnightsAround(path) & Knights(p)) | (EnemyPawnAttackers(path) & Pawns(p)) | (kingSquares & KingPlanes(p)))) {
    return true;
  }
  const Bitboard straight = enemy & (Rooks(p) | Queens(p)), diagonal = enemy & (Bishops(p) | Queens(p));
  bool attacked = false;
  ForEachSquare(path, [&](int sq) {
    attacked = attacked || (RookAttacks(sq, occupancy) & straight) || (BishopAttacks(sq, occupancy) & diagonal);
  });
  return attacked;
}

}  // namespace detail

// Castling is generated when the right is held, the squares between king and rook are empty, and no enemy
// man attacks the king's square, the square it crosses or the one it lands on. The right stands for the
// king and the rook on their squares: they are not looked for.
inline bool CanCastleQueenSide(const Position& p) {
  return (p.castling & OWN_QUEEN_SIDE) && !(Occupancy(p) & detail::QUEEN_SIDE_BETWEEN) &&
         !detail::PathAttacked(p, detail::QUEEN_SIDE_PATH, detail::QUEEN_SIDE_KINGS);
}
inline bool CanCastleKingSide(const Position& p) {
  return (p.castling & OWN_KING_SIDE) && !(Occupancy(p) & detail::KING_SIDE_BETWEEN) &&
         !detail::PathAttacked(p, detail::KING_SIDE_PATH, detail::KING_SIDE_KINGS);
}

// The squares a pawn on `square` pushes to without promoting: one ahead when empty and not on rank 8,
// and two ahead from rank 2 when both are empty.
inline Bitboard PawnPushTargets(const Position& p, int square) {
  const Bitboard empty = ~Occupancy(p);
  const Bitboard single = (SquareBit(square) & ~RANK_7 & ~RANK_8) ? SquareBit(square + 8) & empty : 0;
  const Bitboard twice = (single && (SquareBit(square) & RANK_2)) ? SquareBit(square + 16) & empty : 0;
  return single | twice;
}

// Castling and en passant are generated from the rights and the en-passant file alone, which in a set-up
// may claim men that are not there. Whether they are: for castling the own king on e1 and the own rook on
// its corner, for en passant an empty target square and the opponent's pawn behind it. Every other
// generated move finds its men where it says.
inline bool MenWhereTheMoveSays(const Position& p, Move move) {
  switch (MoveKind(move)) {
    case KIND_CASTLE_KING_SIDE: return (p.own & KingPlanes(p) & SquareBit(E1)) && (p.own & Rooks(p) & SquareBit(H1));
    case KIND_CASTLE_QUEEN_SIDE: return (p.own & KingPlanes(p) & SquareBit(E1)) && (p.own & Rooks(p) & SquareBit(A1));
    case KIND_EN_PASSANT:
      return !(Occupancy(p) & SquareBit(MoveTo(move))) && (Opponent(p) & Pawns(p) & SquareBit(MoveTo(move) - 8));
    default: return true;
  }
}

// Captures, en passant and every promotion, each with its ordering value, appended to `list`.
inline void GenerateCaptures(const Position& p, ScoredMoveList& list) {
  const Bitboard own = p.own;
  const Bitboard occupancy = Occupancy(p);
  const Bitboard opponent = occupancy ^ own;
  const Bitboard pawns = own & Pawns(p);

  if (p.epFile != EP_NONE) {
    const int t = EnPassantTarget(p.epFile);
    if (FileOf(t) != 0 && (pawns & SquareBit(t - 9))) {
      detail::AddCapture(list, KIND_EN_PASSANT, t - 9, t, 0, EN_PASSANT_ORDER);
    }
    if (FileOf(t) != 7 && (pawns & SquareBit(t - 7))) {
      detail::AddCapture(list, KIND_EN_PASSANT, t - 7, t, 0, EN_PASSANT_ORDER);
    }
  }

  if (pawns & RANK_7) {
    ForEachSquare(opponent & RANK_8 & ~FILE_A & (pawns << 9),
                  [&](int t) { detail::AddPromotions(list, KIND_CAPTURE_PROMOTION, t - 9, t, PieceAt(p, t)); });
    ForEachSquare(opponent & RANK_8 & ~FILE_H & (pawns << 7),
                  [&](int t) { detail::AddPromotions(list, KIND_CAPTURE_PROMOTION, t - 7, t, PieceAt(p, t)); });
    ForEachSquare(~occupancy & RANK_8 & (pawns << 8),
                  [&](int t) { detail::AddPromotions(list, KIND_PROMOTION, t - 8, t, EMPTY); });
  }

  ForEachSquare(opponent & ~RANK_8 & ~FILE_A & (pawns << 9),
                [&](int t) { detail::AddPieceCaptures(p, list, PAWN, t - 9, SquareBit(t)); });
  ForEachSquare(opponent & ~RANK_8 & ~FILE_H & (pawns << 7),
                [&](int t) { detail::AddPieceCaptures(p, list, PAWN, t - 7, SquareBit(t)); });

  ForEachSquare(own & Knights(p),
                [&](int s) { detail::AddPieceCaptures(p, list, KNIGHT, s, KnightAttacks[s] & opponent); });
  ForEachSquare(own & Bishops(p),
                [&](int s) { detail::AddPieceCaptures(p, list, BISHOP, s, BishopAttacks(s, occupancy) & opponent); });
  ForEachSquare(own & Rooks(p),
                [&](int s) { detail::AddPieceCaptures(p, list, ROOK, s, RookAttacks(s, occupancy) & opponent); });
  ForEachSquare(own & Queens(p),
                [&](int s) { detail::AddPieceCaptures(p, list, QUEEN, s, QueenAttacks(s, occupancy) & opponent); });
  const Bitboard kings = own & KingPlanes(p);
  if (kings) {
    const int s = LowestSquare(kings);
    detail::AddPieceCaptures(p, list, KING, s, KingAttacks[s] & opponent);
  }
}

// Castling and the quiet moves that give check (directly or by discovery) into `list`; every other
// quiet move as one target set per piece into `sets`.
inline void GenerateQuiets(const Position& p, MoveSetList& sets, MoveList& list) {
  const Bitboard own = p.own;
  const Bitboard occupancy = Occupancy(p);
  const Bitboard empty = ~occupancy;
  const Bitboard opponent = occupancy ^ own;
  const Bitboard pawns = own & Pawns(p), knights = own & Knights(p), bishops = own & Bishops(p);
  const Bitboard rooks = own & Rooks(p), queens = own & Queens(p), kings = own & KingPlanes(p);

  // Check squares around the opponent's king; none when the record has no such king.
  Bitboard rookChecks = 0, bishopChecks = 0, knightChecks = 0, pawnChecks = 0;
  Bitboard discoverers = 0, kingLine = 0;
  if (opponent & KingPlanes(p)) {
    const int k = LowestSquare(opponent & KingPlanes(p));
    rookChecks = RookAttacks(k, occupancy);
    bishopChecks = BishopAttacks(k, occupancy);
    knightChecks = KnightAttacks[k];
    pawnChecks = ((SquareBit(k) >> 7) & ~FILE_A) | ((SquareBit(k) >> 9) & ~FILE_H);
    // A slider behind one own man on a line from the king: moving the man off the line discovers check.
    for (int d = 0; d < 8; ++d) {
      const Bitboard blockers = Rays[d][k] & occupancy;
      if (PopCount(blockers) < 2) continue;
      const int first = RayRises(d) ? LowestSquare(blockers) : HighestSquare(blockers);
      const Bitboard rest = blockers & ~SquareBit(first);
      const int second = RayRises(d) ? LowestSquare(rest) : HighestSquare(rest);
      const Bitboard slider = RayIsStraight(d) ? rooks | queens : bishops | queens;
      if (!(slider & SquareBit(second))) continue;
      const Bitboard firstBit = SquareBit(first);
      const Bitboard blocker = RayIsStraight(d) ? (knights | pawns | bishops) : (knights | pawns | rooks);
      if (blocker & firstBit) discoverers |= firstBit;
      if (kings & firstBit) kingLine = Rays[d][k];
    }
  }

  if (CanCastleQueenSide(p)) list.moves[list.count++] = MOVE_CASTLE_QUEEN_SIDE;
  if (CanCastleKingSide(p)) list.moves[list.count++] = MOVE_CASTLE_KING_SIDE;

  if (kings) {
    const int s = LowestSquare(kings);
    detail::AddQuiets(sets, list, KING, s, KingAttacks[s] & empty, kingLine ? ~kingLine : 0);
  }
  ForEachSquare(queens, [&](int s) {
    detail::AddQuiets(sets, list, QUEEN, s, QueenAttacks(s, occupancy) & empty, rookChecks | bishopChecks);
  });
  ForEachSquare(rooks, [&](int s) {
    const Bitboard checking = (discoverers & SquareBit(s)) ? ~Bitboard{0} : rookChecks;
    detail::AddQuiets(sets, list, ROOK, s, RookAttacks(s, occupancy) & empty, checking);
  });
  ForEachSquare(bishops, [&](int s) {
    const Bitboard checking = (discoverers & SquareBit(s)) ? ~Bitboard{0} : bishopChecks;
    detail::AddQuiets(sets, list, BISHOP, s, BishopAttacks(s, occupancy) & empty, checking);
  });
  ForEachSquare(knights, [&](int s) {
    const Bitboard checking = (discoverers & SquareBit(s)) ? ~Bitboard{0} : knightChecks;
    detail::AddQuiets(sets, list, KNIGHT, s, KnightAttacks[s] & empty, checking);
  });
  ForEachSquare(pawns, [&](int s) {
    const Bitboard targets = PawnPushTargets(p, s);
    const Bitboard checking = (discoverers & SquareBit(s)) ? ~Bitboard{0} : pawnChecks;
    if (targets) detail::AddQuiets(sets, list, PAWN, s, targets, checking);
  });
}

// Whether the generators would produce `m` in position p: every field compared. Guards moves that come
// from a table (the remembered move of a position) before they are made.
inline bool IsGeneratedMove(const Position& p, Move m) {
  const int kind = MoveKind(m), from = MoveFrom(m), to = MoveTo(m), extra = MoveExtra(m);
  if (from > 63 || to > 63) return false;
  const Bitboard occupancy = Occupancy(p);
  const Bitboard opponent = occupancy ^ p.own;
  const Bitboard F = SquareBit(from), T = SquareBit(to);
  const int victim = CapturedPiece(m);
  const bool ownPawnFrom = (p.own & Pawns(p) & F) != 0;
  const bool victimThere = (opponent & T) && PieceAt(p, to) == victim;
  // The squares a piece of that code on `from` reaches; a king only from the lowest own king square.
  auto reaches = [&](int piece) -> Bitboard {
    if (!(p.own & F)) return 0;
    if (piece == KING) return LowestSquare(p.own & KingPlanes(p)) == from ? KingAttacks[from] : 0;
    if (PieceAt(p, from) != piece) return 0;
    switch (piece) {
      case KNIGHT: return KnightAttacks[from];
      case BISHOP: return BishopAttacks(from, occupancy);
      case ROOK: return RookAttacks(from, occupancy);
      case QUEEN: return QueenAttacks(from, occupancy);
      default: return 0;
    }
  };
  // A pawn's diagonal step forward, not across the board's edge.
  const bool pawnTakes = (to == from + 9 && FileOf(from) != 7) || (to == from + 7 && FileOf(from) != 0);
  const bool promotionPiece = (extra >> 4) >= KNIGHT && (extra >> 4) <= QUEEN;
  switch (kind) {
    case PAWN: return ownPawnFrom && extra == 0 && (PawnPushTargets(p, from) & T);
    case KNIGHT:
    case BISHOP:
    case ROOK:
    case QUEEN:
    case KING: return extra == 0 && !(occupancy & T) && (reaches(kind) & T);
    case KIND_CAPTURE + PAWN: return ownPawnFrom && (extra >> 4) == 0 && victimThere && !(T & RANK_8) && pawnTakes;
    case KIND_CAPTURE + KNIGHT:
    case KIND_CAPTURE + BISHOP:
    case KIND_CAPTURE + ROOK:
    case KIND_CAPTURE + QUEEN:
    case KIND_CAPTURE + KING: return (extra >> 4) == 0 && victimThere && (reaches(kind - KIND_CAPTURE) & T);
    case KIND_PROMOTION:
      return ownPawnFrom && (F & RANK_7) && to == from + 8 && !(occupancy & T) && victim == 0 && promotionPiece;
    case KIND_CAPTURE_PROMOTION: return ownPawnFrom && (F & RANK_7) && victimThere && pawnTakes && promotionPiece;
    case KIND_EN_PASSANT:
      return ownPawnFrom && extra == 0 && p.epFile != EP_NONE && to == EnPassantTarget(p.epFile) &&
             ((from == to - 9 && FileOf(to) != 0) || (from == to - 7 && FileOf(to) != 7));
    case KIND_CASTLE_KING_SIDE: return m == MOVE_CASTLE_KING_SIDE && CanCastleKingSide(p);
    case KIND_CASTLE_QUEEN_SIDE: return m == MOVE_CASTLE_QUEEN_SIDE && CanCastleQueenSide(p);
    default: return false;
  }
}

}  // namespace vorlek
