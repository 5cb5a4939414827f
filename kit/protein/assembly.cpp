#include "protein/assembly.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <set>

#include "formats/format.h"
#include "protein/deuteration.h"
#include "protein/disulfides.h"
#include "protein/numbering.h"
#include "protein/own_table.h"
#include "protein/place_on_sequence.h"
#include "protein/sequence.h"
#include "protein/shifts.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr std::size_t kLongestNote = 400;
constexpr std::size_t kMostReasons = 4;
constexpr const char* kAllLists = "all";

/// Returns the chains or lists that have a name, else those that have it as another name.
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
  return names.empty() ? "only unnamed ones" : enumerated(names);
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

using Indices = std::vector<std::size_t>;

/// Rows that give no table; the reasons are shown where the file gives none at all.
struct LeftOut {
  std::string what;
  std::string reasons;
};

/// A file, and the lists of it that are wanted.
struct Entry {
  ShiftFile& file;  ///< its residues go to the proteins
  std::string path;
  std::vector<std::vector<ShiftRows>> rows = {};  ///< by list, then chain
  Indices lists = {};                             ///< the wanted ones
  bool areListsChosen = false;                    ///< by the user
};

/// The proteins of an entry, and the notes on it.
struct Outcome {
  std::vector<Protein> proteins = {};
  std::size_t residues = 0;  ///< of them
  std::vector<LeftOut> leftOut = {};
  std::vector<std::string> listNotes = {};
};

// --- What the file holds ------------------------------------------------------------------------

std::vector<std::vector<ShiftRows>> groupRows(const ShiftFile& file) {
  std::vector<std::vector<ShiftRows>> rows;
  for (const FileShiftList& list : file.lists) {
    std::vector<ShiftRows>& ofList = rows.emplace_back(file.chains.size());
    for (const FileShift& row : list.shifts)
      if (row.chain < file.chains.size()) ofList[row.chain].push_back(&row);
  }
  return rows;
}

/// Counts the rows of the lists whose chain the file does not describe.
std::size_t countUnplaced(const Indices& lists, const ShiftFile& file) {
  std::size_t count = 0;
  for (const std::size_t l : lists)
    for (const FileShift& row : file.lists[l].shifts)
      if (row.chain >= file.chains.size()) ++count;
  return count;
}

/// The rows of all lists, so that each table of a chain has the same sequence.
ShiftRows allRowsOf(std::size_t chain, const Entry& entry) {
  ShiftRows all;
  for (const auto& list : entry.rows) all.insert(all.end(), list[chain].begin(), list[chain].end());
  return all;
}

/// Counts the rows of a chain in the wanted lists.
std::size_t rowCount(std::size_t chain, const Entry& entry) {
  std::size_t count = 0;
  for (const std::size_t list : entry.lists) count += entry.rows[list][chain].size();
  return count;
}

/// Goes by the type that the file states, else by the names of the residues.
bool isPolypeptide(std::size_t chain, const Entry& entry) {
  const FileChain& described = entry.file.chains[chain];
  if (described.polymer != Polymer::unknown) return described.polymer == Polymer::polypeptide;
  return polymerByNames(described, allRowsOf(chain, entry)) == Polymer::polypeptide;
}

std::string kindOf(const FileChain& chain) {
  return chain.kind.empty() ? "no amino acids" : chain.kind;
}

// --- Choice -------------------------------------------------------------------------------------

Indices allOf(std::size_t count) {
  Indices all(count);
  std::iota(all.begin(), all.end(), std::size_t{0});
  return all;
}

Indices wantedLists(const std::vector<std::string>& names, const ShiftFile& file, const std::string& path) {
  std::set<std::size_t> lists;
  for (const std::string& wanted : names) {
    const auto found = indicesOf(wanted, file.lists);
    if (found.empty() && !equalIgnoringCase(wanted, kAllLists))
      throwNoSuch(path, "shift list", wanted, file.lists);
    lists.insert(found.begin(), found.end());
  }
  return lists.empty() ? allOf(file.lists.size()) : Indices(lists.begin(), lists.end());
}

Indices polypeptidesWithShifts(const Entry& entry, Outcome& outcome) {
  Indices chains;
  for (std::size_t c = 0; c < entry.file.chains.size(); ++c) {
    const std::size_t rows = rowCount(c, entry);
    if (rows == 0) continue;
    const FileChain& chain = entry.file.chains[c];
    if (isPolypeptide(c, entry))
      chains.push_back(c);
    else
      outcome.leftOut.push_back(
          {counted(rows, "shift", "shifts") + " of " + shownName(chain) + " (" + kindOf(chain) + ")", ""});
  }
  return chains;
}

void checkChosen(std::size_t chain, const Entry& entry) {
  const FileChain& chosen = entry.file.chains[chain];
  const std::string remedy = "choose another: " + printable(namesOf(entry.file.chains));
  if (!isPolypeptide(chain, entry))
    throw ChoiceError(entry.path, 0, shownName(chosen) + " is not a protein (" + kindOf(chosen) + ")",
                      remedy);
  if (rowCount(chain, entry) == 0)
    throw ChoiceError(
        entry.path, 0,
        shownName(chosen) + " has no shifts" + (entry.areListsChosen ? " in the chosen lists" : ""), remedy);
}

Indices namedChains(const std::vector<std::string>& names, const Entry& entry) {
  std::set<std::size_t> chains;
  for (const std::string& wanted : names) {
    const auto found = indicesOf(wanted, entry.file.chains);
    if (found.empty()) throwNoSuch(entry.path, "chain", wanted, entry.file.chains);
    for (const std::size_t c : found) checkChosen(c, entry);
    chains.insert(found.begin(), found.end());
  }
  return {chains.begin(), chains.end()};
}

/// The one of several lists with most shifts for the table.
std::size_t fullestList(std::size_t chain, const Indices& lists, const Entry& entry, Outcome& outcome) {
  std::size_t fullest = lists.front();
  std::size_t most = 0;
  std::vector<std::string> shown;
  for (const std::size_t l : lists) {
    const std::size_t count = countTableShifts(entry.rows[l][chain]);
    shown.push_back(entry.file.lists[l].name + " (" + std::to_string(count) + ")");
    if (count <= most) continue;
    most = count;
    fullest = l;
  }
  outcome.listNotes.push_back(shownName(entry.file.chains[chain]) +
                              " has several shift lists, with backbone shifts: " + enumerated(shown) + "; " +
                              entry.file.lists[fullest].name + " is used; another can be chosen");
  return fullest;
}

/// The lists to make a table from: the fullest one unless the user has chosen.
Indices listsFor(std::size_t chain, const Entry& entry, Outcome& outcome) {
  Indices filled;
  for (const std::size_t l : entry.lists)
    if (!entry.rows[l][chain].empty()) filled.push_back(l);
  if (entry.areListsChosen || filled.size() < 2) return filled;
  return {fullestList(chain, filled, entry, outcome)};
}

// --- Proteins -----------------------------------------------------------------------------------

void addCisFlags(const FileChain& chain, const ChainSequence& sequence, Protein& protein) {
  for (const FileCisFlag& flag : chain.cisFlags)
    if (const int position = sequence.positionOfKey(flag.key); position > 0)
      protein.cisFlags.emplace(position, flag.isCis);
  for (int position = 1; position <= sequence.size(); ++position)
    if (sequence.at(position).type.isCis) protein.cisFlags.emplace(position, true);
  std::vector<std::string> cis;
  for (const auto& [position, isCis] : protein.cisFlags)
    if (isCis) cis.push_back(sequence.at(position).type.letter + sequence.at(position).number);
  if (cis.empty()) return;
  const std::string text = "he file marks as cis peptide bond: " + enumerated(cis, cis.size());
  protein.remarks.push_back(printable("T" + text, kLongestNote));
  protein.notes.push_back("t" + text + "; kept as a remark, not used");
}

void addRemarks(const FileChain& chain, const std::string& format, Protein& protein) {
  std::string origin = "Imported from " + baseName(protein.file) + " (" + format + ")";
  if (!chain.name.empty()) origin += ", chain " + chain.name;
  if (!chain.molecule.empty() && chain.molecule != chain.name) origin += ", " + chain.molecule;
  if (!protein.list.empty()) origin += ", shift list " + protein.list;
  protein.remarks.push_back(printable(origin));
  for (const std::string& remark : numberingRemarks(protein.numbers))
    protein.remarks.push_back(printable(remark));
}

/// A chain that gives no table. Why is said only if none gives one.
LeftOut leftOutOf(const FileChain& chain, std::size_t rows, const Protein& protein) {
  const std::string list = protein.list.empty() ? "the list without a name" : "list " + protein.list;
  std::vector<std::string> reasons = protein.notes;
  reasons.insert(reasons.end(), protein.asides.begin(), protein.asides.end());
  return {shownName(chain) + " (" + list + "): " + counted(rows, "shift", "shifts") +
              ", none that a prediction uses",
          " (" + enumerated(reasons, kMostReasons) + ")"};
}

/// A chain as a protein without shifts.
Protein proteinOf(const FileChain& chain, const ChainSequence& sequence, const std::string& path) {
  Protein protein;
  protein.file = path;
  protein.chain = chain.name;
  protein.numbers.reserve(sequence.residues.size());
  for (const ChainResidue& residue : sequence.residues) {
    protein.sequence += residue.type.letter;
    protein.numbers.push_back(residue.number);
  }
  return protein;
}

/// The proteins of a chain, one for each list.
void addProteins(std::size_t c, const Indices& lists, const Entry& entry, Outcome& outcome) {
  FileChain& chain = entry.file.chains[c];
  checkLimit(chain.residues.size(), limits::kSequence, entry.path);
  const bool isSequenceGiven = !chain.residues.empty();
  std::vector<std::string> notes;
  const ChainSequence sequence = makeSequence(std::move(chain.residues), allRowsOf(c, entry), notes);
  for (const std::size_t l : lists) {
    const ShiftRows& rows = entry.rows[l][c];
    Protein protein = proteinOf(chain, sequence, entry.path);
    protein.list = entry.file.lists[l].name;
    protein.isSequenceGiven = isSequenceGiven;
    protein.notes = notes;
    protein.shifts = makeShifts(sequence, rows, protein.notes, protein.asides);
    if (protein.shifts.empty()) {
      outcome.leftOut.push_back(leftOutOf(chain, rows.size(), protein));
      continue;
    }
    markDisulfides(chain, sequence, protein);
    addRemarks(chain, entry.file.format, protein);
    addCisFlags(chain, sequence, protein);
    if (const auto& shares = entry.file.lists[l].deuteration; shares.count(c) > 0)
      setDeuteration(shares.at(c), protein);
    checkLimit(outcome.residues += protein.sequence.size(), limits::kResiduesMade, entry.path);
    outcome.proteins.push_back(std::move(protein));
  }
}

// --- Notes --------------------------------------------------------------------------------------

/// Notes of the file go to its first protein, in front.
void finishNotes(const ShiftFile& file, Outcome& outcome) {
  std::vector<std::string> notes = file.notes;
  for (const LeftOut& one : outcome.leftOut) notes.push_back("ignored: " + one.what);
  notes.insert(notes.end(), outcome.listNotes.begin(), outcome.listNotes.end());
  std::vector<std::string>& first = outcome.proteins.front().notes;
  first.insert(first.begin(), notes.begin(), notes.end());
  for (Protein& protein : outcome.proteins)
    for (std::string& note : protein.notes) note = printable(note, kLongestNote);
}

[[noreturn]] void throwNoShifts(const Entry& entry, const Outcome& outcome) {
  const ShiftFile& file = entry.file;
  std::vector<std::string> held;
  for (const LeftOut& one : outcome.leftOut) held.push_back(one.what + one.reasons);
  held.insert(held.end(), file.contents.begin(), file.contents.end());
  if (const std::size_t count = countUnplaced(allOf(file.lists.size()), file); count > 0)
    held.push_back(counted(count, "shift", "shifts") + " without a chain");
  if (held.empty() && !file.notes.empty()) held.push_back(enumerated(file.notes, kMostReasons));
  const std::string text = held.empty() ? "no shifts at all" : enumerated(held);
  throw FileError(entry.path, 0, "holds no backbone shifts of a protein",
                  "this " + file.format + " file holds: " + printable(text, kLongestNote));
}

/// Tells whether rows of a chain may belong to the protein of the given sequence.
bool mayBeOfProtein(std::size_t chain, const Entry& entry, const ShiftRows& rows) {
  const auto isNamed = [](const FileShift* row) { return !row->residueName.empty(); };
  if (rows.empty() || entry.file.chains[chain].polymer == Polymer::other) return false;
  return std::none_of(rows.begin(), rows.end(), isNamed) || isPolypeptide(chain, entry);
}

/// Puts the wanted chains on the sequence that the user gives.
void placeOnSequence(const Entry& entry, const ImportOptions& options) {
  std::set<std::size_t> wanted;
  for (const std::string& name : options.chains)
    for (const std::size_t chain : indicesOf(name, entry.file.chains)) wanted.insert(chain);
  for (std::size_t chain = 0; chain < entry.file.chains.size(); ++chain)
    if ((options.chains.empty() || wanted.count(chain) > 0) &&
        mayBeOfProtein(chain, entry, allRowsOf(chain, entry)))
      placeOnSequence(entry.file, chain, *options.sequence, options.firstResidue, entry.path);
}

/// Throws a SequenceError where neither a sequence nor a row names the residues.
void requireNames(const ShiftFile& file, const std::string& path) {
  bool hasRows = false;
  for (const FileShiftList& list : file.lists)
    for (const FileShift& row : list.shifts) {
      if (!row.residueName.empty()) return;
      hasRows = true;
    }
  const auto hasSequence = [](const FileChain& chain) { return !chain.residues.empty(); };
  if (hasRows && std::none_of(file.chains.begin(), file.chains.end(), hasSequence))
    throw SequenceError(path, 0, "the rows have no residue names",
                        "give the sequence (--sequence FILE), or a column resname");
}

std::vector<Protein> proteinsOf(ShiftFile& file, const std::string& path, const ImportOptions& options) {
  Entry entry{file, path};
  entry.rows = groupRows(file);
  if (options.sequence) placeOnSequence(entry, options);
  requireNames(file, path);
  entry.lists = wantedLists(options.lists, file, path);
  entry.areListsChosen = !options.lists.empty();
  Outcome outcome;
  const Indices chains =
      options.chains.empty() ? polypeptidesWithShifts(entry, outcome) : namedChains(options.chains, entry);
  for (const std::size_t chain : chains) addProteins(chain, listsFor(chain, entry, outcome), entry, outcome);
  if (outcome.proteins.empty()) throwNoShifts(entry, outcome);
  if (const std::size_t unplaced = countUnplaced(entry.lists, file); unplaced > 0)
    outcome.leftOut.push_back(
        {counted(unplaced, "shift", "shifts") + " whose chain the file does not describe", ""});
  finishNotes(file, outcome);
  return std::move(outcome.proteins);
}

}  // namespace

std::vector<Protein> makeProteins(ShiftFile file, const std::string& path, const ImportOptions& options) {
  if (!file.table) return proteinsOf(file, path, options);
  const bool isListChosen =
      std::any_of(options.lists.begin(), options.lists.end(),
                  [](const std::string& wanted) { return !equalIgnoringCase(wanted, kAllLists); });
  if (!options.chains.empty() || isListChosen)
    throw ChoiceError(path, 0, "is a shift table, with one chain and one list",
                      "do not choose a chain or list for it");
  if (options.sequence || !hasColumn(*file.table, "RESNAME")) {
    ShiftFile words = wordsOfTable(*file.table);
    words.notes = file.notes;
    // A table with the same sequence is used unchanged.
    if (options.sequence && placeOnSequence(words, 0, *options.sequence, options.firstResidue, path))
      return proteinsOf(words, path, options);
    requireNames(words, path);
  }
  return {proteinOfTable(*file.table, path, file.notes)};
}

}  // namespace zorvela
