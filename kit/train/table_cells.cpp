// Numbers are printed with fixed formats, so that the same values give the same bytes on every machine.
#include "train/table_cells.h"

#include "train/formatted.h"
#include "util/number.h"
#include "zorvela/core.h"

namespace zorvela {

std::vector<std::string> backboneNames() {
  std::vector<std::string> names;
  for (const Atom atom : kBackbone) names.emplace_back(nameOf(atom));
  return names;
}

std::vector<std::string> rowNames() {
  std::vector<std::string> names;
  for (const char type : kAminoAcids) names.emplace_back(1, type);
  names.push_back(kDisulfide);
  names.push_back(kKnownCis);
  return names;
}

GDB startTable(const std::vector<std::string>& remarks, const std::string& columns,
               const std::string& formats) {
  GDB table;
  for (const std::string& remark : remarks) table.addRemark(remark);
  table.VARS_str_parser(columns);
  table.FORMAT_str_parser(formats);
  return table;
}

void addRow(GDB& table, const std::vector<std::string>& cells) {
  const int row = table.getEntryCount() + 1;
  for (std::size_t i = 0; i < cells.size(); ++i)
    table.setEntry(row, table.columnNames.at(static_cast<int>(i)), cells[i]);
}

std::string fixed(double value, int decimals) {
  std::string text = fixedText(value, decimals);
  const bool isZero = text.find_first_not_of("-0.") == std::string::npos;
  if (isZero && text.front() == '-') text.erase(0, 1);
  return text;
}

float thousandths(double value) {
  return GDB::toFloat(fixed(value, 3));
}

std::string shortest(double value) {
  return formatted("%g", value);
}

std::string repeated(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

}  // namespace zorvela
