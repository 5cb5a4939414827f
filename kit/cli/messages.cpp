// Lines on standard error.
#include "cli/messages.h"

#include <algorithm>
#include <iostream>

#include "cli/input.h"
#include "util/text.h"

namespace zorvela {

namespace {
constexpr std::size_t kLongestName = 60;
}

void say(const std::string& text) {
  std::cerr << kProgramName << ": " + shown(text) + "\n" << std::flush;
}

std::string messageName(const std::string& file, const std::string& chain) {
  const std::string name = inputName(file);
  return chain.empty() ? name : name + ", chain " + printable(chain, kLongestName);
}

void sayNotes(const std::string& name, const std::vector<std::string>& notes, std::size_t most,
              const std::string& whereToFind) {
  const std::size_t shown = std::min(most, notes.size());
  for (std::size_t i = 0; i < shown; ++i) say("note: " + name + ": " + notes[i]);
  if (notes.size() > shown)
    say("note: " + name + ": " + counted(notes.size() - shown, "more note", "more notes") + "; " +
        whereToFind);
}

void sayFailures(std::size_t failures, std::size_t files, const std::string& what) {
  if (files > 1)
    say(std::to_string(failures) + " of " + std::to_string(files) + " files could not be " + what);
}

}  // namespace zorvela
