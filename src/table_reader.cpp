// Reads a table file, line by line.
//
// REMARK, DATA, VARS and FORMAT lines are told by their first word; any other line is a row if a FORMAT
// line came before and it has as many words as the table has columns. What fits nowhere is skipped.
#include <fstream>   // for std::ifstream
#include <iostream>  // for std::cerr

#include "GDB.h"

namespace {

constexpr std::string_view kRemark = "REMARK";
constexpr std::string_view kData = "DATA";
constexpr std::string_view kVars = "VARS";
constexpr std::string_view kFormat = "FORMAT";

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

bool isConversion(char c) {
  return c == 's' || c == 'd' || c == 'f';
}

}  // namespace

struct GDB::ReadState {
  int nextRow = 1;
  bool formatSeen = false;
  std::vector<std::string_view> words;
  // The names that the rows share, and for each of them the index of its word in the line.
  std::shared_ptr<Row::Names> names;
  std::vector<std::size_t> wordOfName;
  std::vector<std::string_view> cells;
};

void GDB::loadGDB(const std::string& file) {
  fileName = file;
  std::ifstream in(file);
  if (!in) {
    std::cerr << "\tCan't open file " << file << " for reading" << std::endl;
    endRun(0);
    return;
  }
  readTable(in);
}

void GDB::readTable(std::istream& in) {
  index.forget();
  plaintext = false;
  ReadState state;
  nameRows(state);
  for (std::string line; std::getline(in, line);) readLine(line, state);
  readSequence();
}

void GDB::readLine(const std::string& line, ReadState& state) {
  splitWords(line, static_cast<std::size_t>(columnCount) + 1, state.words);
  if (state.words.empty()) return;
  const std::string_view firstWord = state.words.front();
  const bool isRow =
      state.formatSeen && columnCount > 0 && state.words.size() == static_cast<std::size_t>(columnCount);
  if (isRow) storeRow(state);
  readKeyword(line, firstWord, state);
}

void GDB::storeRow(ReadState& state) {
  state.cells.clear();
  for (const std::size_t word : state.wordOfName) state.cells.push_back(state.words[word]);
  Row& row = entries[state.nextRow++];
  if (row.empty()) {
    row = Row(state.names, state.cells);
  } else {
    for (std::size_t i = 0; i < state.cells.size(); ++i) row[(*state.names)[i]] = state.cells[i];
  }
}

// Of two columns with one name the later one stays.
void GDB::nameRows(ReadState& state) const {
  std::map<std::string, std::size_t> wordOfName;
  for (const auto& [i, name] : columnNames) wordOfName[name] = static_cast<std::size_t>(i);
  state.names = std::make_shared<Row::Names>();
  state.wordOfName.clear();
  for (const auto& [name, word] : wordOfName) {
    state.names->push_back(name);
    state.wordOfName.push_back(word);
  }
}

// The text of a remark or pair starts one character after the keyword, whatever that character is; a
// line that ends with the keyword is an error of the string library.
void GDB::readKeyword(const std::string& line, std::string_view word, ReadState& state) {
  const bool startsLikeKeyword = word[0] >= 'A' && word[0] <= 'Z';  // a row starts with a number, mostly
  if (!startsLikeKeyword) return;
  if (word == kRemark) {
    remarks.push_back(line.substr(kRemark.size() + 1));
  } else if (word == kData) {
    dataLines.push_back(line.substr(kData.size() + 1));
  } else if (word == kVars) {
    varsText = simplifyWhiteSpace(line.substr(kVars.size()));
    VARS_str_parser(varsText);
    nameRows(state);
  } else if (word == kFormat) {
    formatText = line.substr(kFormat.size());
    FORMAT_str_parser(formatText);
    state.formatSeen = true;
  }
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

void GDB::VARS_str_parser(const std::string& text) {
  clearRows();
  columnNames.clear();
  columnCount = 0;
  for (std::string& name : split(' ', text)) columnNames[columnCount++] = std::move(name);
}

void GDB::FORMAT_str_parser(const std::string& text) {
  clearRows();
  columnFormats.clear();
  // The blank makes a first piece, before the first "%", even where the text starts with "%".
  const std::string spaced = " " + text;
  const int items = contains(spaced, '%');
  if (items != columnCount || items == 0) return;

  const std::vector<std::string> pieces = split('%', spaced);
  for (int i = 0; i < columnCount; ++i) {
    const std::size_t piece = static_cast<std::size_t>(i) + 1;
    const std::string item = "%" + (piece < pieces.size() ? pieces[piece] : std::string());
    if (!checkFormat(item)) {
      std::cerr << "\tBad format syntax '" << item << "'" << std::endl;
      endRun(0);
      return;
    }
    columnFormats[i] = item;
  }
}

bool GDB::checkFormat(const std::string& item) {
  const std::string simple = simplifyWhiteSpace(item);
  if (simple.size() < 2 || simple.front() != '%' || !isConversion(simple.back())) return false;
  for (std::size_t i = 1; i + 1 < simple.size(); ++i) {
    const char c = simple[i];
    if (!isDigit(c) && c != '-' && c != '.') return false;
  }
  return true;
}
