// What a shift table keeps in remarks: the file's residue numbers beside the table's, which count from 1, and
// the deuteration.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "zorvela/protein.h"

namespace zorvela {

/// Adds the sentences that give the numbers to the remarks: "Residue 1 here is residue 17 there", one for the
/// first residue and one for each whose number does not follow from the one before.
void addNumbering(Protein& protein);

/// Returns the numbers of `count` residues by the sentences among the remarks (anywhere in them, in any
/// case); 1, 2, 3 ... where no sentence says otherwise. `first` is the number "here" of the first residue.
std::vector<std::string> numbersFromRemarks(const std::vector<std::string>& remarks, int count, int first);

/// Tells whether a remark holds such a sentence.
bool hasNumbering(const std::string& remark);

/// Returns the remark with `offset` subtracted from the numbers "here".
std::string shiftedNumbering(const std::string& remark, std::int64_t offset);

/// Sets the share of deuterons (0 to 1) and the remark that states it; 0 removes the remark.
void setDeuteration(double share, Protein& protein);

/// Returns the share that such a remark states; 0 without one.
double deuterationFromRemarks(const std::vector<std::string>& remarks);

}  // namespace zorvela
