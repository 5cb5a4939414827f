// The one list of fields: CSV columns, JSON members, run.schema.json and doc/run.md follow it. A new field
// is a line in fields.cpp, an entry in the schema and one in the table of the document.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "zorvela/predict.h"
#include "zorvela/report.h"

namespace zorvela {

Value orNothing(const std::string& text);
/// JSON has no infinity and no "not a number".
Value orNothing(float number);
Value orNothing(double number);
template <class Number>
Value orNothing(const std::optional<Number>& number) {
  if (!number) return {};
  return *number;
}

/// Where a field is written.
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

/// Of a chain; in CSV they come first.
const std::vector<Field<ProteinResult>>& proteinFields();
/// Of a proline; in CSV they come after those of the chain.
const std::vector<Field<ProlineResult>>& prolineFields();
/// Of a chain as well, after them in CSV: the referencing offsets in a row.
const std::vector<Field<ProteinResult>>& offsetColumns();
/// Of a proline, after them in CSV: its evidence in short, and the file's own flag.
const std::vector<Field<ProlineResult>>& evidenceColumns();
/// Of a proline where there are structures; the sites are in JSON.
const std::vector<Field<StructureFinding>>& structureFields();
/// Of a proline, the very last in CSV: what the shifts say as they are in the file.
const std::vector<Field<ProlineResult>>& asReferencedColumns();
/// Of one shift in `evidence`, and of one in `next`, in JSON alone.
const std::vector<Field<ShiftContribution>>& shiftFields();
const std::vector<Field<NextShift>>& nextFields();
/// Of one referencing offset, in JSON alone.
const std::vector<Field<ReferencingOffset>>& offsetFields();

/// The offset of an atom; nullptr where the chain has none.
const ReferencingOffset* offsetOf(const ProteinResult& protein, const std::string& atom);

/// The atoms with a referencing offset, in the order of the reports.
inline const std::array<std::string, 4> kOffsetAtoms = {"CA", "CB", "HA", "C"};

}  // namespace zorvela
