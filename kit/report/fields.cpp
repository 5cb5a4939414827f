#include "report/fields.h"

#include <cmath>
#include <cstdlib>

#include "report/words.h"
#include "util/number.h"

namespace zorvela {

namespace {

template <auto member, class Item>
Value valueOf(const Item& item) {
  return orNothing(item.*member);
}

template <auto member, class Item>
Value textOf(const Item& item) {
  return toText(item.*member);
}

/// Joins a value of all sites: "A;B".
template <std::string BondSite::*member>
Value joined(const StructureFinding& finding) {
  std::string text;
  for (std::size_t i = 0; i < finding.sites.size(); ++i)
    text += (i > 0 ? ";" : "") + finding.sites[i].*member;
  return orNothing(text);
}

template <BondState state>
Value modelsIn(const StructureFinding& finding) {
  return static_cast<int>(countBonds(finding, state));
}

/// A number with so many decimals at most.
Value rounded(const std::optional<double>& value, int decimals) {
  return value ? std::strtod(fixedText(*value, decimals).c_str(), nullptr) : Value();
}

}  // namespace

Value orNothing(Value value) {
  if (const auto* text = std::get_if<std::string>(&value); text != nullptr && text->empty()) return {};
  if (const auto* number = std::get_if<float>(&value); number != nullptr && !std::isfinite(*number))
    return {};
  if (const auto* number = std::get_if<double>(&value); number != nullptr && !std::isfinite(*number))
    return {};
  return value;
}

const std::vector<Field<ProteinResult>>& fieldsOf(const ProteinResult&) {
  using Chain = ProteinResult;
  static const std::vector<Field<Chain>> fields = {
      {"file", In::csvAndJson, [](const Chain& chain) -> Value { return chain.file; }},
      {"chain", In::csvAndJson, valueOf<&Chain::chain>},
      {"list", In::csvAndJson, valueOf<&Chain::list>},
      {"length", In::json, valueOf<&Chain::length>},
      {"shifts", In::json, valueOf<&Chain::shiftCount>},
      {"deuteration", In::jsonIfKnown,
       [](const Chain& chain) { return chain.deuteration == 0 ? Value() : chain.deuteration; }}};
  return fields;
}

const std::vector<Field<ProlineResult>>& fieldsOf(const ProlineResult&) {
  using Proline = ProlineResult;
  static const std::vector<Field<Proline>> fields = {
      {"resid", In::csvAndJson, valueOf<&Proline::number>},
      {"position", In::csvAndJson, valueOf<&Proline::position>},
      {"prev", In::csvAndJson, valueOf<&Proline::previous>},
      {"next", In::csvAndJson, valueOf<&Proline::next>},
      {"prev_resid", In::json, valueOf<&Proline::previousNumber>},
      {"next_resid", In::json, valueOf<&Proline::nextNumber>},
      {"cs_cnt_prev", In::csvAndJson, valueOf<&Proline::previousCount>},
      {"cs_cnt", In::csvAndJson, valueOf<&Proline::count>},
      {"cs_cnt_next", In::csvAndJson, valueOf<&Proline::nextCount>},
      {"cg_shift", In::csvAndJson, valueOf<&Proline::cgShift>},
      {"p_cis", In::csvAndJson, valueOf<&Proline::pCis>},
      {"p_cis_norm", In::csvAndJson, valueOf<&Proline::pCisNorm>},
      {"call", In::csvAndJson, textOf<&Proline::call>},
      {"reason", In::csvAndJson, valueOf<&Proline::reason>},
      {"cis_flag", In::json, valueOf<&Proline::cisFlag>},
      {"p_cis_norm_as_referenced", In::jsonIfKnown, valueOf<&Proline::pCisNormAsReferenced>},
      {"call_as_referenced", In::jsonIfKnown, [](const Proline& proline) {
         return proline.callAsReferenced ? toText(*proline.callAsReferenced) : Value();
       }}};
  return fields;
}

const std::vector<Field<StructureFinding>>& fieldsOf(const StructureFinding&) {
  using Finding = StructureFinding;
  static const std::vector<Field<Finding>> fields = {
      {"structure", In::csvAndJson, textOf<&Finding::call>},
      {"verdict", In::csvAndJson, textOf<&Finding::verdict>},
      {"models_cis", In::csvAndJson, modelsIn<BondState::cis>},
      {"models_trans", In::csvAndJson, modelsIn<BondState::trans>},
      {"models_twisted", In::csvAndJson, modelsIn<BondState::twisted>},
      {"omega", In::csvAndJson, [](const Finding& finding) { return rounded(meanOmega(finding), 2); }},
      {"ca_distance", In::csvAndJson, [](const Finding& finding) { return rounded(meanCaToCa(finding), 3); }},
      {"structure_file", In::csv, joined<&BondSite::file>},
      {"structure_chain", In::csv, joined<&BondSite::chain>},
      {"structure_resid", In::csv, joined<&BondSite::number>},
      {"structure_residue", In::csv, joined<&BondSite::residue>},
      {"structure_sentence", In::csvAndJson, valueOf<&Finding::sentence>}};
  return fields;
}

const std::vector<Field<ShiftContribution>>& fieldsOf(const ShiftContribution&) {
  using Contribution = ShiftContribution;
  static const std::vector<Field<Contribution>> fields = {
      {"observed", In::json, valueOf<&Contribution::observed>},
      {"corrected", In::jsonIfKnown, valueOf<&Contribution::corrected>},
      {"reference", In::json, valueOf<&Contribution::reference>},
      {"used", In::json, valueOf<&Contribution::secondary>},
      {"clipped", In::json, valueOf<&Contribution::clipped>},
      {"cis_mean", In::json, [](const Contribution& shift) { return orNothing(shift.cis.mean); }},
      {"cis_deviation", In::json, [](const Contribution& shift) { return orNothing(shift.cis.deviation); }},
      {"trans_mean", In::json, [](const Contribution& shift) { return orNothing(shift.trans.mean); }},
      {"trans_deviation", In::json,
       [](const Contribution& shift) { return orNothing(shift.trans.deviation); }},
      {"nats", In::json,
       [](const Contribution& shift) { return shift.secondary ? orNothing(shift.nats) : Value(); }}};
  return fields;
}

const std::vector<Field<NeighbourContribution>>& fieldsOf(const NeighbourContribution&) {
  using Neighbour = NeighbourContribution;
  static const std::vector<Field<Neighbour>> fields = {{"name", In::json, valueOf<&Neighbour::name>},
                                                       {"cis_share", In::json, valueOf<&Neighbour::cis>},
                                                       {"trans_share", In::json, valueOf<&Neighbour::trans>},
                                                       {"nats", In::json, valueOf<&Neighbour::nats>}};
  return fields;
}

const std::vector<Field<NextShift>>& fieldsOf(const NextShift&) {
  static const std::vector<Field<NextShift>> fields = {
      {"shift", In::json, [](const NextShift& next) -> Value { return shiftKey(next.index); }},
      {"bits", In::json, valueOf<&NextShift::bits>},
      {"decides", In::json, valueOf<&NextShift::decides>}};
  return fields;
}

const std::vector<Field<ModelBond>>& fieldsOf(const ModelBond&) {
  static const std::vector<Field<ModelBond>> fields = {
      {"model", In::json, [](const ModelBond& bond) -> Value { return bond.model; }},
      {"conformation", In::json, valueOf<&ModelBond::conformation>},
      {"omega", In::json, [](const ModelBond& bond) { return rounded(bond.omega, 2); }},
      {"ca_distance", In::json, [](const ModelBond& bond) { return rounded(bond.caToCa, 3); }},
      {"state", In::json, textOf<&ModelBond::state>}};
  return fields;
}

const std::vector<Field<ReferencingOffset>>& fieldsOf(const ReferencingOffset&) {
  using Offset = ReferencingOffset;
  static const std::vector<Field<Offset>> fields = {
      {"atom", In::json, valueOf<&Offset::atom>},
      {"offset", In::json, valueOf<&Offset::offset>},
      {"error", In::json, valueOf<&Offset::error>},
      {"residues", In::json, valueOf<&Offset::size>},
      {"correction_recommended", In::json,
       [](const Offset& offset) -> Value { return callsForCorrection(offset); }},
      {"corrected_by", In::json, valueOf<&Offset::correctedBy>}};
  return fields;
}

}  // namespace zorvela
