// Which residue of a structure is which residue of a sequence.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "zorvela/structure.h"

namespace zorvela {

/// Place of a residue that the other side does not have.
inline constexpr std::size_t kNoResidue = static_cast<std::size_t>(-1);

/// A sequence and a structure chain, residue by residue.
struct ChainAlignment {
  std::vector<std::size_t> inStructure;  ///< for each residue of the sequence, its place in the chain
  std::size_t aligned = 0;               ///< pairs of two known residue types
  std::size_t identical = 0;             ///< of these, of the same type

  /// Identical pairs of all aligned ones, in percent; 0 without any.
  double identity() const;
};

/// The part of a chain that no alignment has used yet. A chain can hold several molecules whose numbers run
/// on: each is one piece or several, between the places where the chain is interrupted.
class ChainRest {
 public:
  explicit ChainRest(const StructureChain& chain);

  const StructureChain& chain() const { return *whole; }
  bool isWhole() const { return places.size() == whole->residues.size(); }
  bool isEmpty() const { return places.empty(); }
  /// The places of its residues in the chain, and their letters.
  const std::vector<std::size_t>& residues() const { return places; }
  std::string letters() const;
  /// Tells whether a piece begins with the residue at this place of the chain.
  bool isStart(std::size_t place) const { return place == 0 || whole->residues[place].isAfterBreak; }
  /// Removes the pieces of which an alignment has residues.
  void take(const ChainAlignment& alignment);

 private:
  const StructureChain* whole;
  std::vector<std::size_t> places;
};

/// Returns the global alignment of a sequence (one-letter codes; c is a cysteine, ? fits everything) with the
/// residues that the rest of a chain has; `inStructure` has places in the whole chain. A gap costs least
/// where the chain itself is interrupted. A piece of which next to nothing fits is another molecule, and is
/// not aligned. Time and memory are in proportion to the product of both lengths.
ChainAlignment align(const std::string& sequence, const ChainRest& rest);

/// Aligns the chains of one structure with sequences, as long as this is work in proportion to the structure.
class StructureAligner {
 public:
  /// `file` is how messages name it, with so many residues.
  StructureAligner(std::string file, std::size_t residues);
  explicit StructureAligner(const ProteinStructure& structure);
  /// Aligns as `align` does. Throws FileError that names the structure if the product of both lengths is
  /// above 15 million, or the work so far above 100 million pairs of residues and 4,000 for each residue of
  /// the structure: a capsid of 1,300 chains and fifteen entries of its protein are below.
  ChainAlignment align(const std::string& sequence, const ChainRest& rest);

 private:
  std::string file;
  std::size_t pairsLeft = 0;
};

}  // namespace zorvela
