// board/movegen.h — pseudo-legal move generation for the side to move.
// Every caller (move reader, game-end test, book loader, search, quiescence search) uses these two
// generators; callers that need another order reorder what they produce.
#pragma once
#include "board/attacks.h"
#include "board/move.h"
#include "board/position.h"

namespace vorlek {

namespace detail {

inline void AddCapture(ScoredMoveList& list, int kind, int from, int to, int extra, int order) {
  list.entries[list.count++] = {MakeMoveValue(kind, from, to, extra), order};
}

// The four promotions of one pawn move, queen first, under-promotions ordered last.
inline void AddPromotions(ScoredMoveList& list, int kind, int from, int to, int victim) {
  AddCapture(list, kind, from, to, QUEEN << 4 | victim, victim == KING ? 96 : 85);
  AddCapture(list, kind, from, to, ROOK << 4 | victim, -1);
  AddCapture(list, kind, from, to, BISHOP << 4 | victim, -2);
  AddCapture(list, kind, from, to, KNIGHT << 4 | victim, -3);
}

inline void AddPieceCaptures(const Position& p, ScoredMoveList& list, int piece, int from, Bitboard targets) {
  ForEachSquare(targets, [&](int to) {
    const int victim = PieceAt(p, to);
    AddCapture(list, KIND_CAPTURE + piece, from, to, victim, victim * 16 + (6 - piece));
  });
}

// Splits a piece's quiet targets: checking ones to the list (ascending), the rest into one set.
inline void AddQuiets(MoveSetList& sets, MoveList& list, int piece, int from, Bitboard targets, Bitboard checking) {
  ForEachSquare(targets & checking, [&](int to) { list.moves[list.count++] = MakeMoveValue(piece, from, to, 0); });
  const Bitboard rest = targets & ~checking;
  if (rest) sets.entries[sets.count++] = {MakeMoveValue(piece, from, 0, 0), rest};
}

// Squares from which an enemy knight, pawn or king would attack the castling king's path, and the
// path squares themselves for the slider test.
constexpr Bitboard QUEEN_SIDE_PATH = SquareBit(4) | SquareBit(3) | SquareBit(2);
constexpr Bitboard KING_SIDE_PATH = SquareBit(4) | SquareBit(5) | SquareBit(6);
constexpr Bitboard KnightsAround(Bitboard path) {
  Bitboard b = 0;
  for (int sq = 0; sq < 64; ++sq)
    if (path & SquareBit(sq)) b |= KnightAttacks[sq];
  return b;
}
constexpr Bitboard QUEEN_SIDE_KNIGHTS = KnightsAround(QUEEN_SIDE_PATH);
constexpr Bitboard KING_SIDE_KNIGHTS = KnightsAround(KING_SIDE_PATH);
constexpr Bitboard QUEEN_SIDE_PAWNS = EnemyPawnAttackers(QUEEN_SIDE_PATH);
constexpr Bitboard KING_SIDE_PAWNS = EnemyPawnAttackers(KING_SIDE_PATH);
// Only these king squares: the others next to the path touch e1 (or, h2, face the h1 rook).
constexpr Bitboard QUEEN_SIDE_KINGS = SquareBit(9) | SquareBit(10);
constexpr Bitboard KING_SIDE_KINGS = SquareBit(14);

inline bool PathAttacked(const Position& p, Bitboard path, Bitboard knightSquares, Bitboard pawnSquares,
                         Bitboard kingSquares) {
  const Bitboard occupancy = Occupancy(p);
  const Bitboard enemy = occupancy ^ p.own;
  const Bitboard knights = p.type1 & ~p.type0 & ~p.type2;
  const Bitboard pawns = p.type0 & ~p.type1 & ~p.type2;
  const Bitboard kings = p.type1 & p.type2;
  if (enemy & ((knightSquares & knights) | (pawnSquares & pawns) | (kingSquares & kings))) return true;
  const Bitboard rookLike = enemy & p.type2 & (p.type0 | ~p.type1);
  const Bitboard bishopLike = enemy & p.type0 & (p.type1 | p.type2);
  bool attacked = false;
  ForEachSquare(path, [&](int sq) {
    attacked = attacked || (RookAttacks(sq, occupancy) & rookLike) || (BishopAttacks(sq, occupancy) & bishopLike);
  });
  return attacked;
}

// The own king on e1 and the own rook on its corner. The rights of a position reached by moves imply
// them; those of a set-up position need not, and castling without them would make pieces appear.
inline bool CastlingPiecesHome(const Position& p, int rookSquare) {
  const Bitboard kings = p.own & p.type1 & p.type2;
  const Bitboard rooks = p.own & p.type2 & ~p.type0 & ~p.type1;
  return (kings & SquareBit(4)) && (rooks & SquareBit(rookSquare));
}

// The opponent's pawn that has just made its double step and the empty square it passed. A position
// reached by moves always has them; the en-passant field of a set-up position need not.
inline bool EnPassantTargetHeld(const Position& p) {
  const int t = 40 + p.epFile;
  const Bitboard occupancy = Occupancy(p);
  const Bitboard opponentPawns = (occupancy ^ p.own) & p.type0 & ~p.type1 & ~p.type2;
  return (opponentPawns & SquareBit(t - 8)) && !(occupancy & SquareBit(t));
}

}  // namespace detail

// Castling is generated only when fully allowed: the right, king and rook on their squares, the empty
// squares between them, and no enemy attack on the king's square, the square it crosses or the one it
// lands on.
inline bool CanCastleQueenSide(const Position& p) {
  return (p.castling & 0x01) && detail::CastlingPiecesHome(p, 0) && !(Occupancy(p) & 0x0eULL) &&
         !detail::PathAttacked(p, detail::QUEEN_SIDE_PATH, detail::QUEEN_SIDE_KNIGHTS, detail::QUEEN_SIDE_PAWNS,
                               detail::QUEEN_SIDE_KINGS);
}
inline bool CanCastleKingSide(const Position& p) {
  return (p.castling & 0x02) && detail::CastlingPiecesHome(p, 7) && !(Occupancy(p) & 0x60ULL) &&
         !detail::PathAttacked(p, detail::KING_SIDE_PATH, detail::KING_SIDE_KNIGHTS, detail::KING_SIDE_PAWNS,
                               detail::KING_SIDE_KINGS);
}

// Captures, en passant and every promotion, each with its ordering value, appended to `list`.
inline void GenerateCaptures(const Position& p, ScoredMoveList& list) {
  const Bitboard own = p.own;
  const Bitboard occupancy = Occupancy(p);
  const Bitboard opponent = occupancy ^ own;
  const Bitboard pawns = own & p.type0 & ~p.type1 & ~p.type2;

  if (p.epFile != EP_NONE && detail::EnPassantTargetHeld(p)) {
    const int t = 40 + p.epFile;
    if (FileOf(t) != 0 && (pawns & SquareBit(t - 9))) detail::AddCapture(list, KIND_EN_PASSANT, t - 9, t, 0, 21);
    if (FileOf(t) != 7 && (pawns & SquareBit(t - 7))) detail::AddCapture(list, KIND_EN_PASSANT, t - 7, t, 0, 21);
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

  ForEachSquare(own & p.type1 & ~p.type0 & ~p.type2,
                [&](int s) { detail::AddPieceCaptures(p, list, KNIGHT, s, KnightAttacks[s] & opponent); });
  ForEachSquare(own & p.type0 & p.type1,
                [&](int s) { detail::AddPieceCaptures(p, list, BISHOP, s, BishopAttacks(s, occupancy) & opponent); });
  ForEachSquare(own & p.type2 & ~p.type0 & ~p.type1,
                [&](int s) { detail::AddPieceCaptures(p, list, ROOK, s, RookAttacks(s, occupancy) & opponent); });
  ForEachSquare(own & p.type0 & p.type2,
                [&](int s) { detail::AddPieceCaptures(p, list, QUEEN, s, QueenAttacks(s, occupancy) & opponent); });
  const Bitboard kings = own & p.type1 & p.type2;
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
  const Bitboard kings = p.type1 & p.type2;
  const Bitboard rookLike = own & p.type2 & ~p.type1;               // own rooks and queens
  const Bitboard bishopLike = own & p.type0 & (p.type1 ^ p.type2);  // own bishops and queens
  const Bitboard pawns = own & p.type0 & ~p.type1 & ~p.type2;
  const Bitboard knights = own & p.type1 & ~p.type0 & ~p.type2;
  const Bitboard bishops = own & p.type0 & p.type1;
  const Bitboard rooks = own & p.type2 & ~p.type0 & ~p.type1;
  const Bitboard queens = own & p.type0 & p.type2;

  // Check squares around the opponent's king; none when a set-up position has no such king.
  Bitboard rookChecks = 0, bishopChecks = 0, knightChecks = 0, pawnChecks = 0;
  Bitboard discoverers = 0, kingLine = 0;
  if (opponent & kings) {
    const int k = LowestSquare(opponent & kings);
    rookChecks = RookAttacks(k, occupancy);
    bishopChecks = BishopAttacks(k, occupancy);
    knightChecks = KnightAttacks[k];
    pawnChecks = ((SquareBit(k) >> 7) & ~FILE_A) | ((SquareBit(k) >> 9) & ~FILE_H);
    for (int d = 0; d < 8; ++d) {
      const Bitboard blockers = Rays[d][k] & occupancy;
      if (PopCount(blockers) < 2) continue;
      const int first = RayRises(d) ? LowestSquare(blockers) : HighestSquare(blockers);
      const Bitboard rest = blockers & ~SquareBit(first);
      const int second = RayRises(d) ? LowestSquare(rest) : HighestSquare(rest);
      const Bitboard slider = RayIsStraight(d) ? rookLike : bishopLike;
      if (!(slider & SquareBit(second))) continue;
      const Bitboard firstBit = SquareBit(first);
      const Bitboard blocker = RayIsStraight(d) ? (knights | pawns | bishops) : (knights | pawns | rooks);
      if (blocker & firstBit) discoverers |= firstBit;
      if (own & kings & firstBit) kingLine = Rays[d][k];
    }
  }

  if (CanCastleQueenSide(p)) list.moves[list.count++] = MOVE_CASTLE_QUEEN_SIDE;
  if (CanCastleKingSide(p)) list.moves[list.count++] = MOVE_CASTLE_KING_SIDE;

  if (own & kings) {
    const int s = LowestSquare(own & kings);
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
  ForEachSquare(pawns & ~RANK_7 & ~RANK_8, [&](int s) {
    const Bitboard single = SquareBit(s + 8) & empty;
    const Bitboard twice = (single && (SquareBit(s) & RANK_2)) ? SquareBit(s + 16) & empty : 0;
    const Bitboard checking = (discoverers & SquareBit(s)) ? ~Bitboard{0} : pawnChecks;
    if (single) detail::AddQuiets(sets, list, PAWN, s, single | twice, checking);
  });
}

}  // namespace vorlek

namespace vorlek {

// Whether the generators would produce `m` in position p. Guards moves that come from a table
// (the remembered move of a position) before they are made.
inline bool IsGeneratedMove(const Position& p, Move m) {
  const int kind = MoveKind(m), from = MoveFrom(m), to = MoveTo(m), extra = MoveExtra(m);
  if (from > 63 || to > 63) return false;
  const Bitboard occupancy = Occupancy(p);
  const Bitboard opponent = occupancy ^ p.own;
  const Bitboard F = SquareBit(from), T = SquareBit(to);
  const int victim = extra & 0x0f, promotion = extra >> 4;
  const bool ownPawnFrom = (p.own & F) && PieceAt(p, from) == PAWN;
  auto reaches = [&](int piece) -> Bitboard {
    switch (piece) {
      case KNIGHT: return KnightAttacks[from];
      case BISHOP: return BishopAttacks(from, occupancy);
      case ROOK: return RookAttacks(from, occupancy);
      case QUEEN: return QueenAttacks(from, occupancy);
      case KING: return (p.own & p.type1 & p.type2 & (F - 1)) ? 0 : KingAttacks[from];  // only the lowest king moves
      default: return 0;
    }
  };
  auto pawnTakes = [&] { return (to == from + 9 && FileOf(from) != 7) || (to == from + 7 && FileOf(from) != 0); };
  switch (kind) {
    case PAWN:
      return ownPawnFrom && extra == 0 && !(F & (RANK_7 | RANK_8)) && !(occupancy & T) &&
             (to == from + 8 || (to == from + 16 && (F & RANK_2) && !(occupancy & SquareBit(from + 8))));
    case KNIGHT:
    case BISHOP:
    case ROOK:
    case QUEEN:
    case KING: return extra == 0 && (p.own & F) && PieceAt(p, from) == kind && !(occupancy & T) && (reaches(kind) & T);
    case KIND_CAPTURE + PAWN:
      return ownPawnFrom && promotion == 0 && (opponent & T) && !(T & RANK_8) && PieceAt(p, to) == victim &&
             pawnTakes();
    case KIND_CAPTURE + KNIGHT:
    case KIND_CAPTURE + BISHOP:
    case KIND_CAPTURE + ROOK:
    case KIND_CAPTURE + QUEEN:
    case KIND_CAPTURE + KING: {
      const int piece = kind - KIND_CAPTURE;
      return promotion == 0 && (p.own & F) && PieceAt(p, from) == piece && (opponent & T) && PieceAt(p, to) == victim &&
             (reaches(piece) & T);
    }
    case KIND_PROMOTION:
      return ownPawnFrom && (F & RANK_7) && to == from + 8 && !(occupancy & T) && victim == 0 && promotion >= KNIGHT &&
             promotion <= QUEEN;
    case KIND_CAPTURE_PROMOTION:
      return ownPawnFrom && (F & RANK_7) && (opponent & T) && PieceAt(p, to) == victim && pawnTakes() &&
             promotion >= KNIGHT && promotion <= QUEEN;
    case KIND_EN_PASSANT:
      return ownPawnFrom && extra == 0 && p.epFile != EP_NONE && to == 40 + p.epFile &&
             detail::EnPassantTargetHeld(p) &&
             ((from == to - 9 && FileOf(to) != 0) || (from == to - 7 && FileOf(to) != 7));
    case KIND_CASTLE_KING_SIDE: return m == MOVE_CASTLE_KING_SIDE && CanCastleKingSide(p);
    case KIND_CASTLE_QUEEN_SIDE: return m == MOVE_CASTLE_QUEEN_SIDE && CanCastleQueenSide(p);
    default: return false;
  }
}

}  // namespace vorlek
