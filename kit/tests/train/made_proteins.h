// Proteins made in memory for tests of training and evaluation: five residues, the proline in the middle.
#pragma once

#include <algorithm>
#include <string>

#include "train/labelled_prolines.h"
#include "zorvela/core.h"

namespace made {

constexpr int kProlinePosition = 3;
constexpr float kAbsent = 9999.0F;

struct Protein {
  std::string sequence;      ///< such as "GAPAG"; the window of the proline
  zorvela::Call label;       ///< by structure
  float secondary = 0;       ///< of all atoms of the three residues around the proline (ppm)
  float cg = kAbsent;        ///< CG of the proline (ppm)
  float cb = kAbsent;        ///< observed CB of the proline (ppm)
  std::string cluster = "";  ///< the protein's own where it is empty
};

/// N and HN of the proline are missing, and all shifts of the first and the last residue.
inline zorvela::EntryShifts entryOf(const Protein& protein) {
  zorvela::EntryShifts entry;
  for (std::size_t i = 0; i < protein.sequence.size(); ++i) {
    zorvela::Residue residue;
    residue.type = protein.sequence[i];
    zorvela::BackboneValues secondary{};
    const bool isEnd = i == 0 || i + 1 == protein.sequence.size();
    secondary.fill(isEnd ? kAbsent : protein.secondary);
    for (const zorvela::Atom atom : zorvela::kBackbone)
      if (!isEnd && !(residue.type == 'P' && zorvela::isAmide(atom))) residue.shift(atom) = 1;
    if (residue.type == 'G' && !isEnd)
      residue.shift(zorvela::Atom::HA2) = residue.shift(zorvela::Atom::HA3) = 1;
    if (residue.type == 'P') {
      secondary[0] = secondary[5] = kAbsent;
      residue.shift(zorvela::Atom::CB) = protein.cb;
      residue.shift(zorvela::Atom::CG) = protein.cg;
    }
    entry.residues.push_back(residue);
    entry.secondary.push_back(secondary);
  }
  return entry;
}

inline zorvela::LabelledProlines dataOf(const std::vector<Protein>& proteins) {
  zorvela::LabelledProlines data;
  data.path = "labels.csv";
  for (const Protein& protein : proteins) {
    zorvela::LabelledProline label;
    label.entry = data.entries.size();
    label.resid = kProlinePosition;
    label.structure = protein.label;
    label.window = protein.sequence;
    data.prolines.push_back(label);
    zorvela::EntryShifts entry = entryOf(protein);
    entry.name = "e" + std::to_string(data.entries.size() + 1);
    const std::string cluster = protein.cluster.empty() ? entry.name : protein.cluster;
    const auto known = std::find(data.clusters.begin(), data.clusters.end(), cluster);
    entry.cluster = static_cast<std::size_t>(known - data.clusters.begin());
    if (known == data.clusters.end()) data.clusters.push_back(cluster);
    data.entries.push_back(entry);
  }
  return data;
}

/// A model as of published tables: alanine, glycine and proline, all neighbours as likely beside cis as
/// beside trans.
inline zorvela::Model publishedModel() {
  zorvela::Model model;
  model.type('A').randomCoil = {124, 4.3F, 178, 52, 19, 8.2F};
  model.type('G').randomCoil = {109, 4, 174, 45, kAbsent, 8.3F};
  model.type('P').randomCoil = {136, 4.4F, 177, 63, 32, kAbsent};
  for (const char type : {'A', 'C', 'G', 'P'}) {
    zorvela::ReferenceValues& values = model.type(type);
    values.cisBefore = values.cisAfter = values.transBefore = values.transAfter = 0.05F;
  }
  return model;
}

}  // namespace made
