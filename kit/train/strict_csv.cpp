// Reads CSV files of data, and says where one is wrong.
#include "train/strict_csv.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fstream>

#include "zorvela/error.h"

namespace zorvela {

namespace {

std::vector<std::string> fieldsOf(const std::string& line) {
  std::vector<std::string> fields;
  std::size_t begin = 0;
  while (true) {
    const std::size_t comma = line.find(',', begin);
    fields.push_back(line.substr(begin, comma == std::string::npos ? comma : comma - begin));
    if (comma == std::string::npos) return fields;
    begin = comma + 1;
  }
}

std::string counted(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " field" : " fields");
}

}  // namespace

StrictCsv::StrictCsv(const std::string& file) : path(file) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw Error(path, 0, std::strerror(errno), "give the path of a CSV file");
  std::string line;
  for (std::size_t number = 1; std::getline(in, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty()) continue;
    Row row{number, fieldsOf(line)};
    if (line.find('"') != std::string::npos) fail(row, "a field is quoted", "write fields without quotes");
    if (header.empty()) {
      header = row.fields;
    } else if (row.fields.size() != header.size()) {
      fail(row, counted(row.fields.size()) + " where the header has " + std::to_string(header.size()),
           "correct or remove the line");
    } else {
      rows.push_back(std::move(row));
    }
  }
  if (in.bad()) throw Error(path, 0, "cannot be read to its end", "give the path of a CSV file");
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
