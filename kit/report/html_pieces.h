// Pieces of the page: paragraphs, lists, tables, and bars that the style sheet draws.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zorvela/predict.h"

namespace zorvela {

/// ` class="r"`; empty without a class.
std::string classed(const std::string& cssClass);

/// Text as a paragraph. It is escaped, as are the items of a list.
std::string paragraph(const std::string& text, const std::string& cssClass = "");
std::string bulletList(const std::vector<std::string>& items);

/// Markup that opens with a click on its title, markup as well.
std::string fold(const std::string& title, const std::string& content);

/// Cells of a row, which are markup.
using Cells = std::vector<std::string>;

/// A table whose first column names its rows. It scrolls in a frame of its own where the screen is too
/// narrow; the keyboard reaches the frame by its label, which no other frame of the page may have. `classes`
/// are those of the columns.
std::string htmlTable(const std::string& label, const Cells& titles, const Cells& classes,
                      const std::vector<Cells>& rows, const std::string& cssClass = "");

/// The symbol of a call in a line of text.
std::string symbol(Call call);

/// Three decimals; "< 0.001" and "> 0.999" where they would be those of 0 and 1; a dash for nothing.
std::string probability(const std::optional<float>& value);

/// "98.7 % cis", "99.8 % trans", "28.0 % cis, undecided" or "no prediction".
std::string headline(const ProlineResult& proline);

/// A number of nats with one decimal and its sign.
std::string natsText(double nats);

/// A bar from zero, to the left for trans and to the right for cis, for a place of class "bar". It ends at
/// the edges, which hold 98 of 100 sums. Empty for what would be printed as 0.0, and for what is not a
/// number.
std::string natsBar(double nats, const std::string& cssClass);
inline constexpr double kMostForTrans = 15;  // nats
inline constexpr double kMostForCis = 10;

}  // namespace zorvela
