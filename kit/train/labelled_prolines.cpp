// Reads labels and shift tables; keeps the secondary shifts and hands them back to the program's classes.
#include "train/labelled_prolines.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>
#include <system_error>
#include <unordered_map>
#include <utility>

#include "formats/format.h"
#include "formats/input_bytes.h"
#include "formats/limits.h"
#include "formats/shift_model.h"
#include "train/strict_csv.h"
#include "zorvela/error.h"

namespace zorvela {

// --- Labels -------------------------------------------------------------------------------------

namespace {

const std::string kCorrectLine = "correct or remove the line";

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
      csv.fail(row, "entry is \"" + label.entry + "\", no name of a shift table", kCorrectLine);
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

const std::string kAtomCB = "CB";

/// Takes away the rows whose shift is no finite number. How many those were.
std::size_t leaveOutNonFinite(GDB& table) {
  const std::size_t before = table.entries.size();
  for (auto row = table.entries.begin(); row != table.entries.end();)
    row = std::isfinite(GDB::toFloat(GDB::cell(row->second, "SHIFT"))) ? std::next(row)
                                                                       : table.entries.erase(row);
  return before - table.entries.size();
}

/// Has the program make the secondary shifts of its table.
EntryShifts entryShifts(const std::string& name, ZORVELA& run) {
  run.rcShifts.clear();
  run.missingCount.clear();
  run.cgShifts.clear();
  run.firstResid = 1;
  run.lastResid = 1;
  run.getResInfo();

  EntryShifts entry;
  entry.name = name;
  for (int resid = 1; resid <= run.seqLength; ++resid) {
    entry.names.push_back(run.resNames[resid]);
    entry.missing.push_back(run.missingCount[resid]);
  }
  entry.secondary = secondaryShifts(run);
  entry.cg = run.cgShifts;
  // The first of each residue counts, by the text of its number.
  std::unordered_map<std::string, float> cbShifts;
  for (const auto& [number, row] : run.csTable.entries)
    if (GDB::cell(row, "ATOMNAME") == kAtomCB)
      cbShifts.emplace(GDB::cell(row, "RESID"), GDB::toFloat(GDB::cell(row, "SHIFT")));
  for (const auto& [resid, shift] : entry.cg)
    if (const auto found = cbShifts.find(std::to_string(resid)); found != cbShifts.end())
      entry.cb[resid] = found->second;
  return entry;
}

/// The table of an entry, within the limits that hold for any shift table.
GDB entryTable(const std::string& path) {
  Source source;
  source.file = path;
  source.text = fileBytes(path);
  const std::size_t most = kResiduesMadeOfAnyFile + source.text.size() / kBytesPerResidueMade;
  GDB table = std::move(*readShiftTable(source).table);
  table.fileName = path;
  if (table.residNames.size() > most)
    throw FileError(path, 0, "has a sequence of more than " + std::to_string(most) + " residues",
                    "no protein with so few shifts is that long: check the file");
  return table;
}

std::string entryPath(const LabelFile& labels, const ProlineLabel& label, const std::string& folder) {
  std::string path = folder + "/" + label.entry + ".tab";
  std::error_code unknown;
  if (!std::filesystem::exists(path, unknown))
    throw Error(labels.path, label.line, "there is no shift table " + path + " for entry " + label.entry,
                "add the file or remove the lines of the entry");
  return path;
}

void checkIsProline(const LabelFile& labels, const ProlineLabel& label, const EntryShifts& entry) {
  const std::string where = "residue " + std::to_string(label.resid) + " of " + label.entry;
  if (label.resid < 1 || label.resid > entry.length())
    throw Error(labels.path, label.line,
                where + " is outside the sequence of " + std::to_string(entry.length()) + " residues",
                kCorrectLine);
  const std::string& name = entry.names[static_cast<std::size_t>(label.resid) - 1];
  if (name != "P" && name != "p")
    throw Error(labels.path, label.line, where + " is " + name + ", no proline", kCorrectLine);
}

/// Nine residues around a proline, in capitals; "-" beyond the ends. Prolines with the same window are
/// taken as the same proline, measured more than once.
std::string window(const EntryShifts& entry, int resid) {
  constexpr int kReach = 4;
  std::string text;
  for (int i = resid - kReach; i <= resid + kReach; ++i) {
    const bool inside = i >= 1 && i <= entry.length();
    const std::string name = inside ? entry.names[static_cast<std::size_t>(i) - 1] : "-";
    for (const char c : name) text += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  }
  return text;
}

std::size_t entryCount(const LabelFile& labels) {
  std::set<std::string> names;
  for (const ProlineLabel& label : labels.prolines) names.insert(label.entry);
  return names.size();
}

}  // namespace

LabelledProlines readLabelled(const std::string& labelsPath, const std::string& folder, ZORVELA& run,
                              const OnStep& onStep) {
  LabelledProlines data;
  data.labels = readLabels(labelsPath);
  const std::size_t entries = entryCount(data.labels);
  std::map<std::string, std::size_t> known;
  for (const ProlineLabel& label : data.labels.prolines) {
    const auto [found, isNew] = known.emplace(label.entry, data.entries.size());
    if (isNew) {
      run.csTable = entryTable(entryPath(data.labels, label, folder));
      data.notFinite += leaveOutNonFinite(run.csTable);
      data.entries.push_back(entryShifts(label.entry, run));
      if (onStep) onStep(data.entries.size(), entries);
    }
    const EntryShifts& entry = data.entries[found->second];
    checkIsProline(data.labels, label, entry);
    data.entryOf.push_back(found->second);
    data.windows.push_back(window(entry, label.resid));
  }
  return data;
}

// --- Back into the program ----------------------------------------------------------------------

EntryView::EntryView(ZORVELA& run, const EntryShifts& entry) : zorvela(run), shifts(entry) {
  run.resNames.clear();
  run.missingCount.clear();
  for (std::size_t i = 0; i < entry.names.size(); ++i) {
    const int resid = static_cast<int>(i) + 1;
    run.resNames.emplace_hint(run.resNames.end(), resid, entry.names[i]);
    run.missingCount.emplace_hint(run.missingCount.end(), resid, entry.missing[i]);
  }
  run.seqLength = entry.length();
  run.cgShifts = entry.cg;
}

void EntryView::focus(int resid) {
  addRows(std::max(resid - 1, 1), std::min(resid + 1, shifts.length()));
}

void EntryView::showAll() {
  addRows(1, shifts.length());
}

void EntryView::addRows(int first, int last) {
  zorvela.resTable = GDB();
  int row = 0;
  for (int i = first; i <= last; ++i) {
    for (const auto& [key, atom] : zorvela.atomNames) {
      const float shift =
          shifts.secondary[static_cast<std::size_t>(i) - 1][static_cast<std::size_t>(key) - 1];
      ++row;
      zorvela.resTable.setEntry(row, "RESID", std::to_string(i));
      zorvela.resTable.setEntry(row, "ATOMNAME", atom);
      zorvela.resTable.setEntry(row, "SHIFT", zorvela.ftoa(shift, zorvela.numBuffer, 'g', 6));
    }
  }
}

}  // namespace zorvela
