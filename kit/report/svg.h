// Small pieces of pictures and pages. All pictures are as many units wide as the narrowest phone has pixels
// for them, and are shown no narrower: text of 11 units has at least 11 pixels.
#pragma once

#include <optional>
#include <string>

#include "zorvela/calls.h"
#include "zorvela/finding.h"

namespace zorvela {

inline constexpr double kPictureWidth = 288;

/// Text that comes from elsewhere, safe between tags and in attributes in double quotes: markup is escaped,
/// control characters (those that turn the direction of text as well) become "?", and what is not UTF-8
/// becomes U+FFFD.
std::string escaped(const std::string& text);

/// A label of at most so many characters, the last of them "…" where it was cut. Not escaped.
std::string shortened(const std::string& text, std::size_t most);

/// A coordinate, to a tenth of a unit.
std::string coordinate(double value);

/// A number for people: a true minus sign, no "-0.0".
std::string figureText(double value, int decimals);
/// The same with a plus sign for numbers above zero.
std::string signedFigure(double value, int decimals);

/// How wide a label is drawn, at most (units).
double labelWidth(const std::string& label);

/// The start of a picture. `description` takes its place where it cannot be seen.
std::string openPicture(double height, const std::string& description);
inline const std::string kClosePicture = "</svg>\n";

/// Text at a place; `attributes` such as class="e". The text is escaped.
std::string svgText(double x, double y, const std::string& text, const std::string& attributes = "");

/// A horizontal bar or box as a path.
std::string svgBox(double x, double y, double width, double height, const std::string& cssClass);

std::string svgLine(double x1, double y1, double x2, double y2, const std::string& cssClass);

/// Each call has one letter, for colours and symbols: c, t, u, n.
std::string letterOf(Call call);

/// The symbols of the calls; once in each page, before the first picture.
std::string symbolDefinitions();
/// The symbol of a call, centred at a place; `title` shows while a pointer is over it.
std::string svgSymbol(Call call, double x, double y, const std::string& title = "");

/// The mark around a symbol that says how a structure goes with the call: a ring where it agrees, a square
/// where it disagrees. Other verdicts, and no structure, have none.
/// A small one stands beside a mark that is narrow.
std::string svgVerdict(const std::optional<Verdict>& verdict, double x, double y, bool isSmall = false);
/// Half the size of that mark, of either kind (units).
inline constexpr double kVerdictSize = 9;

}  // namespace zorvela
