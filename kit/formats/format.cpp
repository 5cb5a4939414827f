#include "formats/format.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "formats/star/star_document.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kFormatRemedy =
    "give NMR-STAR, NEF, text with a header line (resid,resname,atom,shift) or the program's shift table";

struct Signature {
  std::string_view start;
  const char* what;
};

// Files that people give by mistake, by how they begin.
constexpr Signature kForeignFiles[] = {
    {"PK\x03\x04", "a zip archive or spreadsheet (xlsx, ods); save the sheet as CSV"},
    {"\xD0\xCF\x11\xE0", "a spreadsheet (xls); save the sheet as CSV"},
    {"%PDF", "a PDF file"},
    {"\xFF\xFE", "text in UTF-16; save it as UTF-8"},
    {"\xFE\xFF", "text in UTF-16; save it as UTF-8"},
    {"BZh", "packed with bzip2; unpack it first"},
    {"\xFD"
     "7zXZ",
     "packed with xz; unpack it first"},
    {"{", "a JSON file"},
    {"<", "an HTML or XML file, perhaps the error page of a web server"},
    {"HEADER ", "a PDB coordinate file"},
    {"ATOM  ", "a PDB coordinate file"},
    {">", "a FASTA sequence"},
};

/// UTF-16 without a byte order mark: every other byte of ASCII is zero.
bool isWide(std::string_view bytes) {
  if (bytes.size() < 4) return false;
  const auto isZero = [&](std::size_t i) { return bytes[i] == '\0'; };
  return isZero(0) != isZero(1) && isZero(0) == isZero(2) && isZero(1) == isZero(3);
}

void checkForeign(std::string_view bytes, const std::string& file) {
  for (const Signature& signature : kForeignFiles)
    if (bytes.substr(0, signature.start.size()) == signature.start)
      throw FileError(file, 0, std::string("is no shift file but ") + signature.what, kFormatRemedy);
  if (isWide(bytes))
    throw FileError(file, 0, "is no shift file but text in UTF-16; save it as UTF-8", kFormatRemedy);
  if (bytes.find('\0') != std::string_view::npos) throw FileError(file, 0, "is no text file", kFormatRemedy);
}

/// Drops a byte order mark and turns the lone CR of old files into LF.
void normalise(std::string& text) {
  if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.erase(0, 3);
  if (text.find('\n') == std::string::npos) std::replace(text.begin(), text.end(), '\r', '\n');
}

/// The line of the first word.
std::size_t firstLineOf(std::string_view text) {
  const std::size_t word = std::min(text.find_first_not_of(" \t\r\n"), text.size());
  return 1 + static_cast<std::size_t>(
                 std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(word), '\n'));
}

}  // namespace

std::vector<Source> sourcesOf(std::string bytes, const std::string& file) {
  checkForeign(bytes, file);
  normalise(bytes);
  if (trimmed(bytes).empty()) throw FileError(file, 0, "is empty", "give a file with chemical shifts");
  std::vector<Source> sources;
  std::vector<std::string> notes;
  if (!isStar(bytes)) {
    std::string lists = starWithin(bytes);
    if (lists.empty()) {
      sources.push_back({file, {}, std::move(bytes), {}, std::nullopt});
      return sources;
    }
    notes.push_back("the file holds more than shifts; the shift list in it is read (line " +
                    std::to_string(firstLineOf(lists)) + ")");
    bytes = std::move(lists);
  }
  const auto star = parseStar(std::move(bytes), file);
  notes.insert(notes.end(), star->notes.begin(), star->notes.end());
  for (StarEntry& entry : entriesOf(star)) {
    std::string name = entry.name;
    sources.push_back({file, std::move(name), {}, {}, std::move(entry)});
  }
  sources.front().notes = std::move(notes);
  return sources;
}

ShiftFile readSource(const Source& source) {
  const auto* format = std::find_if(std::begin(kFormats), std::end(kFormats) - 1,
                                    [&](const Format& candidate) { return candidate.recognises(source); });
  ShiftFile file = format->read(source);
  if (file.format.empty()) file.format = format->name;
  file.notes.insert(file.notes.begin(), source.notes.begin(), source.notes.end());
  return file;
}

}  // namespace zorvela
