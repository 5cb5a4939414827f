// Which cysteines become c: by bond, by residue, by the words for the chain, by CB.
#include "protein/disulfides.h"

#include <gtest/gtest.h>

#include "made_shift.h"

namespace {

using Texts = std::vector<std::string>;
using zorvela::FileChain;
using zorvela::Protein;
using zorvela::Thiol;

/// A protein of a chain with CB shifts by residue, marked.
Protein marked(const FileChain& chain, const std::vector<zorvela::Shift>& shifts) {
  Texts notes;
  const zorvela::ChainSequence sequence = zorvela::makeSequence(chain.residues, {}, notes);
  Protein protein;
  for (const auto& residue : sequence.residues) protein.sequence += residue.type.letter;
  protein.shifts = shifts;
  zorvela::markDisulfides(chain, sequence, protein);
  return protein;
}

FileChain cysteines() {
  FileChain chain;
  chain.residues = {{"1", "11", "CYS"}, {"2", "12", "CYS"}, {"3", "13", "PRO"}};
  return chain;
}

TEST(Disulfides, AreKnownByTheBetaShiftWhereTheFileSaysNothing) {
  const Protein protein = marked(cysteines(), {made::shift(1, "CB", "33.0"), made::shift(2, "CB", "41.2")});
  EXPECT_EQ(protein.sequence, "CcP");  // 33 itself is reduced
  EXPECT_EQ(protein.notes,
            Texts{"cysteines taken as in a disulfide bond by CB above 33 ppm, written c: 12 (CB 41.2)"});
}

TEST(Disulfides, NeedAShiftOrAWord) {
  const Protein protein = marked(cysteines(), {made::shift(1, "CA", "55"), made::shift(3, "CB", "41")});
  EXPECT_EQ(protein.sequence, "CCP");
  EXPECT_TRUE(protein.notes.empty());
}

TEST(Disulfides, BondsOfTheFileCountBeforeTheWordsForItsResiduesAndChain) {
  FileChain chain = cysteines();
  chain.thiol = Thiol::notDisulfide;
  chain.residues[0].thiol = Thiol::notDisulfide;
  chain.disulfides = {"1", "3", "99"};
  const Protein protein = marked(chain, {});
  EXPECT_EQ(protein.sequence, "cCP");
  EXPECT_EQ(protein.notes, (Texts{"cysteines in a disulfide bond by the file, written c: 11",
                                  "disulfide bonds of residues that are no cysteines not used: 13"}));
}

TEST(Disulfides, TheResidueCountsBeforeTheChain) {
  FileChain chain = cysteines();
  chain.thiol = Thiol::disulfide;
  chain.residues[1].name = "CYM";
  EXPECT_EQ(marked(chain, {}).sequence, "cCP");
}

TEST(Disulfides, AShiftAgainstTheFileIsNotedAndTheFileKept) {
  FileChain chain = cysteines();
  chain.thiol = Thiol::notDisulfide;
  chain.disulfides = {"1"};
  const Protein protein = marked(chain, {made::shift(1, "CB", "28.1"), made::shift(2, "CB", "40.5")});
  EXPECT_EQ(protein.sequence, "cCP");
  EXPECT_EQ(
      protein.notes.back(),
      "CB does not fit what the file says of the cysteine, the file's word is kept: 11 (CB 28.1), 12 (CB "
      "40.5)");
}

}  // namespace
