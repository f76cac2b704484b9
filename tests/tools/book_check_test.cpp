// vorlek-book run as a separate process on books written to a fresh directory: its exit status and
// the line, token and reason it names.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <ostream>
#include <string>

#include "support/engine_process.h"

namespace vorlek::test {
namespace {

struct ToolRun {
  int exitStatus = -1;
  std::string output;  // standard output and standard error together
};

// Runs the tool with `arguments` in `directory`.
ToolRun RunBookTool(const std::string& directory, const std::string& arguments) {
  const std::string command = "cd '" + directory + "' && '" VORLEK_BOOK_BINARY "' " + arguments + " 2>&1";
  ToolRun run;
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return run;
  char buffer[4096];
  for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) run.output.append(buffer, n);
  const int status = pclose(pipe);
  if (WIFEXITED(status)) run.exitStatus = WEXITSTATUS(status);
  return run;
}

ToolRun CheckBook(const std::string& book) {
  TemporaryDirectory dir;
  dir.WriteFile("book.txt", book);
  return RunBookTool(dir.Path(), "check book.txt");
}

TEST(BookTool, PassesTheShippedBook) {
  TemporaryDirectory dir;
  const ToolRun run = RunBookTool(dir.Path(), "check '" VORLEK_SOURCE_DIR "/Aperture.txt'");
  EXPECT_EQ(run.exitStatus, 0) << run.output;
  EXPECT_NE(run.output.find("the engine loads this book"), std::string::npos) << run.output;
  EXPECT_EQ(run.output.find("warning"), std::string::npos) << run.output;
}

TEST(BookTool, ReadsAperturePointTxtByDefaultAndCountsWhatItUses) {
  TemporaryDirectory dir;
  dir.WriteFile("Aperture.txt", "e2e4 e7e5\n\ne2e4 c7c5 g1f3\nd2d4");
  const ToolRun run = RunBookTool(dir.Path(), "check");
  EXPECT_EQ(run.exitStatus, 0) << run.output;
  EXPECT_EQ(run.output,
            "Aperture.txt: the engine loads this book\n"
            "  lines read:     4\n"
            "  positions used: 3 of 300\n"
            "  fullest entry:  2 of 8 moves\n");
}

TEST(BookTool, WarnsOfAMoveThatLeavesTheKingAttacked) {
  const ToolRun run = CheckBook("e2e4 f7f6 d1h5 e8f7\n");
  EXPECT_EQ(run.exitStatus, 0) << run.output;
  EXPECT_NE(run.output.find("book.txt:1: warning: token \"e8f7\" leaves the black king attacked"), std::string::npos)
      << run.output;
}

// Lines "w2w3 b7b6 x2x4 a7a5", 7 for each pair (w, b) and 49 for each w: each needs an entry for the
// position after its third move, the first of a pair one more and the first of a w another. The first
// 256 lines (w = a to e, then f with b and c with four) fill 1 + 6 + 37 + 256 = 300 entries, so line 257
// needs a 301st for the position after its third move.
std::string FanOutBook() {
  std::string book;
  for (char w = 'a'; w <= 'h'; ++w) {
    for (char b = 'b'; b <= 'h'; ++b) {
      for (char x = 'a'; x <= 'h'; ++x) {
        if (x != w) book += std::string{w, '2', w, '3', ' ', b, '7', b, '6', ' ', x, '2', x, '4'} + " a7a5\n";
      }
    }
  }
  return book;
}

struct BrokenBookCase {
  const char* name;
  std::string book;
  const char* where;   // the file name, line number and token
  const char* reason;  // the explanation
  const char* engineMessage;
};
std::ostream& operator<<(std::ostream& out, const BrokenBookCase& c) { return out << c.name; }

class BrokenBook : public ::testing::TestWithParam<BrokenBookCase> {};

TEST_P(BrokenBook, NamesTheLineTheTokenAndTheReason) {
  const ToolRun run = CheckBook(GetParam().book);
  EXPECT_EQ(run.exitStatus, 1) << run.output;
  EXPECT_EQ(run.output.rfind(GetParam().where, 0), 0u) << run.output;
  EXPECT_NE(run.output.find(GetParam().reason), std::string::npos) << run.output;
  EXPECT_NE(run.output.find(std::string("The engine would end with: \"") + GetParam().engineMessage + "\"\n"),
            std::string::npos)
      << run.output;
}

INSTANTIATE_TEST_SUITE_P(
    Books, BrokenBook,
    ::testing::Values(
        BrokenBookCase{"BlackMoveFirst", "e2e4 e7e5\n\ne7e5 e2e4\n", "book.txt:3: token \"e7e5\" (token 1",
                       "white is to move, and e7 holds a black pawn", "Mossa di apertura non valida!"},
        BrokenBookCase{"EmptySquare", "e2e4 e7e5 g1f3 b8c6\nd2d4 d7d5 c1f4 g8f6 c1d2\n",
                       "book.txt:2: token \"c1d2\" (token 5", "white is to move, and c1 is empty",
                       "Mossa di apertura non valida!"},
        BrokenBookCase{"PieceCannotGoThere", "d2d4 d7d5 c2c4 e7e6 b1c3 g8f6 c1g5 f8e7 c4d5 e6d5 g5f6 e7e6\n",
                       "book.txt:1: token \"e7e6\" (token 12", "the black bishop on e7 has no move to e6",
                       "Mossa di apertura non valida!"},
        BrokenBookCase{"MalformedToken", "e2e4 e7e5 Nf3\n",
                       "book.txt:1: token \"Nf3\" (token 3 of the line, column 11)", "not a move",
                       "Mossa di apertura non valida!"},
        BrokenBookCase{"DosLineEnds", "e2e4 e7e5\r\n\r\n", "book.txt:2: token \"\\x0d\"", "carriage return",
                       "Mossa di apertura non valida!"},
        BrokenBookCase{"LineTooLong", "e2e4\n" + std::string(190, ' ') + "e2e4 e7e5\n",
                       "book.txt:2: line longer than 198 characters", "counts it as a bad move",
                       "Mossa di apertura non valida!"},
        BrokenBookCase{"NinthMoveInOnePosition",
                       "e2e4 a7a6\ne2e4 b7b6\ne2e4 c7c6\ne2e4 d7d6\ne2e4 e7e6\ne2e4 f7f6\ne2e4 g7g6\ne2e4 h7h6\n"
                       "e2e4 a7a5\n",
                       "book.txt:9: token \"a7a5\" (token 2",
                       "holds the 8 moves it has room for: a7a6 b7b6 c7c6 d7d6 e7e6 f7f6 g7g6 h7h6",
                       "Errore nel vettore Aperture, ricerca mossa"},
        BrokenBookCase{"Position301", FanOutBook(), "book.txt:257: token \"a7a5\" (token 4",
                       "all 300 entries of the table are taken", "Errore nel vettore Aperture"}),
    [](const auto& info) { return info.param.name; });

TEST(BookTool, MissingFileIsAnErrorOfItsOwn) {
  TemporaryDirectory dir;
  ToolRun run = RunBookTool(dir.Path(), "check missing.txt");
  EXPECT_EQ(run.exitStatus, 2) << run.output;
  EXPECT_NE(run.output.find("cannot open missing.txt"), std::string::npos) << run.output;
  run = RunBookTool(dir.Path(), "check");
  EXPECT_EQ(run.exitStatus, 2) << run.output;
  EXPECT_NE(run.output.find("cannot open Aperture.txt"), std::string::npos) << run.output;
}

TEST(BookTool, ADirectoryCannotBeRead) {
  TemporaryDirectory dir;
  const ToolRun run = RunBookTool(dir.Path(), "check .");
  EXPECT_EQ(run.exitStatus, 2) << run.output;
  EXPECT_NE(run.output.find("cannot read ."), std::string::npos) << run.output;
}

TEST(BookTool, WrongArgumentsPrintTheUsage) {
  TemporaryDirectory dir;
  for (const char* arguments : {"", "verify", "check a.txt b.txt"}) {
    const ToolRun run = RunBookTool(dir.Path(), arguments);
    EXPECT_EQ(run.exitStatus, 2) << arguments;
    EXPECT_EQ(run.output.rfind("usage: vorlek-book check [FILE]\n", 0), 0u) << run.output;
  }
}

}  // namespace
}  // namespace vorlek::test
