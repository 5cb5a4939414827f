// All fields of the results: CSV columns and JSON members. A new field is a line in fields.cpp, an entry in
// run.schema.json and one in the table of doc/run.md.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "zorvela/predict.h"
#include "zorvela/report.h"

namespace zorvela {

/// Return nothing for an empty text, for a number that is not finite, and for a missing value.
Value orNothing(const std::string& text);
Value orNothing(float number);
Value orNothing(double number);
template <class Number>
Value orNothing(const std::optional<Number>& number) {
  if (!number) return {};
  return *number;
}
/// Returns a number with so many decimals at most.
Value rounded(const std::optional<double>& value, int decimals);

/// The formats that have a field.
enum class In { csvAndJson, csv, json, jsonIfKnown };

/// A named value of a chain, a proline or a referencing offset.
template <class Item>
struct Field {
  const char* name;
  In where;
  Value (*valueOf)(const Item& item);

  bool isInCsv() const { return where == In::csvAndJson || where == In::csv; }
  bool isInJson() const { return where != In::csv; }
};

/// Fields of a chain; in CSV they come first.
const std::vector<Field<ProteinResult>>& proteinFields();
/// Fields of a proline; in CSV they come after those of the chain.
const std::vector<Field<ProlineResult>>& prolineFields();
/// Referencing offsets of the chain, next in CSV.
const std::vector<Field<ProteinResult>>& offsetColumns();
/// Evidence of a proline in short and the flag of the file, next in CSV.
const std::vector<Field<ProlineResult>>& evidenceColumns();
/// Findings of the structures for a proline; JSON has the sites too.
const std::vector<Field<StructureFinding>>& structureFields();
/// Results of a proline without the correction of the shifts, the last in CSV.
const std::vector<Field<ProlineResult>>& asReferencedColumns();
/// Fields of a shift in `evidence` and in `next`, only in JSON.
const std::vector<Field<ShiftContribution>>& shiftFields();
const std::vector<Field<NextShift>>& nextFields();
/// Fields of a referencing offset, only in JSON.
const std::vector<Field<ReferencingOffset>>& offsetFields();

/// Returns the offset of an atom; nullptr if the chain has none.
const ReferencingOffset* offsetOf(const ProteinResult& protein, const std::string& atom);

/// The atoms with a referencing offset, in the order of the reports.
inline const std::array<std::string, 4> kOffsetAtoms = {"CA", "CB", "HA", "C"};

}  // namespace zorvela
