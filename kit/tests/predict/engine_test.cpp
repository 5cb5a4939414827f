// Predictions of whole proteins from the made tables, in which only the priors of A and K and the CB and
// CG of the proline tell cis from trans, each with a deviation of 1 ppm.
#include "zorvela/predict.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <utility>

#include "made_shift.h"

#include "predict/referencing.h"

namespace {

using zorvela::Call;
using zorvela::Protein;
using zorvela::ProteinResult;

/// All backbone shifts of a residue with no secondary shift at all. Proline has neither N nor HN.
void addResidue(Protein& protein, int resid) {
  const auto index = static_cast<std::size_t>(resid) - 1;
  const bool beforeProline = index + 1 < protein.sequence.size() && protein.sequence[index + 1] == 'P';
  const bool isProline = protein.sequence[index] == 'P';
  if (!isProline) {
    protein.shifts.push_back(made::shift(resid, "N", "120"));
    protein.shifts.push_back(made::shift(resid, "HN", "8"));
  }
  protein.shifts.push_back(made::shift(resid, "HA", "4"));
  protein.shifts.push_back(made::shift(resid, "C", "175"));
  protein.shifts.push_back(
      made::shift(resid, "CA", std::to_string((isProline ? 63 : 55) - (beforeProline ? 2 : 0))));
  protein.shifts.push_back(made::shift(resid, "CB", "30"));
}

Protein bare(const std::string& sequence) {
  Protein protein;
  protein.file = "made";
  protein.sequence = sequence;
  for (std::size_t i = 1; i <= sequence.size(); ++i) protein.numbers.push_back(std::to_string(i));
  return protein;
}

Protein complete(const std::string& sequence) {
  Protein protein = bare(sequence);
  for (int resid = 1; resid <= static_cast<int>(sequence.size()); ++resid) addResidue(protein, resid);
  return protein;
}

void setShift(Protein& protein, int resid, const std::string& atom, const std::string& value) {
  for (zorvela::Shift& shift : protein.shifts)
    if (shift.position == resid && nameOf(shift.atom) == atom) {
      shift = made::shift(resid, atom, value);
      return;
    }
  protein.shifts.push_back(made::shift(resid, atom, value));
}

zorvela::Predictor predictor(const zorvela::PredictorOptions& options = {}) {
  return zorvela::Predictor(zorvela::tablesFromFolder(MADE_TABLES), options);
}

ProteinResult predict(const Protein& protein, const zorvela::PredictorOptions& options = {}) {
  return predictor(options).predict(protein);
}

/// The probability that goes with odds of cis to trans.
double fromOdds(double odds) {
  return odds / (1 + odds);
}

void expectOdds(const ProteinResult& result, double odds) {
  ASSERT_EQ(result.prolines.size(), 1U);
  ASSERT_TRUE(result.prolines[0].pCis.has_value());
  EXPECT_NEAR(*result.prolines[0].pCis, fromOdds(odds), 1e-6);
  EXPECT_NEAR(*result.prolines[0].pCisNorm, fromOdds(odds / 19), 1e-6);
}

std::vector<std::string> reasonsOf(const ProteinResult& result) {
  std::vector<std::string> reasons;
  for (const zorvela::ProlineResult& proline : result.prolines) reasons.push_back(proline.reason);
  return reasons;
}

}  // namespace

// --- Probabilities ------------------------------------------------------------------------------

TEST(Predictor, GivesEqualOddsWhereNothingSpeaksForEither) {
  Protein protein = complete("APK");  // priors 0.1 x 0.05 and 0.05 x 0.1
  setShift(protein, 2, "CB", "31");   // 1 ppm from either mean
  expectOdds(predict(protein), 1);
}

TEST(Predictor, WeighsTheShiftsOfTheProline) {
  Protein protein = complete("APK");
  setShift(protein, 2, "CB", "32");    // on the mean of cis, 2 ppm from that of trans
  setShift(protein, 2, "CG", "25.5");  // in the middle
  expectOdds(predict(protein), std::exp(2.0));
  setShift(protein, 2, "CG", "24");  // on the mean of cis, 3 ppm from that of trans
  expectOdds(predict(protein), std::exp(2.0 + 4.5));
}

TEST(Predictor, KeepsNothingOfTheProteinBefore) {
  const zorvela::Predictor same = predictor();
  Protein first = complete("AAAAPKPK");
  setShift(first, 5, "CG", "24");
  Protein second = complete("KKKKPKK");
  setShift(second, 5, "CB", "31");
  const ProteinResult before = same.predict(first);
  const ProteinResult between = same.predict(second);
  const ProteinResult after = same.predict(first);
  expectOdds(between, 0.5);
  EXPECT_FALSE(between.prolines[0].cgShift.has_value());
  ASSERT_EQ(after.prolines.size(), 2U);
  for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(after.prolines[i].pCis, before.prolines[i].pCis);
}

TEST(Predictor, CoversResiduesBeyondTheUsualRange) {
  const std::string tail = "APKA";
  Protein protein = bare(std::string(12000, 'A') + tail);
  for (int resid = 12001; resid <= 12004; ++resid) addResidue(protein, resid);
  setShift(protein, 12002, "CB", "31");
  const ProteinResult result = predict(protein);
  expectOdds(result, 1);
  EXPECT_EQ(result.prolines[0].position, 12002);
}

// --- Every proline once -------------------------------------------------------------------------

TEST(Predictor, NamesEveryProlineOnceWithTheReasonWhereItIsNotPredicted) {
  Protein protein = bare("PAPKAPAAP");
  for (const int resid : {1, 2, 3, 4, 9}) addResidue(protein, resid);
  const ProteinResult result = predict(protein);
  EXPECT_EQ(reasonsOf(result),
            (std::vector<std::string>{"first residue", "", "too few shifts", "last residue"}));
  const std::vector<int> positions = {1, 3, 6, 9};
  for (std::size_t i = 0; i < positions.size(); ++i) {
    EXPECT_EQ(result.prolines[i].position, positions[i]);
    EXPECT_EQ(result.prolines[i].pCis.has_value(), i == 1);
    EXPECT_EQ(result.prolines[i].call == Call::none, i != 1);
  }
}

TEST(Predictor, ALowerCaseProlineIsNamedButNotPredicted) {
  EXPECT_EQ(reasonsOf(predict(complete("ApK"))), std::vector<std::string>{"written as lower-case p"});
}

// --- Beside a prediction ------------------------------------------------------------------------

TEST(Predictor, GivesNumbersNamesAndCounts) {
  Protein protein = bare("AcPKA");
  protein.numbers = {"-1", "10", "10A", "12", "13"};
  protein.chain = "B";
  protein.list = "2";
  protein.notes = {"a note"};
  addResidue(protein, 3);
  addResidue(protein, 4);
  protein.shifts.push_back(made::shift(2, "CA", "53"));
  setShift(protein, 3, "CG", "24.5");
  const ProteinResult result = predict(protein);
  EXPECT_EQ(result.file, "made");
  EXPECT_EQ(result.chain, "B");
  EXPECT_EQ(result.list, "2");
  EXPECT_EQ(result.notes, std::vector<std::string>{"a note"});
  EXPECT_EQ(result.length, 5);
  EXPECT_EQ(result.shiftCount, 4 + 6 + 1 + 1);
  ASSERT_EQ(result.prolines.size(), 1U);
  const zorvela::ProlineResult& proline = result.prolines[0];
  EXPECT_EQ(proline.number, "10A");
  EXPECT_EQ(proline.previous, "c");
  EXPECT_EQ(proline.previousNumber, "10");
  EXPECT_EQ(proline.next, "K");
  EXPECT_EQ(proline.nextNumber, "12");
  EXPECT_EQ(proline.previousCount, 1);
  EXPECT_EQ(proline.count, 4);
  EXPECT_EQ(proline.nextCount, 6);
  EXPECT_EQ(proline.cgShift, 24.5F);
}

TEST(Predictor, BeyondTheEndsThereIsNoNeighbour) {
  const ProteinResult result = predict(complete("PAP"));
  ASSERT_EQ(result.prolines.size(), 2U);
  EXPECT_EQ(result.prolines[0].previous + result.prolines[0].previousNumber, "");
  EXPECT_FALSE(result.prolines[0].previousCount.has_value());
  EXPECT_EQ(result.prolines[1].next + result.prolines[1].nextNumber, "");
  EXPECT_FALSE(result.prolines[1].nextCount.has_value());
  EXPECT_EQ(result.prolines[1].previousCount, 6);
}

// --- Referencing ---------------------------------------------------------------------------------

/// Strands and helices in turn, all carbons 2.5 ppm too high; "APK" at their end.
Protein tooHigh() {
  Protein protein = bare(std::string(40, 'A') + "APK");
  for (int resid = 1; resid <= 43; ++resid) {
    const bool isHelix = resid / 10 % 2 == 1;
    const double base = resid == 42 ? 63 : resid == 41 ? 53 : 55;
    protein.shifts.push_back(
        made::shift(resid, "CA", std::to_string(base + (isHelix ? 2.879 : -1.05) + 2.5)));
    protein.shifts.push_back(made::shift(resid, "CB", std::to_string(30 + (isHelix ? -1.121 : 0.95) + 2.5)));
    protein.shifts.push_back(made::shift(resid, "C", "175"));
  }
  protein.shifts.push_back(made::shift(42, "CG", "27"));
  return protein;
}

const zorvela::PredictorOptions kAsReferenced{true};

TEST(Predictor, CorrectsCarbonsOfOneAxisTogether) {
  const ProteinResult kept = predict(tooHigh(), kAsReferenced);
  const ProteinResult corrected = predict(tooHigh());
  ASSERT_EQ(corrected.offsets[0].atom, "CA");
  ASSERT_TRUE(corrected.offsets[0].correctedBy.has_value());
  EXPECT_NEAR(*corrected.offsets[0].correctedBy, 2.5, 0.05);
  EXPECT_FALSE(kept.offsets[0].correctedBy.has_value());
  const float taken = *corrected.offsets[0].correctedBy;
  const zorvela::Evidence& before = *kept.prolines.at(0).evidence;
  const zorvela::Evidence& after = *corrected.prolines.at(0).evidence;
  for (const int index : {9, zorvela::kIndexCB, zorvela::kIndexCG}) {
    EXPECT_EQ(after.shift(index).observed, before.shift(index).observed) << "as in the file " << index;
    ASSERT_TRUE(after.shift(index).corrected.has_value()) << index;
    EXPECT_NEAR(*after.shift(index).corrected, *before.shift(index).observed - taken, 1e-4) << index;
  }
  EXPECT_FALSE(after.shift(8).corrected.has_value()) << "C' has no offset";
  EXPECT_EQ(corrected.prolines[0].cgShift, 27.0F) << "as in the file";
}

TEST(Predictor, KeepsWhatTheShiftsSayAsReferenced) {
  const zorvela::ProlineResult kept = predict(tooHigh(), kAsReferenced).prolines.at(0);
  const zorvela::ProlineResult corrected = predict(tooHigh()).prolines.at(0);
  EXPECT_EQ(corrected.pCisNormAsReferenced, kept.pCisNorm);
  EXPECT_EQ(corrected.callAsReferenced, kept.call);
  EXPECT_NE(corrected.pCisNorm, kept.pCisNorm);
  EXPECT_EQ(dependsOnCorrection(corrected), corrected.call != kept.call);
  EXPECT_FALSE(kept.callAsReferenced.has_value());
}

TEST(Predictor, WritesTheShiftsThatItUses) {
  const Protein corrected = predictor().corrected(tooHigh());
  ASSERT_EQ(corrected.remarks.size(), 1U);
  EXPECT_EQ(corrected.remarks[0].rfind("Corrected: 2.5", 0), 0U) << corrected.remarks[0];
  EXPECT_TRUE(predict(corrected).correction.empty());
  EXPECT_NEAR(*predict(corrected, kAsReferenced).prolines.at(0).pCisNorm,
              *predict(tooHigh()).prolines.at(0).pCisNorm, 1e-3);
  EXPECT_TRUE(predictor(kAsReferenced).corrected(tooHigh()).remarks.empty());
}

/// The protein of the first tests, and as it is measured when it is deuterated.
Protein deuterated(double share) {
  Protein protein = complete("APK");
  setShift(protein, 2, "CB", "32");
  setShift(protein, 2, "CG", "25.5");
  const std::map<std::pair<int, std::string>, double> lower = {
      {{1, "CA"}, 0.68}, {{1, "CB"}, 1.00}, {{2, "CA"}, 0.69}, {{2, "CB"}, 1.11},
      {{2, "CG"}, 1.17}, {{3, "CA"}, 0.69}, {{3, "CB"}, 1.11}};
  for (zorvela::Shift& shift : protein.shifts)
    if (const auto found = lower.find({shift.position, std::string(nameOf(shift.atom))});
        found != lower.end())
      shift.ppm -= share * found->second;
  return protein;
}

TEST(Predictor, TakesIsotopeShiftsAwayWhereTheFileSaysDeuterated) {
  Protein protein = deuterated(0.8);
  protein.deuteration = 0.8;
  const ProteinResult result = predict(protein);
  expectOdds(result, std::exp(2.0));
  EXPECT_EQ(result.deuteration, 0.8);
  EXPECT_EQ(result.correction,
            "carbon is deuterated (80 %), which lowers it; corrected before predicting "
            "(--as-referenced keeps it)");
  const zorvela::ProlineResult& proline = result.prolines[0];
  EXPECT_NEAR(*proline.evidence->shift(zorvela::kIndexCG).observed, 25.5 - 0.8 * 1.17, 1e-5);
  EXPECT_NEAR(*proline.evidence->shift(zorvela::kIndexCG).corrected, 25.5, 1e-5);
  EXPECT_EQ(proline.pCisNormAsReferenced, predict(protein, kAsReferenced).prolines[0].pCisNorm);
  EXPECT_NE(proline.pCisNorm, proline.pCisNormAsReferenced);
}

TEST(Predictor, TakesTheWordOfTheUserForDeuteration) {
  Protein protein = deuterated(1);
  expectOdds(predict(protein, {false, true, false}), std::exp(2.0));
  expectOdds(predict(protein, {true, true, false}), std::exp(2.0));
  const auto asMeasured = predict(protein, kAsReferenced).prolines[0].pCisNorm;
  EXPECT_EQ(predict(protein).prolines[0].pCisNorm, asMeasured);
  protein.deuteration = 1;
  EXPECT_EQ(predict(protein, kAsReferenced).prolines[0].pCisNorm, asMeasured);
  const ProteinResult protonated = predict(protein, {false, false, true});
  EXPECT_EQ(protonated.prolines[0].pCisNorm, asMeasured);
  EXPECT_TRUE(protonated.correction.empty());
}

TEST(Predictor, WritesProtonatedShifts) {
  Protein protein = deuterated(0.8);
  protein.deuteration = 0.8;
  protein.remarks = {"Deuterated: 80 % of the hydrogens on carbon"};
  const Protein corrected = predictor().corrected(protein);
  EXPECT_EQ(corrected.deuteration, 0);
  EXPECT_EQ(corrected.remarks,
            std::vector<std::string>{"Corrected: isotope shifts of deuterium (80 %) subtracted from "
                                     "CA, CB and CG of proline"});
  expectOdds(predict(corrected), std::exp(2.0));
}

TEST(ReferencingOffset, IsUncertainAboveItsBoundAndBelowThreeErrors) {
  zorvela::ReferencingOffset offset;
  offset.atom = "CA";
  offset.offset = -0.8F;
  EXPECT_TRUE(isUncertain(offset));
  offset.recommended = true;
  EXPECT_FALSE(isUncertain(offset));
  offset = {"CA", 0.7F, 0.5F, 10, false, std::nullopt};
  EXPECT_FALSE(isUncertain(offset));
}
