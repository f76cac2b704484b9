#include "uci/uci_options.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>

namespace vorlek::uci {

namespace {

std::string Lowercase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

struct Spin {
  const char* name;
  int min, max;
  int Options::*field;
  OptionSet set;
};
struct Check {
  const char* name;
  bool Options::*field;
  OptionSet set;
};

constexpr Spin SPINS[] = {
    {"Hash", 1, HASH_TABLE_MEBIBYTES, &Options::hash, OptionSet::HASH},
    {"Move Overhead", 0, MAX_MOVE_OVERHEAD, &Options::moveOverhead, OptionSet::MOVE_OVERHEAD},
    {"MultiPV", 1, MAX_MULTI_PV, &Options::multiPv, OptionSet::MULTI_PV},
};
constexpr Check CHECKS[] = {
    {"Ponder", &Options::ponder, OptionSet::PONDER},
    {"UCI_AnalyseMode", &Options::analyseMode, OptionSet::ANALYSE_MODE},
    {"OwnBook", &Options::ownBook, OptionSet::OWN_BOOK},
};

SetOptionResult SetSpin(const Spin& spin, const std::string& value, Options& options) {
  char* end = nullptr;
  errno = 0;
  const long long number = std::strtoll(value.c_str(), &end, 10);
  if (value.empty() || *end != '\0') {
    return {OptionSet::NOTHING,
            std::string(spin.name) + ": not a number: " + value + "; kept " + std::to_string(options.*spin.field)};
  }
  const int taken = static_cast<int>(std::clamp<long long>(number, spin.min, spin.max));
  options.*spin.field = taken;
  if (taken == number && errno == 0) return {spin.set, ""};
  return {spin.set, std::string(spin.name) + " " + value + " is outside " + std::to_string(spin.min) + " to " +
                        std::to_string(spin.max) + ": set to " + std::to_string(taken)};
}

SetOptionResult SetCheck(const Check& check, const std::string& value, Options& options) {
  const std::string word = Lowercase(value);
  if (word != "true" && word != "false") {
    return {OptionSet::NOTHING, std::string(check.name) + ": neither true nor false: " + value + "; kept " +
                                    (options.*check.field ? "true" : "false")};
  }
  options.*check.field = word == "true";
  return {check.set, ""};
}

}  // namespace

std::vector<std::string> OptionLines() {
  const Options defaults;
  std::vector<std::string> lines;
  auto spin = [&](const Spin& s) {
    lines.push_back("option name " + std::string(s.name) + " type spin default " + std::to_string(defaults.*s.field) +
                    " min " + std::to_string(s.min) + " max " + std::to_string(s.max));
  };
  auto check = [&](const Check& c) {
    lines.push_back("option name " + std::string(c.name) + " type check default " +
                    (defaults.*c.field ? "true" : "false"));
  };
  spin(SPINS[0]);
  lines.push_back("option name Clear Hash type button");
  check(CHECKS[0]);
  spin(SPINS[1]);
  spin(SPINS[2]);
  check(CHECKS[1]);
  check(CHECKS[2]);
  lines.push_back("option name BookFile type string default " + defaults.bookFile);
  return lines;
}

SetOptionResult SetOption(const std::string& arguments, Options& options) {
  const size_t name = arguments.rfind("name ", 0) == 0 ? 0 : arguments.find(" name ");
  if (name == std::string::npos) return {OptionSet::NOTHING, "setoption without a name: " + arguments};
  const size_t nameStart = arguments.find("name ", name) + 5;
  const size_t value = arguments.find(" value ", nameStart);
  std::string id = arguments.substr(nameStart, value == std::string::npos ? std::string::npos : value - nameStart);
  std::string text = value == std::string::npos ? "" : arguments.substr(value + 7);
  while (!id.empty() && id.back() == ' ') id.pop_back();
  while (!text.empty() && text.back() == ' ') text.pop_back();
  const std::string key = Lowercase(id);

  for (const Spin& spin : SPINS) {
    if (key == Lowercase(spin.name)) return SetSpin(spin, text, options);
  }
  for (const Check& check : CHECKS) {
    if (key == Lowercase(check.name)) return SetCheck(check, text, options);
  }
  if (key == "clear hash") return {OptionSet::CLEAR_HASH, ""};
  if (key == "bookfile") {
    options.bookFile = text.empty() ? DEFAULT_BOOK_FILE : text;
    return {OptionSet::BOOK_FILE, ""};
  }
  return {OptionSet::NOTHING, "no such option: " + id};
}

}  // namespace vorlek::uci
