// The command line: options to a map, one run, the time it took.
#include <algorithm>  // for std::find
#include <cstdlib>    // for std::exit
#include <ctime>      // for std::clock
#include <iostream>   // for std::cout, std::cerr

#include "ZORVELA.h"

namespace {

using Args = std::map<std::string, std::string>;

// Seconds a clock tick, in single precision.
constexpr float kSecondsPerTick = 1.0F / static_cast<float>(CLOCKS_PER_SEC);

// Each argument with a blank before it, so that every option starts with " -".
std::string joinArguments(int argc, char** argv) {
  std::string line;
  for (int i = 1; i < argc; ++i) line.append(" ").append(argv[i]);
  return line;
}

bool isFlag(const std::string& name) {
  return name == "noclip" || name == "nodetail" || name == "check";
}

// Cuts "name value" at the first blank; an option without a blank has its own name as value.
std::pair<std::string, std::string> readOption(const std::string& piece) {
  const std::size_t blank = piece.find(' ');
  if (blank == std::string::npos) return {piece, GDB::simplifyWhiteSpace(piece)};
  return {piece.substr(0, blank), GDB::simplifyWhiteSpace(piece.substr(blank + 1))};
}

// An unknown name ends the process before any option is applied.
Args readOptions(const std::string& line, const std::vector<std::string>& known) {
  Args args;
  for (const std::string& piece : GDB::split(" -", line)) {
    auto [name, value] = readOption(piece);
    if (std::find(known.begin(), known.end(), name) == known.end()) {
      std::cerr << " Invaid arg name -" << name << std::endl;
      std::exit(0);
    }
    args[name] = isFlag(name) ? "true" : value;
  }
  return args;
}

}  // namespace

int main(int argc, char** argv) {
  ZORVELA zorvela;
  if (argc == 1) zorvela.printSyntax();
  const Args args = readOptions(joinArguments(argc, argv), zorvela.argNames);

  const std::clock_t start = std::clock();
  zorvela.setArgs(args);
  zorvela.runPredict();
  const std::clock_t ticks = std::clock() - start;
  std::cout << " Running time: " << static_cast<double>(ticks) * static_cast<double>(kSecondsPerTick)
            << " seconds" << std::endl;
  return 0;
}
