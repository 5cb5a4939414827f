// Fuzzes the import with one input file, the STAR path above all: the pass in front of the parser, the
// readers, the choice of chains and lists, and the table that comes of it.
//
// Beside crashes and sanitizer reports it finds: bytes lost in the pass, errors of another kind than those
// for the user or of more than one line, a protein that contradicts itself, and a table whose import is
// another table.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

#include "formats/star_text.h"
#include "predict/tables.h"
#include "protein/nomenclature.h"
#include "protein/shifts.h"
#include "zorvela/error.h"
#include "zorvela/read.h"

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

// The pass only ever adds bytes.
void checkPass(const std::string& original) {
  const zorvela::StarText star(original);
  std::size_t at = 0;
  for (const char c : star.text())
    if (at < original.size() && c == original[at]) ++at;
  check(at == original.size());
  const zorvela::TextPlace end = star.placeOf(star.text().size());
  std::size_t lines = 1;
  for (const char c : original) lines += c == '\n' ? 1 : 0;
  check(end.line == lines);
}

void checkProtein(const zorvela::Protein& protein) {
  check(!protein.sequence.empty() && !protein.shifts.empty());
  check(protein.numbers.size() == protein.sequence.size());
  for (std::size_t i = 0; i < protein.shifts.size(); ++i) {
    const zorvela::Shift& shift = protein.shifts[i];
    check(shift.resid >= 1 && static_cast<std::size_t>(shift.resid) <= protein.sequence.size());
    check(zorvela::atomRank(shift.atom) < zorvela::atomRank(""));
    check(!shift.shift.empty());
    check(i == 0 || zorvela::isBefore(protein.shifts[i - 1], shift));
  }
  for (const std::string& note : protein.notes) check(note.find('\n') == std::string::npos);
}

std::string tableText(const zorvela::Protein& protein) {
  std::ostringstream out;
  GDB table = zorvela::toTable(protein);
  table.writeTable(out);
  return out.str();
}

// The import of an imported table is the same table.
void checkRoundTrip(const zorvela::Protein& protein) {
  const std::string text = tableText(protein);
  const auto again = zorvela::readShiftBytes(text, "again.tab", {});
  check(again.size() == 1);
  check(again.front().sequence == protein.sequence);
  check(tableText(again.front()) == text);
}

void importWith(const std::string& bytes, const zorvela::ImportOptions& options) {
  try {
    for (const zorvela::Protein& protein : zorvela::readShiftBytes(bytes, "input", options)) {
      checkProtein(protein);
      checkRoundTrip(protein);
    }
  } catch (const zorvela::Error& error) {
    const std::string_view what = error.what();
    check(!what.empty() && what.size() < 2000 && what.find('\n') == std::string_view::npos);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  checkPass(bytes);
  importWith(bytes, {});
  importWith(bytes, {{}, {"all"}});
  return 0;
}
