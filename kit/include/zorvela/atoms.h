// The atoms whose shifts a shift table holds.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zorvela {

/// In the order of the table. HN is the amide proton; HA2 and HA3 are those of glycine, CG that of proline.
enum class TableAtom : std::uint8_t { N, HN, HA, HA2, HA3, C, CA, CB, CG };

/// Their names in the table, by `TableAtom`.
inline constexpr std::array<std::string_view, 9> kTableAtoms = {"N", "HN", "HA", "HA2", "HA3",
                                                                "C", "CA", "CB", "CG"};

/// Gives the name in the table.
constexpr std::string_view nameOf(TableAtom atom) {
  return kTableAtoms[static_cast<std::size_t>(atom)];
}

}  // namespace zorvela
