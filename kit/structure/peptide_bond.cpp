// Omega of one peptide bond. Each alternate conformation is a chain of its own: atoms of A and B never mix.
#include "structure/peptide_bond.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <gemmi/calculate.hpp>  // for calculate_dihedral

#include "util/number.h"

namespace zorvela {

namespace {

constexpr double kDegrees = 180 / 3.14159265358979323846;

// Bonds of the backbone are 1.33 to 1.53 A long. Models before refinement are worse; atoms that were never
// placed sit on one point, or far away.
constexpr double kShortestBond = 0.9;
constexpr double kLongestBond = 2.01;

// CA - CA of ideal peptide bonds: 2.9 A at omega 0, 3.8 A at 180, 3.0 at 30 and 3.75 at 150.
constexpr double kShortestStep = 2.5;
constexpr double kCisStepUpTo = 3.2;
constexpr double kTransStepFrom = 3.55;
constexpr double kLongestStep = 4.3;

bool isBetween(double value, double least, double most) {
  return value >= least && value <= most;
}

/// The four atoms of omega in one conformation; nullptr for one that is not there.
struct BondAtoms {
  const PlacedAtom* caBefore;
  const PlacedAtom* c;
  const PlacedAtom* n;
  const PlacedAtom* ca;

  std::array<const PlacedAtom*, 4> all() const { return {caBefore, c, n, ca}; }
};

BondAtoms atomsOf(const BackboneResidue& before, const BackboneResidue& after, char conformation) {
  return {before.find("CA", conformation), before.find("C", conformation), after.find("N", conformation),
          after.find("CA", conformation)};
}

double distance(const PlacedAtom* a, const PlacedAtom* b) {
  return std::sqrt(a->position.dist_sq(b->position));
}

bool isBond(const PlacedAtom* a, const PlacedAtom* b) {
  return isBetween(distance(a, b), kShortestBond, kLongestBond);
}

/// A bond with the occupancy by which conformations are compared.
struct Candidate {
  ModelBond bond;
  float occupancy;
};

std::string conformationName(char conformation) {
  return conformation == kNoAlternate ? std::string() : std::string(1, conformation);
}

std::optional<Candidate> byOmega(const BondAtoms& atoms) {
  if (!isBond(atoms.caBefore, atoms.c) || !isBond(atoms.c, atoms.n) || !isBond(atoms.n, atoms.ca))
    return std::nullopt;
  Candidate candidate{{}, 0};
  candidate.bond.omega = kDegrees * gemmi::calculate_dihedral(atoms.caBefore->position, atoms.c->position,
                                                              atoms.n->position, atoms.ca->position);
  candidate.bond.state = stateOfOmega(*candidate.bond.omega);
  candidate.occupancy =
      std::min({atoms.caBefore->occupancy, atoms.c->occupancy, atoms.n->occupancy, atoms.ca->occupancy});
  return candidate;
}

std::optional<Candidate> byDistance(const BondAtoms& atoms) {
  if (atoms.c != nullptr && atoms.n != nullptr && !isBond(atoms.c, atoms.n)) return std::nullopt;
  const double step = distance(atoms.caBefore, atoms.ca);
  const std::optional<BondState> state = stateOfDistance(step);
  if (!state) return std::nullopt;
  Candidate candidate{{}, std::min(atoms.caBefore->occupancy, atoms.ca->occupancy)};
  candidate.bond.caToCa = step;
  candidate.bond.state = *state;
  return candidate;
}

std::optional<Candidate> bondIn(const BackboneResidue& before, const BackboneResidue& after,
                                char conformation) {
  const BondAtoms atoms = atomsOf(before, after, conformation);
  if (atoms.caBefore == nullptr || atoms.ca == nullptr) return std::nullopt;
  std::optional<Candidate> candidate =
      atoms.c != nullptr && atoms.n != nullptr ? byOmega(atoms) : byDistance(atoms);
  if (candidate) candidate->bond.conformation = conformationName(conformation);
  return candidate;
}

void addConformations(const BackboneResidue& residue, std::string& found) {
  for (const PlacedAtom& atom : residue.atoms)
    if (atom.alternate != kNoAlternate && found.find(atom.alternate) == std::string::npos)
      found += atom.alternate;
}

/// Returns the letters of the conformations of a bond; the one without a letter if there is only one.
std::string conformations(const BackboneResidue& before, const BackboneResidue& after) {
  std::string found;
  addConformations(before, found);
  addConformations(after, found);
  return found.empty() ? std::string(1, kNoAlternate) : found;
}

std::string lengthText(const std::string& what, double length) {
  return what + " " + fixedText(length, 1) + " A";
}

}  // namespace

BondState stateOfOmega(double omega) {
  const double size = std::fabs(omega);
  if (size <= kCisOmegaUpTo) return BondState::cis;
  return size >= kTransOmegaFrom ? BondState::trans : BondState::twisted;
}

std::optional<BondState> stateOfDistance(double step) {
  if (!isBetween(step, kShortestStep, kLongestStep)) return std::nullopt;
  if (step <= kCisStepUpTo) return BondState::cis;
  return step >= kTransStepFrom ? BondState::trans : BondState::twisted;
}

bool areBonded(const BackboneResidue& before, const BackboneResidue& after) {
  for (const char conformation : conformations(before, after)) {
    const BondAtoms atoms = atomsOf(before, after, conformation);
    if (atoms.c != nullptr && atoms.n != nullptr) {
      if (isBond(atoms.c, atoms.n)) return true;
    } else if (atoms.caBefore != nullptr && atoms.ca != nullptr &&
               stateOfDistance(distance(atoms.caBefore, atoms.ca))) {
      return true;
    }
  }
  return false;
}

std::vector<ModelBond> peptideBonds(const BackboneResidue& before, const BackboneResidue& after) {
  std::vector<Candidate> candidates;
  for (const char conformation : conformations(before, after))
    if (auto candidate = bondIn(before, after, conformation)) candidates.push_back(*candidate);
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const Candidate& a, const Candidate& b) { return a.occupancy > b.occupancy; });
  std::vector<ModelBond> bonds;
  for (Candidate& candidate : candidates) bonds.push_back(std::move(candidate.bond));
  return bonds;
}

std::string whyNotBonded(const BackboneResidue& before, const BackboneResidue& after) {
  const BondAtoms atoms = atomsOf(before, after, kAnyAlternate);
  const std::string start = "no bond to " + before.name + " " + before.number;
  if (atoms.c != nullptr && atoms.n != nullptr && !isBond(atoms.c, atoms.n))
    return start + ": " + lengthText("C - N", distance(atoms.c, atoms.n));
  if (atoms.caBefore == nullptr || atoms.ca == nullptr) return start + ": an atom CA is missing";
  return start + ": " + lengthText("CA - CA", distance(atoms.caBefore, atoms.ca));
}

}  // namespace zorvela
