// PDB text: atom lines by their columns, and the records that begin and end models.
#include <cmath>
#include <cstdlib>
#include <set>

#include <gemmi/numb.hpp>  // for as_number

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
  return startsIgnoringCase(line, "ATOM") || startsIgnoringCase(line, "HETATM");
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
    number = std::to_string(std::strtol(digits.c_str(), nullptr, 36) - 10 * 36 * 36 * 36 + 10000);
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
    for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
      ++lineNumber;
      readLine(*line);
    }
    if (isModelOpen && isAnyClosed) fail("the file ends within a model", kFetchAgain);
    return backbone.finished();
  }

 private:
  [[noreturn]] void fail(const std::string& what, const char* remedy) const {
    throw FileError(file, lineNumber, what, remedy);
  }

  void readLine(std::string_view line) {
    if (isAtomLine(line)) {
      addAtom(line);
    } else if (startsIgnoringCase(line, "ENDMDL")) {
      isAnyClosed = true;
      isModelOpen = false;
      endModel();
    } else if (startsIgnoringCase(line, "MODEL ")) {
      openModel(line);
    } else if (trimmed(line.substr(0, 6)) == "END") {
      endModel();  // some programs end each model of a series so
    }
  }

  void openModel(std::string_view line) {
    if (chainPart > 0) fail("a model begins within another one", kFetchAgain);
    ++modelsOpened;
    isModelOpen = true;
    const auto given = toInteger(trimmed(line.substr(6, 12)));
    startModel(given && *given >= 0 && *given <= 9999 ? *given : modelsOpened);
  }

  void startModel(int number) {
    if (!modelNumbers.insert(number).second)
      fail("a second model has the number " + std::to_string(number), "number the models 1, 2, 3 ...");
    model = std::to_string(number);
  }

  void endModel() {
    model.clear();
    chainPart = 0;
  }

  void addAtom(std::string_view line) {
    if (line.size() < kCoordinatesEnd)
      fail("the atom line is cut off after column " + std::to_string(line.size()), kFetchAgain);
    const std::string_view name = field(line, kNameAt, 4);
    if (!isBackbone(name)) return;
    if (model.empty()) startModel(static_cast<int>(modelNumbers.size()) + 1);
    BackboneAtom atom;
    atom.model = model;
    atom.chain = field(line, kChainAt, 2);
    if (chainPart == 0 || atom.chain != chain) ++chainPart;
    chain = atom.chain;
    // A chain that goes on after another one may have the same numbers again.
    atom.part = std::to_string(chainPart) + " " + std::string(field(line, kSegmentAt, 4));
    atom.residue = field(line, kResidueAt, 3);
    atom.number = numberOf(line);
    atom.isHetero = startsIgnoringCase(line, "H");
    atom.atom.name = name;
    atom.atom.alternate = line[kAlternateAt];
    if (line.size() >= kOccupancyAt + 4)
      atom.atom.occupancy = static_cast<float>(numberIn(field(line, kOccupancyAt, 6), 0));
    atom.atom.position = {coordinate(line, 0), coordinate(line, 1), coordinate(line, 2)};
    backbone.add(atom, "line " + std::to_string(lineNumber));
  }

  /// A plain decimal number, right or left in its columns; no number where the file says so ("nan").
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
  std::size_t chainPart = 0;  ///< of the model, from 1
};

}  // namespace

bool isPdb(std::string_view text) {
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
    for (const char* record : {"ATOM  ", "HETATM", "HEADER", "REMARK", "CRYST1", "MODEL ", "TITLE ", "EXPDTA",
                               "COMPND", "SEQRES", "OBSLTE", "SPLIT ", "CAVEAT"})
      if (startsIgnoringCase(*line, record)) return true;
    if (!trimmed(*line).empty()) return false;
  }
  return false;
}

Coordinates readPdbCoordinates(std::string_view text, const std::string& name) {
  return PdbReader(text, name).read();
}

}  // namespace zorvela
