// The referencing offsets as a table, each with its error, its bound and a verdict.
#include <cmath>

#include "predict/referencing.h"
#include "report/html_parts.h"
#include "report/html_pieces.h"
#include "report/words.h"
#include "util/text.h"

namespace zorvela {

namespace {

std::string nameOf(const std::string& atom) {
  return atom == "C" ? "C′" : atom;
}

std::string figures(const ReferencingOffset& offset) {
  std::string text = signedFigure(static_cast<double>(offset.offset), decimalsOf(offset.atom));
  if (std::isfinite(offset.error))
    text += " ± " + figureText(static_cast<double>(offset.error), decimalsOf(offset.atom));
  return text;
}

/// A large error could hide an offset.
bool isKnown(const ReferencingOffset& offset) {
  return std::isfinite(offset.offset) &&
         2 * static_cast<double>(offset.error) <= correctionBound(offset.atom);
}

std::string verdictOf(const ReferencingOffset& offset) {
  if (!std::isfinite(offset.offset)) return "not known: too few residues";
  if (callsForCorrection(offset)) return offset.correctedBy ? "corrected" : "<b>to be corrected</b>";
  if (isUncertain(offset)) return "perhaps wrong";
  return isKnown(offset) ? "looks right" : "not known: the error is too large";
}

}  // namespace

std::string offsetsInWords(const ProteinResult& protein) {
  std::vector<std::string> found;
  bool isAnyKnown = false;
  bool isCarbonKnown = false;
  for (const ReferencingOffset& offset : protein.offsets) {
    if (offset.atom == "CB") continue;  // CA has its axis
    isAnyKnown = isAnyKnown || isKnown(offset);
    isCarbonKnown = isCarbonKnown || (offset.atom == "CA" && isKnown(offset));
    if (!callsForCorrection(offset) && !isUncertain(offset)) continue;
    const auto value = static_cast<double>(offset.offset);
    found.push_back((offset.atom == "CA" ? "13C" : nameOf(offset.atom)) + " " +
                    signedFigure(value, decimalsOf(offset.atom)) + " ppm" +
                    (offset.correctedBy    ? ", corrected"
                     : isUncertain(offset) ? ", perhaps"
                                           : ", not corrected"));
  }
  if (!found.empty()) return enumerated(found);
  if (!isAnyKnown) return "not known";
  return isCarbonKnown ? "none" : "13C not known";
}

std::string referencingTable(const ProteinResult& protein, const std::string& name) {
  std::vector<Cells> rows;
  for (const ReferencingOffset& offset : protein.offsets)
    rows.push_back({nameOf(offset.atom), std::isfinite(offset.offset) ? figures(offset) : "–",
                    "± " + figureText(correctionBound(offset.atom), 2), verdictOf(offset)});
  return "<div><h2>Referencing</h2>\n" +
         htmlTable("Referencing of " + name, {"Atom", "Offset (ppm)", "Bound", "Verdict"}, {"", "r", "r", ""},
                   rows) +
         "</div>\n";
}

}  // namespace zorvela
