// Reads labels and shift tables; keeps the secondary shifts.
#include "train/labelled_prolines.h"

#include <filesystem>
#include <map>
#include <set>
#include <system_error>
#include <utility>

#include "predict/chain.h"
#include "train/data_rows.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/read.h"

namespace zorvela {

namespace {

// --- Labels -------------------------------------------------------------------------------------

/// The label in a field; one column also has "unclear".
Call labelIn(const DataRow& row, const std::string& column, bool mayBeUnclear) {
  const std::string& text = row.text(column);
  if (text.empty()) return Call::none;
  for (const Call label : {Call::cis, Call::trans})
    if (text == toText(label)) return label;
  if (mayBeUnclear && text == "unclear") return Call::undecided;
  row.fail(column + " is \"" + text + "\", not cis, trans" + (mayBeUnclear ? ", unclear" : "") + " or empty");
}

/// The labels, with entries that have no residues yet.
LabelledProlines readLabels(const std::string& path) {
  LabelledProlines data;
  data.path = path;
  std::map<std::string, std::size_t> entries;
  std::map<std::string, std::size_t> clusters;
  std::set<std::pair<std::size_t, int>> seen;
  for (const DataRow& row : readDataRows(path, {"entry", "resid", "label_structure", "cluster"})) {
    LabelledProline proline;
    proline.line = row.line;
    proline.resid = row.integer("resid");
    proline.structure = labelIn(row, "label_structure", false);
    if (row.fields.count("label_shift") > 0) proline.byShift = labelIn(row, "label_shift", true);
    const std::string& name = row.text("entry");
    const std::string& cluster = row.text("cluster");
    if (name.empty() || contains(name, "/"))
      row.fail("entry is \"" + name + "\", not the name of a shift table");
    if (cluster.empty()) row.fail("cluster is empty", "give each protein a cluster");
    const auto [entry, isNew] = entries.emplace(name, data.entries.size());
    if (isNew) {
      const std::size_t number = clusters.emplace(cluster, clusters.size()).first->second;
      data.entries.push_back({name, number, {}, {}});
      if (number == data.clusters.size()) data.clusters.push_back(cluster);
    }
    proline.entry = entry->second;
    const std::string& known = data.clusters[data.entryOf(proline).cluster];
    if (cluster != known)
      row.fail(name + " is in cluster " + cluster + " here and in " + known + " above",
               "give each protein one cluster");
    if (!seen.emplace(proline.entry, proline.resid).second)
      row.fail("residue " + std::to_string(proline.resid) + " of " + name + " is labelled twice",
               "remove one of the lines");
    data.prolines.push_back(proline);
  }
  if (data.prolines.empty())
    throw Error(path, 0, "has no prolines", "give a file with a line for each proline");
  return data;
}

// --- Entries ------------------------------------------------------------------------------------

/// Reads the shifts of an entry; its shift table is one chain.
void readShifts(const std::string& path, const Model& model, EntryShifts& entry) {
  const std::vector<Protein> proteins = readShiftFile(path, {});
  if (proteins.size() > 1)
    throw FileError(path, 0, "has more than one chain", "give each chain a shift table of its own");
  entry.residues = residuesOf(proteins.front());
  entry.secondary = secondaryShifts(model, entry.residues);
}

/// Tells why a label has no proline; empty where it has one.
std::string findingOn(const LabelledProline& label, const std::vector<Residue>& residues) {
  if (label.resid < 1 || label.place() >= residues.size())
    return " is outside the sequence of " + std::to_string(residues.size()) + " residues";
  const char type = residues[label.place()].type;
  return isProline(type) ? "" : std::string(" is ") + type + ", not a proline";
}

/// Nine residues around a proline, in capitals; "-" beyond the ends. Prolines with the same window are
/// taken as the same proline, measured more than once.
std::string windowAround(const std::vector<Residue>& residues, std::size_t place) {
  constexpr std::size_t kReach = 4;
  const std::string beyond(kReach, '-');
  std::string sequence = beyond;
  for (const Residue& residue : residues) sequence += residue.type;
  return upper((sequence + beyond).substr(place, 2 * kReach + 1));
}

}  // namespace

LabelledProlines readLabelled(const std::string& labels, const std::string& folder, const Model& model,
                              const OnStep& onStep) {
  LabelledProlines data = readLabels(labels);
  for (LabelledProline& label : data.prolines) {
    EntryShifts& entry = data.entries[label.entry];
    if (entry.residues.empty()) {
      const std::string path = folder + "/" + entry.name + ".tab";
      std::error_code tooLong;
      if (!std::filesystem::exists(path, tooLong))
        throw Error(labels, label.line, "there is no shift table " + path + " for entry " + entry.name,
                    "add the file or remove the lines of the entry");
      readShifts(path, model, entry);
      if (onStep) onStep(data.entries.size());
    }
    if (const std::string finding = findingOn(label, entry.residues); !finding.empty())
      throw Error(labels, label.line,
                  "residue " + std::to_string(label.resid) + " of " + entry.name + finding,
                  "correct or remove the line");
    label.window = windowAround(entry.residues, label.place());
  }
  return data;
}

}  // namespace zorvela
