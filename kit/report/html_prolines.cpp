// The prolines of a chain, each with its evidence.
#include <algorithm>

#include "report/html_parts.h"
#include "report/html_pieces.h"
#include "report/walk.h"
#include "report/words.h"
#include "util/number.h"
#include "util/text.h"

namespace zorvela {

namespace {

std::string asSentence(const std::string& text) {
  return upper(text.substr(0, 1)) + text.substr(1) + ".";
}

std::string orDash(const std::string& text) {
  return text.empty() ? "–" : text;
}

/// " (as referenced 0.031, trans)", with the call if it differs.
std::string asReferencedText(const ProlineResult& proline) {
  if (!proline.callAsReferenced) return "";
  return " (as referenced " + probability(proline.pCisNormAsReferenced) +
         (dependsOnCorrection(proline) ? ", " + toText(*proline.callAsReferenced) : "") + ")";
}

// --- The table of contributions -----------------------------------------------------------------

std::string natsCells(double nats, const std::string& cssClass, const std::string& mark = "") {
  return "<td>" + natsText(nats) + mark + "</td><td class=\"bar\">" + natsBar(nats, cssClass) +
         "</td></tr>\n";
}

std::string natsCells(double nats) {
  return natsCells(nats, nats > 0 ? "c" : "t");
}

/// The expected information of a missing shift.
std::string missingCells(const Evidence& evidence, int index) {
  double bits = 0;
  for (const NextShift& next : evidence.next)
    if (next.index == index) bits = next.bits;
  return "<td colspan=\"2\" class=\"h\">" +
         (bits < kWorthMeasuring ? "" : "worth " + fixedText(bits, 2) + " bits") + "</td></tr>\n";
}

std::string shiftRow(const Evidence& evidence, int index, bool withCorrected) {
  const ShiftContribution& shift = evidence.shift(index);
  if (!shift.secondary && !shift.measurable) return "";
  const ShiftTexts texts = shiftTexts(shift, index);
  std::string row = "<tr><th scope=\"row\">" + atomName(index) + "</th>";
  const auto add = [&row](const std::string& text) { row += "<td>" + text + "</td>"; };
  add(orDash(texts.observed));
  if (withCorrected) add(texts.corrected);
  add(texts.cis);
  add(texts.trans);
  if (!shift.secondary) return row + missingCells(evidence, index);
  return row + natsCells(shift.nats, shift.nats > 0 ? "c" : "t", shift.clipped ? "‡" : "");
}

/// A row without a shift: the first of a residue, or the last of the table.
std::string headRow(const std::string& name, const std::string& what, bool withCorrected,
                    const std::string& scope = "rowgroup") {
  return "<tr class=\"g\"><th scope=\"" + scope + "\" colspan=\"" + (withCorrected ? "5" : "4") + "\">" +
         escaped(shortened(name, 8)) + " <span>" + what + "</span></th>";
}

std::string contributions(const ProlineResult& proline) {
  const Evidence& evidence = *proline.evidence;
  const bool withCorrected = hasCorrected(evidence);
  std::string text = "<table class=\"nats\"><thead><tr><th scope=\"col\">ppm</th><th scope=\"col\">obs.</th>";
  if (withCorrected) text += "<th scope=\"col\">corr.</th>";
  text +=
      "<th scope=\"col\">cis</th><th scope=\"col\">trans</th><th scope=\"col\">nats</th>"
      "<th scope=\"col\">trans | cis</th></tr></thead>\n";
  const auto group = [&](int residue, const std::string& name, const std::string& what,
                         const std::string& cells) {
    text += "<tbody>" + headRow(name, what, withCorrected) + cells;
    for (const int index : shiftOrder())
      if (shiftPlace(static_cast<std::size_t>(index)).residue == residue)
        text += shiftRow(evidence, index, withCorrected);
    text += "</tbody>\n";
  };
  group(-1, proline.previous + proline.previousNumber, "type", natsCells(evidence.before.nats));
  group(0, "P" + proline.number, "1 in 20 is cis", natsCells(Evidence::prior(), "p"));
  group(1, proline.next + proline.nextNumber, "type", natsCells(evidence.after.nats));
  return text + "<tbody>" + headRow("Sum", "", withCorrected, "row") +
         natsCells(evidence.logOdds(), letterOf(proline.call)) + "</tbody></table>\n";
}

// --- Around it ----------------------------------------------------------------------------------

/// "3 of 4" of those of N, HA, C, CA, CB, HN that the residue type has.
std::string assignedText(const ProteinResult& protein, int position) {
  const Assignment& assignment = protein.assignments[static_cast<std::size_t>(position) - 1];
  return std::to_string(assignment.present) + " of " + std::to_string(assignment.possible);
}

std::string tripletText(const ProteinResult& protein, const ProlineResult& proline) {
  return proline.previous + proline.previousNumber + " – P" + proline.number + " – " + proline.next +
         proline.nextNumber + ", shifts: " + assignedText(protein, proline.position - 1) + ", " +
         assignedText(protein, proline.position) + (proline.cgShift ? " and CG" : " without CG") + ", " +
         assignedText(protein, proline.position + 1);
}

std::string chanceText(const ProlineResult& proline) {
  const NextShift* best = worthMeasuring(proline);
  if (best == nullptr || best->decides.value_or(0) < kLeastChance) return "";
  return " With " + shiftName(proline, best->index) + " alone, the chance of a clear call is " +
         fixedText(*best->decides * 100, 0) + "\u00a0%.";
}

std::string structureText(const StructureFinding& finding) {
  std::string text =
      "<p><b>" + asSentence(toText(finding.verdict)) + "</b> " + escaped(finding.sentence) + "</p>\n";
  std::vector<std::string> each;
  for (const StructureFinding& one : inEachStructure(finding))
    each.push_back(one.sites.front().file + ": " + (one.call == BondState::none ? "no bond" : seenText(one)));
  return each.empty() ? text : text + bulletList(each);
}

/// The card below its headline.
std::string cardBody(const ProteinResult& protein, const ProlineResult& proline) {
  std::string text = paragraph("P_CIS_NORM " + probability(proline.pCisNorm) + asReferencedText(proline) +
                                   "; " + tripletText(protein, proline),
                               "faint") +
                     paragraph(asSentence(sentenceOf(proline)) + chanceText(proline));
  for (const std::string& sentence : {nextStep(proline), howOftenRight(proline), precisionNote(proline)})
    if (!sentence.empty()) text += paragraph(asSentence(sentence));
  if (proline.structure) text += structureText(*proline.structure);
  text += contributions(proline);
  const std::vector<ShiftContribution>& shifts = proline.evidence->shifts;
  if (std::any_of(shifts.begin(), shifts.end(), [](const ShiftContribution& shift) { return shift.clipped; }))
    text += paragraph("‡ Beyond the limit of its residue type; the limit is used.", "faint");
  return text;
}

bool isWorthALook(const ProlineResult& proline) {
  return proline.call != Call::trans || is(proline, Verdict::disagree) || is(proline, Verdict::mixed) ||
         differsFromFlag(proline) || dependsOnCorrection(proline);
}

std::string nameAndCall(const ProlineResult& proline) {
  return symbol(proline.call) + " " + escaped("P" + proline.number) + " <b>" + escaped(headline(proline)) +
         "</b>";
}

std::string line(const ProteinResult& protein, const ProlineResult& proline) {
  const std::string sentence = sentenceOf(proline);
  return "<details class=\"line\"><summary><span>" + nameAndCall(proline) + "</span><span class=\"bar\">" +
         natsBar(proline.evidence->logOdds(), letterOf(proline.call)) + "</span><span>" +
         escaped(sentence.substr(sentence.find(": ") + 2)) + "</span></summary>\n<div class=\"card\">" +
         cardBody(protein, proline) + "</div></details>\n";
}

// --- The table of all prolines ------------------------------------------------------------------

std::string geometry(const StructureFinding& finding) {
  if (finding.call == BondState::mixed) return modelsText(finding);
  if (const auto omega = meanOmega(finding)) return fixedText(*omega, 0) + "°";
  const auto step = meanCaToCa(finding);
  return step ? "CA–CA " + fixedText(*step, 1) + " Å" : "–";
}

/// Chain and number in the structure.
std::string placesText(const StructureFinding& finding) {
  std::vector<std::string> places;
  for (const BondSite& site : finding.sites)
    places.push_back((site.chain.empty() ? "" : site.chain + " ") + site.number);
  return orDash(escaped(enumerated(places, 4)));
}

Cells tableRow(const ProlineResult& proline) {
  std::string strongest = strongestOf(proline);
  std::replace(strongest.begin(), strongest.end(), ';', ' ');
  Cells row = {symbol(proline.call) + " " + escaped("P" + proline.number),
               escaped(orDash(proline.previous + proline.previousNumber)),
               escaped(orDash(proline.next + proline.nextNumber)),
               proline.cgShift ? fixedText(static_cast<double>(*proline.cgShift), 2) : "–",
               escaped(probability(proline.pCis)),
               escaped(probability(proline.pCisNorm) + asReferencedText(proline)),
               proline.reason.empty() ? toText(proline.call) : proline.reason,
               strongest,
               nextShiftOf(proline)};
  if (const auto& finding = proline.structure) {
    const std::string verdict = toText(finding->verdict);
    row.insert(row.end(), {finding->call == BondState::none ? "–" : toText(finding->call), geometry(*finding),
                           placesText(*finding),
                           finding->verdict == Verdict::disagree ? "<b>" + verdict + "</b>" : verdict});
  }
  return row;
}

}  // namespace

std::string prolineCards(const ProteinResult& protein, const std::string& figures) {
  std::string cards, lines;
  std::vector<std::string> without;
  for (const ProlineResult& proline : protein.prolines) {
    const std::string step = nextStep(proline);
    if (!proline.evidence)
      without.push_back("P" + proline.number + ": " + proline.reason + (step.empty() ? "" : "; " + step));
    else if (isWorthALook(proline))
      cards += "<article class=\"card\"><h2>" + nameAndCall(proline) + "</h2>\n" +
               cardBody(protein, proline) + "</article>\n";
    else
      lines += line(protein, proline);
  }
  return "<div class=\"grid\">\n" + cards + figures + "</div>\n" +
         (lines.empty() ? ""
                        : "<section class=\"trans\"><h2>Trans prolines</h2>\n" + lines + "</section>\n") +
         (without.empty() ? "" : "<h2>Without a prediction</h2>\n" + bulletList(without));
}

std::string prolineTable(const ProteinResult& protein, const std::string& name) {
  if (protein.prolines.empty()) return "";
  Cells titles = {"Proline",          "Before",           "After", "CG (ppm)", "P_CIS", "P_CIS_NORM", "Call",
                  "Strongest (nats)", "Next shift (bits)"};
  Cells classes = {"", "", "", "r", "r", "r", "", "", ""};
  if (protein.prolines.front().structure) {
    titles.insert(titles.end(), {"Structure", "|omega|", "Residue", "Verdict"});
    classes.insert(classes.end(), {"", "r", "", ""});
  }
  std::vector<Cells> rows;
  for (const ProlineResult& proline : protein.prolines) rows.push_back(tableRow(proline));
  return "<h2>All prolines</h2>\n" + htmlTable("All prolines of " + name, titles, classes, rows, "prolines");
}

}  // namespace zorvela
