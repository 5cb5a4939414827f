// The three forms of the results, character by character.
#include "zorvela/report.h"

#include <gtest/gtest.h>

#include <limits>
#include <regex>
#include <sstream>

#include <nlohmann/json.hpp>

#include "zorvela/error.h"
#include "zorvela/version.h"

namespace {

using zorvela::Call;

zorvela::ProlineResult cisProline() {
  zorvela::ProlineResult proline;
  proline.position = 17;
  proline.number = "117";
  proline.previous = "K";
  proline.previousNumber = "116";
  proline.next = "N";
  proline.nextNumber = "118";
  proline.previousCount = 6;
  proline.count = 4;
  proline.nextCount = 5;
  proline.cgShift = 24.31F;
  proline.pCis = 0.999F;
  proline.pCisNorm = 0.98125F;
  proline.call = Call::cis;
  proline.cisFlag = false;
  return proline;
}

zorvela::ProlineResult lastProline() {
  zorvela::ProlineResult proline;
  proline.position = 40;
  proline.number = "140";
  proline.previous = "c";
  proline.previousNumber = "139";
  proline.previousCount = 0;
  proline.count = 1;
  proline.reason = zorvela::reason::kLastResidue;
  return proline;
}

/// One chain with two prolines, and a file that could not be read.
zorvela::RunReport sample() {
  zorvela::ProteinResult protein;
  protein.file = "a.str";
  protein.chain = "A";
  protein.list = "1";
  protein.length = 40;
  protein.shiftCount = 200;
  protein.notes = {"a \"note\""};
  protein.asides = {"a further note"};
  protein.prolines = {cisProline(), lastProline()};
  const float unknown = std::numeric_limits<float>::quiet_NaN();
  protein.offsets = {{"CA", 1.5F, 0.25F, 20, true, {}},
                     {"CB", -0.25F, 0.25F, 20, false, {}},
                     {"HA", 0.5F, 0.25F, 20, true, {}},
                     {"C", unknown, 0.25F, 20, false, {}}};
  zorvela::RunReport report;
  report.tables = "tab";
  report.files = {{"a.str", {protein}, ""}, {"b,c.str", {}, "b,c.str:3: no shifts; add some"}};
  return report;
}

/// As where the 13C axis was corrected, and P117 called cis for it.
void correct(zorvela::RunReport& report) {
  zorvela::ProteinResult& protein = report.files[0].proteins[0];
  protein.correction = "13C is 1.5 ppm too high";
  protein.offsets[0].correctedBy = 1.5F;
  protein.prolines[0].pCisNormAsReferenced = 0.25F;
  protein.prolines[0].callAsReferenced = Call::undecided;
}

template <class Write>
std::string written(Write write, const zorvela::RunReport& report, const zorvela::ReportStyle& style = {}) {
  std::ostringstream out;
  write(report, style, out);
  return out.str();
}

}  // namespace

TEST(ReportFormats, AreFoundByName) {
  for (const zorvela::ReportFormat& format : zorvela::reportFormats()) {
    std::ostringstream out;
    zorvela::writeReport(format.name, sample(), {}, out);
    EXPECT_EQ(out.str(), written(format.write, sample()));
  }
  std::ostringstream out;
  EXPECT_THROW(zorvela::writeReport("xml", sample(), {}, out), zorvela::Error);
}

TEST(ReportTable, ShowsProlinesOffsetsErrorsAndASummary) {
  EXPECT_EQ(written(zorvela::writeTable, sample()),
            "   File   Chain  Before  Proline  After  Shifts  CG      P_CIS  P_CIS_NORM  Call\n"
            "*  a.str  A      K116    P117     N118   6 4 5   24.310  0.999  0.981       cis\n"
            "   a.str  A      c139    P140     -      0 1 -   -       -      -           - (last residue)\n"
            "\n"
            "Referencing offsets (ppm); ! a correction is recommended\n"
            "   File   Chain  Residues  Shifts  CA      CB      HA      C'\n"
            "   a.str  A      40        200     1.500!  -0.250  0.500!  -\n"
            "\n"
            "Not predicted\n"
            "   b,c.str:3: no shifts; add some\n"
            "\n"
            "2 prolines in 1 chain of 1 file: 1 cis (*), 0 trans, 0 undecided (?), 1 without a prediction\n"
            "cis: P_CIS_NORM at least 0.5; trans: at most 0.05; undecided: between\n");
}

TEST(ReportTable, MarksCisInColourAndUndecidedWithoutIt) {
  const std::string cells = "  a.str  A      K116    P117     N118   6 4 5   24.310  0.999  0.981       ";
  zorvela::RunReport report = sample();
  std::string text = written(zorvela::writeTable, report, {true});
  EXPECT_NE(text.find("\n\033[1;35m*" + cells + "cis\033[0m\n   a.str"), std::string::npos);
  EXPECT_EQ(text.find('\033', text.find("\033[0m") + 1), std::string::npos);
  report.files[0].proteins[0].prolines[0].call = Call::undecided;
  text = written(zorvela::writeTable, report, {true});
  EXPECT_NE(text.find("\n?" + cells + "undecided\n"), std::string::npos);
}

TEST(ReportTable, NamesTheListWhereAChainHasSeveral) {
  zorvela::RunReport report = sample();
  zorvela::ProteinResult second = report.files[0].proteins[0];
  second.list = "2";
  second.prolines.resize(1);
  report.files[0].proteins.push_back(second);
  const std::string text = written(zorvela::writeTable, report);
  EXPECT_EQ(
      text.substr(0, text.find("\n\n")),
      "   File   Chain  List  Before  Proline  After  Shifts  CG      P_CIS  P_CIS_NORM  Call\n"
      "*  a.str  A      1     K116    P117     N118   6 4 5   24.310  0.999  0.981       cis\n"
      "   a.str  A      1     c139    P140     -      0 1 -   -       -      -           - (last residue)\n"
      "*  a.str  A      2     K116    P117     N118   6 4 5   24.310  0.999  0.981       cis");
  EXPECT_NE(text.find("\n   a.str  A      2     40        200     1.500!"), std::string::npos);
}

TEST(ReportTable, TheFolderOfAllFilesIsSaidOnce) {
  zorvela::RunReport report = sample();
  const auto moved = [&report](std::size_t i, const std::string& file) {
    report.files[i].file = file;
    for (zorvela::ProteinResult& protein : report.files[i].proteins) protein.file = file;
  };
  const auto start = [&report] {
    const std::string text = written(zorvela::writeTable, report);
    return text.substr(0, text.find("  Chain"));
  };
  moved(0, "lab/data/a.str");
  moved(1, "lab/data2/b.str");
  EXPECT_EQ(start(), "Files in lab/\n\n   File      ");
  moved(1, "lab/data/ab.str");
  EXPECT_EQ(start(), "Files in lab/data/\n\n   File ");
  moved(1, "b.str");
  EXPECT_EQ(start(), "   File          ");
  moved(1, "-");
  EXPECT_EQ(start(), "   File          ");
  report.files.pop_back();
  EXPECT_EQ(start(), "   File          ");
}

TEST(ReportTable, WithoutAProteinThereIsNoEmptyTable) {
  zorvela::RunReport report;
  report.files = {{"b", {}, "b: is empty"}};
  EXPECT_EQ(written(zorvela::writeTable, report), "\nNot predicted\n   b: is empty\n");
}

TEST(ReportCsv, HasARowForEachProlineAndEachError) {
  EXPECT_EQ(
      written(zorvela::writeCsv, sample()),
      "file,chain,list,resid,position,prev,next,cs_cnt_prev,cs_cnt,cs_cnt_next,cg_shift,p_cis,p_cis_norm,"
      "call,reason,offset_ca,offset_cb,offset_ha,offset_c,to_correct,corrected_ca,corrected_cb,corrected_ha,"
      "corrected_c,strongest,next_shift,cis_flag,p_cis_norm_as_referenced,call_as_referenced\n"
      "a.str,A,1,117,17,K,N,6,4,5,24.31,0.999,0.98125,cis,,1.5,-0.25,0.5,,CA HA,,,,,,,no,,\n"
      "a.str,A,1,140,40,c,,0,1,,,,,none,last residue,1.5,-0.25,0.5,,CA HA,,,,,,,,,\n"
      "\"b,c.str\",,,,,,,,,,,,,error,\"b,c.str:3: no shifts; add some\",,,,,,,,,,,,,,\n");
}

TEST(ReportCsv, HoldsWhatWasTakenAway) {
  zorvela::RunReport report = sample();
  correct(report);
  const std::string text = written(zorvela::writeCsv, report);
  EXPECT_NE(text.find(",CA HA,1.5,,,,,,no,0.25,undecided\n"), std::string::npos) << text;
}

TEST(ReportTable, SaysFirstWhatWasCorrectedAndMarksCallsThatDependOnIt) {
  zorvela::RunReport report = sample();
  report.files.pop_back();
  correct(report);
  const std::string text = written(zorvela::writeTable, report);
  EXPECT_EQ(
      text.substr(0, text.find("   a.str", 200)),
      "13C is 1.5 ppm too high\n\n"
      "   File   Chain  Before  Proline  After  Shifts  CG      P_CIS  P_CIS_NORM  As referenced  Call\n"
      "*  a.str  A      K116    P117     N118   6 4 5   24.310  0.999  0.981       0.250          cis "
      "(as referenced undecided)\n");
}

TEST(ReportHtml, TellsAnOffsetThatNobodyKnowsFromOneThatIsRight) {
  const auto verdictOf = [](const zorvela::RunReport& report, const std::string& atom) {
    const std::string text = written(zorvela::writeHtml, report);
    std::smatch row;
    const std::regex pattern("<th scope=\"row\">" + atom +
                             "</th>(?:<td[^>]*>[^<]*</td>){2}<td>(.*)</td></tr>");
    return std::regex_search(text, row, pattern) ? row.str(1) : "no row";
  };
  zorvela::RunReport report = sample();
  std::vector<zorvela::ReferencingOffset>& offsets = report.files[0].proteins[0].offsets;
  EXPECT_EQ(verdictOf(report, "CA"), "<b>to be corrected</b>");
  EXPECT_EQ(verdictOf(report, "CB"), "looks right");
  EXPECT_EQ(verdictOf(report, "C′"), "not known: too few residues");
  offsets[0].recommended = false;
  EXPECT_EQ(verdictOf(report, "CA"), "perhaps wrong");
  offsets[0].offset = 0.0F;
  offsets[0].error = 0.38F;  // 0.75 ppm would be two errors away
  EXPECT_EQ(verdictOf(report, "CA"), "not known: the error is too large");
  offsets[0].offset = 1.5F;
  correct(report);
  offsets[0].recommended = true;
  EXPECT_EQ(verdictOf(report, "CA"), "corrected");
}

TEST(ReportHtml, SaysOnceWhatWasCorrected) {
  zorvela::RunReport report = sample();
  correct(report);
  zorvela::ProteinResult& protein = report.files[0].proteins[0];
  protein.notes.insert(protein.notes.begin(), protein.correction);
  const std::string text = written(zorvela::writeHtml, report);
  const std::size_t first = text.find("13C is 1.5 ppm too high");
  EXPECT_NE(first, std::string::npos);
  EXPECT_LT(first, text.find("</p>"));
  EXPECT_EQ(text.find("13C is 1.5 ppm too high", first + 1), std::string::npos);
  EXPECT_NE(text.find("1 note on the input file"), std::string::npos);
}

TEST(ReportHtml, WarnsBeforeAllElse) {
  const std::string text = written(zorvela::writeHtml, sample());
  const std::string start = text.substr(0, text.find("<figure"));
  for (const char* warning : {"<li>CA shifts seem 1.50 ppm too high (error 0.25 ppm, 20 residues)",
                              "<li>P117 is marked trans in the file but predicted cis (0.981)</li>"})
    EXPECT_NE(start.find(warning), std::string::npos) << start;
}

TEST(ReportJson, HoldsTheSameAsTheTable) {
  const nlohmann::json expected = nlohmann::json::parse(R"({
    "format": "zorvela-kit run",
    "version": 1,
    "program": "zorvela-kit )" + std::string(zorvela::version()) +
                                                        R"json(",
    "tables": "tab",
    "tables_fingerprint": "",
    "thresholds": {"cis_from": 0.5, "trans_up_to": 0.05},
    "proteins": [{
      "file": "a.str", "chain": "A", "list": "1", "length": 40, "shifts": 200,
      "referencing": [
        {"atom": "CA", "offset": 1.5, "error": 0.25, "residues": 20, "correction_recommended": true, "corrected_by": null},
        {"atom": "CB", "offset": -0.25, "error": 0.25, "residues": 20, "correction_recommended": false, "corrected_by": null},
        {"atom": "HA", "offset": 0.5, "error": 0.25, "residues": 20, "correction_recommended": true, "corrected_by": null},
        {"atom": "C", "offset": null, "error": 0.25, "residues": 20, "correction_recommended": false, "corrected_by": null}],
      "prolines": [
        {"resid": "117", "position": 17, "prev": "K", "next": "N", "prev_resid": "116", "next_resid": "118",
         "cs_cnt_prev": 6, "cs_cnt": 4, "cs_cnt_next": 5, "cg_shift": 24.31, "p_cis": 0.999,
         "p_cis_norm": 0.98125, "call": "cis", "reason": null, "cis_flag": false,
         "evidence": null, "next_shifts": []},
        {"resid": "140", "position": 40, "prev": "c", "next": null, "prev_resid": "139", "next_resid": null,
         "cs_cnt_prev": 0, "cs_cnt": 1, "cs_cnt_next": null, "cg_shift": null, "p_cis": null,
         "p_cis_norm": null, "call": "none", "reason": "last residue", "cis_flag": null,
         "evidence": null, "next_shifts": []}],
      "warnings": ["CA shifts seem 1.50 ppm too high (error 0.25 ppm, 20 residues) and are not corrected",
                   "HA shifts seem 0.50 ppm too high (error 0.25 ppm, 20 residues) and are not corrected",
                   "P117 is marked trans in the file but predicted cis (0.981)"],
      "notes": ["a \"note\"", "a further note"]}],
    "errors": [{"file": "b,c.str", "message": "b,c.str:3: no shifts; add some"}]
  })json");
  const std::string text = written(zorvela::writeJson, sample());
  EXPECT_EQ(nlohmann::json::parse(text), expected);
  EXPECT_NE(text.find("\"cg_shift\": 24.31,"), std::string::npos);  // not 24.309999465942383
  EXPECT_EQ(text.back(), '\n');
}
