// Vorlek: a chess engine for the xboard protocol and the terminal.
#include <unistd.h>

#include <cstdio>

#include "game/command_loop.h"

int main() { return vorlek::RunEngine(stdin, stdout, isatty(0) != 0); }
