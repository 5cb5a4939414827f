// The command line: options to a map, and what the driver does with it.
//
// The driver's source is taken in whole, its main under another name, so that its steps can be called.
#include <sstream>

#include "run_files.h"
#include "support.h"

#define main runProgram
#include "../../src/main.cpp"
#undef main

namespace {

using support::RunFiles;
using support::ScopedEnv;
using testing::Eq;
using testing::ExitedWithCode;

const std::vector<std::string> kKnown = ZORVELA().argNames;

// Calls main with these arguments.
int callMain(std::vector<std::string> args) {
  args.insert(args.begin(), "zorvela");
  std::vector<char*> argv;
  for (std::string& arg : args) argv.push_back(arg.data());
  argv.push_back(nullptr);
  return runProgram(static_cast<int>(args.size()), argv.data());
}

// The option map of these arguments.
Args optionsOf(std::vector<std::string> args) {
  args.insert(args.begin(), "zorvela");
  std::vector<char*> argv;
  for (std::string& arg : args) argv.push_back(arg.data());
  return readOptions(joinArguments(static_cast<int>(args.size()), argv.data()), kKnown);
}

// For a death test: main with standard output on standard error, then the end that the system gives it.
[[noreturn]] void runToTheEnd(const std::vector<std::string>& args) {
  support::sendOutputToError();
  std::exit(callMain(args));
}

// The report ends with the estimated offset of C'; nothing stands after it.
testing::Matcher<const std::string&> EndsWithTheReport() {
  return testing::ContainsRegex("\n  Estimated C' shift referencing offset [^\n]*\n$");
}

const std::string kListing =
    "\nZorvela Predictions:\n\n  #RES1 RES2 RES3 P_CIS  P_CIS_NORM\n\n"
    "   A3   P4   G5   0.225  0.015 \n   S6   P7   E8   0.037  0.002 \n";

}  // namespace

// --- Options ------------------------------------------------------------------------------------

TEST(CommandLine, ArgumentsAreJoinedWithABlankBeforeEach) {
  char program[] = "zorvela";
  char in[] = "-in";
  char file[] = "my file.tab";
  char* argv[] = {program, in, file, nullptr};
  EXPECT_EQ(joinArguments(3, argv), " -in my file.tab");
  EXPECT_EQ(joinArguments(1, argv), "");
}

TEST(CommandLine, InAndNoclip) {
  EXPECT_EQ(optionsOf({"-in", "a.tab", "-noclip"}), (Args{{"in", "a.tab"}, {"noclip", "true"}}));
}

TEST(CommandLine, OptionWithoutAValueHasItsOwnNameAsValue) {
  EXPECT_EQ(optionsOf({"-in"}), (Args{{"in", "in"}}));
  EXPECT_EQ(optionsOf({"-help"}), (Args{{"help", "help"}}));
}

TEST(CommandLine, FlagsAreTrueWhateverIsWrittenBehindThem) {
  EXPECT_EQ(optionsOf({"-noclip", "0", "-check", "no", "-nodetail", "x"}),
            (Args{{"check", "true"}, {"nodetail", "true"}, {"noclip", "true"}}));
}

TEST(CommandLine, ClipIsNoFlag) {
  EXPECT_EQ(optionsOf({"-clip", "x"}), (Args{{"clip", "x"}}));
}

TEST(CommandLine, ValueMayHoldBlanksAndRunsOfThemAreOne) {
  EXPECT_EQ(optionsOf({"-in", "my file.tab"}), (Args{{"in", "my file.tab"}}));
  EXPECT_EQ(optionsOf({"-in", "  my \t  file.tab "}), (Args{{"in", "my file.tab"}}));
  EXPECT_EQ(optionsOf({"-in", "my", "file.tab"}), (Args{{"in", "my file.tab"}}));
}

TEST(CommandLine, ValueMayHoldAMinusWithoutABlankBeforeIt) {
  EXPECT_EQ(optionsOf({"-in", "a-b.tab"}), (Args{{"in", "a-b.tab"}}));
}

TEST(CommandLine, LastOfTwoValuesStays) {
  EXPECT_EQ(optionsOf({"-in", "a", "-in", "b"}), (Args{{"in", "b"}}));
}

TEST(CommandLine, EmptyValueIsNotGivenButAFlagIs) {
  EXPECT_EQ(optionsOf({"-in", "", "-check", ""}), (Args{{"check", "true"}, {"in", ""}}));
}

TEST(CommandLine, OneArgumentMayHoldSeveralOptions) {
  EXPECT_EQ(optionsOf({"-in a.tab -first 3"}), (Args{{"first", "3"}, {"in", "a.tab"}}));
}

TEST(CommandLine, NegativeNumberIsAnOptionNameAndRejected) {
  EXPECT_EXIT(runToTheEnd({"-first", "-5"}), ExitedWithCode(0), Eq(" Invaid arg name -5\n"));
}

TEST(CommandLine, FirstArgumentWithoutAMinusHasAnEmptyName) {
  EXPECT_EXIT(runToTheEnd({"x", "-in", "a.tab"}), ExitedWithCode(0), Eq(" Invaid arg name -\n"));
  EXPECT_EXIT(runToTheEnd({""}), ExitedWithCode(0), Eq(" Invaid arg name -\n"));
}

TEST(CommandLine, DoubledMinusIsPartOfTheName) {
  EXPECT_EXIT(runToTheEnd({"--in", "a.tab"}), ExitedWithCode(0), Eq(" Invaid arg name --in\n"));
}

TEST(CommandLine, BareMinusIsNoOption) {
  // The pieces of " - a": the name is empty.
  EXPECT_EXIT(runToTheEnd({"-", "a"}), ExitedWithCode(0), Eq(" Invaid arg name -\n"));
}

TEST(CommandLine, RefPdbCountRcAndLimitsAreRejected) {
  for (const std::string name : {"ref", "pdb", "count", "rc", "limits", "ZORVELADir"})
    EXPECT_EXIT(runToTheEnd({"-" + name, "x"}), ExitedWithCode(0), Eq(" Invaid arg name -" + name + "\n"));
}

TEST(CommandLine, ClipNodetailRandAndZorvelaDirAreAccepted) {
  EXPECT_EQ(optionsOf({"-clip", "-nodetail", "-rand", "r.tab", "-zorvelaDir", "/x"}),
            (Args{{"clip", "clip"}, {"nodetail", "true"}, {"rand", "r.tab"}, {"zorvelaDir", "/x"}}));
}

TEST(CommandLine, NamesAreCaseSensitive) {
  EXPECT_EXIT(runToTheEnd({"-IN", "a.tab"}), ExitedWithCode(0), Eq(" Invaid arg name -IN\n"));
}

TEST(CommandLine, NamesAreCheckedInOrderBeforeAnythingIsApplied) {
  EXPECT_EXIT(runToTheEnd({"-help", "-bogus"}), ExitedWithCode(0), Eq(" Invaid arg name -bogus\n"));
  EXPECT_EXIT(runToTheEnd({"-one", "-two"}), ExitedWithCode(0), Eq(" Invaid arg name -one\n"));
}

TEST(CommandLine, NamesAndValuesMayBeLongerThan100Characters) {
  const std::string text(5000, 'x');
  EXPECT_EQ(optionsOf({"-in", text}), (Args{{"in", text}}));
  EXPECT_EXIT(runToTheEnd({"-" + text}), ExitedWithCode(0), Eq(" Invaid arg name -" + text + "\n"));
}

// --- The driver ---------------------------------------------------------------------------------

TEST(Driver, WithoutArgumentsTheUsageIsShown) {
  EXPECT_EXIT(runToTheEnd({}), ExitedWithCode(0),
              testing::ContainsRegex("^ZORVELA: Proline Omega Angle Prediction from Chemical Shift.\n"));
}

TEST(Driver, HelpShowsTheUsage) {
  EXPECT_EXIT(runToTheEnd({"-in", "a.tab", "-help"}), ExitedWithCode(0),
              testing::ContainsRegex("^ZORVELA: Proline Omega Angle Prediction from Chemical Shift.\n"));
}

TEST(Driver, RunPredictsSavesAndTellsItsTime) {
  const RunFiles files;
  const auto output = support::outputOf([&] {
    EXPECT_EQ(callMain({"-in", files.file("shifts.tab"), "-tabDir", files.file("tab"), "-out",
                        files.file("pred.tab")}),
              0);
  });
  EXPECT_EQ(output.err, "");
  const std::string before =
      files.progress() + "Analyzing " + files.file("shifts.tab") + ":\n" + kListing + " Running time: ";
  const std::string after = " seconds\n";
  ASSERT_GT(output.out.size(), before.size() + after.size());
  EXPECT_EQ(output.out.substr(0, before.size()), before);
  EXPECT_EQ(output.out.substr(output.out.size() - after.size()), after);
  // The time between them is one number of at most a few seconds.
  std::istringstream time(output.out.substr(before.size(), output.out.size() - before.size() - after.size()));
  double seconds = -1.0;
  time >> seconds;
  EXPECT_TRUE(time.eof());
  EXPECT_GE(seconds, 0.0);
  EXPECT_LT(seconds, 60.0);
  EXPECT_TRUE(std::filesystem::exists(files.file("pred.tab")));
}

TEST(Driver, NoclipOnTheCommandLineReachesThePrediction) {
  const RunFiles files;
  const auto output = support::outputOf([&] {
    callMain({"-noclip", "0", "-in", files.file("shifts.tab"), "-tabDir", files.file("tab"), "-sum",
              files.file("pred.tab")});
  });
  EXPECT_NE(output.out.find("   S6   P7   E8   0.055  0.003 \n"), std::string::npos);
}

TEST(Driver, OptionsWithoutEffectChangeNothing) {
  const RunFiles files;
  const ScopedEnv dir("ZORVELA_DIR", files.path().c_str());
  const auto output = support::outputOf([&] {
    callMain({"-clip", "-nodetail", "-rand", "none.tab", "-zorvelaDir", "/none", "-tpct", "3", "-dbpct", "4",
              "-predDir", "none", "-in", files.file("shifts.tab"), "-out", files.file("pred.tab")});
  });
  EXPECT_EQ(output.err, "");
  EXPECT_NE(output.out.find(files.progress() + "Analyzing "), std::string::npos);
  EXPECT_NE(output.out.find(kListing), std::string::npos);
}

TEST(Driver, CheckEndsInsideTheRunSoThatNoTimeIsTold) {
  const RunFiles files;
  EXPECT_EXIT(runToTheEnd({"-check", "no", "-in", files.file("shifts.tab"), "-tabDir", files.file("tab")}),
              ExitedWithCode(255), EndsWithTheReport());
}

TEST(Driver, MissingInputEndsInsideTheRunSoThatNoTimeIsTold) {
  const RunFiles files;
  EXPECT_EXIT(runToTheEnd({"-in", files.file("none.tab"), "-tabDir", files.file("tab")}), ExitedWithCode(0),
              Eq("\tCan't open file " + files.file("none.tab") + " for reading\n"));
}

TEST(Driver, WithoutAnInputNameTheEmptyNameCannotBeOpened) {
  EXPECT_EXIT(runToTheEnd({"-noclip"}), ExitedWithCode(0), Eq("\tCan't open file  for reading\n"));
}

TEST(Driver, BareRemarkLineEndsTheRunAbnormally) {
  const RunFiles files;
  files.write("shifts.tab", "REMARK\n");
  EXPECT_THROW(callMain({"-in", files.file("shifts.tab"), "-tabDir", files.file("tab")}), std::out_of_range);
}
