// Walks through a report, in its order, and names what it has.
#pragma once

#include <optional>
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

/// Returns the verdict of the structures; nothing if there was no structure.
inline std::optional<Verdict> verdictOf(const ProlineResult& proline) {
  if (!proline.structure) return std::nullopt;
  return proline.structure->verdict;
}

/// Calls visit(file) for the files that failed.
template <class Visit>
void forEachError(const RunReport& report, Visit visit) {
  for (const FileReport& file : report.files)
    if (!file.error.empty()) visit(file);
}

/// Return the prolines with a call, or with a verdict of the structures: P31, P117, P201.
std::vector<std::string> namesOf(const ProteinResult& protein, Call call);
std::vector<std::string> namesOf(const ProteinResult& protein, Verdict verdict);

/// Returns "The structure disagrees: P117. It agrees: P11, P31."; empty if it does neither.
std::string structureSentence(const ProteinResult& protein);

/// The parts of an origin that a report needs.
struct Origin {
  bool withList = false;  ///< a chain comes with several shift lists
  std::string folder;     ///< of all files, with its slash; empty without one in common or with one file

  explicit Origin(const RunReport& report);
};

/// Returns "b.str, chain A, shift list 2", without the folder that all files share.
std::string chainName(const ProteinResult& protein, const Origin& origin);

}  // namespace zorvela
