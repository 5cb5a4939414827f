#include "train/evaluation_report.h"

#include <optional>
#include <ostream>

#include <nlohmann/json.hpp>

#include "train/formatted.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/calls.h"

namespace zorvela {

namespace {

using Json = nlohmann::ordered_json;

const std::vector<double> kCalibrationEdges = {0, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 0.8, 0.95, 1};

std::string figureText(const std::optional<double>& value, const std::optional<Interval>& interval) {
  if (!value) return "-";
  std::string text = fixedText(*value, 3);
  if (!interval) return text;
  return text + " [" + fixedText(interval->low, 3) + " " + fixedText(interval->high, 3) + "]";
}

void writeLine(std::ostream& out, const std::string& name, const std::string& count, const std::string& cis,
               const std::vector<std::string>& figures) {
  std::string line = formatted("%-27s %5s %4s", name.c_str(), count.c_str(), cis.c_str());
  for (const std::string& figure : figures) line += formatted("  %-19s", figure.c_str());
  line.erase(line.find_last_not_of(' ') + 1);
  out << line << '\n';
}

Json figureJson(const std::optional<double>& value, const std::optional<Interval>& interval) {
  if (!value) return nullptr;
  Json json = {{"value", *value}};
  if (interval) {
    json["low"] = interval->low;
    json["high"] = interval->high;
  }
  return json;
}

Json groupJson(const GroupFigures& g) {
  Json json = {{"group", g.group.key},
               {"method", g.group.method == Method::rule ? "rule" : "program"},
               {"n", g.figures.count},
               {"cis", g.figures.cis}};
  for (const NamedFigure& figure : kFigures)
    json[figure.key] = figureJson(g.figures.*figure.value, g.intervals.*figure.interval);
  return json;
}

std::vector<Scored> allScored(const Evaluation& evaluation) {
  return scored(evaluation, groups().front());
}

Json calibrationJson(const Evaluation& evaluation) {
  Json bins = Json::array();
  for (const CalibrationBin& bin : calibration(allScored(evaluation), kCalibrationEdges))
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

void writeEvaluationTable(std::ostream& out, const Evaluation& evaluation,
                          const std::vector<GroupFigures>& all, const std::string& tables) {
  out << "Tables: " << shown(tables) << '\n'
      << evaluation.labelled << " prolines labelled by structure; " << evaluation.notPredicted
      << " without prediction, " << evaluation.repeated << " in a window seen before, "
      << evaluation.notANumber.size() << " with shifts too far from both classes\n"
      << "Called cis: P_CIS_NORM at least " << numberText(kCisFrom)
      << ". In brackets: 95 % of bootstrap rounds over clusters.\n\n";
  std::vector<std::string> titles;
  for (const NamedFigure& figure : kFigures) titles.emplace_back(figure.title);
  writeLine(out, "prolines", "n", "cis", titles);
  for (const GroupFigures& g : all) {
    if (g.group.key == "cb_without_cg") out << '\n';
    std::vector<std::string> cells;
    for (const NamedFigure& figure : kFigures)
      cells.push_back(figureText(g.figures.*figure.value, g.intervals.*figure.interval));
    writeLine(out, g.group.name, std::to_string(g.figures.count), std::to_string(g.figures.cis), cells);
  }
}

void writeEvaluationJson(std::ostream& out, const Evaluation& evaluation,
                         const std::vector<GroupFigures>& all, const std::string& tables, int rounds) {
  Json json = {{"tables", tables},
               {"labelled", evaluation.labelled},
               {"not_predicted", evaluation.notPredicted},
               {"repeated_window", evaluation.repeated},
               {"not_a_number", evaluation.notANumber.size()},
               {"called_cis_from", kCisFrom},
               {"rule_cis_above_ppm", kRuleCisAbove},
               {"bootstrap_rounds", rounds},
               {"groups", Json::array()}};
  for (const GroupFigures& g : all) json["groups"].push_back(groupJson(g));
  json["calibration"] = calibrationJson(evaluation);
  out << json.dump(2, ' ', true, Json::error_handler_t::replace) << '\n';
}

void writePredictions(std::ostream& out, const Evaluation& evaluation, const LabelledProlines& data) {
  out << "entry,resid,window,cluster,label_structure,contradicted,shifts,cb_minus_cg,p_cis,p_cis_norm\n";
  for (const Evaluated& p : evaluation.prolines) {
    const ProlineLabel& label = data.labels.prolines[p.label];
    out << csvCell(label.entry) << ',' << label.resid << ',' << csvCell(data.windows[p.label]) << ','
        << csvCell(label.cluster) << ',' << (p.isCis ? "cis" : "trans") << ','
        << (p.isContradicted() ? "yes" : "no") << ',' << p.shiftCount << ','
        << (p.ruleApplies() ? number(p.cbMinusCg) : "") << ',' << number(p.pCis) << ',' << number(p.pCisNorm)
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
  for (const CalibrationBin& bin : calibration(allScored(evaluation), kCalibrationEdges))
    out << number(bin.from) << ',' << number(bin.below) << ',' << bin.count << ',' << bin.cis << ','
        << number(bin.meanProbability) << ',' << number(bin.share) << ',' << number(bin.interval.low) << ','
        << number(bin.interval.high) << '\n';
}

}  // namespace zorvela
