// Walks through a report, in its order, and names what it has.
#pragma once

#include <string>
#include <vector>

#include "zorvela/report.h"

namespace zorvela {

/// Calls visit(protein).
template <class Visit>
void forEachProtein(const RunReport& report, Visit visit) {
  for (const FileReport& file : report.files)
    for (const ProteinResult& protein : file.proteins) visit(protein);
}

/// Calls visit(protein, proline).
template <class Visit>
void forEachProline(const RunReport& report, Visit visit) {
  forEachProtein(report, [&](const ProteinResult& protein) {
    for (const ProlineResult& proline : protein.prolines) visit(protein, proline);
  });
}

/// Counts the prolines for which holds(proline).
template <class Holds>
std::size_t countIf(const RunReport& report, Holds holds) {
  std::size_t count = 0;
  forEachProline(report, [&](const ProteinResult&, const ProlineResult& proline) {
    if (holds(proline)) ++count;
  });
  return count;
}

/// Tell whether a proline has this call, or this verdict of the structures.
inline bool is(const ProlineResult& proline, Call call) {
  return proline.call == call;
}
inline bool is(const ProlineResult& proline, Verdict verdict) {
  return proline.structure && proline.structure->verdict == verdict;
}

/// Returns the prolines with a call or a verdict: P31, P117, P201.
template <class What>
std::vector<std::string> namesOf(const ProteinResult& protein, What what) {
  std::vector<std::string> names;
  for (const ProlineResult& proline : protein.prolines)
    if (is(proline, what)) names.push_back("P" + proline.number);
  return names;
}

/// Returns "The structure disagrees: P117. It agrees: P11, P31."; empty if it does neither.
std::string structureSentence(const ProteinResult& protein);

/// The parts of an origin that a report needs.
struct Origin {
  bool withList = false;  ///< a chain comes with several shift lists
  std::string folder;     ///< of all files, with its slash; empty without one in common or with one file

  explicit Origin(const RunReport& report);
};

}  // namespace zorvela
