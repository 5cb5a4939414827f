#include "cli/file_arguments.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "cli/input.h"
#include "cli/joined_inputs.h"
#include "cli/messages.h"
#include "formats/format.h"
#include "formats/input_bytes.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> splitAtZeros(std::string_view text) {
  std::vector<std::string> names;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\0'), text.size());
    names.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return names;
}

std::vector<std::string> splitAtLines(std::string_view text) {
  std::vector<std::string> names;
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);) names.emplace_back(*line);
  return names;
}

std::vector<std::string> namesInList(const FileArguments& given) {
  const std::string name = inputName(given.list);
  std::string text = given.list == "-" ? streamBytes(stdin, name) : fileBytes(given.list);
  dropByteOrderMark(text);
  if (!given.endWithZero && contains(text, std::string_view("\0", 1)))
    throw Error(name, 0, "has names that end with a zero byte", "add --null");
  std::vector<std::string> names = given.endWithZero ? splitAtZeros(text) : splitAtLines(text);
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

void addFiles(Command& command, FileArguments& given, const std::string& text,
              const std::function<void()>& without) {
  const Option files = command.add("FILE", given.files, "", text);
  const Option list =
      command.add("--files-from", given.list, ValueKind("FILE").notEmpty(),
                  "Also read the files that FILE names, one on each line; - is standard input");
  command.needsEither(files, list, without);
  command
      .addFlag("--null", given.endWithZero,
               "The names in that FILE end with a zero byte, as find -print0 writes them")
      .needs(list);
}

void addChains(Command& command, std::vector<std::string>& chains) {
  command
      .add("--chain", chains, ValueKind("NAME").notEmpty(),
           "Use only this chain (name, molecule or number in the file); may be repeated")
      .repeated()
      .showsDefault("every polypeptide chain with shifts");
}

void addLists(Command& command, std::vector<std::string>& lists, const std::string& text) {
  command.add("--list", lists, ValueKind("NAME").notEmpty(), text)
      .repeated()
      .showsDefault("for each chain the list with most backbone shifts");
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

std::vector<std::string> namedFiles(const FileArguments& given) {
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

}  // namespace zorvela
