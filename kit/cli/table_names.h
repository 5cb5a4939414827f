// Names of the tables that are made from many files.
#pragma once

#include <string>
#include <vector>

#include "zorvela/protein.h"

namespace zorvela {

/// The names of the tables of each input. An input has a name that depends on the list of inputs alone, and
/// all names of its tables are its own: what becomes of another input changes none of them.
class TableNames {
 public:
  explicit TableNames(const std::vector<std::string>& files);
  /// Returns the names for the proteins of one input: its name, with chain and list where there are several.
  std::vector<std::string> of(std::size_t input, const std::vector<Protein>& proteins) const;
  /// Notes on the inputs that were given another name than their file has.
  const std::vector<std::string>& notes() const { return renamed; }

 private:
  bool isOthers(const std::string& name, const std::string& own) const;

  std::vector<std::string> names;  ///< of each input
  std::vector<std::string> keys;   ///< the same in small letters, sorted
  std::vector<std::string> renamed;
};

}  // namespace zorvela
