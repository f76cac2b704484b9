#include "game/new_game.h"

#include "board/position.h"
#include "search/deepening.h"

namespace vorlek {

void NewGame() {
  NewSearchGame(InitialPosition());
  useBook = 1;
}

}  // namespace vorlek
