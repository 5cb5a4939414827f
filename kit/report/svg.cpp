// Text, numbers and shapes as they stand in a page.
#include "report/svg.h"

#include <cmath>

#include "util/number.h"

namespace zorvela {

namespace {

constexpr double kCharacterWidth = 7.2;  // of the widest common characters at 12 units

/// A character of a text in UTF-8 and how many bytes it has; 0 bytes of it are valid where it is no
/// character.
struct Character {
  char32_t code = 0;
  std::size_t size = 0;
};

Character characterAt(const std::string& text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(at);
  if (first < 0x80) return {first, 1};
  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || at + size > text.size()) return {};
  char32_t code = first & (0xFFU >> (size + 1));
  for (std::size_t i = at + 1; i < at + size; ++i) {
    if ((byte(i) & 0xC0U) != 0x80U) return {};
    code = (code << 6U) | (byte(i) & 0x3FU);
  }
  const bool isOverlong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  const bool isNoCharacter = (code & 0xFFFEU) == 0xFFFE || (code >= 0xFDD0 && code <= 0xFDEF);
  if (isOverlong || isSurrogate || isNoCharacter || code > 0x10FFFF) return {};
  return {code, size};
}

/// Controls, and the marks that turn the direction of the text after them.
bool isControl(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x200E || code == 0x200F ||
         (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

}  // namespace

std::string escaped(const std::string& text) {
  std::string safe;
  for (std::size_t at = 0; at < text.size();) {
    const Character character = characterAt(text, at);
    if (character.size == 0) {
      safe += "\xEF\xBF\xBD";
      ++at;
      continue;
    }
    if (isControl(character.code))
      safe += '?';
    else if (character.code == '&')
      safe += "&amp;";
    else if (character.code == '<')
      safe += "&lt;";
    else if (character.code == '>')
      safe += "&gt;";
    else if (character.code == '"')
      safe += "&quot;";
    else if (character.code == '\'')
      safe += "&#39;";
    else
      safe.append(text, at, character.size);
    at += character.size;
  }
  return safe;
}

std::string shortened(const std::string& text, std::size_t most) {
  std::size_t characters = 0;
  std::size_t end = 0;  // of the characters that stay where one must go
  for (std::size_t at = 0; at < text.size(); ++characters) {
    if (characters + 1 == most) end = at;
    if (characters == most) return text.substr(0, end) + "…";
    at += std::max(characterAt(text, at).size, std::size_t{1});
  }
  return text;
}

std::string coordinate(double value) {
  std::string text = fixedText(value, 1);
  if (text.size() > 2 && text.compare(text.size() - 2, 2, ".0") == 0) text.resize(text.size() - 2);
  return text == "-0" ? "0" : text;
}

std::string figureText(double value, int decimals) {
  const std::string size = fixedText(std::fabs(value), decimals);
  const bool isZero = size.find_first_not_of("0.") == std::string::npos;
  return (value < 0 && !isZero ? "−" : "") + size;
}

std::string signedFigure(double value, int decimals) {
  const std::string text = figureText(value, decimals);
  return (value > 0 && text.find_first_not_of("0.") != std::string::npos ? "+" : "") + text;
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
  switch (call) {
    case Call::cis:
      return "c";
    case Call::trans:
      return "t";
    case Call::undecided:
      return "u";
    case Call::none:
      break;
  }
  return "n";
}

std::string symbolDefinitions() {
  return "<svg class=\"defs\" width=\"0\" height=\"0\" aria-hidden=\"true\"><defs>\n"
         "<path id=\"c\" class=\"c\" d=\"M0 -6.5L6 4.5L-6 4.5z\"/>\n"
         "<circle id=\"t\" class=\"t\" r=\"4.5\"/>\n"
         "<path id=\"u\" class=\"u\" d=\"M0 -6L6 0L0 6L-6 0z\"/>\n"
         "<circle id=\"n\" class=\"n\" r=\"4\"/>\n"
         "</defs></svg>\n";
}

std::string svgSymbol(Call call, double x, double y, const std::string& title) {
  const std::string use =
      "<use href=\"#" + letterOf(call) + "\" x=\"" + coordinate(x) + "\" y=\"" + coordinate(y) + "\"";
  return title.empty() ? use + "/>" : use + "><title>" + escaped(title) + "</title></use>";
}

}  // namespace zorvela
