// Lines on standard error.
#include "cli/messages.h"

#include <algorithm>
#include <iostream>
#include <unordered_map>

#include "cli/input.h"
#include "util/text.h"

namespace zorvela {

namespace {
constexpr std::size_t kLongestNameShown = 60;

/// A note and the chains that have it.
struct SharedNote {
  std::string text;
  std::vector<std::string> chains;
};

std::vector<SharedNote> sharedNotes(const std::vector<ChainNotes>& chains) {
  std::vector<SharedNote> notes;
  std::unordered_map<std::string, std::size_t> known;
  for (const ChainNotes& one : chains)
    for (const std::string& text : one.notes) {
      const auto [entry, isNew] = known.emplace(text, notes.size());
      if (isNew) notes.push_back({text, {}});
      std::vector<std::string>& names = notes[entry->second].chains;
      if (names.empty() || names.back() != one.chain) names.push_back(one.chain);
    }
  return notes;
}

/// "a.str, chain A", "a.str, chains A, B".
std::string nameOf(const std::string& file, const std::vector<std::string>& chains) {
  if (chains.size() == 1) return messageName(file, chains.front());
  std::vector<std::string> names;
  for (const std::string& chain : chains) names.push_back(printable(chain, kLongestNameShown));
  return inputName(file) + ", chains " + enumerated(names);
}

}  // namespace

void say(const std::string& text) {
  std::cerr << kProgramName << ": " + shown(text) + "\n" << std::flush;
}

std::string messageName(const std::string& file, const std::string& chain) {
  const std::string name = inputName(file);
  return chain.empty() ? name : name + ", chain " + printable(chain, kLongestNameShown);
}

std::size_t sayFileNotes(const std::string& file, const std::vector<ChainNotes>& chains, std::size_t most,
                         const std::string& whereToFind) {
  const std::vector<SharedNote> notes = sharedNotes(chains);
  const std::size_t shown = std::min(most, notes.size());
  for (std::size_t i = 0; i < shown; ++i)
    say("note: " + nameOf(file, notes[i].chains) + ": " + notes[i].text);
  if (notes.size() > shown)
    say("note: " + inputName(file) + ": " + counted(notes.size() - shown, "more note", "more notes") + "; " +
        whereToFind);
  return notes.size();
}

void sayFailures(std::size_t failures, std::size_t files, const std::string& what) {
  if (files > 1)
    say(std::to_string(failures) + " of " + std::to_string(files) + " files could not be " + what);
}

}  // namespace zorvela
