#include "protein/deuteration.h"

#include <algorithm>
#include <string_view>

#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr std::string_view kStart = "Deuterated: ";
constexpr std::string_view kEnd = " % of the hydrogens on carbon";

/// The number of percent in the remark; empty in another one.
std::string_view percentIn(std::string_view remark) {
  const std::string_view text = trimmed(remark);
  const std::size_t end = text.find(kEnd);
  if (text.substr(0, kStart.size()) != kStart || end == std::string_view::npos) return {};
  return text.substr(kStart.size(), end - kStart.size());
}

}  // namespace

void setDeuteration(double share, Protein& protein) {
  std::vector<std::string>& remarks = protein.remarks;
  remarks.erase(std::remove_if(remarks.begin(), remarks.end(),
                               [](const std::string& remark) { return !percentIn(remark).empty(); }),
                remarks.end());
  protein.deuteration = share;
  if (share > 0) remarks.push_back(std::string(kStart) + fixedText(100 * share, 0) + std::string(kEnd));
}

double deuterationFromRemarks(const std::vector<std::string>& remarks) {
  for (const std::string& remark : remarks)
    if (const auto percent = toDecimal(percentIn(remark)))
      return std::clamp(std::stod(*percent) / 100, 0.0, 1.0);
  return 0;
}

}  // namespace zorvela
