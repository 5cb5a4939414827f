// Reference tables from a folder and from memory, and what is wrong with those that are damaged.
#include "predict/tables.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <utility>
#include <vector>

#include "made_shift.h"
#include "message_of.h"

#include "support/temp_dir.h"
#include "zorvela/error.h"
#include "zorvela/predict.h"

namespace fs = std::filesystem;

namespace {

using support::readFile;
using Texts = std::map<std::string, std::string>;

Texts madeTables() {
  Texts texts;
  for (const char* name : zorvela::kTableNames)
    texts[name] = readFile((fs::path(MADE_TABLES) / name).string());
  return texts;
}

/// Returns the message on the made tables after a change in one of them.
std::string afterChange(const std::string& name, const std::string& before, const std::string& after) {
  Texts texts = madeTables();
  std::string& text = texts[name];
  const std::size_t at = text.find(before);
  EXPECT_NE(at, std::string::npos) << before;
  text.replace(at, before.size(), after);
  try {
    zorvela::tablesFromTexts(texts);
  } catch (const zorvela::TableError& e) {
    EXPECT_EQ(e.file(), name);
    return e.what();
  }
  return "no error";
}

/// Returns the line of a piece of a made table, with the name of the table: "randcoil.tab:12".
std::string place(const std::string& name, const std::string& piece) {
  const std::string text = madeTables()[name];
  std::size_t line = 1;
  for (std::size_t i = 0; i < text.find(piece); ++i) line += text[i] == '\n' ? 1 : 0;
  return name + ":" + std::to_string(line);
}

class TableFolder : public testing::Test {
 protected:
  TableFolder() { fs::copy(MADE_TABLES, folder); }
  std::string message() const {
    testing::internal::CaptureStderr();
    const std::string text = messageOf([&] { zorvela::tablesFromFolder(folder.string()); });
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    return text;
  }

  const support::TempDir dir;
  const fs::path folder = dir.path();
};

}  // namespace

// --- From a folder ------------------------------------------------------------------------------

TEST_F(TableFolder, LoadsAllSeven) {
  EXPECT_EQ(message(), "no error");
}

TEST_F(TableFolder, NamesTheTableThatIsMissing) {
  for (const char* name : zorvela::kTableNames) {
    fs::rename(folder / name, folder / "away");
    EXPECT_EQ(message(),
              (folder / name).string() +
                  ": cannot be read: No such file or directory; check the name and the permissions");
    fs::rename(folder / "away", folder / name);
  }
}

TEST_F(TableFolder, AFolderIsNoTable) {
  fs::remove(folder / "rcnext.tab");
  fs::create_directory(folder / "rcnext.tab");
  EXPECT_EQ(message().rfind((folder / "rcnext.tab").string() + ": is a folder", 0), 0U) << message();
}

TEST_F(TableFolder, SaysThatThereIsNoSuchFolder) {
  fs::remove_all(folder);
  EXPECT_EQ(message(), folder.string() + ": there is no such folder");
}

TEST_F(TableFolder, ABadFormatItemIsOneLine) {
  std::string text = readFile((folder / "Pro.seq.tab").string());
  text.replace(text.find("FORMAT %s"), 9, "FORMAT %x");
  std::ofstream(folder / "Pro.seq.tab") << text;
  EXPECT_EQ(message(), (folder / "Pro.seq.tab").string() + ":4: Bad format syntax '%x '");
}

TEST_F(TableFolder, ABareKeywordIsOneLine) {
  std::ofstream(folder / "rcadj.tab") << "REMARK\nVARS A\nFORMAT %s\n1\n";
  EXPECT_NE(message().find(": a REMARK or DATA line has nothing after the keyword"), std::string::npos);
}

TEST_F(TableFolder, IsNoLargerThanATableCanBe) {
  const std::string path = (folder / "Pro.seq.tab").string();
  std::ofstream(path, std::ios::app) << std::string(300000, '\n');
  EXPECT_EQ(message(), path + ": is too large for a reference table");
}

// --- From memory --------------------------------------------------------------------------------

TEST(TablesInMemory, PredictAsThoseOfTheFolder) {
  zorvela::Protein protein;
  protein.sequence = "APK";
  protein.numbers = {"1", "2", "3"};
  for (const int resid : {1, 2, 3})
    for (const auto& [atom, shift] :
         std::map<std::string, std::string>{{"HA", "4"}, {"C", "175"}, {"CA", "55"}, {"CB", "32"}})
      protein.shifts.push_back(made::shift(resid, atom, shift));
  const auto fromTexts = zorvela::Predictor(zorvela::tablesFromTexts(madeTables())).predict(protein);
  const auto fromFolder = zorvela::Predictor(zorvela::tablesFromFolder(MADE_TABLES)).predict(protein);
  ASSERT_TRUE(fromTexts.prolines.at(0).pCis.has_value());
  EXPECT_EQ(fromTexts.prolines[0].pCis, fromFolder.prolines.at(0).pCis);
}

TEST(TablesInMemory, MustBeAllSeven) {
  Texts texts = madeTables();
  texts.erase("rcprev.tab");
  EXPECT_EQ(messageOf([&] { zorvela::tablesFromTexts(texts); }), "rcprev.tab: is not among the tables given");
}

// --- Damage -------------------------------------------------------------------------------------

TEST(DamagedTable, IsNamedWithItsLine) {
  struct Case {
    std::string table;
    std::string before;
    std::string after;
    std::string line;  // a piece of the line that is named, if one is
    std::string fault;
  };
  const std::vector<Case> cases = {
      {"sslimit.tab", "CB_MAX", "CB_TOP", "", "has no column CB_MAX"},
      {"rcadj.tab", "FORMAT", "REMARK", "", "has no rows"},
      {"Pro.cs.tab", "   18 ", "   19 ", "   18 ", "index is \"19\", not a shift index"},
      {"randcoil.tab", "\nW ", "\nV ", "W   ", "RESNAME V is given twice"},
      {"randcoil.tab", "120.000", "120,000", "A   ", "N is \"120,000\", not a number"},
      {"sslimit.tab", "A    -4.000    4.000", "A     4.000   -4.000", "A    ", "N_MIN is above N_MAX"},
      {"Pro.seq.tab", "A   0.1", "A   0.2", "", "cis_prev of the 20 residue types adds up to 1.1000, not 1"},
      {"Pro.seq.tab", "A   0.1", "A  -0.1", "A   0.1", "cis_prev is not between 0 and 1"},
      {"rcnext.tab", "G     0.000", "G          ", "G     0.000",
       "does not have a value for each of the 7 columns"}};
  for (const Case& c : cases)
    EXPECT_EQ(afterChange(c.table, c.before, c.after),
              (c.line.empty() ? c.table : place(c.table, c.line)) + ": " + c.fault);
}

TEST(DamagedTable, HasNumbersThatAreNone) {
  for (const std::string bad : {"nan", "inf", "-inf", "1e99", "0x10", "4.0.0"})
    EXPECT_EQ(afterChange("Pro.cs.tab", "24.000", bad),
              place("Pro.cs.tab", "   18 ") + ": avg_cis is \"" + bad + "\", not a number");
  // The inverse of 1e-40 is beyond single precision.
  for (const std::string bad : {"0.000", "-1.000", "1e-40", "1e-99"})
    EXPECT_EQ(afterChange("Pro.cs.tab", "27.000     1.000", "27.000     " + bad),
              place("Pro.cs.tab", "   18 ") + ": std_cis is not above 0");
}

TEST(DamagedTable, LacksAResidueType) {
  for (const char* name :
       {"randcoil.tab", "rcadj.tab", "rcprev.tab", "rcnext.tab", "sslimit.tab", "Pro.seq.tab"})
    EXPECT_EQ(afterChange(name, "\nW ", "\nZ "), std::string(name) + ": has no row for residue type W");
}

TEST(DamagedTable, HasARowThatReplacesAnother) {
  // strtol makes 7 of "7x" and "07", and 0 of a word.
  for (const std::string index : {"07", "7x", "word", "4294967303", "+7"})
    EXPECT_EQ(afterChange("Pro.cs.tab", "   18 ", index + " 1 1 1 1\n   18 "),
              place("Pro.cs.tab", "   18 ") + ": index is \"" + index + "\", not a shift index");
}

TEST(DamagedTable, IsCutInTheMiddleOfALine) {
  for (const char* name : zorvela::kTableNames) {
    Texts texts = madeTables();
    const std::string whole = texts[name];
    const std::size_t last = whole.find_last_not_of(" \n");
    // At each character of the last line: a number that is shorter, or a line with too few values.
    for (std::size_t end = whole.rfind('\n', last) + 2; end <= last + 1; ++end) {
      texts[name] = whole.substr(0, end);
      EXPECT_THROW(zorvela::tablesFromTexts(texts), zorvela::TableError) << name << " cut at " << end;
    }
  }
}

// --- Tables in each other's place -----------------------------------------------------------------

TEST(TableValues, RandomCoilShiftsAndCorrectionsAreToldApart) {
  for (const char* name : {"rcadj.tab", "rcprev.tab", "rcnext.tab"}) {
    Texts texts = madeTables();
    std::swap(texts["randcoil.tab"], texts[name]);
    const std::string message = messageOf([&] { zorvela::tablesFromTexts(texts); });
    EXPECT_NE(message.find(" is 120.000, beyond 100 ppm"), std::string::npos) << message;
  }
}

TEST(TableValues, TwoColumnNamesInEachOthersPlace) {
  EXPECT_EQ(afterChange("randcoil.tab", "N HA C CA CB HN", "N HA C CB CA HN"),
            place("randcoil.tab", "A   120") + ": CA of alanine is below CB, which no peptide has");
}

TEST(TableValues, AValueBeyondAnyShift) {
  EXPECT_EQ(afterChange("randcoil.tab", "120.000", "99999.0"),
            place("randcoil.tab", "A   120") + ": N is 99999.0, beyond 300 ppm");
  EXPECT_NE(afterChange("sslimit.tab", " 4.000", " 99999.0").find(" is 99999.0, beyond 300 ppm"),
            std::string::npos);
}

TEST(TableValues, TheShippedTablesHaveTheirFingerprint) {
  EXPECT_EQ(zorvela::statisticsOf(zorvela::tablesFromFolder(SHIPPED_TABLES)).fingerprint,
            zorvela::kShippedTables);
}
