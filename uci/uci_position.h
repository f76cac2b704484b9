// uci/uci_position.h — the game as a UCI interface sends it: "position startpos|fen FEN [moves m1 m2 ...]".
#pragma once
#include <string>

#include "board/move.h"

namespace vorlek::uci {

// Sets the game on the position stack from the arguments of a "position" command: the set-up position,
// then each move made as the opponent's moves are, so that repetitions and the fifty-move count run
// across the whole game. On a FEN the reader refuses, or a move that is not legal, the game stays what it
// was and `problem` says which.
bool SetPosition(const std::string& arguments, std::string& problem);

// The legal move of the current position that a text in coordinate notation names (the promotion letter in
// either case), or MOVE_NONE.
Move LegalMoveNamed(std::string text);

}  // namespace vorlek::uci
