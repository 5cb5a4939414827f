#include "formats/star/star_chains.h"

#include <algorithm>
#include <map>
#include <unordered_set>

#include "names/nomenclature.h"
#include "util/text.h"

namespace zorvela {

namespace {

/// A tag, and the kind of file without shifts that has it.
struct ForeignTag {
  std::string_view start;
  const char* what;
};

constexpr ForeignTag kForeignNmrStar[] = {
    {"_Gen_dist_constraint", "a restraint list (NMR-STAR)"},
    {"_Torsion_angle_constraint", "a restraint list (NMR-STAR)"},
    {"_RDC_constraint", "a restraint list (NMR-STAR)"},
    {"_Distance_constraint", "a restraint list (NMR-STAR)"},
    {"_Spectral_peak_list.", "a peak list (NMR-STAR)"},
    {"_Peak_general_char.", "a peak list (NMR-STAR)"},
};

// NMR-STAR has these tags too, but in save frames with a category.
constexpr ForeignTag kForeignMmcif[] = {
    {"_atom_site.", "atom coordinates (mmCIF)"},
    {"_refln.", "structure factors (mmCIF)"},
    {"_chem_comp_atom.", "the description of a residue or ligand (mmCIF)"},
};

/// Returns the name in "(MSE)" at a position of a one-letter text; empty if there is none.
std::string bracketedName(const std::string& text, std::size_t pos) {
  constexpr std::size_t kLongestResidueName = 6;
  if (text[pos] != '(') return {};
  const std::string name = text.substr(pos + 1, kLongestResidueName + 1);
  const std::size_t end = name.find(')');
  return end == std::string::npos ? std::string() : name.substr(0, end);
}

/// Returns the category of a save frame; empty where it has none, as in mmCIF.
std::string categoryOf(const StarFrame& frame) {
  std::string category = frameValue(frame, "_Saveframe_category");
  const StarFile& file = frame.file;
  const StarLoop& pairs = file.loops[frame.items.firstLoop];
  for (std::size_t i = 0; i < pairs.tagCount; ++i)
    if (contains(lower(file.textOf(file.tags[pairs.firstTag + i])), ".sf_category"))
      category = file.textOf(file.values[pairs.firstValue + i]);
  return category;
}

/// One-letter names of the residues of a chain by their keys.
using Letters = std::unordered_map<std::string, char>;

Letters lettersOf(const FileChain& chain) {
  Letters letters;
  if (chain.polymer == Polymer::other) return letters;
  for (const FileResidue& residue : chain.residues)
    letters.emplace(residue.key, polypeptideResidue(residue.name).letter);
  return letters;
}

/// Key and letter of the residue that a row names.
struct NamedResidue {
  const std::string* key;
  char letter;
};

/// Returns the share of rows whose residue name is that of the sequence; -1 for a chain that is not a
/// polypeptide or has no sequence.
double fitOf(const std::vector<NamedResidue>& sample, const Letters& letters) {
  if (letters.empty() || sample.empty()) return -1;
  std::size_t fitting = 0;
  for (const NamedResidue& residue : sample) {
    const auto found = letters.find(*residue.key);
    if (found != letters.end() && found->second == residue.letter) ++fitting;
  }
  return static_cast<double>(fitting) / static_cast<double>(sample.size());
}

/// Returns the chain that most rows without a chain fit; `kNoChain` if two fit equally well, or none.
std::size_t bestFit(const std::vector<FileShift>& rows, const std::vector<Letters>& chains) {
  constexpr double kLeastFit = 0.5;
  constexpr std::size_t kSampleSize = 500;
  std::vector<NamedResidue> sample;
  for (std::size_t i = 0; i < rows.size() && sample.size() < kSampleSize; ++i)
    if (rows[i].chain == kNoChain)
      sample.push_back({&rows[i].key, polypeptideResidue(rows[i].residueName).letter});
  std::vector<double> shares;
  for (const Letters& letters : chains) shares.push_back(fitOf(sample, letters));
  const auto best = std::max_element(shares.begin(), shares.end());
  const bool isOnly =
      best != shares.end() && *best >= kLeastFit && std::count(best, shares.end(), *best) == 1;
  return isOnly ? static_cast<std::size_t>(best - shares.begin()) : kNoChain;
}

void placeByNames(std::vector<FileShiftList>& lists, const std::vector<FileChain>& chains,
                  std::vector<std::string>& notes) {
  const auto isPlaced = [](const FileShift& row) { return row.chain != kNoChain; };
  std::vector<std::size_t> candidates;
  for (std::size_t c = 0; c < chains.size(); ++c)
    if (chains[c].polymer != Polymer::other) candidates.push_back(c);
  std::vector<Letters> letters;
  for (FileShiftList& list : lists) {
    std::vector<FileShift>& rows = list.shifts;
    if (std::all_of(rows.begin(), rows.end(), isPlaced)) continue;
    if (candidates.size() != 1 && letters.empty())
      for (const FileChain& chain : chains) letters.push_back(lettersOf(chain));
    const std::size_t chosen = candidates.size() == 1 ? candidates.front() : bestFit(rows, letters);
    if (chosen == kNoChain) continue;
    for (FileShift& row : rows)
      if (row.chain == kNoChain) row.chain = chosen;
    if (candidates.size() < 2) continue;
    const std::string note =
        "shifts without a chain read as chain " + chains[chosen].name + ", whose sequence fits them best";
    if (notes.empty() || notes.back() != note) notes.push_back(note);
  }
}

/// Numbers that rows give to the residues of a chain, by their keys.
using RowNumbers = std::unordered_map<std::string, std::string>;

void numberChain(FileChain& chain, const RowNumbers& ofRows, std::vector<std::string>& notes) {
  std::unordered_set<std::string> taken;
  for (const FileResidue& residue : chain.residues)
    if (!residue.number.empty()) taken.insert(residue.number);
  std::vector<std::string> twice;
  for (FileResidue& residue : chain.residues) {
    const auto found = ofRows.find(residue.key);
    if (!residue.number.empty() || found == ofRows.end()) continue;
    if (taken.insert(found->second).second)
      residue.number = found->second;
    else
      twice.push_back(found->second);
  }
  if (!twice.empty())
    notes.push_back("the shift rows of chain " + chain.name +
                    " give two residues the same number: " + enumerated(twice) + "; the first keeps it");
  if (!taken.empty()) return;
  for (FileResidue& residue : chain.residues) residue.number = residue.key;
}

}  // namespace

std::size_t ChainFinder::find(const std::string& name) const {
  const auto found = index.find(name);
  return found != index.end() ? found->second : kNoChain;
}

std::size_t ChainFinder::add(const std::string& name, FileChain chain) {
  checkLimit(chains.size() + 1, limits::kChains, fileName);
  countResidues(chain.residues.size());
  chains.push_back(std::move(chain));
  index.emplace(name, chains.size() - 1);
  return chains.size() - 1;
}

void ChainFinder::countResidues(std::size_t more) {
  checkLimit(residueCount += more, limits::kResidues, fileName);
  checkLimit(work->residues += more, limits::kResiduesOfEntries, fileName);
}

void ChainFinder::reserveRows(FileShiftList& list, std::size_t more) {
  checkLimit(rowCount += more, limits::kShiftRows, fileName);
  std::vector<FileShift>& rows = list.shifts;
  // A list may come in many small tables.
  if (rows.size() + more > rows.capacity()) rows.reserve(std::max(rows.size() + more, 2 * rows.capacity()));
}

void ChainFinder::countLists(std::size_t lists) {
  checkLimit(work->chainsTimesLists += lists * chains.size(), limits::kChainsTimesLists, fileName);
}

std::vector<FileResidue> residuesOfLetters(const std::string& text) {
  std::vector<FileResidue> residues;
  residues.reserve(std::min(text.size(), kLongestSequence));
  for (std::size_t pos = 0; pos < text.size() && residues.size() <= kLongestSequence; ++pos) {
    std::string name = bracketedName(text, pos);
    if (!name.empty())
      pos += name.size() + 1;
    else if (isLetter(text[pos]))
      name = upper(text.substr(pos, 1));
    if (!name.empty()) residues.push_back({std::to_string(residues.size() + 1), {}, name});
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

std::optional<bool> readFlag(std::string_view word) {
  if (equalIgnoringCase(word, "true") || equalIgnoringCase(word, "yes")) return true;
  if (equalIgnoringCase(word, "false") || equalIgnoringCase(word, "no")) return false;
  return std::nullopt;
}

void noteCautions(const std::string& molecule, const std::string& state, const std::string& paramagnetic,
                  std::vector<std::string>& notes) {
  const std::string words = printable(lower(state));
  const std::string subject = "the file calls " + (molecule.empty() ? "the molecule" : molecule) + " ";
  for (const char* unfolded : {"denatured", "unfolded", "disordered", "molten"})
    if (contains(words, unfolded)) {
      notes.push_back(subject + words + "; predictions are for folded proteins");
      break;
    }
  if (equalIgnoringCase(paramagnetic, "yes"))
    notes.push_back(subject + "paramagnetic; the centre moves the shifts near it");
}

std::vector<std::string> starContents(const StarEntry& entry) {
  std::map<std::string, std::size_t> frames;
  bool hasCoordinates = false;
  for (const StarFrame& frame : framesOf(entry)) {
    const std::string category = categoryOf(frame);
    if (!category.empty()) ++frames[printable(category)];
    hasCoordinates = hasCoordinates || !tablesOf(frame, "_atom_site.").empty();
  }
  std::vector<std::string> contents;
  if (hasCoordinates) contents.push_back("atom coordinates");
  for (const auto& [category, count] : frames)
    contents.push_back(count == 1 ? category : std::to_string(count) + " " + category);
  return contents;
}

std::string foreignStar(const StarEntry& entry) {
  const std::vector<StarFrame> frames = framesOf(entry);
  if (haveTable(frames, "_Atom_chem_shift.")) return {};
  for (const ForeignTag& tag : kForeignNmrStar)
    if (haveTable(frames, tag.start)) return tag.what;
  const bool hasCategories = std::any_of(frames.begin(), frames.end(),
                                         [](const StarFrame& frame) { return !categoryOf(frame).empty(); });
  if (!hasCategories)
    for (const ForeignTag& tag : kForeignMmcif)
      if (haveTable(frames, tag.start)) return tag.what;
  return {};
}

void addList(FileShiftList list, ShiftFile& file, const std::string& name) {
  checkLimit(file.lists.size() + 1, limits::kLists, name);
  file.lists.push_back(std::move(list));
}

void ChainFinder::addBondEnd(std::size_t chain, const std::string& key) {
  checkLimit(++work->bondEnds, limits::kBondEnds, fileName);
  chains[chain].disulfides.push_back(key);
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

void settleChains(ChainFinder& finder, ShiftFile& file) {
  finder.countLists(file.lists.size());
  file.chains = std::move(finder.chains);
  placeByNames(file.lists, file.chains, file.notes);
}

void numberByRows(std::vector<FileChain>& chains, const std::vector<FileShiftList>& lists,
                  std::vector<std::string>& notes) {
  std::vector<RowNumbers> ofRows(chains.size());
  for (const FileShiftList& list : lists)
    for (const FileShift& row : list.shifts)
      if (row.chain < chains.size() && !row.key.empty() && !row.number.empty())
        ofRows[row.chain].emplace(row.key, row.number);
  for (std::size_t c = 0; c < chains.size(); ++c) numberChain(chains[c], ofRows[c], notes);
}

}  // namespace zorvela
