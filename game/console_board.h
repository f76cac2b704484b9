// game/console_board.h — the board drawn in text after every command in console mode.
#pragma once

namespace vorlek {

// Draws the current position from white's side, rank 8 at the top, followed by the prompt.
void ShowBoard();

}  // namespace vorlek
