// A comparison as JSON; compare.schema.json describes it.
#include <cmath>
#include <cstdlib>
#include <ostream>
#include <utility>

#include <nlohmann/json.hpp>

#include "report/compare_fields.h"
#include "util/number.h"
#include "zorvela/version.h"

namespace zorvela {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kFormatVersion = 1;
constexpr int kOmegaDecimals = 2;
constexpr int kDistanceDecimals = 3;

Json orNull(const std::string& text) {
  if (text.empty()) return nullptr;
  return text;
}

/// Through the shortest text, so that 0.1 in single precision is written 0.1.
Json orNull(const std::optional<float>& value) {
  if (!value) return nullptr;
  return std::strtod(numberText(*value).c_str(), nullptr);
}

Json rounded(const std::optional<double>& value, int decimals) {
  if (!value) return nullptr;
  return std::strtod(fixedText(*value, decimals).c_str(), nullptr);
}

Json toJson(const std::vector<ModelBond>& bonds) {
  Json array = Json::array();
  for (const ModelBond& bond : bonds)
    array.push_back({{"model", bond.model},
                     {"conformation", orNull(bond.conformation)},
                     {"omega", rounded(bond.omega, kOmegaDecimals)},
                     {"ca_distance", rounded(bond.caToCa, kDistanceDecimals)},
                     {"state", toText(bond.state)}});
  return array;
}

Json toJson(const BondSite& site) {
  return {{"file", site.file},
          {"chain", orNull(site.chain)},
          {"resid", site.number},
          {"residue", site.residue},
          {"models", site.models},
          {"bonds", toJson(site.bonds)},
          {"alternatives", toJson(site.others)},
          {"reason", orNull(site.reason)}};
}

Json toJson(const ComparedProline& proline) {
  const ProlineResult& shifts = proline.shifts;
  const std::vector<ModelBond> bonds = proline.bonds();
  Json sites = Json::array();
  for (const BondSite& site : proline.sites) sites.push_back(toJson(site));
  return {{"resid", shifts.number},
          {"position", shifts.position},
          {"prev", orNull(shifts.previous)},
          {"next", orNull(shifts.next)},
          {"p_cis", orNull(shifts.pCis)},
          {"p_cis_norm", orNull(shifts.pCisNorm)},
          {"call", toText(shifts.call)},
          {"reason", orNull(shifts.reason)},
          {"structure", toText(proline.structure)},
          {"verdict", toText(proline.verdict)},
          {"models_cis", proline.count(BondState::cis)},
          {"models_trans", proline.count(BondState::trans)},
          {"models_twisted", proline.count(BondState::twisted)},
          {"omega", rounded(meanOmega(bonds), kOmegaDecimals)},
          {"ca_distance", rounded(meanCaToCa(bonds), kDistanceDecimals)},
          {"evidence", orNull(proline.evidence)},
          {"sites", std::move(sites)}};
}

Json toJson(const ComparedProtein& protein) {
  Json matches = Json::array();
  for (const ChainMatch& match : protein.matches)
    matches.push_back({{"file", match.file},
                       {"chain", orNull(match.chain)},
                       {"aligned", match.aligned},
                       {"identical", match.identical},
                       {"mismatches", match.mismatches},
                       {"missing", match.missing}});
  Json prolines = Json::array();
  for (const ComparedProline& proline : protein.prolines) prolines.push_back(toJson(proline));
  std::vector<std::string> notes = protein.result.notes;
  notes.insert(notes.end(), protein.notes.begin(), protein.notes.end());
  return {{"file", protein.result.file},
          {"chain", orNull(protein.result.chain)},
          {"list", orNull(protein.result.list)},
          {"length", protein.result.length},
          {"matches", std::move(matches)},
          {"prolines", std::move(prolines)},
          {"notes", notes}};
}

Json toJson(const ProteinStructure& structure) {
  Json chains = Json::array();
  for (const StructureChain& chain : structure.chains)
    chains.push_back(
        {{"chain", orNull(chain.name)}, {"residues", chain.residues.size()}, {"ca_only", chain.isTrace}});
  return {{"file", structure.file},
          {"format", structure.format},
          {"models", structure.modelCount},
          {"chains", std::move(chains)},
          {"notes", structure.notes}};
}

Json thresholds() {
  return {{"cis_from", orNull(std::optional<float>(kCisFrom))},
          {"trans_up_to", orNull(std::optional<float>(kTransUpTo))},
          {"cis_omega_up_to", kCisOmegaUpTo},
          {"trans_omega_from", kTransOmegaFrom}};
}

}  // namespace

void writeCompareJson(const CompareReport& report, std::ostream& out) {
  Json structures = Json::array();
  for (const ProteinStructure& structure : report.structures) structures.push_back(toJson(structure));
  Json proteins = Json::array();
  for (const ComparedProtein& protein : report.proteins) proteins.push_back(toJson(protein));
  Json errors = Json::array();
  for (const FailedFile& failed : report.errors)
    errors.push_back({{"file", failed.file}, {"message", failed.message}});
  const Json document = {{"format", "zorvela-kit compare"},
                         {"version", kFormatVersion},
                         {"program", std::string("zorvela-kit ") + version()},
                         {"tables", report.tables},
                         {"thresholds", thresholds()},
                         {"structures", std::move(structures)},
                         {"proteins", std::move(proteins)},
                         {"chains_without_shifts", report.chainsWithoutShifts},
                         {"errors", std::move(errors)}};
  // A file name need not be UTF-8, JSON must be.
  out << document.dump(2, ' ', true, Json::error_handler_t::replace) << '\n';
}

}  // namespace zorvela
