// STAR text as tables: which rows are whole, where frames end, what is an error and what a note.
#include "formats/star/star_document.h"

#include <gtest/gtest.h>

#include "message_of.h"

namespace {

using Texts = std::vector<std::string>;
using zorvela::StarFrame;
using zorvela::StarTable;

std::shared_ptr<const zorvela::StarFile> parsed(const std::string& text) {
  return zorvela::parseStar(text, "file.str");
}

/// The rows of the first loop of shifts, cells joined by blanks.
Texts rowsOf(const zorvela::StarFile& file) {
  Texts rows;
  const StarTable table = zorvela::tablesOf(StarFrame(file, 0), "_Atom_chem_shift.").at(0);
  for (std::size_t row = 0; row < table.rows(); ++row) {
    std::string cells;
    for (const std::string tag : {"Seq_ID", "Atom_ID", "Val"})
      cells += (cells.empty() ? "" : " ") + table.column("_Atom_chem_shift." + tag).text(row);
    rows.push_back(cells);
  }
  return rows;
}

const std::string kLoop = "loop_ _Atom_chem_shift.Seq_ID _Atom_chem_shift.Atom_ID _Atom_chem_shift.Val\n";

std::string errorOf(const std::string& text) {
  return messageOf([&] { rowsOf(*parsed(text)); });
}

TEST(StarDocument, TablesAreLoopsOrSingleTags) {
  const auto file = parsed("save_x _Entity.b 1 _Entity.c . loop_ _Entity.b _D.e 5 ? 6 'f g' stop_ save_");
  ASSERT_EQ(file->frames.size(), 1U);
  const StarFrame frame(*file, 0);
  EXPECT_EQ(frame.name(), "x");
  const auto tables = zorvela::tablesOf(frame, "_entity.B");
  ASSERT_EQ(tables.size(), 2U);
  EXPECT_EQ(tables[0].rows(), 1U);
  EXPECT_EQ(tables[0].column("_Entity.b").text(0), "1");
  EXPECT_EQ(tables[0].column("_Entity.c").text(0), "");
  EXPECT_EQ(tables[1].rows(), 2U);
  EXPECT_EQ(tables[1].column("_d.e").text(1), "f g");
  EXPECT_EQ(tables[1].column("_d.e").text(0), "");
  EXPECT_EQ(tables[1].column("_none").text(0), "");
  EXPECT_EQ(tables[1].column("_D.e", "_Entity.b").text(0), "5");
  EXPECT_EQ(tables[1].column("_D.e", "_Entity.b").text(1), "f g");
  EXPECT_TRUE(file->notes.empty());
}

TEST(StarDocument, RowsMayShareALineOrBeWrapped) {
  const Texts three = {"1 CA 52", "2 CA 63", "3 CA 45"};
  for (const char* body :
       {"1 CA 52\n2 CA 63\n3 CA 45", "1 CA 52 2 CA 63 3 CA 45", "1 CA\n52\n2 CA\n63\n3 CA\n45",
        "1 CA 52\n2\nCA 63\n3 CA 45", "1 CA 52 2\nCA 63 3 CA\n45", "1\nCA\n52\n2\nCA\n63\n3\nCA\n45",
        "1 CA\n;52\n;\n2 CA 63\n3 CA 45"}) {
    const auto file = parsed(kLoop + body + "\nstop_");
    EXPECT_EQ(rowsOf(*file), three) << body;
    EXPECT_TRUE(file->notes.empty()) << body;
  }
}

TEST(StarDocument, ABadRowIsLeftOutWithItsLine) {
  const auto last = parsed(kLoop + "1 CA 52\n2 CA 63\n3 CA\nstop_");
  EXPECT_EQ(rowsOf(*last), (Texts{"1 CA 52", "2 CA 63"}));
  EXPECT_EQ(last->notes, Texts{"line 4: 2 values for the 3 columns of _Atom_chem_shift; ignored"});
  const auto middle = parsed(kLoop + "1 CA 52\n2 63\n3 CA 45\n");
  EXPECT_EQ(rowsOf(*middle), (Texts{"1 CA 52", "3 CA 45"}));
  EXPECT_EQ(middle->notes, Texts{"line 3: 2 values for the 3 columns of _Atom_chem_shift; ignored"});
}

TEST(StarDocument, AFullCountOfValuesHidesNoBadRows) {
  // One value missing and one left over: every row between them would be read one place off.
  std::string text = kLoop + "1 63\n";
  Texts expected;
  for (int i = 2; i < 40; ++i) {
    text += std::to_string(i) + " CA 52\n";
    expected.push_back(std::to_string(i) + " CA 52");
  }
  const auto file = parsed(text + "40 CA 52 1\n");
  EXPECT_EQ(rowsOf(*file), expected);
  EXPECT_EQ(file->notes, (Texts{"line 2: 2 values for the 3 columns of _Atom_chem_shift; ignored",
                                "line 41: 4 values for the 3 columns of _Atom_chem_shift; ignored"}));
}

TEST(StarDocument, WhereNoLineShowsTheBadRowTheLoopIsNotRead) {
  EXPECT_EQ(
      errorOf(kLoop + "1 CA 52 2 CA 63 3 CA\nstop_"),
      "file.str:2: 8 values for the 3 columns of _Atom_chem_shift; give each row one value for each column, "
      "or fetch the file again");
  const auto unread = parsed(
      "data_x\nloop_\n_nef_program_script.a\n_nef_program_script.b\n_c\n\nSCRIPT UNDEFINED\n"
      "stop_\n" +
      kLoop + "1 CA 52");
  EXPECT_EQ(rowsOf(*unread), Texts{"1 CA 52"});
  EXPECT_EQ(unread->notes,
            Texts{"line 7: 2 values for the 3 columns of _nef_program_script; the loop is not used"});
}

TEST(StarDocument, WhatLeavesAShiftOpenIsAnError) {
  const std::string remedy = "; fix the file there, or fetch it again";
  EXPECT_EQ(errorOf("_Atom_chem_shift.Seq_ID _Atom_chem_shift.Val 1 52\n"),
            "file.str:1: not valid STAR: _Atom_chem_shift.Seq_ID has no value" + remedy);
  EXPECT_EQ(errorOf("_Atom_chem_shift.Val 1\n52 53\n"),
            "file.str:2: not valid STAR: 2 values without a tag" + remedy);
  EXPECT_EQ(errorOf(kLoop + "1 'CA 52\n"),
            "file.str:2: not valid STAR: a quote begins in column 3 and is not closed on its line" + remedy);
  EXPECT_EQ(errorOf("_a\n;text\n"),
            "file.str:2: not valid STAR: a text field begins here and has no end" + remedy);
}

TEST(StarDocument, WhatNobodyReadsIsANote) {
  const auto file = parsed("_a 'b\n_c _d 1 2\n" + kLoop + "1 CA 52\nstop_ 3\n");
  EXPECT_EQ(rowsOf(*file), Texts{"1 CA 52"});
  EXPECT_EQ(file->notes, (Texts{"line 1: a quote begins in column 4 and is not closed on its line",
                                "line 2: _c has no value", "line 2: 1 value without a tag; ignored",
                                "line 5: 1 value without a tag; ignored"}));
}

}  // namespace
