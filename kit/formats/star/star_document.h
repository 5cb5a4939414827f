// A parsed STAR file (NMR-STAR, NEF, CIF) as tables of text cells.
//
// The text is kept; tags and values are places in it, so that a file costs a few bytes for each of its words,
// and the values of loops that no reader needs cost none. A fault in one place does not spoil the rest: a row
// with too few or too many values is ignored where the lines show which one it is, and a save frame that is
// not closed ends where the next one begins. Each of these is a note.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zorvela {

/// A piece of the text of a file.
struct StarSpan {
  std::uint32_t begin = 0;
  std::uint32_t size = 0;
};

/// Lines of a loop whose values do not fill whole rows.
struct BadLines {
  std::uint32_t firstLine = 0;  ///< from 1; 0: none
  std::uint32_t lastLine = 0;
  std::uint32_t firstValue = 0;  ///< from 0
  std::uint32_t endValue = 0;
};

/// A loop: its tags, and its values row by row. The tags with one value of a frame are a loop of one row.
/// Index ranges are of `StarFile::tags` and `values`.
struct StarLoop {
  std::uint32_t firstTag = 0;
  std::uint32_t tagCount = 0;
  std::uint32_t firstValue = 0;
  std::uint32_t valueCount = 0;  ///< 0 for a loop that no reader needs
  bool isEmpty = true;           ///< there were no values at all
  bool lacksRows = false;        ///< the rows of bad lines were ignored
  bool isUnusable = false;       ///< values are missing, and no line shows where
  BadLines bad;                  ///< the first of them
};

/// A save frame, or a stretch of a data block outside them.
struct StarFrameRange {
  StarSpan name;
  std::uint32_t block = 0;      ///< which data block of the file
  std::uint32_t firstLoop = 0;  ///< the tags with one value; loops follow
  std::uint32_t endLoop = 0;
};

/// A file as it was parsed.
struct StarFile {
  std::string name;  ///< how messages name it
  std::string text;
  std::vector<StarSpan> tags;
  std::vector<StarSpan> values;
  std::vector<StarLoop> loops;
  std::vector<StarFrameRange> frames;
  std::vector<StarSpan> blocks;    ///< their names
  std::vector<std::string> notes;  ///< faults that were skipped, with their lines

  std::string_view textOf(StarSpan span) const {
    return std::string_view(text).substr(span.begin, span.size);
  }
};

/// An entry: the frames of one data block, or of the whole file.
struct StarEntry {
  std::shared_ptr<const StarFile> file;
  std::size_t firstFrame = 0;
  std::size_t endFrame = 0;
  std::string name;  ///< of its data block; empty where the file is one entry
};

/// A view of a save frame or a stretch of a data block: valid as long as the file.
struct StarFrame {
  const StarFile& file;
  const StarFrameRange& items;

  StarFrame(const StarFile& starFile, std::size_t index) : file(starFile), items(starFile.frames[index]) {}
  /// Empty for a block without a name.
  std::string name() const { return std::string(file.textOf(items.name)); }
};

/// Tells whether a text begins as STAR does.
bool isStar(std::string_view text);

/// Returns the shift lists and sequences within a text of another kind, such as a restraint list with a shift
/// list in it. Every other byte except the line ends is a blank, so that lines keep their numbers. Empty
/// where there is no shift list.
std::string starWithin(std::string_view text);

/// With `star`, faults outside shifts and sequences are notes. With `cif`, all faults are errors, because
/// coordinates may be missing.
enum class StarRules { star, cif };

/// Parses STAR text of up to 256 MiB. FileError with the line for a text field or quote that is not closed,
/// for values without a tag among shifts or sequences, and for more than any real file has. `name` is how
/// messages name the file.
std::shared_ptr<const StarFile> parseStar(std::string text, const std::string& name,
                                          StarRules rules = StarRules::star);

/// Returns the entries of a file, or the whole file where fewer than two data blocks have molecules and
/// shifts. Each entry is read alone, because all number their molecules from 1.
std::vector<StarEntry> entriesOf(const std::shared_ptr<const StarFile>& file);

class StarTable;

/// A column of a table under its tag, with a column of another tag that replaces missing values. A view:
/// valid as long as the table.
class StarColumn {
 public:
  StarColumn(const StarTable& starTable, std::size_t firstIndex, std::size_t otherIndex)
      : table(&starTable), first(firstIndex), other(otherIndex) {}

  /// Returns the value without quotes and outer white space; empty for ".", "?" and an absent column.
  std::string text(std::size_t row) const { return std::string(cell(row)); }
  /// Returns the value of a number or a short name: above 200 bytes it is cut like other names.
  std::string word(std::size_t row) const;

 private:
  std::string_view cell(std::size_t row) const;

  const StarTable* table;
  std::size_t first;
  std::size_t other;
};

/// A loop, or the tags with one value of a save frame, as a table. The case of tags does not matter. A view:
/// valid as long as the file.
class StarTable {
 public:
  StarTable(const StarFile& starFile, const StarLoop& starLoop) : source(&starFile), loop(&starLoop) {}
  /// The tags with one value.
  explicit StarTable(const StarFrame& frame)
      : StarTable(frame.file, frame.file.loops[frame.items.firstLoop]) {}

  /// Returns the number of rows. FileError for a loop in which values are missing and no line shows where.
  std::size_t rows() const;
  /// Throws FileError if values are missing, or if most lines hold whole rows but not all.
  void requireWhole() const;
  /// Returns the line, from 1, on which a row begins.
  std::size_t lineOf(std::size_t row) const;
  /// Tells whether rows were ignored because values are missing or left over in them.
  bool lacksRows() const { return loop->lacksRows; }
  /// Returns the column of a tag, there or not; `otherTag` replaces missing values.
  StarColumn column(std::string_view tag, std::string_view otherTag = {}) const;
  bool has(std::string_view tag) const { return indexOf(tag) != kAbsent; }

  static constexpr std::size_t kAbsent = static_cast<std::size_t>(-1);
  /// Returns the place of a tag among the columns; `kAbsent` if there is none.
  std::size_t indexOf(std::string_view tag) const;

 private:
  friend class StarColumn;

  /// Returns the place of a value in the text, without its quotes.
  StarSpan span(std::size_t row, std::size_t column) const {
    return source->values[loop->firstValue + row * loop->tagCount + column];
  }
  std::string_view cell(std::size_t row, std::size_t column) const;

  const StarFile* source;
  const StarLoop* loop;
};

/// Returns all tables of a frame with a tag that begins so.
std::vector<StarTable> tablesOf(const StarFrame& frame, std::string_view tagStart);

/// Tells whether a frame has such a table.
bool haveTable(const std::vector<StarFrame>& frames, std::string_view tagStart);

/// Returns the value of a tag outside loops; empty if there is none.
std::string frameValue(const StarFrame& frame, std::string_view tag);

/// Returns the frames of an entry, in order.
std::vector<StarFrame> framesOf(const StarEntry& entry);

/// Returns a value that names a save frame without its "$".
std::string withoutDollar(std::string text);

}  // namespace zorvela
