#include "report/html_chain.h"

#include <algorithm>

#include "report/html_cards.h"
#include "report/html_pieces.h"
#include "report/pictures.h"
#include "report/svg.h"
#include "report/walk.h"
#include "report/words.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/report.h"

namespace zorvela {

namespace {

constexpr std::size_t kNotesShown = 5;

std::string markCaption(const ProteinResult& protein) {
  return structureSentence(protein).empty() ? "" : " Ring: the structure agrees; square: it disagrees.";
}

std::string chainFigure(const ProteinResult& protein) {
  if (protein.assignments.empty()) return "";
  return "<figure><div class=\"grid strips\">" + chainPicture(protein) +
         "</div><figcaption>Lines of 50 residues. Band: share of N, HA, C, CA, CB, HN that is assigned, none "
         "(hollow) to all (dark)." +
         markCaption(protein) + "</figcaption></figure>\n";
}

std::string cbCgFigure(const ProteinResult& protein, const ClassStatistics& classes) {
  const std::string picture = cbCgPicture(protein, classes);
  if (picture.empty()) return "";
  return "<figure><h2>" + escaped(cbCgTitle(protein)) + "</h2>\n" + picture + "<figcaption>" +
         escaped(
             "Ellipses: one and two standard deviations of each class. Between the lines, CB − CG is "
             "unclear. Marks on the axis: no CG." +
             offAxesText(protein, classes) + markCaption(protein)) +
         "</figcaption></figure>\n";
}

std::string geometry(const StructureFinding& finding) {
  if (finding.call == StructureCall::mixed) return modelsText(finding);
  if (const auto omega = meanOmega(finding)) return fixedText(*omega, 0) + "°";
  const auto step = meanCaToCa(finding);
  return step ? "CA–CA " + fixedText(*step, 1) + " Å" : "–";
}

/// Chain and number in the structure.
std::string placesText(const StructureFinding& finding) {
  std::vector<std::string> places;
  for (const BondSite& site : finding.sites)
    places.push_back((site.chain.empty() ? "" : site.chain + " ") + site.number);
  return places.empty() ? "–" : escaped(enumerated(places, 4));
}

Cells structureCells(const StructureFinding& finding) {
  const std::string verdict = toText(finding.verdict);
  return {finding.call == StructureCall::none ? "–" : toText(finding.call), geometry(finding),
          placesText(finding), finding.verdict == Verdict::disagree ? "<b>" + verdict + "</b>" : verdict};
}

Cells tableRow(const ProlineResult& proline) {
  const std::string cg = proline.cgShift ? fixedText(static_cast<double>(*proline.cgShift), 2) : "–";
  std::string strongest = strongestOf(proline);
  std::replace(strongest.begin(), strongest.end(), ';', ' ');
  return {symbol(proline.call) + " " + escaped("P" + proline.number),
          escaped(residueName(proline.previous, proline.previousNumber)),
          escaped(residueName(proline.next, proline.nextNumber)),
          cg,
          escaped(probability(proline.pCis)),
          escaped(probability(proline.pCisNorm) + asReferencedText(proline)),
          proline.reason.empty() ? toText(proline.call) : proline.reason,
          strongest,
          nextShiftOf(proline)};
}

std::string table(const ProteinResult& protein, const std::string& name) {
  if (protein.prolines.empty()) return "";
  Cells titles = {"Proline",          "Before",           "After", "CG (ppm)", "P_CIS", "P_CIS_NORM", "Call",
                  "Strongest (nats)", "Next shift (bits)"};
  Cells classes = {"", "", "", "r", "r", "r", "", "", ""};
  if (hasFindings(protein)) {
    titles.insert(titles.end(), {"Structure", "|omega|", "Residue", "Verdict"});
    classes.insert(classes.end(), {"", "r", "", ""});
  }
  std::vector<Cells> rows;
  for (const ProlineResult& proline : protein.prolines) {
    rows.push_back(tableRow(proline));
    if (!proline.structure) continue;
    for (std::string& cell : structureCells(*proline.structure)) rows.back().push_back(std::move(cell));
  }
  return "<h2>All prolines</h2>\n" + htmlTable("All prolines of " + name, titles, classes, rows, "prolines");
}

std::string structures(const ProteinResult& protein) {
  if (protein.structureNotes.empty() && protein.matches.empty()) return "";
  std::vector<std::string> chains;
  for (const ChainMatch& match : protein.matches) chains.push_back(toText(match));
  return "<h2>Comparison with the structure</h2>\n" +
         (chains.empty() ? "" : paragraph("Compared with " + enumerated(chains, chains.size()) + ".")) +
         (protein.structureNotes.empty() ? "" : bulletList(protein.structureNotes));
}

std::string notes(const ProteinResult& protein) {
  const std::vector<std::string> others = otherNotes(protein);  // the correction is in the answer
  if (others.empty()) return "";
  const std::string list = bulletList(others);
  const std::string title = counted(others.size(), "note", "notes") + " on the input file";
  if (others.size() <= kNotesShown) return "<h2>" + title + "</h2>\n" + list;
  return fold(title, list);
}

}  // namespace

std::size_t countOf(const ProteinResult& protein, Call call) {
  return static_cast<std::size_t>(
      std::count_if(protein.prolines.begin(), protein.prolines.end(),
                    [call](const ProlineResult& proline) { return proline.call == call; }));
}

bool hasFindings(const ProteinResult& protein) {
  return std::any_of(protein.prolines.begin(), protein.prolines.end(),
                     [](const ProlineResult& proline) { return proline.structure.has_value(); });
}

std::string answer(const ProteinResult& protein) {
  const std::size_t count = protein.prolines.size();
  if (count == 0) return "The sequence has no proline.";
  const std::size_t cis = countOf(protein, Call::cis);
  const std::size_t none = countOf(protein, Call::none);
  std::string text;
  if (none == count)
    text = count == 1 ? "The only proline has no prediction." : "None of the prolines has a prediction.";
  else if (cis > 0)
    text = std::to_string(cis) + " of " + counted(count, "proline", "prolines") +
           (cis == 1 ? " is" : " are") + " cis: " + namesOf(protein, Call::cis) + ".";
  else
    text = "None of " + counted(count, "proline", "prolines") + " is called cis.";
  if (countOf(protein, Call::undecided) > 0) text += " Undecided: " + namesOf(protein, Call::undecided) + ".";
  if (hasFindings(protein)) {
    const std::string sentence = structureSentence(protein);
    const std::string mixed = namesOf(protein, Verdict::mixed);
    if (!sentence.empty()) text += " " + sentence;
    if (!mixed.empty()) text += " Models contradict each other: " + mixed + ".";
    if (sentence.empty() && mixed.empty()) text += " No call could be compared with a structure.";
  }
  if (!protein.correction.empty()) text += " " + protein.correction + ".";
  return text;
}

std::string chainReport(const ProteinResult& protein, const std::string& name,
                        const ClassStatistics& classes) {
  return paragraph(counted(static_cast<std::size_t>(protein.length), "residue", "residues") + ", " +
                       counted(static_cast<std::size_t>(protein.shiftCount), "shift", "shifts") + " in use",
                   "faint") +
         chainFigure(protein) +
         prolineCards(protein, cbCgFigure(protein, classes) + referencingTable(protein, name)) +
         table(protein, name) + structures(protein) + notes(protein);
}

}  // namespace zorvela
