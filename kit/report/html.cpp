// The report as one page of HTML: an index where there are several chains, then for each chain its pictures,
// its cards and its table, then how to read it.
#include <algorithm>
#include <array>
#include <cmath>
#include <ostream>

#include "report/html_style.h"
#include "report/measured_calls.h"
#include "report/pictures.h"
#include "report/svg.h"
#include "report/walk.h"
#include "report/words.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/report.h"
#include "zorvela/version.h"

namespace zorvela {

namespace {

constexpr std::size_t kNotesShown = 5;
/// Probabilities that would be printed as 0.000 or 1.000.
constexpr double kSmallest = 0.0005;
/// A smaller chance would be printed as 0 %.
constexpr double kSmallestChance = 0.005;

// --- Small pieces -------------------------------------------------------------------------------

std::string classed(const std::string& cssClass) {
  return cssClass.empty() ? "" : " class=\"" + cssClass + "\"";
}

std::string paragraph(const std::string& text, const std::string& cssClass = "") {
  return "<p" + classed(cssClass) + ">" + escaped(text) + "</p>\n";
}

std::string bulletList(const std::vector<std::string>& items) {
  std::string list = "<ul>\n";
  for (const std::string& item : items) list += "<li>" + escaped(item) + "</li>\n";
  return list + "</ul>\n";
}

using Cells = std::vector<std::string>;

/// A table of cells that are markup. `classes` are those of the columns; a title stands to the right (r)
/// where its cells do.
std::string htmlTable(const Cells& titles, const Cells& classes, const std::vector<Cells>& rows,
                      const std::string& cssClass = "") {
  std::string text = "<div class=\"wide\"><table" + classed(cssClass) + "><thead><tr>";
  for (std::size_t i = 0; i < titles.size(); ++i)
    text += "<th" + classed(classes[i][0] == 'r' ? classes[i] : "") + ">" + titles[i] + "</th>";
  text += "</tr></thead>\n<tbody>\n";
  for (const Cells& row : rows) {
    text += "<tr>";
    for (std::size_t i = 0; i < row.size(); ++i) text += "<td" + classed(classes[i]) + ">" + row[i] + "</td>";
    text += "</tr>\n";
  }
  return text + "</tbody></table></div>\n";
}

std::string fold(const std::string& title, const std::string& content) {
  return "<details><summary>" + title + "</summary>\n" + content + "</details>\n";
}

std::string symbol(Call call) {
  return R"(<svg class="i" viewBox="-7 -7 14 14" aria-hidden="true"><use href="#)" + letterOf(call) +
         R"("/></svg>)";
}

std::string probability(const std::optional<float>& value) {
  if (!value) return "–";
  const auto p = static_cast<double>(*value);
  if (p < kSmallest) return "< 0.001";
  return p >= 1 - kSmallest ? "> 0.999" : fixedText(p, 3);
}

std::string asSentence(const std::string& text) {
  return upper(text.substr(0, 1)) + text.substr(1) + ".";
}

std::string residueName(const std::string& name, const std::string& number) {
  return name.empty() ? "–" : name + number;
}

std::size_t countOf(const ProteinResult& protein, Call call) {
  return static_cast<std::size_t>(
      std::count_if(protein.prolines.begin(), protein.prolines.end(),
                    [call](const ProlineResult& proline) { return proline.call == call; }));
}

std::string chainName(const ProteinResult& protein) {
  std::string name = protein.file;
  if (!protein.chain.empty()) name += ", chain " + protein.chain;
  if (!protein.list.empty()) name += ", shift list " + protein.list;
  return name;
}

bool hasFindings(const ProteinResult& protein) {
  return std::any_of(protein.prolines.begin(), protein.prolines.end(),
                     [](const ProlineResult& proline) { return proline.structure.has_value(); });
}

/// "1 of 6 prolines is cis: P117. Undecided: P31."
std::string answer(const ProteinResult& protein) {
  const std::size_t count = protein.prolines.size();
  if (count == 0) return "The sequence has no proline.";
  const std::size_t cis = countOf(protein, Call::cis);
  const std::size_t none = countOf(protein, Call::none);
  std::string text;
  if (none == count)
    text = count == 1 ? "The one proline has no prediction." : "None of the prolines has a prediction.";
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
  return text;
}

// --- One chain ----------------------------------------------------------------------------------

std::string figure(const std::string& title, const std::string& picture, const std::string& caption) {
  return "<figure><h3>" + escaped(title) + "</h3>\n" + picture + "<figcaption>" + escaped(caption) +
         "</figcaption></figure>\n";
}

std::string markCaption(const ProteinResult& protein) {
  return structureSentence(protein).empty() ? "" : " Ring: the structure agrees; square: it disagrees.";
}

std::string chainFigure(const ProteinResult& protein) {
  if (protein.assignments.empty()) return "";
  return "<figure><div class=\"grid strips\">" + chainPicture(protein) +
         "</div><figcaption>Lines of 60 residues. Band: share of N, HA, C, CA, CB, HN that is assigned, none "
         "(hollow) to all (dark)." +
         markCaption(protein) + "</figcaption></figure>\n";
}

std::string figures(const ProteinResult& protein, const ClassStatistics& classes) {
  std::string text = chainFigure(protein) + "<div class=\"grid\">\n";
  if (const std::string picture = cbCgPicture(protein, classes); !picture.empty())
    text += figure(cbCgTitle(protein), picture,
                   "Ellipses: one and two deviations of each class. Marks on the axis: no CG. Names that "
                   "find no place are in the table." +
                       markCaption(protein));
  text += figure(referencingTitle(protein), referencingPicture(protein),
                 "Offsets of all shifts of an atom, with their errors; beyond the dashed lines a correction "
                 "is called for.");
  return text + "</div>\n";
}

/// "4 of 4": those of N, HA, C, CA, CB, HN that the residue type has.
std::string assignedText(const ProteinResult& protein, int position) {
  const auto place = static_cast<std::size_t>(position) - 1;
  if (place >= protein.assignments.size()) return "none";
  const Assignment& assignment = protein.assignments[place];
  return std::to_string(assignment.present) + " of " + std::to_string(assignment.possible);
}

std::string tripletText(const ProteinResult& protein, const ProlineResult& proline) {
  return residueName(proline.previous, proline.previousNumber) + " – P" + proline.number + " – " +
         residueName(proline.next, proline.nextNumber) +
         ", shifts: " + assignedText(protein, proline.position - 1) + ", " +
         assignedText(protein, proline.position) + (proline.cgShift ? " and CG" : " without CG") + ", " +
         assignedText(protein, proline.position + 1);
}

bool hasClipped(const Evidence& evidence) {
  return std::any_of(evidence.shifts.begin(), evidence.shifts.end(),
                     [](const ShiftContribution& shift) { return shift.clipped; });
}

bool hasCorrected(const Evidence& evidence) {
  return std::any_of(evidence.shifts.begin(), evidence.shifts.end(),
                     [](const ShiftContribution& shift) { return shift.corrected.has_value(); });
}

std::string chanceText(const ProlineResult& proline) {
  if (proline.evidence->next.empty() || !proline.evidence->next.front().decides) return "";
  const NextShift& best = proline.evidence->next.front();
  if (best.bits < kWorthMeasuring || *best.decides < kSmallestChance) return "";
  return " " + shiftName(proline, best.index) + " alone would decide it with a chance of " +
         fixedText(*best.decides * 100, 0) + "\u00a0%.";
}

/// " (as referenced 0.031, trans)": the call where it is another one.
std::string asReferencedText(const ProlineResult& proline) {
  return " (as referenced " + probability(proline.pCisNormAsReferenced) +
         (dependsOnCorrection(proline) ? ", " + toText(*proline.callAsReferenced) : "") + ")";
}

std::string card(const ProteinResult& protein, const ProlineResult& proline) {
  if (!proline.evidence) return "";
  std::string text = "<article class=\"card\"><h3>" + symbol(proline.call) + " " +
                     escaped("P" + proline.number + " " +
                             (proline.call == Call::none ? "no prediction" : toText(proline.call)));
  if (proline.pCisNorm) text += escaped(", P_CIS_NORM " + probability(proline.pCisNorm));
  if (proline.callAsReferenced) text += escaped(asReferencedText(proline));
  text += "</h3>\n" + paragraph(tripletText(protein, proline), "faint");
  text += paragraph(asSentence(sentenceOf(proline)) + chanceText(proline), "say");
  for (const std::string& sentence : {nextStep(proline), howOftenRight(proline)})
    if (!sentence.empty()) text += paragraph(asSentence(sentence));
  if (const std::string note = precisionNote(proline); !note.empty()) text += paragraph(asSentence(note));
  if (proline.structure) {
    text += "<p><b>" + asSentence(toText(proline.structure->verdict)) + "</b> " +
            escaped(proline.structure->sentence) + "</p>\n";
    std::vector<std::string> each;
    for (const StructureFinding& one : inEachStructure(*proline.structure))
      each.push_back(one.sites.front().file + ": " +
                     (one.call == StructureCall::none ? "no bond" : seenText(one)));
    if (!each.empty()) text += bulletList(each);
  }
  text += evidencePicture(proline);
  if (hasCorrected(*proline.evidence))
    text += paragraph("° Corrected before predicting, see above.", "faint");
  if (hasClipped(*proline.evidence))
    text += paragraph("‡ Beyond the limit of its residue type: the limit is used.", "faint");
  return text + "</article>\n";
}

std::string cards(const ProteinResult& protein) {
  std::string text;
  std::vector<std::string> without;
  for (const ProlineResult& proline : protein.prolines) {
    text += card(protein, proline);
    if (proline.evidence) continue;
    const std::string step = nextStep(proline);
    without.push_back("P" + proline.number + " (" + proline.reason + (step.empty() ? "" : ": " + step) + ")");
  }
  if (!text.empty())
    text = "<h2>What speaks for cis, what for trans</h2>\n<div class=\"grid\">\n" + text + "</div>\n";
  if (!without.empty())
    text += paragraph("Without a prediction: " + enumerated(without, without.size()) + ".");
  return text;
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
  const std::string call = proline.reason.empty() ? toText(proline.call) : proline.reason;
  std::string strongest = strongestOf(proline);
  std::replace(strongest.begin(), strongest.end(), ';', ' ');
  const std::string before = residueName(proline.previous, proline.previousNumber);
  const std::string after = residueName(proline.next, proline.nextNumber);
  const std::string name = symbol(proline.call) + " " + escaped("P" + proline.number);
  return {
      name,
      escaped(before),
      escaped(after),
      cg,
      escaped(probability(proline.pCis)),
      escaped(probability(proline.pCisNorm) + (proline.callAsReferenced ? asReferencedText(proline) : "")),
      call,
      strongest,
      nextShiftOf(proline)};
}

/// The style sheet knows the columns by their numbers.
std::string table(const ProteinResult& protein) {
  if (protein.prolines.empty()) return "";
  Cells titles = {"Proline",          "Before",           "After", "CG (ppm)", "P_CIS", "P_CIS_NORM", "Call",
                  "Strongest (nats)", "Next shift (bits)"};
  const bool withStructure = hasFindings(protein);
  if (withStructure) titles.insert(titles.end(), {"Structure", "|omega|", "There", "Verdict"});
  Cells classes(titles.size());
  if (withStructure) classes[titles.size() - 3] = "r x";
  std::vector<Cells> rows;
  for (const ProlineResult& proline : protein.prolines) {
    rows.push_back(tableRow(proline));
    if (!proline.structure) continue;
    for (std::string& cell : structureCells(*proline.structure)) rows.back().push_back(std::move(cell));
  }
  return "<h2>All prolines</h2>\n" +
         htmlTable(titles, classes, rows, withStructure ? "prolines compared" : "prolines");
}

std::string structures(const ProteinResult& protein) {
  if (protein.structureNotes.empty() && protein.matches.empty()) return "";
  std::vector<std::string> chains;
  for (const ChainMatch& match : protein.matches) chains.push_back(toText(match));
  return "<h2>Against the structure</h2>\n" +
         (chains.empty() ? "" : paragraph("Compared with " + enumerated(chains, chains.size()) + ".")) +
         (protein.structureNotes.empty() ? "" : bulletList(protein.structureNotes));
}

std::string notes(const ProteinResult& protein) {
  if (protein.notes.empty()) return "";
  const std::string list = bulletList(protein.notes);
  const std::string title = counted(protein.notes.size(), "note", "notes") + " of the import";
  if (protein.notes.size() <= kNotesShown) return "<h2>" + title + "</h2>\n" + list;
  return fold(title, list);
}

std::string chainBody(const ProteinResult& protein, const ClassStatistics& classes) {
  return (protein.correction.empty() ? "" : paragraph(protein.correction + ".", "lead")) +
         paragraph(answer(protein), "lead") +
         paragraph(counted(static_cast<std::size_t>(protein.length), "residue", "residues") + ", " +
                       counted(static_cast<std::size_t>(protein.shiftCount), "shift", "shifts") + " in use",
                   "faint") +
         figures(protein, classes) + cards(protein) + table(protein) + structures(protein) + notes(protein);
}

// --- All chains ---------------------------------------------------------------------------------

std::vector<const ProteinResult*> chainsOf(const RunReport& report) {
  std::vector<const ProteinResult*> chains;
  forEachProtein(report, [&](const ProteinResult& protein) { chains.push_back(&protein); });
  return chains;
}

std::string correctedChains(const std::vector<const ProteinResult*>& chains) {
  std::vector<std::string> names;
  for (const ProteinResult* chain : chains)
    if (!chain->correction.empty()) names.push_back(chainName(*chain));
  if (names.empty()) return "";
  return paragraph("The shifts of " + counted(names.size(), "chain", "chains") +
                       " were corrected before predicting: " + enumerated(names) + ".",
                   "lead");
}

std::string indexTable(const std::vector<const ProteinResult*>& chains) {
  const bool withStructure = std::any_of(chains.begin(), chains.end(),
                                         [](const ProteinResult* chain) { return hasFindings(*chain); });
  Cells titles = {"Chain", "Residues", "Prolines", "Cis", "Undecided"};
  if (withStructure) titles.emplace_back("Structure disagrees");
  const auto names = [](const ProteinResult& protein, auto which) {
    const std::string text = namesOf(protein, which);
    return text.empty() ? "–" : escaped(text);
  };
  std::vector<Cells> rows;
  for (const ProteinResult* chain : chains) {
    rows.push_back(
        {"<a href=\"#chain" + std::to_string(rows.size() + 1) + "\">" + escaped(chainName(*chain)) + "</a>",
         std::to_string(chain->length), std::to_string(chain->prolines.size()), names(*chain, Call::cis),
         names(*chain, Call::undecided)});
    if (withStructure) rows.back().push_back(names(*chain, Verdict::disagree));
  }
  return "<h2>Index</h2>\n" + htmlTable(titles, {"f", "r x", "r", "", "", ""}, rows);
}

std::string structureNotes(const RunReport& report) {
  std::vector<std::string> notes;
  for (const ProteinStructure& structure : report.structures)
    for (const std::string& note : structure.notes) notes.push_back(structure.file + ": " + note);
  notes.insert(notes.end(), report.chainsWithoutShifts.begin(), report.chainsWithoutShifts.end());
  return notes.empty() ? "" : "<h2>Notes on the structures</h2>\n" + bulletList(notes);
}

/// Chains with something to look at stand open.
std::string folded(const ProteinResult& protein, const ClassStatistics& classes, std::size_t number) {
  const bool isOpen = countOf(protein, Call::cis) + countOf(protein, Call::undecided) > 0 ||
                      !namesOf(protein, Verdict::disagree).empty();
  return "<details class=\"chain\" id=\"chain" + std::to_string(number) + "\"" + (isOpen ? " open" : "") +
         "><summary>" + escaped(chainName(protein)) + "</summary>\n" + chainBody(protein, classes) +
         "</details>\n";
}

std::string countsOf(const RunReport& report) {
  const auto count = [&](Call call) { return std::to_string(countCalls(report, call)); };
  return "Prolines: " + count(Call::cis) + " cis, " + count(Call::undecided) + " undecided, " +
         count(Call::trans) + " trans, " + count(Call::none) + " without a prediction.";
}

std::string errors(const RunReport& report) {
  std::vector<std::string> messages;
  forEachError(report, [&](const FileReport& file) { messages.push_back(file.error); });
  return messages.empty() ? "" : "<h2>Not predicted</h2>\n" + bulletList(messages);
}

std::string key(const RunReport& report) {
  const auto item = [](Call call, const std::string& text) {
    return "<li>" + symbol(call) + " " + escaped(text) + "</li>";
  };
  const auto markItem = [](const std::string& mark, const std::string& text) {
    return "<li><svg class=\"i\" viewBox=\"-11 -11 22 22\" aria-hidden=\"true\"><circle class=\"p\" "
           "r=\"4.5\"/><use href=\"#" +
           mark + "\"/></svg> " + escaped(text) + "</li>";
  };
  const std::string marks = !report.structures.empty() ? markItem("va", "the structure agrees") +
                                                             markItem("vd", "the structure disagrees")
                                                       : "";
  return "<ul class=\"key\">" + item(Call::cis, "cis: P_CIS_NORM at least " + numberText(kCisFrom)) +
         item(Call::trans, "trans: at most " + numberText(kTransUpTo)) +
         item(Call::undecided, "undecided: between") + item(Call::none, "no prediction") + marks + "</ul>\n";
}

// --- How to read this ---------------------------------------------------------------------------

/// What cross-validation finds for the tables that come with the program; doc/accuracy.md has the commands.
struct Accuracy {
  const char* known;
  const char* sensitivity;
  const char* specificity;
  const char* prolines;
  bool (*fits)(bool hasCB, bool hasCG);
};
constexpr std::array<Accuracy, 3> kAccuracy = {
    {{"CB and CG", "0.868", "0.988", "1257", [](bool cb, bool cg) { return cb && cg; }},
     {"CB, not CG", "0.364", "0.991", "715", [](bool cb, bool cg) { return cb && !cg; }},
     {"no CB", "0.032", "1.000", "386", [](bool cb, bool) { return !cb; }}}};

std::string prolinesThatFit(const RunReport& report, const Accuracy& accuracy) {
  std::size_t count = 0;
  forEachProline(report, [&](const ProteinResult&, const ProlineResult& proline) {
    if (!proline.evidence) return;
    const auto has = [&](int index) { return proline.evidence->shift(index).secondary.has_value(); };
    if (accuracy.fits(has(kIndexCB), has(kIndexCG))) ++count;
  });
  return std::to_string(count);
}

std::string accuracyTable(const RunReport& report) {
  std::vector<Cells> rows;
  for (const Accuracy& accuracy : kAccuracy)
    rows.push_back({accuracy.known, prolinesThatFit(report, accuracy), accuracy.sensitivity,
                    accuracy.specificity, std::string(accuracy.prolines) + " prolines"});
  return htmlTable({"Known of the proline", "Prolines here", "Cis found", "Trans left alone", "Measured on"},
                   {"", "r", "r", "r", "r x"}, rows);
}

std::string classTable(const ClassStatistics& classes) {
  const std::array<const char*, 3> residues = {"before", "proline", "after"};
  const auto value = [](const ClassShift& shift) {
    return signedFigure(static_cast<double>(shift.mean), 2) + " ± " +
           figureText(static_cast<double>(shift.deviation), 2);
  };
  std::vector<Cells> rows;
  for (int index = 0; index <= kIndexCG; ++index) {
    const auto i = static_cast<std::size_t>(index);
    const ShiftPlace place = shiftPlace(i);
    if (place.residue == 0 && isAmide(place.atom)) continue;
    const int residue = place.residue + 1;
    rows.push_back({residues[static_cast<std::size_t>(residue)], atomName(index), value(classes.cis[i]),
                    value(classes.trans[i])});
  }
  return fold(
      "What cis and trans prolines have",
      htmlTable({"Residue", "Atom", "Cis (ppm)", "Trans (ppm)"}, {"", "", "r", "r"}, rows) +
          "<p class=\"faint\">Secondary shifts (observed less random coil); of CG the shift itself.</p>");
}

std::string howToRead(const RunReport& report) {
  return "<h2>How to read this</h2>\n"
         "<p>P_CIS_NORM is the probability that the peptide bond before a proline is cis. Every proline "
         "starts at 1 in 20. The residue types beside it and each shift then multiply the odds; a bar is the "
         "natural logarithm of that factor (nats): +1 makes cis 2.7 times as likely, −1 trans. The bars add "
         "up to the log-odds of P_CIS_NORM. The number beside an atom is the shift as observed.</p>\n"
         "<p>A hollow box is a shift that is missing but could be measured, with the information about cis "
         "or trans that it is expected to give: 1 bit would settle an even question, a box without a number "
         "promises less than 0.005.</p>\n"
         "<p>How often the call is right depends on what is known of the proline itself (cross-validated on "
         "proteins with known structures, for the tables that come with zorvela):</p>\n" +
         accuracyTable(report) + classTable(report.classes) +
         paragraph(
             std::string("zorvela-kit ") + version() + ", reference tables " + report.classes.fingerprint,
             "faint");
}

std::string pageTitle(const std::vector<const ProteinResult*>& chains, const RunReport& report) {
  if (chains.size() == 1) return "Prolines of " + chainName(*chains.front());
  return "Prolines of " + counted(chains.size(), "chain", "chains") + " in " +
         counted(report.files.size(), "file", "files");
}

std::string head(const std::string& title) {
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
         "'unsafe-inline'\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
         escaped(title) + "</title>\n<style>" + kHtmlStyle + "</style>\n</head>\n";
}

}  // namespace

void writeHtml(const RunReport& report, const ReportStyle&, std::ostream& out) {
  const std::vector<const ProteinResult*> chains = chainsOf(report);
  const std::string title = pageTitle(chains, report);
  out << head(title) << "<body>\n"
      << symbolDefinitions() << evidenceDefinitions() << cbCgDefinitions(report.classes)
      << referencingDefinitions() << "<main>\n<h1>" << escaped(title) << "</h1>\n";
  if (chains.size() == 1) {
    out << key(report) << chainBody(*chains.front(), report.classes);
  } else {
    out << correctedChains(chains) << paragraph(countsOf(report), "lead") << key(report);
    if (!chains.empty()) out << indexTable(chains);
    for (std::size_t i = 0; i < chains.size(); ++i) out << folded(*chains[i], report.classes, i + 1);
  }
  if (const std::string unseen = unseenSentence(report); !unseen.empty()) out << paragraph(unseen);
  out << errors(report) << structureNotes(report) << howToRead(report) << "</main>\n</body>\n</html>\n";
}

}  // namespace zorvela
