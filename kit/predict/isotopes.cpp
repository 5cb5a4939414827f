#include "predict/isotopes.h"

#include <algorithm>
#include <iterator>

#include "names/nomenclature.h"

namespace zorvela {

namespace {

// ppm for each deuteron (Venters et al. 1996, J. Mol. Biol. 264, 1101).
constexpr double kOneBond = -0.29;
constexpr double kTwoBonds = -0.13;
constexpr double kThreeBonds = -0.07;

/// Deuterons on the carbon itself, on its neighbours, and on theirs. Only carbons count as neighbours: the
/// published shift of CA in proline leaves out those on CD, which N joins to it.
struct Deuterons {
  int oneBond = 0;
  int twoBonds = 0;
  int threeBonds = 0;

  double shift() const { return kOneBond * oneBond + kTwoBonds * twoBonds + kThreeBonds * threeBonds; }
};

struct ResidueDeuterons {
  char type;
  Deuterons ca;
  Deuterons cb = {};
  Deuterons cg = {};
};

constexpr ResidueDeuterons kResidues[] = {{'A', {1, 3, 0}, {3, 1, 0}},
                                          {'C', {1, 2, 0}, {2, 1, 0}},
                                          {'D', {1, 2, 0}, {2, 1, 0}},
                                          {'E', {1, 2, 2}, {2, 3, 0}},
                                          {'F', {1, 2, 0}, {2, 1, 2}},
                                          {'G', {2, 0, 0}},
                                          {'H', {1, 2, 0}, {2, 1, 1}},
                                          {'I', {1, 1, 5}, {1, 6, 3}},
                                          {'K', {1, 2, 2}, {2, 3, 2}},
                                          {'L', {1, 2, 1}, {2, 2, 6}},
                                          {'M', {1, 2, 2}, {2, 3, 0}},
                                          {'N', {1, 2, 0}, {2, 1, 0}},
                                          {'P', {1, 2, 2}, {2, 3, 2}, {2, 4, 1}},
                                          {'Q', {1, 2, 2}, {2, 3, 0}},
                                          {'R', {1, 2, 2}, {2, 3, 2}},
                                          {'S', {1, 2, 0}, {2, 1, 0}},
                                          {'T', {1, 1, 3}, {1, 4, 0}},
                                          {'V', {1, 1, 6}, {1, 7, 0}},
                                          {'W', {1, 2, 0}, {2, 1, 1}},
                                          {'Y', {1, 2, 0}, {2, 1, 2}}};

}  // namespace

double isotopeShift(char type, Atom atom) {
  const char letter = isProline(type) ? kProlineCode : withoutThiolState(type);
  const auto* found = std::find_if(std::begin(kResidues), std::end(kResidues),
                                   [&](const ResidueDeuterons& residue) { return residue.type == letter; });
  if (found == std::end(kResidues)) return 0;
  if (atom == Atom::CA) return found->ca.shift();
  if (atom == Atom::CB) return found->cb.shift();
  return atom == Atom::CG ? found->cg.shift() : 0;
}

}  // namespace zorvela
