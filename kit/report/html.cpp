// The report as one page of HTML: an index of several chains, then pictures, cards and table of each chain,
// then how to read it.
#include <algorithm>
#include <array>
#include <map>
#include <ostream>
#include <set>

#include "report/html_parts.h"
#include "report/html_pieces.h"
#include "report/walk.h"
#include "report/words.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/report.h"
#include "zorvela/version.h"

namespace zorvela {

namespace {

// --- One chain ------------------------------------------------------------------------------------

constexpr std::size_t kNotesShown = 5;

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
  const std::string title = counted(others.size(), "note", "notes") + " on the input file";
  if (others.size() > kNotesShown) return fold(title, bulletList(others));
  return "<h2>" + title + "</h2>\n" + bulletList(others);
}

/// The result in a few sentences: "1 of 6 prolines is cis: P117. Undecided: P31. 13C is 3 ppm too high;
/// corrected before predicting."
std::string answer(const ProteinResult& protein) {
  const std::size_t count = protein.prolines.size();
  if (count == 0) return "The sequence has no proline.";
  const std::vector<std::string> cis = namesOf(protein, Call::cis);
  const std::vector<std::string> undecided = namesOf(protein, Call::undecided);
  std::string text;
  if (namesOf(protein, Call::none).size() == count)
    text = count == 1 ? "The only proline has no prediction." : "None of the prolines has a prediction.";
  else if (cis.empty())
    text = "None of " + counted(count, "proline", "prolines") + " is called cis.";
  else
    text = std::to_string(cis.size()) + " of " + counted(count, "proline", "prolines") +
           (cis.size() == 1 ? " is" : " are") + " cis: " + enumerated(cis) + ".";
  if (!undecided.empty()) text += " Undecided: " + enumerated(undecided) + ".";
  if (protein.prolines.front().structure) {
    const std::string sentence = structureSentence(protein);
    const std::vector<std::string> mixed = namesOf(protein, Verdict::mixed);
    if (!sentence.empty()) text += " " + sentence;
    if (!mixed.empty()) text += " Models contradict each other: " + enumerated(mixed) + ".";
    if (sentence.empty() && mixed.empty()) text += " No call could be compared with a structure.";
  }
  if (!protein.correction.empty()) text += " " + protein.correction + ".";
  return text;
}

/// Pictures, cards, tables and notes. `name` tells the chain from the others of the page.
std::string chainReport(const ProteinResult& protein, const std::string& name,
                        const ClassStatistics& classes) {
  return paragraph(counted(static_cast<std::size_t>(protein.length), "residue", "residues") + ", " +
                       counted(static_cast<std::size_t>(protein.shiftCount), "shift", "shifts") + " in use",
                   "faint") +
         chainFigure(protein) +
         prolineCards(protein, cbCgFigure(protein, classes) + referencingTable(protein, name)) +
         prolineTable(protein, name) + structures(protein) + notes(protein);
}

// --- All chains -----------------------------------------------------------------------------------

/// A chain with its name and its place in the page.
struct NamedChain {
  const ProteinResult* protein;
  std::string name;  ///< "b.str, chain A, shift list 2", without the folder that all files share
  std::string id;
};

std::vector<NamedChain> chainsOf(const RunReport& report) {
  Origin origin(report);
  if (report.files.size() == 1) {
    const std::string& file = report.files.front().file;
    origin.folder = file.substr(0, file.size() - baseName(file).size());
  }
  std::vector<NamedChain> chains;
  forEachProtein(report, [&](const ProteinResult& protein) {
    std::string name = protein.file.substr(origin.folder.size());
    if (!protein.chain.empty()) name += ", chain " + protein.chain;
    if (origin.withList && !protein.list.empty()) name += ", shift list " + protein.list;
    chains.push_back({&protein, name, "chain" + std::to_string(chains.size() + 1)});
  });
  return chains;
}

/// The calls of all chains, and the chains that were corrected.
std::string answer(const RunReport& report, const std::vector<NamedChain>& chains) {
  const auto count = [&](Call call) { return std::to_string(countCalls(report, call)); };
  std::string text = "Prolines: " + count(Call::cis) + " cis, " + count(Call::undecided) + " undecided, " +
                     count(Call::trans) + " trans, " + count(Call::none) + " without a prediction.";
  const std::size_t errors = countErrors(report);
  if (errors > 0) text += " " + counted(errors, "file", "files") + " could not be predicted.";
  std::vector<std::string> corrected;
  for (const NamedChain& chain : chains)
    if (!chain.protein->correction.empty()) corrected.push_back(chain.name);
  if (!corrected.empty())
    text += " The shifts were corrected before predicting in " + enumerated(corrected) + ".";
  return text;
}

/// Warnings, and files that failed.
std::string notices(const RunReport& report, const std::vector<NamedChain>& chains) {
  std::vector<std::string> texts;
  for (const NamedChain& chain : chains)
    for (const std::string& warning : warningsOf(*chain.protein))
      texts.push_back(chains.size() == 1 ? warning : chain.name + ": " + warning);
  for (const FileReport& file : report.files)
    if (!file.error.empty()) texts.push_back(file.error);
  return texts.empty() ? "" : "<div class=\"notices\">" + bulletList(texts) + "</div>\n";
}

std::string indexTable(const std::vector<NamedChain>& chains) {
  const bool withStructure = std::any_of(chains.begin(), chains.end(), [](const NamedChain& chain) {
    const auto& prolines = chain.protein->prolines;
    return !prolines.empty() && prolines.front().structure;
  });
  Cells titles = {"Chain", "Cis", "Undecided", "Trans", "None", "Offset"};
  if (withStructure) titles.emplace_back("Structure disagrees");
  std::vector<Cells> rows;
  for (const NamedChain& chain : chains) {
    const ProteinResult& protein = *chain.protein;
    const auto number = [&](Call call) { return std::to_string(namesOf(protein, call).size()); };
    const auto names = [&](auto which) {
      const std::string text = enumerated(namesOf(protein, which));
      return text.empty() ? "0" : escaped(text);
    };
    rows.push_back({"<a href=\"#" + chain.id + "\">" + escaped(chain.name) + "</a>", names(Call::cis),
                    names(Call::undecided), number(Call::trans), number(Call::none),
                    escaped(offsetsInWords(protein))});
    if (withStructure) rows.back().push_back(names(Verdict::disagree));
  }
  return "<h2>Index</h2>\n" + htmlTable("Index", titles, {"f", "", "", "r", "r", "", ""}, rows);
}

// --- One sequence with several sets of shifts -----------------------------------------------------

/// Compares the predictions of one proline.
std::string differenceOf(const std::vector<NamedChain>& chains, std::size_t index) {
  std::set<Call> calls;
  std::multiset<float> values;
  for (const NamedChain& chain : chains) {
    const ProlineResult& proline = chain.protein->prolines[index];
    if (!proline.pCisNorm) continue;
    calls.insert(proline.call);
    values.insert(*proline.pCisNorm);
  }
  if (values.size() < 2) return "–";
  const std::string size = fixedText(static_cast<double>(*values.rbegin() - *values.begin()), 3);
  return calls.size() > 1 ? "<mark>" + size + ", the calls differ</mark>" : size;
}

std::vector<Cells> transposed(const std::vector<Cells>& rows) {
  std::vector<Cells> columns(rows.front().size());
  for (const Cells& row : rows)
    for (std::size_t i = 0; i < row.size(); ++i) columns[i].push_back(row[i]);
  return columns;
}

/// Few chains have a column each, more chains a row each.
std::string sideBySide(const std::vector<NamedChain>& chains) {
  constexpr std::size_t kMostColumns = 4;
  std::vector<Cells> rows = {{"Proline"}};
  for (const ProlineResult& proline : chains.front().protein->prolines)
    rows.front().push_back(escaped("P" + proline.number));
  for (const NamedChain& chain : chains) {
    rows.push_back({"<a href=\"#" + chain.id + "\">" + escaped(chain.name) + "</a>"});
    for (const ProlineResult& proline : chain.protein->prolines)
      rows.back().push_back(symbol(proline.call) + " " + escaped(headline(proline)));
  }
  rows.push_back({"Difference of P_CIS_NORM"});
  for (std::size_t i = 0; i + 1 < rows.front().size(); ++i) rows.back().push_back(differenceOf(chains, i));
  if (chains.size() <= kMostColumns) rows = transposed(rows);
  return htmlTable("Side by side: " + chains.front().name, rows.front(), Cells(rows.front().size(), "f"),
                   {rows.begin() + 1, rows.end()});
}

/// Compares chains of one sequence, such as a free and a bound protein, or the copies of a dimer.
std::string sequencesTwice(const std::vector<NamedChain>& chains) {
  std::map<std::string, std::vector<NamedChain>> bySequence;
  for (const NamedChain& chain : chains)
    if (!chain.protein->prolines.empty() && !chain.protein->sequence.empty())
      bySequence[upper(chain.protein->sequence)].push_back(chain);
  std::string text;
  for (const auto& [sequence, same] : bySequence)
    if (same.size() > 1) text += sideBySide(same);
  return text.empty() ? "" : "<h2>One sequence, several sets of shifts</h2>\n" + text;
}

// --- Around the chains ----------------------------------------------------------------------------

std::string structureNotes(const RunReport& report) {
  std::vector<std::string> notes;
  for (const ProteinStructure& structure : report.structures)
    for (const std::string& note : structure.notes) notes.push_back(structure.file + ": " + note);
  notes.insert(notes.end(), report.chainsWithoutShifts.begin(), report.chainsWithoutShifts.end());
  return notes.empty() ? "" : "<h2>Notes on the structures</h2>\n" + bulletList(notes);
}

/// Chains with a proline to look at are open. A link to a place within a closed fold opens it.
std::string folded(const NamedChain& chain, const ClassStatistics& classes) {
  const ProteinResult& protein = *chain.protein;
  const bool isOpen = !namesOf(protein, Call::cis).empty() || !namesOf(protein, Call::undecided).empty() ||
                      !namesOf(protein, Verdict::disagree).empty();
  return std::string("<details class=\"chain\"") + (isOpen ? " open" : "") + "><summary>" +
         escaped(chain.name) + "</summary>\n<div id=\"" + chain.id + "\">" +
         paragraph(answer(protein), "lead") + chainReport(protein, chain.name, classes) +
         "</div></details>\n";
}

/// Explains the symbols of the calls; empty if nothing was predicted.
std::string key(const RunReport& report) {
  if (countIf(report, [](const ProlineResult& proline) { return proline.call != Call::none; }) == 0)
    return "";
  const auto item = [](Call call, const std::string& text) {
    return "<li>" + symbol(call) + " " + escaped(text) + "</li>";
  };
  const auto markItem = [](const std::string& mark, const std::string& text) {
    return "<li><svg class=\"i\" viewBox=\"-11 -11 22 22\" aria-hidden=\"true\"><circle class=\"p\" "
           "r=\"4.5\"/><use href=\"#" +
           mark + "\"/></svg> " + escaped(text) + "</li>";
  };
  const std::string marks = report.structures.empty() ? ""
                                                      : markItem("va", "the structure agrees") +
                                                            markItem("vd", "the structure disagrees");
  return "<ul class=\"key\">" + item(Call::cis, "cis: P_CIS_NORM at least " + numberText(kCisFrom)) +
         item(Call::trans, "trans: at most " + numberText(kTransUpTo)) +
         item(Call::undecided, "undecided: between") + item(Call::none, "no prediction") + marks + "</ul>\n";
}

// --- How to read this ---------------------------------------------------------------------------

/// The figures of cross-validation for the shipped tables; doc/accuracy.md has the commands.
struct Accuracy {
  const char* measured;
  const char* sensitivity;
  const char* specificity;
  const char* prolines;
};
constexpr std::array<Accuracy, 3> kAccuracy = {{{"CB and CG", "86.8", "98.8", "1257"},
                                                {"CB without CG", "36.4", "99.1", "715"},
                                                {"no CB", "3.2", "100.0", "386"}}};

std::string accuracyTable(const RunReport& report) {
  std::array<int, 3> counts = {};
  forEachProline(report, [&](const ProteinResult&, const ProlineResult& proline) {
    if (!proline.evidence) return;
    const auto has = [&](int index) { return proline.evidence->shift(index).secondary.has_value(); };
    ++counts[!has(kIndexCB) ? 2 : has(kIndexCG) ? 0 : 1];
  });
  std::vector<Cells> rows;
  const std::string percent = "\u00a0%";
  for (std::size_t i = 0; i < kAccuracy.size(); ++i)
    rows.push_back({kAccuracy[i].measured, std::to_string(counts[i]), kAccuracy[i].sensitivity + percent,
                    kAccuracy[i].specificity + percent, std::string(kAccuracy[i].prolines) + " prolines"});
  return htmlTable("Accuracy of the calls",
                   {"Shifts measured", "Prolines here", "Cis called cis (sensitivity)",
                    "Trans called trans (specificity)", "Tested on"},
                   {"", "r", "r", "r", "r"}, rows);
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
  const std::string title = "Mean shifts of cis and trans prolines";
  return fold(
      title,
      htmlTable(title, {"Residue", "Atom", "Cis (ppm)", "Trans (ppm)"}, {"", "", "r", "r"}, rows) +
          "<p class=\"faint\">Secondary shifts (observed − random coil); for CG, the observed shift.</p>");
}

std::string howToRead(const RunReport& report) {
  return "<h2 id=\"read\">How to read this</h2>\n"
         "<p>P_CIS_NORM is the probability that the peptide bond before a proline is cis. It starts at 1 in "
         "20. The types of the neighbouring residues and each shift then multiply the odds. A bar shows the "
         "natural logarithm of this factor (nats): +1 makes cis 2.7 times as likely, −1 makes trans 2.7 "
         "times as likely. The bars add up to the log-odds of P_CIS_NORM; they are cut at −15 and +10. The "
         "columns cis and trans have the mean shifts of cis and trans prolines (ppm).</p>\n"
         "<p>A missing shift that could be measured has its expected information in bits: 1 bit settles "
         "a case in which cis and trans are equally likely.</p>\n"
         "<p>The accuracy of a call depends on the shifts measured for the proline itself. "
         "Cross-validation on proteins with known structures gives, for the tables that come with "
         "zorvela:</p>\n" +
         accuracyTable(report) + classTable(report.classes);
}

std::string more(const RunReport& report) {
  const std::string program =
      std::string("zorvela-kit ") + version() + ", reference tables " + report.classes.fingerprint;
  return "<h2>More</h2>\n<ul class=\"now\">\n"
         "<li id=\"formats\">Other formats: <code>zorvela-kit run --format csv</code> or <code>json</code> "
         "for tables and programs, <code>zorvela-kit restrain</code> for structure calculations.</li>\n"
         "<li id=\"options\">Options: <code>--structure model.pdb</code> compares the calls with a "
         "structure; <code>zorvela-kit run --help</code> lists all options.</li>\n"
         "<li id=\"cite\">How to cite: " +
         escaped(program) + "; the same program and tables give the same numbers.</li>\n</ul>\n";
}

const char* const kLinks =
    "<p class=\"faint\">More: <a href=\"#read\">how to read this</a>, <a href=\"#formats\">other "
    "formats</a>, <a href=\"#options\">options</a>, <a href=\"#cite\">how to cite</a></p>\n";

std::string pageTitle(const std::vector<NamedChain>& chains, const RunReport& report) {
  if (chains.size() == 1) return chains.front().name;
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
  const std::vector<NamedChain> chains = chainsOf(report);
  const std::string title = pageTitle(chains, report);
  out << head(title) << "<body>\n"
      << symbolDefinitions() << cbCgDefinitions(report.classes) << "<main>\n<h1>" << escaped(title)
      << "</h1>\n";
  out << paragraph(chains.size() == 1 ? answer(*chains.front().protein) : answer(report, chains), "lead")
      << notices(report, chains) << key(report) << kLinks;
  if (chains.size() == 1) {
    out << chainReport(*chains.front().protein, chains.front().name, report.classes);
  } else {
    if (!chains.empty()) out << indexTable(chains) << sequencesTwice(chains);
    for (const NamedChain& chain : chains) out << folded(chain, report.classes);
  }
  if (const std::string unseen = unseenSentence(report); !unseen.empty()) out << paragraph(unseen);
  out << structureNotes(report) << howToRead(report) << more(report) << "</main>\n</body>\n</html>\n";
}

}  // namespace zorvela
