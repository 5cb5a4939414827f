// The figures of an evaluation as text: a table to read, JSON, and CSV files for plots.
#pragma once

#include <iosfwd>
#include <string>

#include "train/evaluation.h"

namespace zorvela {

/// Writes a row for each group, with intervals from so many rounds of bootstrap over clusters (0: none).
/// `tables` names the source of the probabilities.
void writeEvaluationTable(std::ostream& out, const Evaluation& evaluation, const std::string& tables,
                          int rounds);
/// Writes the same as JSON, with all digits and with the calibration.
void writeEvaluationJson(std::ostream& out, const Evaluation& evaluation, const std::string& tables,
                         int rounds);
/// CSV: each proline with its label and its probabilities.
void writePredictions(std::ostream& out, const Evaluation& evaluation, const LabelledProlines& data);
/// CSV: the points of the ROC curve of each group.
void writeRoc(std::ostream& out, const Evaluation& evaluation);
/// CSV: predicted probability against observed share of cis.
void writeCalibration(std::ostream& out, const Evaluation& evaluation);

}  // namespace zorvela
