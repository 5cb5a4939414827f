// What NMR-STAR and NEF readers share: chains found by name, sequences from one-letter text.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "formats/shift_model.h"
#include "formats/star/star_document.h"

namespace zorvela {

/// The chains of a file, found by the names that rows use for them.
class ChainFinder {
 public:
  /// `name` is how messages name the file; `fileWork` is that of all its entries.
  ChainFinder(std::string name, FileWork& fileWork) : fileName(std::move(name)), work(&fileWork) {}

  /// Index of the chain that was added under this name, `kNoChain` if there is none.
  std::size_t find(const std::string& name) const;
  /// Adds a chain under a name; an earlier one of that name stays what `find` gives. FileError when the
  /// copies in a file are more than any real one has.
  std::size_t add(const std::string& name, FileChain chain);
  /// How messages name the file.
  const std::string& file() const { return fileName; }
  /// Counts residues that are added to chains one by one; FileError beyond what any real file has.
  void countResidues(std::size_t more);
  /// Adds room for more rows to a list; FileError beyond what any real file has.
  void reserveRows(FileShiftList& list, std::size_t more);
  /// FileError for more residues than any real file has.
  void checkResidues(std::size_t total) const;
  /// Counts the lists, of which each is worked on for each chain; FileError beyond what any real file has.
  void countLists(std::size_t lists);
  /// Another name for a chain.
  void alias(const std::string& name, std::size_t chain) { index.emplace(name, chain); }
  /// Adds an end of a disulfide bond to a chain; FileError beyond what any real file has.
  void addBondEnd(std::size_t chain, const std::string& key);

  std::vector<FileChain> chains;

 private:
  std::string fileName;
  std::unordered_map<std::string, std::size_t> index;
  FileWork* work;
  std::size_t residueCount = 0;
  std::size_t rowCount = 0;
};

/// Residues from one-letter text as entries write it: white space does not count, (MSE) is one residue,
/// X stays open. Keys count from 1.
std::vector<FileResidue> residuesOfLetters(const std::string& text);

/// Thiol state of all cysteines of a molecule from the words that BMRB has for it ("all disulfide bound").
Thiol thiolOfWords(const std::string& words);

/// Whether an atom pair, or the words for the bond type, make a disulfide bond.
bool isDisulfideBond(const std::string& type, const std::string& atom1, const std::string& atom2);

/// Polymer type from the words that files have for it ("polypeptide(L)", "RNA"); `unknown` for words
/// that leave it open.
Polymer polymerOfWords(const std::string& words);

/// What a flag of a cis peptide bond says: true for cis, false for trans, nothing where it is empty.
std::optional<bool> readFlag(std::string_view word);

/// Notes on what a molecule's own words say against a prediction: a paramagnetic centre, a state that is
/// not folded. `state` and `paramagnetic` as the file has them, empty where it is silent.
void noteCautions(const std::string& molecule, const std::string& state, const std::string& paramagnetic,
                  std::vector<std::string>& notes);

/// The name of the save frame or data block that a list stands in; empty for a block without a name.
std::string listName(const StarFrame& frame, std::vector<std::string>& notes);

/// What a document holds, for messages: save frames by category, with their number.
std::vector<std::string> starContents(const StarEntry& entry);

/// What a document without shift lists is instead, for messages: coordinates, a restraint list ...; empty for
/// one with a shift list, and where it is not known.
std::string foreignStar(const StarEntry& entry);

/// Makes the names of chains differ: a name that several have gets the place of the chain after it.
void makeNamesDiffer(std::vector<FileChain>& chains);

/// Adds a list; FileError where the file has more than any real one. `name` is how messages name the file.
void addList(FileShiftList list, ShiftFile& file, const std::string& name);

/// Gives the file the chains that were found. Rows without a chain go to the one polypeptide whose sequence
/// fits their residue names best; all chains without a sequence count as fitting, and rows that fit two
/// chains alike stay without. FileError for more chains and lists than any real file has.
void settleChains(ChainFinder& finder, ShiftFile& file);

/// Residues to which the sequence gives no number of their own take that of their shift rows; where a whole
/// chain has none, they take their place in the polymer. A number that rows give to two residues stays with
/// the first, with a note.
void numberByRows(std::vector<FileChain>& chains, const std::vector<FileShiftList>& lists,
                  std::vector<std::string>& notes);

}  // namespace zorvela
