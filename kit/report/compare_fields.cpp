// What the reports of a comparison say of one proline.
#include "report/compare_fields.h"

namespace zorvela {

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
