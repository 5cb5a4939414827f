// Writes a table file, and knows the two standard layouts.
#include <cstdio>    // for std::snprintf
#include <fstream>   // for std::ofstream
#include <iostream>  // for std::cerr

#include "GDB.h"

namespace {

// Letters of the sequence on one DATA SEQUENCE line.
constexpr std::size_t kSequenceLine = 55;

}  // namespace

void GDB::saveGDB(const std::string& file) {
  std::ofstream out(file);
  if (out) writeTable(out);
  // A full disk shows when the last bytes leave.
  if (!out.flush().good()) std::cerr << "\tCan't save file " << file << std::endl;
}

void GDB::writeTable(std::ostream& out) {
  if (!plaintext) writeHeader(out);
  for (const auto& [number, row] : entries) writeRow(out, row);
}

void GDB::writeHeader(std::ostream& out) const {
  for (const std::string& remark : remarks) out << "REMARK " << remark << '\n';
  out << '\n';
  for (const std::string& line : dataLines) {
    const auto [key, value] = splitPair(line);
    if (key == "SEQUENCE")
      writeSequence(out, simplifyWhiteSpace(std::string(value)));
    else
      out << "DATA " << line << '\n';
  }
  out << "\nVARS   ";
  for (const auto& [i, name] : columnNames)
    if (i >= 0 && i < columnCount) out << name << ' ';
  out << "\nFORMAT ";
  for (const auto& [i, item] : columnFormats) out << item;
  out << "\n\n";
}

// A sequence that fills its last line is followed by a line without letters; readers expect it.
void GDB::writeSequence(std::ostream& out, const std::string& sequence) {
  if (sequence.empty()) return;
  for (std::size_t at = 0; at <= sequence.size(); at += kSequenceLine)
    out << "DATA SEQUENCE " << std::string_view(sequence).substr(at, kSequenceLine) << '\n';
}

void GDB::writeRow(std::ostream& out, const Row& row) {
  for (int i = 0; i < columnCount; ++i) {
    const auto name = columnNames.find(i);
    const auto item = columnFormats.find(i);
    if (name != columnNames.end() && item != columnFormats.end())
      writeCell(out, item->second, cell(row, name->second));
  }
  out << '\n';
}

void GDB::writeCell(std::ostream& out, const std::string& item, const std::string& text) {
  if (contains(item, 's') == 1)
    writeFormatted(out, item, text.c_str());
  else if (contains(item, 'd') == 1)
    writeFormatted(out, item, toInt(text));
  else if (contains(item, 'f') == 1)
    writeFormatted(out, item, toDouble(text));
}

// A cell longer than the scratch buffer is formatted again into memory of its own.
template <class Value>
void GDB::writeFormatted(std::ostream& out, const std::string& item, Value value) {
  const int length = std::snprintf(formatScratch, kScratchSize, item.c_str(), value);
  if (length < 0) return;
  const std::size_t size = static_cast<std::size_t>(length);
  if (size < kScratchSize) {
    out << formatScratch;
    return;
  }
  std::string whole(size + 1, '\0');
  std::snprintf(whole.data(), whole.size(), item.c_str(), value);
  out.write(whole.data(), length);
}

void GDB::presetClass(const std::string& name) {
  if (name == "KIVRA_SHIFT") {
    VARS_str_parser("RESID RESNAME ATOMNAME SHIFT");
    FORMAT_str_parser("%4d %1s %4s  %8.3f");
  } else if (name == "KIVRA_PRED") {
    VARS_str_parser("INDEX PHI PSI DIST W R1 R2 R3 SOURCE");
    FORMAT_str_parser("%2d %9.3f %9.3f %8.3f %5.3f %-4s %-4s %-4s %s");
  } else {
    return;
  }
  className = name;
}

void GDB::set_plaintext() {
  plaintext = true;
}
