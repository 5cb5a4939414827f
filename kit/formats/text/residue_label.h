// Residues as people label them in tables: "12", "G12", "Gly-12", "82P", "82 PRO", "S81CA", "Alanine",
// "A:SER81".
#pragma once

#include <optional>
#include <string>
#include <unordered_map>

namespace zorvela {

/// What a cell says of a residue; empty is what it does not say.
struct ResidueLabel {
  std::string chain;  ///< one letter or digit
  std::string number;
  std::string code;      ///< one letter right after a number: insertion code, or the name ("82P")
  std::string name;      ///< as the cell writes it
  std::string atom;      ///< of an assignment ("CA" in "S81CA")
  bool hasDash = false;  ///< "-" between name and number, which may be a minus sign; it is not in `number`
};

/// Reads the cell. Nothing where it is none of the forms above or has more in it, as "((resid" or "126.962".
/// With `holdsAtom`, what follows the number is an atom name.
std::optional<ResidueLabel> readLabel(const std::string& cell, bool holdsAtom = false);

/// What the "-" of labels such as "G-2" is in a table.
enum class Dash { separator, minus, unclear };

/// Finds out by all labels of a table: it is a sign where the numbers then ascend and no number has two
/// names, and do not so otherwise.
class DashMeaning {
 public:
  void add(const std::string& chain, const ResidueLabel& label);
  Dash meaning() const;

 private:
  /// The numbers of a table, read in one of the two ways.
  struct Reading {
    struct Chain {
      std::unordered_map<int, std::string> names;
      int last = 0;
    };
    std::unordered_map<std::string, Chain> chains;
    bool ascends = true;
    bool isUnique = true;

    void add(const std::string& chain, int number, const std::string& name);
    bool fits() const { return ascends && isUnique; }
  };

  Reading asSeparator;
  Reading asMinus;
  bool areAllDashed = true;
  bool isAnyDashed = false;
};

}  // namespace zorvela
