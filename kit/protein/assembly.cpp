#include "protein/assembly.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <numeric>

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

/// The rows of a file by list, then chain.
struct GroupedRows {
  std::vector<std::vector<ShiftRows>> of;
  std::vector<std::size_t> withoutChain;  ///< how many of each list
};

/// A file whose proteins are made, and what there is to say of it.
struct Import {
  const ShiftFile& file;
  const std::string& path;
  const ImportOptions& options;
  const GroupedRows& rows;
  const std::vector<Polymer>& polymers;  ///< by chain
  std::vector<LeftOut> leftOut;
  std::vector<std::string> listNotes;
};

using Indices = std::vector<std::size_t>;

// --- What the file holds ------------------------------------------------------------------------

void checkSize(const ShiftFile& file, const std::string& path) {
  const char* const kSplit = "split it into one file per protein";
  std::size_t rows = 0;
  for (const FileShiftList& list : file.lists) rows += list.shifts.size();
  if (rows > kMostShiftRows)
    throw FileError(path, 0, "has more than " + std::to_string(kMostShiftRows) + " shift rows", kSplit);
  if (std::max(file.lists.size(), file.chains.size()) > kMostListsOrChains)
    throw FileError(path, 0, "has more than " + std::to_string(kMostListsOrChains) + " chains or shift lists",
                    kSplit);
  if (file.lists.size() * file.chains.size() > kMostChainsTimesLists)
    throw FileError(path, 0,
                    "has " + std::to_string(file.lists.size()) + " shift lists and " +
                        std::to_string(file.chains.size()) + " chains",
                    kSplit);
  for (const FileChain& chain : file.chains)
    if (chain.residues.size() > kLongestSequence)
      throw FileError(path, 0,
                      "has a sequence of more than " + std::to_string(kLongestSequence) + " residues",
                      "no protein is that long: check the file");
}

GroupedRows groupRows(const ShiftFile& file) {
  GroupedRows rows;
  rows.of.assign(file.lists.size(), std::vector<ShiftRows>(file.chains.size()));
  rows.withoutChain.assign(file.lists.size(), 0);
  for (std::size_t l = 0; l < file.lists.size(); ++l)
    for (const FileShift& row : file.lists[l].shifts) {
      if (row.chain < file.chains.size())
        rows.of[l][row.chain].push_back(&row);
      else
        ++rows.withoutChain[l];
    }
  return rows;
}

ShiftRows allRowsOf(std::size_t chain, const GroupedRows& rows) {
  ShiftRows all;
  for (const auto& list : rows.of) all.insert(all.end(), list[chain].begin(), list[chain].end());
  return all;
}

std::size_t rowCount(std::size_t chain, const Indices& lists, const GroupedRows& rows) {
  std::size_t count = 0;
  for (const std::size_t l : lists) count += rows.of[l][chain].size();
  return count;
}

/// What each chain is: by the file's words, else by the names of its residues.
std::vector<Polymer> polymersOf(const ShiftFile& file, const GroupedRows& rows) {
  std::vector<Polymer> polymers;
  for (std::size_t c = 0; c < file.chains.size(); ++c) {
    const FileChain& chain = file.chains[c];
    polymers.push_back(chain.polymer != Polymer::unknown ? chain.polymer
                                                         : polymerByNames(chain, allRowsOf(c, rows)));
  }
  return polymers;
}

std::string kindOf(const FileChain& chain) {
  return chain.kind.empty() ? "no amino acids" : chain.kind;
}

// --- Choice -------------------------------------------------------------------------------------

Indices wantedLists(const Import& import) {
  Indices lists;
  for (const std::string& wanted : import.options.lists) {
    const auto found = indicesOf(wanted, import.file.lists);
    if (found.empty() && !equalIgnoringCase(wanted, kAllLists))
      throwNoSuch(import.path, "shift list", wanted, import.file.lists);
    lists.insert(lists.end(), found.begin(), found.end());
  }
  const bool isAll = import.options.lists.empty() || lists.empty();
  if (isAll)
    for (std::size_t l = 0; l < import.file.lists.size(); ++l) lists.push_back(l);
  std::sort(lists.begin(), lists.end());
  lists.erase(std::unique(lists.begin(), lists.end()), lists.end());
  return lists;
}

Indices polypeptidesWithShifts(const Indices& lists, Import& import) {
  Indices chains;
  for (std::size_t c = 0; c < import.file.chains.size(); ++c) {
    const FileChain& chain = import.file.chains[c];
    const std::size_t rows = rowCount(c, lists, import.rows);
    if (rows == 0) continue;
    if (import.polymers[c] == Polymer::polypeptide)
      chains.push_back(c);
    else
      import.leftOut.push_back(
          {counted(rows, "shift", "shifts") + " of " + shownName(chain) + " (" + kindOf(chain) + ")", ""});
  }
  return chains;
}

void checkChosen(std::size_t chain, const Indices& lists, const Import& import) {
  const FileChain& chosen = import.file.chains[chain];
  const std::string remedy = "choose another: " + printable(namesOf(import.file.chains));
  if (import.polymers[chain] != Polymer::polypeptide)
    throw ChoiceError(import.path, 0, shownName(chosen) + " is no protein but " + kindOf(chosen), remedy);
  if (rowCount(chain, lists, import.rows) == 0)
    throw ChoiceError(import.path, 0,
                      shownName(chosen) + " has no shifts" +
                          (import.options.lists.empty() ? "" : " in the lists asked for"),
                      remedy);
}

Indices namedChains(const Indices& lists, const Import& import) {
  std::vector<bool> isWanted(import.file.chains.size(), false);
  for (const std::string& wanted : import.options.chains) {
    const auto found = indicesOf(wanted, import.file.chains);
    if (found.empty()) throwNoSuch(import.path, "chain", wanted, import.file.chains);
    for (const std::size_t c : found) {
      checkChosen(c, lists, import);
      isWanted[c] = true;
    }
  }
  Indices chains;
  for (std::size_t c = 0; c < isWanted.size(); ++c)
    if (isWanted[c]) chains.push_back(c);
  return chains;
}

/// The lists to make a table from: the fullest one unless the user has chosen.
Indices listsFor(std::size_t chain, const Indices& lists, Import& import) {
  const std::vector<FileShiftList>& all = import.file.lists;
  Indices filled;
  for (const std::size_t l : lists)
    if (!import.rows.of[l][chain].empty()) filled.push_back(l);
  if (!import.options.lists.empty() || filled.size() < 2) return filled;
  Indices counts;
  for (const std::size_t l : filled) counts.push_back(countTableShifts(import.rows.of[l][chain]));
  const auto best = static_cast<std::size_t>(std::max_element(counts.begin(), counts.end()) - counts.begin());
  std::vector<std::string> shown;
  for (std::size_t i = 0; i < filled.size(); ++i)
    shown.push_back(all[filled[i]].name + " (" + std::to_string(counts[i]) + ")");
  import.listNotes.push_back(shownName(import.file.chains[chain]) +
                             " has several shift lists, with backbone shifts: " + enumerated(shown) + "; " +
                             all[filled[best]].name + " is used, another can be chosen");
  return {filled[best]};
}

// --- Proteins -----------------------------------------------------------------------------------

void addCisFlags(const FileChain& chain, const ChainSequence& sequence, Protein& protein) {
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

void addRemarks(const FileChain& chain, const ShiftFile& file, const ChainSequence& sequence,
                Protein& protein) {
  std::string origin = "Imported from " + baseName(protein.file) + " (" + file.format + ")";
  if (!chain.name.empty()) origin += ", chain " + chain.name;
  if (!chain.molecule.empty() && chain.molecule != chain.name) origin += ", " + chain.molecule;
  if (!protein.list.empty()) origin += ", shift list " + protein.list;
  protein.remarks.push_back(printable(origin));
  for (const std::string& remark : numberingRemarks(protein.numbers))
    protein.remarks.push_back(printable(remark));
  addCisFlags(chain, sequence, protein);
}

/// A chain that gives no table. Why is said only if none gives one.
LeftOut leftOutOf(const FileChain& chain, std::size_t rows, const Protein& protein) {
  const std::string list = protein.list.empty() ? "the list without a name" : "list " + protein.list;
  std::vector<std::string> reasons = protein.notes;
  reasons.insert(reasons.end(), protein.asides.begin(), protein.asides.end());
  return {shownName(chain) + " (" + list + "): " + counted(rows, "shift", "shifts") + ", none for the table",
          " (" + enumerated(reasons, kMostReasons) + ")"};
}

/// The proteins of a chain, one for each list. Its sequence is that of all lists, so that each of its tables
/// has the same one.
void addProteins(std::size_t c, const Indices& lists, Import& import, std::vector<Protein>& proteins,
                 std::size_t& residuesMade) {
  const FileChain& chain = import.file.chains[c];
  std::vector<std::string> notes;
  const ChainSequence sequence = makeSequence(chain, allRowsOf(c, import.rows), notes);
  for (const std::size_t l : lists) {
    const ShiftRows& rows = import.rows.of[l][c];
    Protein protein;
    protein.file = import.path;
    protein.chain = chain.name;
    protein.list = import.file.lists[l].name;
    protein.notes = notes;
    checkResiduesMade(residuesMade += sequence.letters.size(), import.path);
    protein.sequence = sequence.letters;
    protein.numbers = sequence.numbers;
    protein.shifts = makeShifts(sequence, rows, protein.notes, protein.asides);
    if (protein.shifts.empty()) {
      import.leftOut.push_back(leftOutOf(chain, rows.size(), protein));
      continue;
    }
    markDisulfides(chain, sequence, protein);
    addRemarks(chain, import.file, sequence, protein);
    proteins.push_back(std::move(protein));
  }
}

// --- Notes --------------------------------------------------------------------------------------

/// Notes of the file go to its first protein, in front.
void finishNotes(const Import& import, std::vector<Protein>& proteins) {
  std::vector<std::string> notes = import.file.notes;
  for (const LeftOut& one : import.leftOut) notes.push_back("left out: " + one.what);
  notes.insert(notes.end(), import.listNotes.begin(), import.listNotes.end());
  std::vector<std::string>& first = proteins.front().notes;
  first.insert(first.begin(), std::make_move_iterator(notes.begin()), std::make_move_iterator(notes.end()));
  for (Protein& protein : proteins)
    for (std::string& note : protein.notes) note = printable(note, kLongestNote);
}

[[noreturn]] void throwNoShifts(const Import& import) {
  const ShiftFile& file = import.file;
  std::vector<std::string> held;
  for (const LeftOut& one : import.leftOut) held.push_back(one.what + one.reasons);
  held.insert(held.end(), file.contents.begin(), file.contents.end());
  const std::vector<std::size_t>& unplaced = import.rows.withoutChain;
  if (const auto count = std::accumulate(unplaced.begin(), unplaced.end(), std::size_t{0}); count > 0)
    held.push_back(counted(count, "shift", "shifts") + " of no chain");
  if (held.empty() && !file.notes.empty()) held.push_back(enumerated(file.notes, kMostReasons));
  const std::string text = held.empty() ? "no shifts at all" : enumerated(held);
  throw FileError(import.path, 0, "holds no backbone shifts of a protein",
                  "this " + file.format + " file holds: " + printable(text, kLongestNote));
}

std::vector<Protein> proteinsOf(const ShiftFile& file, const std::string& path,
                                const ImportOptions& options) {
  checkSize(file, path);
  const GroupedRows rows = groupRows(file);
  const std::vector<Polymer> polymers = polymersOf(file, rows);
  Import import{file, path, options, rows, polymers, {}, {}};
  const Indices lists = wantedLists(import);
  const Indices chains =
      options.chains.empty() ? polypeptidesWithShifts(lists, import) : namedChains(lists, import);
  std::vector<Protein> proteins;
  std::size_t residuesMade = 0;
  for (const std::size_t chain : chains)
    addProteins(chain, listsFor(chain, lists, import), import, proteins, residuesMade);
  if (proteins.empty()) throwNoShifts(import);
  std::size_t unplaced = 0;
  for (const std::size_t list : lists) unplaced += rows.withoutChain[list];
  if (unplaced > 0)
    import.leftOut.push_back(
        {counted(unplaced, "shift", "shifts") + " without a chain that the file describes", ""});
  finishNotes(import, proteins);
  return proteins;
}

}  // namespace

void checkResiduesMade(std::size_t residues, const std::string& path, std::size_t most) {
  if (residues > most)
    throw FileError(path, 0, "makes more than " + std::to_string(most) + " residues in all tables together",
                    "choose a chain and a list, or split the file");
}

std::vector<Protein> makeProteins(const ShiftFile& file, const std::string& path,
                                  const ImportOptions& options) {
  if (file.table) {
    const bool isListChosen =
        std::any_of(options.lists.begin(), options.lists.end(),
                    [](const std::string& wanted) { return !equalIgnoringCase(wanted, kAllLists); });
    if (!options.chains.empty() || isListChosen)
      throw ChoiceError(path, 0, "is a shift table, with one chain and one list",
                        "leave out the choice of a chain or list for it");
    return {proteinOfTable(*file.table, path, file.notes)};
  }
  return proteinsOf(file, path, options);
}

}  // namespace zorvela
