// Fuzzes the table reader, the searches and the writer with one input file.
//
// Beside crashes and sanitizer reports it finds: a search that differs from a plain walk through the rows,
// a table that a failed read changed, and a table that is not written the same way twice.
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>

#include "GDB.h"

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

// The n-th matching row as a plain walk finds it.
GDB::Row walkTo(const GDB& table, const std::string& col, const std::string& value, int n) {
  for (const auto& [number, row] : table.entries)
    if (GDB::cell(row, col) == value && --n == 0) return row;
  return GDB::Row();
}

void checkSearches(const GDB& table) {
  int rows = 0;
  for (const auto& [number, row] : table.entries) {
    if (++rows > 50) break;
    for (const auto& [name, text] : row)
      for (int n = 0; n <= 2; ++n) check(table.getEntry(name, text, n) == walkTo(table, name, text, n));
  }
}

bool isEmpty(const GDB& table) {
  return table.entries.empty() && table.columnCount == 0 && table.columnFormats.empty() &&
         table.remarks.empty() && table.dataLines.empty();
}

void checkWriting(GDB& table) {
  std::ostringstream written;
  table.writeTable(written);
  std::ostringstream again;
  table.writeTable(again);
  check(written.str() == again.str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  GDB table;
  try {
    if (table.readTable(in)) {  // a FORMAT item that is none
      check(isEmpty(table));
      return 0;
    }
    table.getData("SEQUENCE");
    checkSearches(table);
    // A width of millions is the user's to ask for, not worth the fuzzer's time.
    bool narrow = true;
    for (const auto& [i, item] : table.columnFormats) narrow = narrow && item.size() < 8;
    if (narrow) checkWriting(table);
  } catch (const std::out_of_range&) {  // a bare REMARK or DATA line
    check(isEmpty(table));
  }
  return 0;
}
