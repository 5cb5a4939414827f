// The seven reference tables, from published random-coil shifts and from proteins with known prolines.
#pragma once

#include <string>  // for std::string
#include <vector>  // for std::vector

#include "GDB.h"
#include "ZORVELA.h"
#include "labelled_prolines.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace kit {

/// Which deviation a shift gets for cis and for trans.
enum class Pooling {
  natural,  ///< one for both: the variances of the classes weighted 1 to 19, as in nature
  equal,    ///< one for both: the variances weighted equally
  none      ///< each class its own
};

/// What can be chosen in training. The values here are those of the tables that the program ships with;
/// doc/accuracy.md has the figures behind each.
struct TrainingChoices {
  double limitPercent = 2.0;  ///< secondary shifts are clipped below this percentile and above its mirror
  double trim = 4.0;  ///< values further from the median than this many robust deviations are left out
  Pooling pooling = Pooling::natural;
  double widenProline = 1.5;     ///< factor on the deviations of the proline's own shifts
  double widenNeighbours = 2.0;  ///< factor on the deviations of the neighbours' shifts
  int pseudocount = 1;           ///< added to each count of neighbours, so that no type is impossible
};

/// Paths of the published data.
struct PublishedData {
  std::string neighbours;        ///< counts of residue types before and after cis and trans prolines
  std::string randomCoil;        ///< random-coil shifts
  std::string neighbourEffects;  ///< what neighbours do to them
};

/// The seven tables.
struct ReferenceTables {
  GDB randomCoil;   ///< randcoil.tab
  GDB adjustments;  ///< rcadj.tab
  GDB previous;     ///< rcprev.tab
  GDB next;         ///< rcnext.tab
  GDB limits;       ///< sslimit.tab
  GDB shifts;       ///< Pro.cs.tab
  GDB sequence;     ///< Pro.seq.tab
};

/// Adds the options for `TrainingChoices` to a sub-command, and returns them.
std::vector<CLI::Option*> addTrainingOptions(CLI::App& command, TrainingChoices& choices);

/// The five tables that hold nothing of the proteins: all but limits and shifts. UserError for a file
/// that is malformed or lacks one of the 20 residue types.
ReferenceTables publishedTables(const PublishedData& data, const TrainingChoices& choices);

/// Fills in limits and shifts from the entries and labels that are marked as used. UserError if no cis,
/// or no trans, proline with enough shifts is among them.
void trainTables(ReferenceTables& tables, const LabelledProlines& data, const std::vector<bool>& useEntry,
                 const std::vector<bool>& useLabel, const TrainingChoices& choices);

/// Gives the tables to a run object, as if it had read them from files.
void useTables(const ReferenceTables& tables, ZORVELA& run);

/// Writes the seven files into a folder, which is made if it is not there.
void writeTables(ReferenceTables& tables, const std::string& folder);

}  // namespace kit
