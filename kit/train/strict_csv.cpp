// Reads CSV files of data, and says where one is wrong.
#include "train/strict_csv.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>
#include <utility>

#include "formats/input_bytes.h"
#include "formats/text/delimited_text.h"
#include "util/read_whole.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

std::string wholeFile(const std::string& path) {
  try {
    return readWhole(path, kLargestInput);
  } catch (const std::system_error& e) {
    throw Error(path, 0, e.code().message(), "give the path of a CSV file");
  }
}

}  // namespace

StrictCsv::StrictCsv(const std::string& file) : path(file) {
  const std::string text = wholeFile(path);
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
           "correct or remove the line");
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
  int value = 0;
  const char* end = text.data() + text.size();
  const auto [parsed, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || parsed != end)
    fail(row, header[column] + " is \"" + text + "\", no whole number", "correct or remove the line");
  return value;
}

double StrictCsv::number(const Row& row, std::size_t column) const {
  const std::string& text = row.fields[column];
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [parsed, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || parsed != end || !std::isfinite(value))
    fail(row, header[column] + " is \"" + text + "\", no number", "correct or remove the line");
  return value;
}

void StrictCsv::fail(const Row& row, const std::string& what, const std::string& remedy) const {
  throw Error(path, row.line, what, remedy);
}

}  // namespace zorvela
