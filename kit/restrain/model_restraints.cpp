// Describes a model: its cis prolines as PDB and mmCIF records, and the atoms of omega by number.
#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <optional>

#include "names/nomenclature.h"
#include "restrain/declarations.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

/// The chain of a site, and the place of its proline.
struct Place {
  const StructureChain* chain = nullptr;
  std::size_t index = 0;
};

std::optional<Place> placeOf(const ProteinStructure& structure, const BondSite& site) {
  for (const StructureChain& chain : structure.chains)
    for (std::size_t i = 1; chain.name == site.chain && i < chain.residues.size(); ++i)
      if (chain.residues[i].number == site.number) return Place{&chain, i};
  return std::nullopt;
}

std::string nameOf(const StructureResidue& before, const StructureResidue& proline) {
  return printable(before.name + before.number + "-" + proline.name + proline.number, 60);
}

// --- Cis bonds of the model -----------------------------------------------------------------------

/// A cis bond in one model.
struct CisBond {
  const StructureChain& chain;
  const StructureResidue& before;
  const StructureResidue& proline;
  const ModelBond& bond;
};

std::vector<CisBond> cisBondsOf(const ProteinStructure& structure, std::vector<std::string>& notes) {
  std::vector<CisBond> cis;
  for (const StructureChain& chain : structure.chains)
    for (std::size_t i = 1; i < chain.residues.size(); ++i)
      for (const auto* bonds : {&chain.residues[i].bonds, &chain.residues[i].others})
        for (const ModelBond& bond : *bonds) {
          if (bond.state != BondState::cis) continue;
          if (bond.omega)
            cis.push_back({chain, chain.residues[i - 1], chain.residues[i], bond});
          else
            notes.push_back(nameOf(chain.residues[i - 1], chain.residues[i]) +
                            " of the model is left out: cis by its CA atoms, without omega");
        }
  return cis;
}

/// The calls from shifts, by chain and number in the model.
std::map<std::pair<std::string, std::string>, std::string> shiftTexts(const RestraintRequest& request) {
  std::map<std::pair<std::string, std::string>, std::string> texts;
  for (const RestrainedBond& bond : bondsOf(request.chains))
    for (const BondSite& site : bond.sites())
      texts.emplace(std::pair(site.chain, site.number), callText(bond) + " by the shifts");
  return texts;
}

/// The cis prolines of the shifts that the model has otherwise.
void noteContradictions(const RestraintRequest& request, std::vector<std::string>& notes) {
  for (const RestrainedBond& bond : bondsOf(request.chains)) {
    if (bond.proline.call != Call::cis) continue;
    if (bond.sites().empty()) notes.push_back(callText(bond) + ": is not in the model");
    for (const BondSite& site : bond.sites()) {
      const auto count = static_cast<std::size_t>(
          std::count_if(site.bonds.begin(), site.bonds.end(),
                        [](const ModelBond& seen) { return seen.state != BondState::cis; }));
      if (count > 0)
        notes.push_back(callText(bond) + ": not cis in " + counted(count, "model", "models") + " of " +
                        std::to_string(site.bonds.size()) + " (chain " + printable(site.chain, 60) + ", " +
                        printable(site.residue + " " + site.number, 60) + ")");
      if (site.bonds.empty()) notes.push_back(callText(bond) + ": no such bond in the model: " + site.reason);
    }
  }
}

RestraintText modelText(const Dialect& dialect, const RestraintRequest& request,
                        const std::function<Declaration(const CisBond&, std::size_t)>& declare) {
  RestraintText result;
  std::string lines;
  std::size_t count = 0;
  const auto texts = shiftTexts(request);
  const std::vector<CisBond> bonds = cisBondsOf(*request.structure, result.notes);
  for (const CisBond& cis : bonds) {
    const Declaration declaration = declare(cis, count + 1);
    const auto known = texts.find({cis.chain.name, cis.proline.number});
    lines += commentLine(
        dialect, known == texts.end() ? nameOf(cis.before, cis.proline) + ", no shifts" : known->second);
    lines += declaration.text;
    if (!declaration.text.empty()) ++count;
    if (declaration.omission.empty()) continue;
    lines += commentLine(dialect, "left out: " + declaration.omission);
    result.notes.push_back(nameOf(cis.before, cis.proline) + " is left out: " + declaration.omission);
  }
  for (const std::string& remark : dialect.remarks) result.text += commentLine(dialect, remark);
  if (bonds.empty()) result.text += commentLine(dialect, "The model has no cis proline");
  result.text += count == 0 ? lines : dialect.head + lines + dialect.tail;
  noteContradictions(request, result.notes);
  return result;
}

// --- CISPEP ---------------------------------------------------------------------------------------

constexpr int kLargestOfThreeDigits = 999;

/// Writes a residue in the columns of the PDB format; nothing if it does not fit.
std::optional<std::string> pdbResidue(const StructureChain& chain, const StructureResidue& residue) {
  const auto number = readResidueNumber(residue.number);
  if (!number || number->number < -999 || number->number > 9999 || number->code.size() > 1 ||
      chain.name.size() > 1 || residue.name.size() > 3)
    return std::nullopt;
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%3s %1s %4d%1s", residue.name.c_str(), chain.name.c_str(),
                number->number, number->code.c_str());
  return std::string(text.data());
}

Declaration cispep(const CisBond& cis, std::size_t serial, bool isEnsemble) {
  const auto before = pdbResidue(cis.chain, cis.before);
  const auto proline = pdbResidue(cis.chain, cis.proline);
  const auto model = isEnsemble ? toInteger(cis.bond.model) : 0;
  if (!before || !proline) return {{}, "its chain, name or number has no place in a CISPEP record"};
  if (!model || *model > kLargestOfThreeDigits || serial > kLargestOfThreeDigits)
    return {{},
            "model " + printable(cis.bond.model, 60) + ", record " + std::to_string(serial) +
                ": no place for more than three digits"};
  std::array<char, 96> text{};
  std::snprintf(text.data(), text.size(), "CISPEP %3d %s   %s       %3d       %6.2f\n",
                static_cast<int>(serial), before->c_str(), proline->c_str(), *model, *cis.bond.omega);
  return {text.data(), {}};
}

// --- struct_mon_prot_cis --------------------------------------------------------------------------

bool isPlainWord(const std::string& word) {
  return !word.empty() && !contains("_#$'\";[]", word.substr(0, 1)) &&
         word.find_first_of(" \t\r\n") == std::string::npos && shown(word) == word;
}

std::string cifResidue(const StructureChain& chain, const StructureResidue& residue) {
  const auto number = readResidueNumber(residue.number);
  const std::string label = residue.label.empty() ? "? ?" : residue.label;
  const std::size_t blank = label.find(' ');
  for (const std::string& word : {label.substr(0, blank), label.substr(blank + 1), chain.name, residue.name})
    if (!isPlainWord(word)) return {};
  if (!number) return {};
  return label + " " + residue.name + " " + chain.name + " " + std::to_string(number->number) + " " +
         (number->code.empty() ? "?" : number->code);
}

// --- Atom numbers ---------------------------------------------------------------------------------

/// The atoms of the first model of a PDB file.
struct AtomNumbers {
  std::map<std::string, int> byName;  ///< "A/82/CA", from 1; 0 for one that is there twice
  bool hasHydrogens = false;
};

std::string atomKey(std::string_view chain, std::string_view number, std::string_view atom) {
  return std::string(chain) + "/" + std::string(number) + "/" + std::string(atom);
}

AtomNumbers atomNumbersOf(const std::string& text) {
  AtomNumbers numbers;
  int count = 0;
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
    if (startsIgnoringCase(*line, "ENDMDL") || trimmed(line->substr(0, 6)) == "END") break;
    if (!startsIgnoringCase(*line, "ATOM") && !startsIgnoringCase(*line, "HETATM")) continue;
    ++count;
    if (line->size() < 27) continue;
    const std::string_view atom = trimmed(line->substr(12, 4));
    const std::size_t letter = atom.find_first_not_of("0123456789");
    if (letter != std::string_view::npos && atom[letter] == 'H') numbers.hasHydrogens = true;
    if (atom != "N" && atom != "CA" && atom != "C") continue;
    const auto [at, isNew] = numbers.byName.emplace(
        atomKey(trimmed(line->substr(20, 2)), trimmed(line->substr(22, 5)), atom), count);
    if (!isNew) at->second = 0;
  }
  return numbers;
}

/// The restraint at one site.
Declaration amberRestraint(const ProteinStructure& structure, const AtomNumbers& numbers,
                           const BondSite& site) {
  const auto place = placeOf(structure, site);
  if (!place || site.bonds.empty()) return {{}, "no such bond in the model: " + site.reason};
  const std::string before = place->chain->residues[place->index - 1].number;
  std::string atoms;
  for (const auto& [number, atom] : {std::pair(before, "CA"), std::pair(before, "C"),
                                     std::pair(site.number, "N"), std::pair(site.number, "CA")}) {
    const auto known = numbers.byName.find(atomKey(site.chain, number, atom));
    if (known == numbers.byName.end() || known->second == 0)
      return {{}, std::string(atom) + " of residue " + number + " is missing or repeated in the model"};
    atoms += std::to_string(known->second) + ", ";
  }
  return {
      " &rst iat = " + atoms + "r1 = -21.0, r2 = -20.0, r3 = 20.0, r4 = 21.0, rk2 = 2.0, rk3 = 2.0, &end\n",
      {}};
}

Declaration amberRestraints(const ProteinStructure& structure, const AtomNumbers& numbers,
                            const RestrainedBond& bond) {
  Declaration all;
  if (bond.sites().empty()) all.omission = "is not in the model";
  for (const BondSite& site : bond.sites()) {
    const Declaration one = amberRestraint(structure, numbers, site);
    all.text += one.text;
    if (!one.omission.empty()) all.omission = one.omission;
  }
  return all;
}

}  // namespace

RestraintText writeAmber(const RestraintRequest& request) {
  Dialect dialect = {"amber", "# "};
  if (!request.structure) {
    dialect.remarks = {"for makeANG_RST; with --structure FILE: &rst with the numbers of the atoms",
                       "not sure: that makeANG_RST knows OMEGA of PRO; if not, add it to its library"};
    return declarations(dialect, request, [](const RestrainedBond& bond) -> Declaration {
      return {bond.proline.number + " PRO OMEGA -20.0 20.0\n", {}};
    });
  }
  if (request.structure->format != "PDB")
    throw FileError(request.structure->file, 0, "is not a PDB file",
                    "give the PDB file of the topology, whose atoms AMBER counts");
  dialect.longestChain = kAnyChain;
  dialect.takesCodes = true;
  dialect.remarks = {
      "atoms are counted as the PDB file has them: it must have all of the topology, hydrogens too"};
  const AtomNumbers numbers = atomNumbersOf(request.modelText->text);
  if (!numbers.hasHydrogens)
    throw FileError(request.structure->file, 0, "has no hydrogens, so its atoms are not those of a topology",
                    "give the PDB file that goes with the topology");
  return declarations(dialect, request, [&](const RestrainedBond& bond) {
    return amberRestraints(*request.structure, numbers, bond);
  });
}

RestraintText writeCispep(const RestraintRequest& request) {
  Dialect dialect = {"pdb", "REMARK   6 "};
  dialect.remarks = {"Cis prolines of the model; they declare nothing to a calculation"};
  const bool isEnsemble = request.structure->modelCount > 1;
  return modelText(dialect, request, [isEnsemble](const CisBond& cis, std::size_t serial) {
    return cispep(cis, serial, isEnsemble);
  });
}

RestraintText writeMonProtCis(const RestraintRequest& request) {
  Dialect dialect = {"mmcif", "# "};
  dialect.remarks = {"Cis prolines of the model, for its data block; they declare nothing to a calculation"};
  if (request.structure->format == "PDB")
    dialect.remarks.emplace_back("the model is a PDB file, which has no label_asym_id and label_seq_id");
  dialect.head = "loop_\n";
  for (const char* tag : {"pdbx_id", "pdbx_PDB_model_num", "label_asym_id", "label_seq_id", "label_comp_id",
                          "auth_asym_id", "auth_seq_id", "pdbx_PDB_ins_code", "pdbx_label_asym_id_2",
                          "pdbx_label_seq_id_2", "pdbx_label_comp_id_2", "pdbx_auth_asym_id_2",
                          "pdbx_auth_seq_id_2", "pdbx_PDB_ins_code_2", "label_alt_id", "pdbx_omega_angle"})
    dialect.head += std::string("_struct_mon_prot_cis.") + tag + "\n";
  return modelText(dialect, request, [&](const CisBond& cis, std::size_t serial) -> Declaration {
    const std::string before = cifResidue(cis.chain, cis.before);
    const std::string proline = cifResidue(cis.chain, cis.proline);
    if (before.empty() || proline.empty()) return {{}, "its chain, name or number is not a plain word"};
    const std::string model = cis.bond.model.empty() ? "1" : cis.bond.model;
    const std::string conformation = cis.bond.conformation.empty() ? "." : cis.bond.conformation;
    return {std::to_string(serial) + " " + model + " " + before + " " + proline + " " + conformation + " " +
                fixedText(*cis.bond.omega, 2) + "\n",
            {}};
  });
}

}  // namespace zorvela
