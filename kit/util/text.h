// Small text helpers.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zorvela {

/// A space or a tab.
inline bool isBlank(char c) {
  return c == ' ' || c == '\t';
}
/// A decimal digit, or a letter, of ASCII: the locale does not count, here and below.
inline bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
inline bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// In capital or in small letters.
std::string upper(std::string_view text);
std::string lower(std::string_view text);
/// Whether two texts are the same in either case.
bool equalIgnoringCase(std::string_view a, std::string_view b);
/// Whether a text begins with another one in either case.
bool startsIgnoringCase(std::string_view text, std::string_view start);
/// Whether a part stands somewhere in a text.
bool contains(std::string_view text, std::string_view part);

/// Greek letters as the Latin ones that names of atoms have for them (Cα is CA), raised and lowered digits as
/// digits, primes as ' and the many dashes as -. Capital delta, which says "difference", stays.
std::string withLatinLetters(std::string_view text);

/// The name of a file without its folder; nothing after a "/" at the end.
std::string baseName(const std::string& path);

/// Takes away the mark that editors of Windows put before UTF-8.
void dropByteOrderMark(std::string& text);

/// Without white space (and control characters) at the ends.
std::string_view trimmed(std::string_view text);

/// Text from outside (names of files too), on one line and safe to show: every text goes through here
/// before it reaches a terminal, a message or a file that we write. Control characters (C0, C1 and delete),
/// which a terminal would obey, those that turn the direction of writing and those that nobody sees become
/// `inPlaceOfControl`;
/// each byte that is no UTF-8 becomes U+FFFD.
std::string shown(std::string_view text, char inPlaceOfControl = '?');

/// The same with its line feeds.
std::string shownLines(std::string_view text);

/// The same with blanks for control characters; a text above `most` bytes is cut and ends in "...".
std::string printable(std::string_view text, std::size_t most = 200);

/// The first bytes of a text, at most so many, without half a character at the cut.
std::string_view firstBytes(std::string_view text, std::size_t most);

/// A cell of a CSV file (RFC 4180) that we write: shown with its line feeds, in quotes where it must be, also
/// for a spreadsheet that splits at semicolons. A spreadsheet would take what begins with =, +, -, @ or a tab
/// for a formula and run it: such a text gets an apostrophe before it, unless it is a number ("-3", "-3A") or
/// a lone mark ("-"). One that has such an apostrophe already gets another, so that the text can be had back.
std::string csvCell(std::string_view text);
/// The text of a cell that `csvCell` wrote, its quotes taken off: without that apostrophe.
std::string_view withoutFormulaMark(std::string_view cell);

/// The next line of `text` from `pos` on, without its line end (LF, CR LF or CR); `pos` moves after it.
/// Nothing at the end of the text.
std::optional<std::string_view> nextLine(std::string_view text, std::size_t& pos);

/// A whole decimal number that fits an int: an optional sign and digits, nothing else.
std::optional<int> toInteger(std::string_view text);

/// A shift as a plain decimal number ("8.25", "-0.3"), from a text such as "+8.25" or "8.25e0".
/// Nothing if it is no finite number or has more after it.
std::optional<std::string> toDecimal(std::string_view text);

/// "5, 14, 30 and 12 more".
std::string enumerated(const std::vector<std::string>& items, std::size_t most = 12);

/// "1 shift", "2 shifts".
std::string counted(std::size_t count, const std::string& one, const std::string& many);

/// Notes of one kind: the first 50 word by word, then how many more there are.
class LimitedNotes {
 public:
  /// `kindOfMore`: what the others are, as in "and 12 more lines left out".
  explicit LimitedNotes(std::string kindOfMore) : kind(std::move(kindOfMore)) {}
  void add(const std::string& text);
  /// Adds them to other notes.
  void appendTo(std::vector<std::string>& notes) const;

 private:
  std::string kind;
  std::vector<std::string> texts;
  std::size_t count = 0;
};

}  // namespace zorvela
