// Writes the results of a run: table, CSV, JSON.
#include "zorvela/report.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <set>
#include <utility>

#include <nlohmann/json.hpp>

#include "util/text.h"

namespace zorvela {

namespace {

constexpr int kFormatVersion = 1;

template <class Visit>
void forEachProtein(const RunReport& report, Visit visit) {
  for (const FileReport& file : report.files)
    for (const ProteinResult& protein : file.proteins) visit(protein);
}

template <class Visit>
void forEachProline(const RunReport& report, Visit visit) {
  forEachProtein(report, [&](const ProteinResult& protein) {
    for (const ProlineResult& proline : protein.prolines) visit(protein, proline);
  });
}

template <class Visit>
void forEachError(const RunReport& report, Visit visit) {
  for (const FileReport& file : report.files)
    if (!file.error.empty()) visit(file);
}

const ReferencingOffset* offsetOf(const ProteinResult& protein, const std::string& atom) {
  for (const ReferencingOffset& offset : protein.offsets)
    if (offset.atom == atom) return &offset;
  return nullptr;
}

const std::array<std::string, 4> kOffsetAtoms = {"CA", "CB", "HA", "C"};

std::string fixed(float value, int decimals) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.*f", decimals, static_cast<double>(value));
  return text.data();
}

}  // namespace

std::size_t countCalls(const RunReport& report, Call call) {
  std::size_t count = 0;
  forEachProline(report, [&](const ProteinResult&, const ProlineResult& proline) {
    if (proline.call == call) ++count;
  });
  return count;
}

std::size_t countErrors(const RunReport& report) {
  std::size_t count = 0;
  forEachError(report, [&](const FileReport&) { ++count; });
  return count;
}

std::string numberText(float value) {
  std::array<char, 32> text{};
  const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
  return {text.data(), result.ptr};
}

// --- Table --------------------------------------------------------------------------------------

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
  return value ? fixed(*value, 3) : kAbsent;
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

/// Where a row comes from. The first cell is left for the mark.
TextTable::Cells originTitles(bool withList) {
  if (withList) return {" ", "File", "Chain", "List"};
  return {" ", "File", "Chain"};
}

TextTable::Cells originOf(const ProteinResult& protein, bool withList) {
  if (withList) return {" ", protein.file, orAbsent(protein.chain), orAbsent(protein.list)};
  return {" ", protein.file, orAbsent(protein.chain)};
}

TextTable::Cells joined(TextTable::Cells first, const TextTable::Cells& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

void writeProlines(const RunReport& report, bool colour, std::ostream& out) {
  const bool withList = hasSeveralLists(report);
  TextTable table(joined(originTitles(withList),
                         {"Before", "Proline", "After", "Shifts", "CG", "P_CIS", "P_CIS_NORM", "Call"}));
  forEachProline(report, [&](const ProteinResult& protein, const ProlineResult& proline) {
    TextTable::Cells cells = joined(
        originOf(protein, withList),
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
  return fixed(offset->offset, 3) + (callsForCorrection(*offset) ? "!" : "");
}

void writeOffsets(const RunReport& report, std::ostream& out) {
  const bool withList = hasSeveralLists(report);
  TextTable table(joined(originTitles(withList), {"Residues", "Shifts", "CA", "CB", "HA", "C'"}));
  bool anyCorrection = false;
  forEachProtein(report, [&](const ProteinResult& protein) {
    TextTable::Cells cells = joined(originOf(protein, withList),
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
      << counted(report.files.size(), "file", "files") << ": " << countCalls(report, Call::cis)
      << " cis (*), " << countCalls(report, Call::trans) << " trans, " << countCalls(report, Call::undecided)
      << " undecided (?), " << countCalls(report, Call::none) << " without a prediction\n"
      << "cis: P_CIS_NORM at least " << numberText(kCisFrom) << "; trans: at most " << numberText(kTransUpTo)
      << "; undecided: between\n";
}

}  // namespace

void writeTable(const RunReport& report, bool colour, std::ostream& out) {
  if (countProlines(report) > 0) writeProlines(report, colour, out);
  if (countProteins(report) > 0) writeOffsets(report, out);
  writeErrors(report, out);
  writeSummary(report, out);
}

// --- CSV ----------------------------------------------------------------------------------------

namespace {

constexpr const char* kCsvHeader =
    "file,chain,list,resid,position,prev,next,cs_cnt_prev,cs_cnt,cs_cnt_next,cg_shift,p_cis,p_cis_norm,call,"
    "reason,"
    "offset_ca,offset_cb,offset_ha,offset_c,to_correct";
// Columns of a failed file that stay empty: between the name and the call, and behind the reason.
constexpr std::size_t kEmptyBeforeCall = 12;
constexpr std::size_t kEmptyAfterReason = 5;

/// A cell as RFC 4180 has it.
std::string csvCell(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

std::string csvCell(const std::optional<float>& value) {
  return value ? numberText(*value) : "";
}

std::string csvCell(const std::optional<int>& value) {
  return value ? std::to_string(*value) : "";
}

std::string csvOffsets(const ProteinResult& protein) {
  std::string cells;
  std::string toCorrect;
  for (const std::string& atom : kOffsetAtoms) {
    const ReferencingOffset* offset = offsetOf(protein, atom);
    cells += ',';
    if (offset == nullptr || !std::isfinite(offset->offset)) continue;
    cells += numberText(offset->offset);
    if (callsForCorrection(*offset)) toCorrect += (toCorrect.empty() ? "" : " ") + atom;
  }
  return cells + "," + toCorrect;
}

}  // namespace

void writeCsv(const RunReport& report, std::ostream& out) {
  out << kCsvHeader << '\n';
  forEachProline(report, [&](const ProteinResult& protein, const ProlineResult& proline) {
    out << csvCell(protein.file) << ',' << csvCell(protein.chain) << ',' << csvCell(protein.list) << ','
        << csvCell(proline.number) << ',' << proline.position << ',' << csvCell(proline.previous) << ','
        << csvCell(proline.next) << ',' << csvCell(proline.previousCount) << ',' << csvCell(proline.count)
        << ',' << csvCell(proline.nextCount) << ',' << csvCell(proline.cgShift) << ','
        << csvCell(proline.pCis) << ',' << csvCell(proline.pCisNorm) << ',' << toText(proline.call) << ','
        << csvCell(proline.reason) << csvOffsets(protein) << '\n';
  });
  forEachError(report, [&](const FileReport& file) {
    out << csvCell(file.file) << std::string(kEmptyBeforeCall, ',') << ",error," << csvCell(file.error)
        << std::string(kEmptyAfterReason, ',') << '\n';
  });
}

// --- JSON ---------------------------------------------------------------------------------------

namespace {

using Json = nlohmann::ordered_json;

/// Through the shortest text, so that 0.1 in single precision is written 0.1; null if not finite.
Json jsonNumber(float value) {
  if (!std::isfinite(value)) return nullptr;
  return std::strtod(numberText(value).c_str(), nullptr);
}

template <class Value>
Json orNull(const std::optional<Value>& value) {
  if (!value) return nullptr;
  if constexpr (std::is_same_v<Value, float>)
    return jsonNumber(*value);
  else
    return *value;
}

Json orNull(const std::string& text) {
  if (text.empty()) return nullptr;
  return text;
}

Json toJson(const ProlineResult& proline) {
  return {{"resid", proline.number},
          {"position", proline.position},
          {"prev", orNull(proline.previous)},
          {"next", orNull(proline.next)},
          {"prev_resid", orNull(proline.previousNumber)},
          {"next_resid", orNull(proline.nextNumber)},
          {"cs_cnt_prev", orNull(proline.previousCount)},
          {"cs_cnt", orNull(proline.count)},
          {"cs_cnt_next", orNull(proline.nextCount)},
          {"cg_shift", orNull(proline.cgShift)},
          {"p_cis", orNull(proline.pCis)},
          {"p_cis_norm", orNull(proline.pCisNorm)},
          {"call", toText(proline.call)},
          {"reason", orNull(proline.reason)}};
}

Json toJson(const ReferencingOffset& offset) {
  return {{"atom", offset.atom},
          {"offset", jsonNumber(offset.offset)},
          {"error", jsonNumber(offset.error)},
          {"residues", offset.size},
          {"correction_recommended", callsForCorrection(offset)}};
}

Json toJson(const ProteinResult& protein) {
  Json prolines = Json::array();
  for (const ProlineResult& proline : protein.prolines) prolines.push_back(toJson(proline));
  Json offsets = Json::array();
  for (const ReferencingOffset& offset : protein.offsets) offsets.push_back(toJson(offset));
  return {{"file", protein.file},
          {"chain", orNull(protein.chain)},
          {"list", orNull(protein.list)},
          {"length", protein.length},
          {"shifts", protein.shiftCount},
          {"referencing", offsets},
          {"prolines", std::move(prolines)},
          {"notes", protein.notes}};
}

}  // namespace

void writeJson(const RunReport& report, std::ostream& out) {
  Json proteins = Json::array();
  forEachProtein(report, [&](const ProteinResult& protein) { proteins.push_back(toJson(protein)); });
  Json errors = Json::array();
  forEachError(report, [&](const FileReport& file) {
    errors.push_back({{"file", file.file}, {"message", file.error}});
  });
  const Json document = {
      {"format", "zorvela-kit run"},
      {"version", kFormatVersion},
      {"program", std::string("zorvela-kit ") + ZORVELA_VERSION},
      {"tables", report.tables},
      {"thresholds", {{"cis_from", jsonNumber(kCisFrom)}, {"trans_up_to", jsonNumber(kTransUpTo)}}},
      {"proteins", std::move(proteins)},
      {"errors", std::move(errors)}};
  // A file name need not be UTF-8, JSON must be.
  out << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace zorvela
