// Any shift file as proteins: tells the format by content and hands over to the reader for it.
#include "zorvela/read.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "formats/format.h"
#include "formats/input_bytes.h"
#include "formats/star_document.h"
#include "protein/assembly.h"
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

void checkForeign(std::string_view bytes, const std::string& name) {
  for (const Signature& signature : kForeignFiles)
    if (bytes.substr(0, signature.start.size()) == signature.start)
      throw Error(name, 0, std::string("is no shift file but ") + signature.what, kFormatRemedy);
  if (bytes.find('\0') != std::string_view::npos) throw Error(name, 0, "is no text file", kFormatRemedy);
}

/// Drops a byte order mark, and turns the lone CR of old Macintosh files into LF.
void normalise(std::string& text) {
  if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.erase(0, 3);
  if (text.find('\n') == std::string::npos) std::replace(text.begin(), text.end(), '\r', '\n');
}

/// The first word outside comments; empty if there is none.
std::string firstWord(std::string_view text) {
  constexpr std::size_t kMost = 80;
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
    const std::string_view core = trimmed(*line);
    if (core.empty() || core.front() == '#') continue;
    return lower(core.substr(0, std::min(core.find_first_of(" \t"), kMost)));
  }
  return {};
}

bool isStar(std::string_view text) {
  const std::string word = firstWord(text);
  for (const std::string_view start : {"data_", "save_", "loop_", "global_", "_"})
    if (word.rfind(start, 0) == 0) return true;
  return false;
}

std::vector<Protein> readBlocks(const gemmi::cif::Document& document, const std::string& file,
                                const ImportOptions& options) {
  return makeProteins(isNef(document) ? readNef(document, file) : readStar(document, file), file, options);
}

bool hasAny(const gemmi::cif::Block& block, std::initializer_list<std::string_view> tagStarts) {
  for (const gemmi::cif::Block* frame : framesOf(block))
    for (const std::string_view start : tagStarts)
      if (!tablesOf(*frame, start).empty()) return true;
  return false;
}

/// Whether a data block is an entry of its own, with molecules and shifts.
bool isEntry(const gemmi::cif::Block& block) {
  return hasAny(block, {"_Entity.", "_nef_sequence.", "_Mol_polymer_class", "_Mol_residue_sequence"}) &&
         hasAny(block, {"_Atom_chem_shift.", "_Chem_shift_value", "_nef_chemical_shift."});
}

/// Entries that stand one after the other in a file number their molecules alike, so each is read alone.
/// Its name goes in front of those of its chains. Entries without protein shifts are passed over.
std::vector<Protein> readEntries(const gemmi::cif::Document& document, const std::string& file,
                                 const ImportOptions& options) {
  std::vector<Protein> proteins;
  std::vector<std::string> passedOver;
  for (const gemmi::cif::Block& block : document.blocks) {
    if (!isEntry(block)) continue;
    gemmi::cif::Document entry;
    entry.blocks.push_back(block);
    try {
      for (Protein& protein : readBlocks(entry, file, options)) {
        protein.chain = block.name + (protein.chain.empty() ? "" : "_" + protein.chain);
        proteins.push_back(std::move(protein));
      }
    } catch (const Error& error) {
      passedOver.emplace_back(error.what());
    }
  }
  if (proteins.empty()) throw Error(passedOver.front());
  for (const std::string& why : passedOver)
    proteins.front().notes.push_back("a data block is left out: " + printable(why, 300));
  return proteins;
}

std::vector<Protein> readAnyStar(std::string_view text, const std::string& file,
                                 const ImportOptions& options) {
  const gemmi::cif::Document document = parseStar(text, inputName(file));
  const auto entries = std::count_if(document.blocks.begin(), document.blocks.end(), isEntry);
  return entries > 1 ? readEntries(document, file, options) : readBlocks(document, file, options);
}

/// A table is one chain without a name.
std::vector<Protein> readTableAlone(std::string_view text, const std::string& file,
                                    const ImportOptions& options) {
  if (!options.chains.empty() || !options.lists.empty())
    throw Error(inputName(file), 0, "is a shift table, with one chain and one list",
                "leave out --chain and --list for it");
  return {readTable(text, file)};
}

}  // namespace

std::vector<Protein> readShiftFile(const std::string& path, const ImportOptions& options) {
  return readShiftBytes(readBytes(path), path, options);
}

std::vector<Protein> readShiftBytes(std::string bytes, const std::string& file,
                                    const ImportOptions& options) {
  checkForeign(bytes, inputName(file));
  normalise(bytes);
  if (trimmed(bytes).empty()) throw Error(inputName(file), 0, "is empty", "give a file with chemical shifts");
  // A table first: it may begin with remarks of any kind.
  if (!isStar(bytes) && isTable(bytes)) return readTableAlone(bytes, file, options);
  if (isStar(bytes)) return readAnyStar(bytes, file, options);
  return makeProteins(readCsv(bytes, file), file, options);
}

}  // namespace zorvela
