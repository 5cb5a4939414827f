// Columns of text for a terminal.
#include "report/text_table.h"

#include <algorithm>
#include <ostream>
#include <utility>

#include "util/text.h"

namespace zorvela {

namespace {

constexpr const char* kBoldMagenta = "\033[1;35m";
constexpr const char* kPlain = "\033[0m";

/// Characters on the screen: a character of several bytes counts once.
std::size_t screenWidth(const std::string& text) {
  std::size_t width = 0;
  for (const char c : text)
    if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) ++width;
  return width;
}

}  // namespace

void TextTable::add(Cells cells, bool standsOut, std::string below) {
  widths.resize(std::max(widths.size(), cells.size()), 0);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    cells[i] = shown(cells[i]);
    widths[i] = std::max(widths[i], screenWidth(cells[i]));
  }
  rows.push_back({std::move(cells), standsOut, std::move(below)});
}

void TextTable::write(bool colour, std::ostream& out) const {
  for (const Row& row : rows) {
    const bool painted = colour && row.standsOut;
    out << (painted ? kBoldMagenta : "") << line(row.cells) << (painted ? kPlain : "") << '\n' << row.below;
  }
}

std::string TextTable::line(const Cells& cells) const {
  std::string text;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) text += "  ";
    text += cells[i] + std::string(widths[i] - screenWidth(cells[i]), ' ');
  }
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

}  // namespace zorvela
