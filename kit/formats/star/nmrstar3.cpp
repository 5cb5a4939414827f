// Reads NMR-STAR 3: entities and their copies in the assembly, bonds, assigned shift lists. For a file
// without shifts, lists its contents.
#include <algorithm>
#include <map>
#include <numeric>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "formats/foreign_text.h"
#include "formats/format.h"
#include "formats/star/samples.h"
#include "formats/star/star_chains.h"
#include "formats/star/star_document.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

using Frames = std::vector<StarFrame>;
using Notes = std::vector<std::string>;

// --- Molecules ------------------------------------------------------------------------------------

/// A molecule; the assembly may hold several copies of it.
struct Entity {
  std::string id;
  std::string frame;  ///< name of its save frame
  std::string strands;
  std::vector<FileResidue> letters;  ///< of the one-letter sequence, used where no residues are listed
  FileChain chain;
  std::unordered_set<std::string> keys;  ///< of its residues
};

Entity withoutSequence(const std::string& id) {
  Entity entity;
  entity.id = id;
  return entity;
}

/// The molecules of a file.
struct Entities {
  std::vector<Entity> list;
  std::map<std::string, std::size_t> index;  ///< by number, and by "$" and frame name

  bool has(const std::string& name) const { return index.count(name) > 0; }
  /// Returns the number of the molecule that a sample names; empty where the file does not describe it.
  std::string inSample(const std::string& id, const std::string& label, const std::string& commonName) const {
    if (!id.empty() || !label.empty()) {
      const auto known = index.find(id.empty() ? "$" + withoutDollar(label) : id);
      return known == index.end() ? "" : list[known->second].id;
    }
    for (const Entity& entity : list)
      if (!commonName.empty() && equalIgnoringCase(entity.chain.molecule, commonName)) return entity.id;
    return "";
  }
  /// Returns a molecule; where the file has none of that name, one without a sequence.
  Entity get(const std::string& name, const std::string& numberOfUnknown) const {
    const auto known = index.find(name);
    return known != index.end() ? list[known->second] : withoutSequence(numberOfUnknown);
  }
  void add(Entity entity, const std::string& file) {
    checkLimit(list.size() + 1, limits::kMolecules, file);
    index.emplace(entity.id, list.size());
    list.push_back(std::move(entity));
  }
};

Entity entityOf(const StarFrame& frame, const StarTable& table, std::size_t row, Notes& notes) {
  const auto cell = [&](std::string_view tag) { return table.column(tag).text(row); };
  const auto name = [&](std::string_view tag) { return nameOf(cell(tag), notes); };
  Entity entity;
  entity.id = name("_Entity.ID");
  entity.frame = nameOf(frame.name(), notes);
  entity.strands = name("_Entity.Polymer_strand_ID");
  entity.letters = residuesOfLetters(cell("_Entity.Polymer_seq_one_letter_code"));
  if (entity.letters.empty())
    entity.letters = residuesOfLetters(cell("_Entity.Polymer_seq_one_letter_code_can"));
  entity.chain.molecule = name("_Entity.Name");
  entity.chain.thiol = thiolOfWords(cell("_Entity.Thiol_state"));
  entity.chain.kind = name("_Entity.Polymer_type");
  if (entity.chain.kind.empty()) entity.chain.kind = name("_Entity.Type");
  entity.chain.polymer = polymerOfWords(entity.chain.kind);
  noteCautions(entity.chain.molecule, "", cell("_Entity.Paramagnetic"), notes);
  return entity;
}

Entities readEntities(const Frames& frames, const std::string& file, Notes& notes) {
  Entities entities;
  std::size_t letters = 0;
  for (const StarFrame& frame : frames)
    for (const StarTable& table : tablesOf(frame, "_Entity.ID"))
      for (std::size_t row = 0; row < table.rows(); ++row) {
        Entity entity = entityOf(frame, table, row, notes);
        checkLimit(letters += entity.letters.size(), limits::kResidues, file);
        entities.index.emplace("$" + entity.frame, entities.list.size());
        entities.add(std::move(entity), file);
      }
  return entities;
}

/// Adds the residues of a table to their entities, and the entities that only this table names.
void addResidues(const StarTable& table, const std::string& ownEntity, const StarColumn& key,
                 const StarColumn& name, const std::string& category, std::size_t& count, Entities& entities,
                 const std::string& file) {
  const StarColumn number = table.column(category + "Auth_seq_ID");
  const StarColumn id = table.column(category + "Entity_ID");
  for (std::size_t row = 0; row < table.rows(); ++row) {
    std::string entityId = id.word(row);
    if (entityId.empty()) entityId = ownEntity;
    if (!entities.has(entityId)) entities.add(withoutSequence(entityId), file);
    Entity& entity = entities.list[entities.index.at(entityId)];
    const FileResidue residue{key.word(row), number.word(row), name.word(row)};
    // Only the first residue type counts at a position with several (a mixture).
    if (residue.key.empty() || !entity.keys.insert(residue.key).second) continue;
    checkLimit(++count, limits::kResidues, file);
    entity.chain.residues.push_back(residue);
  }
}

void readSequences(const Frames& frames, Entities& entities, const std::string& file, Notes& notes) {
  std::size_t count = 0;
  for (const StarFrame& frame : frames) {
    const std::string own = nameOf(frameValue(frame, "_Entity.ID"), notes);
    const std::string index = "_Entity_comp_index.";
    for (const StarTable& table : tablesOf(frame, index))
      addResidues(table, own, table.column(index + "ID", index + "Num"), table.column(index + "Comp_ID"),
                  index, count, entities, file);
    const std::string sequence = "_Entity_poly_seq.";
    for (const StarTable& table : tablesOf(frame, sequence))
      addResidues(table, own, table.column(sequence + "Comp_index_ID", sequence + "Num"),
                  table.column(sequence + "Mon_ID"), sequence, count, entities, file);
  }
}

// --- Copies ---------------------------------------------------------------------------------------

/// The copies of molecules, which are the chains.
struct Copies {
  ChainFinder finder;
  std::map<std::string, std::vector<std::size_t>> ofEntity;
  std::vector<std::string> entityOf;            ///< by chain
  std::unordered_set<std::size_t> withoutAsym;  ///< chains whose author's name only the shift rows give
  std::size_t described = 0;                    ///< number of chains that the file describes; rows add others
  bool areListed = false;                       ///< the file lists the copies of its molecules

  const FileChain& chain(std::size_t index) const { return finder.chains[index]; }
  std::size_t findAssembly(const std::string& id) const { return finder.find("assembly " + id); }
  std::size_t findEntity(const std::string& id) const { return finder.find("entity " + id); }
  std::size_t findAsym(const std::string& code) const { return finder.find("asym " + code); }

  std::size_t add(const Entity& entity, const std::string& id) {
    FileChain copy = entity.chain;
    if (copy.residues.empty()) copy.residues = entity.letters;
    copy.name = id;
    copy.aliases = {id, entity.id, entity.frame, copy.molecule};
    const std::size_t index = finder.add("assembly " + id, std::move(copy));
    finder.alias("entity " + entity.id, index);
    ofEntity[entity.id].push_back(index);
    entityOf.push_back(entity.id);
    return index;
  }

  /// Gives a chain the author's names.
  void describe(std::size_t index, const std::string& asym, const std::string& pdbChain = {}) {
    FileChain& copy = finder.chains[index];
    for (const std::string& code : {asym, pdbChain}) {
      if (code.empty()) continue;
      copy.aliases.push_back(code);
      finder.alias("asym " + code, index);
    }
    if (!asym.empty() || !pdbChain.empty()) copy.name = asym.empty() ? pdbChain : asym;
  }
};

void readAssembly(const StarFrame& frame, Entities& entities, Copies& copies, Notes& notes) {
  const Thiol ofAll = thiolOfWords(frameValue(frame, "_Assembly.Thiol_state"));
  for (Entity& entity : entities.list)
    if (entity.chain.thiol == Thiol::unknown) entity.chain.thiol = ofAll;
  for (const StarTable& table : tablesOf(frame, "_Entity_assembly.ID"))
    for (std::size_t row = 0; row < table.rows(); ++row) {
      const auto cell = [&](const std::string& tag) {
        return nameOf(table.column("_Entity_assembly." + tag).text(row), notes);
      };
      const std::string id = cell("ID");
      if (copies.findAssembly(id) != kNoChain) continue;
      std::string entity = cell("Entity_ID");
      if (!entities.has(entity)) entity = "$" + withoutDollar(cell("Entity_label"));
      const std::size_t chain = copies.add(entities.get(entity, ""), id);
      noteCautions(copies.chain(chain).molecule, cell("Physical_state"), "", notes);
      copies.describe(chain, cell("Asym_ID"), cell("PDB_chain_ID"));
      const std::string name = cell("Entity_assembly_name");
      if (!name.empty()) copies.finder.chains[chain].aliases.push_back(name);
    }
}

std::size_t copyOfSequence(const std::string& assembly, const std::string& asym, Copies& copies) {
  if (assembly.empty()) return asym.empty() ? kNoChain : copies.findAsym(asym);
  const std::size_t known = copies.findAssembly(assembly);
  if (known != kNoChain) return known;
  const std::size_t chain = copies.add(Entity(), assembly);
  if (asym.empty())
    copies.withoutAsym.insert(chain);
  else
    copies.describe(chain, asym);
  return chain;
}

/// Reads sequences by copy, as in files that the PDB makes from a deposition, and those made from NEF.
void readAssemblySequences(const StarFrame& frame, Copies& copies) {
  const std::string category = "_Chem_comp_assembly.";
  std::map<std::size_t, std::vector<FileResidue>> residues;
  std::map<std::size_t, std::unordered_set<std::string>> keys;
  for (const StarTable& table : tablesOf(frame, category)) {
    const StarColumn assembly = table.column(category + "Entity_assembly_ID");
    const StarColumn key = table.column(category + "Comp_index_ID", category + "Seq_ID");
    const StarColumn name = table.column(category + "Comp_ID");
    const StarColumn number = table.column(category + "Auth_seq_ID");
    const StarColumn asym = table.column(category + "Auth_asym_ID");
    const StarColumn cis = table.column(category + "Cis_residue");
    for (std::size_t row = 0; row < table.rows(); ++row) {
      const std::size_t chain = copyOfSequence(assembly.word(row), asym.word(row), copies);
      FileResidue residue{key.word(row), number.word(row), name.word(row)};
      if (residue.key.empty() || chain == kNoChain) continue;
      if (const auto isCis = readFlag(cis.word(row)))
        copies.finder.chains[chain].cisFlags.push_back({residue.key, *isCis});
      if (!copies.chain(chain).residues.empty() || !keys[chain].insert(residue.key).second) continue;
      copies.finder.countResidues(1);
      residues[chain].push_back(std::move(residue));
    }
  }
  for (auto& [chain, list] : residues) copies.finder.chains[chain].residues = std::move(list);
}

/// Reads the copies; without an assembly, each molecule is one copy.
Copies readCopies(const Frames& frames, Entities& entities, const Source& source, Notes& notes) {
  Copies copies{ChainFinder(source.file, *source.work), {}, {}, {}, 0, false};
  for (const StarFrame& frame : frames) readAssembly(frame, entities, copies, notes);
  const bool hasAssembly = !copies.finder.chains.empty();
  if (!hasAssembly)
    for (const Entity& entity : entities.list) {
      const std::size_t chain = copies.add(entity, entity.strands.empty() ? entity.id : entity.strands);
      if (entity.strands.empty()) copies.withoutAsym.insert(chain);
    }
  const std::size_t entitiesAlone = hasAssembly ? 0 : copies.finder.chains.size();
  for (const StarFrame& frame : frames) readAssemblySequences(frame, copies);
  copies.described = copies.finder.chains.size();
  copies.areListed = entitiesAlone < copies.described;
  return copies;
}

// --- Bonds ----------------------------------------------------------------------------------------

void readBondTable(const StarTable& table, const std::string& category, const std::string& ownEntity,
                   Copies& copies) {
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const auto cell = [&](const std::string& tag, const std::string& otherTag = "") {
      return table.column(category + tag, otherTag.empty() ? otherTag : category + otherTag).word(row);
    };
    if (!isDisulfideBond(cell("Type"), cell("Atom_ID_1"), cell("Atom_ID_2"))) continue;
    for (const std::string end : {"_1", "_2"}) {
      const std::string key = cell("Comp_index_ID" + end, "Seq_ID" + end);
      if (key.empty()) continue;
      std::string entity = cell("Entity_ID" + end, "Entity_ID");
      if (entity.empty()) entity = ownEntity;
      const std::size_t copy = copies.findAssembly(cell("Entity_assembly_ID" + end));
      if (copy != kNoChain) {
        copies.finder.addBondEnd(copy, key);
      } else if (const auto all = copies.ofEntity.find(entity); all != copies.ofEntity.end()) {
        for (const std::size_t chain : all->second) copies.finder.addBondEnd(chain, key);
      }
    }
  }
}

void readBonds(const Frames& frames, Copies& copies, Notes& notes) {
  for (const StarFrame& frame : frames) {
    for (const StarTable& table : tablesOf(frame, "_Bond.")) readBondTable(table, "_Bond.", "", copies);
    const std::string own = nameOf(frameValue(frame, "_Entity.ID"), notes);
    for (const StarTable& table : tablesOf(frame, "_Entity_bond."))
      readBondTable(table, "_Entity_bond.", own, copies);
  }
}

// --- The chain of a shift -------------------------------------------------------------------------

/// The names that a row gives for its chain.
struct RowChain {
  std::string assembly;
  std::string entity;
  std::string asym;
};

/// Rows whose chain is not the one that they name.
struct OddRows {
  Notes& notes;
  std::map<std::string, std::size_t> ofMissingCopies;  ///< number of rows, by the copy that the file lacks
  std::set<std::size_t> corrected;                     ///< chains of rows that name a copy of another entity
};

std::size_t addUndescribed(const RowChain& row, const Entities& entities, Copies& copies) {
  const std::string& id = row.assembly.empty() ? row.entity : row.assembly;
  const std::size_t chain = copies.add(entities.get(row.entity, row.entity), id);
  copies.describe(chain, row.asym);
  return chain;
}

/// Returns the chain, or the first copy of the row's entity where the chain is of another entity: some
/// entries write copy 1 in all rows.
std::size_t ofEntity(std::size_t chain, const std::string& entity, const Copies& copies, OddRows& odd) {
  if (entity.empty() || entity == copies.entityOf[chain]) return chain;
  const auto all = copies.ofEntity.find(entity);
  if (all == copies.ofEntity.end()) return chain;
  const std::size_t other = all->second.front();
  if (odd.corrected.insert(other).second)
    odd.notes.push_back("shift rows of entity " + entity + " name a copy of another entity; read as chain " +
                        copies.chain(other).name);
  return other;
}

/// Places a row of a copy that the assembly lacks by the author's chain and number: its place in that copy
/// means nothing. A row without an author's number has no known place.
void placeByAuthor(std::size_t chain, const std::string& assembly, FileShift& shift, OddRows& odd) {
  shift.key.clear();
  shift.chain = shift.number.empty() ? kNowhere : chain;
  if (!shift.number.empty()) ++odd.ofMissingCopies[assembly];
}

/// Gives a row its chain; one that the file describes nowhere else is added.
void placeInChain(const RowChain& row, const Entities& entities, Copies& copies, FileShift& shift,
                  OddRows& odd) {
  const std::size_t author = row.asym.empty() ? kNoChain : copies.findAsym(row.asym);
  if (row.assembly.empty()) {
    const std::size_t copy = row.entity.empty() ? kNoChain : copies.findEntity(row.entity);
    const bool isNamed = !row.entity.empty() || !row.asym.empty();
    if (copy != kNoChain)
      shift.chain = copy;
    else if (author != kNoChain)
      shift.chain = author;
    else if (isNamed || copies.finder.chains.empty())
      shift.chain = addUndescribed(row, entities, copies);
    return;
  }
  std::size_t known = copies.findAssembly(row.assembly);
  if (known >= copies.described && author < copies.described) known = kNoChain;  // only rows name it
  if (known != kNoChain && !row.asym.empty() && copies.withoutAsym.erase(known) > 0)
    copies.describe(known, row.asym);
  if (known != kNoChain)
    shift.chain = ofEntity(known, row.entity, copies, odd);
  else if (author < copies.described)
    placeByAuthor(author, row.assembly, shift, odd);
  else if (copies.areListed && !entities.has(row.entity))
    shift.chain = kNowhere;
  else
    shift.chain = addUndescribed(row, entities, copies);
}

std::vector<std::size_t> rowsByChain(const std::vector<FileShiftList>& lists, std::size_t chains) {
  std::vector<std::size_t> rows(chains, 0);
  for (const FileShiftList& list : lists)
    for (const FileShift& row : list.shifts)
      if (row.chain < rows.size()) ++rows[row.chain];
  return rows;
}

std::string rowsOfCopy(std::size_t rows, const std::string& copy) {
  return counted(rows, "shift row names", "shift rows name") + " copy " + copy +
         ", which the file does not describe; ";
}

/// Settles copies that only rows name, of molecules whose copies the file lists. Where no row names the one
/// listed copy, the rows are its; a full set of shifts is a copy of its own; a few rows have no known place.
void settleUndescribed(const Copies& copies, std::vector<FileShiftList>& lists, Notes& notes) {
  if (!copies.areListed) return;
  const std::vector<std::size_t> rows = rowsByChain(lists, copies.finder.chains.size());
  std::vector<std::size_t> target(rows.size());
  std::iota(target.begin(), target.end(), 0);
  for (std::size_t c = copies.described; c < target.size(); ++c) {
    // Those that the file lists come first.
    const std::vector<std::size_t>& all = copies.ofEntity.at(copies.entityOf[c]);
    std::size_t listed = 0;
    std::size_t most = 0;
    for (; listed < all.size() && all[listed] < copies.described; ++listed)
      most = std::max(most, rows[all[listed]]);
    if (most == 0 && listed == 1 && all.size() == 2)
      target[c] = all.front();
    else if (rows[c] * 2 < most)
      target[c] = kNowhere;
  }
  for (FileShiftList& list : lists)
    for (FileShift& row : list.shifts)
      if (row.chain < target.size()) row.chain = target[row.chain];
  for (std::size_t c = copies.described; c < target.size(); ++c)
    if (target[c] < copies.described)
      notes.push_back(rowsOfCopy(rows[c], copies.chain(c).aliases.front()) + "read as chain " +
                      copies.chain(target[c]).name + ", the only copy of that molecule");
}

// --- Samples --------------------------------------------------------------------------------------

std::vector<LabelledMolecule> readSamples(const Frames& frames, const Entities& entities,
                                          const std::string& file) {
  const std::string category = "_Sample_component.";
  std::vector<LabelledMolecule> molecules;
  for (const StarFrame& frame : frames)
    for (const StarTable& table : tablesOf(frame, category + "Isotopic_labeling"))
      for (std::size_t row = 0; row < table.rows(); ++row) {
        const auto cell = [&](const std::string& tag) { return table.column(category + tag).word(row); };
        const std::string molecule =
            entities.inSample(cell("Entity_ID"), cell("Entity_label"), cell("Mol_common_name"));
        if (molecule.empty()) continue;  // water, buffer
        const std::string words = table.column(category + "Isotopic_labeling").text(row);
        std::string id = cell("Sample_ID");
        if (id.empty()) id = frameValue(frame, "_Sample.ID");
        molecules.push_back({molecule, {id, frame.name()}, printable(words), labellingOf(words)});
        checkLimit(molecules.size(), limits::kMolecules, file);
      }
  return molecules;
}

/// Returns the samples of the experiments that a list names.
std::set<std::string> samplesOf(const StarFrame& list) {
  const std::string category = "_Chem_shift_experiment.";
  std::set<std::string> samples;
  for (const StarTable& table : tablesOf(list, category)) {
    const StarColumn id = table.column(category + "Sample_ID");
    const StarColumn label = table.column(category + "Sample_label");
    for (std::size_t row = 0; row < table.rows(); ++row)
      for (const std::string& name : {id.word(row), withoutDollar(label.word(row))})
        if (!name.empty()) samples.insert(name);
  }
  return samples;
}

/// Returns the share of deuterons of each chain in the samples of a list.
std::map<std::size_t, double> deuterationByChain(const StarFrame& list, const std::string& name,
                                                 const std::vector<LabelledMolecule>& molecules,
                                                 const Copies& copies, Notes& notes) {
  std::map<std::size_t, double> shares;
  for (const auto& [entity, share] : deuterationOf(molecules, samplesOf(list), name, notes))
    if (const auto chains = copies.ofEntity.find(entity); chains != copies.ofEntity.end())
      for (const std::size_t chain : chains->second) shares.emplace(chain, share);
  return shares;
}

// --- Shifts ---------------------------------------------------------------------------------------

/// A list of shifts, and the list that each row names.
struct NamedRows {
  FileShiftList list;
  std::vector<std::string> ids;
};

/// Splits the rows of a loop by the list that each row names. Nearly all loops are one list; a loop without
/// rows gives none.
std::vector<FileShiftList> listsById(NamedRows rows) {
  FileShiftList& list = rows.list;
  const std::vector<std::string>& ids = rows.ids;
  std::vector<FileShiftList> lists;
  if (list.shifts.empty()) return lists;
  const auto isNamed = [](const std::string& id) { return !id.empty(); };
  const auto named = std::find_if(ids.begin(), ids.end(), isNamed);
  if (std::all_of(named, ids.end(), [&](const std::string& id) { return id.empty() || id == *named; })) {
    lists.push_back(std::move(list));
    return lists;
  }
  std::unordered_map<std::string, std::size_t> index;
  for (std::size_t row = 0; row < ids.size(); ++row) {
    const auto [entry, isNew] = index.emplace(ids[row], lists.size());
    if (isNew) {
      const std::string id = ids[row].empty() ? "without a number" : ids[row];
      lists.push_back({list.name.empty() ? id : list.name + " " + id, {id}, {}});
    }
    lists[entry->second].shifts.push_back(std::move(list.shifts[row]));
  }
  return lists;
}

void readShifts(const StarTable& table, const Entities& entities, Copies& copies, OddRows& odd,
                NamedRows& result) {
  const auto column = [&](const std::string& tag, const std::string& otherTag = "") {
    const std::string category = "_Atom_chem_shift.";
    return table.column(category + tag, otherTag.empty() ? otherTag : category + otherTag);
  };
  const StarColumn key = column("Comp_index_ID", "Seq_ID");
  const StarColumn number = column("Auth_seq_ID");
  const StarColumn name = column("Comp_ID", "Auth_comp_ID");
  const StarColumn atom = column("Atom_ID", "Auth_atom_ID");
  const StarColumn value = column("Val", "Chem_shift_val");
  const StarColumn ambiguity = column("Ambiguity_code", "Chem_shift_ambiguity_code");
  const StarColumn occupancy = column("Occupancy");
  const StarColumn listId = column("Assigned_chem_shift_list_ID");
  const StarColumn assembly = column("Entity_assembly_ID");
  const StarColumn entity = column("Entity_ID");
  const StarColumn asym = column("Entity_assembly_asym_ID", "Auth_asym_ID");
  for (std::size_t row = 0; row < table.rows(); ++row) {
    FileShift shift;
    shift.key = key.word(row);
    shift.number = number.word(row);
    placeInChain({assembly.word(row), entity.word(row), asym.word(row)}, entities, copies, shift, odd);
    shift.residueName = name.word(row);
    shift.atom = atom.word(row);
    shift.value = value.word(row);
    shift.ambiguity = ambiguity.word(row);
    if (const auto share = toDecimal(occupancy.word(row))) shift.occupancy = std::stod(*share);
    result.list.shifts.push_back(std::move(shift));
    result.ids.push_back(listId.word(row));
  }
}

/// Notes corrections that the authors ask the reader to apply, such as that of TROSY spectra.
void noteOffsets(const StarFrame& frame, Notes& fileNotes) {
  const std::string category = "_Systematic_chem_shift_offset.";
  LimitedNotes notes("systematic offsets that are not applied");
  for (const StarTable& table : tablesOf(frame, category))
    for (std::size_t row = 0; row < table.rows(); ++row) {
      const auto cell = [&](const std::string& tag) { return table.column(category + tag).word(row); };
      if (!cell("Val").empty())
        notes.add("the file states a systematic offset of " + cell("Val") + " ppm (" + cell("Type") + ", " +
                  cell("Atom_type") + "); it is not applied");
    }
  notes.appendTo(fileNotes);
}

void readLists(const StarFrame& frame, const Entities& entities,
               const std::vector<LabelledMolecule>& molecules, Copies& copies, OddRows& odd,
               ShiftFile& file) {
  const auto tables = tablesOf(frame, "_Atom_chem_shift.");
  if (tables.empty()) return;
  const auto name = [&](std::string_view tag) { return nameOf(frameValue(frame, tag), file.notes); };
  NamedRows rows;
  rows.list.name = nameOf(frame.name(), file.notes);
  rows.list.aliases = {name("_Assigned_chem_shift_list.ID"), name("_Assigned_chem_shift_list.Name")};
  for (const StarTable& table : tables) {
    copies.finder.reserveRows(rows.list, table.rows());
    readShifts(table, entities, copies, odd, rows);
  }
  const auto shares = deuterationByChain(frame, rows.list.name, molecules, copies, file.notes);
  for (FileShiftList& list : listsById(std::move(rows))) {
    list.deuteration = shares;
    addList(std::move(list), file, frame.file.name);
  }
  noteOffsets(frame, file.notes);
}

}  // namespace

bool isNmrStar3(const Source& source) {
  return source.star.has_value();
}

ShiftFile readNmrStar3(const Source& source) {
  if (const std::string kind = foreignStar(*source.star); !kind.empty())
    throw foreignError(source.file, 0, kind);
  const Frames frames = framesOf(*source.star);
  ShiftFile file;
  Entities entities = readEntities(frames, source.file, file.notes);
  readSequences(frames, entities, source.file, file.notes);
  Copies copies = readCopies(frames, entities, source, file.notes);
  const std::vector<LabelledMolecule> molecules = readSamples(frames, entities, source.file);
  OddRows odd{file.notes, {}, {}};
  for (const StarFrame& frame : frames) readLists(frame, entities, molecules, copies, odd, file);
  settleUndescribed(copies, file.lists, file.notes);
  readBonds(frames, copies, file.notes);
  settleChains(copies.finder, file);
  for (const auto& [assembly, rows] : odd.ofMissingCopies)
    file.notes.push_back(rowsOfCopy(rows, assembly) + "placed by the author's chain and number");
  numberByRows(file.chains, file.lists, file.notes);
  makeNamesDiffer(file.chains);
  if (file.chains.empty() && file.lists.empty()) file.format = "STAR";
  file.contents = starContents(*source.star);
  return file;
}

}  // namespace zorvela
