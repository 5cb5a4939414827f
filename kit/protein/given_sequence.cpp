// Proteins by a sequence and shifts that the caller gives by name.
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>

#include "formats/limits.h"
#include "names/nomenclature.h"
#include "protein/disulfides.h"
#include "protein/implausible_shifts.h"
#include "protein/sequence.h"
#include "protein/shifts.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/protein.h"

namespace zorvela {

namespace {

constexpr const char* kTheSequence = "the sequence";

void checkSequence(const std::string& sequence) {
  if (sequence.empty()) throw Error(kTheSequence, 0, "is empty", "give one-letter codes, as in \"MQIF\"");
  checkLimit(sequence.size(), limits::kSequence, kTheSequence);
  for (std::size_t i = 0; i < sequence.size(); ++i)
    if (!isSequenceLetter(sequence[i]))
      throw Error(kTheSequence, 0,
                  "has \"" + shown(sequence.substr(i, 1)) + "\" at position " + std::to_string(i + 1),
                  "use one-letter codes in capitals, and X for other residues");
}

// --- Shifts by name -----------------------------------------------------------------------------

/// Tells whether a protein can have an atom of that name, such as HB2, CD1, NE or 1HG1: element, distance
/// from CA, digits.
bool isOfProtein(std::string_view atom) {
  std::string name = upper(withLatinLetters(atom));
  name.erase(0, name.find_first_not_of("0123456789"));
  if (name.empty() || !contains("CHNOSQM", name.substr(0, 1))) return false;
  const bool isOfSideChain = name.size() > 1 && contains("ABGDEZH", name.substr(1, 1));
  if (!isOfSideChain) return name.find_first_not_of("0123456789%*#'", 1) == std::string::npos;
  return name.find_first_not_of("0123456789%*#'XY", 2) == std::string::npos;
}

/// The shifts of a sequence as they come, by residue and place in the table.
class Gathered {
 public:
  Gathered(const std::string& letters, int firstNumber) : sequence(letters), first(firstNumber) {}

  void add(const NamedShift& named) {
    const std::int64_t position = static_cast<std::int64_t>(named.number) - first + 1;
    if (position < 1 || position > static_cast<std::int64_t>(sequence.size()))
      throw Error("residue " + std::to_string(named.number), 0, "is not in the sequence",
                  "its residues are " + std::to_string(first) + " to " +
                      std::to_string(first + static_cast<std::int64_t>(sequence.size()) - 1));
    const std::string name = printable(named.atom, 40) + " of residue " + std::to_string(named.number);
    if (!std::isfinite(named.ppm))
      throw Error(name, 0, "has a shift that is not a number", "leave out what was not measured");
    const AtomReading atom = readAtom(sequence[static_cast<std::size_t>(position) - 1], named.atom);
    if (atom.kind == AtomReading::Kind::other && !isOfProtein(named.atom))
      throw Error(name, 0, "is not an atom of a protein", "use names such as N, HN, HA, C, CA, CB and CG");
    if (atom.isOlderName)
      throw Error(name, 0, "is an older name", "call the alpha protons of glycine HA2 and HA3");
    if (atom.kind == AtomReading::Kind::other)
      ++others;
    else if (atom.kind == AtomReading::Kind::foreign)
      foreign.push_back(std::to_string(named.number) + " " + printable(named.atom, 40));
    else
      put(static_cast<int>(position), atom, named.ppm, name);
  }

  void moveTo(Protein& protein) {
    for (const auto& [place, shift] : shifts) protein.shifts.push_back(shift);
    addNote(kForeignAtoms, foreign, protein.notes);
    noteOtherAtoms(others, protein.asides);
  }

 private:
  void put(int position, const AtomReading& atom, double ppm, const std::string& name) {
    Shift shift{position, atom.atom, 3, ppm};
    if (isMissingMark(shift)) return;
    putOnce(shift, name);
    if (atom.kind != AtomReading::Kind::pseudo) return;
    shift.atom = Atom::HA3;
    putOnce(shift, name);
  }

  void putOnce(const Shift& shift, const std::string& name) {
    const auto [found, isNew] = shifts.emplace(std::pair(shift.position, tableRank(shift.atom)), shift);
    if (!isNew && found->second.ppm != shift.ppm) throw Error(name, 0, "has two values", "keep one of them");
  }

  const std::string& sequence;
  std::int64_t first;
  std::map<std::pair<int, std::size_t>, Shift> shifts;
  std::vector<std::string> foreign;
  std::size_t others = 0;
};

/// Decides by CB, as for a file that does not state the form of its cysteines.
void markOxidised(Protein& protein) {
  std::vector<std::string> oxidised;
  for (const std::size_t place : oxidisedByShift(protein)) {
    protein.sequence[place] = kDisulfideCysteine;
    oxidised.push_back(protein.numbers[place]);
  }
  addNote(bondedByShiftText(), oxidised, protein.notes);
}

}  // namespace

Protein proteinOfShifts(const std::string& sequence, const std::vector<NamedShift>& shifts, int firstNumber) {
  checkSequence(sequence);
  Protein protein;
  protein.sequence = sequence;
  for (std::size_t i = 0; i < sequence.size(); ++i)
    protein.numbers.push_back(std::to_string(firstNumber + static_cast<std::int64_t>(i)));
  Gathered gathered(sequence, firstNumber);
  for (const NamedShift& shift : shifts) gathered.add(shift);
  gathered.moveTo(protein);
  markOxidised(protein);
  noteImplausible(protein);
  return protein;
}

}  // namespace zorvela
