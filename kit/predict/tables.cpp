// Tables from files or memory, checked, and into a run object.
#include "predict/tables.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "predict/table_checks.h"
#include "util/checksum.h"
#include "util/read_whole.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

const std::array<const char*, 7> kTableNames = {"randcoil.tab", "rcadj.tab",  "rcprev.tab", "rcnext.tab",
                                                "sslimit.tab",  "Pro.cs.tab", "Pro.seq.tab"};

std::array<NamedTable, 7> namedTables(ReferenceTables& tables) {
  const std::array<GDB*, 7> all = {&tables.randomCoil, &tables.adjustments, &tables.previous, &tables.next,
                                   &tables.limits,     &tables.shifts,      &tables.sequence};
  std::array<NamedTable, 7> named;
  for (std::size_t i = 0; i < all.size(); ++i) named[i] = {kTableNames[i], all[i]};
  return named;
}

void useTables(const ReferenceTables& tables, ZORVELA& run) {
  run.rcTable = tables.randomCoil;
  run.adjTable = tables.adjustments;
  run.prevTable = tables.previous;
  run.nextTable = tables.next;
  run.limitTable = tables.limits;
  run.useProCSTable(tables.shifts);
  run.useProSeqTable(tables.sequence);
}

// --- One table ----------------------------------------------------------------------------------

namespace {

// Far above any reference table, which has 3 kB. A word takes some 200 bytes of memory, a residue of a
// sequence as much, and each job has tables of its own.
constexpr std::size_t kMostBytes = std::size_t{256} << 10;
constexpr std::size_t kMostWords = 3000;

[[noreturn]] void throwTooLarge(const std::string& path) {
  throw TableError(path, 0, "is too large for a reference table", "");
}

/// The whole text of a file; a read error is not its end.
std::string textOf(const std::string& path) {
  try {
    return readWhole(path, kMostBytes);
  } catch (const std::system_error& e) {
    if (e.code() == std::errc::file_too_large) throwTooLarge(path);
    throw TableError(path, 0, e.code().message(), "");
  }
}

/// Before anything is made of it: the words but those of remarks, and the letters of a sequence.
void checkSize(const std::string& text, const std::string& file) {
  std::size_t words = 0;
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
    if (line->rfind("REMARK", 0) == 0) continue;
    if (line->rfind("DATA", 0) == 0) words += line->size();
    for (std::size_t i = 0; i < line->size(); ++i)
      if (!GDB::isSpace((*line)[i]) && (i == 0 || GDB::isSpace((*line)[i - 1]))) ++words;
    if (words > kMostWords) throwTooLarge(file);
  }
}

/// The text of a table in the program's format as a table. `file` names it in errors.
GDB parseTable(const std::string& text, const std::string& file) {
  if (text.size() > kMostBytes) throwTooLarge(file);
  checkSize(text, file);
  std::istringstream in(text);
  in.exceptions(std::ios::badbit);  // else memory that ends is taken for the end of the text
  GDB table;
  try {
    table.readTable(in);
  } catch (const BadTable& e) {
    throw TableError(file, e.line, GDB::simplifyWhiteSpace(e.what()), "");
  } catch (const std::out_of_range&) {
    throw TableError(file, 0, "a REMARK or DATA line has nothing after the keyword", "");
  }
  table.fileName = file;
  return table;
}

}  // namespace

// --- All seven ----------------------------------------------------------------------------------

Tables tablesFromFolder(const std::string& folder) {
  std::error_code unknown;
  if (!std::filesystem::is_directory(folder, unknown))
    throw TableError(folder, 0, "there is no such folder", "");
  const auto tables = std::make_shared<ReferenceTables>();
  for (const auto& [name, table] : namedTables(*tables)) {
    const std::string path = folder + "/" + name;
    const std::string text = textOf(path);
    *table = parseTable(text, path);
    checkTable(name, *table, text, path);
  }
  return tables;
}

Tables tablesFromTexts(const std::map<std::string, std::string>& texts) {
  const auto tables = std::make_shared<ReferenceTables>();
  for (const auto& [name, table] : namedTables(*tables)) {
    const auto text = texts.find(name);
    if (text == texts.end()) throw TableError(name, 0, "is not among the tables given", "");
    *table = parseTable(text->second, name);
    checkTable(name, *table, text->second, name);
  }
  return tables;
}

// --- What they say ------------------------------------------------------------------------------

namespace {

/// Over all columns and cells, so that comments and the layout of a file do not matter.
std::string fingerprintOf(const ReferenceTables& tables) {
  std::uint32_t sum = 0;
  const auto add = [&sum](const std::string& text) {
    // With the end of the text: "1" "23" is not "12" "3".
    sum = crc32(sum, {text.c_str(), text.size() + 1});
  };
  ReferenceTables copy = tables;
  for (const auto& [name, table] : namedTables(copy)) {
    add(name);
    for (const auto& [number, row] : table->entries)
      for (const auto& [column, cell] : row) {
        add(column);
        add(cell);
      }
  }
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%08lx", static_cast<unsigned long>(sum));
  return text.data();
}

}  // namespace

ClassStatistics statisticsOf(const Tables& tables) {
  ZORVELA run;
  useTables(*tables, run);
  ClassStatistics statistics;
  for (int index = 0; index <= kIndexCG; ++index) {
    const auto i = static_cast<std::size_t>(index);
    statistics.cis[i] = {run.avgCis[index], run.stdCis[index]};
    statistics.trans[i] = {run.avgTrans[index], run.stdTrans[index]};
  }
  statistics.prolineCB = run.getRC("P", "CB") + run.getRCadj("P", "CB");
  statistics.fingerprint = fingerprintOf(*tables);
  return statistics;
}

}  // namespace zorvela
