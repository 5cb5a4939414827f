// No output takes the place of an input.
#include "cli/input_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "message_of.h"
#include "support/temp_dir.h"

namespace fs = std::filesystem;

TEST(InputFiles, AreKnownByTheFileAndNotByItsName) {
  const support::TempDir dir;
  const fs::path folder = dir.path();
  const std::string input = dir.write("input", "shifts");
  const std::string other = dir.write("other", "");
  fs::create_symlink(input, folder / "link");
  fs::create_hard_link(input, folder / "hard");
  zorvela::InputFiles inputs;
  inputs.add({(folder / "none").string(), input});
  for (const char* name : {"input", "./input", "link", "hard"})
    EXPECT_EQ(messageOf([&] { inputs.mustNotHold({folder.string() + "/" + name}); }),
              folder.string() + "/" + name + ": is an input file; choose another place with --output");
  EXPECT_EQ(messageOf([&] { inputs.mustNotHold({other, (folder / "none").string(), "-"}); }), "no error");
}
