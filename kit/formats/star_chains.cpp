#include "formats/star_chains.h"

#include <algorithm>
#include <map>

#include "formats/star_document.h"
#include "protein/nomenclature.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

/// "(MSE)" at a place of a one-letter text: the name, empty if there is none.
std::string bracketedName(const std::string& text, std::size_t pos) {
  constexpr std::size_t kLongestName = 6;
  if (text[pos] != '(') return {};
  const std::string name = text.substr(pos + 1, kLongestName + 1);
  const std::size_t end = name.find(')');
  return end == std::string::npos ? std::string() : name.substr(0, end);
}

/// Share of rows whose residue name is the sequence's at that place; -1 for a chain that is no
/// polypeptide or has no sequence.
double fitOf(const std::vector<FileShift>& rows, const FileChain& chain) {
  if (chain.polymer == Polymer::other || chain.residues.empty()) return -1;
  std::unordered_map<std::string, char> letters;
  for (const FileResidue& residue : chain.residues)
    letters.emplace(residue.key, polypeptideResidue(residue.name).letter);
  constexpr std::size_t kSampleSize = 500;
  std::size_t fitting = 0;
  std::size_t all = 0;
  for (const FileShift& row : rows) {
    if (row.chain != kNoChain) continue;
    if (all == kSampleSize) break;
    ++all;
    const auto found = letters.find(row.key);
    if (found != letters.end() && found->second == polypeptideResidue(row.residueName).letter) ++fitting;
  }
  return all > 0 ? static_cast<double>(fitting) / static_cast<double>(all) : -1;
}

std::size_t bestFit(const std::vector<FileShift>& rows, const std::vector<FileChain>& chains) {
  constexpr double kLeastFit = 0.5;
  std::size_t best = kNoChain;
  double bestShare = kLeastFit;
  bool isTie = false;
  for (std::size_t c = 0; c < chains.size(); ++c) {
    const double share = fitOf(rows, chains[c]);
    if (share < bestShare) continue;
    isTie = best != kNoChain && share == bestShare;
    if (isTie) continue;
    best = c;
    bestShare = share;
  }
  return isTie ? kNoChain : best;
}

}  // namespace

std::size_t ChainFinder::find(const std::string& name) const {
  const auto found = index.find(name);
  return found != index.end() ? found->second : kNoChain;
}

std::size_t ChainFinder::add(const std::string& name, FileChain chain) {
  residueCount += chain.residues.size();
  if (residueCount > kMostResidues || chains.size() == kMostListsOrChains)
    throw FileError(fileName, 0,
                    "describes more than " + std::to_string(kMostListsOrChains) + " chains or " +
                        std::to_string(kMostResidues) + " residues",
                    "give the part with the protein only");
  chains.push_back(std::move(chain));
  index.emplace(name, chains.size() - 1);
  return chains.size() - 1;
}

std::vector<FileResidue> residuesOfLetters(const std::string& text) {
  std::vector<FileResidue> residues;
  for (std::size_t pos = 0; pos < text.size() && residues.size() <= kLongestSequence; ++pos) {
    FileResidue residue;
    if (const std::string name = bracketedName(text, pos); !name.empty()) {
      residue.name = name;
      pos += name.size() + 1;
    } else if (isLetter(text[pos])) {
      residue.name = upper(std::string_view(&text[pos], 1));
    } else {
      continue;
    }
    residue.key = std::to_string(residues.size() + 1);
    residues.push_back(residue);
  }
  return residues;
}

Thiol thiolOfWords(const std::string& words) {
  const std::string text = lower(words);
  if (text == "all disulfide bound") return Thiol::disulfide;
  const bool namesState = contains(text, "free") || contains(text, "other bound");
  return namesState && !contains(text, "disulfide") ? Thiol::notDisulfide : Thiol::unknown;
}

bool isDisulfideBond(const std::string& type, const std::string& atom1, const std::string& atom2) {
  const std::string words = lower(type);
  if (contains(words, "disulf") || contains(words, "disulph")) return true;
  return equalIgnoringCase(atom1, "SG") && equalIgnoringCase(atom2, "SG");
}

Polymer polymerOfWords(const std::string& words) {
  const std::string text = lower(words);
  if (contains(text, "nucleic")) return Polymer::other;  // also peptide nucleic acids
  if (contains(text, "peptide") || contains(text, "protein")) return Polymer::polypeptide;
  const bool isOther = contains(text, "nucleotide") || contains(text, "saccharide") ||
                       contains(text, "dna") || contains(text, "rna") || contains(text, "non-polymer") ||
                       contains(text, "water");
  return isOther ? Polymer::other : Polymer::unknown;
}

void noteCautions(const std::string& molecule, const std::string& state, const std::string& paramagnetic,
                  std::vector<std::string>& notes) {
  const std::string words = lower(state);
  const std::string subject = "the file calls " + (molecule.empty() ? "the molecule" : molecule) + " ";
  for (const char* unfolded : {"denatured", "unfolded", "disordered", "molten"})
    if (contains(words, unfolded)) {
      notes.push_back(subject + words + ": predictions are made for folded proteins");
      break;
    }
  if (equalIgnoringCase(paramagnetic, "yes"))
    notes.push_back(subject + "paramagnetic: shifts near the centre are moved by it");
}

std::string listName(const gemmi::cif::Block& frame) {
  // The parser's name for a block without one.
  return frame.name == "#" ? std::string() : frame.name;
}

std::vector<std::string> starContents(const gemmi::cif::Document& document) {
  std::map<std::string, std::size_t> frames;
  std::vector<std::string> contents;
  for (const gemmi::cif::Block& block : document.blocks) {
    for (const gemmi::cif::Block* frame : framesOf(block)) {
      std::string category = frameValue(*frame, "_Saveframe_category");
      for (const gemmi::cif::Item& item : frame->items)
        if (item.type == gemmi::cif::ItemType::Pair && contains(lower(item.pair[0]), ".sf_category"))
          category = gemmi::cif::as_string(item.pair[1]);
      if (!category.empty()) ++frames[category];
    }
    if (!tablesOf(block, "_atom_site.").empty()) contents.push_back("atom coordinates");
  }
  for (const auto& [category, count] : frames)
    contents.push_back(count == 1 ? category : std::to_string(count) + " " + category);
  return contents;
}

void makeNamesDiffer(std::vector<FileChain>& chains) {
  std::map<std::string, std::size_t> uses;
  for (const FileChain& chain : chains) ++uses[lower(chain.name)];
  for (std::size_t i = 0; i < chains.size(); ++i) {
    if (chains[i].name.empty() || uses[lower(chains[i].name)] < 2) continue;
    chains[i].aliases.push_back(chains[i].name);
    chains[i].name += "-" + std::to_string(i + 1);
  }
}

void placeByNames(std::vector<FileShift>& rows, const std::vector<FileChain>& chains,
                  std::vector<std::string>& notes) {
  const auto isPlaced = [](const FileShift& row) { return row.chain != kNoChain; };
  if (std::all_of(rows.begin(), rows.end(), isPlaced)) return;
  std::vector<std::size_t> candidates;
  for (std::size_t c = 0; c < chains.size(); ++c)
    if (chains[c].polymer != Polymer::other) candidates.push_back(c);
  const std::size_t chosen = candidates.size() == 1 ? candidates.front() : bestFit(rows, chains);
  if (chosen == kNoChain) return;
  for (FileShift& row : rows)
    if (row.chain == kNoChain) row.chain = chosen;
  if (candidates.size() > 1)
    notes.push_back("shifts that name no chain fit the sequence of chain " + chains[chosen].name + " best");
}

}  // namespace zorvela
