// Numbers are printed with fixed formats, so that the same values give the same bytes on every machine.
#include "train/table_cells.h"

#include "util/number.h"

namespace zorvela {

std::string fixed(double value, int decimals) {
  std::string text = fixedText(value, decimals);
  const bool isZero = text.find_first_not_of("-0.") == std::string::npos;
  if (isZero && text.front() == '-') text.erase(0, 1);
  return text;
}

float thousandths(double value) {
  return GDB::toFloat(fixed(value, 3));
}

std::vector<std::string> rowNames() {
  std::vector<std::string> names;
  for (const char type : kAminoAcids) names.emplace_back(1, type);
  names.push_back(kDisulfide);
  names.push_back(kKnownCis);
  return names;
}

GDB tableOf(const std::vector<std::string>& remarks, const std::string& columns, const std::string& formats,
            const std::vector<std::vector<std::string>>& rows) {
  GDB table;
  for (const std::string& remark : remarks) table.addRemark(remark);
  table.VARS_str_parser(columns);
  table.FORMAT_str_parser(formats);
  for (std::size_t row = 0; row < rows.size(); ++row)
    for (std::size_t i = 0; i < rows[row].size(); ++i)
      table.setEntry(static_cast<int>(row) + 1, table.columnNames.at(static_cast<int>(i)), rows[row][i]);
  return table;
}

}  // namespace zorvela
