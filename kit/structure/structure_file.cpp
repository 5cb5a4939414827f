// Any structure file as protein chains with the bonds before their prolines.
#include <algorithm>
#include <unordered_map>
#include <utility>

#include "formats/input_bytes.h"
#include "names/nomenclature.h"
#include "structure/coordinates.h"
#include "structure/peptide_bond.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/structure.h"

namespace zorvela {

namespace {

constexpr const char* kFormatRemedy = "give a structure in PDB or mmCIF format, plain or gzipped";

// --- Telling the format ---------------------------------------------------------------------------

struct Signature {
  std::string_view start;
  const char* what;
};

constexpr Signature kForeignFiles[] = {
    {"PK\x03\x04", "a zip archive; unpack it first"},
    {"BZh", "packed with bzip2; unpack it first"},
    {"\xFD"
     "7zXZ",
     "packed with xz; unpack it first"},
    {"\x1F\x9D", "packed with compress; unpack it first"},
    {"%PDF", "a PDF file"},
    {"MMTF", "an MMTF file"},
    {"{", "a JSON file"},
    {"<", "an HTML or XML file, perhaps the error page of a web server"},
    {">", "a FASTA sequence"},
    {"@<TRIPOS>", "a MOL2 file"},
    {"\xFF\xFE", "text in UTF-16; save it as UTF-8"},
    {"\xFE\xFF", "text in UTF-16; save it as UTF-8"},
};

void checkForeign(std::string_view bytes, const std::string& name) {
  for (const Signature& signature : kForeignFiles)
    if (bytes.substr(0, signature.start.size()) == signature.start)
      throw FileError(name, 0, std::string("is no structure file but ") + signature.what, kFormatRemedy);
  if (bytes.find('\0') != std::string_view::npos) throw FileError(name, 0, "is no text file", kFormatRemedy);
}

/// Whether the first word outside comments begins a data block.
bool isCif(std::string_view text) {
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
    const std::string_view core = trimmed(*line);
    if (core.empty() || core.front() == '#') continue;
    return startsIgnoringCase(core, "data_");
  }
  return false;
}

/// Whether a text is of the kind that goes on the other side of a comparison.
bool holdsShifts(std::string_view text) {
  if (contains(text, "_atom_site.")) return false;
  return contains(text, "_Atom_chem_shift.") || contains(text, "_Chem_shift_value") ||
         contains(text, "_nef_chemical_shift.") || contains(text, "\nVARS ") ||
         contains(text, "\nDATA SEQUENCE");
}

Coordinates readCoordinates(const std::string& text, const std::string& name, std::string& format) {
  if (holdsShifts(text)) throw FileError(name, 0, "holds shifts and no structure", kFormatRemedy);
  if (isCif(text)) {
    format = "mmCIF";
    return readMmcifCoordinates(text, name);
  }
  if (!isPdb(text)) throw FileError(name, 0, "is neither a PDB nor an mmCIF file", kFormatRemedy);
  format = "PDB";
  return readPdbCoordinates(text, name);
}

// --- Chains ---------------------------------------------------------------------------------------

/// A residue of one model, with what its name stands for.
struct Placed {
  const gemmi::Residue* residue = nullptr;
  ResidueReading type;
  bool isFallback = false;  ///< unknown to the names, kept for its backbone
};

bool has(const gemmi::Residue& residue, const char* atom) {
  return residue.find_atom(atom, '*') != nullptr;
}

bool isAminoAcid(const gemmi::Residue& residue, const ResidueReading& type) {
  if (!has(residue, "CA")) return false;
  return type.letter != kUnknownResidue || (has(residue, "N") && has(residue, "C"));
}

float occupancy(const gemmi::Residue& residue) {
  const gemmi::Atom* ca = residue.find_atom("CA", '*');
  return ca != nullptr ? ca->occ : 0;
}

using ResiduesByChain = std::vector<std::pair<std::string, std::vector<Placed>>>;

/// The amino acids of each chain of a model, in the order of the file; of two residue types at one place the
/// more occupied one.
class ChainCollector {
 public:
  explicit ChainCollector(std::vector<std::string>& noteList) : notes(noteList) {}

  ResiduesByChain collect(const gemmi::Model& model) {
    ResiduesByChain chains;
    std::unordered_map<std::string, std::size_t> known;
    for (const gemmi::Chain& part : model.chains) {
      const auto at = known.emplace(part.name, chains.size());
      if (at.second) chains.emplace_back(part.name, std::vector<Placed>{});
      for (const gemmi::Residue& residue : part.residues)
        add(residue, part.name, chains[at.first->second].second);
    }
    for (auto& chain : chains) dropLoose(chain.second);
    return chains;
  }

 private:
  void add(const gemmi::Residue& residue, const std::string& chain, std::vector<Placed>& residues) {
    const ResidueReading type = residueType(residue.name);
    if (!isAminoAcid(residue, type)) return;
    const bool isAlternative = !residues.empty() && residues.back().residue->seqid == residue.seqid;
    if (!isAlternative) {
      residues.push_back({&residue, type});
      return;
    }
    Placed& other = residues.back();
    notes.push_back(printable("chain " + chain + ", residue " + residue.seqid.str() + " is " +
                              other.residue->name + " or " + residue.name +
                              "; the more occupied one is used"));
    if (occupancy(residue) > occupancy(*other.residue)) other = {&residue, type};
  }

  /// Free amino acids are HETATM without a bond to their neighbours; modified residues of a chain have one.
  static void dropLoose(std::vector<Placed>& residues) {
    std::vector<Placed> kept;
    for (std::size_t i = 0; i < residues.size(); ++i) {
      const gemmi::Residue& residue = *residues[i].residue;
      const bool isBonded = (i > 0 && areBonded(*residues[i - 1].residue, residue)) ||
                            (i + 1 < residues.size() && areBonded(residue, *residues[i + 1].residue));
      if (residue.het_flag != 'H' || isBonded) kept.push_back(residues[i]);
    }
    residues = std::move(kept);
  }

  std::vector<std::string>& notes;
};

std::string keyOf(const gemmi::Residue& residue) {
  return residue.seqid.str() + ' ' + residue.name;
}

/// The chains of all models put together. The residues of a chain are those of the model that has most of
/// them, the first one among equals; what only other models have is not used.
class StructureBuilder {
 public:
  explicit StructureBuilder(ProteinStructure& structure) : target(structure) {}

  void add(const std::vector<gemmi::Model>& models) {
    std::vector<ResiduesByChain> chainsOf;
    for (const gemmi::Model& model : models) {
      std::vector<std::string> notes;
      chainsOf.push_back(ChainCollector(notes).collect(model));
      if (model.chains.empty()) continue;
      if (target.modelCount == 0) target.notes = std::move(notes);
      ++target.modelCount;
    }
    addFullest(chainsOf);
    for (std::size_t i = 0; i < models.size(); ++i)
      for (const auto& [name, residues] : chainsOf[i]) addBonds(name, residues, models[i].name);
  }

 private:
  void addFullest(const std::vector<ResiduesByChain>& models) {
    std::vector<const ResiduesByChain::value_type*> fullest;  // by chain, in the order of the file
    std::unordered_map<std::string, std::size_t> known;
    for (const ResiduesByChain& chains : models)
      for (const auto& chain : chains) {
        const auto [at, isNew] = known.emplace(chain.first, fullest.size());
        if (isNew) fullest.push_back(&chain);
        if (chain.second.size() > fullest[at->second]->second.size()) fullest[at->second] = &chain;
      }
    for (const auto* chain : fullest)
      if (!chain->second.empty()) addChain(chain->first, chain->second);
  }

  void addChain(const std::string& name, const std::vector<Placed>& residues) {
    Places places;
    StructureChain chain;
    chain.name = name;
    chain.isTrace = true;
    for (std::size_t i = 0; i < residues.size(); ++i) {
      const Placed& placed = residues[i];
      StructureResidue residue;
      residue.letter = placed.type.letter;
      residue.name = placed.residue->name;
      residue.number = placed.residue->seqid.str();
      residue.isAfterBreak = i > 0 && !areBonded(*residues[i - 1].residue, *placed.residue);
      if (residue.letter == kProlineCode) residue.whyNoBond = whyNone(residues, i);
      chain.isTrace = chain.isTrace && !has(*placed.residue, "N") && !has(*placed.residue, "C");
      places.byKey.emplace(keyOf(*placed.residue), i);
      chain.residues.push_back(std::move(residue));
    }
    places.chain = target.chains.size();
    byName.emplace(name, std::move(places));
    target.chains.push_back(std::move(chain));
  }

  static std::string whyNone(const std::vector<Placed>& residues, std::size_t i) {
    if (i == 0) return "first residue of the chain";
    return whyNotBonded(*residues[i - 1].residue, *residues[i].residue);
  }

  void addBonds(const std::string& name, const std::vector<Placed>& residues, const std::string& model) {
    const auto known = byName.find(name);
    if (known == byName.end()) return;
    for (std::size_t i = 1; i < residues.size(); ++i) {
      if (residues[i].type.letter != kProlineCode) continue;
      const auto place = known->second.byKey.find(keyOf(*residues[i].residue));
      if (place == known->second.byKey.end()) continue;
      std::vector<ModelBond> bonds = peptideBonds(*residues[i - 1].residue, *residues[i].residue);
      if (bonds.empty()) continue;
      StructureResidue& residue = target.chains[known->second.chain].residues[place->second];
      for (ModelBond& bond : bonds) bond.model = model;
      for (std::size_t c = 1; c < bonds.size(); ++c)
        if (bonds[c].state != bonds.front().state) residue.others.push_back(bonds[c]);
      residue.bonds.push_back(std::move(bonds.front()));
      residue.whyNoBond.clear();
    }
  }

  struct Places {
    std::size_t chain = 0;
    std::unordered_map<std::string, std::size_t> byKey;
  };

  ProteinStructure& target;
  std::unordered_map<std::string, Places> byName;
};

[[noreturn]] void throwWithoutProtein(const std::string& name, const Coordinates& coordinates) {
  if (!coordinates.notes.empty())
    throw FileError(name, 0, "no residue of a protein can be used: " + coordinates.notes.front(),
                    "give a file with coordinates");
  throw FileError(name, 0, "has no protein: no residue with an atom CA", "give the structure of the protein");
}

}  // namespace

std::string StructureChain::letters() const {
  std::string text;
  for (const StructureResidue& residue : residues) text += residue.letter;
  return text;
}

ProteinStructure readStructureFile(const std::string& path) {
  return readStructureBytes(unpacked(fileBytes(path), path), path);
}

ProteinStructure readStructureBytes(std::string bytes, const std::string& file) {
  const std::string& name = file;
  checkForeign(bytes, name);
  if (bytes.rfind("\xEF\xBB\xBF", 0) == 0) bytes.erase(0, 3);
  if (trimmed(bytes).empty()) throw FileError(name, 0, "is empty", kFormatRemedy);
  ProteinStructure structure;
  structure.file = file;
  const Coordinates coordinates = readCoordinates(bytes, name, structure.format);
  StructureBuilder(structure).add(coordinates.structure.models);
  if (structure.chains.empty()) throwWithoutProtein(name, coordinates);
  structure.notes.insert(structure.notes.begin(), coordinates.notes.begin(), coordinates.notes.end());
  return structure;
}

}  // namespace zorvela
