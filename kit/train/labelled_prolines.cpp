// Reads labels and shift tables; keeps the secondary shifts.
#include "train/labelled_prolines.h"

#include <filesystem>
#include <map>
#include <set>
#include <system_error>
#include <utility>

#include "predict/chain.h"
#include "train/strict_csv.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/read.h"

namespace zorvela {

// --- Labels -------------------------------------------------------------------------------------

namespace {

std::optional<Omega> structureLabel(const StrictCsv& csv, const StrictCsv::Row& row, std::size_t column) {
  const std::string& text = row.fields[column];
  if (text.empty()) return std::nullopt;
  if (text == "cis") return Omega::cis;
  if (text == "trans") return Omega::trans;
  csv.fail(row, "label_structure is \"" + text + "\", not cis, trans or empty", kCorrectLine);
}

ShiftLabel shiftLabel(const StrictCsv& csv, const StrictCsv::Row& row, std::size_t column) {
  if (column >= row.fields.size()) return ShiftLabel::none;
  const std::string& text = row.fields[column];
  if (text.empty()) return ShiftLabel::none;
  if (text == "cis") return ShiftLabel::cis;
  if (text == "trans") return ShiftLabel::trans;
  if (text == "unclear") return ShiftLabel::unclear;
  csv.fail(row, "label_shift is \"" + text + "\", not cis, trans, unclear or empty", kCorrectLine);
}

}  // namespace

LabelFile readLabels(const std::string& path) {
  const StrictCsv csv(path);
  LabelFile labels{path, {}};
  const std::size_t entry = csv.column("entry");
  const std::size_t resid = csv.column("resid");
  const std::size_t structure = csv.column("label_structure");
  const std::size_t cluster = csv.column("cluster");
  const std::size_t byShift = csv.findColumn("label_shift");
  std::set<std::pair<std::string, int>> seen;
  std::map<std::string, std::string> clusterOf;
  for (const StrictCsv::Row& row : csv.rows) {
    ProlineLabel label;
    label.line = row.line;
    label.entry = row.fields[entry];
    label.resid = csv.integer(row, resid);
    label.structure = structureLabel(csv, row, structure);
    label.byShift = shiftLabel(csv, row, byShift);
    label.cluster = row.fields[cluster];
    if (label.entry.empty() || label.entry.find('/') != std::string::npos)
      csv.fail(row, "entry is \"" + label.entry + "\", not the name of a shift table", kCorrectLine);
    if (label.cluster.empty()) csv.fail(row, "cluster is empty", "give each protein a cluster");
    const std::string& known = clusterOf.emplace(label.entry, label.cluster).first->second;
    if (label.cluster != known)
      csv.fail(row, label.entry + " is in cluster " + label.cluster + " here and in " + known + " above",
               "give each protein one cluster");
    if (!seen.emplace(label.entry, label.resid).second)
      csv.fail(row, "residue " + std::to_string(label.resid) + " of " + label.entry + " is labelled twice",
               "remove one of the lines");
    labels.prolines.push_back(std::move(label));
  }
  if (labels.prolines.empty())
    throw Error(path, 0, "has no prolines", "give a file with a line for each proline");
  return labels;
}

// --- Entries ------------------------------------------------------------------------------------

namespace {

/// The protein of an entry; a shift table is one chain.
Protein entryProtein(const std::string& path) {
  std::vector<Protein> proteins = readShiftFile(path, {});
  if (proteins.size() > 1)
    throw FileError(path, 0, "has more than one chain", "give each chain a shift table of its own");
  return std::move(proteins.front());
}

std::string entryPath(const LabelFile& labels, const ProlineLabel& label, const std::string& folder) {
  std::string path = folder + "/" + label.entry + ".tab";
  std::error_code tooLong;
  if (!std::filesystem::exists(path, tooLong))
    throw Error(labels.path, label.line, "there is no shift table " + path + " for entry " + label.entry,
                "add the file or remove the lines of the entry");
  return path;
}

void checkIsProline(const LabelFile& labels, const ProlineLabel& label,
                    const std::vector<Residue>& residues) {
  const std::string where = "residue " + std::to_string(label.resid) + " of " + label.entry;
  if (label.resid < 1 || static_cast<std::size_t>(label.resid) > residues.size())
    throw Error(labels.path, label.line,
                where + " is outside the sequence of " + std::to_string(residues.size()) + " residues",
                kCorrectLine);
  const char type = residues[static_cast<std::size_t>(label.resid) - 1].type;
  if (!isProline(type))
    throw Error(labels.path, label.line, where + " is " + type + ", not a proline", kCorrectLine);
}

/// Nine residues around a proline, in capitals; "-" beyond the ends. Prolines with the same window are
/// taken as the same proline, measured more than once.
std::string window(const std::vector<Residue>& residues, std::size_t place) {
  constexpr std::size_t kReach = 4;
  const std::string beyond(kReach, '-');
  std::string sequence = beyond;
  for (const Residue& residue : residues) sequence += residue.type;
  return upper((sequence + beyond).substr(place, 2 * kReach + 1));
}

std::size_t entryCount(const LabelFile& labels) {
  std::set<std::string> names;
  for (const ProlineLabel& label : labels.prolines) names.insert(label.entry);
  return names.size();
}

}  // namespace

LabelledProlines readLabelled(const std::string& labelsPath, const std::string& folder, const Model& model,
                              const OnStep& onStep) {
  LabelledProlines data;
  data.labels = readLabels(labelsPath);
  const std::size_t entries = entryCount(data.labels);
  std::map<std::string, std::size_t> known;
  for (const ProlineLabel& label : data.labels.prolines) {
    const auto [found, isNew] = known.emplace(label.entry, data.entries.size());
    if (isNew) {
      const Protein protein = entryProtein(entryPath(data.labels, label, folder));
      const std::vector<Residue> residues = residuesOf(protein);
      data.entries.push_back({label.entry, residues, secondaryShifts(model, residues)});
      if (onStep) onStep(data.entries.size(), entries);
    }
    const std::vector<Residue>& residues = data.entries[found->second].residues;
    checkIsProline(data.labels, label, residues);
    data.entryOf.push_back(found->second);
    data.windows.push_back(window(residues, static_cast<std::size_t>(label.resid) - 1));
  }
  return data;
}

}  // namespace zorvela
