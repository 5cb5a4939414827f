// The results as a table for people.
#include <algorithm>
#include <cmath>
#include <ostream>
#include <set>
#include <utility>

#include "report/explain.h"
#include "report/fields.h"
#include "report/text_table.h"
#include "report/walk.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/report.h"

namespace zorvela {

namespace {

std::string orAbsent(const std::string& text) {
  return text.empty() ? kAbsentCell : text;
}

std::string orAbsent(const std::optional<float>& value) {
  return value ? fixedText(static_cast<double>(*value), 3) : kAbsentCell;
}

std::string orAbsent(const std::optional<int>& value) {
  return value ? std::to_string(*value) : kAbsentCell;
}

std::string neighbourText(const std::string& name, const std::string& number) {
  return name.empty() ? kAbsentCell : name + number;
}

std::string markOf(Call call) {
  if (call == Call::cis) return "*";
  return call == Call::undecided ? "?" : "";
}

std::string callText(const ProlineResult& proline) {
  return proline.reason.empty() ? toText(proline.call) : kAbsentCell + " (" + proline.reason + ")";
}

/// Whether a chain comes with several shift lists, so that rows must name theirs.
bool hasSeveralLists(const RunReport& report) {
  for (const FileReport& file : report.files) {
    std::set<std::string> chains;
    for (const ProteinResult& protein : file.proteins)
      if (!chains.insert(protein.chain).second) return true;
  }
  return false;
}

/// The folder of all files, with its slash; empty where they have none in common or there is but one file.
std::string commonFolder(const RunReport& report) {
  if (report.files.size() < 2) return {};
  std::string folder = report.files.front().file;
  for (const FileReport& file : report.files) {
    const auto end = std::mismatch(folder.begin(), folder.end(), file.file.begin(), file.file.end()).first;
    folder.erase(end, folder.end());
  }
  folder.erase(folder.find_last_of('/') + 1);
  return folder;
}

/// What the rows of this report say of where they come from.
struct Origin {
  bool withList = false;
  std::string folder;  ///< said once, and not in each row
};

/// Where a row comes from. The first cell is left for the mark.
TextTable::Cells originTitles(bool withList) {
  if (withList) return {" ", "File", "Chain", "List"};
  return {" ", "File", "Chain"};
}

TextTable::Cells originOf(const ProteinResult& protein, const Origin& origin) {
  const std::string file = protein.file.substr(origin.folder.size());
  if (origin.withList) return {" ", file, orAbsent(protein.chain), orAbsent(protein.list)};
  return {" ", file, orAbsent(protein.chain)};
}

TextTable::Cells joined(TextTable::Cells first, const TextTable::Cells& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

bool isExplained(const ReportStyle& style, const ProlineResult& proline) {
  const std::vector<std::string>& asked = style.residues;
  return style.explain &&
         (asked.empty() || std::find(asked.begin(), asked.end(), proline.number) != asked.end());
}

void writeProlines(const RunReport& report, const Origin& origin, const ReportStyle& style,
                   std::ostream& out) {
  TextTable table(joined(originTitles(origin.withList),
                         {"Before", "Proline", "After", "Shifts", "CG", "P_CIS", "P_CIS_NORM", "Call"}));
  forEachProline(report, [&](const ProteinResult& protein, const ProlineResult& proline) {
    TextTable::Cells cells = joined(
        originOf(protein, origin),
        {neighbourText(proline.previous, proline.previousNumber), "P" + proline.number,
         neighbourText(proline.next, proline.nextNumber),
         orAbsent(proline.previousCount) + " " + orAbsent(proline.count) + " " + orAbsent(proline.nextCount),
         orAbsent(proline.cgShift), orAbsent(proline.pCis), orAbsent(proline.pCisNorm), callText(proline)});
    cells.front() = markOf(proline.call);
    table.add(std::move(cells), proline.call == Call::cis,
              isExplained(style, proline) ? explained(proline) + '\n' : "");
  });
  table.write(style.colour, out);
}

std::string offsetText(const ProteinResult& protein, const std::string& atom) {
  const ReferencingOffset* offset = offsetOf(protein, atom);
  if (offset == nullptr || !std::isfinite(offset->offset)) return kAbsentCell;
  return fixedText(static_cast<double>(offset->offset), 3) + (callsForCorrection(*offset) ? "!" : "");
}

std::string correctionLegend(bool anyCorrection, bool anyCorrected) {
  if (anyCorrected) return "; ! taken away before predicting";
  return anyCorrection ? "; ! a correction is recommended" : "";
}

void writeOffsets(const RunReport& report, const Origin& origin, std::ostream& out) {
  TextTable table(joined(originTitles(origin.withList), {"Residues", "Shifts", "CA", "CB", "HA", "C'"}));
  bool anyCorrection = false;
  bool anyCorrected = false;
  forEachProtein(report, [&](const ProteinResult& protein) {
    TextTable::Cells cells = joined(originOf(protein, origin),
                                    {std::to_string(protein.length), std::to_string(protein.shiftCount)});
    for (const std::string& atom : kOffsetAtoms) {
      cells.push_back(offsetText(protein, atom));
      anyCorrection = anyCorrection || cells.back().back() == '!';
      const ReferencingOffset* offset = offsetOf(protein, atom);
      anyCorrected = anyCorrected || (offset != nullptr && offset->correctedBy);
    }
    table.add(std::move(cells), false);
  });
  out << "\nReferencing offsets (ppm)" << correctionLegend(anyCorrection, anyCorrected) << '\n';
  table.write(false, out);
}

void writeErrors(const RunReport& report, std::ostream& out) {
  if (countErrors(report) == 0) return;
  out << "\nNot predicted\n";
  forEachError(report, [&](const FileReport& file) { out << "   " << shown(file.error) << '\n'; });
}

std::size_t countProteins(const RunReport& report) {
  std::size_t count = 0;
  forEachProtein(report, [&](const ProteinResult&) { ++count; });
  return count;
}

std::size_t countProlines(const RunReport& report) {
  std::size_t count = 0;
  forEachProtein(report, [&](const ProteinResult& protein) { count += protein.prolines.size(); });
  return count;
}

void writeSummary(const RunReport& report, std::ostream& out) {
  out << '\n'
      << counted(countProlines(report), "proline", "prolines") << " in "
      << counted(countProteins(report), "chain", "chains") << " of "
      << counted(report.files.size() - countErrors(report), "file", "files") << ": "
      << countCalls(report, Call::cis) << " cis (*), " << countCalls(report, Call::trans) << " trans, "
      << countCalls(report, Call::undecided) << " undecided (?), " << countCalls(report, Call::none)
      << " without a prediction\n"
      << "cis: P_CIS_NORM at least " << numberText(kCisFrom) << "; trans: at most " << numberText(kTransUpTo)
      << "; undecided: between\n";
}

}  // namespace

void writeTable(const RunReport& report, const ReportStyle& style, std::ostream& out) {
  const Origin origin{hasSeveralLists(report), commonFolder(report)};
  if (!origin.folder.empty()) out << "Files in " << shown(origin.folder) << "\n\n";
  if (countProlines(report) > 0) writeProlines(report, origin, style, out);
  if (countProteins(report) > 0) writeOffsets(report, origin, out);
  writeErrors(report, out);
  writeSummary(report, out);
}

}  // namespace zorvela
