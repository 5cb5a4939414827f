#include "structure/coordinates.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "formats/limits.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr char kSeparator = '\0';  // no text file has it

/// Returns the part of a key, a new one if there is none.
template <class Part>
Part& partOf(std::vector<Part>& parts, const std::string& key,
             std::unordered_map<std::string, std::size_t>& places) {
  const auto [at, isNew] = places.emplace(key, parts.size());
  if (isNew) parts.emplace_back();
  return parts[at->second];
}

std::string textOf(const BackboneAtom& atom) {
  return printable("residue " + atom.residue + " " + atom.number + " of chain " + atom.chain);
}

bool isPlaced(const gemmi::Position& position) {
  return std::isfinite(position.x) && std::isfinite(position.y) && std::isfinite(position.z);
}

/// Tells whether the residue has the atom in the same conformation.
bool has(const BackboneResidue& residue, const PlacedAtom& atom) {
  return std::any_of(residue.atoms.begin(), residue.atoms.end(), [&atom](const PlacedAtom& other) {
    return other.name == atom.name && other.alternate == atom.alternate;
  });
}

}  // namespace

const PlacedAtom* BackboneResidue::find(std::string_view atom, char alternate) const {
  for (const PlacedAtom& own : atoms) {
    const bool isOfIt =
        alternate == kAnyAlternate || own.alternate == kNoAlternate || own.alternate == alternate;
    if (isOfIt && own.name == atom) return &own;
  }
  return nullptr;
}

bool isBackbone(std::string_view atom) {
  return atom == "N" || atom == "CA" || atom == "C";
}

BackboneBuilder::BackboneBuilder(std::string fileName, std::size_t bytes)
    : file(std::move(fileName)), residueLimit(limits::structureResidues(bytes)) {}

BackboneChain& BackboneBuilder::chainOf(const BackboneAtom& atom, const std::string& residueKey) {
  BackboneModel& model = partOf(models, atom.model, places);
  model.name = atom.model;
  checkLimit(models.size(), limits::kModels, file);
  const std::string part = atom.chain + kSeparator + atom.segment + kSeparator + atom.part + kSeparator;
  const std::string inModel = atom.model + kSeparator + part;
  Copy& copy = copies[inModel];
  if (copy.lastResidue != residueKey) {
    const std::string name = inModel + std::to_string(copy.number);
    if (const auto known = places.find(name + residueKey); known != places.end())
      if (has(model.chains[places.at(name)].residues[known->second], atom.atom)) ++copy.number;
  }
  copy.lastResidue = residueKey;
  const std::string number = std::to_string(copy.number);
  BackboneChain& chain = partOf(model.chains, inModel + number, places);
  chain.name = atom.chain;
  chain.segment = atom.segment;
  chain.key = part + number;
  return chain;
}

BackboneResidue& BackboneBuilder::residueOf(const BackboneAtom& atom) {
  const std::string residueKey = kSeparator + atom.number + kSeparator + atom.residue;
  BackboneChain& chain = chainOf(atom, residueKey);
  BackboneResidue& residue = partOf(chain.residues, atom.model + kSeparator + chain.key + residueKey, places);
  if (residue.atoms.empty()) {
    checkLimit(++residues, residueLimit, file);
    residue.name = atom.residue;
    residue.number = atom.number;
    residue.label = atom.label;
    residue.isHetero = atom.isHetero;
  }
  return residue;
}

void BackboneBuilder::add(const BackboneAtom& atom, const std::string& where) {
  const std::string which = textOf(atom);
  if (!isPlaced(atom.atom.position)) {
    if (lastUnusable != which) unusable.push_back(where.empty() ? which : which + ", " + where);
    lastUnusable = which;
    return;
  }
  BackboneResidue& residue = residueOf(atom);
  if (!has(residue, atom.atom))
    residue.atoms.push_back(atom.atom);
  else if (repeated.empty() || repeated.back() != which)
    repeated.push_back(which);
}

Coordinates BackboneBuilder::finished() {
  Coordinates coordinates;
  coordinates.models = std::move(models);
  addNote("atoms given twice; the first is used: ", repeated, coordinates.notes);
  addNote("coordinates that are not numbers; atoms not used: ", unusable, coordinates.notes);
  return coordinates;
}

}  // namespace zorvela
