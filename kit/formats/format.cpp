#include "formats/format.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "formats/foreign_text.h"
#include "formats/star/star_document.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr const char* kFormatRemedy =
    "give NMR-STAR, NEF, text with a header line (resid,resname,atom,shift) or the program's shift table";

/// Drops a byte order mark and turns the lone CR of old files into LF.
void normalise(std::string& text) {
  dropByteOrderMark(text);
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
  refuseForeign(bytes, file, Wanted::shifts, kFormatRemedy);
  normalise(bytes);
  if (trimmed(bytes).empty()) throw FileError(file, 0, "is empty", "give a file with chemical shifts");
  const auto work = std::make_shared<FileWork>();
  std::vector<Source> sources;
  std::vector<std::string> notes;
  if (!isStar(bytes)) {
    std::string lists = starWithin(bytes);
    if (lists.empty()) {
      sources.push_back({file, {}, std::move(bytes), {}, std::nullopt, work});
      return sources;
    }
    notes.push_back(
        "the file holds more than shifts; the sequence and the shift list in it are read (from line " +
        std::to_string(firstLineOf(lists)) + ")");
    bytes = std::move(lists);
  }
  const auto star = parseStar(std::move(bytes), file);
  notes.insert(notes.end(), star->notes.begin(), star->notes.end());
  for (StarEntry& entry : entriesOf(star)) {
    std::string name = nameOf(entry.name, notes);
    sources.push_back({file, std::move(name), {}, {}, std::move(entry), work});
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
