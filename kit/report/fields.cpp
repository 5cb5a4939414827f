// The fields, in their order.
#include "report/fields.h"

#include <cmath>
#include <cstdlib>

#include "report/words.h"
#include "util/number.h"

namespace zorvela {

namespace {

Value offsetValue(const ProteinResult& protein, const char* atom) {
  const ReferencingOffset* offset = offsetOf(protein, atom);
  return offset == nullptr ? Value() : orNothing(offset->offset);
}

Value correctionValue(const ProteinResult& protein, const char* atom) {
  const ReferencingOffset* offset = offsetOf(protein, atom);
  return offset == nullptr ? Value() : orNothing(offset->correctedBy);
}

Value atomsToCorrect(const ProteinResult& protein) {
  std::string atoms;
  for (const std::string& atom : kOffsetAtoms) {
    const ReferencingOffset* offset = offsetOf(protein, atom);
    if (offset != nullptr && callsForCorrection(*offset)) atoms += (atoms.empty() ? "" : " ") + atom;
  }
  return orNothing(atoms);
}

/// Joins a value of all sites: "A;B".
Value joined(const StructureFinding& finding, std::string BondSite::*value) {
  std::string text;
  for (std::size_t i = 0; i < finding.sites.size(); ++i) text += (i > 0 ? ";" : "") + finding.sites[i].*value;
  return orNothing(text);
}

Value callAsReferenced(const ProlineResult& proline) {
  return proline.callAsReferenced ? toText(*proline.callAsReferenced) : Value();
}

template <BondState state>
Value modelsIn(const StructureFinding& finding) {
  return static_cast<int>(countBonds(finding, state));
}

}  // namespace

Value orNothing(const std::string& text) {
  return text.empty() ? Value() : text;
}

Value orNothing(float number) {
  return std::isfinite(number) ? number : Value();
}

Value orNothing(double number) {
  return std::isfinite(number) ? number : Value();
}

Value rounded(const std::optional<double>& value, int decimals) {
  return value ? std::strtod(fixedText(*value, decimals).c_str(), nullptr) : Value();
}

const std::vector<Field<ProteinResult>>& proteinFields() {
  using Chain = const ProteinResult&;
  static const std::vector<Field<ProteinResult>> fields = {
      {"file", In::csvAndJson, [](Chain chain) -> Value { return chain.file; }},
      {"chain", In::csvAndJson, [](Chain chain) { return orNothing(chain.chain); }},
      {"list", In::csvAndJson, [](Chain chain) { return orNothing(chain.list); }},
      {"length", In::json, [](Chain chain) -> Value { return chain.length; }},
      {"shifts", In::json, [](Chain chain) -> Value { return chain.shiftCount; }},
      {"deuteration", In::jsonIfKnown,
       [](Chain chain) { return chain.deuteration == 0 ? Value() : chain.deuteration; }}};
  return fields;
}

const std::vector<Field<ProlineResult>>& prolineFields() {
  using Proline = const ProlineResult&;
  static const std::vector<Field<ProlineResult>> fields = {
      {"resid", In::csvAndJson, [](Proline proline) -> Value { return proline.number; }},
      {"position", In::csvAndJson, [](Proline proline) -> Value { return proline.position; }},
      {"prev", In::csvAndJson, [](Proline proline) { return orNothing(proline.previous); }},
      {"next", In::csvAndJson, [](Proline proline) { return orNothing(proline.next); }},
      {"prev_resid", In::json, [](Proline proline) { return orNothing(proline.previousNumber); }},
      {"next_resid", In::json, [](Proline proline) { return orNothing(proline.nextNumber); }},
      {"cs_cnt_prev", In::csvAndJson, [](Proline proline) { return orNothing(proline.previousCount); }},
      {"cs_cnt", In::csvAndJson, [](Proline proline) { return orNothing(proline.count); }},
      {"cs_cnt_next", In::csvAndJson, [](Proline proline) { return orNothing(proline.nextCount); }},
      {"cg_shift", In::csvAndJson, [](Proline proline) { return orNothing(proline.cgShift); }},
      {"p_cis", In::csvAndJson, [](Proline proline) { return orNothing(proline.pCis); }},
      {"p_cis_norm", In::csvAndJson, [](Proline proline) { return orNothing(proline.pCisNorm); }},
      {"call", In::csvAndJson, [](Proline proline) -> Value { return toText(proline.call); }},
      {"reason", In::csvAndJson, [](Proline proline) { return orNothing(proline.reason); }},
      {"cis_flag", In::json, [](Proline proline) { return orNothing(proline.cisFlag); }},
      {"p_cis_norm_as_referenced", In::jsonIfKnown,
       [](Proline proline) { return orNothing(proline.pCisNormAsReferenced); }},
      {"call_as_referenced", In::jsonIfKnown, callAsReferenced}};
  return fields;
}

const std::vector<Field<ProteinResult>>& offsetColumns() {
  using Chain = const ProteinResult&;
  static const std::vector<Field<ProteinResult>> fields = {
      {"offset_ca", In::csv, [](Chain chain) { return offsetValue(chain, "CA"); }},
      {"offset_cb", In::csv, [](Chain chain) { return offsetValue(chain, "CB"); }},
      {"offset_ha", In::csv, [](Chain chain) { return offsetValue(chain, "HA"); }},
      {"offset_c", In::csv, [](Chain chain) { return offsetValue(chain, "C"); }},
      {"to_correct", In::csv, [](Chain chain) { return atomsToCorrect(chain); }},
      {"corrected_ca", In::csv, [](Chain chain) { return correctionValue(chain, "CA"); }},
      {"corrected_cb", In::csv, [](Chain chain) { return correctionValue(chain, "CB"); }},
      {"corrected_ha", In::csv, [](Chain chain) { return correctionValue(chain, "HA"); }},
      {"corrected_c", In::csv, [](Chain chain) { return correctionValue(chain, "C"); }}};
  return fields;
}

const std::vector<Field<ProlineResult>>& evidenceColumns() {
  using Proline = const ProlineResult&;
  static const std::vector<Field<ProlineResult>> fields = {
      {"strongest", In::csv, [](Proline proline) { return orNothing(strongestOf(proline)); }},
      {"next_shift", In::csv, [](Proline proline) { return orNothing(nextShiftOf(proline)); }},
      {"cis_flag", In::csv, [](Proline proline) { return orNothing(proline.cisFlag); }}};
  return fields;
}

const std::vector<Field<ProlineResult>>& asReferencedColumns() {
  using Proline = const ProlineResult&;
  static const std::vector<Field<ProlineResult>> fields = {
      {"p_cis_norm_as_referenced", In::csv,
       [](Proline proline) { return orNothing(proline.pCisNormAsReferenced); }},
      {"call_as_referenced", In::csv, callAsReferenced}};
  return fields;
}

const std::vector<Field<StructureFinding>>& structureFields() {
  using Finding = const StructureFinding&;
  static const std::vector<Field<StructureFinding>> fields = {
      {"structure", In::csvAndJson, [](Finding finding) -> Value { return toText(finding.call); }},
      {"verdict", In::csvAndJson, [](Finding finding) -> Value { return toText(finding.verdict); }},
      {"models_cis", In::csvAndJson, modelsIn<BondState::cis>},
      {"models_trans", In::csvAndJson, modelsIn<BondState::trans>},
      {"models_twisted", In::csvAndJson, modelsIn<BondState::twisted>},
      {"omega", In::csvAndJson, [](Finding finding) { return rounded(meanOmega(finding), 2); }},
      {"ca_distance", In::csvAndJson, [](Finding finding) { return rounded(meanCaToCa(finding), 3); }},
      {"structure_file", In::csv, [](Finding finding) { return joined(finding, &BondSite::file); }},
      {"structure_chain", In::csv, [](Finding finding) { return joined(finding, &BondSite::chain); }},
      {"structure_resid", In::csv, [](Finding finding) { return joined(finding, &BondSite::number); }},
      {"structure_residue", In::csv, [](Finding finding) { return joined(finding, &BondSite::residue); }},
      {"structure_sentence", In::csvAndJson, [](Finding finding) -> Value { return finding.sentence; }}};
  return fields;
}

const std::vector<Field<ShiftContribution>>& shiftFields() {
  using Contribution = const ShiftContribution&;
  static const std::vector<Field<ShiftContribution>> fields = {
      {"observed", In::json, [](Contribution shift) { return orNothing(shift.observed); }},
      {"corrected", In::jsonIfKnown, [](Contribution shift) { return orNothing(shift.corrected); }},
      {"reference", In::json, [](Contribution shift) { return orNothing(shift.reference); }},
      {"used", In::json, [](Contribution shift) { return orNothing(shift.secondary); }},
      {"clipped", In::json, [](Contribution shift) -> Value { return shift.clipped; }},
      {"cis_mean", In::json, [](Contribution shift) -> Value { return shift.cis.mean; }},
      {"cis_deviation", In::json, [](Contribution shift) -> Value { return shift.cis.deviation; }},
      {"trans_mean", In::json, [](Contribution shift) -> Value { return shift.trans.mean; }},
      {"trans_deviation", In::json, [](Contribution shift) -> Value { return shift.trans.deviation; }},
      {"nats", In::json,
       [](Contribution shift) { return shift.secondary ? orNothing(shift.nats) : Value(); }}};
  return fields;
}

const std::vector<Field<NextShift>>& nextFields() {
  using Next = const NextShift&;
  static const std::vector<Field<NextShift>> fields = {
      {"shift", In::json, [](Next next) -> Value { return shiftKey(next.index); }},
      {"bits", In::json, [](Next next) { return orNothing(next.bits); }},
      {"decides", In::json, [](Next next) { return orNothing(next.decides); }}};
  return fields;
}

const std::vector<Field<ReferencingOffset>>& offsetFields() {
  using Offset = const ReferencingOffset&;
  static const std::vector<Field<ReferencingOffset>> fields = {
      {"atom", In::json, [](Offset offset) -> Value { return offset.atom; }},
      {"offset", In::json, [](Offset offset) { return orNothing(offset.offset); }},
      {"error", In::json, [](Offset offset) { return orNothing(offset.error); }},
      {"residues", In::json, [](Offset offset) -> Value { return offset.size; }},
      {"correction_recommended", In::json, [](Offset offset) -> Value { return callsForCorrection(offset); }},
      {"corrected_by", In::json, [](Offset offset) { return orNothing(offset.correctedBy); }}};
  return fields;
}

std::vector<std::string> csvColumns(bool withStructures) {
  std::vector<std::string> names;
  const auto addNames = [&](const auto& fields) {
    for (const auto& field : fields)
      if (field.isInCsv()) names.emplace_back(field.name);
  };
  addNames(proteinFields());
  addNames(prolineFields());
  addNames(offsetColumns());
  addNames(evidenceColumns());
  if (withStructures) addNames(structureFields());
  addNames(asReferencedColumns());
  return names;
}

std::vector<Value> csvRow(const ProteinResult& protein, const ProlineResult& proline) {
  std::vector<Value> row;
  const auto addValues = [&](const auto& fields, const auto& item) {
    for (const auto& field : fields)
      if (field.isInCsv()) row.push_back(field.valueOf(item));
  };
  addValues(proteinFields(), protein);
  addValues(prolineFields(), proline);
  addValues(offsetColumns(), protein);
  addValues(evidenceColumns(), proline);
  if (proline.structure) addValues(structureFields(), *proline.structure);
  addValues(asReferencedColumns(), proline);
  return row;
}

const ReferencingOffset* offsetOf(const ProteinResult& protein, const std::string& atom) {
  for (const ReferencingOffset& offset : protein.offsets)
    if (offset.atom == atom) return &offset;
  return nullptr;
}

}  // namespace zorvela
