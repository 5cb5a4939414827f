// PDB text: atom lines by their columns, and the records that begin and end models.
#include <cmath>
#include <cstdlib>
#include <set>

#include <gemmi/numb.hpp>  // for as_number

#include "names/nomenclature.h"
#include "structure/coordinates.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

// Columns of an atom line, from 0.
constexpr std::size_t kNameAt = 12;
constexpr std::size_t kAlternateAt = 16;
constexpr std::size_t kResidueAt = 17;
constexpr std::size_t kChainAt = 20;
constexpr std::size_t kNumberAt = 22;
constexpr std::size_t kCodeAt = 26;
constexpr std::size_t kXAt = 30;
constexpr std::size_t kCoordinateWidth = 8;
constexpr std::size_t kCoordinatesEnd = 54;
constexpr std::size_t kOccupancyAt = 54;
constexpr std::size_t kSegmentAt = 72;
constexpr const char* kFetchAgain = "fetch the file again";

std::string_view field(std::string_view line, std::size_t at, std::size_t width) {
  return at < line.size() ? trimmed(line.substr(at, width)) : std::string_view();
}

bool isAtomLine(std::string_view line) {
  return startsIgnoringCase(line, "ATOM ") || startsIgnoringCase(line, "HETATM");
}

bool isAminoAcid(std::string_view name) {
  return residueType(name).letter != kUnknownResidue;
}

/// AMBER has names of its own for the residues at the ends: NPRO, CPRO.
bool isTerminalName(std::string_view name) {
  return name.size() == 4 && (name[0] == 'N' || name[0] == 'C') && isAminoAcid(name.substr(1));
}

/// The residue name and the name of the chain behind it.
struct ResidueAndChain {
  std::string_view residue;
  std::string_view chain;
};

/// Column 21 is the fourth letter of a name (CYSS, LYS+, cPRO), the first one of a chain name of two, or
/// blank. CYSS, CYSH and HIST could be either.
ResidueAndChain residueAndChain(std::string_view line, bool hasWideChains) {
  const std::string_view three = field(line, kResidueAt, 3);
  const std::string_view four = field(line, kResidueAt, 4);
  const bool isFour = four.size() == 4 && (isAminoAcid(four) || isTerminalName(four)) &&
                      !(hasWideChains && isAminoAcid(three) && isLetter(four[3]));
  if (isFour)
    return {isTerminalName(four) && !isAminoAcid(four) ? four.substr(1) : four, field(line, kChainAt + 1, 1)};
  return {three, field(line, kChainAt, 2)};
}

bool isNotANumberMark(std::string_view text) {
  const std::string word = lower(text);
  return contains(word, "nan") || contains(word, "inf") || contains(word, "*");
}

double numberIn(std::string_view text, double none) {
  return gemmi::cif::as_number(std::string(text), none);
}

/// The number of a residue, with its insertion code. Beyond 9999 programs count on with letters: A000.
std::string numberOf(std::string_view line) {
  const std::string digits(line.substr(kNumberAt, 4));
  std::string number = "?";
  if (digits.front() >= 'A')
    number = std::to_string(std::strtol(digits.c_str(), nullptr, 36) - 10L * 36 * 36 * 36 + 10000);
  else if (!trimmed(digits).empty())
    number = std::to_string(std::strtol(digits.c_str(), nullptr, 10));
  if (line[kCodeAt] != ' ') number += line[kCodeAt];
  return number;
}

class PdbReader {
 public:
  PdbReader(std::string_view source, const std::string& name)
      : text(source), file(name), backbone(name, source.size()) {}

  Coordinates read() {
    for (std::size_t pos = 0; const auto line = nextLine(text, pos);)
      if (isAtomLine(*line) && hasWideChain(*line)) hasWideChains = true;
    for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
      ++lineNumber;
      readLine(*line);
    }
    if (isModelOpen && isAnyClosed) fail("the file ends within a model", kFetchAgain);
    if (isModelOpen) unclosed.push_back(model);
    Coordinates coordinates = backbone.finished();
    addNote("models without ENDMDL; each ends where the next one begins: ", unclosed, coordinates.notes);
    addNote("models with the number of another one, renumbered: ", renumbered, coordinates.notes);
    return coordinates;
  }

 private:
  [[noreturn]] void fail(const std::string& what, const char* remedy) const {
    throw FileError(file, lineNumber, what, remedy);
  }

  /// Tells whether no residue name can explain what column 21 has.
  static bool hasWideChain(std::string_view line) {
    const std::string_view four = field(line, kResidueAt, 4);
    return four.size() == 4 && isAminoAcid(four.substr(0, 3)) && !isAminoAcid(four) && !isTerminalName(four);
  }

  void readLine(std::string_view line) {
    if (isAtomLine(line)) {
      addAtom(line);
    } else if (startsIgnoringCase(line, "TER")) {
      ++part;
    } else if (startsIgnoringCase(line, "ENDMDL")) {
      isAnyClosed = true;
      isModelOpen = false;
      endModel();
    } else if (startsIgnoringCase(line, "MODEL ")) {
      openModel(line);
    } else if (trimmed(line.substr(0, 6)) == "END") {
      if (isModelOpen && !model.empty()) unclosed.push_back(model);
      isModelOpen = false;
      endModel();  // some programs end each model of a series so
    }
  }

  void openModel(std::string_view line) {
    if (isModelOpen) unclosed.push_back(model);
    endModel();
    ++modelsOpened;
    isModelOpen = true;
    // Some programs write more after the number: MODEL        3 REFINED.
    const std::string_view rest = trimmed(line.substr(6));
    const auto given = toInteger(rest.substr(0, rest.find_first_of(" \t")));
    startModel(given && *given >= 0 && *given <= 9999 ? *given : modelsOpened);
  }

  void startModel(int number) {
    const bool isNew = modelNumbers.insert(number).second;
    if (!isNew) modelNumbers.insert(number = *modelNumbers.rbegin() + 1);
    model = std::to_string(number);
    if (!isNew) renumbered.push_back(model);
  }

  void endModel() {
    model.clear();
    part = 0;
    linkers = 0;
    chain.clear();
  }

  void addAtom(std::string_view line) {
    if (line.size() < kCoordinatesEnd)
      fail("the atom line is cut off after column " + std::to_string(line.size()), kFetchAgain);
    const std::string_view name = field(line, kNameAt, 4);
    const ResidueAndChain names = residueAndChain(line, hasWideChains);
    if (isLinker(names.residue)) ++linkers;
    if (!isBackbone(name)) return;
    if (model.empty()) startModel(static_cast<int>(modelNumbers.size()) + 1);
    BackboneAtom atom;
    atom.model = model;
    const std::string_view segment = field(line, kSegmentAt, 4);
    atom.segment = std::string(segment) + ' ' + std::to_string(linkers);
    atom.chain = names.chain.empty() ? segment : names.chain;
    // A chain that goes on after another one may have the same numbers again.
    if (atom.chain != chain) ++part;
    chain = atom.chain;
    atom.part = std::to_string(part);
    atom.residue = names.residue;
    atom.number = numberOf(line);
    atom.isHetero = startsIgnoringCase(line, "H");
    atom.atom.name = name;
    atom.atom.alternate = line[kAlternateAt];
    if (line.size() >= kOccupancyAt + 4)
      atom.atom.occupancy = static_cast<float>(numberIn(field(line, kOccupancyAt, 6), 0));
    atom.atom.position = {coordinate(line, 0), coordinate(line, 1), coordinate(line, 2)};
    backbone.add(atom, "line " + std::to_string(lineNumber));
  }

  /// Reads a plain decimal number, right or left in its columns; not a number if the file has "nan".
  double coordinate(std::string_view line, std::size_t i) const {
    const std::string_view number = field(line, kXAt + i * kCoordinateWidth, kCoordinateWidth);
    if (toDecimal(number)) return numberIn(number, NAN);
    if (isNotANumberMark(number)) return NAN;
    fail("columns 31 to 54 do not hold three coordinates: \"" +
             printable(line.substr(kXAt, kCoordinatesEnd - kXAt)) + "\"",
         "give a file in the columns of the PDB format, or mmCIF");
  }

  std::string_view text;
  const std::string& file;
  BackboneBuilder backbone;
  std::size_t lineNumber = 0;
  int modelsOpened = 0;
  bool isModelOpen = false;
  bool isAnyClosed = false;
  std::set<int> modelNumbers;
  std::string model;  ///< empty between models
  std::string chain;
  std::size_t part = 0;  ///< of the model: how many signs of an end there were
  std::size_t linkers = 0;
  bool hasWideChains = false;
  std::vector<std::string> unclosed;
  std::vector<std::string> renumbered;
};

}  // namespace

bool isPdb(std::string_view text) {
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);)
    if (isAtomLine(*line)) return true;
  return false;
}

Coordinates readPdbCoordinates(std::string_view text, const std::string& name) {
  return PdbReader(text, name).read();
}

}  // namespace zorvela
