// Every program of the project on its command line: --help prints its usage on standard output, --version
// its name and version, both with status 0; an option it does not know gets the usage on standard error and
// status 2. The real programs, each in a fresh folder.
#include <gtest/gtest.h>

#include <ostream>
#include <regex>
#include <string>

#include "support/engine_process.h"

namespace vorlek::test {
namespace {

struct ProgramCase {
  const char* name;
  const char* binary;
};
std::ostream& operator<<(std::ostream& out, const ProgramCase& c) { return out << c.name; }

class CommonOptions : public ::testing::TestWithParam<ProgramCase> {};

EngineRun RunProgram(const ProgramCase& program, const std::string& argument) {
  EngineSession session(program.binary, {argument}, std::nullopt);
  return session.Finish();
}

TEST_P(CommonOptions, HelpVersionAndUnknownOption) {
  const std::string usage = std::string("usage: ") + GetParam().name + " ";
  const EngineRun help = RunProgram(GetParam(), "--help");
  EXPECT_EQ(help.exitStatus, 0);
  EXPECT_EQ(help.output.rfind(usage, 0), 0u) << help.output;
  EXPECT_EQ(help.errors, "");

  const EngineRun version = RunProgram(GetParam(), "--version");
  EXPECT_EQ(version.exitStatus, 0);
  EXPECT_TRUE(std::regex_match(version.output, std::regex(std::string(GetParam().name) + R"( \(Vorlek\) \d+\.\d+\n)")))
      << version.output;

  const EngineRun unknown = RunProgram(GetParam(), "--colour");
  EXPECT_EQ(unknown.exitStatus, 2);
  EXPECT_EQ(unknown.output, "");
  EXPECT_NE(unknown.errors.find(usage), std::string::npos) << unknown.errors;
}

INSTANTIATE_TEST_SUITE_P(Programs, CommonOptions,
                         ::testing::Values(ProgramCase{"vorlek", VORLEK_BINARY},
                                           ProgramCase{"vorlek-uci", VORLEK_UCI_BINARY},
                                           ProgramCase{"vorlek-book", VORLEK_BOOK_BINARY},
                                           ProgramCase{"vorlek-perft", VORLEK_PERFT_BINARY},
                                           ProgramCase{"vorlek-bench", VORLEK_BENCH_BINARY}),
                         [](const auto& info) {
                           std::string name = info.param.name;
                           return std::regex_replace(name, std::regex("-"), "_");
                         });

}  // namespace
}  // namespace vorlek::test
