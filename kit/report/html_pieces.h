// Pieces of the page: text, paragraphs, lists, tables, bars and the shapes of pictures.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zorvela/predict.h"

namespace zorvela {

/// Makes text from outside safe between tags and in attributes in double quotes: `shown`, with markup
/// escaped.
std::string escaped(const std::string& text);

/// Cuts a label to at most so many characters, with "…" as the last. Not escaped.
std::string shortened(const std::string& text, std::size_t most);

/// Returns a number for people: with a true minus sign, without "-0.0".
std::string figureText(double value, int decimals);
/// Returns it with a plus sign if it is above zero.
std::string signedFigure(double value, int decimals);

/// Returns ` class="r"`; empty without a class.
std::string classed(const std::string& cssClass);

/// Return text as a paragraph or a list, escaped.
std::string paragraph(const std::string& text, const std::string& cssClass = "");
std::string bulletList(const std::vector<std::string>& items);

/// Returns markup that opens with a click on its title, which is markup too.
std::string fold(const std::string& title, const std::string& content);

/// Cells of a row, which are markup.
using Cells = std::vector<std::string>;

/// Returns a table whose first column names its rows. On a narrow screen it scrolls in its own frame; `label`
/// must be unique in the page. `classes` are those of the columns.
std::string htmlTable(const std::string& label, const Cells& titles, const Cells& classes,
                      const std::vector<Cells>& rows, const std::string& cssClass = "");

/// Returns the symbol of a call in a line of text.
std::string symbol(Call call);

/// Returns three decimals, "< 0.001" and "> 0.999" instead of 0 and 1, and a dash for nothing.
std::string probability(const std::optional<float>& value);

/// Returns "98.7 % cis", "99.8 % trans", "28.0 % cis, undecided" or "no prediction".
std::string headline(const ProlineResult& proline);

/// Returns a number of nats with one decimal and its sign.
std::string natsText(double nats);

/// Returns a bar from zero, to the left for trans and to the right for cis, for an element of class "bar". It
/// is cut at the edges, which hold 98 of 100 sums. Empty for a number printed as 0.0, and for "not a number".
std::string natsBar(double nats, const std::string& cssClass);
inline constexpr double kMostForTrans = 15;  // nats
inline constexpr double kMostForCis = 10;

// --- Pictures -----------------------------------------------------------------------------------

/// Pictures are as many units wide as the narrowest phone has pixels for them. Text of 11 units therefore has
/// at least 11 pixels.
inline constexpr double kPictureWidth = 288;

/// Returns a coordinate, to a tenth of a unit.
std::string coordinate(double value);

/// Returns the largest width of a label (units).
double labelWidth(const std::string& label);

/// Returns the start of a picture. A screen reader reads `description`.
std::string openPicture(double height, const std::string& description);
inline const std::string kClosePicture = "</svg>\n";

/// Draws text, which is escaped.
std::string svgText(double x, double y, const std::string& text, const std::string& cssClass,
                    const std::string& attributes = "");
/// Returns the attribute that moves an element to a place and turns it there.
std::string turned(double x, double y, double degrees);

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
std::string svgVerdict(const ProlineResult& proline, double x, double y, bool isSmall = false);
/// Half the size of that mark, of either kind (units).
inline constexpr double kVerdictSize = 9;

}  // namespace zorvela
