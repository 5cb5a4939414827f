// The formats, and what they share: counts, names and warnings. A new format is a file and a line here.
#include "zorvela/report.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "report/walk.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

bool hasSeveralLists(const RunReport& report) {
  for (const FileReport& file : report.files) {
    std::set<std::string> chains;
    for (const ProteinResult& protein : file.proteins)
      if (!chains.insert(protein.chain).second) return true;
  }
  return false;
}

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

std::string offsetWarning(const ReferencingOffset& offset) {
  const std::string size = fixedText(std::fabs(static_cast<double>(offset.offset)), 2);
  const std::string error = fixedText(static_cast<double>(offset.error), 2);
  return (offset.atom == "C" ? "C'" : offset.atom) + " shifts seem " + size + " ppm too " +
         (offset.offset > 0 ? "high" : "low") + " (error " + error + " ppm, " + std::to_string(offset.size) +
         " residues) and are not corrected";
}

std::string flagWarning(const ProlineResult& proline) {
  return "P" + proline.number + " is marked " + (*proline.cisFlag ? "cis" : "trans") +
         " in the file but predicted " + toText(proline.call) + " (" +
         fixedText(static_cast<double>(*proline.pCisNorm), 3) + ")";
}

}  // namespace

const std::vector<ReportFormat>& reportFormats() {
  static const std::vector<ReportFormat> formats = {
      {"table", writeTable}, {"csv", writeCsv}, {"json", writeJson}, {"html", writeHtml}};
  return formats;
}

void writeReport(const std::string& format, const RunReport& report, const ReportStyle& style,
                 std::ostream& out) {
  for (const ReportFormat& known : reportFormats())
    if (format == known.name) {
      known.write(report, style, out);
      return;
    }
  std::string names;
  for (const ReportFormat& known : reportFormats())
    names += (names.empty() ? "" : ", ") + std::string(known.name);
  throw Error("unknown report format \"" + format + "\"; use one of " + names);
}

std::size_t countCalls(const RunReport& report, Call call) {
  return countIf(report, [call](const ProlineResult& proline) { return is(proline, call); });
}

std::size_t countVerdicts(const RunReport& report, Verdict verdict) {
  return countIf(report, [verdict](const ProlineResult& proline) { return is(proline, verdict); });
}

std::size_t countErrors(const RunReport& report) {
  return static_cast<std::size_t>(std::count_if(report.files.begin(), report.files.end(),
                                                [](const FileReport& file) { return !file.error.empty(); }));
}

std::string structureSentence(const ProteinResult& protein) {
  const std::string disagreeing = enumerated(namesOf(protein, Verdict::disagree));
  const std::string agreeing = enumerated(namesOf(protein, Verdict::agree));
  if (disagreeing.empty()) return agreeing.empty() ? "" : "The structure agrees: " + agreeing + ".";
  return "The structure disagrees: " + disagreeing + "." +
         (agreeing.empty() ? "" : " It agrees: " + agreeing + ".");
}

std::vector<std::string> warningsOf(const ProteinResult& protein) {
  std::vector<std::string> warnings;
  for (const ReferencingOffset& offset : protein.offsets)
    if (callsForCorrection(offset) && !offset.correctedBy) warnings.push_back(offsetWarning(offset));
  for (const ProlineResult& proline : protein.prolines)
    if (differsFromFlag(proline)) warnings.push_back(flagWarning(proline));
  return warnings;
}

Origin::Origin(const RunReport& report) : withList(hasSeveralLists(report)), folder(commonFolder(report)) {}

}  // namespace zorvela
