// The results as JSON; run.schema.json describes them.
#include <cstdlib>
#include <ostream>
#include <utility>

#include <nlohmann/json.hpp>

#include "report/fields.h"
#include "report/walk.h"
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

Json toJson(const ProteinResult& protein) {
  Json object = toJson(proteinFields(), protein);
  object["referencing"] = toJson(offsetFields(), protein.offsets);
  object["prolines"] = toJson(prolineFields(), protein.prolines);
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
  // A file name need not be UTF-8, JSON must be.
  out << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace zorvela
