// Vorlek: a chess engine for the xboard protocol and the terminal.
#include <unistd.h>

#include <cstdio>

#include "app/command_line.h"
#include "game/command_loop.h"
#include "search/hash_table.h"

namespace {

constexpr vorlek::ProgramText PROGRAM = {
    "vorlek",
    "usage: vorlek [--help | --version]\n"
    "  Vorlek, a chess engine. Started from a terminal it plays there: it prompts \"Comando: \" and draws\n"
    "  the board after every command (type \"new\" to play White, then moves such as e2e4; \"go\" makes it\n"
    "  move; \"quit\" ends). Started by a chess interface it speaks the xboard protocol, version 2, on\n"
    "  standard input and output.\n"
    "  It reads its opening book Aperture.txt from the working folder, and ends at once without it, and\n"
    "  writes the log of its games to partita.log there.\n"};

}  // namespace

int main(int argc, char** argv) {
  if (const auto status = vorlek::AnswerCommonOptions(argc, argv, PROGRAM)) return *status;
  if (argc > 1) return vorlek::UsageError(PROGRAM);
  // The table is faulted in while the engine waits for its interface, so the first search runs at full speed.
  vorlek::StartHashTablePrefault();
  return vorlek::RunEngine(stdin, stdout, isatty(0) != 0);
}
