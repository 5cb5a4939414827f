// The results as a table for people.
#include <algorithm>
#include <cmath>
#include <ostream>
#include <utility>
#include <vector>

#include "report/walk.h"
#include "report/words.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/report.h"

namespace zorvela {

namespace {

using Cells = std::vector<std::string>;

struct Row {
  Cells cells;
  bool standsOut = false;
  std::string below = {};  ///< whole lines that follow it
};

/// Characters on the screen: a character of several bytes counts once.
std::size_t screenWidth(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

/// Writes columns as wide as their widest cell, two blanks between them.
void write(std::vector<Row> rows, bool colour, std::ostream& out) {
  std::vector<std::size_t> widths;
  for (Row& row : rows) {
    widths.resize(std::max(widths.size(), row.cells.size()));
    for (std::size_t i = 0; i < row.cells.size(); ++i) {
      row.cells[i] = shown(row.cells[i]);
      widths[i] = std::max(widths[i], screenWidth(row.cells[i]));
    }
  }
  for (const Row& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.cells.size(); ++i)
      line += (i > 0 ? "  " : "") + row.cells[i] + std::string(widths[i] - screenWidth(row.cells[i]), ' ');
    line.erase(line.find_last_not_of(' ') + 1);
    if (colour && row.standsOut) line = "\033[1;35m" + line + "\033[0m";  // bold magenta
    out << line << '\n' << row.below;
  }
}

// --- Cells ----------------------------------------------------------------------------------------

const std::string kAbsentCell = "-";

std::string orAbsent(const std::string& text) {
  return text.empty() ? kAbsentCell : text;
}

std::string orAbsent(const std::optional<float>& value) {
  return value ? fixedText(static_cast<double>(*value), 3) : kAbsentCell;
}

std::string orAbsent(const std::optional<int>& value) {
  return value ? std::to_string(*value) : kAbsentCell;
}

std::string markOf(const ProlineResult& proline) {
  if (is(proline, Verdict::disagree)) return "!";
  if (proline.call == Call::cis) return "*";
  return proline.call == Call::undecided ? "?" : "";
}

std::string callText(const ProlineResult& proline) {
  std::string call =
      proline.reason.empty() ? toText(proline.call) : kAbsentCell + " (" + proline.reason + ")";
  if (!dependsOnCorrection(proline)) return call;
  return call + " (as referenced " + toText(*proline.callAsReferenced) + ")";
}

bool isAnyCorrected(const RunReport& report) {
  bool isAny = false;
  forEachProtein(report, [&](const ProteinResult& protein) { isAny = isAny || !protein.correction.empty(); });
  return isAny;
}

std::string nameOf(const ProteinResult& protein) {
  return protein.file + (protein.chain.empty() ? "" : " chain " + protein.chain);
}

/// The corrections come before everything else.
void writeCorrections(const RunReport& report, std::ostream& out) {
  const bool isOnly = report.files.size() == 1 && report.files.front().proteins.size() == 1;
  forEachProtein(report, [&](const ProteinResult& protein) {
    if (!protein.correction.empty())
      out << (isOnly ? "" : shown(nameOf(protein)) + ": ") << protein.correction << '\n';
  });
  if (isAnyCorrected(report)) out << '\n';
}

/// The origin of a row. The first cell is left for the mark.
Cells originTitles(bool withList) {
  if (withList) return {" ", "File", "Chain", "List"};
  return {" ", "File", "Chain"};
}

Cells originOf(const ProteinResult& protein, const Origin& origin) {
  const std::string file = protein.file.substr(origin.folder.size());
  if (origin.withList) return {" ", file, orAbsent(protein.chain), orAbsent(protein.list)};
  return {" ", file, orAbsent(protein.chain)};
}

Cells joined(Cells first, const Cells& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

bool isExplained(const ReportStyle& style, const ProlineResult& proline) {
  const std::vector<std::string>& asked = style.residues;
  return style.explain &&
         (asked.empty() || std::find(asked.begin(), asked.end(), proline.number) != asked.end());
}

// --- Structures -----------------------------------------------------------------------------------

constexpr std::size_t kMostSites = 4;

std::string geometryText(const StructureFinding& finding) {
  if (const auto omega = meanOmega(finding)) return fixedText(*omega, 0);
  if (const auto step = meanCaToCa(finding)) return "CA-CA " + fixedText(*step, 1) + " A";
  return kAbsentCell;
}

/// Chain and number in the structure; with the file where there are several.
std::string sitesText(const StructureFinding& finding, bool withFile) {
  std::vector<std::string> texts;
  for (const BondSite& site : finding.sites)
    texts.push_back((withFile ? site.file + " " : "") + (site.chain.empty() ? "" : site.chain + " ") +
                    site.residue + site.number);
  return orAbsent(enumerated(texts, kMostSites));
}

Cells structureCells(const StructureFinding& finding, bool withFile, const std::string& verdict) {
  return {finding.call == BondState::none ? kAbsentCell : toText(finding.call), orAbsent(modelsText(finding)),
          geometryText(finding), sitesText(finding, withFile), verdict};
}

/// The findings for all prolines except those that agree.
void writeSentences(const RunReport& report, std::ostream& out) {
  bool isFirst = true;
  forEachProline(report, [&](const ProteinResult& protein, const ProlineResult& proline) {
    if (!proline.structure || proline.structure->verdict == Verdict::agree) return;
    if (isFirst) out << '\n';
    isFirst = false;
    out << (proline.structure->verdict == Verdict::disagree ? "!  " : "   ")
        << shown(nameOf(protein) + " P" + proline.number + ": " + proline.structure->sentence) << '\n';
  });
}

void writeVerdicts(const RunReport& report, std::ostream& out) {
  std::vector<std::string> counts;
  for (const Verdict verdict : {Verdict::agree, Verdict::disagree, Verdict::undecided, Verdict::mixed,
                                Verdict::noPrediction, Verdict::notInStructure})
    if (const std::size_t count = countVerdicts(report, verdict); count > 0)
      counts.push_back(std::to_string(count) + " " + toText(verdict) +
                       (verdict == Verdict::disagree ? " (!)" : ""));
  out << counted(report.structures.size(), "structure", "structures") << ": "
      << (counts.empty() ? "nothing to compare" : enumerated(counts)) << '\n'
      << "cis: |omega| up to " << fixedText(kCisOmegaUpTo, 0) << " degrees; trans: at least "
      << fixedText(kTransOmegaFrom, 0) << " degrees; twisted: between\n";
}

// --- The parts of the table -----------------------------------------------------------------------

void writeProlines(const RunReport& report, const Origin& origin, const ReportStyle& style,
                   std::ostream& out) {
  const bool withBoth = isAnyCorrected(report);
  Cells titles = joined(originTitles(origin.withList),
                        {"Before", "Proline", "After", "Shifts", "CG", "P_CIS", "P_CIS_NORM", "Call"});
  if (withBoth) titles.insert(titles.end() - 1, "As referenced");
  if (!report.structures.empty())
    titles = joined(titles, {"Structure", "Models", "|omega|", "Residue", "Verdict"});
  std::vector<Row> rows = {{titles}};
  forEachProline(report, [&](const ProteinResult& protein, const ProlineResult& proline) {
    Cells cells = joined(
        originOf(protein, origin),
        {orAbsent(proline.previous + proline.previousNumber), "P" + proline.number,
         orAbsent(proline.next + proline.nextNumber),
         orAbsent(proline.previousCount) + " " + orAbsent(proline.count) + " " + orAbsent(proline.nextCount),
         orAbsent(proline.cgShift), orAbsent(proline.pCis), orAbsent(proline.pCisNorm)});
    if (withBoth) cells.push_back(orAbsent(proline.pCisNormAsReferenced));
    cells.push_back(callText(proline));
    cells.front() = markOf(proline);
    rows.push_back({cells, proline.call == Call::cis || is(proline, Verdict::disagree)});
    if (const auto& finding = proline.structure) {
      rows.back().cells =
          joined(cells, structureCells(*finding, report.structures.size() > 1, toText(finding->verdict)));
      for (const StructureFinding& one : inEachStructure(*finding))
        rows.push_back({joined(Cells(cells.size(), " "), structureCells(one, true, " "))});
    }
    if (isExplained(style, proline)) rows.back().below = explained(proline) + '\n';
  });
  write(std::move(rows), style.colour, out);
}

std::string offsetText(const ReferencingOffset& offset) {
  if (!std::isfinite(offset.offset)) return kAbsentCell;
  return fixedText(static_cast<double>(offset.offset), 3) + (callsForCorrection(offset) ? "!"
                                                             : isUncertain(offset)      ? "?"
                                                                                        : "");
}

/// Explains the marks that occur in the table of offsets.
std::string legendOf(const RunReport& report) {
  bool isAnyTaken = false;
  bool isAnyKept = false;
  bool isAnyUncertain = false;
  forEachProtein(report, [&](const ProteinResult& protein) {
    for (const ReferencingOffset& offset : protein.offsets) {
      isAnyTaken = isAnyTaken || offset.correctedBy;
      isAnyKept = isAnyKept || (callsForCorrection(offset) && !offset.correctedBy);
      isAnyUncertain = isAnyUncertain || isUncertain(offset);
    }
  });
  return std::string(isAnyTaken  ? "; ! subtracted before predicting"
                     : isAnyKept ? "; ! a correction is recommended"
                                 : "") +
         (isAnyUncertain ? "; ? large but uncertain, kept" : "");
}

void writeOffsets(const RunReport& report, const Origin& origin, std::ostream& out) {
  std::vector<Row> rows = {
      {joined(originTitles(origin.withList), {"Residues", "Shifts", "CA", "CB", "HA", "C'"})}};
  forEachProtein(report, [&](const ProteinResult& protein) {
    rows.push_back({joined(originOf(protein, origin),
                           {std::to_string(protein.length), std::to_string(protein.shiftCount)})});
    for (const ReferencingOffset& offset : protein.offsets) rows.back().cells.push_back(offsetText(offset));
  });
  out << "\nReferencing offsets (ppm)" << legendOf(report) << '\n';
  write(std::move(rows), false, out);
}

void writeErrors(const RunReport& report, std::ostream& out) {
  if (countErrors(report) == 0) return;
  out << "\nNot predicted\n";
  for (const FileReport& file : report.files)
    if (!file.error.empty()) out << "   " << shown(file.error) << '\n';
}

std::size_t countProteins(const RunReport& report) {
  std::size_t count = 0;
  forEachProtein(report, [&](const ProteinResult&) { ++count; });
  return count;
}

std::size_t countProlines(const RunReport& report) {
  return countIf(report, [](const ProlineResult&) { return true; });
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
  writeCorrections(report, out);
  const Origin origin(report);
  if (!origin.folder.empty()) out << "Files in " << shown(origin.folder) << "\n\n";
  if (countProlines(report) > 0) writeProlines(report, origin, style, out);
  writeSentences(report, out);
  if (countProteins(report) > 0) writeOffsets(report, origin, out);
  writeErrors(report, out);
  if (countProteins(report) == 0) return;
  writeSummary(report, out);
  if (const std::string unseen = unseenSentence(report); !unseen.empty()) out << unseen << '\n';
  if (!report.structures.empty()) writeVerdicts(report, out);
}

}  // namespace zorvela
