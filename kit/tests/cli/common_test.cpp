// Errors with a remedy, whole-or-nothing output, outputs that are inputs.
#include "cli/input_files.h"
#include "cli/progress.h"
#include "cli/whole_file.h"
#include "zorvela/error.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

std::string contentOf(const fs::path& path) {
  std::ifstream in(path);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

class InFolder : public testing::Test {
 protected:
  void SetUp() override {
    char name[] = "/tmp/zorvela-kit-test-XXXXXX";
    folder = mkdtemp(name);
  }
  void TearDown() override { fs::remove_all(folder); }

  std::string put(const std::string& name, const std::string& text) const {
    std::ofstream(folder / name) << text;
    return (folder / name).string();
  }
  std::size_t fileCount() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
  }

  fs::path folder;
};

template <class Action>
std::string messageOf(Action action) {
  try {
    action();
  } catch (const zorvela::Error& e) {
    return e.what();
  }
  return "no error";
}

}  // namespace

// --- Errors -------------------------------------------------------------------------------------

TEST(Error, NamesFileLineCauseAndRemedy) {
  EXPECT_STREQ(zorvela::Error("a.csv", 7, "no shift", "add one").what(), "a.csv:7: no shift; add one");
}

TEST(Error, WithoutALineOrARemedyLeavesThemOut) {
  EXPECT_STREQ(zorvela::Error("a.csv", 0, "is empty", "").what(), "a.csv: is empty");
}

// --- Whole-or-nothing output --------------------------------------------------------------------

using WriteWhole = InFolder;

TEST_F(WriteWhole, WritesANewFileAndLeavesNothingBesideIt) {
  zorvela::writeWhole((folder / "out").string(), [](std::ostream& out) { out << "one\ntwo\n"; });
  EXPECT_EQ(contentOf(folder / "out"), "one\ntwo\n");
  EXPECT_EQ(fileCount(), 1U);
}

TEST_F(WriteWhole, ReplacesAFileAndKeepsItsPermissions) {
  const std::string path = put("out", "old and longer");
  chmod(path.c_str(), 0640);
  zorvela::writeWhole(path, [](std::ostream& out) { out << "new"; });
  EXPECT_EQ(contentOf(path), "new");
  struct stat info {};
  ASSERT_EQ(stat(path.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777U, 0640U);
}

TEST_F(WriteWhole, WritesThroughASymbolicLink) {
  const std::string target = put("target", "old");
  ASSERT_EQ(symlink(target.c_str(), (folder / "link").c_str()), 0);
  zorvela::writeWhole((folder / "link").string(), [](std::ostream& out) { out << "new"; });
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(contentOf(target), "new");
}

TEST_F(WriteWhole, KeepsTheOldFileWhenTheWriterThrows) {
  const std::string path = put("out", "old");
  EXPECT_EQ(messageOf([&] {
              zorvela::writeWhole(path, [](std::ostream& out) {
                out << "half";
                throw zorvela::Error("stopped");
              });
            }),
            "stopped");
  EXPECT_EQ(contentOf(path), "old");
  EXPECT_EQ(fileCount(), 1U);
}

TEST_F(WriteWhole, KeepsTheOldFileWhenTheStreamFails) {
  const std::string path = put("out", "old");
  EXPECT_NE(messageOf([&] {
              zorvela::writeWhole(path, [](std::ostream& out) { out.setstate(std::ios::badbit); });
            }),
            "no error");
  EXPECT_EQ(contentOf(path), "old");
  EXPECT_EQ(fileCount(), 1U);
}

TEST_F(WriteWhole, SaysWhyAFolderThatIsMissingTakesNoFile) {
  const std::string path = (folder / "none" / "out").string();
  EXPECT_EQ(messageOf([&] { zorvela::writeWhole(path, [](std::ostream&) {}); }),
            path +
                ": cannot be written: No such file or directory; choose another place with --output, "
                "or make room");
}

TEST_F(WriteWhole, DoesNotReplaceAFolder) {
  EXPECT_EQ(messageOf([&] { zorvela::writeWhole(folder.string(), [](std::ostream&) {}); }),
            folder.string() +
                ": cannot be written: Is a directory; choose another place with --output, "
                "or make room");
}

TEST_F(WriteWhole, WritesDevicesDirectly) {
  zorvela::writeWhole("/dev/null", [](std::ostream& out) { out << "gone"; });
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(WriteWhole, ReportsAFullDevice) {
  EXPECT_EQ(messageOf([] { zorvela::writeWhole("/dev/full", [](std::ostream& out) { out << "text"; }); }),
            "/dev/full: cannot be written: No space left on device; choose another place with --output, "
            "or make room");
}

TEST_F(WriteWhole, AnInterruptRemovesTheTemporaryFileAndKeepsTheOldOne) {
  const std::string path = put("out", "old");
  EXPECT_EXIT(zorvela::writeWhole(path,
                                  [](std::ostream& out) {
                                    out << "half" << std::flush;
                                    std::raise(SIGTERM);
                                  }),
              testing::KilledBySignal(SIGTERM), "");
  EXPECT_EQ(contentOf(path), "old");
  EXPECT_EQ(fileCount(), 1U);
}

// --- No output in the place of an input -----------------------------------------------------------

using ReadFiles = InFolder;

TEST_F(ReadFiles, AreToldByTheFileAndNotByItsName) {
  const std::string input = put("input", "shifts");
  const std::string other = put("other", "");
  fs::create_symlink(input, folder / "link");
  fs::create_hard_link(input, folder / "hard");
  const zorvela::InputFiles inputs({(folder / "none").string(), input});
  for (const char* name : {"input", "./input", "link", "hard"})
    EXPECT_EQ(messageOf([&] { inputs.mustNotHold(folder.string() + "/" + name); }),
              folder.string() + "/" + name + ": is an input file; choose another place with --output");
  EXPECT_EQ(messageOf([&] { inputs.mustNotHold(other); }), "no error");
  EXPECT_EQ(messageOf([&] { inputs.mustNotHold((folder / "none").string()); }), "no error");
  EXPECT_EQ(messageOf([&] { inputs.mustNotHold("-"); }), "no error");
}

// --- Progress -----------------------------------------------------------------------------------

TEST(Progress, IsSilentOffTheTerminal) {
  testing::internal::CaptureStderr();
  {
    zorvela::Progress progress("files", 2);
    progress.step();
    progress.step();
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
