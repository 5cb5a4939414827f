// What is said of a proline in plain words, and from which probability on.
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

/// What is said of one proline in plain words.
enum class Call { cis, trans, undecided, none };

/// "cis", "trans", "undecided" or "none".
std::string toText(Call call);

/// The call for a value of P_CIS_NORM; none if it is not a number.
Call callOf(float pCisNorm);

}  // namespace zorvela
