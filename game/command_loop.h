// game/command_loop.h — the engine's entry: start-up, the xboard handshake and the command loop.
#pragma once
#include <cstdio>

namespace vorlek {

// Runs the engine on the given streams until "quit", a fatal message or the end of the input.
// Console mode prompts and draws the board; xboard mode performs the handshake first.
// "Aperture.txt" is read from and "partita.log" written to the working directory.
// Returns the process exit status, always 0.
int RunEngine(FILE* in, FILE* out, bool consoleMode);

}  // namespace vorlek
