// Sequences from the files that lie beside shift lists.
#include "formats/sequence_file.h"

#include <gtest/gtest.h>

#include "message_of.h"

namespace {

using zorvela::looksLikeSequence;
using zorvela::SequenceFile;

SequenceFile read(const std::string& text) {
  return zorvela::sequenceFileOf(text, "x.seq");
}

/// "A: GLY11 SER12; B: PRO1" of all chains.
std::string chains(const SequenceFile& sequence) {
  std::string all;
  for (const zorvela::FileChain& chain : sequence.chains) {
    all += (all.empty() ? "" : "; ") + chain.name + ":";
    for (const zorvela::FileResidue& residue : chain.residues) all += " " + residue.name + residue.number;
  }
  return all;
}

TEST(SequenceFile, HasChains) {
  const char* const cases[][2] = {
      {"GLY    11\nSER    12\nCYSS   15\ncPRO   19\n", ": GLY11 SER12 CYSS15 cPRO19"},
      // It counts on where numbers are missing; names alone have none.
      {"GLY 11 SER ILE\nPRO\nCYSS 20 LEU\n", ": GLY11 SER12 ILE13 PRO14 CYSS20 LEU21"},
      {"ala 10\nala\nglu\n", ": ala10 ala11 glu12"},
      {"GLY\nSER 12\n", ": GLY1 SER12"},
      {"MET GLN TYR\nLYS PRO\n", ": MET GLN TYR LYS PRO"},
      {"GLY 1\nPL 2\nLL5 3\nLP 4\nPRO 5\n", ": GLY1 PRO5"},
      {"HIS A1\nPRO A2\nGLY B7\n", "A: HIS1 PRO2; B: GLY7"},
      // FASTA
      {">protein\nMQ\nIP*\n", "protein: M Q I P"},
      {">one\nMQ\n\n> two of them\nGP\n", "one: M Q; two: G P"},
      {">2LYS_1|Chain A|Protein|Organism\nMQ\n>2LYS_2|Chains B, C|Other\nGP\n", "A: M Q; B: G P"},
      {">name NEFPLS | CHAIN: A | START: -2\nMQ\n", "A: M-2 Q-1"},
      // One-letter text
      {"MQIF VKX\n  PG\n", ": M Q I F V K X P G"},
      {"        1 mqif\n        5 vk\n", ": M Q I F V K"},
      {"MAcP", ": M A CYSS P"},
      {"data_x\nsave_s\nloop_\n_nef_sequence.index\n_nef_sequence.chain_code\n_nef_sequence.sequence_code\n"
       "_nef_sequence.residue_name\n1 A 17 MET\n2 A 18 PRO\nstop_\nsave_\n",
       "A: MET17 PRO18"}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(chains(read(text)), expected) << text;
}

TEST(SequenceFile, PassesOverCommentsAndSpinSystems) {
  const SequenceFile sequence =
      read("# of the domain\n\nGLY 1 7\nPRO 2 8 \"seen\"  # cis?\nSS 901\nSS 902\n");
  EXPECT_EQ(chains(sequence), ": GLY1 PRO2");
  EXPECT_EQ(sequence.spinSystems, (std::set<int>{901, 902}));
}

TEST(SequenceFile, SaysWhatIsWrong) {
  const auto message = [](const std::string& text) { return messageOf([&] { read(text); }); };
  const std::string remedy =
      "; give FASTA, one-letter text, residue names with numbers (.seq), NMR-STAR or NEF";
  EXPECT_EQ(message("1 17.2 N 5\n"), "x.seq:1: is not a sequence: \"1 17.2 N 5\"" + remedy);
  EXPECT_EQ(message("1 MET\n2 GLN\n3 PRO\n"), "x.seq:2: is not a sequence: \"2 GLN\"" + remedy);
  EXPECT_EQ(message(">a\nMQ\nI_F\n"), "x.seq:3: is not a sequence: \"I_F\"" + remedy);
  EXPECT_EQ(message("MET +5\nGLN +6\n"), "x.seq:1: is not a sequence: \"MET +5\"" + remedy);
  EXPECT_EQ(message("MET A+5\nGLN A+6\n"), "x.seq:1: is not a sequence: \"MET A+5\"" + remedy);
  EXPECT_EQ(message("\"MQIF\"\n"), "x.seq:1: is not a sequence: \"\"MQIF\"\"" + remedy);
  EXPECT_EQ(message(""), "x.seq: has no residue" + remedy);
  EXPECT_EQ(message(">a\n"), "x.seq: has no residue" + remedy);
  EXPECT_NE(message(std::string(40001, 'A')).find("has a sequence of more than 40000 residues"),
            std::string::npos);
}

TEST(LooksLikeSequence, OnlyWithCertainty) {
  for (const char* text :
       {">anything\n", "# of the domain\nGLY 11\nSER 12\nSS 901\n", "MQIFVKTLTG KTITLEVEPS\n"})
    EXPECT_TRUE(looksLikeSequence(text)) << text;
  for (const char* text : {"mqifvktltg\n", "THE CAT SAT ON THE MAT\n", "1 GLY\n2 SER\n",
                           "   1   8.460 0.005 HN    171\n", "resid,resname,atom,shift\n", ""})
    EXPECT_FALSE(looksLikeSequence(text)) << text;
}

}  // namespace
