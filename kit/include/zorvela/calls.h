// The call for a proline, and the probabilities from which it is made.
#pragma once

#include <string>

namespace zorvela {

/// A proline at least this likely (P_CIS_NORM) is called cis.
inline constexpr float kCisFrom = 0.5F;
/// A proline at most this likely (P_CIS_NORM) is called trans: 1 in 20 is cis before any shift is known,
/// so up to here the shifts speak against cis. Between the two bounds it is undecided.
inline constexpr float kTransUpTo = 0.05F;

/// The rule of the bench: CB - CG of the proline above this (ppm) is cis (Schubert et al. 2002,
/// J. Biomol. NMR 24, 149).
inline constexpr double kRuleCisAbove = 7.1;

/// The call for one proline.
enum class Call { cis, trans, undecided, none };

/// Returns "cis", "trans", "undecided" or "none".
std::string toText(Call call);

/// Returns the call for a value of P_CIS_NORM; none if it is not a number.
Call callOf(float pCisNorm);

}  // namespace zorvela
