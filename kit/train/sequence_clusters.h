// Proteins that share stretches of sequence, put together.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zorvela {

/// The distinct fragments of `length` residues of a sequence, ascending, for finding alike sequences fast; c
/// counts as C. Fragments with an unknown residue are left out.
std::vector<std::string> fragmentsOf(const std::string& sequence, std::size_t length);

/// The number of each sequence's cluster, from 1 in the order of first appearance.
///
/// Method: a sequence is the set of its fragments of five residues (c counts as C; fragments with an unknown
/// residue are left out). Two sequences belong together if they share at least 20 fragments that occur in no
/// more than 200 different sequences (as 24 identical residues in a row have them), or at least 5 that are a
/// tenth of the fragments of the shorter one. Clusters are all that is linked so, directly or through others.
/// Fragments in more than 200 sequences are purification tags and the like. Sequences without such fragments
/// are clusters of their own, unless they are equal.
std::vector<std::size_t> sequenceClusters(const std::vector<std::string>& sequences);

}  // namespace zorvela
