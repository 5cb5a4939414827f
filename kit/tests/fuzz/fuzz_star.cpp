// Fuzzes the import with one input file, the STAR path above all: the pass in front of the parser, the
// readers, the choice of chains and lists, and the table that comes of it.
//
// Beside crashes and sanitizer reports it finds: bytes lost in the pass, errors of another kind than those
// for the user or of more than one line, a protein that contradicts itself, and a table whose import is
// another table.
#include <cstddef>      // for std::size_t
#include <cstdint>      // for std::uint8_t
#include <cstdlib>      // for std::abort
#include <sstream>      // for std::ostringstream
#include <string>       // for std::string
#include <string_view>  // for std::string_view

#include "chain_shifts.h"
#include "common.h"
#include "residues.h"
#include "shift_file.h"
#include "star_text.h"

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

// The pass only ever adds bytes.
void checkPass(const std::string& original) {
  const kit::StarText star(original);
  std::size_t at = 0;
  for (const char c : star.text())
    if (at < original.size() && c == original[at]) ++at;
  check(at == original.size());
  const kit::TextPlace end = star.placeOf(star.text().size());
  std::size_t lines = 1;
  for (const char c : original) lines += c == '\n' ? 1 : 0;
  check(end.line == lines);
}

void checkProtein(const kit::Protein& protein) {
  check(!protein.sequence.empty() && !protein.shifts.empty());
  check(protein.numbers.size() == protein.sequence.size());
  for (std::size_t i = 0; i < protein.shifts.size(); ++i) {
    const kit::Shift& shift = protein.shifts[i];
    check(shift.resid >= 1 && static_cast<std::size_t>(shift.resid) <= protein.sequence.size());
    check(kit::atomRank(shift.atom) < kit::atomRank(""));
    check(!shift.shift.empty());
    check(i == 0 || kit::isBefore(protein.shifts[i - 1], shift));
  }
  for (const std::string& note : protein.notes) check(note.find('\n') == std::string::npos);
}

std::string tableText(const kit::Protein& protein) {
  std::ostringstream out;
  GDB table = kit::toTable(protein);
  table.writeTable(out);
  return out.str();
}

// The import of an imported table is the same table.
void checkRoundTrip(const kit::Protein& protein) {
  const std::string text = tableText(protein);
  const auto again = kit::readShiftBytes(text, "again.tab", {});
  check(again.size() == 1);
  check(again.front().sequence == protein.sequence);
  check(tableText(again.front()) == text);
}

void importWith(const std::string& bytes, const kit::ImportOptions& options) {
  try {
    for (const kit::Protein& protein : kit::readShiftBytes(bytes, "input", options)) {
      checkProtein(protein);
      checkRoundTrip(protein);
    }
  } catch (const kit::UserError& error) {
    const std::string_view what = error.what();
    check(!what.empty() && what.size() < 2000 && what.find('\n') == std::string_view::npos);
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  kit::throwInsteadOfExit();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  checkPass(bytes);
  importWith(bytes, {});
  importWith(bytes, {{}, {"all"}});
  return 0;
}
