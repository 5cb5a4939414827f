// mmCIF text: its atom table, of which the backbone rows are kept.
//
// gemmi's grammar reads the text. What it finds is taken row by row and not stored: a file may hold millions
// of words that nobody asks for.
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <unordered_map>

#include <gemmi/cif.hpp>   // for the grammar
#include <gemmi/numb.hpp>  // for as_number

#include "formats/star/loop_lines.h"
#include "formats/star/star_tokens.h"
#include "structure/coordinates.h"
#include "structure/distinct_atoms.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

namespace cif = gemmi::cif;

constexpr const char* kCategory = "_atom_site.";
constexpr const char* kRemedy = "give the mmCIF file of the entry as the archive has it";
constexpr const char* kMend = "mend the file there, or fetch it again";

struct WantedColumn {
  const char* name;
  const char* other;       // the column that stands for it where it is absent
  const char* substitute;  // value where both are absent; nullptr: one of them must be there
};

constexpr std::array<WantedColumn, 14> kColumns = {{{"group_PDB", nullptr, "ATOM"},
                                                    {"label_atom_id", "auth_atom_id", nullptr},
                                                    {"label_alt_id", nullptr, "."},
                                                    {"label_comp_id", "auth_comp_id", nullptr},
                                                    {"label_asym_id", "auth_asym_id", nullptr},
                                                    {"label_seq_id", nullptr, "."},
                                                    {"pdbx_PDB_ins_code", nullptr, "?"},
                                                    {"Cartn_x", nullptr, nullptr},
                                                    {"Cartn_y", nullptr, nullptr},
                                                    {"Cartn_z", nullptr, nullptr},
                                                    {"occupancy", nullptr, "1"},
                                                    {"auth_seq_id", nullptr, "."},
                                                    {"auth_asym_id", nullptr, "."},
                                                    {"pdbx_PDB_model_num", nullptr, "1"}}};
enum Column : std::size_t {
  kGroup,
  kAtom,
  kAlternate,
  kResidue,
  kAsym,
  kSeq,
  kCode,
  kX,
  kY,
  kZ,
  kOccupancy,
  kAuthSeq,
  kAuthAsym,
  kModel
};

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// A residue with one atom takes up to 1 kB of memory, of text at least some 15 bytes; in the archive's
// columns it is 70 or more.
constexpr std::size_t kResiduesOfAnyFile = 30000;
constexpr std::size_t kBytesPerResidue = 50;

constexpr std::size_t mostResidues(std::size_t bytes) {
  return kResiduesOfAnyFile + bytes / kBytesPerResidue;
}

bool isBackbone(const std::string& atom) {
  return atom == "N" || atom == "CA" || atom == "C";
}

/// Puts atoms into the models, chains and residues that they are of, in whatever order they come.
class BackboneBuilder {
 public:
  BackboneBuilder(const std::string& file, std::size_t bytes) : name(file), most(mostResidues(bytes)) {}

  /// The residue that an atom is of; without atoms where it is new.
  gemmi::Residue& residue(const std::string& model, const std::string& chain, const gemmi::ResidueId& id) {
    std::string key = model;
    gemmi::Model& itsModel = partOf(structure.models, model, key);
    if (structure.models.size() > kMostModels)
      throw FileError(name, 0, "has more than " + std::to_string(kMostModels) + " models",
                      "give a part of them");
    key += kSeparator + chain;
    gemmi::Chain& itsChain = partOf(itsModel.chains, chain, key);
    key += kSeparator + id.seqid.num.str() + id.seqid.icode + id.name;
    gemmi::Residue& itsResidue = partOf(itsChain.residues, id, key);
    if (itsResidue.atoms.empty() && ++count > most)
      throw FileError(name, 0, "has more than " + std::to_string(most) + " residues, too many for its size",
                      "give the models or chains that have shifts");
    return itsResidue;
  }

  gemmi::Structure finished() { return std::move(structure); }

 private:
  static constexpr char kSeparator = '\0';  // no text file has it

  /// The part that a key is of, a new one where there is none.
  template <class Part, class Id>
  Part& partOf(std::vector<Part>& parts, const Id& id, const std::string& key) {
    const auto [at, isNew] = places.emplace(key, parts.size());
    if (isNew) parts.emplace_back(id);
    return parts[at->second];
  }

  const std::string& name;
  const std::size_t most;
  gemmi::Structure structure;
  std::unordered_map<std::string, std::size_t> places;  // of each part among its like
  std::size_t count = 0;                                // of residues
};

/// Takes the rows of the atom table.
class AtomRows {
 public:
  AtomRows(const std::string& file, std::size_t bytes) : name(file), backbone(file, bytes) {}

  void setColumns(const std::vector<std::string_view>& tags) {
    for (std::size_t c = 0; c < kColumns.size(); ++c) {
      const WantedColumn& wanted = kColumns[c];
      columns[c] = columnOf(tags, wanted.name);
      if (columns[c] == kNone && wanted.other != nullptr) columns[c] = columnOf(tags, wanted.other);
      if (columns[c] == kNone && wanted.substitute == nullptr)
        throw FileError(name, 0, std::string("its table of atoms has no column ") + wanted.name, kRemedy);
    }
  }

  void add(const std::vector<std::string_view>& values) {
    row = &values;
    const std::string atom = text(kAtom);
    if (!isBackbone(atom)) return;
    gemmi::Atom placed;
    placed.name = atom;
    placed.altloc = cif::as_char(raw(kAlternate), '\0');
    placed.occ = static_cast<float>(cif::as_number(raw(kOccupancy), 1));
    placed.pos = {cif::as_number(raw(kX)), cif::as_number(raw(kY)), cif::as_number(raw(kZ))};
    if (!std::isfinite(placed.pos.x) || !std::isfinite(placed.pos.y) || !std::isfinite(placed.pos.z))
      noteUnusable();
    else
      place(placed);
  }

  Coordinates finished() {
    Coordinates coordinates;
    coordinates.structure = backbone.finished();
    coordinates.notes = distinct.notes();
    if (!unusable.empty())
      coordinates.notes.push_back("coordinates that are no numbers, atoms not used: " + enumerated(unusable));
    return coordinates;
  }

 private:
  static std::size_t columnOf(const std::vector<std::string_view>& tags, const char* column) {
    const std::string wanted = std::string(kCategory) + column;
    const auto at = std::find_if(tags.begin(), tags.end(),
                                 [&wanted](std::string_view tag) { return equalIgnoringCase(tag, wanted); });
    return at == tags.end() ? kNone : static_cast<std::size_t>(at - tags.begin());
  }

  /// A value as it stands in the file, with its quotes.
  std::string raw(Column column) const {
    return columns[column] == kNone ? kColumns[column].substitute : std::string((*row)[columns[column]]);
  }

  /// A value without its quotes; empty for ? and the like.
  std::string text(Column column) const { return cif::as_string(raw(column)); }

  std::string text(Column column, Column other) const {
    const std::string own = raw(column);
    return cif::is_null(own) ? text(other) : cif::as_string(own);
  }

  std::string chain() const { return text(kAuthAsym, kAsym); }

  std::string model() const {
    const std::string number = text(kModel);
    return number.empty() ? kColumns[kModel].substitute : number;
  }

  gemmi::ResidueId residue() const {
    gemmi::ResidueId id;
    id.name = text(kResidue);
    id.seqid.icode = cif::as_char(raw(kCode), ' ');
    std::string number = text(kAuthSeq, kSeq);
    // Old files write the insertion code with the number: 15A.
    if (!number.empty() && isLetter(number.back())) {
      if (id.seqid.icode == ' ') id.seqid.icode = number.back();
      number.pop_back();
    }
    if (const auto whole = toInteger(number)) id.seqid.num = *whole;
    return id;
  }

  void place(const gemmi::Atom& atom) {
    gemmi::Residue& itsResidue = backbone.residue(model(), chain(), residue());
    if (itsResidue.atoms.empty()) itsResidue.het_flag = upper(text(kGroup).substr(0, 1)) == "H" ? 'H' : 'A';
    distinct.add(atom, itsResidue, chain());
  }

  void noteUnusable() {
    const std::string which =
        printable("residue " + text(kResidue) + " " + text(kAuthSeq, kSeq) + " of chain " + chain());
    if (unusable.empty() || unusable.back() != which) unusable.push_back(which);
  }

  const std::string& name;
  std::array<std::size_t, kColumns.size()> columns{};
  const std::vector<std::string_view>* row = nullptr;
  BackboneBuilder backbone;
  DistinctAtoms distinct;
  std::vector<std::string> unusable;
};

/// Counts the values of each loop, and cuts those of the atom table into rows.
class LoopReader {
 public:
  LoopReader(const std::string& file, std::size_t bytes) : name(file), atoms(file, bytes) {}

  void begin() {
    tagCount = 0;
    valueCount = 0;
    isAtomTable = false;
    tags.clear();
    row.clear();
  }

  void addTag(std::string_view tag) {
    if (tagCount++ == 0) isAtomTable = startsIgnoringCase(tag, kCategory);
    if (isAtomTable) tags.push_back(tag);
  }

  void addValue(std::string_view value, std::size_t line) {
    if (valueCount++ == 0 && isAtomTable) beginAtoms();
    if (!isAtomTable) return;
    row.push_back(value);
    if (row.size() < tags.size()) return;
    if (!fault) addRow(line);
    row.clear();
  }

  bool isWhole() const { return valueCount % tagCount == 0; }

  Coordinates finished() {
    if (fault) throw FileError(*fault);
    if (!hasAtoms) throw FileError(name, 0, "has no atoms (_atom_site)", kRemedy);
    return atoms.finished();
  }

 private:
  void beginAtoms() {
    if (hasAtoms) throw FileError(name, 0, "has several tables of atoms", "give one structure in each file");
    hasAtoms = true;
    atoms.setColumns(tags);
  }

  // A value that is lost shifts all after it into other columns. Whether one is shows at the end of the loop
  // and says more than what the first of those columns has against it.
  void addRow(std::size_t line) {
    try {
      atoms.add(row);
    } catch (const FileError&) {
      throw;
    } catch (const std::runtime_error& error) {
      fault = FileError(name, line, "this atom cannot be read: " + printable(error.what()), kMend);
    }
  }

  const std::string& name;
  AtomRows atoms;
  std::optional<FileError> fault;
  std::vector<std::string_view> tags;  // of the atom table
  std::vector<std::string_view> row;
  std::size_t tagCount = 0;
  std::size_t valueCount = 0;
  bool isAtomTable = false;
  bool hasAtoms = false;
};

/// What the grammar calls for each piece of text that it has matched.
template <class Rule>
struct Action : tao::pegtl::nothing<Rule> {};

template <>
struct Action<cif::rules::str_loop> {
  template <class Input>
  static void apply(const Input&, LoopReader& reader) {
    reader.begin();
  }
};
template <>
struct Action<cif::rules::loop_tag> {
  template <class Input>
  static void apply(const Input& in, LoopReader& reader) {
    reader.addTag({in.begin(), in.size()});
  }
};
template <>
struct Action<cif::rules::loop_value> {
  template <class Input>
  static void apply(const Input& in, LoopReader& reader) {
    reader.addValue({in.begin(), in.size()}, in.iterator().line);
  }
};
constexpr const char* kNotWhole = "Wrong number of values in the loop";
template <>
struct Action<cif::rules::loop> {
  template <class Input>
  static void apply(const Input& in, LoopReader& reader) {
    if (!reader.isWhole()) throw tao::pegtl::parse_error(kNotWhole, in);
  }
};

// In a longer loop the line is not looked for: the places of its values would take more than the text.
constexpr std::size_t kMostPlaces = 5000000;

/// What is wrong with the loop at a place of the text.
FileError badLoop(const std::string& text, const std::string& name, std::size_t line, std::size_t place) {
  const std::size_t lineStart = place == 0 ? 0 : text.rfind('\n', place - 1) + 1;  // npos + 1 is 0
  StarTokens tokens(text);
  StarToken token = tokens.next();
  while (token.kind != StarToken::Kind::end &&
         (token.kind != StarToken::Kind::loop || token.begin < lineStart))
    token = tokens.next();
  std::size_t columns = 0;
  for (token = tokens.next(); token.kind == StarToken::Kind::tag; token = tokens.next()) ++columns;
  std::vector<std::size_t> begins;
  for (; token.kind == StarToken::Kind::value && begins.size() <= kMostPlaces; token = tokens.next())
    begins.push_back(token.begin);
  const auto odd = begins.size() > kMostPlaces
                       ? std::nullopt
                       : firstOddLine(text, begins, std::max<std::size_t>(columns, 1));
  const bool isCut = odd && token.kind == StarToken::Kind::end && tokens.lineOf(begins.back()) == odd->number;
  if (odd)
    return FileError(name, odd->number,
                     "this row has " + counted(odd->values, "value", "values") + " for " +
                         counted(columns, "column", "columns") +
                         (isCut ? ", and the file ends in its table" : ""),
                     kMend);
  return FileError(name, line, "the values of the table that begins here do not fill its rows", kMend);
}

}  // namespace

Coordinates readMmcifCoordinates(const std::string& text, const std::string& name) {
  LoopReader reader(name, text.size());
  tao::pegtl::memory_input<> input(text, name);
  // Repeated tags and frames are let pass: one in a part that is of no interest must not stop the reading.
  try {
    tao::pegtl::parse<cif::rules::file, Action, cif::Errors>(input, reader);
  } catch (const tao::pegtl::parse_error& error) {
    const auto& place = error.positions().front();
    if (contains(error.message(), kNotWhole)) throw badLoop(text, name, place.line, place.byte);
    throw FileError(name, place.line,
                    "not valid CIF: " + printable(error.message()) +
                        (place.byte >= text.size() ? " (the file ends too early)" : ""),
                    kMend);
  }
  return reader.finished();
}

}  // namespace zorvela
