// Errors with a remedy, whole-or-nothing output, safe reading of tables.
#include "cli/progress.h"
#include "cli/whole_file.h"
#include "predict/tables.h"
#include "zorvela/error.h"

#include <gtest/gtest.h>
#include <sys/stat.h>  // for permissions
#include <unistd.h>    // for symlink

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

// --- Reading a table ----------------------------------------------------------------------------

class LoadTable : public InFolder {
 protected:
  /// The error, with nothing on standard error.
  static std::string silentMessage(const std::string& path) {
    testing::internal::CaptureStderr();
    const std::string message = messageOf([&] { zorvela::loadTable(path, "mend it"); });
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    return message;
  }
};

TEST_F(LoadTable, ReadsATable) {
  const std::string path = put("t.tab", "VARS A B\nFORMAT %s %d\nx 1\ny 2\n");
  const GDB table = zorvela::loadTable(path, "");
  EXPECT_EQ(table.getEntryCount(), 2);
  EXPECT_EQ(table.getEntry("A", "y", 1).at("B"), "2");
}

TEST_F(LoadTable, AMissingFileIsOneLine) {
  const std::string path = (folder / "none.tab").string();
  EXPECT_EQ(silentMessage(path), path + ": No such file or directory; mend it");
}

TEST_F(LoadTable, AFolderIsNoTable) {
  EXPECT_EQ(silentMessage(folder.string()), folder.string() + ": is a folder, not a table; mend it");
}

TEST_F(LoadTable, ABadFormatItemIsOneLineAndNothingLeaks) {
  const std::string path = put("t.tab", "VARS A\nFORMAT %5.1e\n1\n");
  EXPECT_EQ(silentMessage(path), path + ":2: Bad format syntax '%5.1e'; mend it");
}

TEST_F(LoadTable, ABareKeywordIsOneLine) {
  const std::string path = put("t.tab", "REMARK\nVARS A\nFORMAT %s\n1\n");
  EXPECT_EQ(silentMessage(path), path + ": a REMARK or DATA line has nothing behind the keyword; mend it");
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
