// The classes of the results. Their members have the names and the values of `run --format json`.
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "binding.h"
#include "report/fields.h"
#include "report/words.h"
#include "util/number.h"
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

/// Converts through the shortest text, so that 0.1 in single precision is 0.1, as in JSON.
py::object toPython(const Value& value, const py::handle& = {}) {
  return std::visit(
      [](const auto& held) -> py::object {
        using Held = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<Held, std::monostate>)
          return py::none();
        else if constexpr (std::is_same_v<Held, std::string>)
          return pythonText(held);
        else if constexpr (std::is_same_v<Held, float>)
          return py::float_(std::strtod(numberText(held).c_str(), nullptr));
        else
          return py::cast(held);
      },
      value);
}

template <class Number, std::enable_if_t<std::is_arithmetic_v<Number>, int> = 0>
py::object toPython(Number number, const py::handle&) {
  return py::cast(number);
}

py::object toPython(const std::vector<std::string>& texts, const py::handle& = {}) {
  py::list list;
  for (const std::string& text : texts) list.append(pythonText(text));
  return list;
}

/// Returns a Python object for a part of a result, which lives as long as any of them.
template <class Part>
py::object toPython(const Part* part, const py::handle& owner) {
  return py::cast(part, py::return_value_policy::reference_internal, owner);
}

template <class Part>
py::object toPython(const std::vector<Part>& parts, const py::handle& owner) {
  py::list list;
  for (const Part& part : parts) list.append(toPython(&part, owner));
  return list;
}

/// Returns the parts of something that may be missing.
template <class Whole, class Part>
const std::vector<Part>& partsOf(const std::optional<Whole>& whole, std::vector<Part> Whole::*parts) {
  static const Whole nothing{};
  return (whole ? *whole : nothing).*parts;
}

template <class Item>
auto valueOfField(const std::string& name) {
  for (const Field<Item>& field : fieldsOf(Item()))
    if (field.name == name) return field.valueOf;
  throw std::logic_error("there is no field " + name);
}

/// A Python class with members that cannot be set.
template <class Item>
class Class {
 public:
  Class(const py::module_& module, const char* name, const char* text) : bound(module, name, text) {
    bound.attr("__module__") = "zorvela";
  }

  /// Adds a member with the value of a C++ member or function.
  template <class ValueOf>
  Class& add(const char* name, ValueOf valueOf, const char* text) {
    const auto value = [valueOf](const py::object& self) {
      return toPython(std::invoke(valueOf, self.cast<const Item&>()), self);
    };
    bound.def_property_readonly(name, value, text);
    return *this;
  }

  /// Adds the JSON member of that name.
  Class& add(const char* name, const char* text) { return add(name, valueOfField<Item>(name), text); }

  /// Adds the JSON member of that name of a part; None without the part.
  template <class Part>
  Class& addOf(std::optional<Part> Item::*part, const char* name, const char* text) {
    const auto value = [part, valueOf = valueOfField<Part>(name)](const Item& item) {
      return item.*part ? valueOf(*(item.*part)) : Value();
    };
    return add(name, value, text);
  }

  /// Adds a text that is None if empty.
  Class& addOrNone(const char* name, std::string Item::*member, const char* text) {
    return add(
        name, [member](const Item& item) { return orNothing(item.*member); }, text);
  }

  template <class Text>
  Class& shownAs(Text text) {
    bound.def("__repr__", [text](const Item& item) { return pythonText(text(item)); });
    return *this;
  }

  py::class_<Item, std::shared_ptr<Item>> bound;
};

// --- Evidence -----------------------------------------------------------------------------------

py::dict shiftsByName(const py::object& self) {
  const auto& evidence = self.cast<const Evidence&>();
  py::dict shifts;
  for (int index = 0; index <= kIndexCG; ++index)
    shifts[py::str(shiftKey(index))] = toPython(&evidence.shift(index), self);
  return shifts;
}

void addEvidence(const py::module_& module) {
  Class<ShiftContribution>(module, "ShiftContribution",
                           "The contribution of one of the 19 shifts. All values except `nats` are in ppm.")
      .add("observed",
           "float | None: the shift of the file, ppm; of HA of glycine the mean of HA2 and HA3; None if "
           "missing.")
      .add("corrected", "float | None: the shift after correction, ppm; None if it was not corrected.")
      .add("reference", "float | None: random-coil shift with its corrections, ppm; None for CG.")
      .add("used", "float | None: the secondary shift within its limits, ppm; for CG the shift itself.")
      .add("clipped", "bool: it was beyond the limit of its residue type, so the limit is used.")
      .add("cis_mean", "float: mean of `used` around cis prolines, ppm.")
      .add("cis_deviation", "float: standard deviation of `used` in the model, ppm.")
      .add("trans_mean", "float: mean of `used` around trans prolines, ppm.")
      .add("trans_deviation", "float: standard deviation of `used` in the model, ppm.")
      .add("nats", "float | None: its share of the log-odds (nats), above 0 for cis; None if missing.");

  Class<NeighbourContribution>(module, "NeighbourContribution",
                               "The contribution of the residue type of a neighbour.")
      .add("name", "str: one-letter code.")
      .add("cis_share", "float: fraction of cis prolines with this neighbour, 0 to 1.")
      .add("trans_share", "float: fraction of trans prolines with this neighbour, 0 to 1.")
      .add("nats", "float | None: its share of the log-odds (nats); None if cis_share or trans_share is 0.");

  Class<NextShift>(module, "NextShift",
                   "A missing shift that could be measured, and the information that it would give.")
      .add("shift", "str: its name, as in `Evidence.shifts`.")
      .add("bits", "float: expected gain of information about cis or trans, bits.")
      .add("decides",
           "float | None: for an undecided proline, the probability (0 to 1) that this shift alone decides "
           "it.");

  Class<Evidence>(module, "Evidence",
                  "The contributions to a probability: the log-odds of p_cis_norm as a sum, in nats.")
      .add(
          "prior", [](const Evidence&) { return Evidence::prior(); },
          "float: log-odds of every proline before any evidence, the logarithm of 1/19 (nats).")
      .add(
          "prev", [](const Evidence& evidence) { return &evidence.before; },
          "NeighbourContribution: of the residue before.")
      .add(
          "next", [](const Evidence& evidence) { return &evidence.after; },
          "NeighbourContribution: of the residue after.")
      .add(
          "log_odds", [](const Evidence& evidence) { return orNothing(evidence.logOdds()); },
          "float | None: the sum (nats), even if the factors are too small for p_cis.")
      .bound.def_property_readonly(
          "shifts", shiftsByName,
          "dict[str, ShiftContribution], 19 of them: N, HA, C, CA, CB, HN of the residue before with prev_ "
          "before the name, of the proline, and of the residue after with next_; and CG of the proline.");
}

// --- Structures ---------------------------------------------------------------------------------

void addStructures(const py::module_& module) {
  Class<ModelBond>(module, "Bond", "The peptide bond before a proline in one model of a structure.")
      .add("model", "str: number of the model in the file.")
      .add("conformation", "str | None: letter of the alternate conformation.")
      .add("omega", "float | None: omega, degrees, -180 to 180; None without its four atoms.")
      .add("ca_distance", "float | None: CA - CA distance, angstrom, if omega is not known.")
      .add("state", "str: cis (|omega| up to 30 degrees), trans (from 150) or twisted.");

  Class<BondSite>(module, "Site", "A proline in one chain of one structure.")
      .add("file", &BondSite::file, "str: the structure.")
      .addOrNone("chain", &BondSite::chain, "str | None: its chain.")
      .add("resid", &BondSite::number, "str: residue number in the structure, with insertion code.")
      .add("residue", &BondSite::residue, "str: residue name in the structure.")
      .add("models", &BondSite::models, "int: models of the structure.")
      .add("bonds", &BondSite::bonds,
           "list[Bond]: one for each model that has the bond, in its most occupied conformation.")
      .add("alternatives", &BondSite::others, "list[Bond]: further conformations with another state.")
      .addOrNone("reason", &BondSite::reason, "str | None: why there is no bond.");

  Class<ChainMatch>(module, "Match", "A chain of a structure that is this protein.")
      .add("file", &ChainMatch::file, "str: the structure.")
      .addOrNone("chain", &ChainMatch::chain, "str | None: its chain.")
      .add("aligned", &ChainMatch::aligned, "int: pairs of residues.")
      .add("identical", &ChainMatch::identical, "int: of these, of the same type.")
      .addOrNone(
          "residues", &ChainMatch::residues,
          "str | None: its residues in the structure, as in \"1-40\", if the chain has more than these.")
      .add("mismatches", &ChainMatch::mismatches,
           "list[str]: residues of another type, as in \"K14 is ALA 20\".")
      .add("missing", &ChainMatch::missing,
           "list[str]: residues of the shifts without coordinates, as in \"1-5\".");

  Class<StructureChain>(module, "StructureChain", "A protein chain of a structure.")
      .addOrNone("chain", &StructureChain::name, "str | None: its name.")
      .add(
          "residues", [](const StructureChain& chain) { return chain.residues.size(); },
          "int: residues with coordinates.")
      .add("ca_only", &StructureChain::isTrace, "bool: it has only CA atoms, and so no omega.");

  Class<ProteinStructure>(module, "Structure", "A structure from `read_structure`.")
      .add("file", &ProteinStructure::file, "str: name that was given.")
      .add("format", &ProteinStructure::format, "str: PDB or mmCIF.")
      .add("models", &ProteinStructure::modelCount, "int: number of models.")
      .add("chains", &ProteinStructure::chains, "list[StructureChain]: its protein chains.")
      .add("notes", &ProteinStructure::notes, "list[str]: what was not used, and why.");
}

// --- Prolines and proteins ----------------------------------------------------------------------

void addProlines(const py::module_& module) {
  const auto structure = &ProlineResult::structure;
  Class<ProlineResult>(module, "Proline",
                       "One proline of the sequence, predicted or not. Values from structures are None if no "
                       "structure was given.")
      .add("resid", "str: residue number in the file, with insertion code.")
      .add("position", "int: place in the sequence, from 1.")
      .add("prev", "str | None: one-letter code of the residue before; None for the first residue.")
      .add("next", "str | None: one-letter code of the residue after; None for the last residue.")
      .add("prev_resid", "str | None: number of the residue before.")
      .add("next_resid", "str | None: number of the residue after.")
      .add("cs_cnt_prev", "int | None: number of N, HA, C, CA, CB, HN shifts of the residue before.")
      .add("cs_cnt", "int | None: number of these shifts of the proline.")
      .add("cs_cnt_next", "int | None: number of these shifts of the residue after.")
      .add("cg_shift", "float | None: CG as observed, ppm.")
      .add("p_cis", "float | None: probability of cis (0 to 1) if cis and trans were equally common.")
      .add("p_cis_norm",
           "float | None: probability of cis (0 to 1) if 1 proline in 20 is cis; the call depends on it.")
      .add("p_cis_norm_as_referenced",
           "float | None: p_cis_norm without corrections, if shifts were corrected.")
      .add("call", "str: cis (p_cis_norm at least 0.5), trans (at most 0.05), undecided, or none.")
      .add("call_as_referenced", "str | None: the call without corrections, if shifts were corrected.")
      .add("reason", "str | None: why there is no prediction.")
      .add("cis_flag", "bool | None: the flag of the file for this bond: True cis, False trans.")
      .add(
          "evidence",
          [](const ProlineResult& proline) { return proline.evidence ? &*proline.evidence : nullptr; },
          "Evidence | None: the contributions to the probability; None without enough shifts.")
      .add(
          "next_shifts",
          [](const ProlineResult& proline) -> auto& { return partsOf(proline.evidence, &Evidence::next); },
          "list[NextShift]: missing shifts that could be measured, the most informative first.")
      .add(
          "sites", [](const ProlineResult& proline) -> auto& {
            return partsOf(proline.structure, &StructureFinding::sites);
          },
          "list[Site]: the proline in each chain of the structures.")
      .addOf(structure, "structure",
             "str | None: state of the bond in the structures: cis, trans, twisted, mixed or none.")
      .addOf(structure, "verdict",
             "str | None: agree, disagree, undecided by shifts, mixed models, no prediction or not in "
             "the structure.")
      .addOf(structure, "models_cis", "int | None: models with a cis bond, over all chains and structures.")
      .addOf(structure, "models_trans", "int | None: models with a trans bond.")
      .addOf(structure, "models_twisted", "int | None: models with a twisted bond.")
      .addOf(structure, "omega", "float | None: mean of |omega| over chains and models, degrees.")
      .addOf(structure, "ca_distance", "float | None: mean CA - CA distance if omega is not known, angstrom.")
      .addOf(structure, "structure_sentence",
             "str | None: description of the bond, if structures and shifts disagree.")
      .shownAs([](const ProlineResult& proline) {
        return "<Proline P" + proline.number + ": " + toText(proline.call) + ", " +
               (proline.pCisNorm ? "p_cis_norm " + fixedText(static_cast<double>(*proline.pCisNorm), 3)
                                 : proline.reason) +
               ">";
      });
}

std::vector<std::string> joined(std::vector<std::string> notes, const std::vector<std::string>& more) {
  notes.insert(notes.end(), more.begin(), more.end());
  return notes;
}

void addProteins(const py::module_& module) {
  Class<ReferencingOffset>(module, "ReferencingOffset",
                           "The referencing offset of one atom type, estimated from its shifts.")
      .add("atom", "str: CA, CB, HA or C.")
      .add("offset", "float | None: observed minus expected, ppm; None from fewer than ten residues.")
      .add("error", "float | None: its standard error, ppm.")
      .add("residues", "int: residues in the estimate.")
      .add("correction_recommended",
           "bool: it is large (CA, CB 0.75, C 1, HA 0.25 ppm) and more than three times its error.")
      .add("corrected_by",
           "float | None: offset that was subtracted before the prediction, ppm; None if shifts were kept.");

  Class<ProteinResult>(module, "Protein", "One chain with one shift list, and all its prolines.")
      .add("file", "str: name that was given.")
      .add("chain", "str | None: name in the file.")
      .add("list", "str | None: name of the shift list.")
      .add("length", "int: residues in the sequence.")
      .add("shifts", "int: shifts of the atoms that are used.")
      .add("referencing", &ProteinResult::offsets, "list[ReferencingOffset], 4 of them: CA, CB, HA and C.")
      .addOrNone("correction", &ProteinResult::correction,
                 "str | None: which shifts were corrected before predicting, and by how much.")
      .add("deuteration", "float | None: share of deuterons (0 to 1) whose isotope shifts were corrected.")
      .add("prolines", &ProteinResult::prolines,
           "list[Proline]: every proline of the sequence, in its order.")
      .add("warnings", warningsOf,
           "list[str]: offsets that were not corrected, and flags of the file that differ from the calls.")
      .add(
          "notes", [](const ProteinResult& chain) { return joined(chain.notes, chain.asides); },
          "list[str]: what was renamed, left out or guessed while reading the shifts.")
      .add("matches", &ProteinResult::matches,
           "list[Match]: the chains of the structures that are this protein.")
      .add("structure_notes", &ProteinResult::structureNotes,
           "list[str]: residues that differ in the structures, and residues without coordinates.")
      .shownAs([](const ProteinResult& chain) {
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
    for (const ProlineResult& proline : protein.prolines) prolines.append(toPython(&proline, self));
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
      for (const Value& value : csvRow(protein, proline)) row.append(toPython(value));
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
          "file", [](const Results& results) { return Value(results.file().file); },
          "str: name of the input.")
      .add(
          "proteins", [](const Results& results) -> auto& { return results.file().proteins; },
          "list[Protein]: one for each chain and shift list, in the order of the file.")
      .add(
          "structures", [](const Results& results) -> auto& { return results.report.structures; },
          "list[Structure]: the structures that were compared.")
      .add(
          "chains_without_shifts",
          [](const Results& results) -> auto& { return results.report.chainsWithoutShifts; },
          "list[str]: chains of the structures that match none of the proteins.")
      .add("notes", allNotes,
           "list[str]: what was renamed, left out or guessed while reading shifts and structures.")
      .shownAs([](const Results& results) {
        const auto count = [&](Call call) { return std::to_string(countCalls(results.report, call)); };
        return "<Results " + results.file().file + ": " + count(Call::cis) + " cis, " + count(Call::trans) +
               " trans, " + count(Call::undecided) + " undecided, " + count(Call::none) +
               " without a prediction>";
      })
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
