// Residue numbers: the file's own beside the table's, which count from 1.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zorvela {

/// Returns the sentences that give the numbers: "Residue 1 here is residue 17 there", one for the first
/// residue and one for each whose number does not follow from the one before.
std::vector<std::string> numberingRemarks(const std::vector<std::string>& numbers);

/// Returns the numbers of `count` residues by the sentences among the remarks (anywhere in them, in any
/// case); 1, 2, 3 ... where no sentence says otherwise. `first` is the number "here" of the first residue.
std::vector<std::string> numbersFromRemarks(const std::vector<std::string>& remarks, int count, int first);

/// Tells whether a remark holds such a sentence.
bool hasNumbering(const std::string& remark);

/// Returns the remark with `offset` subtracted from the numbers "here".
std::string shiftedNumbering(const std::string& remark, std::int64_t offset);

/// Numbers the residues that have no number (empty), counting on from the neighbour before or, where that
/// number is taken, back from the next known one; 10A comes between 10 and 11. Known numbers stay. A chain
/// without any is numbered 1, 2, 3 ...
void completeNumbers(std::vector<std::string>& numbers);

}  // namespace zorvela
