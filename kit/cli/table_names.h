// Names of the tables that are made from many files.
#pragma once

#include <string>
#include <vector>

#include "zorvela/protein.h"

namespace zorvela {

/// A name of an input, and the earlier one that had it first.
struct SharedName {
  std::string file;
  std::string name;
  std::string first;
};

/// The names of the tables of each input. An input has a name that depends on the list of inputs alone, and
/// all names of its tables are its own: what becomes of another input changes none of them.
class TableNames {
 public:
  explicit TableNames(const std::vector<std::string>& files);
  /// Returns the names for the proteins of one input: its name, with chain and list where there are several.
  std::vector<std::string> of(std::size_t input, const std::vector<Protein>& proteins) const;
  /// The inputs that were given another name than their file has.
  const std::vector<SharedName>& shared() const { return renamed; }

 private:
  bool isOthers(const std::string& name, const std::string& own) const;

  std::vector<std::string> names;  ///< of each input
  std::vector<std::string> keys;   ///< the same in small letters, sorted
  std::vector<SharedName> renamed;
};

}  // namespace zorvela
