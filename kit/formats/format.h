// The input formats in one table, and the way from a file's bytes to its raw content.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/shift_model.h"
#include "formats/star/star_document.h"

namespace zorvela {

/// The input of a reader: an entry of a STAR file, or the text of a file that is not STAR.
struct Source {
  std::string file;                ///< how messages name the file
  std::string entry;               ///< name of the entry; empty where the file has only one
  std::string text;                ///< without byte order mark; empty for STAR
  std::vector<std::string> notes;  ///< on the file as a whole
  std::optional<StarEntry> star;   ///< the parsed entry of a STAR file (NMR-STAR, NEF)
  std::shared_ptr<FileWork> work = std::make_shared<FileWork>();  ///< of all entries of the file
};

/// An input format.
struct Format {
  const char* name;                          ///< for remarks and messages: "NMR-STAR 3"
  bool (*recognises)(const Source& source);  ///< by content; asked only if no format above it does
  ShiftFile (*read)(const Source& source);   ///< FileError for a source that cannot be read
};

// Each format has a file of its own for its two functions.
bool isShiftTable(const Source& source);
ShiftFile readShiftTable(const Source& source);
bool isNef(const Source& source);
ShiftFile readNef(const Source& source);
bool isNmrStar2(const Source& source);
ShiftFile readNmrStar2(const Source& source);
bool isNmrStar3(const Source& source);
ShiftFile readNmrStar3(const Source& source);
bool isWordList(const Source& source);
ShiftFile readWordList(const Source& source);
bool isCsv(const Source& source);
ShiftFile readCsv(const Source& source);

/// The formats in the order in which they are tried. The last takes any text.
// clang-format off
inline constexpr Format kFormats[] = {
    {"shift table", isShiftTable, readShiftTable},
    {"NEF", isNef, readNef},
    {"NMR-STAR 2.1", isNmrStar2, readNmrStar2},
    {"NMR-STAR 3", isNmrStar3, readNmrStar3},
    {"assignment list", isWordList, readWordList},
    {"CSV", isCsv, readCsv},
};
// clang-format on

/// Tells whether a shift table has a column of this name.
bool hasColumn(const GDB& table, std::string_view name);

/// Returns the entries of a file, at least one: each of a STAR file with several, otherwise the whole file.
/// FileError for bytes that are not text, for an empty file, for a known format without shifts (zip, PDF
/// ...), and for a file that begins as STAR and is not. `file` is how messages name it.
std::vector<Source> sourcesOf(std::string bytes, const std::string& file);

/// Returns the raw content of a source, by the reader of the first format that recognises it.
ShiftFile readSource(const Source& source);

}  // namespace zorvela
