// Proteins by a sequence and shifts that the caller gives by name.
#include <cmath>
#include <cstdint>
#include <map>

#include "formats/limits.h"
#include "names/nomenclature.h"
#include "protein/disulfides.h"
#include "protein/sequence.h"
#include "protein/shifts.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/protein.h"

namespace zorvela {

namespace {

constexpr const char* kTheSequence = "the sequence";
constexpr std::uint8_t kDecimals = 3;

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

/// Reads the name of an atom that residue `letter` has the shift of. `name` is how messages name the shift.
AtomReading readGiven(char letter, const NamedShift& named, const std::string& name) {
  if (!std::isfinite(named.ppm))
    throw Error(name, 0, "has a shift that is not a number", "leave out what was not measured");
  const AtomReading atom = readAtom(letter, named.atom);
  if (atom.kind == AtomReading::Kind::other && !isOfProtein(named.atom))
    throw Error(name, 0, "is not an atom of a protein", "use names such as N, HN, HA, C, CA, CB and CG");
  if (atom.isOlderName)
    throw Error(name, 0, "is an older name", "call the alpha protons of glycine HA2 and HA3");
  return atom;
}

/// Takes the shifts into a protein that has its sequence.
void takeShifts(const std::vector<NamedShift>& given, std::int64_t first, Protein& protein) {
  const auto size = static_cast<std::int64_t>(protein.sequence.size());
  std::map<AtomKey, Shift> shifts;
  std::vector<std::string> foreign;
  std::size_t others = 0;
  for (const NamedShift& named : given) {
    const std::string number = std::to_string(named.number);
    const std::int64_t place = named.number - first;
    if (place < 0 || place >= size)
      throw Error("residue " + number, 0, "is not in the sequence",
                  "its residues are " + std::to_string(first) + " to " + std::to_string(first + size - 1));
    const std::string name = printable(named.atom, 40);
    const std::string ofResidue = name + " of residue " + number;
    const AtomReading atom = readGiven(protein.sequence[static_cast<std::size_t>(place)], named, ofResidue);
    Shift shift{static_cast<int>(place) + 1, atom.atom, kDecimals, named.ppm};
    if (atom.kind == AtomReading::Kind::other) ++others;
    if (atom.kind == AtomReading::Kind::foreign) foreign.push_back(number + " " + name);
    if (!atom.isInTable() || isMissingMark(shift)) continue;
    const auto put = [&] {
      const auto [found, isNew] = shifts.emplace(atomKey(shift.position, shift.atom), shift);
      if (!isNew && found->second.ppm != shift.ppm)
        throw Error(ofResidue, 0, "has two values", "keep one of them");
    };
    put();
    shift.atom = Atom::HA3;
    if (atom.kind == AtomReading::Kind::pseudo) put();
  }
  for (const auto& [atom, shift] : shifts) protein.shifts.push_back(shift);
  addNote(kForeignAtoms, foreign, protein.notes);
  noteOtherAtoms(others, protein.asides);
}

}  // namespace

Protein proteinOfShifts(const std::string& sequence, const std::vector<NamedShift>& shifts, int firstNumber) {
  checkSequence(sequence);
  Protein protein;
  protein.sequence = sequence;
  ChainSequence residues;
  for (std::size_t i = 0; i < sequence.size(); ++i) {
    const std::string number = std::to_string(firstNumber + static_cast<std::int64_t>(i));
    protein.numbers.push_back(number);
    residues.residues.push_back({number, number, "", Thiol::unknown, false, {sequence[i]}});
  }
  takeShifts(shifts, firstNumber, protein);
  markDisulfides({}, residues, protein);
  noteImplausible(protein);
  return protein;
}

}  // namespace zorvela
