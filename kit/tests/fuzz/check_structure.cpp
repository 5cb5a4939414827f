// What must hold of the reading of any structure, and of its comparison with its own sequence.
#include "fuzz/checks.h"

#include <cmath>
#include <cstddef>
#include <string>

#include "fuzz/holds.h"
#include "structure/chain_alignment.h"
#include "zorvela/compare.h"
#include "zorvela/error.h"
#include "zorvela/structure.h"

namespace zorvela {

namespace {

constexpr std::size_t kLongestForAlignment = 500;

void checkBond(const ModelBond& bond) {
  check(bond.omega.has_value() != bond.caToCa.has_value());
  if (bond.omega) {
    check(std::isfinite(*bond.omega) && std::fabs(*bond.omega) <= 180.0001);
    check(bond.state == stateOfOmega(*bond.omega));
  } else {
    check(bond.state == stateOfDistance(*bond.caToCa));
  }
}

void checkChain(const StructureChain& chain, std::size_t models) {
  check(!chain.residues.empty());
  for (const StructureResidue& residue : chain.residues) {
    if (residue.letter != 'P') {
      check(residue.bonds.empty() && residue.reason.empty());
      continue;
    }
    check(residue.bonds.empty() != residue.reason.empty());
    check(residue.bonds.size() <= models * chain.residues.size());
    for (const ModelBond& bond : residue.bonds) checkBond(bond);
    for (const ModelBond& bond : residue.others) checkBond(bond);
  }
}

// Every residue of a chain is itself.
void checkAlignment(const StructureChain& chain) {
  if (chain.residues.size() > kLongestForAlignment) return;
  const ChainAlignment alignment = align(chain.letters(), ChainRest(chain));
  check(alignment.identical == alignment.aligned);
}

void compareWithItself(const ProteinStructure& structure) {
  const StructureChain& chain = structure.chains.front();
  if (chain.residues.size() > kLongestForAlignment) return;
  Protein protein;
  protein.sequence = chain.letters();
  ProteinResult result;
  for (std::size_t i = 0; i < chain.residues.size(); ++i) {
    protein.numbers.push_back(std::to_string(i + 1));
    if (chain.residues[i].letter != 'P') continue;
    result.prolines.emplace_back();
    result.prolines.back().position = static_cast<int>(i) + 1;
    result.prolines.back().call = Call::cis;
  }
  std::vector<ProteinResult> results = {result};
  compareWithStructures({protein}, {structure}, results);
  for (const ProlineResult& proline : results.front().prolines)
    check(proline.structure && proline.structure->sentence.find('\n') == std::string::npos);
}

}  // namespace

void checkStructure(const std::string& bytes) {
  checkMessageOf([&] {
    const ProteinStructure structure = readStructureBytes(bytes, "input");
    check(!structure.chains.empty() && structure.modelCount > 0);
    for (const std::string& note : structure.notes) check(note.find('\n') == std::string::npos);
    for (const StructureChain& chain : structure.chains) {
      checkChain(chain, structure.modelCount);
      checkAlignment(chain);
    }
    compareWithItself(structure);
  });
}

}  // namespace zorvela
