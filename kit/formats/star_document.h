// A parsed STAR file (NMR-STAR, NEF, CIF) as tables of text cells.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <gemmi/cifdoc.hpp>

namespace zorvela {

/// Whether a text begins as STAR does.
bool isStar(std::string_view text);

/// Parses STAR text. FileError with the parser's message, and the user's line and column, where the text
/// is not STAR. `name` is how messages name the file.
gemmi::cif::Document parseStar(std::string_view text, const std::string& name);

/// The entries of a document, each as a document of its own: entries that stand one after the other in a
/// file number their molecules alike, so each is read alone. The whole document where it holds fewer than
/// two data blocks with molecules and shifts.
std::vector<gemmi::cif::Document> entriesOf(gemmi::cif::Document document);

/// A loop, or the tags with one value of a save frame, seen as a table. Tags are compared without regard
/// to case. A view: valid as long as the document.
class StarTable {
 public:
  /// Index of a column that is not there.
  static constexpr std::size_t kAbsent = static_cast<std::size_t>(-1);

  explicit StarTable(const gemmi::cif::Loop& loop) : rowsOf(&loop) {}
  explicit StarTable(const gemmi::cif::Block& frame) : pairsOf(&frame) {}

  std::size_t rows() const { return rowsOf != nullptr ? rowsOf->length() : 1; }
  /// The column, `kAbsent` if there is none of that tag.
  std::size_t column(std::string_view tag) const;
  /// The first column among the tags that is there.
  std::size_t columnOfAny(const std::vector<std::string_view>& tags) const;
  bool has(std::string_view tag) const { return column(tag) != kAbsent; }
  /// The value without quotes and outer white space; empty for ".", "?" and an absent column.
  std::string text(std::size_t row, std::size_t column) const;

 private:
  const gemmi::cif::Loop* rowsOf = nullptr;
  const gemmi::cif::Block* pairsOf = nullptr;
};

/// All tables of a frame that have the tag.
std::vector<StarTable> tablesWith(const gemmi::cif::Block& frame, std::string_view tag);

/// All tables of a frame with a tag that begins so.
std::vector<StarTable> tablesOf(const gemmi::cif::Block& frame, std::string_view tagStart);

/// The value of a tag that stands outside loops; empty if there is none.
std::string frameValue(const gemmi::cif::Block& frame, std::string_view tag);

/// The block itself and all its save frames, in order.
std::vector<const gemmi::cif::Block*> framesOf(const gemmi::cif::Block& block);

/// The frames of all blocks of a document, in order.
std::vector<const gemmi::cif::Block*> framesOf(const gemmi::cif::Document& document);

/// A value that names a save frame, without the "$".
std::string withoutDollar(std::string text);

}  // namespace zorvela
