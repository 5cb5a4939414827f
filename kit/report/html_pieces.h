// Pieces of the page: paragraphs, lists, tables and bars.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zorvela/predict.h"

namespace zorvela {

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

}  // namespace zorvela
