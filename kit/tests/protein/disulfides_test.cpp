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

TEST(Disulfides, BondsOfTheFileCountBeforeTheWordsForItsResiduesAndChain) {
  FileChain chain = cysteines();
  chain.thiol = Thiol::notDisulfide;
  chain.residues[0].thiol = Thiol::notDisulfide;
  chain.disulfides = {"1", "3", "99"};
  const Protein protein = marked(chain, {});
  EXPECT_EQ(protein.sequence, "cCP");
  EXPECT_EQ(protein.notes, (Texts{"cysteines in a disulfide bond according to the file; written as c: 11",
                                  "disulfide bonds of residues that are not cysteines; ignored: 13"}));
}

TEST(Disulfides, TheResidueCountsBeforeTheChain) {
  FileChain chain = cysteines();
  chain.thiol = Thiol::disulfide;
  chain.residues[1].name = "CYM";
  EXPECT_EQ(marked(chain, {}).sequence, "cCP");
}

}  // namespace
