// The part of the page about one chain.
#include <algorithm>

#include "report/html_parts.h"
#include "report/html_pieces.h"
#include "report/walk.h"
#include "report/words.h"
#include "util/number.h"
#include "util/text.h"
#include "zorvela/report.h"

namespace zorvela {

namespace {

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

}  // namespace

std::string markCaption(const ProteinResult& protein) {
  return structureSentence(protein).empty() ? "" : " Ring: the structure agrees; square: it disagrees.";
}

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

std::string chainReport(const ProteinResult& protein, const std::string& name,
                        const ClassStatistics& classes) {
  return paragraph(counted(static_cast<std::size_t>(protein.length), "residue", "residues") + ", " +
                       counted(static_cast<std::size_t>(protein.shiftCount), "shift", "shifts") + " in use",
                   "faint") +
         chainFigure(protein) +
         prolineCards(protein, cbCgFigure(protein, classes) + referencingTable(protein, name)) +
         prolineTable(protein, name) + structures(protein) + notes(protein);
}

}  // namespace zorvela
