#include "formats/found_rows.h"

#include <algorithm>
#include <utility>

#include "names/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

/// Makes one-letter names three-letter ones. A lower-case c is a disulfide cysteine, except in a file that
/// writes all its letters in lower case.
void nameResidues(std::vector<FileShift>& shifts) {
  const auto isUpperLetter = [](const FileShift& shift) {
    const std::string& name = shift.residueName;
    return name.size() == 1 && name[0] >= 'A' && name[0] <= 'Z';
  };
  const bool isCaseKept = std::any_of(shifts.begin(), shifts.end(), isUpperLetter);
  for (FileShift& shift : shifts) {
    if (shift.residueName.size() != 1) continue;
    const char letter = shift.residueName[0];
    const bool isDisulfide = isCaseKept && letter == kDisulfideCysteine;
    const std::string name = threeLetterName(isDisulfide ? letter : upper(shift.residueName).front());
    if (!name.empty()) shift.residueName = name;
  }
}

}  // namespace

void Unassigned::appendTo(std::vector<std::string>& notes) const {
  if (count == 0) return;
  notes.push_back(counted(count, "shift", "shifts") + " not assigned to a residue ignored" +
                  (count == 1 ? ", that of " : ", such as those of ") + printable(example, 40));
}

FoundRows::FoundRows(std::string_view text, const std::string& name)
    : fileName(name), limit(limits::shiftRows(text.size())) {}

void FoundRows::add(const std::string& chain, FileShift shift) {
  checkLimit(shifts.size() + 1, limit, fileName, shift.line);
  const auto [entry, isNew] = chainIndex.emplace(chain, chains.size());
  if (isNew) {
    checkLimit(chains.size() + 1, limits::kNamedChains, fileName, shift.line);
    chains.push_back(chain);
  }
  shift.chain = entry->second;
  shift.key = shift.number;
  shifts.push_back(std::move(shift));
}

ShiftFile FoundRows::file(std::vector<std::string> notes) && {
  nameResidues(shifts);
  ShiftFile file;
  file.notes = std::move(notes);
  for (const std::string& name : chains) {
    file.chains.emplace_back();
    file.chains.back().name = nameOf(name, file.notes);
  }
  file.lists.emplace_back();
  file.lists[0].shifts = std::move(shifts);
  return file;
}

}  // namespace zorvela
