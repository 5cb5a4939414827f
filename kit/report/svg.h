// Small pieces of pictures and pages. Pictures are as many units wide as the narrowest phone has pixels for
// them: text of 11 units has at least 11 pixels.
#pragma once

#include <optional>
#include <string>

#include "zorvela/calls.h"
#include "zorvela/finding.h"

namespace zorvela {

inline constexpr double kPictureWidth = 288;

/// Makes text from outside safe between tags and in attributes in double quotes: `shown`, with markup
/// escaped.
std::string escaped(const std::string& text);

/// Cuts a label to at most so many characters, with "…" as the last. Not escaped.
std::string shortened(const std::string& text, std::size_t most);

/// Returns a coordinate, to a tenth of a unit.
std::string coordinate(double value);

/// Returns a number for people: with a true minus sign, without "-0.0".
std::string figureText(double value, int decimals);
/// Returns it with a plus sign if it is above zero.
std::string signedFigure(double value, int decimals);

/// Returns the largest width of a label (units).
double labelWidth(const std::string& label);

/// Returns the start of a picture. A screen reader reads `description`.
std::string openPicture(double height, const std::string& description);
inline const std::string kClosePicture = "</svg>\n";

/// Draws text, which is escaped; `attributes` such as class="e".
std::string svgText(double x, double y, const std::string& text, const std::string& attributes = "");

/// Draws a horizontal bar or box.
std::string svgBox(double x, double y, double width, double height, const std::string& cssClass);

std::string svgLine(double x1, double y1, double x2, double y2, const std::string& cssClass);

/// Returns the letter of a call, for colours and symbols: c, t, u or n.
std::string letterOf(Call call);

/// Returns the symbols of the calls; once in each page, before the first picture.
std::string symbolDefinitions();
/// Draws the symbol of a call, centred at a place; `title` shows while a pointer is over it.
std::string svgSymbol(Call call, double x, double y, const std::string& title = "");

/// Draws the mark around a symbol: a ring if the structure agrees, a square if it disagrees. Other verdicts
/// have none. A small one goes with a narrow symbol.
std::string svgVerdict(const std::optional<Verdict>& verdict, double x, double y, bool isSmall = false);
/// Half the size of that mark, of either kind (units).
inline constexpr double kVerdictSize = 9;

}  // namespace zorvela
