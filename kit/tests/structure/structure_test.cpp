// Bonds, alignments and verdicts without a file.
#include <gtest/gtest.h>

#include "message_of.h"
#include "structure/chain_alignment.h"
#include "zorvela/compare.h"
#include "zorvela/error.h"
#include "zorvela/structure.h"

namespace {

using zorvela::BondState;

TEST(Bond, StateOfOmega) {
  for (const double omega : {0.0, 30.0, -30.0}) EXPECT_EQ(zorvela::stateOfOmega(omega), BondState::cis);
  for (const double omega : {30.01, -149.99}) EXPECT_EQ(zorvela::stateOfOmega(omega), BondState::twisted);
  for (const double omega : {150.0, -180.0}) EXPECT_EQ(zorvela::stateOfOmega(omega), BondState::trans);
}

TEST(Bond, StateOfTheDistanceOfCaAtoms) {
  EXPECT_EQ(zorvela::stateOfDistance(2.9), BondState::cis);
  EXPECT_EQ(zorvela::stateOfDistance(3.4), BondState::twisted);
  EXPECT_EQ(zorvela::stateOfDistance(3.8), BondState::trans);
  EXPECT_FALSE(zorvela::stateOfDistance(0).has_value());
  EXPECT_FALSE(zorvela::stateOfDistance(5.5).has_value());
}

TEST(Structure, IsToldFromShifts) {
  const std::string atom =
      "ATOM      1  CA  PRO A   1      27.340  24.430   2.614  1.00  9.67           C  \n";
  EXPECT_TRUE(zorvela::holdsStructure(atom));
  EXPECT_TRUE(zorvela::holdsStructure("REMARK 1\n" + atom.substr(0, 30)));
  EXPECT_TRUE(zorvela::holdsStructure("data_x\nloop_\n_atom_site.id\n_atom_site.Cartn_x\n1 2\n"));
  EXPECT_FALSE(zorvela::holdsStructure("data_x\nloop_\n_Atom_chem_shift.ID\n1\n" + atom));
  EXPECT_FALSE(zorvela::holdsStructure("resid,resname,atom,shift\n1,PRO,CA,62\n"));
  EXPECT_FALSE(zorvela::holdsStructure(""));
}

zorvela::StructureChain chainOf(const std::string& letters) {
  zorvela::StructureChain chain;
  chain.name = "A";
  for (const char letter : letters) {
    zorvela::StructureResidue residue;
    residue.letter = letter;
    residue.number = std::to_string(chain.residues.size() + 1);
    chain.residues.push_back(residue);
  }
  return chain;
}

// Residues of the chain as they are below the sequence, "-" where there is none.
std::string aligned(const std::string& sequence, const zorvela::StructureChain& chain) {
  std::string text;
  const auto alignment = zorvela::align(sequence, zorvela::ChainRest(chain));
  for (const std::size_t place : alignment.inStructure)
    text += place == zorvela::kNoResidue ? '-' : chain.residues[place].letter;
  return text;
}

TEST(Alignment, GapsGoWhereTheChainIsInterrupted) {
  // Without the break the second G could be the one after the gap.
  zorvela::StructureChain chain = chainOf("MKLGVWTRE");
  chain.residues[4].isAfterBreak = true;
  EXPECT_EQ(aligned("MKLGAASGVWTRE", chain), "MKLG----VWTRE");
  chain.residues[4].isAfterBreak = false;
  chain.residues[3].isAfterBreak = true;
  EXPECT_EQ(aligned("MKLGAASGVWTRE", chain), "MKL----GVWTRE");
}

TEST(Alignment, TagsMutationsAndUnknownResidues) {
  EXPECT_EQ(aligned("MKLGVWTRE", chainOf("GSHMKLGVWTREHHHHHH")), "MKLGVWTRE");
  EXPECT_EQ(aligned("MKLGVWTRE", chainOf("MKLAVWTRE")), "MKLAVWTRE");
  EXPECT_EQ(aligned("MKc?VWTRE", chainOf("MKCGVWTRE")), "MKCGVWTRE");
  const auto chain = chainOf("MKCGVWTRA");
  const auto alignment = zorvela::align("MKc?VWTRE", zorvela::ChainRest(chain));
  EXPECT_EQ(alignment.aligned, 8U);
  EXPECT_EQ(alignment.identical, 7U);
  EXPECT_EQ(alignment.identity(), 87.5);
}

TEST(Alignment, NothingToAlign) {
  EXPECT_EQ(zorvela::align("", zorvela::ChainRest(chainOf("MKL"))).aligned, 0U);
  EXPECT_EQ(zorvela::align("MKL", zorvela::ChainRest(zorvela::StructureChain())).identity(), 0);
}

TEST(Alignment, WorkIsInProportionToTheStructure) {
  zorvela::ProteinStructure structure;
  structure.file = "large.cif";
  structure.chains.assign(4, chainOf(std::string(1000, 'A')));
  const zorvela::ChainRest chain(structure.chains.front());
  zorvela::StructureAligner aligner(structure);
  EXPECT_THROW(aligner.align(std::string(30001, 'A'), chain), zorvela::FileError);
  // 100 million and 4,000 for each of 4,000 residues are 114 alignments of 1,000 with 1,000, each with 500
  // and 8 for each residue besides.
  for (int i = 0; i < 114; ++i) EXPECT_EQ(aligner.align(std::string(1000, 'A'), chain).identical, 1000U);
  EXPECT_EQ(messageOf([&] { aligner.align(std::string(1000, 'A'), chain); }),
            "large.cif: has too many residues to align with the 1000 of a protein; give the chains that have "
            "shifts");
}

// --- Which chain belongs to which protein ---------------------------------------------------------

const std::string kSequence = "MLEGSKLAPKWDNHIGKKQFYVTEAAKLSTD";

zorvela::ProteinStructure structureOf(const std::vector<std::pair<std::string, std::string>>& chains) {
  zorvela::ProteinStructure structure;
  structure.file = "model.pdb";
  structure.modelCount = 1;
  for (const auto& [name, letters] : chains) {
    structure.chains.push_back(chainOf(letters));
    structure.chains.back().name = name;
  }
  return structure;
}

zorvela::Protein proteinOf(const std::string& chain, const std::string& sequence) {
  zorvela::Protein protein;
  protein.chain = chain;
  protein.sequence = sequence;
  for (std::size_t i = 1; i <= sequence.size(); ++i) protein.numbers.push_back(std::to_string(i));
  return protein;
}

// The chains of the structure that each protein was matched with.
std::vector<std::string> matches(const std::vector<zorvela::Protein>& proteins,
                                 const zorvela::ProteinStructure& structure) {
  std::vector<zorvela::ProteinResult> results(proteins.size());
  std::vector<std::string> names;
  zorvela::compareWithStructures(proteins, {structure}, results);
  for (const zorvela::ProteinResult& result : results) {
    names.emplace_back();
    for (const zorvela::ChainMatch& match : result.matches) names.back() += match.chain;
  }
  return names;
}

using Names = std::vector<std::string>;

TEST(Matching, CopiesOfOneProtein) {
  const auto dimer = structureOf({{"A", kSequence}, {"B", kSequence}});
  EXPECT_EQ(matches({proteinOf("", kSequence)}, dimer), Names{"AB"});
  EXPECT_EQ(matches({proteinOf("A", kSequence), proteinOf("B", kSequence)}, dimer), (Names{"A", "B"}));
  EXPECT_EQ(matches({proteinOf("X", kSequence), proteinOf("Y", kSequence)}, dimer), (Names{"AB", "AB"}));
}

TEST(Matching, RelativesAndStrangers) {
  std::string relative = kSequence;  // 26 of 31 residues are the same
  for (const std::size_t i : {2U, 7U, 12U, 18U, 24U}) relative[i] = 'R';
  const auto complex =
      structureOf({{"A", kSequence}, {"B", relative}, {"C", "GGGGWWWWYYYYHHHHRRRRNNNNQQQQ"}});
  EXPECT_EQ(matches({proteinOf("1", kSequence), proteinOf("2", relative)}, complex), (Names{"A", "B"}));
  EXPECT_EQ(matches({proteinOf("1", kSequence)}, complex), Names{"A"});
}

}  // namespace
