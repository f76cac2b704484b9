// Vorlek: a chess engine for the xboard protocol and the terminal.
#include <unistd.h>

#include <cstdio>

#include "game/command_loop.h"
#include "search/hash_table.h"

int main() {
  // The table is faulted in while the engine waits for its interface, so the first search runs at full speed.
  vorlek::StartHashTablePrefault();
  return vorlek::RunEngine(stdin, stdout, isatty(0) != 0);
}
