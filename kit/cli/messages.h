// What the sub-commands say on standard error, in one voice.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zorvela {

/// The name of the program.
inline constexpr const char* kProgramName = "zorvela-kit";

/// One line on standard error, "zorvela-kit: " and the text, with nothing in it that a terminal would obey.
void say(const std::string& text);

/// How a message names a chain: "a.str", "a.str, chain A" or "standard input".
std::string messageName(const std::string& file, const std::string& chain);

/// How many notes of a file are shown where a report has them all.
inline constexpr std::size_t kNotesShown = 5;

/// The notes of a chain of a file.
struct ChainNotes {
  std::string chain;  ///< its name; empty where it has none
  std::vector<std::string> notes;
};

/// The notes of all chains of a file, a line each: one that several chains share is one line that names them.
/// Of more than `most` lines the others are counted; `whereToFind` says where they are. Returns the number of
/// different notes.
std::size_t sayFileNotes(const std::string& file, const std::vector<ChainNotes>& chains, std::size_t most,
                         const std::string& whereToFind);

/// The files that failed, and why.
class FailedFiles {
 public:
  void add(const std::string& file, const std::string& message);
  std::size_t count() const { return failed.size(); }
  /// Says "3 of 7 files could not be ..." where there were several, and for many files each reason
  /// with how many it has.
  void say(std::size_t files, const std::string& what) const;

 private:
  struct Failure {
    std::string file;
    std::string reason;
  };
  std::vector<Failure> failed;
};

}  // namespace zorvela
