// Lines on standard error.
#include "cli/messages.h"

#include <algorithm>
#include <iostream>
#include <map>
#include <unordered_map>

#include "cli/input.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr std::size_t kLongestNameShown = 60;

/// "a.str, chain A", "a.str, chains A, B".
std::string nameOf(const std::string& file, const std::vector<std::string>& chains) {
  if (chains.size() == 1) return messageName(file, chains.front());
  std::vector<std::string> names;
  for (const std::string& chain : chains) names.push_back(printable(chain, kLongestNameShown));
  return inputName(file) + ", chains " + enumerated(names);
}

/// Of more files the failed ones are lost among the notes.
constexpr std::size_t kFewFiles = 10;

/// "is empty; give ..." of "a.str: is empty; give ..." or "a.str:12: is empty; give ...".
std::string reasonOf(const Failure& failure) {
  const std::string name = inputName(failure.file);
  if (failure.message.compare(0, name.size(), name) != 0) return failure.message;
  const std::size_t start = failure.message.find(": ", name.size());
  return start == std::string::npos ? failure.message : failure.message.substr(start + 2);
}

/// A reason without the words and numbers of the one file.
std::string kindOf(const std::string& reason) {
  std::string kind;
  bool isQuoted = false;
  for (const char c : reason) {
    if (c == '"') isQuoted = !isQuoted;
    if (!isQuoted && !isDigit(c)) kind += c;
  }
  return kind;
}

}  // namespace

void say(const std::string& text) {
  std::cerr << kProgramName << ": " + shown(text) + "\n" << std::flush;
}

std::string messageName(const std::string& file, const std::string& chain) {
  return chainOfFile(inputName(file), chain);
}

std::size_t sayFileNotes(const std::string& file, const std::vector<ChainNotes>& chains, std::size_t most) {
  std::vector<std::string> notes;
  std::unordered_map<std::string, std::vector<std::string>> chainsOf;
  for (const ChainNotes& one : chains)
    for (const std::string& note : one.notes) {
      std::vector<std::string>& names = chainsOf[note];
      if (names.empty()) notes.push_back(note);
      if (names.empty() || names.back() != one.chain) names.push_back(one.chain);
    }
  const std::size_t shown = std::min(most, notes.size());
  for (std::size_t i = 0; i < shown; ++i) say("note: " + nameOf(file, chainsOf[notes[i]]) + ": " + notes[i]);
  if (notes.size() > shown)
    say("note: " + inputName(file) + ": " + counted(notes.size() - shown, "more note", "more notes") +
        "; run --format json has them all");
  return notes.size();
}

void sayFailures(const std::vector<Failure>& failures, std::size_t files, const std::string& what) {
  if (files > 1)
    say(std::to_string(failures.size()) + " of " + std::to_string(files) + " files could not be " + what);
  if (files <= kFewFiles) return;
  std::map<std::string, std::vector<Failure>> byKind;
  for (const Failure& failure : failures) byKind[kindOf(reasonOf(failure))].push_back(failure);
  std::vector<std::vector<Failure>> groups;
  for (const auto& [kind, group] : byKind) groups.push_back(group);
  std::stable_sort(groups.begin(), groups.end(),
                   [](const auto& a, const auto& b) { return a.size() > b.size(); });
  for (const std::vector<Failure>& group : groups)
    say((group.size() > 1 ? std::to_string(group.size()) + " files, such as " : "") +
        printable(inputName(group.front().file)) + ": " + printable(reasonOf(group.front())));
}

}  // namespace zorvela
