// The groups of prolines for which figures are given: by what was measured, and by how sure the label is.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "train/evaluation.h"
#include "train/metrics.h"

namespace zorvela {

/// What is scored: the probability of the program, or the rule that CB - CG above a bound means cis.
enum class Method { program, rule };

/// Prolines that are scored together.
struct Group {
  std::string key;   ///< in JSON
  std::string name;  ///< in the table
  Method method = Method::program;
  std::function<bool(const Evaluated&)> holds;
};

/// All groups, in the order of the report; the first holds every proline.
std::vector<Group> groups();

/// The prolines of a group with what is scored of them.
std::vector<Scored> scored(const Evaluation& evaluation, const Group& group);

struct GroupFigures {
  Group group;
  Figures figures;
  FigureIntervals intervals;
};

/// The figures of all groups, with intervals from so many rounds of bootstrap over clusters (0: none). The
/// same evaluation gives the same figures.
std::vector<GroupFigures> allFigures(const Evaluation& evaluation, int rounds);

}  // namespace zorvela
