// Tables from files or memory, checked, and their numbers.
#include "predict/tables.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "formats/input_bytes.h"
#include "predict/table_checks.h"
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

// --- The numbers of the tables ------------------------------------------------------------------

namespace {

/// Calls `use` with the residue type and the row of each type that a table knows.
template <class Use>
void forEachType(Model& model, const GDB& table, const std::string& column, Use use) {
  for (const auto& [number, row] : table.entries) {
    const std::string& name = GDB::cell(row, column);
    if (name.size() == 1) use(model.type(name.front()), row);
  }
}

float number(const GDB::Row& row, const std::string& column) {
  return GDB::toFloat(GDB::cell(row, column));
}

void takeValues(Model& model, const GDB& table, BackboneValues ReferenceValues::*values,
                const std::string& ending = "") {
  forEachType(model, table, "RESNAME", [&](ReferenceValues& type, const GDB::Row& row) {
    for (const Atom atom : kBackbone)
      (type.*values)[indexOf(atom)] = number(row, std::string(nameOf(atom)) + ending);
  });
}

}  // namespace

Model modelOf(const ReferenceTables& tables) {
  Model model;
  takeValues(model, tables.randomCoil, &ReferenceValues::randomCoil);
  takeValues(model, tables.adjustments, &ReferenceValues::own);
  takeValues(model, tables.previous, &ReferenceValues::asPrevious);
  takeValues(model, tables.next, &ReferenceValues::asNext);
  takeValues(model, tables.limits, &ReferenceValues::lowest, "_MIN");
  takeValues(model, tables.limits, &ReferenceValues::highest, "_MAX");
  for (const auto& [rowNumber, row] : tables.shifts.entries) {
    const int index = GDB::toInt(GDB::cell(row, "index"));
    if (index < 0 || index >= static_cast<int>(kShifts)) continue;
    model.shifts[static_cast<std::size_t>(index)] = {{number(row, "avg_cis"), number(row, "std_cis")},
                                                     {number(row, "avg_trans"), number(row, "std_trans")}};
  }
  forEachType(model, tables.sequence, "resname", [](ReferenceValues& type, const GDB::Row& row) {
    type.cisBefore = number(row, "cis_prev");
    type.cisAfter = number(row, "cis_next");
    type.transBefore = number(row, "trans_prev");
    type.transAfter = number(row, "trans_next");
  });
  return model;
}

// --- One table ----------------------------------------------------------------------------------

namespace {

// Far above any reference table, which has 3 kB.
constexpr std::size_t kMostBytes = std::size_t{256} << 10;

std::string textOf(const std::string& path) {
  try {
    return fileBytes(path, kMostBytes);
  } catch (const FileError& e) {
    throw TableError(e.what());
  }
}

/// The text of a table in the program's format as a table, checked as that of this name. `file` names it in
/// errors.
GDB parseTable(const std::string& name, const std::string& text, const std::string& file) {
  if (text.size() > kMostBytes) throw TableError(file, 0, "is too large for a reference table", "");
  std::istringstream in(text);
  in.exceptions(std::ios::badbit);  // else memory that ends is taken for the end of the text
  GDB table;
  TableLines lines;
  try {
    if (const auto fault = table.readTable(in, &lines))
      throw TableError(file, fault->line, GDB::simplifyWhiteSpace(fault->message), "");
  } catch (const std::out_of_range&) {
    throw TableError(file, 0, "a REMARK or DATA line has nothing after the keyword", "");
  }
  table.fileName = file;
  checkTable(name, {table, lines, text, file});
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
    *table = parseTable(name, textOf(path), path);
  }
  return tables;
}

Tables tablesFromTexts(const std::map<std::string, std::string>& texts) {
  const auto tables = std::make_shared<ReferenceTables>();
  for (const auto& [name, table] : namedTables(*tables)) {
    const auto text = texts.find(name);
    if (text == texts.end()) throw TableError(name, 0, "is not among the tables given", "");
    *table = parseTable(name, text->second, name);
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
  const Model model = modelOf(*tables);
  ClassStatistics statistics;
  for (std::size_t i = 0; i < kShifts; ++i) {
    statistics.cis[i] = model.shifts[i].cis;
    statistics.trans[i] = model.shifts[i].trans;
  }
  const ReferenceValues& proline = model.type(kProlineCode);
  statistics.prolineCB = proline.randomCoil[indexOf(Atom::CB)] + proline.own[indexOf(Atom::CB)];
  statistics.fingerprint = fingerprintOf(*tables);
  return statistics;
}

}  // namespace zorvela
