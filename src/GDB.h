// The text table that holds every file of the program: model, reader and writer.
//
// A table has named columns (VARS), a printf-style item for each (FORMAT), rows of text cells
// numbered from 1, DATA pairs, REMARK lines and the protein's sequence. The sources:
//   table_model.cpp   rows, columns, pairs, remarks, residues
//   table_text.cpp    splitting and white space
//   table_reader.cpp  from a file
//   table_writer.cpp  to a file, and the two standard layouts
#pragma once

#include <cstddef>      // for std::size_t
#include <iosfwd>       // for std::istream, std::ostream
#include <map>          // for std::map
#include <optional>     // for std::optional
#include <string>       // for std::string
#include <string_view>  // for std::string_view
#include <utility>      // for std::pair
#include <vector>       // for std::vector

/// Why a table cannot be read.
struct TableFault {
  std::string message;   ///< what `loadGDB` prints, without the tab
  std::size_t line = 0;  ///< in the file, from 1; 0 if no line is at fault
};

/// Where in a file the lines of a table are, counted from 1.
struct TableLines {
  std::vector<std::size_t> rows;     ///< of row 1, 2, ...
  std::vector<std::size_t> skipped;  ///< lines that fit nowhere and are not blank
};

/// The members and operations are the class's fixed interface; some serve only other hosts and tests.
class GDB {
 public:
  /// A row: column name to cell text, ordered by name. A row need not hold every column.
  using Row = std::map<std::string, std::string>;
  /// Rows by number.
  using Rows = std::map<int, Row>;

  /// An empty table.
  GDB() = default;
  /// The table in the file; see `loadGDB`.
  explicit GDB(const std::string& fileName);

  // --- Rows -----------------------------------------------------------------------------------

  /// Counts the rows.
  int getEntryCount() const;
  /// Copies the row with that number. An absent number gives an empty row and adds one to the table,
  /// so walk the rows through `entries`, never by counting.
  Row getEntry(int row);
  /// Copies the n-th row (from 1, in row order) whose cell `col` is exactly `value`; an empty row
  /// if there is none. A missing cell counts as empty text. Walks the rows, so it sees every change.
  Row getEntry(const std::string& col, const std::string& value, int n) const;
  /// Copies the n-th row in which both cells match.
  Row getEntry(const std::string& col1, const std::string& value1, const std::string& col2,
               const std::string& value2, int n) const;
  /// Finds the row that the searching `getEntry` copies; nullptr if none matches. Valid until the table
  /// changes.
  const Row* findEntry(const std::string& col, const std::string& value, int n) const;
  /// Finds the n-th row in which both cells match.
  const Row* findEntry(const std::string& col1, const std::string& value1, const std::string& col2,
                       const std::string& value2, int n) const;
  /// Returns the text of a cell; empty text if the row lacks it.
  static const std::string& cell(const Row& row, const std::string& col);

  /// Sets a cell, making the row and the cell as needed; `col` need not be a column of the table.
  void setEntry(int row, const std::string& col, const std::string& value);
  /// Starts a new row, numbered one past the row count, with this cell.
  void addEntry(const std::string& col, const std::string& value);

  // --- Columns ----------------------------------------------------------------------------------

  /// Tells whether the column (index from 0, or the first of that name) has a format with exactly one "d",
  /// "f" or "s". False for a column that does not exist or has no format.
  bool isVarInt(int i) const;
  bool isVarFloat(int i) const;
  bool isVarString(int i) const;
  bool isVarInt(const std::string& name) const;
  bool isVarFloat(const std::string& name) const;
  bool isVarString(const std::string& name) const;

  /// Names and formats column `i`, counted from 1 here; one past the last adds a column. A bad
  /// format, a name with a blank or another index: a message on standard error, no change.
  void setVAR(int i, const std::string& name, const std::string& format);
  /// Adds a column at the end; messages as for `setVAR`.
  void addVAR(const std::string& name, const std::string& format);
  /// Sets all column names from blank-separated text and empties the rows.
  void VARS_str_parser(const std::string& text);
  /// Sets all formats from "%4d %1s ..." and empties the rows. As many "%" as columns, else the table
  /// has no formats; a bad item ends the process with status 0 after a message.
  void FORMAT_str_parser(const std::string& text);
  /// Does the work of `FORMAT_str_parser` for a program that must outlive a bad item: returns the fault and
  /// leaves the table unchanged.
  std::optional<TableFault> setFormats(const std::string& text);
  /// Tells whether a format item is valid: one "%", first; digits, "-" and "."; one of s, d
  /// and f, last. Blanks around it do not count.
  static bool checkFormat(const std::string& item);

  // --- Pairs, remarks, residues -------------------------------------------------------------------

  /// Adds a DATA pair; an earlier pair of the same key stays.
  void setData(const std::string& key, const std::string& value);
  /// Returns the values of all pairs with this key, joined without a separator. A pair without a blank is
  /// its own key and value.
  std::string getData(const std::string& key) const;
  void addRemark(const std::string& text);
  /// Returns the one-letter name of a residue. Outside the sequence it is empty text, which is then stored.
  std::string getResidName(int resid);

  // --- Files ----------------------------------------------------------------------------------

  /// Reads a table file into this table. Lines that are not table lines are skipped silently; a
  /// directory or an empty file gives an empty table. A file that cannot be opened, or a bad FORMAT
  /// item, ends the process with status 0 after a message on standard error; a bare REMARK or DATA
  /// line throws std::out_of_range.
  void loadGDB(const std::string& fileName);
  /// Does the work of `loadGDB` for a program that must outlive a bad file. If the file cannot be opened or
  /// has a bad FORMAT item, returns the fault and leaves the table unchanged except for `fileName`.
  std::optional<TableFault> readFile(const std::string& fileName);
  /// Reads a table from a stream. Adds the lines of its rows, and those that it skipped, to `lines`.
  std::optional<TableFault> readTable(std::istream& in, TableLines* lines = nullptr);
  /// Writes the table, replacing any file of that name. A file that cannot be opened, or written to its
  /// end: a message on standard error and nothing else.
  void saveGDB(const std::string& fileName);
  /// Writes the table to a stream, as `saveGDB` does to a file.
  void writeTable(std::ostream& out);
  /// Sets the layout "KIVRA_SHIFT" (chemical shifts) or "KIVRA_PRED" (predicted angles), without rows;
  /// another name changes nothing.
  void presetClass(const std::string& name);
  /// Makes `saveGDB` write only the rows.
  void set_plaintext();

  // --- Text -------------------------------------------------------------------------------------

  /// Tells whether the character is one of 0 to 9.
  static bool isDigit(const char& c) { return c >= '0' && c <= '9'; }
  /// Tells whether the character is a blank, tab, line feed, vertical tab, form feed or carriage return.
  static bool isSpace(const char& c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
  /// Removes white space at the ends, and makes one blank of each run of it inside.
  static std::string simplifyWhiteSpace(const std::string& text);
  /// Returns the non-empty pieces between separators; an empty separator occurs nowhere.
  static std::vector<std::string> split(const std::string& separator, const std::string& text);
  static std::vector<std::string> split(const char& separator, const std::string& text);
  /// Returns the words between white space; an empty text gives one empty piece.
  static std::vector<std::string> split_WhiteSpace(const std::string& text);
  /// Counts a character.
  static int contains(const std::string& text, const char& c);
  /// Counts the positions at which `part` begins, overlaps included.
  static int contains(const std::string& text, const std::string& part);
  /// Copies fields `first` to `last` (from 0, empty ones dropped) into `out`, joined by the separator,
  /// which also ends the result where the text has fewer fields than `last` + 1. Nothing where `first`
  /// is past the last field or past `last`. `out` must hold the text and two characters more.
  static char* section(const std::string& text, const char& separator, char* out, int first, int last);

  // --- Numbers in cells ---------------------------------------------------------------------------

  /// Returns the number at the start of a text, 0 if there is none. An integer is read in base 10 and
  /// wraps beyond 32 bits; a real can be infinite or not a number.
  static int toInt(const std::string& text);
  static float toFloat(const std::string& text);
  static double toDouble(const std::string& text);

  // --- State ------------------------------------------------------------------------------------

  static constexpr std::size_t kScratchSize = 256;

  std::string className;                  ///< name given to `presetClass`
  bool plaintext = false;                 ///< write rows only
  char formatScratch[kScratchSize] = {};  ///< the last format item or formatted cell, as far as it fits
  std::string fileName;                   ///< file last read
  std::string formatText;                 ///< last FORMAT line, after the keyword
  std::string varsText;                   ///< last VARS line, after the keyword, white space simplified
  int columnCount = 0;
  int firstSeqResid = 1;                         ///< residue number of the first letter of the sequence
  std::map<std::string, std::string> keyValues;  ///< not used
  std::map<int, std::string> residNames;         ///< residue number to one-letter name
  std::vector<std::string> remarks;
  std::vector<std::string> dataLines;        ///< key, one blank, value
  std::map<int, std::string> columnNames;    ///< by index from 0
  std::map<int, std::string> columnFormats;  ///< by index from 0, with the blanks that follow
  Rows entries;                              ///< by row number; rows of a file count from 1

 private:
  // Columns.
  bool formatHoldsOnce(int i, char letter) const;
  int columnOf(const std::string& name) const;
  static bool acceptsColumn(const std::string& name, const std::string& format);
  void passThroughScratch(const std::string& item);
  static std::pair<std::string_view, std::string_view> splitPair(const std::string& line);

  template <class Matches>
  const Row* findRow(int n, Matches matches) const;

  // Reading.
  struct ReadState;
  std::optional<TableFault> readLines(std::istream& in, TableLines* lines);
  std::optional<TableFault> readLine(const std::string& line, ReadState& state);
  void storeRow(ReadState& state);
  void nameCells(ReadState& state) const;
  std::optional<TableFault> readKeyword(const std::string& line, std::string_view word, ReadState& state);
  void readSequence();

  // Writing.
  void writeHeader(std::ostream& out) const;
  static void writeSequence(std::ostream& out, const std::string& sequence);
  void writeRow(std::ostream& out, const Row& row);
  void writeCell(std::ostream& out, const std::string& item, const std::string& text);
  template <class Value>
  void writeFormatted(std::ostream& out, const std::string& item, Value value);
};
