#include "app/command_line.h"

#include <cstdio>
#include <cstring>

namespace vorlek {

namespace {

bool IsOption(const char* argument) {
  return argument[0] == '-' && argument[1] != '\0' && !(argument[1] >= '0' && argument[1] <= '9');
}

}  // namespace

std::optional<int> AnswerCommonOptions(int argc, char** argv, const ProgramText& program,
                                       std::initializer_list<const char*> known) {
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--help") == 0) {
      std::fputs(program.usage, stdout);
      return 0;
    }
    if (std::strcmp(argv[i], "--version") == 0) {
      std::printf("%s (Vorlek) %s\n", program.name, VORLEK_VERSION);
      return 0;
    }
  }
  for (int i = 1; i < argc; ++i) {
    if (!IsOption(argv[i])) continue;
    bool isKnown = false;
    for (const char* option : known) isKnown = isKnown || std::strcmp(argv[i], option) == 0;
    if (!isKnown) {
      std::fprintf(stderr, "%s: unknown option %s\n", program.name, argv[i]);
      return UsageError(program);
    }
  }
  return std::nullopt;
}

int UsageError(const ProgramText& program) {
  std::fputs(program.usage, stderr);
  return 2;
}

}  // namespace vorlek
