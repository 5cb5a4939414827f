// Small text helpers.
#pragma once

#include <cstddef>
#include <cstdint>
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
/// Tells whether two texts are the same in either case.
bool equalIgnoringCase(std::string_view a, std::string_view b);
/// Tells whether a text begins with another one in either case.
bool startsIgnoringCase(std::string_view text, std::string_view start);
/// Tells whether a text contains a part.
bool contains(std::string_view text, std::string_view part);

/// Replaces Greek letters by the Latin ones in atom names (Cα is CA), raised and lowered digits by digits,
/// primes by ' and the many dashes by -. Capital delta, which means "difference", remains.
std::string withLatinLetters(std::string_view text);

/// Returns the name of a file without its folder; empty if it ends in "/".
std::string baseName(const std::string& path);

/// Returns "a.str" or "a.str, chain A": how a message names a chain of a file. Long names are cut.
std::string chainOfFile(const std::string& file, const std::string& chain);

/// Takes away the mark that editors of Windows put before UTF-8.
void dropByteOrderMark(std::string& text);

/// Returns the characters at the start of a text that belong together.
std::string_view leading(std::string_view text, bool (*belongs)(char));

/// Removes white space (and control characters) at the ends.
std::string_view trimmed(std::string_view text);

/// Makes text from outside (names of files too) one line and safe to show. Every text goes through here
/// before it reaches a terminal, a message or a file that we write. Control characters (C0, C1 and delete),
/// which a terminal would obey, those that turn the direction of writing and invisible ones become
/// `inPlaceOfControl`. Each byte that is not UTF-8 becomes U+FFFD.
std::string shown(std::string_view text, char inPlaceOfControl = '?');

/// Makes text safe to show as `shown` does, and keeps its line feeds.
std::string shownLines(std::string_view text);

/// Makes text safe to show, with blanks for control characters; cuts a text above `most` bytes, with "...".
std::string printable(std::string_view text, std::size_t most = 200);

/// Returns the first bytes of a text, at most so many, without half a character at the cut.
std::string_view firstBytes(std::string_view text, std::size_t most);

/// Makes a cell of a CSV file (RFC 4180): shown with its line feeds, in quotes if needed, also for a
/// spreadsheet that splits at semicolons. A spreadsheet would run text that begins with =, +, -, @ or a tab
/// as a formula. Such a text gets an apostrophe before it, unless it is a number ("-3", "-3A") or a lone mark
/// ("-"). A text that already has such an apostrophe gets another, so that the text can be recovered.
std::string csvCell(std::string_view text);
/// Removes this apostrophe from the text of a cell; its quotes must be removed already.
std::string_view withoutFormulaMark(std::string_view cell);

/// Returns the next line of `text` from `pos` on, without its line end (LF, CR LF or CR); `pos` moves after
/// it. Nothing at the end of the text.
std::optional<std::string_view> nextLine(std::string_view text, std::size_t& pos);

/// Reads a whole decimal number that fits an int: an optional sign and digits, nothing else.
std::optional<int> toInteger(std::string_view text);

/// Returns a shift as a plain decimal number ("8.25", "-0.3"), from a text such as "+8.25" or "8.25e0".
/// Nothing if it is not a finite number or has more text after it.
std::optional<std::string> toDecimal(std::string_view text);

/// "5, 14, 30 and 12 more".
std::string enumerated(const std::vector<std::string>& items, std::size_t most = 12);

/// "line 3", "lines 3 to 5".
std::string lineRange(std::size_t first, std::size_t last);

/// "1 shift", "2 shifts".
std::string counted(std::size_t count, const std::string& one, const std::string& many);

/// Returns the CRC-32, as gzip has it, of the bytes that went before and these. `sum` is that of the bytes
/// before, 0 for none.
std::uint32_t crc32(std::uint32_t sum, std::string_view bytes);

/// Adds `text` and the items to the notes, unless there are no items.
void addNote(const std::string& text, const std::vector<std::string>& items, std::vector<std::string>& notes);

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
