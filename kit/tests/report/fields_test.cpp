// The list of fields, the schema and the document agree.
#include "report/fields.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include <regex>
#include <set>

#include <nlohmann/json.hpp>

#include "support/temp_dir.h"

namespace {

using support::readFile;
using Names = std::vector<std::string>;

template <class Item>
Names jsonNames(const Item& item) {
  Names names;
  for (const auto& field : fieldsOf(item))
    if (field.isInJson()) names.emplace_back(field.name);
  return names;
}

/// Members that only a corrected chain has, its prolines or its shifts.
bool isOfCorrection(const std::string& name) {
  return name == "deuteration" || name == "corrected" || name == "p_cis_norm_as_referenced" ||
         name == "call_as_referenced";
}

/// The members that the schema demands and describes, in its order; with structures there are more.
void expectInSchema(const char* object, Names names, const Names& withStructures = {}) {
  const auto schema = nlohmann::ordered_json::parse(readFile(RUN_SCHEMA))["$defs"][object];
  Names required;
  std::remove_copy_if(names.begin(), names.end(), std::back_inserter(required), isOfCorrection);
  EXPECT_EQ(schema["required"].get<Names>(), required);
  names.insert(names.end(), withStructures.begin(), withStructures.end());
  Names described;
  for (const auto& [name, description] : schema["properties"].items()) described.push_back(name);
  EXPECT_EQ(described, names);
}

}  // namespace

TEST(Fields, AreThoseOfTheSchema) {
  Names chain = jsonNames(zorvela::ProteinResult());
  for (const char* list : {"referencing", "prolines", "warnings", "notes"}) chain.emplace_back(list);
  expectInSchema("protein", chain, {"matches", "structure_notes"});
  Names proline = jsonNames(zorvela::ProlineResult());
  for (const char* object : {"evidence", "next_shifts"}) proline.emplace_back(object);
  Names structure = jsonNames(zorvela::StructureFinding());
  structure.emplace_back("sites");
  expectInSchema("proline", proline, structure);
  expectInSchema("shift", jsonNames(zorvela::ShiftContribution()));
  expectInSchema("next_shift", jsonNames(zorvela::NextShift()));
  expectInSchema("offset", jsonNames(zorvela::ReferencingOffset()));
}

TEST(Fields, AreThoseOfTheTableOfColumnsInTheDocument) {
  const std::string document = readFile(DOCUMENTS "/run.md");
  const std::size_t start = document.find("\n## CSV\n");
  ASSERT_NE(start, std::string::npos);
  const std::string section = document.substr(start, document.find("\n## ", start + 1) - start);
  const std::regex line("\n\\| (`[^|]+) \\|");
  const std::regex name("`([a-z_]+)`");
  Names named;
  for (std::sregex_iterator row(section.begin(), section.end(), line), end; row != end; ++row) {
    const std::string cell = (*row)[1];
    for (std::sregex_iterator word(cell.begin(), cell.end(), name); word != end; ++word)
      named.push_back((*word)[1]);
  }
  EXPECT_EQ(named, zorvela::csvColumns(true));
}

TEST(Fields, HaveEachNameOnce) {
  const Names columns = zorvela::csvColumns(true);
  EXPECT_EQ(std::set<std::string>(columns.begin(), columns.end()).size(), columns.size());
}
