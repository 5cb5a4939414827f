// The backbone atoms of a structure file as models, chains and residues.
//
// Only what omega needs is kept: the atoms N, CA and C of whatever residue. All else in a structure file
// (side chains, waters, cell, symmetry, history) is passed over, so that memory stays small and a fault in a
// part that nobody reads does not stop the reading.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <gemmi/unitcell.hpp>  // for gemmi::Position

#include "formats/limits.h"

namespace zorvela {

/// Letter of an atom that all conformations of its residue share, and letter for any conformation.
inline constexpr char kNoAlternate = ' ';
inline constexpr char kAnyAlternate = '*';

/// An atom of a residue.
struct PlacedAtom {
  std::string name;  ///< N, CA or C
  char alternate = kNoAlternate;
  float occupancy = 1;
  gemmi::Position position;
};

/// An atom as a line of a structure file gives it.
struct BackboneAtom {
  std::string model;
  std::string chain;
  std::string segment;  ///< SEGID: chains of one name and other segments are other molecules
  std::string part;     ///< of the chain, where the file has a sign between two of them, as TER
  std::string residue;  ///< name: PRO, HYP
  std::string number;   ///< with insertion code: 52A
  std::string label;    ///< the archive's own chain and number: "B 17"; empty where the file has none
  bool isHetero = false;
  PlacedAtom atom;
};

/// A residue of one model.
struct BackboneResidue {
  std::string name;
  std::string number;
  std::string label;
  bool isHetero = false;
  std::vector<PlacedAtom> atoms;

  /// The atom in a conformation; nullptr if there is none.
  const PlacedAtom* find(std::string_view atom, char alternate = kAnyAlternate) const;
};

/// A part of a chain of one model, its residues in the order of the file.
struct BackboneChain {
  std::string name;
  std::string segment;
  std::string key;  ///< the same in all models for the same part
  std::vector<BackboneResidue> residues;
};

/// A model with its chains.
struct BackboneModel {
  std::string name;
  std::vector<BackboneChain> chains;
};

/// The coordinates that were read, with notes on those that could not be used.
struct Coordinates {
  std::vector<BackboneModel> models;
  std::vector<std::string> notes;
};

/// Tells whether omega needs the atom of this name.
bool isBackbone(std::string_view atom);

/// Puts atoms into the models, chains and residues that they are of, in whatever order they come. A residue
/// that comes again after another one begins a copy of the chain.
class BackboneBuilder {
 public:
  /// `file` is the name in messages of a file of so many bytes.
  BackboneBuilder(std::string file, std::size_t bytes);

  /// Adds an atom. One that is given twice in a conformation is used once. One whose coordinates are not
  /// numbers is not used; `where` ("line 12") is its place in the file. Throws FileError for more models, or
  /// more residues, than a file of this size has.
  void add(const BackboneAtom& atom, const std::string& where = {});
  /// Returns the models, and a note for each kind of atoms that were not used.
  Coordinates finished();

 private:
  struct Copy {
    std::size_t number = 0;
    std::string lastResidue;
  };

  BackboneChain& chainOf(const BackboneAtom& atom, const std::string& residueKey);
  BackboneResidue& residueOf(const BackboneAtom& atom);

  std::string file;
  Limit residueLimit;
  std::size_t residues = 0;
  std::vector<BackboneModel> models;
  std::unordered_map<std::string, std::size_t> places;  ///< of each part among its like
  std::unordered_map<std::string, Copy> copies;         ///< of each part of a chain, the one that is read
  std::vector<std::string> repeated;
  std::vector<std::string> unusable;
  std::string lastUnusable;
};

/// Tells whether a line of a text is an atom record of a PDB file.
bool isPdb(std::string_view text);

/// Reads PDB text. FileError with the line for an atom line that is cut or whose coordinates are not in
/// their columns, and for a last model that is cut. `name` is how messages name the file.
Coordinates readPdbCoordinates(std::string_view text, const std::string& name);

/// Reads mmCIF text. FileError with the line for text that breaks the rules of CIF.
Coordinates readMmcifCoordinates(std::string text, const std::string& name);

}  // namespace zorvela
