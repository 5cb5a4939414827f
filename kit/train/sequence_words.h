// The words of a sequence: all its stretches of a few residues, for finding alike sequences fast.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zorvela {

/// The sequence with C for c: the state of a thiol does not tell proteins apart.
std::string withoutThiolState(std::string sequence);

/// The distinct words of `length` residues, ascending. Words with an unknown residue are left out.
std::vector<std::string> wordsOf(const std::string& sequence, std::size_t length);

}  // namespace zorvela
