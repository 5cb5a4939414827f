// Measures how well shifts without residue names tell the right sequence and numbers from wrong ones.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace zorvela {

/// Writes, for all atoms of the table and for fewer, how many of the shift tables have fewest conflicts at
/// their own numbers, and what share of residues is in conflict there, at the best wrong number and with the
/// sequence of a table half the list away.
void writeSequenceFits(std::ostream& out, const std::vector<std::string>& tables);

}  // namespace zorvela
