// Walks through a report, in its order.
#pragma once

#include <optional>

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

}  // namespace zorvela
