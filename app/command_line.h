// app/command_line.h — what every program of the project answers on its command line besides its own
// arguments: --help (its usage on standard output), --version, and its usage on standard error for an
// option it does not know.
#pragma once
#include <initializer_list>
#include <optional>

namespace vorlek {

struct ProgramText {
  const char* name;   // the command's name, as "vorlek-perft"
  const char* usage;  // the whole usage text, ending with a newline
};

// Looks at every argument: --help or --version answers and gives status 0; an option (a "-" followed by
// anything but a digit, so "-3" stays a number) that is neither of them nor in `known` prints the usage on
// standard error and gives status 2. Nothing when the program is to go on with its own arguments.
std::optional<int> AnswerCommonOptions(int argc, char** argv, const ProgramText& program,
                                       std::initializer_list<const char*> known = {});

// The usage on standard error; returns 2, the status of a command line the program cannot use.
int UsageError(const ProgramText& program);

}  // namespace vorlek
