// Declarations as lines of text, each with a comment.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "restrain/restraints.h"

namespace zorvela {

/// The length of chain names for lines that name no chain and tell them apart all the same.
inline constexpr std::size_t kAnyChain = static_cast<std::size_t>(-1);

/// Need of lines for the name of a chain. `joined`: behind the residue number (81A), so it must be a letter.
enum class ChainName { optional, needed, joined };

/// Comment marks of a program, and limits of its lines.
struct Dialect {
  std::string program;
  std::string comment;                    ///< what begins a comment
  std::size_t longestChain = 0;           ///< characters of a chain name; 0: lines without a chain
  std::vector<std::string> remarks = {};  ///< what the user must know, what is not sure
  std::string commentEnd = {};            ///< what ends a comment, beside the line end
  std::string head = {};                  ///< before and after the declarations, if there is one
  std::string tail = {};
  ChainName chainName = ChainName::optional;
  bool takesCodes = false;  ///< insertion codes and numbers of any size
};

/// The lines that declare a bond, and why there are none or not all.
struct Declaration {
  std::string text;
  std::string omission;
};

/// A comment of its own line.
std::string commentLine(const Dialect& dialect, const std::string& text);

/// The remarks, and what is called cis: for the head of a text.
std::string commentsAtHead(const Dialect& dialect, const RestraintRequest& request);

/// Error for a chain that the program cannot name, or cannot tell from another. Only chains with a cis or
/// undecided proline count.
void checkChains(const Dialect& dialect, const RestraintRequest& request);

/// A comment and the lines of `declare` for each cis proline, the same as comments for undecided ones.
RestraintText declarations(const Dialect& dialect, const RestraintRequest& request,
                           const std::function<Declaration(const RestrainedBond&)>& declare);

/// Tells whether the bond is declared, be it as a comment.
bool isDeclared(const RestrainedBond& bond);

// --- Those with a file of their own --------------------------------------------------------------

RestraintText writeCyanaSequence(const RestraintRequest& request);
RestraintText writeNefRestraints(const RestraintRequest& request);
RestraintText writeAmber(const RestraintRequest& request);
RestraintText writeCispep(const RestraintRequest& request);
RestraintText writeMonProtCis(const RestraintRequest& request);

}  // namespace zorvela
