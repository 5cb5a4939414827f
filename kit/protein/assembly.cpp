#include "protein/assembly.h"

#include <algorithm>
#include <cstddef>
#include <set>

#include "formats/format.h"
#include "protein/disulfides.h"
#include "protein/own_table.h"
#include "protein/place_on_sequence.h"
#include "protein/remarks.h"
#include "protein/sequence.h"
#include "protein/shifts.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr std::size_t kLongestNote = 400;
constexpr std::size_t kMostReasons = 4;

/// Indices of chains or lists, in the order of the file.
using Indices = std::set<std::size_t>;

/// Returns the chains or lists that have a name, else those that have it as another name.
template <class Named>
Indices indicesOf(const std::string& wanted, const std::vector<Named>& all) {
  const auto isWanted = [&](const std::string& name) { return equalIgnoringCase(name, wanted); };
  Indices byName;
  Indices byAlias;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (isWanted(all[i].name)) byName.insert(i);
    if (std::any_of(all[i].aliases.begin(), all[i].aliases.end(), isWanted)) byAlias.insert(i);
  }
  return byName.empty() ? byAlias : byName;
}

template <class Named>
std::string namesOf(const std::vector<Named>& all) {
  std::vector<std::string> names;
  for (const Named& one : all)
    if (!one.name.empty()) names.push_back(one.name);
  return printable(names.empty() ? "only unnamed ones" : enumerated(names));
}

/// Returns the chains or lists of the names, all without names. ChoiceError for a name that none has.
template <class Named>
Indices chosen(const std::vector<std::string>& names, const std::string& what, const std::vector<Named>& all,
               const std::string& path) {
  Indices found;
  for (const std::string& wanted : names) {
    const Indices ofName = indicesOf(wanted, all);
    if (ofName.empty())
      throw ChoiceError(path, 0, "has no " + what + " \"" + printable(wanted, 60) + "\"",
                        "it has: " + namesOf(all));
    found.insert(ofName.begin(), ofName.end());
  }
  for (std::size_t i = 0; names.empty() && i < all.size(); ++i) found.insert(i);
  return found;
}

std::string shownName(const FileChain& chain) {
  return chain.name.empty() ? "the chain without a name" : "chain " + chain.name;
}

/// Rows that give no table; the reasons are shown where the file gives none at all.
struct LeftOut {
  std::string what;
  std::string reasons = {};
};

/// A file, the chains and lists of it that are wanted, and the proteins made of them.
struct Entry {
  ShiftFile& file;  ///< its residues go to the proteins
  const ImportOptions& options;
  std::string path;
  Indices chains = {};
  Indices lists = {};
  std::vector<std::vector<ShiftRows>> rows = {};  ///< by chain, then list
  std::vector<Protein> proteins = {};
  std::size_t residues = 0;  ///< of the proteins
  std::vector<LeftOut> leftOut = {};
  std::vector<std::string> listNotes = {};
};

// --- What the file holds ------------------------------------------------------------------------

/// The rows by chain, then list.
std::vector<std::vector<ShiftRows>> groupedRows(const ShiftFile& file) {
  std::vector<std::vector<ShiftRows>> rows(file.chains.size(), std::vector<ShiftRows>(file.lists.size()));
  for (std::size_t l = 0; l < file.lists.size(); ++l)
    for (const FileShift& row : file.lists[l].shifts)
      if (row.chain < file.chains.size()) rows[row.chain][l].push_back(&row);
  return rows;
}

/// Counts the rows of the wanted lists whose chain the file does not describe.
std::size_t countUnplaced(const Entry& entry) {
  std::size_t count = 0;
  for (const std::size_t l : entry.lists)
    for (const FileShift& row : entry.file.lists[l].shifts)
      if (row.chain >= entry.file.chains.size()) ++count;
  return count;
}

/// The rows of all lists, so that each table of a chain has the same sequence.
ShiftRows allRowsOf(std::size_t chain, const Entry& entry) {
  ShiftRows all;
  for (const ShiftRows& rows : entry.rows[chain]) all.insert(all.end(), rows.begin(), rows.end());
  return all;
}

/// Goes by the type that the file states, else by the names of the residues.
bool isPolypeptide(std::size_t chain, const Entry& entry) {
  const FileChain& described = entry.file.chains[chain];
  if (described.polymer != Polymer::unknown) return described.polymer == Polymer::polypeptide;
  return polymerByNames(described, allRowsOf(chain, entry)) == Polymer::polypeptide;
}

// --- Choice -------------------------------------------------------------------------------------

/// Tells whether a wanted chain is a polypeptide with shifts. ChoiceError where it is not and the user has
/// chosen it.
bool isUsable(std::size_t c, Entry& entry) {
  const FileChain& chain = entry.file.chains[c];
  std::size_t rows = 0;
  for (const std::size_t l : entry.lists) rows += entry.rows[c][l].size();
  const bool isProtein = isPolypeptide(c, entry);
  if (isProtein && rows > 0) return true;
  const std::string kind = " (" + (chain.kind.empty() ? "no amino acids" : chain.kind) + ")";
  const std::string inLists = entry.options.lists.empty() ? "" : " in the chosen lists";
  if (!entry.options.chains.empty())
    throw ChoiceError(
        entry.path, 0,
        shownName(chain) + (isProtein ? " has no shifts" + inLists : " is not a protein" + kind),
        "choose another: " + namesOf(entry.file.chains));
  if (rows > 0)
    entry.leftOut.push_back({counted(rows, "shift", "shifts") + " of " + shownName(chain) + kind});
  return false;
}

/// The lists to make tables of a chain from: unless the user has chosen, the one with most of its shifts.
Indices listsFor(std::size_t chain, Entry& entry) {
  Indices filled;
  for (const std::size_t l : entry.lists)
    if (!entry.rows[chain][l].empty()) filled.insert(l);
  if (!entry.options.lists.empty() || filled.size() < 2) return filled;
  std::size_t fullest = *filled.begin();
  std::size_t most = 0;
  std::vector<std::string> shown;
  for (const std::size_t l : filled) {
    const std::size_t count = countTableShifts(entry.rows[chain][l]);
    shown.push_back(entry.file.lists[l].name + " (" + std::to_string(count) + ")");
    if (count <= most) continue;
    most = count;
    fullest = l;
  }
  entry.listNotes.push_back(shownName(entry.file.chains[chain]) +
                            " has several shift lists, with backbone shifts: " + enumerated(shown) + "; " +
                            entry.file.lists[fullest].name + " is used; another can be chosen");
  return {fullest};
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
  addNumbering(protein);
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
void addProteins(std::size_t c, Entry& entry) {
  FileChain& chain = entry.file.chains[c];
  checkLimit(chain.residues.size(), limits::kSequence, entry.path);
  const bool isSequenceGiven = !chain.residues.empty();
  std::vector<std::string> notes;
  const ChainSequence sequence = makeSequence(std::move(chain.residues), allRowsOf(c, entry), notes);
  for (const std::size_t l : listsFor(c, entry)) {
    const ShiftRows& rows = entry.rows[c][l];
    Protein protein = proteinOf(chain, sequence, entry.path);
    protein.list = entry.file.lists[l].name;
    protein.isSequenceGiven = isSequenceGiven;
    protein.notes = notes;
    protein.shifts = makeShifts(sequence, rows, protein.notes, protein.asides);
    if (protein.shifts.empty()) {
      entry.leftOut.push_back(leftOutOf(chain, rows.size(), protein));
      continue;
    }
    markDisulfides(chain, sequence, protein);
    addRemarks(chain, entry.file.format, protein);
    addCisFlags(chain, sequence, protein);
    if (const auto& shares = entry.file.lists[l].deuteration; shares.count(c) > 0)
      setDeuteration(shares.at(c), protein);
    checkLimit(entry.residues += protein.sequence.size(), limits::kResiduesMade, entry.path);
    entry.proteins.push_back(std::move(protein));
  }
}

// --- Notes --------------------------------------------------------------------------------------

/// Notes of the file go to its first protein, in front.
void finishNotes(Entry& entry) {
  std::vector<std::string> notes = entry.file.notes;
  for (const LeftOut& one : entry.leftOut) notes.push_back("ignored: " + one.what);
  notes.insert(notes.end(), entry.listNotes.begin(), entry.listNotes.end());
  std::vector<std::string>& first = entry.proteins.front().notes;
  first.insert(first.begin(), notes.begin(), notes.end());
  for (Protein& protein : entry.proteins)
    for (std::string& note : protein.notes) note = printable(note, kLongestNote);
}

[[noreturn]] void throwNoShifts(const Entry& entry) {
  const ShiftFile& file = entry.file;
  std::vector<std::string> held;
  for (const LeftOut& one : entry.leftOut) held.push_back(one.what + one.reasons);
  held.insert(held.end(), file.contents.begin(), file.contents.end());
  if (held.empty() && !file.notes.empty()) held.push_back(enumerated(file.notes, kMostReasons));
  const std::string text = held.empty() ? "no shifts at all" : enumerated(held);
  throw FileError(entry.path, 0, "holds no backbone shifts of a protein",
                  "this " + file.format + " file holds: " + printable(text, kLongestNote));
}

// --- The whole ----------------------------------------------------------------------------------

/// Tells whether rows of a chain may belong to the protein of the given sequence.
bool mayBeOfProtein(std::size_t chain, const Entry& entry) {
  const ShiftRows rows = allRowsOf(chain, entry);
  const auto isNamed = [](const FileShift* row) { return !row->residueName.empty(); };
  if (rows.empty() || entry.file.chains[chain].polymer == Polymer::other) return false;
  return std::none_of(rows.begin(), rows.end(), isNamed) || isPolypeptide(chain, entry);
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

/// Returns the names of lists without "all", unless a list is called that.
std::vector<std::string> withoutAll(std::vector<std::string> names, const std::vector<FileShiftList>& lists) {
  const auto isAll = [&](const std::string& name) {
    return equalIgnoringCase(name, "all") && indicesOf(name, lists).empty();
  };
  names.erase(std::remove_if(names.begin(), names.end(), isAll), names.end());
  return names;
}

std::vector<Protein> proteinsOf(ShiftFile& file, const std::string& path, const ImportOptions& options) {
  Entry entry{file, options, path};
  entry.rows = groupedRows(file);
  entry.chains = chosen(options.chains, "chain", file.chains, path);
  entry.lists = chosen(withoutAll(options.lists, file.lists), "shift list", file.lists, path);
  if (options.sequence)
    for (const std::size_t chain : entry.chains)
      if (mayBeOfProtein(chain, entry))
        placeOnSequence(file, chain, *options.sequence, options.firstResidue, path);
  requireNames(file, path);
  Indices usable;
  for (const std::size_t chain : entry.chains)
    if (isUsable(chain, entry)) usable.insert(chain);
  for (const std::size_t chain : usable) addProteins(chain, entry);
  if (const std::size_t unplaced = countUnplaced(entry); unplaced > 0)
    entry.leftOut.push_back(
        {counted(unplaced, "shift", "shifts") + " whose chain the file does not describe"});
  if (entry.proteins.empty()) throwNoShifts(entry);
  finishNotes(entry);
  return std::move(entry.proteins);
}

}  // namespace

std::vector<Protein> makeProteins(ShiftFile file, const std::string& path, const ImportOptions& options) {
  if (!file.table) return proteinsOf(file, path, options);
  if (!options.chains.empty() || !withoutAll(options.lists, file.lists).empty())
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
