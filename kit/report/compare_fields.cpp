// What the reports of a comparison say of one proline.
#include "report/compare_fields.h"

namespace zorvela {

std::vector<ModelBond> bondsOf(const ComparedProline& proline) {
  std::vector<ModelBond> bonds;
  for (const BondSite& site : proline.sites) bonds.insert(bonds.end(), site.bonds.begin(), site.bonds.end());
  return bonds;
}

std::optional<double> meanCaToCa(const std::vector<ModelBond>& bonds) {
  double sum = 0;
  std::size_t count = 0;
  for (const ModelBond& bond : bonds) {
    if (!bond.caToCa) continue;
    sum += *bond.caToCa;
    ++count;
  }
  if (count == 0) return std::nullopt;
  return sum / static_cast<double>(count);
}

std::string joined(const std::vector<BondSite>& sites, const std::string BondSite::*value) {
  std::string text;
  for (std::size_t i = 0; i < sites.size(); ++i) text += (i > 0 ? ";" : "") + sites[i].*value;
  return text;
}

std::size_t countVerdicts(const CompareReport& report, Verdict verdict) {
  std::size_t count = 0;
  forEachCompared(report, [&](const ComparedProtein&, const ComparedProline& proline) {
    if (proline.verdict == verdict) ++count;
  });
  return count;
}

}  // namespace zorvela
