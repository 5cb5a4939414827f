// The table in memory: rows, columns, data pairs, remarks and residues.
#include <iostream>  // for std::cerr

#include "GDB.h"

// --- Rows ---------------------------------------------------------------------------------------

int GDB::getEntryCount() const {
  return static_cast<int>(entries.size());
}

GDB::Row GDB::getEntry(int row) {
  return entries[row];
}

GDB::Row GDB::getEntry(const std::string& col, const std::string& value, int n) const {
  const Row* row = findEntry(col, value, n);
  return row ? *row : Row();
}

GDB::Row GDB::getEntry(const std::string& col1, const std::string& value1, const std::string& col2,
                       const std::string& value2, int n) const {
  const Row* row = findEntry(col1, value1, col2, value2, n);
  return row ? *row : Row();
}

// The n-th row for which `matches` holds.
template <class Matches>
const GDB::Row* GDB::findRow(int n, Matches matches) const {
  if (n <= 0) return nullptr;
  for (const auto& [number, row] : entries)
    if (matches(row) && --n == 0) return &row;
  return nullptr;
}

const GDB::Row* GDB::findEntry(const std::string& col, const std::string& value, int n) const {
  return findRow(n, [&](const Row& row) { return cell(row, col) == value; });
}

const GDB::Row* GDB::findEntry(const std::string& col1, const std::string& value1, const std::string& col2,
                               const std::string& value2, int n) const {
  return findRow(n, [&](const Row& row) { return cell(row, col1) == value1 && cell(row, col2) == value2; });
}

const std::string& GDB::cell(const Row& row, const std::string& col) {
  static const std::string lacking;
  const auto found = row.find(col);
  return found == row.end() ? lacking : found->second;
}

void GDB::setEntry(int row, const std::string& col, const std::string& value) {
  entries[row][col] = value;
}

void GDB::addEntry(const std::string& col, const std::string& value) {
  setEntry(getEntryCount() + 1, col, value);
}

// --- Columns ------------------------------------------------------------------------------------

bool GDB::checkFormat(const std::string& item) {
  const std::string simple = simplifyWhiteSpace(item);
  if (simple.size() < 2 || simple.front() != '%') return false;
  const char conversion = simple.back();
  if (conversion != 's' && conversion != 'd' && conversion != 'f') return false;
  for (std::size_t i = 1; i + 1 < simple.size(); ++i) {
    const char c = simple[i];
    if (!isDigit(c) && c != '-' && c != '.') return false;
  }
  return true;
}

bool GDB::formatHoldsOnce(int i, char letter) const {
  const auto format = columnFormats.find(i);
  return format != columnFormats.end() && contains(format->second, letter) == 1;
}

// Index of the first column of that name, -1 if there is none.
int GDB::columnOf(const std::string& name) const {
  for (int i = 0; i < columnCount; ++i) {
    const auto column = columnNames.find(i);
    if (column != columnNames.end() && column->second == name) return i;
  }
  return -1;
}

bool GDB::isVarInt(int i) const {
  return formatHoldsOnce(i, 'd');
}
bool GDB::isVarFloat(int i) const {
  return formatHoldsOnce(i, 'f');
}
bool GDB::isVarString(int i) const {
  return formatHoldsOnce(i, 's');
}
bool GDB::isVarInt(const std::string& name) const {
  return isVarInt(columnOf(name));
}
bool GDB::isVarFloat(const std::string& name) const {
  return isVarFloat(columnOf(name));
}
bool GDB::isVarString(const std::string& name) const {
  return isVarString(columnOf(name));
}

// Reports a wrong column on standard error.
bool GDB::acceptsColumn(const std::string& name, const std::string& format) {
  if (!checkFormat(format)) {
    std::cerr << "\tBad format syntax '" << format << "'" << std::endl;
    return false;
  }
  if (contains(name, ' ') > 0) {
    std::cerr << "\tInvalid varible name '" << name << "' (with space)" << std::endl;
    return false;
  }
  return true;
}

void GDB::setVAR(int i, const std::string& name, const std::string& format) {
  if (!acceptsColumn(name, format)) return;
  if (i < 1 || i > columnCount + 1) {
    std::cerr << "\tPlease use number 1-" << columnCount + 1 << " as index for varible '" << name
              << "' with format '" << format << "'" << std::endl;
    return;
  }
  columnNames[i - 1] = name;
  columnFormats[i - 1] = format;
  if (i == columnCount + 1) ++columnCount;
}

void GDB::addVAR(const std::string& name, const std::string& format) {
  if (acceptsColumn(name, format)) setVAR(columnCount + 1, name, format);
}

// --- Data pairs, remarks, residues --------------------------------------------------------------

void GDB::setData(const std::string& key, const std::string& value) {
  dataLines.push_back(key + " " + value);
}

std::string GDB::getData(const std::string& key) const {
  std::string joined;
  for (const std::string& line : dataLines) {
    const auto [lineKey, value] = splitPair(line);
    if (lineKey == key) joined += value;
  }
  return joined;
}

// A pair without a blank is its own key and value.
std::pair<std::string_view, std::string_view> GDB::splitPair(const std::string& line) {
  const std::string_view pair = line;
  const std::size_t blank = pair.find(' ');
  if (blank == std::string_view::npos) return {pair, pair};
  return {pair.substr(0, blank), pair.substr(blank + 1)};
}

void GDB::addRemark(const std::string& text) {
  remarks.push_back(text);
}

std::string GDB::getResidName(int resid) {
  return residNames[resid];
}
