// Shift lists on the sequence that lies beside them.
#include <gtest/gtest.h>

#include <numeric>

#include "made_shift.h"
#include "message_of.h"
#include "names/nomenclature.h"
#include "zorvela/read.h"

namespace {

using Texts = std::vector<std::string>;
using zorvela::Protein;

zorvela::ImportOptions on(const std::string& sequence, std::optional<int> firstResidue = std::nullopt) {
  return {{}, {}, zorvela::readSequenceBytes(sequence, "p.seq"), firstResidue};
}

std::vector<Protein> read(const std::string& text, const zorvela::ImportOptions& options) {
  return zorvela::readShiftBytes(text, "x.csv", options);
}

std::string message(const std::string& text, const zorvela::ImportOptions& options) {
  return messageOf([&] { read(text, options); });
}

/// The message on a sequence from `first` on: "4 of 4 residues are in conflict, the first: residue 2 ...".
std::string misfit(int first, const std::string& conflicts, const std::string& residue,
                   const std::string& remedy) {
  return "x.csv: does not fit the sequence of p.seq, numbered from " + std::to_string(first) + ": " +
         conflicts + " residues are in conflict, the first: residue " + residue + "; " + remedy;
}

std::string fitsWith(const std::string& number) {
  return "it fits with " + number + " as the number of the first residue; give --first-residue " + number;
}

const std::string kGiveOther = "give the sequence of this protein, and the number of its first residue";
const std::string kNameless = "resid,atom,shift\n";
const std::string kNamed = "resid,resname,atom,shift\n";
// Residues 2, 4, 6 and 8 of MKAGVPGT, each of which fits its own place alone.
const std::string kShifts = "2,CB,33.1\n4,CA,45.2\n4,HA2,3.9\n6,CA,63.2\n6,CB,32.0\n6,CG,27.1\n8,CB,69.5\n";

TEST(PlaceOnSequence, GivesNamesAndTheResiduesWithoutShifts) {
  const auto proteins = read(kNameless + kShifts, on("MKAGVPGT\n"));
  ASSERT_EQ(proteins.size(), 1U);
  EXPECT_EQ(proteins[0].sequence, "MKAGVPGT");
  EXPECT_EQ(made::shiftsOf(proteins[0]), (Texts{"2 CB 33.1", "4 HA2 3.9", "4 CA 45.2", "6 CA 63.2",
                                                "6 CB 32.0", "6 CG 27.1", "8 CB 69.5"}));
  EXPECT_EQ(proteins[0].notes,
            Texts{"the sequence of p.seq has no numbers; its first residue is assumed to be 1"});
}

TEST(PlaceOnSequence, CountsFromTheNumberGiven) {
  const Protein protein = read(kNameless + kShifts, on("KAGVPGT", 2)).front();
  EXPECT_EQ(protein.sequence, "KAGVPGT");
  EXPECT_EQ(protein.numbers, (Texts{"2", "3", "4", "5", "6", "7", "8"}));
}

TEST(PlaceOnSequence, TakesTheNumbersOfTheSequence) {
  const std::string sequence = "MET -5\nLYS 2\nALA\nGLY\nVAL\nPRO 6\nGLY\nTHR\n";
  const Protein protein = read(kNameless + kShifts, on(sequence)).front();
  EXPECT_EQ(protein.sequence, "M??????KAGVPGT");
  EXPECT_EQ(made::shiftsOf(protein).at(0), "2 CB 33.1");
  EXPECT_EQ(read(kNameless + kShifts, on("LYS 12\nALA\nGLY\nVAL\nPRO 16\nGLY\nTHR\n", 2)).front().sequence,
            "KAGVPGT");
}

TEST(PlaceOnSequence, NamesTheNumberThatFits) {
  EXPECT_EQ(message(kNameless + kShifts, on("KAGVPGT")),
            misfit(1, "4 of 4", "2 (A) has CB 33.1", fitsWith("2")));
  EXPECT_EQ(message(kNameless + kShifts, on("MKAGVPGT", 4)),
            misfit(4, "4 of 4", "2 is not in it", fitsWith("1")));
  EXPECT_EQ(message(kNameless + kShifts, on("PPPPPPPPPPP")),
            misfit(1, "2 of 4", "4 (P) has CA 45.2", kGiveOther));
}

TEST(PlaceOnSequence, RefusesAnOpenNumberWhereAnotherFitsBetter) {
  // From 2 on nothing is in conflict; from 1 on 61 is outside, and 30 is P.
  std::string rows = kNameless;
  for (int i = 2; i <= 61; ++i)
    if (i != 31) rows += std::to_string(i) + ",HN,8.1\n";
  const std::string sequence = std::string(29, 'A') + "P" + std::string(30, 'A');
  EXPECT_EQ(message(rows, on(sequence)), misfit(1, "2 of 59", "30 (P) has HN 8.1", fitsWith("2")));
  EXPECT_EQ(message(rows, on(sequence, 1)), "no error");
  EXPECT_EQ(message(rows, on(sequence, 2)), "no error");
}

TEST(PlaceOnSequence, RefusesNamesThatContradict) {
  std::string rows = kNamed;
  for (int i = 1; i <= 21; ++i) rows += std::to_string(i) + (i == 7 ? ",VAL" : ",ALA") + ",CA,55.0\n";
  EXPECT_EQ(message(rows, on(std::string(21, 'A'))),
            "x.csv:8: residue 7 is VAL but A in the sequence of p.seq; correct the one that is wrong");
}

TEST(PlaceOnSequence, RefusesTwoSequencesThatDiffer) {
  const std::string nef =
      "data_x\nsave_s\nloop_\n_nef_sequence.index\n_nef_sequence.chain_code\n_nef_sequence.sequence_code\n"
      "_nef_sequence.residue_name\n1 A 1 MET\n2 A 2 LYS\n3 A 3 PRO\nstop_\nsave_\nsave_l\nloop_\n"
      "_nef_chemical_shift.chain_code\n_nef_chemical_shift.sequence_code\n_nef_chemical_shift.residue_name\n"
      "_nef_chemical_shift.atom_name\n_nef_chemical_shift.value\nA 3 PRO CA 63.1\nstop_\nsave_\n";
  EXPECT_EQ(read(nef, on("MKP")).front().sequence, "MKP");
  EXPECT_EQ(read(nef, on("MKPGAL")).front().sequence, "MKPGAL");
  EXPECT_EQ(message(nef, on("MVP")), misfit(1, "1 of 3", "2 (V) is called LYS", kGiveOther));
}

TEST(PlaceOnSequence, TakesShiftTables) {
  const auto table = [](const std::string& sequence) {
    return (sequence.empty() ? "" : "DATA SEQUENCE " + sequence + "\n") +
           "VARS RESID RESNAME ATOMNAME SHIFT\nFORMAT %4d %1s %4s %8.3f\n2 K CB 33.1\n6 P CG 27.1\n6 P CA "
           "999.0\n";
  };
  EXPECT_EQ(read(table("MKAGVPGT"), on("MKAGVPGT")).front().shifts.size(),
            3U);  // with its mark
  const Protein longer = read(table(""), on("MKAGVPGT")).front();
  EXPECT_EQ(longer.sequence, "MKAGVPGT");
  EXPECT_EQ(made::shiftsOf(longer), (Texts{"2 CB 33.1", "6 CG 27.1"}));
  EXPECT_EQ(message(table("MKAGVPGT"), on("MRAGVPGT")), misfit(1, "1 of 8", "2 (R) is called K", kGiveOther));
}

TEST(PlaceOnSequence, GivesEachChainItsOwn) {
  const std::string rows =
      "chain,resid,atom,shift\nA,2,CB,33.1\nA,4,HA2,3.9\nA,6,CG,27.1\nB,1,CB,69.5\nB,2,HA3,4.1\nB,3,CA,63."
      "0\n";
  const auto proteins = read(rows, on(">A\nMKAGVPGT\n>B\nTGP\n"));
  ASSERT_EQ(proteins.size(), 2U);
  EXPECT_EQ(proteins[0].sequence, "MKAGVPGT");
  EXPECT_EQ(proteins[1].sequence, "TGP");
  const std::string other = ">one\nTGPTGPTG\n>two\nMKAGVPGT\n";
  EXPECT_EQ(read(kNameless + kShifts, on(other)).front().sequence, "MKAGVPGT");  // the only one that fits
  EXPECT_EQ(
      message(kNameless + kShifts, on(">one\nTGPTGPTG\n>two\nTGP\n")),
      "x.csv: fits none of the chains of p.seq: one, two; give the sequence of this chain, and the number of "
      "its first residue");
}

TEST(PlaceOnSequence, LeavesOutSpinSystemsThatAreNotAssigned) {
  const std::string rows = kNameless + kShifts + "901,HN,8.1\n902,HN,8.2\n";
  const Texts leftOut = {"2 shifts ignored; the sequence has no such residue: 901, 902"};
  const Protein protein =
      read(rows, on("MET 1\nLYS\nALA\nGLY\nVAL\nPRO\nGLY\nTHR\nSS 901\nSS 902\n")).front();
  EXPECT_EQ(protein.notes, leftOut);
  EXPECT_EQ(read(rows, on("MKAGVPGT", 1)).front().notes, leftOut);
}

// --- What shifts exclude --------------------------------------------------------------------------

/// The amino acids that a row excludes for its residue.
std::string excludedBy(const std::string& atom, const std::string& value, const std::string& name = "") {
  std::string letters;
  for (const char letter : zorvela::kAminoAcids)
    if (message(kNamed + "1," + name + "," + atom + "," + value + "\n", on(std::string(1, letter), 1))
            .find("x.csv: does not fit") == 0)
      letters += letter;
  return letters;
}

TEST(Exclusion, AtomsThatATypeHasNot) {
  EXPECT_EQ(excludedBy("HN", "8.2"), "P");
  EXPECT_EQ(excludedBy("H", "8.2"), "P");
  EXPECT_EQ(excludedBy("HA2", "4.1"), "ACDEFHIKLMNPQRSTVWY");
  EXPECT_EQ(excludedBy("HB2", "2.1"), "");
}

TEST(Exclusion, ValuesThatATypeHasNot) {
  EXPECT_EQ(excludedBy("CB", "70.0"), "ACDEFGHIKLMNPQRVWY");  // S 56.2 to 72.9, T 57.9 to 79.3
  EXPECT_EQ(excludedBy("CB", "17.0"), "DEFGHIKLMNPQRSTVWY");  // A from 10.9, C from 12.9, W from 18.2
}

TEST(Exclusion, NothingByValuesThatNoTypeHas) {
  EXPECT_EQ(excludedBy("N", "70.5"), "");
  EXPECT_EQ(excludedBy("CA", "9.0"), "");
}

TEST(Exclusion, NothingByMissingValues) {
  for (const char* value : {"", "0", "999.000", "9999.00", "-"})
    EXPECT_EQ(excludedBy("HN", value), "") << value;
}

TEST(Exclusion, OtherTypesThanTheNamedOne) {
  EXPECT_EQ(excludedBy("HB2", "2.1", "PRO"), "ACDEFGHIKLMNQRSTVWY");
  EXPECT_EQ(excludedBy("HB2", "2.1", "CYSS"), "ADEFGHIKLMNPQRSTVWY");
  EXPECT_EQ(excludedBy("HB2", "2.1", "XXX"), "");
}

/// Returns the message on HN of each residue: no proline can be there.
std::string saidOfAmides(const std::vector<int>& numbers, const zorvela::ImportOptions& options) {
  std::string rows = kNameless;
  for (const int number : numbers) rows += std::to_string(number) + ",HN,8.2\n";
  return message(rows, options);
}

TEST(SequenceFit, CountsResiduesInConflictAndFindsTheOnlyNumberThatFits) {
  EXPECT_EQ(saidOfAmides({1, 3, 5}, on("MPAPG", 1)), "no error");
  EXPECT_EQ(saidOfAmides({1, 3, 5}, on("MPAPG", 2)),  // 3 and 5 are P
            misfit(2, "3 of 3", "1 is not in it", fitsWith("1")));
  EXPECT_EQ(saidOfAmides({2, 4, 5}, on("MET 1\nALA 3\nXXX 4\nCYSS 5\n")),  // 1, 3 and 4 from 2 on
            misfit(1, "1 of 3", "2 is not in it", fitsWith("2")));
  EXPECT_EQ(saidOfAmides({11, 13, 15}, on("MPAPG", 1)),
            misfit(1, "3 of 3", "11 is not in it", fitsWith("11")));
  EXPECT_EQ(saidOfAmides({11, 13, 15}, on("MPAPG", 7)),
            misfit(7, "2 of 3", "13 is not in it", fitsWith("11")));
  EXPECT_EQ(saidOfAmides({-3, -1, 1}, on("MPAPG", 1)),
            misfit(1, "2 of 3", "-3 is not in it", fitsWith("-3")));
  EXPECT_EQ(saidOfAmides({11, 12}, on("MGAGP", 1)),  // 11, 10 and 9
            misfit(1, "2 of 2", "11 is not in it", kGiveOther));
  EXPECT_EQ(saidOfAmides({11, 13}, on("PPPPP", 1)), misfit(1, "2 of 2", "11 is not in it", kGiveOther));
}

TEST(SequenceFit, TriesNoMoreNumbersThanAProteinHas) {
  for (const auto& [size, remedy] : {std::pair(1000, fitsWith("-999")), std::pair(6000, kGiveOther)}) {
    std::vector<int> numbers(static_cast<std::size_t>(size));
    std::iota(numbers.begin(), numbers.end(), 1);
    const std::string prolines(numbers.size(), 'P');
    const std::string count = std::to_string(size);
    EXPECT_EQ(saidOfAmides(numbers, on(prolines + std::string(numbers.size(), 'A') + prolines, 1)),
              misfit(1, count + " of " + count, "1 (P) has HN 8.2", remedy));
  }
}

}  // namespace
