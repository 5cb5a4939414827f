// Reads CSV files of data; errors name the line.
#include "train/data_rows.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "formats/input_bytes.h"
#include "formats/text/delimited_text.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

int DataRow::integer(const std::string& column) const {
  const auto value = toInteger(text(column));
  if (!value) fail(column + " is \"" + printable(text(column), 60) + "\", not a whole number");
  return *value;
}

double DataRow::number(const std::string& column) const {
  const auto value = toDecimal(text(column));
  if (!value) fail(column + " is \"" + printable(text(column), 60) + "\", not a number");
  return std::strtod(value->c_str(), nullptr);
}

void DataRow::fail(const std::string& what, const std::string& remedy) const {
  throw Error(path, line, what, remedy);
}

std::vector<DataRow> readDataRows(const std::string& path, const std::vector<std::string>& columns) {
  const std::string text = fileBytes(path);
  std::vector<std::string> header;
  std::vector<DataRow> rows;
  std::size_t pos = 0;
  std::size_t number = 0;
  while (const auto line = nextLine(text, pos)) {
    ++number;
    if (line->empty()) continue;
    DataRow row{path, number, {}};
    auto cells = splitCells(*line, Separator::comma);
    if (!cells) row.fail("a quote is not closed", "close it on the same line");
    for (std::string& cell : *cells) cell = std::string(withoutFormulaMark(cell));
    if (header.empty()) {
      header = std::move(*cells);
      continue;
    }
    if (cells->size() != header.size())
      row.fail(counted(cells->size(), "field", "fields") + " where the header has " +
               std::to_string(header.size()));
    for (std::size_t i = 0; i < header.size(); ++i) row.fields.emplace(header[i], std::move((*cells)[i]));
    rows.push_back(std::move(row));
  }
  if (header.empty()) throw Error(path, 0, "is empty", "give a CSV file with a header line");
  for (const std::string& column : columns)
    if (std::find(header.begin(), header.end(), column) == header.end())
      throw Error(path, 1, "the header has no column " + column, "add the column or give another file");
  return rows;
}

}  // namespace zorvela
