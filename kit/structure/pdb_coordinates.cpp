// PDB text: its lines are checked here, where their numbers are known, and read by gemmi.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <new>
#include <optional>
#include <set>

#include <gemmi/pdb.hpp>  // for read_pdb_string

#include "structure/coordinates.h"
#include "structure/distinct_atoms.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

// Columns of an atom line, from 0, and their widths.
constexpr std::size_t kNameAt = 12;
constexpr std::size_t kResidueAt = 17;
constexpr std::size_t kChainAt = 20;
constexpr std::size_t kNumberAt = 22;
constexpr std::size_t kXAt = 30;
constexpr std::size_t kCoordinateWidth = 8;
constexpr std::size_t kCoordinatesEnd = 54;
// After the element stand charges, which many programs write in their own way.
constexpr std::size_t kChargeAt = 78;
constexpr std::size_t kShortestAtomLine = kCoordinatesEnd + 1;  // with the line end
// Each part of a chain costs a search among those before it. The largest assemblies have some hundred chains.
constexpr std::size_t kMostChainParts = 2000;
constexpr const char* kFetchAgain = "fetch the file again";

bool isAtomLine(std::string_view line) {
  return startsIgnoringCase(line, "ATOM") || startsIgnoringCase(line, "HETATM");
}

bool isBackbone(std::string_view name) {
  return name == "N" || name == "CA" || name == "C";
}

/// The coordinates as the format has them: plain decimal numbers, right or left in their columns.
enum class Fields { numbers, notNumbers, outOfPlace };

bool isNotANumberMark(std::string_view text) {
  const std::string word = lower(text);
  return contains(word, "nan") || contains(word, "inf") || contains(word, "*");
}

Fields coordinateFields(std::string_view line) {
  Fields result = Fields::numbers;
  for (std::size_t i = 0; i < 3; ++i) {
    const std::string_view field = trimmed(line.substr(kXAt + i * kCoordinateWidth, kCoordinateWidth));
    if (toDecimal(field)) continue;
    if (!isNotANumberMark(field)) return Fields::outOfPlace;
    result = Fields::notNumbers;
  }
  return result;
}

std::string residueOf(std::string_view line) {
  return printable("residue " + std::string(trimmed(line.substr(kResidueAt, 3))) + " " +
                   std::string(trimmed(line.substr(kNumberAt, 5))) + " of chain " +
                   std::string(trimmed(line.substr(kChainAt, 2))));
}

/// Copies the lines that gemmi is to read, each at its own line number, and leaves the others empty.
class PdbFilter {
 public:
  PdbFilter(const std::string& text, const std::string& file) : source(text), name(file) {}

  std::string filtered() {
    std::size_t pos = 0;
    while (const auto line = nextLine(source, pos)) {
      ++lineNumber;
      addLine(*line);
      result += '\n';
    }
    if (isModelOpen && modelsClosed > 0)
      throw FileError(name, lineNumber, "the file ends within a model", kFetchAgain);
    return std::move(result);
  }

  std::vector<std::string> notes() const {
    if (unusable.empty()) return {};
    return {"coordinates that are no numbers, atoms not used: " + enumerated(unusable)};
  }

 private:
  void addLine(std::string_view line) {
    if (isAtomLine(line))
      addAtom(line);
    else if (startsIgnoringCase(line, "TER"))
      result += "TER";
    else if (startsIgnoringCase(line, "ENDMDL"))
      closeModel();
    else if (startsIgnoringCase(line, "MODEL "))
      openModel(line);
    else if (trimmed(line.substr(0, 6)) == "END")
      result += "ENDMDL";  // some programs end each model of a series so
  }

  void addAtom(std::string_view line) {
    if (line.size() + 1 < kShortestAtomLine)
      throw FileError(name, lineNumber,
                      "the atom line is cut off after column " + std::to_string(line.size()), kFetchAgain);
    if (!isBackbone(trimmed(line.substr(kNameAt, 4)))) return;
    const Fields fields = coordinateFields(line);
    if (fields == Fields::outOfPlace)
      throw FileError(name, lineNumber,
                      "columns 31 to 54 do not hold three coordinates: \"" +
                          printable(line.substr(kXAt, kCoordinatesEnd - kXAt)) + "\"",
                      "give a file in the columns of the PDB format, or mmCIF");
    countChainParts(line);
    if (fields == Fields::notNumbers) {
      noteUnusable(line);
      return;
    }
    result += line.substr(0, kChargeAt);
  }

  void noteUnusable(std::string_view line) {
    const std::string residue = residueOf(line) + ", line " + std::to_string(lineNumber);
    const std::string which = residueOf(line);
    if (which != lastUnusable) unusable.push_back(residue);
    lastUnusable = which;
  }

  void countChainParts(std::string_view line) {
    const std::string_view chain = line.substr(kChainAt, 2);
    if (chain == lastChain) return;
    lastChain = chain;
    if (++chainParts > kMostChainParts)
      throw FileError(name, lineNumber,
                      "a model has more than " + std::to_string(kMostChainParts) + " chains",
                      "give the chains that have shifts");
  }

  void openModel(std::string_view line) {
    if (++modelsOpened > kMostModels)
      throw FileError(name, lineNumber, "the file has more than " + std::to_string(kMostModels) + " models",
                      "give a part of them");
    isModelOpen = true;
    startModel();
    // gemmi names models by these columns; a number that is given twice would end the reading.
    const auto given = toInteger(trimmed(line.substr(6, 12)));
    const int number = given && *given >= 0 && *given <= 9999 ? *given : static_cast<int>(modelsOpened);
    if (!modelNumbers.insert(number).second)
      throw FileError(name, lineNumber, "a second model has the number " + std::to_string(number),
                      "number the models 1, 2, 3 ...");
    std::string digits = std::to_string(number);
    result += "MODEL     " + std::string(4 - digits.size(), ' ') + digits;
  }

  void closeModel() {
    if (++modelsClosed > kMostModels)
      throw FileError(name, lineNumber, "the file has more than " + std::to_string(kMostModels) + " models",
                      "give a part of them");
    isModelOpen = false;
    startModel();
    result += "ENDMDL";
  }

  void startModel() {
    chainParts = 0;
    lastChain = {};
  }

  const std::string& source;
  const std::string& name;
  std::string result;
  std::size_t lineNumber = 0;
  std::size_t modelsOpened = 0;
  std::size_t modelsClosed = 0;
  bool isModelOpen = false;
  std::set<int> modelNumbers;
  std::size_t chainParts = 0;
  std::string_view lastChain;
  std::string lastUnusable;
  std::vector<std::string> unusable;
};

/// Of atoms that are given twice the first ones.
std::vector<std::string> dropRepeated(gemmi::Structure& structure) {
  DistinctAtoms distinct;
  for (gemmi::Model& model : structure.models)
    for (gemmi::Chain& chain : model.chains)
      for (gemmi::Residue& residue : chain.residues) {
        const std::vector<gemmi::Atom> atoms = std::move(residue.atoms);
        residue.atoms.clear();
        for (const gemmi::Atom& atom : atoms) distinct.add(atom, residue, chain.name);
      }
  return distinct.notes();
}

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

Coordinates readPdbCoordinates(const std::string& text, const std::string& name) {
  PdbFilter filter(text, name);
  Coordinates coordinates;
  const std::string filtered = filter.filtered();
  try {
    coordinates.structure = gemmi::read_pdb_string(filtered, name);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    throw FileError(name, 0, "cannot be read as a PDB file: " + printable(error.what()), kFetchAgain);
  }
  coordinates.notes = dropRepeated(coordinates.structure);
  for (std::string& note : filter.notes()) coordinates.notes.push_back(std::move(note));
  return coordinates;
}

}  // namespace zorvela
