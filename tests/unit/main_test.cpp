// The command line as a map of options.
//
// The driver's source is taken in whole, its main under another name, so that its steps can be called. What
// the program says of a command line is tested with the program itself.
#include "support.h"

#define main runProgram
#include "../../src/main.cpp"
#undef main

namespace {

// The option map of these arguments.
Args optionsOf(std::vector<std::string> args) {
  args.insert(args.begin(), "zorvela");
  std::vector<char*> argv;
  for (std::string& arg : args) argv.push_back(arg.data());
  return readOptions(joinArguments(static_cast<int>(args.size()), argv.data()), ZORVELA().argNames);
}

}  // namespace

TEST(CommandLine, ArgumentsAreJoinedWithABlankBeforeEach) {
  char program[] = "zorvela";
  char in[] = "-in";
  char file[] = "my file.tab";
  char* argv[] = {program, in, file, nullptr};
  EXPECT_EQ(joinArguments(3, argv), " -in my file.tab");
  EXPECT_EQ(joinArguments(1, argv), "");
}

TEST(CommandLine, IsAMapOfOptions) {
  const std::string longName(5000, 'x');
  const std::vector<std::pair<std::vector<std::string>, Args>> cases = {
      {{"-in", "a.tab", "-noclip"}, {{"in", "a.tab"}, {"noclip", "true"}}},
      // An option without a value has its own name as value.
      {{"-in"}, {{"in", "in"}}},
      {{"-help"}, {{"help", "help"}}},
      {{"-clip", "x"}, {{"clip", "x"}}},
      // A flag is true whatever is written behind it.
      {{"-noclip", "0", "-check", "no", "-nodetail", "x"},
       {{"check", "true"}, {"nodetail", "true"}, {"noclip", "true"}}},
      {{"-in", "", "-check", ""}, {{"check", "true"}, {"in", ""}}},
      // A run of blanks in a value is one blank.
      {{"-in", "my file.tab"}, {{"in", "my file.tab"}}},
      {{"-in", "  my \t  file.tab "}, {{"in", "my file.tab"}}},
      {{"-in", "my", "file.tab"}, {{"in", "my file.tab"}}},
      {{"-in", "a-b.tab"}, {{"in", "a-b.tab"}}},
      {{"-in", "a", "-in", "b"}, {{"in", "b"}}},
      {{"-in a.tab -first 3"}, {{"first", "3"}, {"in", "a.tab"}}},
      {{"-in", longName}, {{"in", longName}}}};
  for (const auto& [arguments, options] : cases) EXPECT_EQ(optionsOf(arguments), options) << arguments[0];
}
