// How the molecules of an entry are labelled with isotopes in its samples.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace zorvela {

/// An isotopic labelling, such as "[U-13C; U-15N; U-80% 2H]".
struct Labelling {
  bool hasCarbon = false;     ///< 13C, without which there are no shifts of carbon
  double deuteration = 0;     ///< share of the hydrogens on carbon that are deuterons, 0 to 1
  bool hasMoreWords = false;  ///< of deuterated molecules: residues or groups are named, as in "1HD-Ile"
};
Labelling labellingOf(std::string_view words);

/// A molecule in a sample. Molecules are named as the reader of the file names them.
struct LabelledMolecule {
  std::string molecule;
  std::set<std::string> samples;  ///< names of the sample: its number, and that of its save frame
  std::string words;
  Labelling labelling;
};

/// Returns the share of deuterons of each molecule that has some in these samples, or in all samples where
/// none is named. Where samples that give carbon shifts differ, the molecule gets no share, and there is a
/// note.
std::map<std::string, double> deuterationOf(const std::vector<LabelledMolecule>& molecules,
                                            const std::set<std::string>& samples, const std::string& list,
                                            std::vector<std::string>& notes);

}  // namespace zorvela
