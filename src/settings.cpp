// Run settings: option names, directories, file names and option values.
#include <cmath>     // for std::isnan
#include <cstdlib>   // for std::exit, std::getenv
#include <iostream>  // for std::cerr, std::cout
#include <tuple>     // for std::tie
#include <utility>   // for std::pair

#include "ZORVELA.h"

namespace {

constexpr const char* kUsage =
    "ZORVELA: Proline Omega Angle Prediction from Chemical Shift.\n"
    "Version 1.01 (build 2009.1102.12) by the Zorvela developers\n"
    "\n"
    "Directory Settings: \n"
    " -zorvelaDir mDir    [.]          ZORVELA Main Directory: ZORVELA_DIR.\n"
    " -tabDir     tDir    [tab]        Subdirectory of master tables.\n"
    " -predDir    pDir    [pred]       Directory for prediction results.\n"
    "\n"
    "File Name Settings:\n"
    " -in         inName  [None]           Input Shift Table.\n"
    " -sum        sumName [pred.tab]       Prediction Summary Output.\n"
    "\n"
    "Random Coil and Secondary Shift Tables:\n"
    " -rand       rName   [randcoil.tab]   Random Coil Shift Table.\n"
    " -adj        aName   [rcadj.tab]      Adjustment Table.\n"
    "                                      (None for no adjustment).\n"
    " -prev       pName   [rcprev.tab]     Previous Residue Adjustment.\n"
    "                                      (None for no adjustment).\n"
    " -next       nName   [rcnext.tab]     Next Residue Adjustment.\n"
    "                                      (None for no adjustment).\n"
    " -limits     lName   [sslimit.tab]    Secondary Shift Limits.\n"
    "                                      (Used only with -clip).\n"
    "\n"
    "Other Options:\n"
    " -first      resID1  [First]          First RESID to use.\n"
    " -last       resIDN  [Last]           Last RESID to use.\n"
    " -clip                                Clip Extreme Shifts (Default).\n"
    " -noclip                              No Clipping of Shifts.\n"
    "\n"
    "Examples:\n"
    " zorvela -in ubiq.tab     Form predictions from the given shifts.\n";

bool holds(const std::string& text, char c) {
  return text.find(c) != std::string::npos;
}

// "/" or a backslash, whichever the path holds, "/" first; empty if it holds neither.
std::string separatorOf(const std::string& path) {
  if (holds(path, '/')) return "/";
  if (holds(path, '\\')) return "\\";
  return "";
}

// Main directory and path separator from ZORVELA_DIR. A directory name without any separator is ignored.
std::pair<std::string, std::string> mainDirectory() {
  if (const char* dir = std::getenv("ZORVELA_DIR")) {
    const std::string separator = separatorOf(dir);
    return {separator.empty() ? "." : dir, separator};
  }
  const char* path = std::getenv("PATH");
  return {".", path ? separatorOf(path) : "\\"};
}

using Args = std::map<std::string, std::string>;

// Replaces the setting by the option's value, if given.
void take(const Args& args, const std::string& key, std::string& setting) {
  const auto found = args.find(key);
  if (found != args.end() && !found->second.empty()) setting = found->second;
}

bool given(const Args& args, const std::string& key) {
  std::string value;
  take(args, key, value);
  return !value.empty();
}

int integerOption(const Args& args, const std::string& key, int fallback) {
  std::string value;
  take(args, key, value);
  return value.empty() ? fallback : GDB::toInt(value);
}

// A percentage; 0 and text that is not a number give `zeroMeans`.
float percentOption(const Args& args, const std::string& key, float fallback, float zeroMeans) {
  std::string value;
  take(args, key, value);
  if (value.empty()) return fallback;
  const float percent = GDB::toFloat(value);
  return percent == 0.0F || std::isnan(percent) ? zeroMeans : percent;
}

}  // namespace

ZORVELA::ZORVELA() {
  std::tie(mainDir, pathSep) = mainDirectory();
  argNames = {"zorvelaDir", "tabDir", "predDir", "in",    "sum",  "out",  "rand",
              "adj",        "prev",   "next",    "first", "last", "clip", "noclip",
              "nodetail",   "tpct",   "dbpct",   "check", "help"};
  atomNames = {{1, "N"}, {2, "HA"}, {3, "C"}, {4, "CA"}, {5, "CB"}, {6, "HN"}};
}

ZORVELA::ZORVELA(const std::string& inputName) {
  const ZORVELA withDefaults;  // this object keeps none of them
  inName = inputName;
}

void ZORVELA::setArgs(std::map<std::string, std::string> args) {
  if (given(args, "help")) printSyntax();

  // The main directory has no accepted option of this spelling: it comes from the environment.
  take(args, "ZORVELADir", mainDir);
  tabDir = mainDir + pathSep + "tab";
  take(args, "tabDir", tabDir);
  predDir = "pred";
  take(args, "predDir", predDir);

  take(args, "in", inName);
  take(args, "ref", refName);
  take(args, "pdb", refName);
  sumName = "pred.tab";
  take(args, "sum", sumName);
  take(args, "out", sumName);
  sumBase = sumName.substr(0, sumName.rfind('.'));

  const std::string tables = tabDir + pathSep;
  const auto setTable = [&](std::string& name, const char* file, const char* key) {
    name = tables + file;
    take(args, key, name);
  };
  setTable(rcName, "randcoil.tab", "rc");
  setTable(adjName, "rcadj.tab", "adj");
  setTable(prevName, "rcprev.tab", "prev");
  setTable(nextName, "rcnext.tab", "next");
  setTable(limitName, "sslimit.tab", "limits");
  proCsName = tables + "Pro.cs.tab";
  proSeqName = tables + "Pro.seq.tab";

  dbpct = percentOption(args, "dbpct", 59.0F, 15.0F);
  tpct = percentOption(args, "tpct", 15.0F, 15.0F);
  count = integerOption(args, "count", 10);
  if (count == 0) count = 10;
  firstResid = integerOption(args, "first", 1);
  lastResid = integerOption(args, "last", 9999);
  clipShifts = !given(args, "noclip");
  checkShifts = given(args, "check");
  showDetail = false;
}

void ZORVELA::printSyntax() {
  std::cerr << kUsage;
  std::cerr.flush();
  std::exit(0);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): part of the interface
void ZORVELA::printEntry(std::map<std::string, std::string> entry) {
  for (const auto& [key, value] : entry)
    if (!value.empty()) std::cout << value << ' ';
  std::cout << std::endl;
}
