// What the rows of a CSV file hold, all of them: it decides how labels are read, and what is refused.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "formats/text/csv_columns.h"
#include "formats/text/csv_residue.h"
#include "formats/text/csv_rows.h"
#include "formats/text/residue_label.h"

namespace zorvela {

/// What a column holds.
struct ColumnContents {
  std::size_t filled = 0;
  std::size_t numbers = 0;
  std::size_t values = 0;      ///< of an atom column: cells that should be shifts
  std::size_t impossible = 0;  ///< of these: no numbers, or far from any shift of the atom
  std::string example;         ///< the first of these
};

/// How many of something were looked at, and how many of them will not do.
struct Refusals {
  std::size_t looked = 0;
  std::size_t refused = 0;
  std::size_t line = 0;  ///< of the first
  std::string first;

  /// `why` gives the reason as text; only the first is asked for.
  template <class Why>
  void add(bool isRefused, std::size_t atLine, const Why& why) {
    ++looked;
    if (isRefused && refused++ == 0) {
      line = atLine;
      first = why();
    }
  }
  bool areMost() const { return refused * 2 > looked; }
};

/// The suffix letters of residue numbers ("82P"): names where every row has one, or a longer name in the same
/// cell ("82PRO"); else insertion codes.
struct NumberCodes {
  bool isAny = false;
  bool areAll = true;
  bool areNamed = false;  ///< some row has a name beside it
  bool areNames = true;   ///< that of the row, in all rows

  void add(const RowResidue& residue);
  bool standForNames() const { return isAny && areAll && (!areNamed || areNames); }
};

/// A column of numbers that goes up by one in each row: a residue has one row only if the table has one
/// atom only.
struct RowCounter {
  bool isSteady = true;
  std::size_t rows = 0;
  std::optional<int> last;
  std::unordered_set<std::string> atoms;

  void add(const RowResidue& residue, const std::string& atom);
  bool countsRows() const { return isSteady && rows > 2 && atoms.size() > 1; }
};

/// All that decides how the rows are read.
struct CsvSurvey {
  std::vector<ColumnContents> columns;
  Refusals cells;     ///< rows by their number of cells
  Refusals residues;  ///< rows by their residue
  Refusals shifts;    ///< of a table with one row per shift
  DashMeaning dashes;
  std::string dashed;  ///< the first label with a dash
  NumberCodes codes;
  Refusals letters;  ///< rows with a letter on either side of the residue number
  RowCounter counter;
  std::size_t splitDecimals = 0;  ///< rows with whole numbers for shift and in the next column
  std::size_t shiftCount = 0;     ///< and rows that only name a residue
};

/// Looks at all rows; `file` is how messages name it. FileError beyond what a file of this size may hold.
CsvSurvey surveyOf(std::string_view text, const CsvLayout& layout, const CsvColumns& columns,
                   const std::string& file);

/// FileError for a table in which it is open what stands where.
void refuseDoubtful(const CsvSurvey& survey, const CsvColumns& columns, const std::string& file);

}  // namespace zorvela
