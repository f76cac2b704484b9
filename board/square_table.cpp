#include "board/square_table.h"

namespace vorlek {

namespace {

// Square bonuses by piece code, rank 8 of the owner's view at the top as the table is usually printed.
constexpr int16_t PIECE_SQUARE_PRINTED[8][64] = {
    {},
    // pawn
    {0,  0,  0,  0,  0,  0,  0,  0,   //
     60, 60, 60, 60, 60, 60, 60, 60,  //
     25, 25, 25, 30, 30, 15, 15, 15,  //
     10, 10, 10, 16, 16, 6,  6,  6,   //
     6,  6,  6,  12, 12, 2,  2,  2,   //
     3,  3,  3,  4,  4,  1,  1,  1,   //
     0,  0,  0,  -2, -2, 0,  0,  0,   //
     0,  0,  0,  0,  0,  0,  0,  0},
    // knight
    {-5, -5, 0,  0,  0,  0,  -5, -5,  //
     -5, 0,  10, 10, 10, 10, 0,  -5,  //
     0,  10, 15, 15, 15, 15, 10, 0,   //
     0,  10, 15, 20, 20, 15, 10, 0,   //
     0,  10, 15, 20, 20, 15, 10, 0,   //
     0,  10, 15, 15, 15, 15, 10, 0,   //
     -5, 0,  10, 10, 10, 10, 0,  -5,  //
     -5, -5, 0,  0,  0,  0,  -5, -5},
    // bishop
    {-5, -5, 0,  0,  0,  0,  -5, -5,  //
     -5, 0,  10, 10, 10, 10, 0,  -5,  //
     -5, 10, 15, 15, 15, 15, 10, -5,  //
     -5, 10, 15, 20, 20, 15, 10, -5,  //
     -5, 10, 15, 20, 20, 15, 10, -5,  //
     -5, 10, 15, 15, 15, 15, 10, -5,  //
     -5, 0,  10, 10, 10, 10, 0,  -5,  //
     -5, -5, 0,  0,  0,  0,  -5, -5},
    // rook
    {10, 10, 10, 10, 10, 10, 10, 10,  //
     10, 10, 10, 10, 10, 10, 10, 10,  //
     0,  0,  0,  0,  0,  0,  0,  0,   //
     0,  0,  0,  10, 10, 0,  0,  0,   //
     0,  0,  0,  10, 10, 0,  0,  0,   //
     0,  0,  0,  0,  0,  0,  0,  0,   //
     0,  0,  0,  0,  0,  0,  0,  0,   //
     0,  -5, -5, 0,  0,  0,  -5, 0},
    // queen
    {-4, -4, -4, -4, -4, -4, -4, -4,  //
     -4, 0,  0,  0,  0,  0,  0,  -4,  //
     -4, 0,  4,  4,  4,  4,  0,  -4,  //
     -4, 0,  4,  8,  8,  4,  0,  -4,  //
     -4, 0,  4,  8,  8,  4,  0,  -4,  //
     -4, 0,  4,  4,  4,  4,  0,  -4,  //
     -4, 0,  0,  0,  0,  0,  0,  -4,  //
     -4, -4, 0,  4,  0,  0,  -4, -4},
    {},  // king: placement is scored by the evaluation's king tables
    {},
};

uint64_t rngState[64] = {
    0x0000fab103782155, 0x003e45aa83e55101, 0x0000000000115feb, 0xf00173bbc9053111,  //
    0x0100dda436670311, 0xc2df6f8b90003678, 0x667dbc2574ae9770, 0x111fa8177b143214,  //
    0x8896453eed221da3, 0x744325dbb6789540, 0x0000436111d7cb43, 0x880ff4f5f32c0049,  //
    0x15154d7a210eae65, 0x915fd6b6435bd0f0, 0x0040060fa4025571, 0x48766321ffe4cca2,  //
    0x264dd68311fa355d, 0x886477d4b20001a2, 0x1000f4c378000cca, 0x3712ab5ccc790873,  //
    0xfffff25489990144, 0xa3590271bc556438, 0xce4ee16888f11234, 0x45a745339c0a00f1,  //
    0x0016f39ae377cb4f, 0x0010573d44e12b60, 0x5467a09ddb873811, 0x69f3712131a81095,  //
    0x729999bac5335147, 0x0007aa42796078bb, 0xa43756498ced2746, 0x5723d5c7156000aa,  //
    0x7734c70929183a65, 0x99cca4480e2e4d12, 0x800001c00755fcc1, 0x00000000000083a2,  //
    0x466434598d234156, 0xc076fbb32a94ed62, 0xac4896765453211f, 0x5739786894321caa,  //
    0xdd37568456a4bc36, 0x74538473e214bc34, 0x6378dd00000001ab, 0x472341a88ed49354,  //
    0xca54cab456baac79, 0x8361511111ffa400, 0x0000007452aed091, 0x34654f890b3333ca,  //
    0x88833254aaaa4321, 0xd4ee56289653ced4, 0xf43200ab12d65ec7, 0x49208532aa90b325,  //
    0xa00004627a12ee38, 0xcc45437479660354, 0xeed352777231caa7, 0xbb478365d7a21011,  //
    0x9d543e327444659c, 0x82351aac8342456f, 0x83565758435366a0, 0xeeaa450045475823,  //
    0x468213224435dda7, 0xc765cc9945362012, 0x7ff3200000cda132, 0x0000000000000000,
};
int rngIndex = 63;

}  // namespace

uint64_t NextRandom() {
  const int i = rngIndex;
  const uint64_t x = rngState[(i + 1) & 63] + rngState[(i + 35) & 63];
  rngState[i] = x;
  rngIndex = (i + 1) & 63;
  return x;
}

void InitSquareTable() {
  for (auto& slot : SquareTable.slots) {
    for (auto& square : slot) square.key = NextRandom();
  }
  for (auto& key : SquareTable.castlingKeys) key = NextRandom();
  for (auto& key : SquareTable.epKeys) key = NextRandom();
  SquareTable.sideKey = NextRandom();
  for (int sideBit = 0; sideBit < 2; ++sideBit) {
    for (int packed = 0; packed < 16; ++packed) {
      uint64_t key = 0;
      for (const CastlingRight right : {OWN_QUEEN_SIDE, OWN_KING_SIDE, THEIR_QUEEN_SIDE, THEIR_KING_SIDE}) {
        const int bit = right & OWN_CASTLING ? right : right >> 2;
        if (packed & bit) key ^= SquareTable.castlingKeys[CastlingKeyIndex(right, sideBit)];
      }
      castlingRightsKeys[sideBit][packed] = key;
    }
  }

  for (int type = 0; type < 8; ++type) {
    for (int sq = 0; sq < 64; ++sq) {
      // The printed table has rank 8 first, so square sq stands where the printed board has its mirror.
      const int value = PIECE_SQUARE_PRINTED[type][Mirror(sq)] + pieceValue[type];
      SquareTable.slots[type][sq].value = value;
      SquareTable.slots[type | WHITE_PIECE][sq].value = value;
    }
  }
}

}  // namespace vorlek
