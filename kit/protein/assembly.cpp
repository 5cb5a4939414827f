#include "protein/assembly.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "protein/disulfides.h"
#include "protein/numbering.h"
#include "protein/own_table.h"
#include "protein/sequence.h"
#include "protein/shifts.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr std::size_t kLongestNote = 400;
constexpr std::size_t kMostReasons = 4;
constexpr const char* kAllLists = "all";

/// A user's name for a chain or list: nothing if it names none of them.
template <class Named>
std::vector<std::size_t> indicesOf(const std::string& wanted, const std::vector<Named>& all) {
  std::vector<std::size_t> byName;
  std::vector<std::size_t> byAlias;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (equalIgnoringCase(all[i].name, wanted)) byName.push_back(i);
    for (const std::string& alias : all[i].aliases)
      if (equalIgnoringCase(alias, wanted) && (byAlias.empty() || byAlias.back() != i)) byAlias.push_back(i);
  }
  return byName.empty() ? byAlias : byName;
}

template <class Named>
std::string namesOf(const std::vector<Named>& all) {
  std::vector<std::string> names;
  for (const Named& one : all)
    if (!one.name.empty()) names.push_back(one.name);
  return names.empty() ? "none by name" : enumerated(names);
}

template <class Named>
[[noreturn]] void throwNoSuch(const std::string& path, const std::string& what, const std::string& wanted,
                              const std::vector<Named>& all) {
  throw ChoiceError(path, 0, "has no " + what + " \"" + printable(wanted, 60) + "\"",
                    "it has: " + printable(namesOf(all)));
}

std::string shownName(const FileChain& chain) {
  return chain.name.empty() ? "the chain without a name" : "chain " + chain.name;
}

/// Rows that give no table, and why: said where the file gives none at all.
struct LeftOut {
  std::string what;
  std::string reasons;
};

/// Builds the proteins of one file.
class ProteinMaker {
 public:
  ProteinMaker(ShiftFile shiftFile, const std::string& filePath, const ImportOptions& wanted)
      : file(std::move(shiftFile)), path(filePath), options(wanted) {
    checkSize();
    groupRows();
    for (std::size_t c = 0; c < file.chains.size(); ++c)
      if (file.chains[c].polymer == Polymer::unknown)
        file.chains[c].polymer = polymerByNames(file.chains[c], allRowsOf(c));
  }

  std::vector<Protein> make() {
    const std::vector<std::size_t> lists = wantedLists();
    std::vector<Protein> proteins;
    for (const std::size_t chain : wantedChains(lists))
      for (const std::size_t list : listsFor(chain, lists)) addProtein(chain, list, proteins);
    if (proteins.empty()) throwNoShifts();
    noteRowsWithoutChain(lists);
    finishNotes(proteins);
    return proteins;
  }

 private:
  void checkSize() const {
    std::size_t rows = 0;
    for (const FileShiftList& list : file.lists) rows += list.shifts.size();
    if (rows > kMostShiftRows)
      throw FileError(path, 0, "has more than " + std::to_string(kMostShiftRows) + " shift rows",
                      "split it into one file per protein");
    if (std::max(file.lists.size(), file.chains.size()) > kMostListsOrChains)
      throw FileError(path, 0,
                      "has more than " + std::to_string(kMostListsOrChains) + " chains or shift lists",
                      "split it into one file per protein");
    if (file.lists.size() * file.chains.size() > kMostChainsTimesLists)
      throw FileError(path, 0,
                      "has " + std::to_string(file.lists.size()) + " shift lists and " +
                          std::to_string(file.chains.size()) + " chains",
                      "split it into one file per protein");
    for (const FileChain& chain : file.chains)
      if (chain.residues.size() > kLongestSequence)
        throw FileError(path, 0,
                        "has a sequence of more than " + std::to_string(kLongestSequence) + " residues",
                        "no protein is that long: check the file");
  }

  void groupRows() {
    rowsOf.assign(file.lists.size(), std::vector<ShiftRows>(file.chains.size()));
    withoutChain.assign(file.lists.size(), 0);
    for (std::size_t l = 0; l < file.lists.size(); ++l)
      for (const FileShift& row : file.lists[l].shifts) {
        if (row.chain < file.chains.size())
          rowsOf[l][row.chain].push_back(&row);
        else
          ++withoutChain[l];
      }
  }

  ShiftRows allRowsOf(std::size_t chain) const {
    ShiftRows rows;
    for (const auto& list : rowsOf) rows.insert(rows.end(), list[chain].begin(), list[chain].end());
    return rows;
  }

  std::vector<std::size_t> wantedLists() const {
    std::vector<std::size_t> lists;
    for (const std::string& wanted : options.lists) {
      const auto found = indicesOf(wanted, file.lists);
      if (found.empty() && !equalIgnoringCase(wanted, kAllLists))
        throwNoSuch(path, "shift list", wanted, file.lists);
      lists.insert(lists.end(), found.begin(), found.end());
    }
    const bool isAll = options.lists.empty() || lists.empty();
    if (isAll)
      for (std::size_t l = 0; l < file.lists.size(); ++l) lists.push_back(l);
    std::sort(lists.begin(), lists.end());
    lists.erase(std::unique(lists.begin(), lists.end()), lists.end());
    return lists;
  }

  std::vector<std::size_t> wantedChains(const std::vector<std::size_t>& lists) {
    return options.chains.empty() ? polypeptidesWithShifts(lists) : namedChains(lists);
  }

  std::vector<std::size_t> polypeptidesWithShifts(const std::vector<std::size_t>& lists) {
    std::vector<std::size_t> chains;
    for (std::size_t c = 0; c < file.chains.size(); ++c) {
      const std::size_t rows = rowCount(c, lists);
      if (rows == 0) continue;
      if (file.chains[c].polymer == Polymer::polypeptide)
        chains.push_back(c);
      else
        leftOut.push_back({counted(rows, "shift", "shifts") + " of " + shownName(file.chains[c]) + " (" +
                               kindOf(file.chains[c]) + ")",
                           ""});
    }
    return chains;
  }

  std::vector<std::size_t> namedChains(const std::vector<std::size_t>& lists) const {
    std::vector<bool> isWanted(file.chains.size(), false);
    for (const std::string& wanted : options.chains) {
      const auto found = indicesOf(wanted, file.chains);
      if (found.empty()) throwNoSuch(path, "chain", wanted, file.chains);
      for (const std::size_t c : found) {
        checkChosen(c, lists);
        isWanted[c] = true;
      }
    }
    std::vector<std::size_t> chains;
    for (std::size_t c = 0; c < isWanted.size(); ++c)
      if (isWanted[c]) chains.push_back(c);
    return chains;
  }

  void checkChosen(std::size_t chain, const std::vector<std::size_t>& lists) const {
    const FileChain& chosen = file.chains[chain];
    if (chosen.polymer != Polymer::polypeptide)
      throw ChoiceError(path, 0, shownName(chosen) + " is no protein but " + kindOf(chosen),
                        "choose another: " + printable(namesOf(file.chains)));
    if (rowCount(chain, lists) == 0)
      throw ChoiceError(
          path, 0,
          shownName(chosen) + " has no shifts" + (options.lists.empty() ? "" : " in the lists asked for"),
          "choose another: " + printable(namesOf(file.chains)));
  }

  static std::string kindOf(const FileChain& chain) {
    return chain.kind.empty() ? "no amino acids" : chain.kind;
  }

  std::size_t rowCount(std::size_t chain, const std::vector<std::size_t>& lists) const {
    std::size_t count = 0;
    for (const std::size_t l : lists) count += rowsOf[l][chain].size();
    return count;
  }

  /// The lists to make a table from: the fullest one unless the user has chosen.
  std::vector<std::size_t> listsFor(std::size_t chain, const std::vector<std::size_t>& lists) {
    std::vector<std::size_t> filled;
    for (const std::size_t l : lists)
      if (!rowsOf[l][chain].empty()) filled.push_back(l);
    if (!options.lists.empty() || filled.size() < 2) return filled;
    std::vector<std::size_t> counts;
    for (const std::size_t l : filled) counts.push_back(countTableShifts(rowsOf[l][chain]));
    const auto best =
        static_cast<std::size_t>(std::max_element(counts.begin(), counts.end()) - counts.begin());
    std::vector<std::string> shown;
    for (std::size_t i = 0; i < filled.size(); ++i)
      shown.push_back(file.lists[filled[i]].name + " (" + std::to_string(counts[i]) + ")");
    listNotes.push_back(shownName(file.chains[chain]) +
                        " has several shift lists, with backbone shifts: " + enumerated(shown) + "; " +
                        file.lists[filled[best]].name + " is used, another can be chosen");
    return {filled[best]};
  }

  void addProtein(std::size_t chain, std::size_t list, std::vector<Protein>& proteins) {
    const FileChain& from = file.chains[chain];
    Protein protein;
    protein.file = path;
    protein.chain = from.name;
    protein.list = file.lists[list].name;
    if (sequenceOf != chain) buildSequence(chain);
    protein.notes = sequenceNotes;
    residuesMade += sequence.letters.size();
    checkResiduesMade(residuesMade, path);
    protein.sequence = sequence.letters;
    protein.numbers = sequence.numbers;
    protein.shifts = makeShifts(sequence, rowsOf[list][chain], protein.notes, protein.asides);
    if (protein.shifts.empty()) {
      leaveOut(chain, list, protein);
      return;
    }
    markDisulfides(from, sequence, protein);
    addRemarks(from, list, protein);
    proteins.push_back(std::move(protein));
  }

  /// A chain that gives no table. Why is said only if none gives one.
  void leaveOut(std::size_t chain, std::size_t list, const Protein& protein) {
    const std::string what = shownName(file.chains[chain]) + " (" + listText(list) +
                             "): " + counted(rowsOf[list][chain].size(), "shift", "shifts") +
                             ", none for the table";
    std::vector<std::string> reasons = protein.notes;
    reasons.insert(reasons.end(), protein.asides.begin(), protein.asides.end());
    leftOut.push_back({what, " (" + enumerated(reasons, kMostReasons) + ")"});
  }

  /// Of all lists of a chain, so that each of its tables has the same sequence.
  void buildSequence(std::size_t chain) {
    sequenceNotes.clear();
    sequence = makeSequence(file.chains[chain], allRowsOf(chain), sequenceNotes);
    sequenceOf = chain;
  }

  std::string listText(std::size_t list) const {
    return file.lists[list].name.empty() ? "the list without a name" : "list " + file.lists[list].name;
  }

  void addRemarks(const FileChain& chain, std::size_t list, Protein& protein) const {
    std::string origin = "Imported from " + baseName() + " (" + file.format + ")";
    if (!chain.name.empty()) origin += ", chain " + chain.name;
    if (!chain.molecule.empty() && chain.molecule != chain.name) origin += ", " + chain.molecule;
    if (!file.lists[list].name.empty()) origin += ", shift list " + file.lists[list].name;
    protein.remarks.push_back(printable(origin));
    for (const std::string& remark : numberingRemarks(protein.numbers))
      protein.remarks.push_back(printable(remark));
    addCisFlags(chain, protein);
  }

  void addCisFlags(const FileChain& chain, Protein& protein) const {
    for (const FileCisFlag& flag : chain.cisFlags)
      if (const auto found = sequence.byKey.find(flag.key); found != sequence.byKey.end())
        protein.cisFlags.emplace(found->second, flag.isCis);
    std::vector<std::string> cis;
    for (const auto& [resid, isCis] : protein.cisFlags)
      if (isCis) cis.push_back(sequence.letter(resid) + sequence.number(resid));
    if (cis.empty()) return;
    const std::string text = "he file marks as cis peptide bond: " + enumerated(cis, cis.size());
    protein.remarks.push_back(printable("T" + text, kLongestNote));
    protein.notes.push_back("t" + text + "; this is kept as a remark and not used");
  }

  std::string baseName() const {
    const std::size_t slash = path.find_last_of('/');
    return path.substr(slash == std::string::npos ? 0 : slash + 1);
  }

  void noteRowsWithoutChain(const std::vector<std::size_t>& lists) {
    std::size_t count = 0;
    for (const std::size_t l : lists) count += withoutChain[l];
    if (count > 0)
      leftOut.push_back({counted(count, "shift", "shifts") + " without a chain that the file describes", ""});
  }

  /// Notes of the file go to its first protein, in front.
  void finishNotes(std::vector<Protein>& proteins) {
    std::vector<std::string> notes = file.notes;
    for (const LeftOut& one : leftOut) notes.push_back("left out: " + one.what);
    notes.insert(notes.end(), listNotes.begin(), listNotes.end());
    std::vector<std::string>& first = proteins.front().notes;
    first.insert(first.begin(), std::make_move_iterator(notes.begin()), std::make_move_iterator(notes.end()));
    for (Protein& protein : proteins)
      for (std::string& note : protein.notes) note = printable(note, kLongestNote);
  }

  [[noreturn]] void throwNoShifts() const {
    std::vector<std::string> held;
    for (const LeftOut& one : leftOut) held.push_back(one.what + one.reasons);
    held.insert(held.end(), file.contents.begin(), file.contents.end());
    std::size_t unplaced = 0;
    for (const std::size_t count : withoutChain) unplaced += count;
    if (unplaced > 0) held.push_back(counted(unplaced, "shift", "shifts") + " of no chain");
    if (held.empty() && !file.notes.empty()) held.push_back(enumerated(file.notes, kMostReasons));
    const std::string text = held.empty() ? "no shifts at all" : enumerated(held);
    throw FileError(path, 0, "holds no backbone shifts of a protein",
                    "this " + file.format + " file holds: " + printable(text, kLongestNote));
  }

  ShiftFile file;
  const std::string& path;
  const ImportOptions& options;
  std::vector<std::vector<ShiftRows>> rowsOf;  ///< by list, then chain
  std::vector<std::size_t> withoutChain;       ///< rows by list
  std::vector<LeftOut> leftOut;
  std::vector<std::string> listNotes;
  ChainSequence sequence;  ///< of the chain that is made
  std::vector<std::string> sequenceNotes;
  std::size_t sequenceOf = kNoChain;
  std::size_t residuesMade = 0;
};

}  // namespace

void checkResiduesMade(std::size_t residues, const std::string& path, std::size_t most) {
  if (residues > most)
    throw FileError(path, 0, "makes more than " + std::to_string(most) + " residues in all tables together",
                    "choose a chain and a list, or split the file");
}

std::vector<Protein> makeProteins(ShiftFile file, const std::string& path, const ImportOptions& options) {
  if (file.table) {
    if (!options.chains.empty() || !options.lists.empty())
      throw ChoiceError(path, 0, "is a shift table, with one chain and one list",
                        "leave out the choice of a chain or list for it");
    return {proteinOfTable(*file.table, path, file.notes)};
  }
  return ProteinMaker(std::move(file), path, options).make();
}

}  // namespace zorvela
