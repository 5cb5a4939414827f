// All fields of the results: CSV columns, JSON members and members of the Python classes. A new field is a
// line in fields.cpp and an entry in run.schema.json. It also is an entry in the table of doc/run.md and one
// in python/results.cpp.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zorvela/predict.h"
#include "zorvela/report.h"

namespace zorvela {

/// Returns nothing for an empty text, for a number that is not finite, and for a missing value.
Value orNothing(Value value);
template <class Item>
Value orNothing(const std::optional<Item>& item) {
  return item ? orNothing(Value(*item)) : Value();
}

/// The formats that have a field.
enum class In { csvAndJson, csv, json, jsonIfKnown };

/// A named value of a chain, a proline or a part of it.
template <class Item>
struct Field {
  const char* name;
  In where;
  Value (*valueOf)(const Item& item);

  bool isInCsv() const { return where == In::csvAndJson || where == In::csv; }
  bool isInJson() const { return where != In::csv; }
};

/// Return the fields of such an item, in their order.
const std::vector<Field<ProteinResult>>& fieldsOf(const ProteinResult&);
const std::vector<Field<ProlineResult>>& fieldsOf(const ProlineResult&);
const std::vector<Field<StructureFinding>>& fieldsOf(const StructureFinding&);
const std::vector<Field<ShiftContribution>>& fieldsOf(const ShiftContribution&);
const std::vector<Field<NeighbourContribution>>& fieldsOf(const NeighbourContribution&);
const std::vector<Field<NextShift>>& fieldsOf(const NextShift&);
const std::vector<Field<ModelBond>>& fieldsOf(const ModelBond&);
const std::vector<Field<ReferencingOffset>>& fieldsOf(const ReferencingOffset&);

}  // namespace zorvela
