#include "report/html_pieces.h"

#include <algorithm>
#include <cmath>

#include "report/walk.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

/// A smaller probability would be printed as 0.000, and one as near to 1 as 1.000.
constexpr double kSmallest = 0.0005;
/// Contributions (nats) that would be printed as 0.0 have no bar.
constexpr double kNothing = 0.05;

constexpr double kCharacterWidth = 7.2;  // of the widest common characters at 12 units

std::string percent(double p) {
  return (p >= 1 - kSmallest ? "> 99.9" : fixedText(p * 100, 1)) + "\u00a0%";
}

}  // namespace

std::string escaped(const std::string& text) {
  std::string safe;
  for (const char c : shown(text)) {
    if (c == '&')
      safe += "&amp;";
    else if (c == '<')
      safe += "&lt;";
    else if (c == '>')
      safe += "&gt;";
    else if (c == '"')
      safe += "&quot;";
    else if (c == '\'')
      safe += "&#39;";
    else
      safe += c;
  }
  return safe;
}

std::string shortened(const std::string& text, std::size_t most) {
  const auto isFirstOfCharacter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
  std::size_t characters = 0;
  std::size_t end = 0;  // of the characters that stay where one must go
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!isFirstOfCharacter(text[at])) continue;
    ++characters;
    if (characters == most) end = at;
    if (characters > most) return text.substr(0, end) + "…";
  }
  return text;
}

std::string figureText(double value, int decimals) {
  const std::string text = signedFigure(value, decimals);
  return text.front() == '+' ? text.substr(1) : text;
}

std::string signedFigure(double value, int decimals) {
  const std::string text = signedText(value, decimals);
  return text.front() == '-' ? "−" + text.substr(1) : text;
}

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

// --- Pictures -----------------------------------------------------------------------------------

std::string coordinate(double value) {
  std::string text = fixedText(value, 1);
  if (text.size() > 2 && text.compare(text.size() - 2, 2, ".0") == 0) text.resize(text.size() - 2);
  return text == "-0" ? "0" : text;
}

double labelWidth(const std::string& label) {
  return kCharacterWidth * static_cast<double>(label.size());
}

std::string openPicture(double height, const std::string& description) {
  return "<svg class=\"w\" viewBox=\"0 0 " + coordinate(kPictureWidth) + " " + coordinate(height) +
         "\" role=\"img\" aria-label=\"" + escaped(description) + "\">\n";
}

std::string svgText(double x, double y, const std::string& text, const std::string& cssClass,
                    const std::string& attributes) {
  return "<text x=\"" + coordinate(x) + "\" y=\"" + coordinate(y) + "\" class=\"" + cssClass + "\"" +
         attributes + ">" + escaped(text) + "</text>";
}

std::string turned(double x, double y, double degrees) {
  return " transform=\"translate(" + coordinate(x) + " " + coordinate(y) + ") rotate(" + coordinate(degrees) +
         ")\"";
}

std::string svgBox(double x, double y, double width, double height, const std::string& cssClass) {
  return "<path class=\"" + cssClass + "\" d=\"M" + coordinate(x) + " " + coordinate(y) + "v" +
         coordinate(height) + "h" + coordinate(width) + "v" + coordinate(-height) + "z\"/>";
}

std::string svgLine(double x1, double y1, double x2, double y2, const std::string& cssClass) {
  return "<path class=\"" + cssClass + "\" d=\"M" + coordinate(x1) + " " + coordinate(y1) + "L" +
         coordinate(x2) + " " + coordinate(y2) + "\"/>";
}

std::string letterOf(Call call) {
  return toText(call).substr(0, 1);
}

std::string symbolDefinitions() {
  return "<svg class=\"defs\" width=\"0\" height=\"0\" aria-hidden=\"true\"><defs>\n"
         "<path id=\"c\" class=\"c\" d=\"M0 -6.5L6 4.5L-6 4.5z\"/>\n"
         "<circle id=\"t\" class=\"t\" r=\"4.5\"/>\n"
         "<path id=\"u\" class=\"u\" d=\"M0 -6L6 0L0 6L-6 0z\"/>\n"
         "<circle id=\"n\" class=\"n\" r=\"4\"/>\n"
         "<circle id=\"va\" class=\"va\" r=\"9\"/>\n"
         "<path id=\"vd\" class=\"vd\" d=\"M-9 -9h18v18h-18z\"/>\n"
         "<circle id=\"wa\" class=\"va\" r=\"3\"/>\n"
         "<path id=\"wd\" class=\"vd\" d=\"M-3 -3h6v6h-6z\"/>\n"
         "</defs></svg>\n";
}

std::string svgSymbol(Call call, double x, double y, const std::string& title) {
  const std::string use =
      "<use href=\"#" + letterOf(call) + "\" x=\"" + coordinate(x) + "\" y=\"" + coordinate(y) + "\"";
  return title.empty() ? use + "/>" : use + "><title>" + escaped(title) + "</title></use>";
}

std::string svgVerdict(const ProlineResult& proline, double x, double y, bool isSmall) {
  const bool agrees = is(proline, Verdict::agree);
  if (!agrees && !is(proline, Verdict::disagree)) return "";
  return std::string("<use href=\"#") + (isSmall ? "w" : "v") + (agrees ? "a" : "d") + "\" x=\"" +
         coordinate(x) + "\" y=\"" + coordinate(y) + "\"/>";
}

}  // namespace zorvela
