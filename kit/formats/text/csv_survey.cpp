#include "formats/text/csv_survey.h"

#include <algorithm>
#include <utility>

#include "formats/limits.h"
#include "formats/text/csv_cells.h"
#include "names/nomenclature.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kCellsRemedy =
    "give every row a cell for each column, an empty one where there is no shift, and numbers with a decimal "
    "point";

class Surveyor {
 public:
  Surveyor(std::string_view wholeText, const CsvLayout& csvLayout, const CsvColumns& csvColumns,
           const std::string& name)
      : text(wholeText), layout(csvLayout), columns(csvColumns), fileName(name) {}

  CsvSurvey look() {
    survey.columns.resize(layout.width());
    forEachRow(text, layout, [this](const CsvRow& row) {
      survey.cells.add(!row.fault.empty(), row.line, [&row] { return row.fault; });
      if (row.fault.empty()) lookAt(row);
    });
    return std::move(survey);
  }

 private:
  void countShifts(std::size_t more, std::size_t line) {
    survey.shiftCount += more;
    if (survey.shiftCount > mostShiftRows(text.size()))
      throw FileError(fileName, line,
                      "is beyond the first " + std::to_string(mostShiftRows(text.size())) + " shifts",
                      "split it into one file per protein");
  }

  void lookAt(const CsvRow& row) {
    const RowResidue residue = residueOf(row.cells, columns);
    survey.residues.add(!isPlaced(residue, columns), row.line,
                        [&] { return whyNotPlaced(residue, row.cells, columns); });
    if (!isPlaced(residue, columns)) return;
    countShifts(1, row.line);
    survey.dashes.add(residue.chain, residue.label);
    if (residue.label.hasDash && survey.dashed.empty())
      survey.dashed = residue.label.name + "-" + residue.label.number;
    survey.codes.add(residue);
    survey.letters.add(!residue.label.name.empty() && !residue.label.code.empty(), row.line,
                       [&residue] { return residue.label.name + residue.label.number + residue.label.code; });
    for (std::size_t i = 0; i < row.cells.size(); ++i) lookAtCell(row.cells[i], survey.columns[i]);
    for (const auto& [column, atom] : columns.atoms) lookAtShift(row, column, atom);
    if (columns.areLong()) lookAtLongRow(row, residue);
  }

  static void lookAtCell(const std::string& cell, ColumnContents& contents) {
    if (isNoValue(cell)) return;
    ++contents.filled;
    if (isNumber(cell)) ++contents.numbers;
  }

  void lookAtShift(const CsvRow& row, std::size_t column, const std::string& atom) {
    const std::string& value = row.cells[column];
    if (isNoValue(value)) return;
    countShifts(1, row.line);
    if (isMissingNumber(value)) return;
    ColumnContents& contents = survey.columns[column];
    ++contents.values;
    if (!canBeShiftOf(atom, value) && contents.impossible++ == 0) contents.example = value;
  }

  void lookAtLongRow(const CsvRow& row, const RowResidue& residue) {
    const std::string& atom = columns.atom != kNoColumn ? row.cells[columns.atom] : residue.atom;
    const std::string& value = row.cells[columns.shift];
    survey.counter.add(residue, atom);
    if (isSplitDecimal(row)) ++survey.splitDecimals;
    if (isNoValue(value) || isMissingNumber(value)) return;
    survey.shifts.add(!canBeShiftIn(residue.name, atom, value), row.line,
                      [&] { return quotedCell(value) + " for " + printable(atom, 20); });
  }

  /// "52,4" cut at its comma, with the second half in a column that nobody needs.
  bool isSplitDecimal(const CsvRow& row) const {
    const std::size_t next = columns.shift + 1;
    if (layout.separator != Separator::comma || next >= row.cells.size() || columns.areUsing(next))
      return false;
    const auto isDigits = [](const std::string& cell) {
      return !cell.empty() && std::all_of(cell.begin(), cell.end(), isDigit);
    };
    return isDigits(row.cells[columns.shift]) && isDigits(row.cells[next]);
  }

  std::string_view text;
  const CsvLayout& layout;
  const CsvColumns& columns;
  const std::string& fileName;
  CsvSurvey survey;
};

/// "3 of 5"
std::string share(const Refusals& rows) {
  return std::to_string(rows.refused) + " of " + std::to_string(rows.looked);
}

}  // namespace

void NumberCodes::add(const RowResidue& residue) {
  const std::string& code = residue.label.code;
  isAny = isAny || !code.empty();
  areAll = areAll && code.empty() != residue.label.name.empty();  // P52A has an insertion code
  if (residue.name.empty() || !residue.label.name.empty()) return;
  areNamed = true;
  areNames = areNames && !code.empty() &&
             polypeptideResidue(residue.name).letter == polypeptideResidue(upper(code)).letter;
}

void RowCounter::add(const RowResidue& residue, const std::string& atom) {
  const auto number = toInteger(residue.label.number);
  isSteady = isSteady && residue.isByCounter && number && (!last || *number == static_cast<long>(*last) + 1);
  last = number;
  ++rows;
  constexpr std::size_t kEnough = 2;
  if (atoms.size() < kEnough) atoms.insert(upper(atom));
}

CsvSurvey surveyOf(std::string_view text, const CsvLayout& layout, const CsvColumns& columns,
                   const std::string& file) {
  return Surveyor(text, layout, columns, file).look();
}

void refuseDoubtful(const CsvSurvey& survey, const CsvColumns& columns, const std::string& file) {
  constexpr std::size_t kFewRows = 3;
  if (survey.cells.areMost())
    throw FileError(
        file, survey.cells.line,
        "most rows (" + share(survey.cells) + ") do not fit the columns, the first by " + survey.cells.first,
        kCellsRemedy);
  if (survey.residues.areMost())
    throw FileError(file, survey.residues.line,
                    "most rows (" + share(survey.residues) + ") name no residue" +
                        (columns.lackAtoms() ? " with its atom: " : ": ") + survey.residues.first,
                    "is this a table of shifts? It needs columns resid, resname, atom and shift");
  if (survey.dashes.meaning() == Dash::unclear)
    throw FileError(file, 0,
                    "it is open whether " + quotedCell(survey.dashed) + " has a minus sign or a dash",
                    "give names and numbers of residues in columns of their own");
  if (survey.letters.areMost())
    throw FileError(file, survey.letters.line,
                    "it is open which letter of " + quotedCell(survey.letters.first) + " names the residue",
                    "give names and numbers of residues in columns of their own");
  if (survey.counter.countsRows())
    throw FileError(file, 0, "the only column of numbers beside the shifts counts the rows",
                    "add a column of residue numbers (resid)");
  if (survey.splitDecimals >= kFewRows && survey.splitDecimals == survey.residues.looked)
    throw FileError(file, 0, "the shifts seem to be cut at their decimal commas",
                    "write decimal points, or semicolons between the columns");
  if (survey.shifts.areMost())
    throw FileError(
        file, survey.shifts.line,
        "most values (" + share(survey.shifts) + ") can be no shifts of their atoms: " + survey.shifts.first,
        "check that the columns hold what their names say");
}

}  // namespace zorvela
