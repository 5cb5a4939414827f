// Reads NMR-STAR 3: entities and their copies in the assembly, bonds, assigned shift lists. Of a file
// without shifts: its contents.
#include <algorithm>
#include <map>
#include <numeric>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "formats/format.h"
#include "formats/star/star_chains.h"
#include "formats/star/star_document.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

/// A molecule; the assembly may hold several copies of it.
struct Entity {
  std::string id;
  std::string frame;  ///< name of its save frame
  std::string strands;
  std::vector<FileResidue> letters;  ///< by the one-letter sequence, for want of a list of residues
  FileChain chain;
  std::unordered_set<std::string> keys;  ///< of its residues
};

/// Names under which a chain is looked for.
std::string assemblyName(const std::string& id) {
  return "assembly " + id;
}
std::string entityName(const std::string& id) {
  return "entity " + id;
}
std::string asymName(const std::string& id) {
  return "asym " + id;
}

std::string firstWord(const StarTable& table, std::size_t row, std::size_t column, std::size_t otherColumn) {
  std::string word = table.word(row, column);
  return word.empty() ? table.word(row, otherColumn) : word;
}

/// Lists that share a loop, told apart by the list that each row names. Nearly all loops are one list; none
/// without rows gives one.
std::vector<FileShiftList> listsById(FileShiftList list, const std::vector<std::string>& ids) {
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

class Star3Reader {
 public:
  Star3Reader(const StarEntry& entry, const std::string& name)
      : source(entry),
        path(name),
        frames(framesOf(entry)),
        finder(file.chains, name),
        bonds(file.chains, name) {}

  ShiftFile read() {
    checkForeign();
    for (const StarFrame& frame : frames) readEntities(frame);
    for (const StarFrame& frame : frames) readSequences(frame);
    for (const StarFrame& frame : frames) readAssembly(frame);
    const bool hasAssembly = !file.chains.empty();
    if (file.chains.empty())
      for (const Entity& entity : entities) {
        const std::size_t chain = addCopy(entity, entity.strands.empty() ? entity.id : entity.strands);
        if (entity.strands.empty()) withoutAsym.insert(chain);
      }
    const std::size_t entitiesAlone = hasAssembly ? 0 : file.chains.size();
    for (const StarFrame& frame : frames) readAssemblySequences(frame);
    describedCount = file.chains.size();
    hasCopies = entitiesAlone < describedCount;
    for (const StarFrame& frame : frames) readLists(frame);
    settleUndescribed();
    for (const StarFrame& frame : frames) readBonds(frame);
    placeByNames(file.lists, file.chains, file.notes);
    noteStrayCopies();
    numberByRows(file.chains, file.lists, file.notes);
    makeNamesDiffer(file.chains);
    if (file.chains.empty() && file.lists.empty()) file.format = "STAR";
    file.contents = starContents(source);
    return std::move(file);
  }

 private:
  void checkForeign() const {
    const std::string kind = foreignStar(source);
    if (!kind.empty())
      throw FileError(path, 0, "is no shift file but " + kind, "give the file with the chemical shifts");
  }

  // --- Molecules ------------------------------------------------------------------------------

  void readEntities(const StarFrame& frame) {
    for (const StarTable& table : tablesWith(frame, "_Entity.ID")) {
      for (std::size_t row = 0; row < table.rows(); ++row) {
        const auto cell = [&](std::string_view tag) { return table.text(row, table.column(tag)); };
        const auto name = [&](std::string_view tag) { return nameOf(cell(tag), file.notes); };
        checkEntities();
        Entity entity;
        entity.id = name("_Entity.ID");
        entity.frame = nameOf(frame.name(), file.notes);
        entity.strands = name("_Entity.Polymer_strand_ID");
        entity.letters = residuesOfLetters(cell("_Entity.Polymer_seq_one_letter_code"));
        if (entity.letters.empty())
          entity.letters = residuesOfLetters(cell("_Entity.Polymer_seq_one_letter_code_can"));
        finder.checkResidues(lettersCount += entity.letters.size());
        entity.chain.molecule = name("_Entity.Name");
        entity.chain.thiol = thiolOfWords(cell("_Entity.Thiol_state"));
        entity.chain.kind = name("_Entity.Polymer_type");
        if (entity.chain.kind.empty()) entity.chain.kind = name("_Entity.Type");
        entity.chain.polymer = polymerOfWords(entity.chain.kind);
        noteCautions(entity.chain.molecule, "", cell("_Entity.Paramagnetic"), file.notes);
        entityIndex.emplace(entity.id, entities.size());
        entityIndex.emplace("$" + entity.frame, entities.size());
        entities.push_back(std::move(entity));
      }
    }
  }

  void checkEntities() const { checkLimit(entities.size() + 1, limits::kMolecules, path); }

  void readSequences(const StarFrame& frame) {
    const std::string ownEntity = frameValue(frame, "_Entity.ID");
    for (const StarTable& table : tablesOf(frame, "_Entity_comp_index."))
      addResidues(table, ownEntity, "_Entity_comp_index.ID", "_Entity_comp_index.Comp_ID",
                  "_Entity_comp_index.");
    for (const StarTable& table : tablesOf(frame, "_Entity_poly_seq."))
      addResidues(table, ownEntity, "_Entity_poly_seq.Comp_index_ID", "_Entity_poly_seq.Mon_ID",
                  "_Entity_poly_seq.");
  }

  void addResidues(const StarTable& table, const std::string& ownEntity, std::string_view keyTag,
                   std::string_view nameTag, const std::string& category) {
    const std::size_t key = table.column(keyTag);
    const std::size_t otherKey = table.column(category + "Num");
    const std::size_t name = table.column(nameTag);
    const std::size_t number = table.column(category + "Auth_seq_ID");
    const std::size_t id = table.column(category + "Entity_ID");
    for (std::size_t row = 0; row < table.rows(); ++row) {
      std::string entityId = table.word(row, id);
      if (entityId.empty()) entityId = ownEntity;
      Entity& entity = entityOf(entityId);
      const std::string residueKey = firstWord(table, row, key, otherKey);
      // A place with several residue types (a mixture) keeps the first.
      if (residueKey.empty() || !entity.keys.insert(residueKey).second) continue;
      finder.checkResidues(++sequenceCount);
      FileResidue residue;
      residue.key = residueKey;
      residue.number = table.word(row, number);
      residue.name = table.word(row, name);
      entity.chain.residues.push_back(std::move(residue));
    }
  }

  /// The entity of that number; a new one where only its sequence is given.
  Entity& entityOf(const std::string& id) {
    const auto [entry, isNew] = entityIndex.emplace(id, entities.size());
    if (isNew) {
      checkEntities();
      entities.emplace_back();
      entities.back().id = id;
    }
    return entities[entry->second];
  }

  // --- Copies ---------------------------------------------------------------------------------

  void readAssembly(const StarFrame& frame) {
    const Thiol ofAll = thiolOfWords(frameValue(frame, "_Assembly.Thiol_state"));
    for (Entity& entity : entities)
      if (entity.chain.thiol == Thiol::unknown) entity.chain.thiol = ofAll;
    for (const StarTable& table : tablesWith(frame, "_Entity_assembly.ID")) {
      for (std::size_t row = 0; row < table.rows(); ++row) {
        const auto cell = [&](std::string_view tag) {
          return nameOf(table.text(row, table.column(tag)), file.notes);
        };
        const std::string id = cell("_Entity_assembly.ID");
        if (finder.find(assemblyName(id)) != kNoChain) continue;
        std::string entityId = cell("_Entity_assembly.Entity_ID");
        if (entityIndex.count(entityId) == 0)
          entityId = "$" + withoutDollar(cell("_Entity_assembly.Entity_label"));
        const auto entity = entityIndex.find(entityId);
        const std::size_t chain =
            entity != entityIndex.end() ? addCopy(entities[entity->second], id) : addCopy(Entity(), id);
        noteCautions(file.chains[chain].molecule, cell("_Entity_assembly.Physical_state"), "", file.notes);
        describeCopy(chain, cell("_Entity_assembly.Asym_ID"), cell("_Entity_assembly.PDB_chain_ID"),
                     cell("_Entity_assembly.Entity_assembly_name"));
      }
    }
  }

  std::size_t addCopy(const Entity& entity, const std::string& id) {
    FileChain chain = entity.chain;
    if (chain.residues.empty()) chain.residues = entity.letters;
    chain.name = id;
    chain.aliases = {id, entity.id, entity.frame, chain.molecule};
    const std::size_t index = finder.add(assemblyName(id), std::move(chain));
    finder.alias(entityName(entity.id), index);
    copiesOf[entity.id].push_back(index);
    entityOfCopy.push_back(entity.id);
    return index;
  }

  void describeCopy(std::size_t chain, const std::string& asym, const std::string& pdbChain,
                    const std::string& name) {
    FileChain& described = file.chains[chain];
    for (const std::string& code : {asym, pdbChain}) {
      if (code.empty()) continue;
      described.aliases.push_back(code);
      finder.alias(asymName(code), chain);
    }
    if (!name.empty()) described.aliases.push_back(name);
    if (!asym.empty())
      described.name = asym;
    else if (!pdbChain.empty())
      described.name = pdbChain;
  }

  /// Sequences by copy, as in files that the PDB makes from a deposition, and those made from NEF.
  void readAssemblySequences(const StarFrame& frame) {
    std::map<std::size_t, std::vector<FileResidue>> residues;
    std::map<std::size_t, std::unordered_set<std::string>> keys;
    for (const StarTable& table : tablesOf(frame, "_Chem_comp_assembly.")) {
      const std::string category = "_Chem_comp_assembly.";
      const std::size_t assembly = table.column(category + "Entity_assembly_ID");
      const std::size_t key = table.column(category + "Comp_index_ID");
      const std::size_t otherKey = table.column(category + "Seq_ID");
      const std::size_t name = table.column(category + "Comp_ID");
      const std::size_t number = table.column(category + "Auth_seq_ID");
      const std::size_t asym = table.column(category + "Auth_asym_ID");
      const std::size_t cis = table.column(category + "Cis_residue");
      for (std::size_t row = 0; row < table.rows(); ++row) {
        const std::size_t chain = copyOfSequence(table.word(row, assembly), table.word(row, asym));
        FileResidue residue;
        residue.key = firstWord(table, row, key, otherKey);
        if (residue.key.empty() || chain == kNoChain) continue;
        if (const auto isCis = readFlag(table.word(row, cis)))
          file.chains[chain].cisFlags.push_back({residue.key, *isCis});
        if (!file.chains[chain].residues.empty() || !keys[chain].insert(residue.key).second) continue;
        finder.countResidues(1);
        residue.number = table.word(row, number);
        residue.name = table.word(row, name);
        residues[chain].push_back(std::move(residue));
      }
    }
    for (auto& [chain, list] : residues) file.chains[chain].residues = std::move(list);
  }

  std::size_t copyOfSequence(const std::string& assembly, const std::string& asym) {
    if (assembly.empty()) return asym.empty() ? kNoChain : finder.find(asymName(asym));
    const std::size_t known = finder.find(assemblyName(assembly));
    if (known != kNoChain) return known;
    const std::size_t chain = addCopy(Entity(), assembly);
    if (asym.empty())
      withoutAsym.insert(chain);
    else
      describeCopy(chain, asym, "", "");
    return chain;
  }

  // --- Bonds ----------------------------------------------------------------------------------

  void readBonds(const StarFrame& frame) {
    for (const StarTable& table : tablesOf(frame, "_Bond.")) readBondTable(table, "_Bond.", "");
    for (const StarTable& table : tablesOf(frame, "_Entity_bond."))
      readBondTable(table, "_Entity_bond.", frameValue(frame, "_Entity.ID"));
  }

  void readBondTable(const StarTable& table, const std::string& category, const std::string& ownEntity) {
    const std::size_t type = table.column(category + "Type");
    const std::size_t atom1 = table.column(category + "Atom_ID_1");
    const std::size_t atom2 = table.column(category + "Atom_ID_2");
    for (std::size_t row = 0; row < table.rows(); ++row) {
      if (!isDisulfideBond(table.text(row, type), table.text(row, atom1), table.text(row, atom2))) continue;
      for (const std::string end : {"_1", "_2"}) addBondEnd(table, row, category, end, ownEntity);
    }
  }

  void addBondEnd(const StarTable& table, std::size_t row, const std::string& category,
                  const std::string& end, const std::string& ownEntity) {
    const auto cell = [&](const std::string& tag) { return table.word(row, table.column(category + tag)); };
    std::string key = cell("Comp_index_ID" + end);
    if (key.empty()) key = cell("Seq_ID" + end);
    std::string entity = cell("Entity_ID" + end);
    if (entity.empty()) entity = cell("Entity_ID");
    if (entity.empty()) entity = ownEntity;
    const std::size_t copy = finder.find(assemblyName(cell("Entity_assembly_ID" + end)));
    if (key.empty()) return;
    if (copy != kNoChain) {
      bonds.add(copy, key);
    } else if (const auto copies = copiesOf.find(entity); copies != copiesOf.end()) {
      for (const std::size_t chain : copies->second) bonds.add(chain, key);
    }
  }

  // --- Shifts ---------------------------------------------------------------------------------

  void readLists(const StarFrame& frame) {
    const auto tables = tablesOf(frame, "_Atom_chem_shift.");
    if (tables.empty()) return;
    const auto name = [&](std::string_view tag) { return nameOf(frameValue(frame, tag), file.notes); };
    FileShiftList list;
    list.name = listName(frame, file.notes);
    list.aliases = {name("_Assigned_chem_shift_list.ID"), name("_Assigned_chem_shift_list.Name")};
    std::vector<std::string> ids;
    for (const StarTable& table : tables) readShifts(table, list, ids);
    for (FileShiftList& one : listsById(std::move(list), ids)) file.lists.push_back(std::move(one));
    noteOffsets(frame);
  }

  /// `ids`: the list that each row names.
  void readShifts(const StarTable& table, FileShiftList& list, std::vector<std::string>& ids) {
    const auto column = [&](const std::string& tag) { return table.column("_Atom_chem_shift." + tag); };
    const std::size_t key = column("Comp_index_ID"), otherKey = column("Seq_ID");
    const std::size_t number = column("Auth_seq_ID");
    const std::size_t name = column("Comp_ID"), otherName = column("Auth_comp_ID");
    const std::size_t atom = column("Atom_ID"), otherAtom = column("Auth_atom_ID");
    const std::size_t element = column("Atom_type");
    const std::size_t value = column("Val"), olderValue = column("Chem_shift_val");
    const std::size_t ambiguity = column("Ambiguity_code"),
                      olderAmbiguity = column("Chem_shift_ambiguity_code");
    const std::size_t occupancy = column("Occupancy");
    const std::size_t listId = column("Assigned_chem_shift_list_ID");
    const ChainColumns chainColumns{column("Entity_assembly_ID"), column("Entity_ID"),
                                    column("Entity_assembly_asym_ID"), column("Auth_asym_ID")};
    const std::size_t rows = table.rows();
    reserveRows(list, rows, file, path);
    for (std::size_t row = 0; row < rows; ++row) {
      FileShift shift;
      shift.key = firstWord(table, row, key, otherKey);
      shift.number = table.word(row, number);
      placeInChain(table, row, chainColumns, shift);
      shift.residueName = firstWord(table, row, name, otherName);
      shift.atom = firstWord(table, row, atom, otherAtom);
      shift.element = table.word(row, element);
      shift.value = firstWord(table, row, value, olderValue);
      shift.ambiguity = firstWord(table, row, ambiguity, olderAmbiguity);
      if (const auto share = toDecimal(table.word(row, occupancy))) shift.occupancy = std::stod(*share);
      list.shifts.push_back(std::move(shift));
      ids.push_back(table.word(row, listId));
    }
  }

  struct ChainColumns {
    std::size_t assembly, entity, asym, authAsym;
  };

  /// Gives the row its chain; one that the file describes nowhere else is added.
  void placeInChain(const StarTable& table, std::size_t row, const ChainColumns& columns, FileShift& shift) {
    const std::string assembly = table.word(row, columns.assembly);
    const std::string entity = table.word(row, columns.entity);
    const std::string asym = firstWord(table, row, columns.asym, columns.authAsym);
    const std::size_t author = asym.empty() ? kNoChain : finder.find(asymName(asym));
    if (!assembly.empty()) {
      std::size_t known = finder.find(assemblyName(assembly));
      if (known >= describedCount && author < describedCount) known = kNoChain;  // only rows name it
      if (known != kNoChain && !asym.empty() && withoutAsym.erase(known) > 0)
        describeCopy(known, asym, "", "");
      if (known != kNoChain)
        shift.chain = ofEntity(known, entity);
      else if (author < describedCount)
        placeByAuthor(author, assembly, shift);
      else if (hasCopies && entityIndex.count(entity) == 0)
        shift.chain = kNowhere;
      else
        shift.chain = addUndescribed(assembly, entity, asym);
      return;
    }
    const std::size_t copy = entity.empty() ? kNoChain : finder.find(entityName(entity));
    const bool isNamed = !entity.empty() || !asym.empty();
    if (copy != kNoChain)
      shift.chain = copy;
    else if (author != kNoChain)
      shift.chain = author;
    else if (isNamed || file.chains.empty())
      shift.chain = addUndescribed(assembly, entity, asym);
  }

  /// A row of a copy that the assembly has not: its place in that copy means nothing, the author's chain and
  /// number do. A row without such a number is of no known place.
  void placeByAuthor(std::size_t chain, const std::string& assembly, FileShift& shift) {
    shift.key.clear();
    shift.chain = shift.number.empty() ? kNowhere : chain;
    if (!shift.number.empty()) ++strayCopies[assembly];
  }

  /// Copies that only rows name, of molecules whose copies the file lists. Where no row names a listed copy,
  /// theirs is the only one; a full set of shifts is a copy of its own; a few rows are of no known place.
  void settleUndescribed() {
    if (!hasCopies) return;
    const std::vector<std::size_t> rows = rowsByChain();
    std::vector<std::size_t> target(file.chains.size());
    std::iota(target.begin(), target.end(), 0);
    for (std::size_t c = describedCount; c < file.chains.size(); ++c) {
      const std::vector<std::size_t>& copies = copiesOf[entityOfCopy[c]];  // those that the file lists first
      std::size_t listed = 0;
      std::size_t most = 0;
      for (const std::size_t copy : copies) {
        if (copy >= describedCount) continue;
        ++listed;
        most = std::max(most, rows[copy]);
      }
      if (most == 0 && listed == 1 && copies.size() == 2)
        target[c] = copies.front();
      else if (rows[c] * 2 < most)
        target[c] = kNowhere;
    }
    for (FileShiftList& list : file.lists)
      for (FileShift& row : list.shifts)
        if (row.chain < target.size()) row.chain = target[row.chain];
    for (std::size_t c = describedCount; c < target.size(); ++c)
      if (target[c] < describedCount)
        file.notes.push_back(counted(rows[c], "shift row names", "shift rows name") + " copy " +
                             file.chains[c].aliases.front() +
                             ", which the file does not describe; taken as of chain " +
                             file.chains[target[c]].name + ", the only one of that molecule");
  }

  std::vector<std::size_t> rowsByChain() const {
    std::vector<std::size_t> rows(file.chains.size(), 0);
    for (const FileShiftList& list : file.lists)
      for (const FileShift& row : list.shifts)
        if (row.chain < rows.size()) ++rows[row.chain];
    return rows;
  }

  void noteStrayCopies() {
    for (const auto& [assembly, rows] : strayCopies)
      file.notes.push_back(counted(rows, "shift row names", "shift rows name") + " copy " + assembly +
                           ", which the file does not describe; the author's chain and number place " +
                           (rows == 1 ? "it" : "them"));
  }

  /// The chain, or the first copy of the entity where the row names another one than the chain's: some
  /// entries write copy 1 in all rows.
  std::size_t ofEntity(std::size_t chain, const std::string& entity) {
    if (entity.empty() || entity == entityOfCopy[chain]) return chain;
    const auto copies = copiesOf.find(entity);
    if (copies == copiesOf.end()) return chain;
    const std::size_t other = copies->second.front();
    if (corrected.insert(other).second)
      file.notes.push_back("shift rows of entity " + entity +
                           " name a copy of another one; they are taken as of chain " +
                           file.chains[other].name);
    return other;
  }

  std::size_t addUndescribed(const std::string& assembly, const std::string& entity,
                             const std::string& asym) {
    const auto known = entityIndex.find(entity);
    const std::string& id = assembly.empty() ? entity : assembly;
    Entity unknown;
    unknown.id = entity;
    const std::size_t chain = addCopy(known != entityIndex.end() ? entities[known->second] : unknown, id);
    describeCopy(chain, asym, "", "");
    return chain;
  }

  /// Corrections that the authors ask the reader to apply, such as that of TROSY spectra.
  void noteOffsets(const StarFrame& frame) {
    LimitedNotes notes("systematic offsets that are not applied");
    for (const StarTable& table : tablesOf(frame, "_Systematic_chem_shift_offset.")) {
      for (std::size_t row = 0; row < table.rows(); ++row) {
        const auto cell = [&](const std::string& tag) {
          return table.word(row, table.column("_Systematic_chem_shift_offset." + tag));
        };
        if (cell("Val").empty()) continue;
        notes.add("the file states a systematic offset of " + cell("Val") + " ppm (" + cell("Type") + ", " +
                  cell("Atom_type") + "); it is not applied");
      }
    }
    notes.appendTo(file.notes);
  }

  const StarEntry& source;
  const std::string& path;  ///< of the file, for messages
  std::vector<StarFrame> frames;
  std::vector<Entity> entities;
  std::map<std::string, std::size_t> entityIndex;  ///< by number, and by "$" and frame name
  std::map<std::string, std::vector<std::size_t>> copiesOf;
  std::vector<std::string> entityOfCopy;  ///< by chain
  std::unordered_set<std::size_t> corrected;
  std::unordered_set<std::size_t> withoutAsym;     ///< chains to which only the rows give the author's name
  bool hasCopies = false;                          ///< the file lists the copies of its molecules
  std::size_t describedCount = 0;                  ///< chains that the file describes, not the rows alone
  std::map<std::string, std::size_t> strayCopies;  ///< rows by the number of a copy that is not there
  std::size_t lettersCount = 0;
  std::size_t sequenceCount = 0;
  ShiftFile file;
  ChainFinder finder;
  BondEnds bonds;
};

}  // namespace

bool isNmrStar3(const Source& source) {
  return source.star.has_value();
}

ShiftFile readNmrStar3(const Source& source) {
  return Star3Reader(*source.star, source.file).read();
}

}  // namespace zorvela
