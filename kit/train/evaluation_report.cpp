#include "train/evaluation_report.h"

#include <algorithm>
#include <cstdint>
#include <ostream>

#include <nlohmann/json.hpp>

#include "train/table_cells.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/calls.h"

namespace zorvela {

namespace {

using Json = nlohmann::ordered_json;

// Seed of the bootstrap; any number does, but always the same one.
constexpr std::uint64_t kBootstrapSeed = 7;

Json groupJson(const Evaluation& evaluation, const Group& group, int rounds) {
  const std::vector<Scored> set = scored(evaluation, group);
  const Figures figures = figuresOf(set);
  const FigureIntervals intervals = bootstrap(set, rounds, kBootstrapSeed);
  Json json = {{"group", group.key},
               {"method", group.byRule ? "rule" : "program"},
               {"n", set.size()},
               {"cis", std::count_if(set.begin(), set.end(), [](const Scored& one) { return one.isCis; })}};
  for (std::size_t i = 0; i < kFigureCount; ++i) {
    Json& figure = json[kFigureNames[i].key];
    if (figures[i]) figure["value"] = *figures[i];
    if (!figures[i] || !intervals[i]) continue;
    figure["low"] = intervals[i]->low;
    figure["high"] = intervals[i]->high;
  }
  return json;
}

std::string figureText(const Json& figure) {
  if (figure.is_null()) return "-";
  const auto text = [&figure](const char* key) { return fixedText(figure[key].get<double>(), 3); };
  return text("value") + (figure.contains("low") ? " [" + text("low") + " " + text("high") + "]" : "");
}

void writeLine(std::ostream& out, const std::string& name, const std::string& count, const std::string& cis,
               const std::vector<std::string>& figures) {
  std::string line = formatted("%-27s %5s %4s", name.c_str(), count.c_str(), cis.c_str());
  for (const std::string& figure : figures) line += formatted("  %-19s", figure.c_str());
  line.erase(line.find_last_not_of(' ') + 1);
  out << line << '\n';
}

Json calibrationJson(const Evaluation& evaluation) {
  Json bins = Json::array();
  for (const CalibrationBin& bin : calibration(scored(evaluation, groups().front()),
                                               {0, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 0.8, 0.95, 1}))
    bins.push_back({{"from", bin.from},
                    {"below", bin.below},
                    {"n", bin.count},
                    {"cis", bin.cis},
                    {"mean_probability", bin.meanProbability},
                    {"observed_share", bin.share},
                    {"low", bin.interval.low},
                    {"high", bin.interval.high}});
  return bins;
}

std::string number(double value) {
  return formatted("%.6g", value);
}

}  // namespace

void writeEvaluationTable(std::ostream& out, const Evaluation& evaluation, const std::string& tables,
                          int rounds) {
  out << "Tables: " << shown(tables) << '\n'
      << evaluation.labelled << " prolines labelled by structure; " << evaluation.notPredicted
      << " without prediction, " << evaluation.repeated << " in a window seen before, "
      << evaluation.notANumber << " with shifts too far from both classes\n"
      << "Called cis: P_CIS_NORM at least " << numberText(kCisFrom)
      << ". In brackets: 95 % of bootstrap rounds over clusters.\n\n";
  std::vector<std::string> titles;
  for (const FigureName& figure : kFigureNames) titles.emplace_back(figure.title);
  writeLine(out, "prolines", "n", "cis", titles);
  for (const Group& group : groups()) {
    if (group.key == "cb_without_cg") out << '\n';
    const Json json = groupJson(evaluation, group, rounds);
    std::vector<std::string> cells;
    for (const FigureName& figure : kFigureNames) cells.push_back(figureText(json[figure.key]));
    writeLine(out, group.name, json["n"].dump(), json["cis"].dump(), cells);
  }
}

void writeEvaluationJson(std::ostream& out, const Evaluation& evaluation, const std::string& tables,
                         int rounds) {
  Json json = {{"tables", tables},
               {"labelled", evaluation.labelled},
               {"not_predicted", evaluation.notPredicted},
               {"repeated_window", evaluation.repeated},
               {"not_a_number", evaluation.notANumber},
               {"called_cis_from", kCisFrom},
               {"rule_cis_above_ppm", kRuleCisAbove},
               {"bootstrap_rounds", rounds},
               {"groups", Json::array()}};
  for (const Group& group : groups()) json["groups"].push_back(groupJson(evaluation, group, rounds));
  json["calibration"] = calibrationJson(evaluation);
  out << json.dump(2, ' ', true, Json::error_handler_t::replace) << '\n';
}

void writePredictions(std::ostream& out, const Evaluation& evaluation, const LabelledProlines& data) {
  out << "entry,resid,window,cluster,label_structure,contradicted,shifts,cb_minus_cg,p_cis,p_cis_norm\n";
  for (const Evaluated& p : evaluation.prolines) {
    const LabelledProline& label = data.prolines[p.label];
    out << csvCell(data.entryOf(label).name) << ',' << label.resid << ',' << csvCell(label.window) << ','
        << csvCell(data.clusters[p.cluster]) << ',' << (p.isCis ? "cis" : "trans") << ','
        << (p.isContradicted ? "yes" : "no") << ',' << p.shiftCount << ','
        << (p.cbMinusCg ? number(*p.cbMinusCg) : "") << ',' << number(p.pCis) << ',' << number(p.pCisNorm)
        << '\n';
  }
}

void writeRoc(std::ostream& out, const Evaluation& evaluation) {
  out << "group,threshold,false_positive_rate,true_positive_rate\n";
  for (const Group& group : groups())
    for (const RocPoint& point : rocCurve(scored(evaluation, group)))
      out << group.key << ',' << number(point.threshold) << ',' << number(point.falsePositiveRate) << ','
          << number(point.truePositiveRate) << '\n';
}

void writeCalibration(std::ostream& out, const Evaluation& evaluation) {
  out << "from,below,n,cis,mean_probability,observed_share,low,high\n";
  for (const Json& bin : calibrationJson(evaluation)) {
    const char* separator = "";
    for (const Json& cell : bin) {
      out << separator << (cell.is_number_float() ? number(cell.get<double>()) : cell.dump());
      separator = ",";
    }
    out << '\n';
  }
}

}  // namespace zorvela
