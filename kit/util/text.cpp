#include "util/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "util/number.h"

namespace zorvela {

namespace {

char upperLetter(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

char lowerLetter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isControl(char c) {
  const auto code = static_cast<unsigned char>(c);
  return code < ' ' || code == 0x7F;
}

// Characters that spreadsheets and word processors use for the letters and signs of a shift table.
constexpr std::pair<std::string_view, std::string_view> kLatinForms[] = {
    {"α", "a"},      {"β", "b"},      {"γ", "g"},      {"δ", "d"},     {"ε", "e"}, {"ζ", "z"}, {"η", "h"},
    {"Α", "A"},      {"Β", "B"},      {"Γ", "G"},      {"Ε", "E"},     {"Ζ", "Z"}, {"Η", "H"}, {"ɑ", "a"},
    {"ß", "b"},      {"ᵅ", "a"},      {"ᵝ", "b"},      {"ᵞ", "g"},     {"ᵦ", "b"}, {"ᵧ", "g"}, {"⁰", "0"},
    {"¹", "1"},      {"²", "2"},      {"³", "3"},      {"⁴", "4"},     {"⁵", "5"}, {"₀", "0"}, {"₁", "1"},
    {"₂", "2"},      {"₃", "3"},      {"₄", "4"},      {"₅", "5"},     {"′", "'"}, {"’", "'"}, {"‘", "'"},
    {"´", "'"},      {"ʹ", "'"},      {"−", "-"},      {"–", "-"},     {"—", "-"}, {"‐", "-"}, {"‑", "-"},
    {"\u00A0", " "}, {"\u2009", " "}, {"\u202F", " "}, {"\uFEFF", ""},
};

/// Digits with at most one point among them, after an optional minus sign.
bool isPlainDecimal(std::string_view text) {
  if (!text.empty() && text.front() == '-') text.remove_prefix(1);
  const auto digits = std::count_if(text.begin(), text.end(), isDigit);
  const auto points = std::count(text.begin(), text.end(), '.');
  return digits > 0 && points <= 1 && static_cast<std::size_t>(digits + points) == text.size();
}

// --- UTF-8 ----------------------------------------------------------------------------------------

constexpr int kLongestCharacter = 4;
const std::string kReplacement = "\xEF\xBF\xBD";  // U+FFFD

bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

struct Character {
  char32_t code = 0;
  std::size_t size = 0;  ///< in bytes; 0 where the text does not begin with a character
};

/// The first character of a text that is not empty.
Character firstCharacter(std::string_view text) {
  const auto byte = static_cast<unsigned char>(text.front());
  if (byte < 0x80) return {byte, 1};
  const std::size_t size = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : 2;
  if (byte < 0xC2 || byte > 0xF4 || text.size() < size) return {};
  char32_t code = byte & (0xFFU >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    if (!isContinuation(text[i])) return {};
    code = (code << 6U) | (static_cast<unsigned char>(text[i]) & 0x3FU);
  }
  const bool isTooLong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  if (isTooLong || isSurrogate || code > 0x10FFFF) return {};
  return {code, size};
}

bool isObeyed(char32_t code) {
  const auto isIn = [code](char32_t first, char32_t last) { return code >= first && code <= last; };
  const bool isC0OrC1 = code < 0x20 || isIn(0x7F, 0x9F);
  const bool isLineEnd = isIn(0x2028, 0x2029);
  const bool turnsDirection =
      code == 0x061C || isIn(0x200E, 0x200F) || isIn(0x202A, 0x202E) || isIn(0x2066, 0x2069);
  return isC0OrC1 || isLineEnd || turnsDirection;
}

/// Invisible characters, which make two names look alike; and code points that are not characters in XML.
bool isInvisible(char32_t code) {
  const auto isIn = [code](char32_t first, char32_t last) { return code >= first && code <= last; };
  const bool isNoCharacter = (code & 0xFFFEU) == 0xFFFE;
  const bool isTag = isIn(0xE0000, 0xE007F);
  return code == 0xAD || code == 0x200B || isIn(0x2060, 0x2064) || code == 0xFEFF || isIn(0xFFF9, 0xFFFB) ||
         isTag || isNoCharacter;
}

std::string shownWith(std::string_view text, char control, char lineFeed) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    const std::size_t size = std::max<std::size_t>(character.size, 1);
    if (character.size == 0)
      result += kReplacement;
    else if (character.code == '\n')
      result += lineFeed;
    else if (isObeyed(character.code) || isInvisible(character.code))
      result += control;
    else
      result += text.substr(0, size);
    text.remove_prefix(size);
  }
  return result;
}

// --- Formulas of spreadsheets ---------------------------------------------------------------------

bool isFormula(std::string_view text) {
  if (text.size() < 2 || std::string_view("=+-@\t\r").find(text.front()) == std::string_view::npos)
    return false;
  std::string_view number = text.substr(1);
  if (isLetter(number.back())) number.remove_suffix(1);  // an insertion code
  const bool isSigned = text.front() == '-' || text.front() == '+';
  return !isSigned || number.empty() || number.front() == '-' || !isPlainDecimal(number);
}

constexpr char kFormulaMark = '\'';

/// Tells whether a text is a formula, with or without marks before it.
bool isFormulaAfterMarks(std::string_view text) {
  while (!text.empty() && text.front() == kFormulaMark) text.remove_prefix(1);
  return isFormula(text);
}

// --- Numbers and notes ----------------------------------------------------------------------------

// Longer numbers are rounded: no spectrometer measures that many digits.
constexpr std::size_t kLongestNumber = 24;
constexpr double kLargestShift = 1e9;
// Up to 15 digits before the point a number keeps its digits in a table, so that the table reads back the
// same. Marks for a missing shift are that large at times.
constexpr double kLargestPlainNumber = 1e15;
constexpr int kDecimalsOfRounded = 6;
constexpr std::size_t kMostNotes = 50;

}  // namespace

std::string upper(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), upperLetter);
  return result;
}

std::string lower(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lowerLetter);
  return result;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lowerLetter(x) == lowerLetter(y); });
}

std::string chainOfFile(const std::string& file, const std::string& chain) {
  constexpr std::size_t kLongestName = 60;
  return chain.empty() ? file : file + ", chain " + printable(chain, kLongestName);
}

void dropByteOrderMark(std::string& text) {
  if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.erase(0, 3);
}

bool startsIgnoringCase(std::string_view text, std::string_view start) {
  return equalIgnoringCase(text.substr(0, start.size()), start);
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

std::string withLatinLetters(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const auto isHere = [&](const auto& form) { return text.substr(0, form.first.size()) == form.first; };
    const bool isAscii = (static_cast<unsigned char>(text.front()) & 0x80U) == 0;
    const auto form = isAscii ? std::end(kLatinForms)
                              : std::find_if(std::begin(kLatinForms), std::end(kLatinForms), isHere);
    const bool isOther = form == std::end(kLatinForms);
    result += isOther ? text.substr(0, 1) : form->second;
    text.remove_prefix(isOther ? 1 : form->first.size());
  }
  return result;
}

std::string baseName(const std::string& path) {
  return path.substr(path.rfind('/') + 1);  // npos + 1 is 0
}

std::string_view leading(std::string_view text, bool (*belongs)(char)) {
  const auto end = std::find_if_not(text.begin(), text.end(), belongs);
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || isControl(text.front()))) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || isControl(text.back()))) text.remove_suffix(1);
  return text;
}

std::string shown(std::string_view text, char inPlaceOfControl) {
  return shownWith(text, inPlaceOfControl, inPlaceOfControl);
}

std::string shownLines(std::string_view text) {
  return shownWith(text, '?', '\n');
}

std::string printable(std::string_view text, std::size_t most) {
  if (text.size() <= most) return shown(text, ' ');
  return shown(firstBytes(text, most), ' ') + "...";
}

std::string_view firstBytes(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  for (int i = 1; i < kLongestCharacter && most > 0 && isContinuation(text[most]); ++i) --most;
  return text.substr(0, most);
}

std::string csvCell(std::string_view text) {
  std::string cell = shownLines(text);
  // Before the tab is made harmless: it is the mark of a formula too.
  if (isFormulaAfterMarks(text)) cell.insert(0, 1, kFormulaMark);
  if (cell.find_first_of(",;\"\n") == std::string::npos) return cell;
  std::string quoted = "\"";
  for (const char c : cell) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

std::string_view withoutFormulaMark(std::string_view cell) {
  const bool isMarked = !cell.empty() && cell.front() == kFormulaMark && isFormulaAfterMarks(cell);
  return isMarked ? cell.substr(1) : cell;
}

std::optional<std::string_view> nextLine(std::string_view text, std::size_t& pos) {
  if (pos >= text.size()) return std::nullopt;
  // Each character in turn: for a set of two, find_first_of takes several times as long.
  std::size_t end = pos;
  while (end < text.size() && text[end] != '\n' && text[end] != '\r') ++end;
  const std::string_view line = text.substr(pos, end - pos);
  const bool isPair = end + 1 < text.size() && text[end] == '\r' && text[end + 1] == '\n';
  pos = end + (isPair ? 2 : 1);
  return line;
}

std::optional<int> toInteger(std::string_view text) {
  const bool hasPlus = text.size() > 1 && text[0] == '+' && text[1] != '-';
  const char* const end = text.data() + text.size();
  int value = 0;
  const auto [read, fault] = std::from_chars(text.data() + (hasPlus ? 1 : 0), end, value);
  const bool isWhole = fault == std::errc() && read == end;
  // Not the least of all, so that a number can be negated and has one before it.
  return isWhole && value > std::numeric_limits<int>::min() ? std::optional(value) : std::nullopt;
}

std::optional<std::string> toDecimal(std::string_view text) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  // Only the characters of decimal numbers: no hexadecimal digits, no "nan", no "inf".
  if (text.empty() || text.find_first_not_of("0123456789.-+eE") != std::string_view::npos)
    return std::nullopt;
  std::string number(text);
  char* end = nullptr;
  const double value = std::strtod(number.c_str(), &end);
  const bool isKept = text.size() <= kLongestNumber && isPlainDecimal(text);
  if (!(std::fabs(value) <= (isKept ? kLargestPlainNumber : kLargestShift))) return std::nullopt;
  if (isKept) return number;
  return *end == '\0' ? std::optional(fixedText(value, kDecimalsOfRounded)) : std::nullopt;
}

std::string enumerated(const std::vector<std::string>& items, std::size_t most) {
  std::string result;
  const std::size_t shown = items.size() > most ? most : items.size();
  for (std::size_t i = 0; i < shown; ++i) result += (i > 0 ? ", " : "") + items[i];
  if (items.size() > shown) result += " and " + std::to_string(items.size() - shown) + " more";
  return result;
}

std::string lineRange(std::size_t first, std::size_t last) {
  const std::string from = std::to_string(first);
  return first == last ? "line " + from : "lines " + from + " to " + std::to_string(last);
}

std::string counted(std::size_t count, const std::string& one, const std::string& many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::uint32_t crc32(std::uint32_t sum, std::string_view bytes) {
  constexpr std::uint32_t kPolynomial = 0xEDB88320U;
  sum = ~sum;
  for (const char c : bytes) {
    sum ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? kPolynomial : 0U);
  }
  return ~sum;
}

void addNote(const std::string& text, const std::vector<std::string>& items,
             std::vector<std::string>& notes) {
  if (!items.empty()) notes.push_back(text + enumerated(items));
}

void LimitedNotes::add(const std::string& text) {
  if (++count <= kMostNotes) texts.push_back(text);
}

void LimitedNotes::appendTo(std::vector<std::string>& notes) const {
  notes.insert(notes.end(), texts.begin(), texts.end());
  if (count > kMostNotes) notes.push_back("and " + std::to_string(count - kMostNotes) + " more " + kind);
}

}  // namespace zorvela
