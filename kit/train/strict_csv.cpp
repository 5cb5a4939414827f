// Reads CSV files of data; errors name the line.
#include "train/strict_csv.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "formats/input_bytes.h"
#include "formats/text/delimited_text.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

StrictCsv::StrictCsv(const std::string& file) : path(file) {
  const std::string text = fileBytes(path);
  std::size_t pos = 0;
  std::size_t number = 0;
  while (const auto line = nextLine(text, pos)) {
    ++number;
    if (line->empty()) continue;
    auto cells = splitCells(*line, Separator::comma);
    Row row{number, {}};
    if (!cells) fail(row, "a quote is not closed", "close it on the same line");
    for (const std::string& cell : *cells) row.fields.emplace_back(withoutFormulaMark(cell));
    if (header.empty()) {
      header = row.fields;
    } else if (row.fields.size() != header.size()) {
      fail(row,
           counted(row.fields.size(), "field", "fields") + " where the header has " +
               std::to_string(header.size()),
           kCorrectLine);
    } else {
      rows.push_back(std::move(row));
    }
  }
  if (header.empty()) throw Error(path, 0, "is empty", "give a CSV file with a header line");
}

std::size_t StrictCsv::findColumn(const std::string& name) const {
  return static_cast<std::size_t>(std::find(header.begin(), header.end(), name) - header.begin());
}

std::size_t StrictCsv::column(const std::string& name) const {
  const std::size_t index = findColumn(name);
  if (index == header.size())
    throw Error(path, 1, "the header has no column " + name, "add the column or give another file");
  return index;
}

int StrictCsv::integer(const Row& row, std::size_t column) const {
  const std::string& text = row.fields[column];
  const auto value = toInteger(text);
  if (!value)
    fail(row, header[column] + " is \"" + printable(text, 60) + "\", not a whole number", kCorrectLine);
  return *value;
}

double StrictCsv::number(const Row& row, std::size_t column) const {
  const std::string& text = row.fields[column];
  const auto value = toDecimal(text);
  if (!value) fail(row, header[column] + " is \"" + printable(text, 60) + "\", not a number", kCorrectLine);
  return std::strtod(value->c_str(), nullptr);
}

void StrictCsv::fail(const Row& row, const std::string& what, const std::string& remedy) const {
  throw Error(path, row.line, what, remedy);
}

}  // namespace zorvela
