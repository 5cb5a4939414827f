// Text, numbers and shapes of a page.
#include "report/svg.h"

#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

constexpr double kCharacterWidth = 7.2;  // of the widest common characters at 12 units

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

std::string coordinate(double value) {
  std::string text = fixedText(value, 1);
  if (text.size() > 2 && text.compare(text.size() - 2, 2, ".0") == 0) text.resize(text.size() - 2);
  return text == "-0" ? "0" : text;
}

std::string figureText(double value, int decimals) {
  const std::string text = signedFigure(value, decimals);
  return text.front() == '+' ? text.substr(1) : text;
}

std::string signedFigure(double value, int decimals) {
  const std::string text = signedText(value, decimals);
  return text.front() == '-' ? "−" + text.substr(1) : text;
}

double labelWidth(const std::string& label) {
  return kCharacterWidth * static_cast<double>(label.size());
}

std::string openPicture(double height, const std::string& description) {
  return "<svg class=\"w\" viewBox=\"0 0 " + coordinate(kPictureWidth) + " " + coordinate(height) +
         "\" role=\"img\" aria-label=\"" + escaped(description) + "\">\n";
}

std::string svgText(double x, double y, const std::string& text, const std::string& attributes) {
  return "<text x=\"" + coordinate(x) + "\" y=\"" + coordinate(y) + "\"" + (attributes.empty() ? "" : " ") +
         attributes + ">" + escaped(text) + "</text>";
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

std::string svgVerdict(const std::optional<Verdict>& verdict, double x, double y, bool isSmall) {
  if (verdict != Verdict::agree && verdict != Verdict::disagree) return "";
  return std::string("<use href=\"#") + (isSmall ? "w" : "v") + (verdict == Verdict::agree ? "a" : "d") +
         "\" x=\"" + coordinate(x) + "\" y=\"" + coordinate(y) + "\"/>";
}

}  // namespace zorvela
