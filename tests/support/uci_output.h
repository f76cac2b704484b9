// tests/support/uci_output.h — vorlek-uci's output as the tests read it: its "info depth" lines and its
// "bestmove" line.
#pragma once
#include <ostream>
#include <regex>
#include <string>
#include <vector>

namespace vorlek::test {

struct Info {
  int depth;
  std::string score;  // "cp 20", "mate 1"
  unsigned long long nodes;
  std::string pv;
  int multipv = 0;  // 0 when the line has no "multipv" field
  bool operator==(const Info&) const = default;
};
inline void PrintTo(const Info& i, std::ostream* os) {
  *os << i.depth << " " << i.multipv << " " << i.score << " " << i.nodes << " " << i.pv;
}

// The "info depth" lines of an output, without their time and speed.
inline std::vector<Info> Infos(const std::string& output) {
  static const std::regex LINE(
      R"(info depth (\d+)(?: multipv (\d+))? score (\S+ \S+) time \d+ nodes (\d+) nps \d+(?: pv (.*))?)");
  std::vector<Info> infos;
  for (std::sregex_iterator it(output.begin(), output.end(), LINE), end; it != end; ++it)
    infos.push_back(
        {std::stoi((*it)[1]), (*it)[3], std::stoull((*it)[4]), (*it)[5], (*it)[2].matched ? std::stoi((*it)[2]) : 0});
  return infos;
}

// The last "bestmove" line of an output, without its newline; "" when there is none.
inline std::string BestMove(const std::string& output) {
  const size_t at = output.rfind("bestmove ");
  return at == std::string::npos ? "" : output.substr(at, output.find('\n', at) - at);
}

// The first move of a variation.
inline std::string FirstMove(const std::string& pv) { return pv.substr(0, pv.find(' ')); }

}  // namespace vorlek::test
