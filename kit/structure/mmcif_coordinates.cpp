// mmCIF text: its atom table, of which the backbone rows are kept.
#include <cmath>
#include <vector>

#include <gemmi/numb.hpp>  // for as_number

#include "formats/star/star_document.h"
#include "formats/star/star_tokens.h"
#include "structure/coordinates.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kRemedy = "give the mmCIF file of the entry as the archive has it";

std::vector<StarTable> atomTables(const std::shared_ptr<const StarFile>& file) {
  std::vector<StarTable> tables;
  for (const StarFrame& frame : framesOf({file, 0, file->frames.size(), {}}))
    for (const StarTable& table : tablesOf(frame, "_atom_site.")) tables.push_back(table);
  return tables;
}

/// A residue number with its insertion code, which old files write with the number: 15A.
std::string numberOf(std::string number, char code) {
  if (!number.empty() && isLetter(number.back())) {
    if (code == kNoAlternate) code = number.back();
    number.pop_back();
  }
  const auto whole = toInteger(number);
  std::string result = whole ? std::to_string(*whole) : "?";
  if (code != ' ') result += code;
  return result;
}

double numberIn(const std::string& text, double none) {
  return text.empty() ? none : gemmi::cif::as_number(text, none);
}

/// The atom table of a file, and the columns that are read.
class AtomTable {
 public:
  AtomTable(const StarTable& atoms, const std::string& name) : file(name), table(atoms) {}

  Coordinates read(std::size_t bytes) {
    BackboneBuilder backbone(file, bytes);
    for (std::size_t row = 0; row < table.rows(); ++row)
      if (const std::string name = atom.text(row); isBackbone(name)) backbone.add(atomOf(name, row));
    Coordinates coordinates = backbone.finished();
    coordinates.notes.insert(coordinates.notes.end(), notes.begin(), notes.end());
    return coordinates;
  }

 private:
  StarColumn column(const std::string& name, const std::string& other = {}) const {
    return table.column("_atom_site." + name, other.empty() ? other : "_atom_site." + other);
  }
  StarColumn required(const std::string& name, const std::string& other = {}) const {
    if (!table.has("_atom_site." + name) && (other.empty() || !table.has("_atom_site." + other)))
      throw FileError(file, 0, "its table of atoms has no column " + name, kRemedy);
    return column(name, other);
  }

  /// A letter; a blank where the file has none.
  char letter(const StarColumn& letters, std::size_t row) const {
    const std::string text = letters.text(row);
    if (text.size() > 1)
      throw FileError(file, table.lineOf(row),
                      "this atom cannot be read: Not a single character: " + printable(text), kStarRemedy);
    return text.empty() ? kNoAlternate : text.front();
  }

  BackboneAtom atomOf(const std::string& name, std::size_t row) {
    BackboneAtom found;
    const std::string ofModel = nameOf(model.text(row), notes);
    found.model = ofModel.empty() ? "1" : ofModel;
    found.chain = nameOf(authorChain.text(row), notes);
    found.part = nameOf(chain.text(row), notes);
    found.residue = nameOf(residue.text(row), notes);
    found.number = numberOf(authorNumber.word(row), letter(code, row));
    if (const std::string own = number.word(row); !own.empty()) found.label = found.part + ' ' + own;
    found.isHetero = startsIgnoringCase(group.word(row), "H");
    found.atom.name = name;
    found.atom.alternate = letter(alternate, row);
    found.atom.occupancy = static_cast<float>(numberIn(occupancy.word(row), 1));
    found.atom.position = {numberIn(x.word(row), NAN), numberIn(y.word(row), NAN),
                           numberIn(z.word(row), NAN)};
    return found;
  }

  const std::string& file;
  const StarTable& table;
  std::vector<std::string> notes;
  StarColumn atom = required("label_atom_id", "auth_atom_id");
  StarColumn residue = required("label_comp_id", "auth_comp_id");
  StarColumn chain = required("label_asym_id", "auth_asym_id");
  StarColumn x = required("Cartn_x");
  StarColumn y = required("Cartn_y");
  StarColumn z = required("Cartn_z");
  StarColumn authorChain = column("auth_asym_id", "label_asym_id");
  StarColumn number = column("label_seq_id");
  StarColumn authorNumber = column("auth_seq_id", "label_seq_id");
  StarColumn code = column("pdbx_PDB_ins_code");
  StarColumn alternate = column("label_alt_id");
  StarColumn group = column("group_PDB");
  StarColumn occupancy = column("occupancy");
  StarColumn model = column("pdbx_PDB_model_num");
};

}  // namespace

Coordinates readMmcifCoordinates(std::string text, const std::string& name) {
  const std::size_t bytes = text.size();
  const auto file = parseStar(std::move(text), name, StarRules::cif);
  const std::vector<StarTable> tables = atomTables(file);
  if (tables.empty()) throw FileError(name, 0, "has no atoms (_atom_site)", kRemedy);
  if (tables.size() > 1)
    throw FileError(name, 0, "has several tables of atoms", "give one structure in each file");
  return AtomTable(tables.front(), name).read(bytes);
}

}  // namespace zorvela
