// Fuzzes the reading of structures, and the comparison of what was read with its own sequence.
//
// Beside crashes and sanitizer reports it finds: errors of another kind than those for the user or of more
// than one line, bonds whose state contradicts their geometry, and a chain that does not match itself.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "structure/chain_alignment.h"
#include "zorvela/compare.h"
#include "zorvela/error.h"
#include "zorvela/structure.h"

namespace {

constexpr std::size_t kLongestForAlignment = 500;

void check(bool holds) {
  if (!holds) std::abort();
}

void checkBond(const zorvela::ModelBond& bond) {
  check(bond.omega.has_value() != bond.caToCa.has_value());
  if (bond.omega) {
    check(std::isfinite(*bond.omega) && std::fabs(*bond.omega) <= 180.0001);
    check(bond.state == zorvela::stateOfOmega(*bond.omega));
  } else {
    check(bond.state == zorvela::stateOfDistance(*bond.caToCa));
  }
}

void checkChain(const zorvela::StructureChain& chain, std::size_t models) {
  check(!chain.residues.empty());
  for (const zorvela::StructureResidue& residue : chain.residues) {
    if (residue.letter != 'P') {
      check(residue.bonds.empty() && residue.whyNoBond.empty());
      continue;
    }
    check(residue.bonds.empty() != residue.whyNoBond.empty());
    check(residue.bonds.size() <= models * chain.residues.size());
    for (const zorvela::ModelBond& bond : residue.bonds) checkBond(bond);
    for (const zorvela::ModelBond& bond : residue.others) checkBond(bond);
  }
}

// Every residue of a chain is itself.
void checkAlignment(const zorvela::StructureChain& chain) {
  if (chain.residues.size() > kLongestForAlignment) return;
  const auto alignment = zorvela::align(chain.letters(), chain);
  check(alignment && alignment->identical == alignment->aligned);
}

void compareWithItself(const zorvela::ProteinStructure& structure) {
  const zorvela::StructureChain& chain = structure.chains.front();
  if (chain.residues.size() > kLongestForAlignment) return;
  zorvela::Protein protein;
  protein.sequence = chain.letters();
  zorvela::ProteinResult result;
  for (std::size_t i = 0; i < chain.residues.size(); ++i) {
    protein.numbers.push_back(std::to_string(i + 1));
    if (chain.residues[i].letter != 'P') continue;
    result.prolines.emplace_back();
    result.prolines.back().position = static_cast<int>(i) + 1;
    result.prolines.back().call = zorvela::Call::cis;
  }
  const auto compared = zorvela::compareWithStructures({protein}, {result}, {structure});
  check(compared.size() == 1 && compared.front().prolines.size() == result.prolines.size());
  for (const zorvela::ComparedProline& proline : compared.front().prolines)
    check(proline.evidence.find('\n') == std::string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const zorvela::ProteinStructure structure =
        zorvela::readStructureBytes(std::string(reinterpret_cast<const char*>(data), size), "input");
    check(!structure.chains.empty() && structure.modelCount > 0);
    for (const std::string& note : structure.notes) check(note.find('\n') == std::string::npos);
    for (const zorvela::StructureChain& chain : structure.chains) {
      checkChain(chain, structure.modelCount);
      checkAlignment(chain);
    }
    compareWithItself(structure);
  } catch (const zorvela::Error& error) {
    const std::string_view what = error.what();
    check(!what.empty() && what.size() < 2000 && what.find('\n') == std::string_view::npos);
  }
  return 0;
}
