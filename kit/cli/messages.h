// Lines on standard error.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zorvela {

/// The name of the program.
inline constexpr const char* kProgramName = "zorvela-kit";

/// Writes one line on standard error: "zorvela-kit: " and the text, without control characters.
void say(const std::string& text);

/// Returns the name of a chain in messages: "a.str", "a.str, chain A" or "standard input".
std::string messageName(const std::string& file, const std::string& chain);

/// The number of notes of a file that are shown where a report has them all.
inline constexpr std::size_t kNotesShown = 5;

/// The notes of a chain of a file.
struct ChainNotes {
  std::string chain;  ///< its name; empty where it has none
  std::vector<std::string> notes;
};

/// Writes the notes of all chains of a file, a line each; a note that several chains share names them. Lines
/// beyond `most` are counted. Returns the number of different notes.
std::size_t sayFileNotes(const std::string& file, const std::vector<ChainNotes>& chains,
                         std::size_t most = kNotesShown);

/// A file that could not be used, and the message that says why.
struct Failure {
  std::string file;
  std::string message;
};

/// Writes "3 of 7 files could not be ..." where there were several. For many files, also writes each reason
/// with its number of files.
void sayFailures(const std::vector<Failure>& failures, std::size_t files, const std::string& what);

}  // namespace zorvela
