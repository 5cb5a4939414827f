// The five reference tables that hold nothing of proteins with known prolines: published values alone.
#pragma once

#include <string>

#include "predict/tables.h"

namespace zorvela {

/// Paths of the published data, all CSV.
struct PublishedData {
  std::string neighbours;        ///< counts of residue types before and after cis and trans prolines
  std::string randomCoil;        ///< random-coil shifts (ppm)
  std::string neighbourEffects;  ///< effects of neighbours on them (ppm)
};

/// The file names of our data folder, in which they are beside the labels.
inline const PublishedData kUsualNames = {"proline_neighbour_counts.csv",
                                          "random_coil/nielsen_mulder_2018.csv",
                                          "random_coil/nielsen_mulder_2018_neighbours.csv"};

/// Fills empty paths with these names.
PublishedData besideLabels(PublishedData published, const std::string& labels);

/// All tables but limits and shifts. `pseudocount` is added to each count of neighbours, so that no
/// residue type is impossible. Error for a file that is malformed, lacks one of the 20 residue types
/// or has one twice.
ReferenceTables publishedTables(const PublishedData& data, int pseudocount);

}  // namespace zorvela
