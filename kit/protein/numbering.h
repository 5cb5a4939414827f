// Residue numbers: the file's own beside the table's, which count from 1.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zorvela {

/// Sentences that give the numbers: "Residue 1 here is residue 17 there", one for the first residue and
/// one for each whose number does not follow from the one before.
std::vector<std::string> numberingRemarks(const std::vector<std::string>& numbers);

/// The numbers of `count` residues by the sentences among the remarks (wherever they stand in them,
/// whatever their case); 1, 2, 3 ... where no sentence says otherwise. `first` is the number "here" of
/// the first residue.
std::vector<std::string> numbersFromRemarks(const std::vector<std::string>& remarks, int count, int first);

/// Whether a remark holds such a sentence.
bool hasNumbering(const std::string& remark);

/// The remark with `offset` subtracted from the numbers "here".
std::string shiftedNumbering(const std::string& remark, std::int64_t offset);

/// Numbers for residues that have none (empty), counted on from the neighbour before or, where that number
/// is taken, back from the next known one; between 10 and 11 stands 10A. Numbers that are known stay. 1, 2, 3
/// ... for a chain without any.
void completeNumbers(std::vector<std::string>& numbers);

}  // namespace zorvela
