// The results as a table for people.
#include <algorithm>
#include <cmath>
#include <ostream>
#include <set>
#include <utility>

#include "report/fields.h"
#include "report/walk.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/report.h"

namespace zorvela {

namespace {

constexpr const char* kBoldMagenta = "\033[1;35m";
constexpr const char* kPlain = "\033[0m";
const std::string kAbsent = "-";

/// Characters on the screen: a character of several bytes counts once.
std::size_t screenWidth(const std::string& text) {
  std::size_t width = 0;
  for (const char c : text)
    if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) ++width;
  return width;
}

/// Rows of text in columns as wide as their widest cell, two blanks between them.
class TextTable {
 public:
  using Cells = std::vector<std::string>;

  explicit TextTable(const Cells& titles) { add(titles, false); }

  void add(Cells cells, bool standsOut) {
    widths.resize(std::max(widths.size(), cells.size()), 0);
    for (std::size_t i = 0; i < cells.size(); ++i) {
      cells[i] = withoutControls(cells[i]);
      widths[i] = std::max(widths[i], screenWidth(cells[i]));
    }
    rows.push_back({std::move(cells), standsOut});
  }

  void write(bool colour, std::ostream& out) const {
    for (const Row& row : rows) {
      const bool painted = colour && row.standsOut;
      out << (painted ? kBoldMagenta : "") << line(row.cells) << (painted ? kPlain : "") << '\n';
    }
  }

 private:
  struct Row {
    Cells cells;
    bool standsOut;
  };

  std::string line(const Cells& cells) const {
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (i > 0) text += "  ";
      text += cells[i] + std::string(widths[i] - screenWidth(cells[i]), ' ');
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
  }

  std::vector<Row> rows;
  std::vector<std::size_t> widths;
};

std::string orAbsent(const std::string& text) {
  return text.empty() ? kAbsent : text;
}

std::string orAbsent(const std::optional<float>& value) {
  return value ? fixedText(static_cast<double>(*value), 3) : kAbsent;
}

std::string orAbsent(const std::optional<int>& value) {
  return value ? std::to_string(*value) : kAbsent;
}

std::string neighbourText(const std::string& name, const std::string& number) {
  return name.empty() ? kAbsent : name + number;
}

std::string markOf(Call call) {
  if (call == Call::cis) return "*";
  return call == Call::undecided ? "?" : "";
}

std::string callText(const ProlineResult& proline) {
  return proline.reason.empty() ? toText(proline.call) : kAbsent + " (" + proline.reason + ")";
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

void writeProlines(const RunReport& report, const Origin& origin, bool colour, std::ostream& out) {
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
    table.add(std::move(cells), proline.call == Call::cis);
  });
  table.write(colour, out);
}

std::string offsetText(const ProteinResult& protein, const std::string& atom) {
  const ReferencingOffset* offset = offsetOf(protein, atom);
  if (offset == nullptr || !std::isfinite(offset->offset)) return kAbsent;
  return fixedText(static_cast<double>(offset->offset), 3) + (callsForCorrection(*offset) ? "!" : "");
}

void writeOffsets(const RunReport& report, const Origin& origin, std::ostream& out) {
  TextTable table(joined(originTitles(origin.withList), {"Residues", "Shifts", "CA", "CB", "HA", "C'"}));
  bool anyCorrection = false;
  forEachProtein(report, [&](const ProteinResult& protein) {
    TextTable::Cells cells = joined(originOf(protein, origin),
                                    {std::to_string(protein.length), std::to_string(protein.shiftCount)});
    for (const std::string& atom : kOffsetAtoms) {
      cells.push_back(offsetText(protein, atom));
      anyCorrection = anyCorrection || cells.back().back() == '!';
    }
    table.add(std::move(cells), false);
  });
  out << "\nReferencing offsets (ppm)" << (anyCorrection ? "; ! a correction is recommended\n" : "\n");
  table.write(false, out);
}

void writeErrors(const RunReport& report, std::ostream& out) {
  if (countErrors(report) == 0) return;
  out << "\nNot predicted\n";
  forEachError(report, [&](const FileReport& file) { out << "   " << withoutControls(file.error) << '\n'; });
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
      << counted(report.files.size() - countErrors(report), "file", "files") << ": " << countCalls(report, Call::cis)
      << " cis (*), " << countCalls(report, Call::trans) << " trans, " << countCalls(report, Call::undecided)
      << " undecided (?), " << countCalls(report, Call::none) << " without a prediction\n"
      << "cis: P_CIS_NORM at least " << numberText(kCisFrom) << "; trans: at most " << numberText(kTransUpTo)
      << "; undecided: between\n";
}

}  // namespace

void writeTable(const RunReport& report, const ReportStyle& style, std::ostream& out) {
  const Origin origin{hasSeveralLists(report), commonFolder(report)};
  if (!origin.folder.empty()) out << "Files in " << withoutControls(origin.folder) << "\n\n";
  if (countProlines(report) > 0) writeProlines(report, origin, style.colour, out);
  if (countProteins(report) > 0) writeOffsets(report, origin, out);
  writeErrors(report, out);
  writeSummary(report, out);
}

}  // namespace zorvela
