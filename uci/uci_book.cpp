#include "uci/uci_book.h"

#include <cstdio>
#include <cstring>
#include <vector>

#include "board/history.h"
#include "board/position.h"
#include "game/book.h"
#include "game/book_file.h"

namespace vorlek::uci {

namespace {

SavedGame game;

std::vector<std::string> Candidates(const std::string& name, const std::string& executableFolder) {
  if (name.find('/') != std::string::npos) return {name};
  return {name, executableFolder + "/" + name, executableFolder + "/../share/vorlek/" + name};
}

int PositionsUsed() {
  int used = 0;
  for (const BookEntry& entry : Aperture) used += entry.key != 0;
  return used;
}

}  // namespace

void ClearBook() { std::memset(Aperture, 0, sizeof Aperture); }

std::string SearchAndLoadBook(const std::string& name, const std::string& executableFolder) {
  ClearBook();
  FILE* book = nullptr;
  std::string path;
  for (const std::string& candidate : Candidates(name, executableFolder)) {
    if ((book = std::fopen(candidate.c_str(), "r"))) {
      path = candidate;
      break;
    }
  }
  if (!book) return "no book: cannot open " + name + " (looked in the working folder and beside the engine)";
  // Lines are played from the initial position; the game on the stack is put back afterwards.
  SaveGame(game);
  StartGame(InitialPosition());
  const BookFileResult result = LoadBookFile(book);
  RestoreGame(game);
  std::fclose(book);
  if (result.status != BookStatus::OK) {
    ClearBook();
    std::string message = BookFailureMessage(result.status);
    if (!message.empty() && message.back() == '\n') message.pop_back();
    return "no book: " + path + " line " + std::to_string(result.lines) + ": " + message;
  }
  return "book " + path + ": " + std::to_string(PositionsUsed()) + " positions";
}

}  // namespace vorlek::uci
