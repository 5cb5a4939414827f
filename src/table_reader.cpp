// Reads a table file, line by line.
//
// REMARK, DATA, VARS and FORMAT lines are known by their first word; any other line is a row if a FORMAT
// line came before and it has as many words as the table has columns. What fits nowhere is skipped.
#include <algorithm>  // for std::min
#include <cstdlib>    // for std::exit
#include <cstring>    // for std::memcpy
#include <fstream>    // for std::ifstream
#include <iostream>   // for std::cerr
#include <optional>   // for std::optional

#include "GDB.h"

namespace {

constexpr std::string_view kRemark = "REMARK";
constexpr std::string_view kData = "DATA";
constexpr std::string_view kVars = "VARS";
constexpr std::string_view kFormat = "FORMAT";

bool isKeyword(std::string_view word) {
  return word == kRemark || word == kData || word == kVars || word == kFormat;
}

// Splits a line into words, at most `most` of them: a row is known to be too long one word after its end.
void splitWords(const std::string& line, std::size_t most, std::vector<std::string_view>& words) {
  words.clear();
  const std::string_view text = line;
  std::size_t pos = 0;
  while (pos < text.size() && words.size() < most) {
    while (pos < text.size() && GDB::isSpace(text[pos])) ++pos;
    const std::size_t start = pos;
    while (pos < text.size() && !GDB::isSpace(text[pos])) ++pos;
    if (pos > start) words.push_back(text.substr(start, pos - start));
  }
}

// One-letter codes A to Y, the lower-case c (disulfide cysteine) and p, and ? for an unknown residue.
bool isResidueLetter(char c) {
  return (c >= 'A' && c <= 'Y') || c == 'c' || c == 'p' || c == '?';
}

// A bad table ends the run.
void exitOn(const std::optional<TableFault>& fault) {
  if (!fault) return;
  std::cerr << '\t' << fault->message << std::endl;
  std::exit(0);
}

}  // namespace

struct GDB::ReadState {
  std::size_t lineNumber = 0;
  int nextRow = 1;
  bool formatSeen = false;
  TableLines* lines = nullptr;
  std::vector<std::string_view> words;
  // The cells of a row in the order of their names, and the index of their words in the line.
  std::vector<std::pair<std::string, std::size_t>> cells;
};

GDB::GDB(const std::string& file) {
  loadGDB(file);
  plaintext = false;
}

void GDB::loadGDB(const std::string& file) {
  exitOn(readFile(file));
}

void GDB::FORMAT_str_parser(const std::string& text) {
  exitOn(setFormats(text));
}

std::optional<TableFault> GDB::readFile(const std::string& file) {
  fileName = file;
  std::ifstream in(fileName);
  if (!in) return TableFault{"Can't open file " + fileName + " for reading"};
  return readTable(in);
}

// A fault leaves no half-read table: what is read goes into a copy first.
std::optional<TableFault> GDB::readTable(std::istream& in, TableLines* lines) {
  GDB table = *this;
  if (auto fault = table.readLines(in, lines)) return fault;
  *this = std::move(table);
  return std::nullopt;
}

std::optional<TableFault> GDB::readLines(std::istream& in, TableLines* lines) {
  plaintext = false;
  ReadState state;
  state.lines = lines;
  nameCells(state);
  for (std::string line; std::getline(in, line);) {
    ++state.lineNumber;
    if (auto fault = readLine(line, state)) return fault;
  }
  readSequence();
  return std::nullopt;
}

std::optional<TableFault> GDB::readLine(const std::string& line, ReadState& state) {
  splitWords(line, static_cast<std::size_t>(columnCount) + 1, state.words);
  if (state.words.empty()) return std::nullopt;
  const std::string_view firstWord = state.words.front();
  const bool isRow =
      state.formatSeen && columnCount > 0 && state.words.size() == static_cast<std::size_t>(columnCount);
  if (isRow) storeRow(state);
  if (state.lines != nullptr && isRow) state.lines->rows.push_back(state.lineNumber);
  if (state.lines != nullptr && !isRow && !isKeyword(firstWord))
    state.lines->skipped.push_back(state.lineNumber);
  return readKeyword(line, firstWord, state);
}

void GDB::storeRow(ReadState& state) {
  Row& row = entries.try_emplace(entries.end(), state.nextRow++)->second;
  for (const auto& [name, word] : state.cells)
    row.insert_or_assign(row.end(), name, std::string(state.words[word]));
}

// Of two columns with one name the later one stays.
void GDB::nameCells(ReadState& state) const {
  std::map<std::string, std::size_t> wordOfName;
  for (const auto& [i, name] : columnNames)
    if (i >= 0 && i < columnCount) wordOfName[name] = static_cast<std::size_t>(i);
  state.cells.assign(wordOfName.begin(), wordOfName.end());
}

// The text of a remark or pair starts one character after the keyword, whatever that character is; a
// line that ends with the keyword is an error of the string library.
std::optional<TableFault> GDB::readKeyword(const std::string& line, std::string_view word, ReadState& state) {
  const bool startsLikeKeyword = word[0] >= 'A' && word[0] <= 'Z';  // a row starts with a number, mostly
  if (!startsLikeKeyword) return std::nullopt;
  if (word == kRemark) {
    remarks.push_back(line.substr(kRemark.size() + 1));
  } else if (word == kData) {
    dataLines.push_back(line.substr(kData.size() + 1));
  } else if (word == kVars) {
    varsText = simplifyWhiteSpace(line.substr(kVars.size()));
    VARS_str_parser(varsText);
    nameCells(state);
  } else if (word == kFormat) {
    formatText = line.substr(kFormat.size());
    if (const auto fault = setFormats(formatText)) return TableFault{fault->message, state.lineNumber};
    state.formatSeen = true;
  }
  return std::nullopt;
}

void GDB::readSequence() {
  const std::string first = getData("FIRST_RESID");
  firstSeqResid = first.empty() ? 1 : toInt(first);
  for (const char c : getData("SEQUENCE")) {
    if (!isResidueLetter(c)) continue;
    // Unsigned, so that numbers past the largest residue number wrap instead of overflowing.
    const unsigned resid = static_cast<unsigned>(firstSeqResid) + static_cast<unsigned>(residNames.size());
    residNames.insert_or_assign(residNames.end(), static_cast<int>(resid), std::string(1, c));
  }
}

// The text may be a part of the table itself, so that it is read before anything is emptied.
void GDB::VARS_str_parser(const std::string& text) {
  std::vector<std::string> names = split(' ', text);
  entries.clear();
  columnNames.clear();
  columnCount = 0;
  for (std::string& name : names) columnNames[columnCount++] = std::move(name);
}

std::optional<TableFault> GDB::setFormats(const std::string& text) {
  // The blank makes a first piece, before the first "%", even where the text starts with "%".
  const std::string spaced = " " + text;
  const int items = contains(spaced, '%');
  std::map<int, std::string> formats;
  if (items == columnCount && items != 0) {
    const std::vector<std::string> pieces = split('%', spaced);
    for (int i = 0; i < columnCount; ++i) {
      const std::size_t piece = static_cast<std::size_t>(i) + 1;
      const std::string item = "%" + (piece < pieces.size() ? pieces[piece] : std::string());
      passThroughScratch(item);
      if (!checkFormat(item)) return TableFault{"Bad format syntax '" + item + "'"};
      formats[i] = item;
    }
  }
  entries.clear();
  columnFormats = std::move(formats);
  return std::nullopt;
}

void GDB::passThroughScratch(const std::string& item) {
  const std::size_t size = std::min(item.size(), kScratchSize - 1);
  std::memcpy(formatScratch, item.data(), size);
  formatScratch[size] = '\0';
}
