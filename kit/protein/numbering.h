// Residue numbers: the file's own beside the table's, which count from 1.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zorvela {

/// A residue number as structures use it: a whole number and perhaps an insertion code, as in 52A.
struct ResidueNumber {
  int number = 0;
  std::string code;  ///< what stands behind the number; empty in most
};

/// Reads "12", "-3", "52A", "007". Nothing for a text that begins with no number, or has a blank in it.
std::optional<ResidueNumber> readResidueNumber(const std::string& text);

/// The number behind a plain one: "13" for "12". Nothing for a number with a code or out of range.
std::optional<std::string> nextNumber(const std::string& text);

/// Sentences that tell the numbers: "Residue 1 here is residue 17 there", one for the first residue and
/// one for each whose number does not follow from the one before.
std::vector<std::string> numberingRemarks(const std::vector<std::string>& numbers);

/// The numbers of `count` residues by the sentences among the remarks (wherever they stand in them,
/// whatever their case); 1, 2, 3 ... where no sentence tells otherwise. `first` is the number "here" of
/// the first residue.
std::vector<std::string> numbersFromRemarks(const std::vector<std::string>& remarks, int count, int first);

/// Whether a remark holds such a sentence.
bool hasNumbering(const std::string& remark);

/// The remark with `offset` subtracted from the numbers "here".
std::string shiftedNumbering(const std::string& remark, long offset);

/// Numbers for residues that have none (empty), counted on from the nearest known neighbour, unless
/// another residue has that number already; such residues and those of a chain without any number get
/// their place in the chain.
void completeNumbers(std::vector<std::string>& numbers);

}  // namespace zorvela
