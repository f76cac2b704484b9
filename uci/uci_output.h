// uci/uci_output.h — lines to the UCI interface. The command loop and the search thread both write; each
// line goes out whole and is flushed at once.
#pragma once
#include <cstdio>

namespace vorlek::uci {

void SetOutput(FILE* out);

// Writes one formatted line and its newline.
void Send(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace vorlek::uci
