// Reads NMR-STAR 3: entities and their copies in the assembly, bonds, assigned shift lists. Of a file
// without shifts: its contents.
#include <map>
#include <unordered_set>
#include <utility>

#include "formats/format.h"
#include "formats/star_chains.h"
#include "formats/star_document.h"
#include "util/text.h"

namespace zorvela {

using gemmi::cif::Block;
using gemmi::cif::Document;

namespace {

/// A molecule; the assembly may hold several copies of it.
struct Entity {
  std::string id;
  std::string frame;  ///< name of its save frame
  std::string strands;
  std::string letters;  ///< one-letter sequence
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

std::string firstText(const StarTable& table, std::size_t row, std::size_t column, std::size_t otherColumn) {
  std::string text = table.text(row, column);
  return text.empty() ? table.text(row, otherColumn) : text;
}

class Star3Reader {
 public:
  Star3Reader(const Document& document, const std::string& name)
      : source(document), frames(framesOf(document)), finder(file.chains, name) {}

  ShiftFile read() {
    for (const Block* frame : frames) readEntities(*frame);
    for (const Block* frame : frames) readSequences(*frame);
    for (const Block* frame : frames) readAssembly(*frame);
    if (file.chains.empty())
      for (const Entity& entity : entities)
        addCopy(entity, entity.strands.empty() ? entity.id : entity.strands);
    for (const Block* frame : frames) readLists(*frame);
    for (const Block* frame : frames) readAssemblySequences(*frame);
    for (const Block* frame : frames) readBonds(*frame);
    for (FileShiftList& list : file.lists) placeByNames(list.shifts, file.chains, file.notes);
    setNumbers();
    makeNamesDiffer(file.chains);
    if (file.chains.empty() && file.lists.empty()) file.format = "STAR or CIF";
    file.contents = starContents(source);
    return std::move(file);
  }

 private:
  // --- Molecules ------------------------------------------------------------------------------

  void readEntities(const Block& frame) {
    for (const StarTable& table : tablesWith(frame, "_Entity.ID")) {
      for (std::size_t row = 0; row < table.rows(); ++row) {
        const auto cell = [&](std::string_view tag) { return table.text(row, table.column(tag)); };
        Entity entity;
        entity.id = cell("_Entity.ID");
        entity.frame = frame.name;
        entity.strands = cell("_Entity.Polymer_strand_ID");
        entity.letters = cell("_Entity.Polymer_seq_one_letter_code");
        if (entity.letters.empty()) entity.letters = cell("_Entity.Polymer_seq_one_letter_code_can");
        entity.chain.molecule = cell("_Entity.Name");
        entity.chain.thiol = thiolOfWords(cell("_Entity.Thiol_state"));
        entity.chain.kind = cell("_Entity.Polymer_type");
        if (entity.chain.kind.empty()) entity.chain.kind = cell("_Entity.Type");
        entity.chain.polymer = polymerOfWords(entity.chain.kind);
        noteCautions(entity.chain.molecule, "", cell("_Entity.Paramagnetic"), file.notes);
        entityIndex.emplace(entity.id, entities.size());
        entityIndex.emplace("$" + entity.frame, entities.size());
        entities.push_back(std::move(entity));
      }
    }
  }

  void readSequences(const Block& frame) {
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
      std::string entityId = table.text(row, id);
      if (entityId.empty()) entityId = ownEntity;
      Entity& entity = entityOf(entityId);
      const std::string residueKey = firstText(table, row, key, otherKey);
      // A place with several residue types (a mixture) keeps the first.
      if (residueKey.empty() || !entity.keys.insert(residueKey).second) continue;
      FileResidue residue;
      residue.key = residueKey;
      residue.number = table.text(row, number);
      residue.name = table.text(row, name);
      entity.chain.residues.push_back(std::move(residue));
    }
  }

  /// The entity of that number; a new one where only its sequence is given.
  Entity& entityOf(const std::string& id) {
    const auto [entry, isNew] = entityIndex.emplace(id, entities.size());
    if (isNew) {
      entities.emplace_back();
      entities.back().id = id;
    }
    return entities[entry->second];
  }

  // --- Copies ---------------------------------------------------------------------------------

  void readAssembly(const Block& frame) {
    const Thiol ofAll = thiolOfWords(frameValue(frame, "_Assembly.Thiol_state"));
    for (Entity& entity : entities)
      if (entity.chain.thiol == Thiol::unknown) entity.chain.thiol = ofAll;
    for (const StarTable& table : tablesWith(frame, "_Entity_assembly.ID")) {
      for (std::size_t row = 0; row < table.rows(); ++row) {
        const auto cell = [&](std::string_view tag) { return table.text(row, table.column(tag)); };
        const std::string id = cell("_Entity_assembly.ID");
        if (finder.find(assemblyName(id)) != kNoChain) continue;
        std::string entityId = cell("_Entity_assembly.Entity_ID");
        if (entityIndex.count(entityId) == 0)
          entityId = "$" + withoutDollar(cell("_Entity_assembly.Entity_label"));
        const auto entity = entityIndex.find(entityId);
        const std::size_t chain =
            addCopy(entity != entityIndex.end() ? entities[entity->second] : Entity(), id);
        noteCautions(file.chains[chain].molecule, cell("_Entity_assembly.Physical_state"), "", file.notes);
        describeCopy(chain, cell("_Entity_assembly.Asym_ID"), cell("_Entity_assembly.PDB_chain_ID"),
                     cell("_Entity_assembly.Entity_assembly_name"));
      }
    }
  }

  std::size_t addCopy(const Entity& entity, const std::string& id) {
    FileChain chain = entity.chain;
    if (chain.residues.empty()) chain.residues = residuesOfLetters(entity.letters);
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

  /// Sequences by copy, as in files that the PDB makes from a deposition.
  void readAssemblySequences(const Block& frame) {
    std::map<std::size_t, std::vector<FileResidue>> residues;
    std::map<std::size_t, std::unordered_set<std::string>> keys;
    for (const StarTable& table : tablesOf(frame, "_Chem_comp_assembly.")) {
      const std::string category = "_Chem_comp_assembly.";
      const std::size_t assembly = table.column(category + "Entity_assembly_ID");
      const std::size_t key = table.column(category + "Comp_index_ID");
      const std::size_t otherKey = table.column(category + "Seq_ID");
      const std::size_t name = table.column(category + "Comp_ID");
      const std::size_t number = table.column(category + "Auth_seq_ID");
      for (std::size_t row = 0; row < table.rows(); ++row) {
        const std::size_t chain = finder.find(assemblyName(table.text(row, assembly)));
        if (chain == kNoChain || !file.chains[chain].residues.empty()) continue;
        FileResidue residue;
        residue.key = firstText(table, row, key, otherKey);
        residue.number = table.text(row, number);
        residue.name = table.text(row, name);
        if (!residue.key.empty() && keys[chain].insert(residue.key).second)
          residues[chain].push_back(residue);
      }
    }
    for (auto& [chain, list] : residues) file.chains[chain].residues = std::move(list);
  }

  // --- Bonds ----------------------------------------------------------------------------------

  void readBonds(const Block& frame) {
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
    const auto cell = [&](const std::string& tag) { return table.text(row, table.column(category + tag)); };
    std::string key = cell("Comp_index_ID" + end);
    if (key.empty()) key = cell("Seq_ID" + end);
    std::string entity = cell("Entity_ID" + end);
    if (entity.empty()) entity = cell("Entity_ID");
    if (entity.empty()) entity = ownEntity;
    const std::size_t copy = finder.find(assemblyName(cell("Entity_assembly_ID" + end)));
    if (key.empty()) return;
    if (copy != kNoChain) {
      file.chains[copy].disulfides.push_back(key);
    } else if (const auto copies = copiesOf.find(entity); copies != copiesOf.end()) {
      for (const std::size_t chain : copies->second) file.chains[chain].disulfides.push_back(key);
    }
  }

  // --- Shifts ---------------------------------------------------------------------------------

  void readLists(const Block& frame) {
    const auto tables = tablesOf(frame, "_Atom_chem_shift.");
    if (tables.empty()) return;
    FileShiftList list;
    list.name = listName(frame);
    list.aliases = {frameValue(frame, "_Assigned_chem_shift_list.ID"),
                    frameValue(frame, "_Assigned_chem_shift_list.Name")};
    for (const StarTable& table : tables) readShifts(table, list.shifts);
    if (!list.shifts.empty()) file.lists.push_back(std::move(list));
    noteOffsets(frame);
  }

  void readShifts(const StarTable& table, std::vector<FileShift>& shifts) {
    const auto column = [&](const std::string& tag) { return table.column("_Atom_chem_shift." + tag); };
    const std::size_t key = column("Comp_index_ID"), otherKey = column("Seq_ID");
    const std::size_t number = column("Auth_seq_ID");
    const std::size_t name = column("Comp_ID"), otherName = column("Auth_comp_ID");
    const std::size_t atom = column("Atom_ID"), otherAtom = column("Auth_atom_ID");
    const std::size_t value = column("Val"), olderValue = column("Chem_shift_val");
    const std::size_t ambiguity = column("Ambiguity_code"),
                      olderAmbiguity = column("Chem_shift_ambiguity_code");
    const std::size_t occupancy = column("Occupancy");
    const ChainColumns chainColumns{column("Entity_assembly_ID"), column("Entity_ID"),
                                    column("Entity_assembly_asym_ID"), column("Auth_asym_ID")};
    for (std::size_t row = 0; row < table.rows(); ++row) {
      FileShift shift;
      shift.chain = chainOf(table, row, chainColumns);
      shift.key = firstText(table, row, key, otherKey);
      shift.number = table.text(row, number);
      shift.residueName = firstText(table, row, name, otherName);
      shift.atom = firstText(table, row, atom, otherAtom);
      shift.value = firstText(table, row, value, olderValue);
      shift.ambiguity = firstText(table, row, ambiguity, olderAmbiguity);
      if (const auto share = toDecimal(table.text(row, occupancy))) shift.occupancy = std::stod(*share);
      shifts.push_back(std::move(shift));
    }
  }

  struct ChainColumns {
    std::size_t assembly, entity, asym, authAsym;
  };

  /// The chain of a row; one that the file describes nowhere else is added.
  std::size_t chainOf(const StarTable& table, std::size_t row, const ChainColumns& columns) {
    const std::string assembly = table.text(row, columns.assembly);
    const std::string entity = table.text(row, columns.entity);
    const std::string asym = firstText(table, row, columns.asym, columns.authAsym);
    if (!assembly.empty()) {
      const std::size_t known = finder.find(assemblyName(assembly));
      return known != kNoChain ? ofEntity(known, entity) : addUndescribed(assembly, entity, asym);
    }
    if (const std::size_t known = finder.find(entityName(entity)); !entity.empty() && known != kNoChain)
      return known;
    if (const std::size_t known = finder.find(asymName(asym)); !asym.empty() && known != kNoChain)
      return known;
    const bool isNamed = !entity.empty() || !asym.empty();
    if (isNamed || file.chains.empty()) return addUndescribed(assembly, entity, asym);
    return kNoChain;
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
    Entity described = known != entityIndex.end() ? entities[known->second] : Entity();
    if (known == entityIndex.end()) described.id = entity;
    const std::size_t chain = addCopy(described, assembly.empty() ? entity : assembly);
    describeCopy(chain, asym, "", "");
    return chain;
  }

  /// Corrections that the authors ask the reader to apply, such as that of TROSY spectra.
  void noteOffsets(const Block& frame) {
    for (const StarTable& table : tablesOf(frame, "_Systematic_chem_shift_offset.")) {
      for (std::size_t row = 0; row < table.rows(); ++row) {
        const auto cell = [&](const std::string& tag) {
          return table.text(row, table.column("_Systematic_chem_shift_offset." + tag));
        };
        if (cell("Val").empty()) continue;
        file.notes.push_back("the file states a systematic offset of " + cell("Val") + " ppm (" +
                             cell("Type") + ", " + cell("Atom_type") + "); it is not applied");
      }
    }
  }

  // --- Numbers --------------------------------------------------------------------------------

  /// Residues without an author's number take that of their shift rows, or, where the whole chain has
  /// none, their place in the polymer.
  void setNumbers() {
    std::vector<std::map<std::string, std::string>> ofRows(file.chains.size());
    for (const FileShiftList& list : file.lists)
      for (const FileShift& row : list.shifts)
        if (row.chain != kNoChain && !row.key.empty() && !row.number.empty())
          ofRows[row.chain].emplace(row.key, row.number);
    for (std::size_t c = 0; c < file.chains.size(); ++c) setNumbers(file.chains[c], ofRows[c]);
  }

  static void setNumbers(FileChain& chain, const std::map<std::string, std::string>& ofRows) {
    bool hasNumbers = false;
    for (FileResidue& residue : chain.residues) {
      const auto found = ofRows.find(residue.key);
      if (residue.number.empty() && found != ofRows.end()) residue.number = found->second;
      hasNumbers = hasNumbers || !residue.number.empty();
    }
    if (hasNumbers) return;
    for (FileResidue& residue : chain.residues) residue.number = residue.key;
  }

  const Document& source;
  std::vector<const Block*> frames;
  std::vector<Entity> entities;
  std::map<std::string, std::size_t> entityIndex;  ///< by number, and by "$" and frame name
  std::map<std::string, std::vector<std::size_t>> copiesOf;
  std::vector<std::string> entityOfCopy;  ///< by chain
  std::unordered_set<std::size_t> corrected;
  ShiftFile file;
  ChainFinder finder;
};

}  // namespace

bool isNmrStar3(const Source& source) {
  return source.star.has_value();
}

ShiftFile readNmrStar3(const Source& source) {
  return Star3Reader(*source.star, source.file).read();
}

}  // namespace zorvela
