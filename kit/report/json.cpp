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

template <class Item>
Json toJson(const std::vector<Field<Item>>& fields, const Item& item) {
  Json object = Json::object();
  for (const Field<Item>& field : fields)
    if (field.isInJson()) object[field.name] = std::visit(JsonValue(), field.valueOf(item));
  return object;
}

template <class Item>
Json toJson(const std::vector<Field<Item>>& fields, const std::vector<Item>& items) {
  Json array = Json::array();
  for (const Item& item : items) array.push_back(toJson(fields, item));
  return array;
}

Json numberOrNull(double number) {
  return std::isfinite(number) ? Json(number) : Json(nullptr);
}

Json toJson(const NeighbourContribution& neighbour) {
  const JsonValue value;
  return {{"name", neighbour.name},
          {"cis_share", value(neighbour.cis)},
          {"trans_share", value(neighbour.trans)},
          {"nats", numberOrNull(neighbour.nats)}};
}

Json toJson(const Evidence& evidence) {
  Json shifts = Json::object();
  for (int index = 0; index <= kIndexCG; ++index)
    shifts[shiftKey(index)] = toJson(shiftFields(), evidence.shifts[static_cast<std::size_t>(index)]);
  return {{"prior", Evidence::prior()},
          {"prev", toJson(evidence.before)},
          {"next", toJson(evidence.after)},
          {"shifts", std::move(shifts)},
          {"log_odds", numberOrNull(evidence.logOdds())}};
}

Json toJson(const ProlineResult& proline) {
  Json object = toJson(prolineFields(), proline);
  object["evidence"] = proline.evidence ? toJson(*proline.evidence) : Json(nullptr);
  object["next_shifts"] = proline.evidence ? toJson(nextFields(), proline.evidence->next) : Json::array();
  return object;
}

Json toJson(const ProteinResult& protein) {
  Json object = toJson(proteinFields(), protein);
  object["referencing"] = toJson(offsetFields(), protein.offsets);
  object["prolines"] = Json::array();
  for (const ProlineResult& proline : protein.prolines) object["prolines"].push_back(toJson(proline));
  object["notes"] = protein.notes;
  for (const std::string& aside : protein.asides) object["notes"].push_back(aside);
  return object;
}

Json thresholds() {
  const JsonValue number;
  return {{"cis_from", number(kCisFrom)}, {"trans_up_to", number(kTransUpTo)}};
}

}  // namespace

void writeJson(const RunReport& report, const ReportStyle&, std::ostream& out) {
  Json proteins = Json::array();
  forEachProtein(report, [&](const ProteinResult& protein) { proteins.push_back(toJson(protein)); });
  Json errors = Json::array();
  forEachError(report, [&](const FileReport& file) {
    errors.push_back({{"file", file.file}, {"message", file.error}});
  });
  const Json document = {{"format", "zorvela-kit run"},
                         {"version", kFormatVersion},
                         {"program", std::string("zorvela-kit ") + version()},
                         {"tables", report.tables},
                         {"thresholds", thresholds()},
                         {"proteins", std::move(proteins)},
                         {"errors", std::move(errors)}};
  // A file name need not be UTF-8, JSON must be. In ASCII alone nothing in it moves a terminal, and nothing
  // is lost: other characters are escaped.
  out << document.dump(2, ' ', true, Json::error_handler_t::replace) << '\n';
}

}  // namespace zorvela
