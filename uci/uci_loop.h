// uci/uci_loop.h — the UCI front end: the engine under the Universal Chess Interface protocol, for
// interfaces, tournament managers and adapters that speak only UCI.
#pragma once
#include <cstdio>
#include <string>

namespace vorlek::uci {

// Answers UCI commands read from `in` on `out` until "quit" or the end of the input. The search runs on
// a thread of its own, so "isready", "stop" and "quit" are answered while it runs. `executableFolder` is
// where the default book is looked for after the working folder. Returns the exit status, 0.
int RunUci(FILE* in, FILE* out, const std::string& executableFolder);

// The bench under UCI, as testing frameworks run it ("vorlek-uci bench"): the built-in positions, ending
// with the line "N nodes M nps". Returns the exit status.
int RunUciBench(FILE* out, int depth);

}  // namespace vorlek::uci
