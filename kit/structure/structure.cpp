// Any structure file as protein chains with the bonds before their prolines.
#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

#include "formats/foreign_text.h"
#include "formats/input_bytes.h"
#include "formats/star/star_document.h"
#include "names/nomenclature.h"
#include "structure/coordinates.h"
#include "structure/molecules.h"
#include "structure/peptide_bond.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/structure.h"

namespace zorvela {

namespace {

constexpr const char* kFormatRemedy = "give a structure in PDB or mmCIF format, plain or gzipped";

/// Tells whether a text belongs on the other side of a comparison.
bool holdsShifts(std::string_view text) {
  if (contains(text, "_atom_site.")) return false;
  return contains(text, "_Atom_chem_shift.") || contains(text, "_Chem_shift_value") ||
         contains(text, "_nef_chemical_shift.") || contains(text, "\nVARS ") ||
         contains(text, "\nDATA SEQUENCE");
}

Coordinates readCoordinates(std::string text, const std::string& name, std::string& format) {
  if (holdsShifts(text)) throw FileError(name, 0, "has shifts, not a structure", kFormatRemedy);
  if (isStar(text)) {
    format = "mmCIF";
    return readMmcifCoordinates(std::move(text), name);
  }
  if (!isPdb(text))
    throw FileError(name, 0, "is neither an mmCIF file nor a PDB file with atoms", kFormatRemedy);
  format = "PDB";
  return readPdbCoordinates(text, name);
}

// --- Chains ---------------------------------------------------------------------------------------

/// Of a residue with an atom CA.
float occupancy(const BackboneResidue& residue) {
  return residue.find("CA")->occupancy;
}

/// Of two residue types at one place the more occupied one.
Residues withoutAlternatives(const Molecule& molecule, std::vector<std::string>& notes) {
  Residues residues;
  for (const BackboneResidue* residue : molecule.residues) {
    if (residues.empty() || !equalIgnoringCase(residues.back()->number, residue->number)) {
      residues.push_back(residue);
      continue;
    }
    const BackboneResidue& other = *residues.back();
    notes.push_back(printable("chain " + molecule.name + ", residue " + residue->number + " is " +
                              other.name + " or " + residue->name + "; the more occupied one is used"));
    if (occupancy(*residue) > occupancy(other)) residues.back() = residue;
  }
  return residues;
}

/// Free amino acids are HETATM without a bond to their neighbours; modified residues of a chain have one.
Residues withoutLoose(const Residues& residues) {
  Residues kept;
  for (std::size_t i = 0; i < residues.size(); ++i) {
    const bool isBonded = (i > 0 && areBonded(*residues[i - 1], *residues[i])) ||
                          (i + 1 < residues.size() && areBonded(*residues[i], *residues[i + 1]));
    if (!residues[i]->isHetero || isBonded) kept.push_back(residues[i]);
  }
  return kept;
}

std::vector<Molecule> chainsOf(const BackboneModel& model, std::vector<std::string>& notes) {
  std::vector<Molecule> chains = moleculesOf(model);
  for (Molecule& chain : chains) chain.residues = withoutLoose(withoutAlternatives(chain, notes));
  return chains;
}

char letterOf(const BackboneResidue& residue) {
  return residueType(residue.name).letter;
}

std::string keyOf(const BackboneResidue& residue) {
  return residue.number + ' ' + residue.name;
}

/// The places of residues in a chain of the result.
struct Places {
  std::size_t chain = 0;
  std::unordered_map<std::string, std::size_t> byKey;
};
using PlacesByChain = std::unordered_map<std::string, Places>;

void addChain(const Molecule& placed, ProteinStructure& structure, PlacesByChain& byKey) {
  Places places;
  places.chain = structure.chains.size();
  StructureChain chain;
  chain.name = placed.name;
  chain.isTrace = true;
  for (std::size_t i = 0; i < placed.residues.size(); ++i) {
    const BackboneResidue& own = *placed.residues[i];
    const BackboneResidue* before = i > 0 ? placed.residues[i - 1] : nullptr;
    StructureResidue residue;
    residue.letter = letterOf(own);
    residue.name = own.name;
    residue.number = own.number;
    residue.label = own.label;
    residue.isAfterBreak = before != nullptr && !areBonded(*before, own);
    if (residue.letter == kProlineCode)
      residue.reason = before != nullptr ? whyNotBonded(*before, own) : "first residue of the chain";
    chain.isTrace = chain.isTrace && own.find("N") == nullptr && own.find("C") == nullptr;
    places.byKey.emplace(keyOf(own), i);
    chain.residues.push_back(std::move(residue));
  }
  byKey.emplace(placed.key, std::move(places));
  structure.chains.push_back(std::move(chain));
}

/// The residues of a chain are those of the model that has most of them, the first one among equals; what
/// only other models have is not used.
PlacesByChain addFullest(const std::vector<std::vector<Molecule>>& models, ProteinStructure& structure) {
  std::vector<const Molecule*> fullest;  // by chain, in the order of the file
  std::unordered_map<std::string, std::size_t> known;
  for (const std::vector<Molecule>& chains : models)
    for (const Molecule& chain : chains) {
      const auto [at, isNew] = known.emplace(chain.key, fullest.size());
      if (isNew) fullest.push_back(&chain);
      if (chain.residues.size() > fullest[at->second]->residues.size()) fullest[at->second] = &chain;
    }
  PlacesByChain places;
  for (const Molecule* chain : fullest)
    if (!chain->residues.empty()) addChain(*chain, structure, places);
  return places;
}

/// Adds the bonds before the prolines of a chain in one model.
void addBonds(const Molecule& chain, const std::string& model, const Places& places,
              std::vector<StructureResidue>& residues) {
  for (std::size_t i = 1; i < chain.residues.size(); ++i) {
    const BackboneResidue& own = *chain.residues[i];
    if (letterOf(own) != kProlineCode) continue;
    const auto place = places.byKey.find(keyOf(own));
    if (place == places.byKey.end()) continue;
    std::vector<ModelBond> bonds = peptideBonds(*chain.residues[i - 1], own);
    if (bonds.empty()) continue;
    StructureResidue& residue = residues[place->second];
    for (ModelBond& bond : bonds) bond.model = model;
    for (const ModelBond& bond : bonds)
      if (bond.state != bonds.front().state) residue.others.push_back(bond);
    residue.bonds.push_back(std::move(bonds.front()));
    residue.reason.clear();
  }
}

/// Numbers the chains that share a name, with a note.
void numberMolecules(ProteinStructure& structure) {
  std::map<std::string, std::vector<StructureChain*>> byName;
  for (StructureChain& chain : structure.chains) byName[chain.name].push_back(&chain);
  for (const auto& [name, chains] : byName) {
    if (chains.size() < 2) continue;
    std::vector<std::string> ranges;
    for (StructureChain* chain : chains) {
      chain->molecule = ranges.size() + 1;
      ranges.push_back(chain->residues.front().number + "-" + chain->residues.back().number);
    }
    structure.notes.push_back("chain " + (name.empty() ? "without a name" : printable(name)) + " holds " +
                              std::to_string(chains.size()) +
                              " molecules, each is compared: " + printable(enumerated(ranges)));
  }
}

/// Names the models in which a proline has no bond that others have. Bonds are in the order of the models.
void nameModelsWithout(const std::vector<BackboneModel>& models, StructureResidue& residue) {
  constexpr std::size_t kMostNamed = 12;
  std::vector<std::string> first;
  std::size_t with = 0;
  auto bond = residue.bonds.begin();
  for (const BackboneModel& model : models) {
    if (bond == residue.bonds.end() && first.size() == kMostNamed) break;
    const auto next = std::find_if(bond, residue.bonds.end(),
                                   [&](const ModelBond& other) { return other.model != model.name; });
    if (next != bond)
      ++with;
    else if (first.size() < kMostNamed)
      first.push_back(model.name);
    bond = next;
  }
  residue.modelsWithout = models.size() - with;
  residue.namesWithout = enumerated(first);
  if (residue.modelsWithout > first.size())
    residue.namesWithout += " and " + std::to_string(residue.modelsWithout - first.size()) + " more";
}

/// The chains of all models put together; notes are those of the first.
void addModels(const std::vector<BackboneModel>& models, ProteinStructure& structure) {
  std::vector<std::vector<Molecule>> chains;
  for (const BackboneModel& model : models) {
    std::vector<std::string> notes;
    chains.push_back(chainsOf(model, notes));
    if (structure.modelCount++ == 0) structure.notes = std::move(notes);
  }
  const PlacesByChain places = addFullest(chains, structure);
  for (std::size_t i = 0; i < models.size(); ++i)
    for (const Molecule& chain : chains[i])
      if (const auto known = places.find(chain.key); known != places.end())
        addBonds(chain, models[i].name, known->second, structure.chains[known->second.chain].residues);
  for (StructureChain& chain : structure.chains)
    for (StructureResidue& residue : chain.residues)
      if (!residue.bonds.empty()) nameModelsWithout(models, residue);
  numberMolecules(structure);
}

[[noreturn]] void throwWithoutProtein(const std::string& name, const Coordinates& coordinates) {
  if (!coordinates.notes.empty())
    throw FileError(name, 0, "no residue of a protein can be used: " + coordinates.notes.front(),
                    "give a file with coordinates");
  throw FileError(name, 0, "has no protein: no residue with an atom CA", "give the structure of the protein");
}

}  // namespace

bool holdsStructure(std::string_view text) {
  return !holdsShifts(text) && (contains(text, "_atom_site.") || isPdb(text));
}

std::string StructureChain::letters() const {
  std::string text;
  for (const StructureResidue& residue : residues) text += residue.letter;
  return text;
}

ProteinStructure readStructureFile(const std::string& path) {
  return readStructureBytes(unpacked(fileBytes(path), path), path);
}

ProteinStructure readStructureBytes(std::string bytes, const std::string& file) {
  refuseForeign(bytes, file, Wanted::structure, kFormatRemedy);
  dropByteOrderMark(bytes);
  if (trimmed(bytes).empty()) throw FileError(file, 0, "is empty", kFormatRemedy);
  ProteinStructure structure;
  structure.file = file;
  const Coordinates coordinates = readCoordinates(std::move(bytes), file, structure.format);
  addModels(coordinates.models, structure);
  if (structure.chains.empty()) throwWithoutProtein(file, coordinates);
  structure.notes.insert(structure.notes.begin(), coordinates.notes.begin(), coordinates.notes.end());
  return structure;
}

}  // namespace zorvela
