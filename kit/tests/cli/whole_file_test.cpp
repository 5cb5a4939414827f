// Output that is whole or not there at all.
#include "cli/whole_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <ostream>
#include <string>

#include "message_of.h"
#include "support/temp_dir.h"
#include "zorvela/error.h"

namespace fs = std::filesystem;

namespace {

using support::readFile;

class WriteWhole : public testing::Test, public support::TempDir {
 protected:
  std::size_t fileCount() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
  }

  const fs::path folder = path();
};

}  // namespace

TEST_F(WriteWhole, ReplacesTheTargetOfALinkAndKeepsItsPermissions) {
  const std::string path = write("out", "old and longer");
  fs::create_symlink(path, folder / "link");
  chmod(path.c_str(), 06640);  // with set-user-id and set-group-id, which do not stay
  zorvela::writeWhole((folder / "link").string(), [](std::ostream& out) { out << "one\ntwo\n"; });
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(readFile(path), "one\ntwo\n");
  EXPECT_EQ(fileCount(), 2U);
  struct stat info {};
  ASSERT_EQ(stat(path.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777U, 0640U);
}

TEST_F(WriteWhole, KeepsTheOldFileWhenTheWriterThrows) {
  const std::string path = write("out", "old");
  EXPECT_EQ(messageOf([&] {
              zorvela::writeWhole(path, [](std::ostream& out) {
                out << "half";
                throw zorvela::Error("stopped");
              });
            }),
            "stopped");
  EXPECT_EQ(readFile(path), "old");
  EXPECT_EQ(fileCount(), 1U);
}

TEST_F(WriteWhole, DoesNotReplaceAFileThatMayNotBeWritten) {
  const std::string path = write("out", "old");
  chmod(path.c_str(), 0444);
  chmod(folder.c_str(), 0777);
  const auto writeAsNobody = [&path] {
    if (geteuid() == 0 && seteuid(65534) != 0) return std::string("still root");
    std::string messages;
    for (const std::string& place : {path, std::string("/new")})
      messages += messageOf([&place] { zorvela::writeWhole(place, [](std::ostream&) {}); });
    return messages;
  };
  EXPECT_EXIT(
      {
        std::cerr << writeAsNobody();
        std::_Exit(0);  // another user may not look for leaks
      },
      testing::ExitedWithCode(0),
      "/out: cannot be written: Permission denied.*/new: cannot be written: Permission denied");
  EXPECT_EQ(readFile(path), "old");
}

TEST_F(WriteWhole, DoesNotReplaceAFolder) {
  EXPECT_EQ(messageOf([&] { zorvela::writeWhole(folder.string(), [](std::ostream&) {}); }),
            folder.string() +
                ": cannot be written: Is a directory; choose another place with --output, "
                "or free disk space");
}

TEST_F(WriteWhole, AnInterruptRemovesTheTemporaryFileAndKeepsTheOldOne) {
  const std::string path = write("out", "old");
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    EXPECT_EXIT(zorvela::writeWhole(path,
                                    [number](std::ostream& out) {
                                      out << "half" << std::flush;
                                      std::raise(number);
                                    }),
                testing::KilledBySignal(number), "");
    EXPECT_EQ(readFile(path), "old");
    EXPECT_EQ(fileCount(), 1U);
  }
}

TEST_F(WriteWhole, AnInterruptThatIsIgnoredStaysIgnored) {
  std::signal(SIGHUP, SIG_IGN);
  for (int i = 0; i < 2; ++i) {
    zorvela::writeWhole(file("out"), [](std::ostream& out) {
      out << "all";
      std::raise(SIGHUP);
    });
    EXPECT_EQ(readFile(file("out")), "all");
  }
  std::signal(SIGHUP, SIG_DFL);
}
