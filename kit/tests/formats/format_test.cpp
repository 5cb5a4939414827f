// The table of formats: each kind of content goes to one reader.
#include "formats/format.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace {

using zorvela::Source;

std::string formatOf(const std::string& bytes) {
  const std::vector<Source> sources = zorvela::sourcesOf(bytes, "f");
  EXPECT_EQ(sources.size(), 1U);
  std::string names;
  for (const zorvela::Format& format : zorvela::kFormats)
    if (names.empty() && format.recognises(sources.at(0))) names = format.name;
  return names;
}

TEST(Formats, AreRecognisedByContent) {
  EXPECT_EQ(formatOf("data_x\n_Atom_chem_shift.Val 5\n"), "NMR-STAR 3");
  EXPECT_EQ(formatOf("save_x\n_Chem_shift_value 5\nsave_\n"), "NMR-STAR 2.1");
  EXPECT_EQ(formatOf("data_x\nsave_y\n_Saveframe_category entry\nsave_\n"), "NMR-STAR 2.1");
  EXPECT_EQ(formatOf("data_x\n_nef_chemical_shift.value 5\n"), "NEF");
  EXPECT_EQ(formatOf("REMARK resid,atom\nVARS RESID\nFORMAT %d\n"), "shift table");
  EXPECT_EQ(formatOf("resid,resname,atom,shift\n"), "CSV");
  EXPECT_EQ(formatOf("FORMAT %d\nVARS RESID\n"), "CSV");  // not below VARS
}

TEST(Formats, TheReaderNamesTheFormat) {
  EXPECT_EQ(zorvela::readSource(zorvela::sourcesOf("data_x _nef_a.b 1", "f").at(0)).format, "NEF");
  // A file that begins as STAR does but is none of the three.
  EXPECT_EQ(zorvela::readSource(zorvela::sourcesOf("data_x _cell.a 1", "f").at(0)).format, "STAR");
}

TEST(Formats, StandInTheDocument) {
  const std::string document = support::readFile(DOCUMENTS "/files.md");
  const std::size_t table = document.find("\n## Formats\n");
  ASSERT_NE(table, std::string::npos);
  const std::string section = document.substr(table, document.find("\n## ", table + 1) - table);
  for (const zorvela::Format& format : zorvela::kFormats)
    EXPECT_NE(section.find(std::string("\n| ") + format.name), std::string::npos) << format.name;
}

}  // namespace
