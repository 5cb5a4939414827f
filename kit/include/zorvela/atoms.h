// The atoms whose shifts are used.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace zorvela {

/// The atoms whose shifts are used. The six backbone atoms come first, in the order of shift indices.
enum class Atom : unsigned char { N, HA, C, CA, CB, HN, HA2, HA3, CG };
inline constexpr std::size_t kTableAtoms = 9;

/// Place of an atom in an array of values for atoms.
constexpr std::size_t indexOf(Atom atom) {
  return static_cast<std::size_t>(atom);
}
/// The atom's name in shift tables.
constexpr std::string_view nameOf(Atom atom) {
  constexpr std::array<std::string_view, kTableAtoms> names = {"N",  "HA",  "C",   "CA", "CB",
                                                          "HN", "HA2", "HA3", "CG"};
  return names[indexOf(atom)];
}
/// The atom of that name.
inline std::optional<Atom> atomNamed(std::string_view name) {
  for (std::size_t i = 0; i < kTableAtoms; ++i)
    if (nameOf(static_cast<Atom>(i)) == name) return static_cast<Atom>(i);
  return std::nullopt;
}

/// One-letter codes with rules of their own. A proline written as p is taken as a neighbour alone.
inline constexpr char kProlineCode = 'P';
inline constexpr char kPassedProlineCode = 'p';

constexpr bool isProline(char type) {
  return type == kProlineCode || type == kPassedProlineCode;
}

}  // namespace zorvela
