// uci/uci_options.h — the options vorlek-uci declares, and "setoption" read into them.
#pragma once
#include <string>
#include <vector>

#include "search/hash_table.h"
#include "uci/uci_book.h"
#include "uci/uci_go.h"

namespace vorlek::uci {

constexpr int MAX_MULTI_PV = 32;

struct Options {
  int hash = HASH_TABLE_MEBIBYTES;           // MiB of the table in use
  bool ponder = false;                       // the interface may ponder (it says so; "go ponder" ponders)
  int moveOverhead = DEFAULT_MOVE_OVERHEAD;  // milliseconds kept back for the way to the interface
  int multiPv = 1;                           // best lines reported per iteration
  bool analyseMode = false;                  // the interface analyses: the book is never played
  bool ownBook = true;
  std::string bookFile = DEFAULT_BOOK_FILE;
};

// The "option" lines of the reply to "uci", in order.
std::vector<std::string> OptionLines();

// What a "setoption" changed.
enum class OptionSet { NOTHING, HASH, CLEAR_HASH, PONDER, MOVE_OVERHEAD, MULTI_PV, ANALYSE_MODE, OWN_BOOK, BOOK_FILE };

struct SetOptionResult {
  OptionSet set = OptionSet::NOTHING;
  std::string said;  // for an "info string": why nothing was set, or how a value was taken; empty when plain
};

// Reads the arguments of "setoption": "name NAME [value VALUE]", the name in any case, a spin's value
// brought into its range, a check's "true" or "false" in any case. `options` changes only as said.
SetOptionResult SetOption(const std::string& arguments, Options& options);

}  // namespace vorlek::uci
