#include "cli/input.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <string_view>
#include <system_error>

#include "cli/messages.h"
#include "formats/format.h"
#include "formats/input_bytes.h"
#include "formats/sequence_file.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

// --- Names --------------------------------------------------------------------------------------

namespace {

namespace fs = std::filesystem;

std::vector<std::string> namesInList(const FileArguments& given) {
  const std::string name = inputName(given.list);
  std::string text = inputBytes(given.list);
  dropByteOrderMark(text);
  if (!given.endWithZero && contains(text, std::string_view("\0", 1)))
    throw Error(name, 0, "has names that end with a zero byte", "add --null");
  std::vector<std::string> names;
  std::istringstream zeroEnded(text);
  if (given.endWithZero)
    for (std::string one; std::getline(zeroEnded, one, '\0');) names.push_back(one);
  else
    for (std::size_t pos = 0; const auto line = nextLine(text, pos);) names.emplace_back(*line);
  names.erase(std::remove(names.begin(), names.end(), ""), names.end());
  if (names.empty()) throw Error(name, 0, "names no files", "write one name on each line");
  return names;
}

/// A file that cannot be read, or is cut, counts: it is named when it is read.
bool mayHoldShifts(const std::string& path) {
  std::string bytes;
  try {
    bytes = unpacked(fileBytes(path), path);
  } catch (const Error&) {
    return true;
  }
  try {
    for (const Source& source : sourcesOf(std::move(bytes), path)) readSource(source);
    return true;
  } catch (const Error&) {
    return false;
  }
}

void addFolder(const std::string& folder, std::vector<std::string>& files) {
  std::vector<std::string> others;
  bool isEmpty = true;
  for (const std::string& file : filesIn(folder)) {
    const bool isSequence = isSequenceFile(file);
    const bool isTaken = isSequence || mayHoldShifts(file);
    (isTaken ? files : others).push_back(isTaken ? file : baseName(file));
    isEmpty = isEmpty && (isSequence || !isTaken);
  }
  if (isEmpty) throw FileError(folder, 0, "is a folder without shift files", "name the files");
  if (!others.empty())
    say("note: " + folder + ": " +
        counted(others.size(), "file has no shifts and is", "files have no shifts and are") +
        " ignored: " + printable(enumerated(others, 5), 400));
}

}  // namespace

void addFiles(Command& command, FileArguments& given, const std::string& text) {
  command.add("FILE", given.files, "", text);
  const Option list =
      command.add("--files-from", given.list, "FILE",
                  "Also read the files that FILE names, one on each line; - is standard input");
  command
      .addFlag("--null", given.endWithZero,
               "The names in that FILE end with a zero byte, as find -print0 writes them")
      .needs(list);
}

std::vector<std::string> namedFiles(const FileArguments& given) {
  if (given.files.empty() && given.list.empty()) failRequired("FILE or --files-from");
  std::vector<std::string> named = given.files;
  if (!given.list.empty())
    for (std::string& name : namesInList(given)) named.push_back(std::move(name));
  std::vector<std::string> files;
  for (const std::string& name : named) {
    std::error_code unknown;
    if (name != "-" && fs::is_directory(name, unknown))
      addFolder(name, files);
    else
      files.push_back(name);
  }
  return files;
}

std::vector<std::string> filesIn(const std::string& folder) {
  std::error_code error;
  std::vector<std::string> files;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    std::error_code unknown;
    if (at->path().filename().string().front() != '.' && at->is_regular_file(unknown))
      files.push_back(at->path().string());
  }
  if (error) throw FileError(folder, 0, "cannot be read: " + error.message(), "check the permissions");
  std::sort(files.begin(), files.end());
  return files;
}

bool isSequenceFile(const std::string& path) {
  constexpr std::size_t kHead = std::size_t{1} << 16;
  std::error_code unknown;
  if (!fs::is_regular_file(path, unknown)) return false;  // a pipe can be read once
  try {
    const std::string head = unpacked(fileBytes(path, kHead), path);
    return looksLikeSequence(std::string_view(head).substr(0, kHead));  // 64 KiB unpack to many MB
  } catch (const Error&) {
    return false;
  }
}

// --- Content ------------------------------------------------------------------------------------

std::string inputBytes(const std::string& path) {
  return path == "-" ? streamBytes(stdin, inputName(path)) : fileBytes(path);
}

std::vector<Protein> readInput(const std::string& path, const ImportOptions& options) {
  if (path != "-") return readShiftFile(path, options);
  std::vector<Protein> proteins = readShiftStream(stdin, inputName(path), options);
  for (Protein& protein : proteins) protein.file = path;
  return proteins;
}

std::string inputName(const std::string& path) {
  return path == "-" ? "standard input" : path;
}

std::string inputStem(const std::string& path) {
  std::filesystem::path stem = path;
  if (equalIgnoringCase(stem.extension().string(), ".gz")) stem.replace_extension();
  return stem.replace_extension().string();
}

}  // namespace zorvela
