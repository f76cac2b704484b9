#include "uci/uci_position.h"

#include <cctype>
#include <sstream>
#include <vector>

#include "board/fen.h"
#include "board/history.h"
#include "board/make_move.h"
#include "board/position.h"
#include "board/user_move.h"

namespace vorlek::uci {

namespace {

// The game before the command, kept while the new one is built.
SavedGame before;

}  // namespace

Move LegalMoveNamed(std::string text) {
  if (text.size() < 4 || text.size() > 5) return MOVE_NONE;
  if (text.size() == 5) text[4] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[4])));
  Move move;
  return FindUserMove(text.c_str(), move) == MOVE_OK ? move : MOVE_NONE;
}

bool SetPosition(const std::string& arguments, std::string& problem) {
  std::istringstream in(arguments);
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);

  size_t next = 0;
  Position start = InitialPosition();
  if (next < words.size() && words[next] == "startpos") {
    ++next;
  } else if (next < words.size() && words[next] == "fen") {
    std::string fen;
    for (++next; next < words.size() && words[next] != "moves"; ++next) fen += (fen.empty() ? "" : " ") + words[next];
    if (fen.size() > size_t{MAX_FEN_LENGTH} || !SetBoard(start, fen.c_str())) {
      problem = "position refused: fen " + fen;
      return false;
    }
  } else {
    problem = "position needs startpos or fen: position " + arguments;
    return false;
  }
  if (next < words.size() && words[next] != "moves") {
    problem = "position: expected moves, found " + words[next];
    return false;
  }

  SaveGame(before);
  StartGame(start);
  const size_t firstMove = next + 1;
  for (next = firstMove; next < words.size(); ++next) {
    const Move move = LegalMoveNamed(words[next]);
    if (move) MakeMove(move);
    if (!move) {
      problem = "illegal move " + words[next] + " (move " + std::to_string(next - firstMove + 1) + " of the list)";
      RestoreGame(before);
      return false;
    }
  }
  return true;
}

}  // namespace vorlek::uci
