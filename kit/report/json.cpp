// The results as JSON; run.schema.json describes them.
#include <cmath>
#include <cstdlib>
#include <ostream>
#include <utility>

#include <nlohmann/json.hpp>

#include "report/fields.h"
#include "report/walk.h"
#include "report/words.h"
#include "util/number.h"
#include "zorvela/report.h"
#include "zorvela/version.h"

namespace zorvela {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kFormatVersion = 1;

struct JsonValue {
  Json operator()(std::monostate) const { return nullptr; }
  Json operator()(int number) const { return number; }
  /// Through the shortest text, so that 0.1 in single precision is written 0.1.
  Json operator()(float number) const { return std::strtod(numberText(number).c_str(), nullptr); }
  Json operator()(double number) const { return number; }
  Json operator()(bool isSo) const { return isSo; }
  Json operator()(const std::string& text) const { return text; }
};

Json asJson(const Value& value) {
  return std::visit(JsonValue(), value);
}

/// The fields of an item.
template <class Item>
Json toJson(const Item& item) {
  Json object = Json::object();
  for (const Field<Item>& field : fieldsOf(item)) {
    if (!field.isInJson()) continue;
    const Value value = field.valueOf(item);
    const bool isKnown = !std::holds_alternative<std::monostate>(value);
    if (isKnown || field.where != In::jsonIfKnown) object[field.name] = asJson(value);
  }
  return object;
}

template <class Item>
Json orNull(const Item& value) {
  return asJson(orNothing(value));
}

Json toJson(const Evidence& evidence) {
  Json shifts = Json::object();
  for (int index = 0; index <= kIndexCG; ++index) shifts[shiftKey(index)] = toJson(evidence.shift(index));
  return {{"prior", Evidence::prior()},
          {"prev", toJson(evidence.before)},
          {"next", toJson(evidence.after)},
          {"shifts", std::move(shifts)},
          {"log_odds", orNull(evidence.logOdds())}};
}

Json toJson(const BondSite& site);
Json toJson(const ChainMatch& match);
Json toJson(const ProteinStructure& structure);

template <class Item>
Json arrayOf(const std::vector<Item>& items) {
  Json array = Json::array();
  for (const Item& item : items) array.push_back(toJson(item));
  return array;
}

Json toJson(const BondSite& site) {
  return {{"file", site.file},
          {"chain", orNull(site.chain)},
          {"resid", site.number},
          {"residue", site.residue},
          {"models", site.models},
          {"bonds", arrayOf(site.bonds)},
          {"alternatives", arrayOf(site.others)},
          {"reason", orNull(site.reason)}};
}

Json toJson(const ChainMatch& match) {
  return {{"file", match.file},
          {"chain", orNull(match.chain)},
          {"aligned", match.aligned},
          {"identical", match.identical},
          {"mismatches", match.mismatches},
          {"missing", match.missing},
          {"residues", orNull(match.residues)}};
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

Json toJson(const ProlineResult& proline) {
  Json object = toJson<ProlineResult>(proline);
  object["evidence"] = proline.evidence ? toJson(*proline.evidence) : Json(nullptr);
  object["next_shifts"] = proline.evidence ? arrayOf(proline.evidence->next) : Json::array();
  if (proline.structure) {
    object.update(toJson(*proline.structure));
    object["sites"] = arrayOf(proline.structure->sites);
  }
  return object;
}

// --- The document -------------------------------------------------------------------------------

/// Writes objects and arrays item by item, because a whole report in memory would be large.
class JsonWriter {
 public:
  explicit JsonWriter(std::ostream& stream) : out(stream) {}

  /// Starts an object or array; in an object it has a name.
  void open(char bracket, const std::string& name = "") {
    if (!closing.empty()) startItem(name);
    out << bracket;
    closing.push_back(bracket == '{' ? '}' : ']');
    isEmpty = true;
  }
  void close() {
    const char bracket = closing.back();
    closing.pop_back();
    if (!isEmpty) startLine();
    out << bracket;
    isEmpty = false;
  }
  /// Writes ASCII, with other characters escaped: no text then controls a terminal. Bytes of a file name that
  /// are not UTF-8 are replaced.
  void add(const Json& value, const std::string& name = "") {
    startItem(name);
    // A line feed in a text is escaped, so that each one here ends a line.
    const std::string text = value.dump(kIndent, ' ', true, Json::error_handler_t::replace);
    for (const char c : text)
      if (c == '\n')
        startLine();
      else
        out << c;
  }
  void addMembers(const Json& object) {
    for (const auto& [name, value] : object.items()) add(value, name);
  }

 private:
  static constexpr int kIndent = 2;

  void startLine() { out << '\n' << std::string(kIndent * closing.size(), ' '); }
  void startItem(const std::string& name) {
    if (!isEmpty) out << ',';
    startLine();
    isEmpty = false;
    if (!name.empty()) out << '"' << name << "\": ";
  }

  std::ostream& out;
  std::string closing;  ///< brackets of what is open
  bool isEmpty = true;  ///< the innermost of it
};

void write(const ProteinResult& protein, bool withStructures, JsonWriter& json) {
  json.open('{');
  json.addMembers(toJson(protein));
  json.add(arrayOf(protein.offsets), "referencing");
  json.open('[', "prolines");
  for (const ProlineResult& proline : protein.prolines) json.add(toJson(proline));
  json.close();
  json.add(warningsOf(protein), "warnings");
  std::vector<std::string> notes = protein.notes;
  notes.insert(notes.end(), protein.asides.begin(), protein.asides.end());
  json.add(notes, "notes");
  if (withStructures) {
    json.add(arrayOf(protein.matches), "matches");
    json.add(protein.structureNotes, "structure_notes");
  }
  json.close();
}

}  // namespace

void writeJson(const RunReport& report, const ReportStyle&, std::ostream& out) {
  const bool withStructures = !report.structures.empty();
  Json thresholds = {{"cis_from", asJson(kCisFrom)}, {"trans_up_to", asJson(kTransUpTo)}};
  if (withStructures) {
    thresholds["cis_omega_up_to"] = kCisOmegaUpTo;
    thresholds["trans_omega_from"] = kTransOmegaFrom;
  }
  JsonWriter json(out);
  json.open('{');
  json.addMembers({{"format", "zorvela-kit run"},
                   {"version", kFormatVersion},
                   {"program", std::string("zorvela-kit ") + version()},
                   {"tables", report.tables},
                   {"tables_fingerprint", report.classes.fingerprint},
                   {"thresholds", std::move(thresholds)}});
  json.open('[', "proteins");
  forEachProtein(report, [&](const ProteinResult& protein) { write(protein, withStructures, json); });
  json.close();
  Json errors = Json::array();
  for (const FileReport& file : report.files) {
    if (file.error.empty()) continue;
    errors.push_back({{"file", file.file}, {"message", file.error}});
    if (file.needsSequence) errors.back()["needs_sequence"] = true;
  }
  json.add(errors, "errors");
  if (withStructures) {
    json.add(arrayOf(report.structures), "structures");
    json.add(report.chainsWithoutShifts, "chains_without_shifts");
  }
  json.close();
  out << '\n';
}

}  // namespace zorvela
