// Shared by the NMR-STAR and NEF readers: chains found by name, sequences from one-letter text.
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

  /// Returns the index of the chain that was added under this name, `kNoChain` if there is none.
  std::size_t find(const std::string& name) const;
  /// Adds a chain under a name; `find` still gives an earlier one of that name. FileError for more copies
  /// than any real file has.
  std::size_t add(const std::string& name, FileChain chain);
  /// Returns the name of the file for messages.
  const std::string& file() const { return fileName; }
  /// Counts residues that are added to chains one by one; FileError for more than any real file has.
  void countResidues(std::size_t more);
  /// Reserves memory for more rows of a list; FileError for more than any real file has.
  void reserveRows(FileShiftList& list, std::size_t more);
  /// Counts the lists, each of which is read for each chain; FileError for more than any real file has.
  void countLists(std::size_t lists);
  /// Adds another name for a chain.
  void alias(const std::string& name, std::size_t chain) { index.emplace(name, chain); }
  /// Adds an end of a disulfide bond to a chain; FileError for more than any real file has.
  void addBondEnd(std::size_t chain, const std::string& key);

  std::vector<FileChain> chains;

 private:
  std::string fileName;
  std::unordered_map<std::string, std::size_t> index;
  FileWork* work;
  std::size_t residueCount = 0;
  std::size_t rowCount = 0;
};

/// Reads one-letter text as entries write it: white space is ignored, (MSE) is one residue, X is unknown.
/// Keys count from 1.
std::vector<FileResidue> residuesOfLetters(const std::string& text);

/// Reads the thiol state of all cysteines of a molecule in the terms of the BMRB ("all disulfide bound").
Thiol thiolOfWords(const std::string& words);

/// Tells whether a bond type or a pair of atoms is a disulfide bond.
bool isDisulfideBond(const std::string& type, const std::string& atom1, const std::string& atom2);

/// Reads a polymer type ("polypeptide(L)", "RNA"); `unknown` for any other text.
Polymer polymerOfWords(const std::string& words);

/// Reads the flag of a cis peptide bond: true for cis, false for trans, nothing where it is empty.
std::optional<bool> readFlag(std::string_view word);

/// Notes a paramagnetic centre or a state that is not folded, which make a prediction doubtful. `state` and
/// `paramagnetic` are as the file has them, or empty.
void noteCautions(const std::string& molecule, const std::string& state, const std::string& paramagnetic,
                  std::vector<std::string>& notes);

/// Lists the contents of an entry for messages: save frames by category, with their number.
std::vector<std::string> starContents(const StarEntry& entry);

/// Names the kind of an entry without shift lists for messages: coordinates, a restraint list ...; empty for
/// an entry with a shift list or of an unknown kind.
std::string foreignStar(const StarEntry& entry);

/// Makes the names of chains differ: a name of several chains gets the position of each chain after it.
void makeNamesDiffer(std::vector<FileChain>& chains);

/// Adds a list; FileError for more lists than any real file has. `name` is how messages name the file.
void addList(FileShiftList list, ShiftFile& file, const std::string& name);

/// Gives the file the chains that were found. Rows without a chain get the only polypeptide, or the one whose
/// sequence fits their residue names best; rows that fit two chains equally well get none. FileError for more
/// chains and lists than any real file has.
void settleChains(ChainFinder& finder, ShiftFile& file);

/// Numbers residues without a number in the sequence by their shift rows, or, where a whole chain has none,
/// by position in the polymer. A number that rows give to two residues stays with the first, with a note.
void numberByRows(std::vector<FileChain>& chains, const std::vector<FileShiftList>& lists,
                  std::vector<std::string>& notes);

}  // namespace zorvela
