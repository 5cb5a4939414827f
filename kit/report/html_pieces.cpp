#include "report/html_pieces.h"

#include <algorithm>
#include <cmath>

#include "report/svg.h"
#include "util/number.h"

namespace zorvela {

namespace {

/// A smaller probability would be printed as 0.000, and one as near to 1 as 1.000.
constexpr double kSmallest = 0.0005;
/// Contributions (nats) that would be printed as 0.0 have no bar.
constexpr double kNothing = 0.05;

std::string percent(double p) {
  return (p >= 1 - kSmallest ? "> 99.9" : fixedText(p * 100, 1)) + "\u00a0%";
}

}  // namespace

std::string classed(const std::string& cssClass) {
  return cssClass.empty() ? "" : " class=\"" + cssClass + "\"";
}

std::string paragraph(const std::string& text, const std::string& cssClass) {
  return "<p" + classed(cssClass) + ">" + escaped(text) + "</p>\n";
}

std::string bulletList(const std::vector<std::string>& items) {
  std::string list = "<ul>\n";
  for (const std::string& item : items) list += "<li>" + escaped(item) + "</li>\n";
  return list + "</ul>\n";
}

std::string fold(const std::string& title, const std::string& content) {
  return "<details><summary>" + title + "</summary>\n" + content + "</details>\n";
}

std::string htmlTable(const std::string& label, const Cells& titles, const Cells& classes,
                      const std::vector<Cells>& rows, const std::string& cssClass) {
  std::string text = R"(<div class="wide" tabindex="0" role="region" aria-label=")" + escaped(label) +
                     "\"><table" + classed(cssClass) + "><thead><tr>";
  for (std::size_t i = 0; i < titles.size(); ++i)
    text += "<th scope=\"col\"" + classed(classes[i]) + ">" + titles[i] + "</th>";
  text += "</tr></thead>\n<tbody>\n";
  for (const Cells& row : rows) {
    text += "<tr><th scope=\"row\"" + classed(classes[0]) + ">" + row[0] + "</th>";
    for (std::size_t i = 1; i < row.size(); ++i) text += "<td" + classed(classes[i]) + ">" + row[i] + "</td>";
    text += "</tr>\n";
  }
  return text + "</tbody></table></div>\n";
}

std::string symbol(Call call) {
  return R"(<svg class="i" viewBox="-7 -7 14 14" aria-hidden="true"><use href="#)" + letterOf(call) +
         R"("/></svg>)";
}

std::string probability(const std::optional<float>& value) {
  if (!value) return "–";
  const auto p = static_cast<double>(*value);
  if (p < kSmallest) return "< 0.001";
  return p >= 1 - kSmallest ? "> 0.999" : fixedText(p, 3);
}

std::string headline(const ProlineResult& proline) {
  if (proline.call == Call::none || !proline.pCisNorm) return "no prediction";
  const auto p = static_cast<double>(*proline.pCisNorm);
  if (proline.call == Call::trans) return percent(1 - p) + " trans";
  return percent(p) + " cis" + (proline.call == Call::undecided ? ", undecided" : "");
}

std::string natsText(double nats) {
  if (std::isnan(nats)) return "unknown";
  if (std::isinf(nats)) return nats > 0 ? "+∞" : "−∞";
  return signedFigure(nats, 1);
}

std::string natsBar(double nats, const std::string& cssClass) {
  constexpr double kPercentOfNat = 100 / (kMostForTrans + kMostForCis);
  if (std::isnan(nats) || std::fabs(nats) < kNothing) return "";
  const bool isLeft = nats < 0;
  const double width = std::min(std::fabs(nats), isLeft ? kMostForTrans : kMostForCis) * kPercentOfNat;
  return "<i class=\"" + cssClass + "\" style=\"" + (isLeft ? "right:40" : "left:60") +
         "%;width:" + coordinate(width) + "%\"></i>";
}

}  // namespace zorvela
