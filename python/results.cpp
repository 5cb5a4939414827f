// The classes of the results. Their members have the names and the values of `run --format json`.
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "binding.h"
#include "zorvela/predict.h"
#include "zorvela/structure.h"

namespace py = pybind11;

namespace zorvela {

py::str pythonText(const std::string& text) {
  PyObject* decoded = PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace");
  if (decoded == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(decoded);
}

namespace {

// --- Values -------------------------------------------------------------------------------------

py::object toPython(double number) {
  if (!std::isfinite(number)) return py::none();
  return py::float_(number);
}

/// Converts by the shortest decimal number, so that 0.1 in single precision is 0.1.
py::object toPython(float number) {
  if (!std::isfinite(number)) return py::none();
  std::array<char, 64> digits{};
  std::to_chars(digits.data(), digits.data() + digits.size() - 1, number);
  return py::float_(std::strtod(digits.data(), nullptr));
}

py::object toPython(int number) {
  return py::int_(number);
}

py::object toPython(bool isSo) {
  return py::bool_(isSo);
}

py::object toPython(std::monostate) {
  return py::none();
}

template <class Item>
py::object toPython(const std::optional<Item>& item) {
  if (!item) return py::none();
  return toPython(*item);
}

py::object orNone(const std::string& text) {
  if (text.empty()) return py::none();
  return pythonText(text);
}

py::list toPython(const std::vector<std::string>& texts) {
  py::list list;
  for (const std::string& text : texts) list.append(pythonText(text));
  return list;
}

/// Rounds angles and distances as in the reports.
py::object rounded(const std::optional<double>& number, int decimals) {
  if (!number) return py::none();
  std::array<char, 400> digits{};
  std::snprintf(digits.data(), digits.size(), "%.*f", decimals, *number);
  return py::float_(std::strtod(digits.data(), nullptr));
}

/// Returns Python objects for parts of a result, which lives as long as any of them.
template <class Item>
py::list partsOf(const std::vector<Item>& items, const py::handle& owner) {
  py::list list;
  for (const Item& item : items)
    list.append(py::cast(&item, py::return_value_policy::reference_internal, owner));
  return list;
}

template <class Item>
py::object partOf(const Item* item, const py::handle& owner) {
  return py::cast(item, py::return_value_policy::reference_internal, owner);
}

/// A Python class with members that cannot be set.
template <class Item>
class Class {
 public:
  Class(const py::module_& module, const char* name, const char* text) : bound(module, name, text) {
    bound.attr("__module__") = "zorvela";
  }

  /// Adds a member with the value of valueOf(item).
  template <class ValueOf>
  Class& add(const char* name, ValueOf valueOf, const char* text) {
    bound.def_property_readonly(
        name, [valueOf](const Item& item) { return py::object(valueOf(item)); }, text);
    return *this;
  }

  /// Adds a member with a list of parts of the item.
  template <class PartsOf>
  Class& addParts(const char* name, PartsOf parts, const char* text) {
    bound.def_property_readonly(
        name, [parts](const py::object& self) { return partsOf(parts(self.cast<const Item&>()), self); },
        text);
    return *this;
  }

  /// Adds a member with a part of the item; None if the pointer from `part` is null.
  template <class Part>
  Class& addPart(const char* name, Part part, const char* text) {
    bound.def_property_readonly(
        name, [part](const py::object& self) { return partOf(part(self.cast<const Item&>()), self); }, text);
    return *this;
  }

  template <class Text>
  Class& shownAs(Text text) {
    bound.def("__repr__", [text](const Item& item) { return pythonText(text(item)); });
    return *this;
  }

  py::class_<Item, std::shared_ptr<Item>> bound;
};

// --- Evidence -----------------------------------------------------------------------------------

std::string shiftKey(int index) {
  const int residue = shiftPlace(static_cast<std::size_t>(index)).residue;
  return (residue < 0 ? "prev_" : residue > 0 ? "next_" : "") + atomName(index);
}

py::dict shiftsByName(const py::object& self) {
  const auto& evidence = self.cast<const Evidence&>();
  py::dict shifts;
  for (int index = 0; index <= kIndexCG; ++index)
    shifts[py::str(shiftKey(index))] = partOf(&evidence.shift(index), self);
  return shifts;
}

void addEvidence(const py::module_& module) {
  using Shift = const ShiftContribution&;
  Class<ShiftContribution>(module, "ShiftContribution",
                           "The contribution of one of the 19 shifts. All values except `nats` are in ppm.")
      .add(
          "observed", [](Shift shift) { return toPython(shift.observed); },
          "float | None: the shift of the file, ppm; of HA of glycine the mean of HA2 and HA3; None if "
          "missing.")
      .add(
          "corrected", [](Shift shift) { return toPython(shift.corrected); },
          "float | None: the shift after correction, ppm; None if it was not corrected.")
      .add(
          "reference", [](Shift shift) { return toPython(shift.reference); },
          "float | None: random-coil shift with its corrections, ppm; None for CG.")
      .add(
          "used", [](Shift shift) { return toPython(shift.secondary); },
          "float | None: the secondary shift within its limits, ppm; for CG the shift itself.")
      .add(
          "clipped", [](Shift shift) { return toPython(shift.clipped); },
          "bool: it was beyond the limit of its residue type, so the limit is used.")
      .add(
          "cis_mean", [](Shift shift) { return toPython(shift.cis.mean); },
          "float: mean of `used` around cis prolines, ppm.")
      .add(
          "cis_deviation", [](Shift shift) { return toPython(shift.cis.deviation); },
          "float: standard deviation of `used` in the model, ppm.")
      .add(
          "trans_mean", [](Shift shift) { return toPython(shift.trans.mean); },
          "float: mean of `used` around trans prolines, ppm.")
      .add(
          "trans_deviation", [](Shift shift) { return toPython(shift.trans.deviation); },
          "float: standard deviation of `used` in the model, ppm.")
      .add(
          "nats", [](Shift shift) { return shift.secondary ? toPython(shift.nats) : py::none(); },
          "float | None: its share of the log-odds (nats), above 0 for cis; None if missing.");

  using Neighbour = const NeighbourContribution&;
  Class<NeighbourContribution>(module, "NeighbourContribution",
                               "The contribution of the residue type of a neighbour.")
      .add(
          "name", [](Neighbour neighbour) { return pythonText(neighbour.name); }, "str: one-letter code.")
      .add(
          "cis_share", [](Neighbour neighbour) { return toPython(neighbour.cis); },
          "float: fraction of cis prolines with this neighbour, 0 to 1.")
      .add(
          "trans_share", [](Neighbour neighbour) { return toPython(neighbour.trans); },
          "float: fraction of trans prolines with this neighbour, 0 to 1.")
      .add(
          "nats", [](Neighbour neighbour) { return toPython(neighbour.nats); },
          "float | None: its share of the log-odds (nats); None if cis_share or trans_share is 0.");

  Class<NextShift>(module, "NextShift",
                   "A missing shift that could be measured, and the information that it would give.")
      .add(
          "shift", [](const NextShift& next) { return pythonText(shiftKey(next.index)); },
          "str: its name, as in `Evidence.shifts`.")
      .add(
          "bits", [](const NextShift& next) { return toPython(next.bits); },
          "float: expected gain of information about cis or trans, bits.")
      .add(
          "decides", [](const NextShift& next) { return toPython(next.decides); },
          "float | None: for an undecided proline, the probability (0 to 1) that this shift alone decides "
          "it.");

  Class<Evidence>(module, "Evidence",
                  "The contributions to a probability: the log-odds of p_cis_norm as a sum, in nats.")
      .add(
          "prior", [](const Evidence&) { return toPython(Evidence::prior()); },
          "float: log-odds of every proline before any evidence, the logarithm of 1/19 (nats).")
      .addPart(
          "prev", [](const Evidence& evidence) { return &evidence.before; },
          "NeighbourContribution: of the residue before.")
      .addPart(
          "next", [](const Evidence& evidence) { return &evidence.after; },
          "NeighbourContribution: of the residue after.")
      .add(
          "log_odds", [](const Evidence& evidence) { return toPython(evidence.logOdds()); },
          "float | None: the sum (nats), even if the factors are too small for p_cis.")
      .bound.def_property_readonly(
          "shifts", shiftsByName,
          "dict[str, ShiftContribution], 19 of them: N, HA, C, CA, CB, HN of the residue before with prev_ "
          "before the name, of the proline, and of the residue after with next_; and CG of the proline.");
}

// --- Structures ---------------------------------------------------------------------------------

void addStructures(const py::module_& module) {
  Class<ModelBond>(module, "Bond", "The peptide bond before a proline in one model of a structure.")
      .add(
          "model", [](const ModelBond& bond) { return pythonText(bond.model); },
          "str: number of the model in the file.")
      .add(
          "conformation", [](const ModelBond& bond) { return orNone(bond.conformation); },
          "str | None: letter of the alternate conformation.")
      .add(
          "omega", [](const ModelBond& bond) { return rounded(bond.omega, 2); },
          "float | None: omega, degrees, -180 to 180; None without its four atoms.")
      .add(
          "ca_distance", [](const ModelBond& bond) { return rounded(bond.caToCa, 3); },
          "float | None: CA - CA distance, angstrom, if omega is not known.")
      .add(
          "state", [](const ModelBond& bond) { return pythonText(toText(bond.state)); },
          "str: cis (|omega| up to 30 degrees), trans (from 150) or twisted.");

  Class<BondSite>(module, "Site", "A proline in one chain of one structure.")
      .add(
          "file", [](const BondSite& site) { return pythonText(site.file); }, "str: the structure.")
      .add(
          "chain", [](const BondSite& site) { return orNone(site.chain); }, "str | None: its chain.")
      .add(
          "resid", [](const BondSite& site) { return pythonText(site.number); },
          "str: residue number in the structure, with insertion code.")
      .add(
          "residue", [](const BondSite& site) { return pythonText(site.residue); },
          "str: residue name in the structure.")
      .add(
          "models", [](const BondSite& site) { return toPython(static_cast<int>(site.models)); },
          "int: models of the structure.")
      .addParts(
          "bonds", [](const BondSite& site) -> auto& { return site.bonds; },
          "list[Bond]: one for each model that has the bond, in its most occupied conformation.")
      .addParts(
          "alternatives", [](const BondSite& site) -> auto& { return site.others; },
          "list[Bond]: further conformations with another state.")
      .add(
          "reason", [](const BondSite& site) { return orNone(site.reason); },
          "str | None: why there is no bond.");

  Class<ChainMatch>(module, "Match", "A chain of a structure that is this protein.")
      .add(
          "file", [](const ChainMatch& match) { return pythonText(match.file); }, "str: the structure.")
      .add(
          "chain", [](const ChainMatch& match) { return orNone(match.chain); }, "str | None: its chain.")
      .add(
          "aligned", [](const ChainMatch& match) { return toPython(static_cast<int>(match.aligned)); },
          "int: pairs of residues.")
      .add(
          "identical", [](const ChainMatch& match) { return toPython(static_cast<int>(match.identical)); },
          "int: of these, of the same type.")
      .add(
          "residues", [](const ChainMatch& match) { return orNone(match.residues); },
          "str | None: its residues in the structure, as in \"1-40\", if the chain has more than these.")
      .add(
          "mismatches", [](const ChainMatch& match) { return toPython(match.mismatches); },
          "list[str]: residues of another type, as in \"K14 is ALA 20\".")
      .add(
          "missing", [](const ChainMatch& match) { return toPython(match.missing); },
          "list[str]: residues of the shifts without coordinates, as in \"1-5\".");

  Class<StructureChain>(module, "StructureChain", "A protein chain of a structure.")
      .add(
          "chain", [](const StructureChain& chain) { return orNone(chain.name); }, "str | None: its name.")
      .add(
          "residues",
          [](const StructureChain& chain) { return toPython(static_cast<int>(chain.residues.size())); },
          "int: residues with coordinates.")
      .add(
          "ca_only", [](const StructureChain& chain) { return toPython(chain.isTrace); },
          "bool: it has only CA atoms, and so no omega.");

  Class<ProteinStructure>(module, "Structure", "A structure from `read_structure`.")
      .add(
          "file", [](const ProteinStructure& structure) { return pythonText(structure.file); },
          "str: name that was given.")
      .add(
          "format", [](const ProteinStructure& structure) { return pythonText(structure.format); },
          "str: PDB or mmCIF.")
      .add(
          "models",
          [](const ProteinStructure& structure) { return toPython(static_cast<int>(structure.modelCount)); },
          "int: number of models.")
      .addParts(
          "chains", [](const ProteinStructure& structure) -> auto& { return structure.chains; },
          "list[StructureChain]: its protein chains.")
      .add(
          "notes", [](const ProteinStructure& structure) { return toPython(structure.notes); },
          "list[str]: what was not used, and why.");
}

// --- Prolines and proteins ----------------------------------------------------------------------

std::string shown(const ProlineResult& proline) {
  std::string text = "<Proline P" + proline.number + ": " + toText(proline.call);
  if (!proline.pCisNorm) return text + ", " + proline.reason + ">";
  std::array<char, 32> probability{};
  std::snprintf(probability.data(), probability.size(), "%.3f", static_cast<double>(*proline.pCisNorm));
  return text + ", p_cis_norm " + probability.data() + ">";
}

/// Returns a member of the finding in structures, None if no structure was given.
template <class ValueOf>
auto ofFinding(ValueOf valueOf) {
  return [valueOf](const ProlineResult& proline) -> py::object {
    if (!proline.structure) return py::none();
    return valueOf(*proline.structure);
  };
}

template <BondState state>
py::object modelsIn(const StructureFinding& finding) {
  return toPython(static_cast<int>(countBonds(finding, state)));
}

void addProlines(const py::module_& module) {
  using Proline = const ProlineResult&;
  using Finding = const StructureFinding&;
  Class<ProlineResult>(module, "Proline",
                       "One proline of the sequence, predicted or not. Values from structures are None if no "
                       "structure was given.")
      .add(
          "resid", [](Proline proline) { return pythonText(proline.number); },
          "str: residue number in the file, with insertion code.")
      .add(
          "position", [](Proline proline) { return toPython(proline.position); },
          "int: place in the sequence, from 1.")
      .add(
          "prev", [](Proline proline) { return orNone(proline.previous); },
          "str | None: one-letter code of the residue before; None for the first residue.")
      .add(
          "next", [](Proline proline) { return orNone(proline.next); },
          "str | None: one-letter code of the residue after; None for the last residue.")
      .add(
          "prev_resid", [](Proline proline) { return orNone(proline.previousNumber); },
          "str | None: number of the residue before.")
      .add(
          "next_resid", [](Proline proline) { return orNone(proline.nextNumber); },
          "str | None: number of the residue after.")
      .add(
          "cs_cnt_prev", [](Proline proline) { return toPython(proline.previousCount); },
          "int | None: number of N, HA, C, CA, CB, HN shifts of the residue before.")
      .add(
          "cs_cnt", [](Proline proline) { return toPython(proline.count); },
          "int | None: number of these shifts of the proline.")
      .add(
          "cs_cnt_next", [](Proline proline) { return toPython(proline.nextCount); },
          "int | None: number of these shifts of the residue after.")
      .add(
          "cg_shift", [](Proline proline) { return toPython(proline.cgShift); },
          "float | None: CG as observed, ppm.")
      .add(
          "p_cis", [](Proline proline) { return toPython(proline.pCis); },
          "float | None: probability of cis (0 to 1) if cis and trans were equally common.")
      .add(
          "p_cis_norm", [](Proline proline) { return toPython(proline.pCisNorm); },
          "float | None: probability of cis (0 to 1) if 1 proline in 20 is cis; the call depends on it.")
      .add(
          "p_cis_norm_as_referenced", [](Proline proline) { return toPython(proline.pCisNormAsReferenced); },
          "float | None: p_cis_norm without corrections, if shifts were corrected.")
      .add(
          "call", [](Proline proline) { return pythonText(toText(proline.call)); },
          "str: cis (p_cis_norm at least 0.5), trans (at most 0.05), undecided, or none.")
      .add(
          "call_as_referenced",
          [](Proline proline) {
            return proline.callAsReferenced ? py::object(pythonText(toText(*proline.callAsReferenced)))
                                            : py::object(py::none());
          },
          "str | None: the call without corrections, if shifts were corrected.")
      .add(
          "reason", [](Proline proline) { return orNone(proline.reason); },
          "str | None: why there is no prediction.")
      .add(
          "cis_flag", [](Proline proline) { return toPython(proline.cisFlag); },
          "bool | None: the flag of the file for this bond: True cis, False trans.")
      .addPart(
          "evidence", [](Proline proline) { return proline.evidence ? &*proline.evidence : nullptr; },
          "Evidence | None: the contributions to the probability; None without enough shifts.")
      .bound
      .def_property_readonly(
          "next_shifts",
          [](const py::object& self) {
            const auto& proline = self.cast<Proline>();
            return proline.evidence ? partsOf(proline.evidence->next, self) : py::list();
          },
          "list[NextShift]: missing shifts that could be measured, the most informative first.")
      .def_property_readonly(
          "sites",
          [](const py::object& self) {
            const auto& proline = self.cast<Proline>();
            return proline.structure ? partsOf(proline.structure->sites, self) : py::list();
          },
          "list[Site]: the proline in each chain of the structures.")
      .def("__repr__", [](Proline proline) { return pythonText(shown(proline)); })
      .def_property_readonly(
          "structure", ofFinding([](Finding finding) { return pythonText(toText(finding.call)); }),
          "str | None: state of the bond in the structures: cis, trans, twisted, mixed or none.")
      .def_property_readonly(
          "verdict", ofFinding([](Finding finding) { return pythonText(toText(finding.verdict)); }),
          "str | None: agree, disagree, undecided by shifts, mixed models, no prediction or not in the "
          "structure.")
      .def_property_readonly("models_cis", ofFinding(modelsIn<BondState::cis>),
                             "int | None: models with a cis bond, over all chains and structures.")
      .def_property_readonly("models_trans", ofFinding(modelsIn<BondState::trans>),
                             "int | None: models with a trans bond.")
      .def_property_readonly("models_twisted", ofFinding(modelsIn<BondState::twisted>),
                             "int | None: models with a twisted bond.")
      .def_property_readonly("omega",
                             ofFinding([](Finding finding) { return rounded(meanOmega(finding), 2); }),
                             "float | None: mean of |omega| over chains and models, degrees.")
      .def_property_readonly("ca_distance",
                             ofFinding([](Finding finding) { return rounded(meanCaToCa(finding), 3); }),
                             "float | None: mean CA - CA distance if omega is not known, angstrom.")
      .def_property_readonly("structure_sentence",
                             ofFinding([](Finding finding) { return pythonText(finding.sentence); }),
                             "str | None: description of the bond, if structures and shifts disagree.");
}

std::vector<std::string> joined(std::vector<std::string> notes, const std::vector<std::string>& more) {
  notes.insert(notes.end(), more.begin(), more.end());
  return notes;
}

void addProteins(const py::module_& module) {
  Class<ReferencingOffset>(module, "ReferencingOffset",
                           "The referencing offset of one atom type, estimated from its shifts.")
      .add(
          "atom", [](const ReferencingOffset& offset) { return pythonText(offset.atom); },
          "str: CA, CB, HA or C.")
      .add(
          "offset", [](const ReferencingOffset& offset) { return toPython(offset.offset); },
          "float | None: observed minus expected, ppm; None from fewer than ten residues.")
      .add(
          "error", [](const ReferencingOffset& offset) { return toPython(offset.error); },
          "float | None: its standard error, ppm.")
      .add(
          "residues", [](const ReferencingOffset& offset) { return toPython(offset.size); },
          "int: residues in the estimate.")
      .add(
          "correction_recommended",
          [](const ReferencingOffset& offset) { return toPython(callsForCorrection(offset)); },
          "bool: it is large (CA, CB 0.75, C 1, HA 0.25 ppm) and more than three times its error.")
      .add(
          "corrected_by", [](const ReferencingOffset& offset) { return toPython(offset.correctedBy); },
          "float | None: offset that was subtracted before the prediction, ppm; None if shifts were kept.");

  using Chain = const ProteinResult&;
  Class<ProteinResult>(module, "Protein", "One chain with one shift list, and all its prolines.")
      .add(
          "file", [](Chain chain) { return pythonText(chain.file); }, "str: name that was given.")
      .add(
          "chain", [](Chain chain) { return orNone(chain.chain); }, "str | None: name in the file.")
      .add(
          "list", [](Chain chain) { return orNone(chain.list); }, "str | None: name of the shift list.")
      .add(
          "length", [](Chain chain) { return toPython(chain.length); }, "int: residues in the sequence.")
      .add(
          "shifts", [](Chain chain) { return toPython(chain.shiftCount); },
          "int: shifts of the atoms that are used.")
      .addParts(
          "referencing", [](Chain chain) -> auto& { return chain.offsets; },
          "list[ReferencingOffset], 4 of them: CA, CB, HA and C.")
      .add(
          "correction", [](Chain chain) { return orNone(chain.correction); },
          "str | None: which shifts were corrected before predicting, and by how much.")
      .add(
          "deuteration",
          [](Chain chain) { return chain.deuteration > 0 ? toPython(chain.deuteration) : py::none(); },
          "float | None: share of deuterons (0 to 1) whose isotope shifts were corrected.")
      .addParts(
          "prolines", [](Chain chain) -> auto& { return chain.prolines; },
          "list[Proline]: every proline of the sequence, in its order.")
      .add(
          "warnings", [](Chain chain) { return toPython(warningsOf(chain)); },
          "list[str]: offsets that were not corrected, and flags of the file that differ from the calls.")
      .add(
          "notes", [](Chain chain) { return toPython(joined(chain.notes, chain.asides)); },
          "list[str]: what was renamed, left out or guessed while reading the shifts.")
      .addParts(
          "matches", [](Chain chain) -> auto& { return chain.matches; },
          "list[Match]: the chains of the structures that are this protein.")
      .add(
          "structure_notes", [](Chain chain) { return toPython(chain.structureNotes); },
          "list[str]: residues that differ in the structures, and residues without coordinates.")
      .shownAs([](Chain chain) {
        return "<Protein " + chain.file + (chain.chain.empty() ? "" : ", chain " + chain.chain) + ": " +
               std::to_string(chain.length) + " residues, " + std::to_string(chain.prolines.size()) +
               " prolines>";
      });
}

// --- Results ------------------------------------------------------------------------------------

py::list allProlines(const py::object& self) {
  const auto& results = self.cast<const Results&>();
  py::list prolines;
  for (const ProteinResult& protein : results.file().proteins)
    for (const ProlineResult& proline : protein.prolines) prolines.append(partOf(&proline, self));
  return prolines;
}

/// Returns the notes of all chains, with their names if there are several, then those of the structures.
std::vector<std::string> allNotes(const Results& results) {
  std::vector<std::string> notes;
  for (const ProteinResult& protein : results.file().proteins) {
    const std::string name = results.file().proteins.size() > 1 ? "chain " + protein.chain + ": " : "";
    for (const std::string& note : joined(joined(protein.notes, protein.asides), protein.structureNotes))
      notes.push_back(name + note);
  }
  for (const ProteinStructure& structure : results.report.structures)
    for (const std::string& note : structure.notes) notes.push_back(structure.file + ": " + note);
  return joined(notes, results.report.chainsWithoutShifts);
}

py::list rowsOf(const Results& results) {
  py::list rows;
  for (const ProteinResult& protein : results.file().proteins)
    for (const ProlineResult& proline : protein.prolines) {
      py::list row;
      for (const Value& value : csvRow(protein, proline))
        row.append(std::visit(
            [](const auto& held) -> py::object {
              if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::string>)
                return pythonText(held);
              else
                return toPython(held);
            },
            value));
      rows.append(row);
    }
  return rows;
}

std::string reportOf(const Results& results, const std::string& format) {
  std::ostringstream out;
  writeReport(format, results.report, {}, out);
  return out.str();
}

py::str report(const Results& results, const py::object& format) {
  if (!py::isinstance<py::str>(format))
    throw py::type_error("format must be a text: html, table, csv or json");
  const std::string name = format.cast<std::string>();
  std::string text;
  {
    const py::gil_scoped_release free;
    text = reportOf(results, name);
  }
  return pythonText(text);
}

std::string shown(const Results& results) {
  const auto count = [&](Call call) { return std::to_string(countCalls(results.report, call)); };
  return "<Results " + results.file().file + ": " + count(Call::cis) + " cis, " + count(Call::trans) +
         " trans, " + count(Call::undecided) + " undecided, " + count(Call::none) + " without a prediction>";
}

}  // namespace

void addResults(py::module_& module) {
  addEvidence(module);
  addStructures(module);
  addProlines(module);
  addProteins(module);
  Class<Results>(module, "Results",
                 "The results of one input: its chains with their prolines.\n\n"
                 "A notebook shows them as a report with pictures; print() writes the table.")
      .add(
          "file", [](const Results& results) { return pythonText(results.file().file); },
          "str: name of the input.")
      .addParts(
          "proteins", [](const Results& results) -> auto& { return results.file().proteins; },
          "list[Protein]: one for each chain and shift list, in the order of the file.")
      .addParts(
          "structures", [](const Results& results) -> auto& { return results.report.structures; },
          "list[Structure]: the structures that were compared.")
      .add(
          "chains_without_shifts",
          [](const Results& results) { return toPython(results.report.chainsWithoutShifts); },
          "list[str]: chains of the structures that match none of the proteins.")
      .add(
          "notes", [](const Results& results) { return toPython(allNotes(results)); },
          "list[str]: what was renamed, left out or guessed while reading shifts and structures.")
      .shownAs([](const Results& results) { return shown(results); })
      .bound.def_property_readonly("prolines", allProlines, "list[Proline]: the prolines of all proteins.")
      .def("report", report, py::arg("format") = "html",
           "report(format='html') -> str\n\nReturns a report as text: one HTML page with all it needs, or "
           "table, "
           "csv or json.")
      .def(
          "to_frame",
          [](const py::object& self) {
            return py::module_::import("zorvela._frames").attr("to_frame")(py::make_tuple(self));
          },
          "to_frame() -> pandas.DataFrame\n\nReturns a row for each proline, with the columns of the CSV "
          "report "
          "(shifts in ppm, omega in degrees).")
      .def("_rows", rowsOf, "The cells of the frame.")
      .def("_repr_html_",
           [](const py::object& self) {
             return py::module_::import("zorvela._frames").attr("notebook_html")(self);
           })
      .def("__str__", [](const Results& results) { return pythonText(reportOf(results, "table")); });
}

}  // namespace zorvela
