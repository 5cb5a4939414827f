#include "formats/star_document.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include <gemmi/cif.hpp>

#include "formats/star_text.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

using gemmi::cif::Block;
using gemmi::cif::Document;
using gemmi::cif::Item;
using gemmi::cif::ItemType;

namespace {

// Each word costs the parser 32 bytes and more; the largest BMRB entries have a tenth of this.
constexpr std::size_t kMostWords = 20000000;
constexpr const char* kSyntaxRemedy = "mend the file there, or fetch it again";

bool startsWith(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && equalIgnoringCase(text.substr(0, start.size()), start);
}

[[noreturn]] void throwSyntaxError(const std::string& name, const StarText& star,
                                   const tao::pegtl::parse_error& error) {
  const std::size_t offset = error.positions().front().byte;
  const TextPlace place = star.placeOf(offset);
  const bool isAtEnd = offset >= star.text().size();
  throw FileError(name, place.line,
                  "not valid STAR at column " + std::to_string(place.column) + ": " +
                      printable(error.message()) + (isAtEnd ? " (the file ends too early)" : ""),
                  kSyntaxRemedy);
}

/// Whether any tag of the item fits.
template <class Fits>
bool anyTag(const Item& item, Fits fits) {
  if (item.type == ItemType::Pair) return fits(item.pair[0]);
  if (item.type != ItemType::Loop) return false;
  for (const std::string& tag : item.loop.tags)
    if (fits(tag)) return true;
  return false;
}

template <class Fits>
std::vector<StarTable> tablesWhere(const Block& frame, Fits fits) {
  std::vector<StarTable> tables;
  bool pairsTaken = false;
  for (const Item& item : frame.items) {
    if (!anyTag(item, fits)) continue;
    if (item.type == ItemType::Loop) {
      if (!item.loop.values.empty()) tables.emplace_back(item.loop);
    } else if (!pairsTaken) {
      tables.emplace_back(frame);
      pairsTaken = true;
    }
  }
  return tables;
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

bool hasAny(const Block& block, std::initializer_list<std::string_view> tagStarts) {
  for (const Block* frame : framesOf(block))
    for (const std::string_view start : tagStarts)
      if (!tablesOf(*frame, start).empty()) return true;
  return false;
}

/// Whether a data block is an entry of its own, with molecules and shifts.
bool isEntry(const Block& block) {
  return hasAny(block, {"_Entity.", "_nef_sequence.", "_Mol_polymer_class", "_Mol_residue_sequence"}) &&
         hasAny(block, {"_Atom_chem_shift.", "_Chem_shift_value", "_nef_chemical_shift."});
}

}  // namespace

bool isStar(std::string_view text) {
  const std::string word = firstWord(text);
  for (const std::string_view start : {"data_", "save_", "loop_", "global_", "_"})
    if (word.rfind(start, 0) == 0) return true;
  return false;
}

Document parseStar(std::string_view text, const std::string& name) {
  const StarText star(text);
  if (star.words() > kMostWords)
    throw FileError(name, 0, "has more than " + std::to_string(kMostWords) + " words",
                    "give the part with the sequence and the shifts only");
  Document document;
  document.source = name;
  // Repeated tags and frames are let pass: one in a part that is of no interest must not stop the import.
  tao::pegtl::memory_input<> input(star.text(), name);
  try {
    gemmi::cif::parse_input(document, input);
  } catch (const tao::pegtl::parse_error& error) {
    throwSyntaxError(name, star, error);
  }
  return document;
}

std::vector<Document> entriesOf(Document document) {
  std::vector<Document> entries;
  if (std::count_if(document.blocks.begin(), document.blocks.end(), isEntry) < 2) {
    entries.push_back(std::move(document));
    return entries;
  }
  for (Block& block : document.blocks) {
    if (!isEntry(block)) continue;
    Document& entry = entries.emplace_back();
    entry.blocks.push_back(std::move(block));
  }
  return entries;
}

std::size_t StarTable::column(std::string_view tag) const {
  const std::size_t count = rowsOf != nullptr ? rowsOf->tags.size() : pairsOf->items.size();
  for (std::size_t i = 0; i < count; ++i) {
    if (rowsOf == nullptr && pairsOf->items[i].type != ItemType::Pair) continue;
    if (equalIgnoringCase(rowsOf != nullptr ? rowsOf->tags[i] : pairsOf->items[i].pair[0], tag)) return i;
  }
  return kAbsent;
}

std::size_t StarTable::columnOfAny(const std::vector<std::string_view>& tags) const {
  for (const std::string_view tag : tags)
    if (const std::size_t index = column(tag); index != kAbsent) return index;
  return kAbsent;
}

std::string StarTable::text(std::size_t row, std::size_t column) const {
  if (column == kAbsent) return {};
  const std::string& raw =
      rowsOf != nullptr ? rowsOf->values[row * rowsOf->tags.size() + column] : pairsOf->items[column].pair[1];
  const std::string value = gemmi::cif::as_string(raw);
  const std::string_view core = trimmed(value);
  return core == "." || core == "?" ? std::string() : std::string(core);
}

std::vector<StarTable> tablesWith(const Block& frame, std::string_view tag) {
  return tablesWhere(frame, [tag](const std::string& other) { return equalIgnoringCase(other, tag); });
}

std::vector<StarTable> tablesOf(const Block& frame, std::string_view tagStart) {
  return tablesWhere(frame, [tagStart](const std::string& other) { return startsWith(other, tagStart); });
}

std::string frameValue(const Block& frame, std::string_view tag) {
  const StarTable pairs(frame);
  return pairs.text(0, pairs.column(tag));
}

std::vector<const Block*> framesOf(const Block& block) {
  std::vector<const Block*> frames = {&block};
  for (const Item& item : block.items)
    if (item.type == ItemType::Frame) frames.push_back(&item.frame);
  return frames;
}

std::vector<const Block*> framesOf(const Document& document) {
  std::vector<const Block*> frames;
  for (const Block& block : document.blocks)
    for (const Block* frame : framesOf(block)) frames.push_back(frame);
  return frames;
}

std::string withoutDollar(std::string text) {
  if (!text.empty() && text.front() == '$') text.erase(0, 1);
  return text;
}

}  // namespace zorvela
