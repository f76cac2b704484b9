#include "board/init_tables.h"

#include "board/attacks.h"
#include "board/square_table.h"

namespace vorlek {

void InitTables() {
  // The key generator advances with every draw: drawing twice would give other keys.
  static bool built = false;
  if (built) return;
  built = true;
  InitAttackTables();
  InitSquareTable();
}

}  // namespace vorlek
