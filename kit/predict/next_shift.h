// Finds the shifts that are worth measuring next.
//
// Before a shift is measured, the class densities of the tables give the expected values: under each class
// a normal density with the table's mean and deviation, mixed by the present probability of cis. For each
// value the model's own update (difference of the two exponents, after the value is brought into its limits)
// gives the log-odds afterwards. The expected gain is the entropy of the call now less its expectation over
// the mixture: with equal deviations, as in the tables that come with the program, the mutual information of
// shift and class. Shifts are taken as independent given the class, as the model takes them.
#pragma once

#include <vector>

#include "zorvela/evidence.h"

namespace zorvela {

/// A shift that could be measured.
struct MissingShift {
  int index = 0;
  ClassShift cis;
  ClassShift trans;
  float lowest = 0;  ///< limits into which its value would be brought (ppm)
  float highest = 0;
};

/// The entropy of a call with these log-odds (nats), in bits: 1 at even odds.
double entropy(double logOdds);

/// The expected gain of information (bits) at these log-odds (nats); 0 for a deviation that is not above
/// zero. Quadrature over each class, eight points to a deviation, six deviations to either side. Where the
/// two deviations differ the update is not Bayes' own and a gain can come out slightly negative.
double expectedGain(double logOdds, const MissingShift& shift);

/// The chance that the call is cis or trans, no longer undecided, once the shift is known.
double chanceToDecide(double logOdds, const MissingShift& shift);

/// All of them, the largest gain first; ties in the order of the triplet. `isUndecided`: with the chance to
/// decide. Nothing if the log-odds are not a finite number.
std::vector<NextShift> nextShifts(double logOdds, bool isUndecided, const std::vector<MissingShift>& missing);

}  // namespace zorvela
