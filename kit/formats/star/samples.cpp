#include "formats/star/samples.h"

#include <algorithm>
#include <optional>

#include "util/text.h"

namespace zorvela {

namespace {

constexpr std::size_t kLongestWords = 200;

/// A part of a labelling, such as "U-80% 2H".
struct LabelledPart {
  bool hasCarbon = false;
  bool hasDeuterium = false;
  bool hasMoreWords = false;
  double percent = 100;
};

LabelledPart partOf(std::string_view text) {
  LabelledPart part;
  const auto take = [&text](bool (*belongs)(char)) {
    const std::string_view taken = leading(text, belongs);
    text.remove_prefix(taken.size());
    return taken;
  };
  while (!text.empty()) {
    if (!isDigit(text.front()) && !isLetter(text.front())) {
      text.remove_prefix(1);
      continue;
    }
    const std::string_view number = take([](char c) { return isDigit(c) || c == '.'; });
    const std::size_t blanks = leading(text, isBlank).size();
    if (!number.empty() && text.substr(blanks, 1) == "%") {
      if (const auto value = toDecimal(number)) part.percent = std::stod(*value);
      text.remove_prefix(blanks + 1);
      continue;
    }
    const std::string_view element = text.substr(0, 1);
    const std::string word =
        number.empty() ? std::string(take(isLetter)) : std::string(number) + std::string(element);
    if (!number.empty()) text.remove_prefix(element.size());
    if (word == "2H" || word == "D")
      part.hasDeuterium = true;
    else if (word == "13C")
      part.hasCarbon = true;
    else if (word != "15N" && word != "U")
      part.hasMoreWords = true;
  }
  return part;
}

using Group = std::vector<const LabelledMolecule*>;

/// Each molecule in the wanted samples; without those that give no carbon shifts, where others do.
std::map<std::string, Group> groupsIn(const std::vector<LabelledMolecule>& molecules,
                                      const std::set<std::string>& samples) {
  std::map<std::string, Group> groups;
  for (const LabelledMolecule& one : molecules) {
    const auto isWanted = [&](const std::string& sample) { return samples.count(sample) > 0; };
    if (samples.empty() || std::any_of(one.samples.begin(), one.samples.end(), isWanted))
      groups[one.molecule].push_back(&one);
  }
  for (auto& [molecule, group] : groups) {
    const auto noCarbon = std::stable_partition(
        group.begin(), group.end(), [](const LabelledMolecule* one) { return one->labelling.hasCarbon; });
    if (noCarbon != group.begin()) group.erase(noCarbon, group.end());
  }
  return groups;
}

/// Returns a note on the labelling of a molecule; empty where it is clear.
std::string noteOn(const Group& group, const std::string& list) {
  const LabelledMolecule& first = *group.front();
  for (const LabelledMolecule* other : group)
    if (other->labelling.deuteration != first.labelling.deuteration)
      return "the samples of shift list " + list + " differ in deuterium, " + first.words + " and " +
             other->words + "; use --deuterated if the shifts are of the deuterated one";
  if (!first.labelling.hasMoreWords) return "";
  return "the sample is labelled " + first.words + "; " +
         (first.labelling.deuteration > 0 ? "the remaining protons are treated as deuterons, so CB of Val is "
                                            "overcorrected by up to 0.8 ppm"
                                          : "deuterons of single residues or groups are not corrected for");
}

bool isAlike(const Group& group) {
  return std::all_of(group.begin(), group.end(), [&](const LabelledMolecule* one) {
    return one->labelling.deuteration == group.front()->labelling.deuteration;
  });
}

}  // namespace

Labelling labellingOf(std::string_view words) {
  const std::string text = upper(firstBytes(words, kLongestWords));
  Labelling labelling;
  bool hasDeuterium = false;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find_first_of(";,/", begin), text.size());
    const LabelledPart part = partOf(std::string_view(text).substr(begin, end - begin));
    begin = end + 1;
    labelling.hasCarbon = labelling.hasCarbon || part.hasCarbon;
    labelling.hasMoreWords = labelling.hasMoreWords || part.hasMoreWords;
    hasDeuterium = hasDeuterium || part.hasDeuterium;
    if (part.hasDeuterium && !part.hasMoreWords) labelling.deuteration = std::min(part.percent / 100, 1.0);
  }
  labelling.hasMoreWords = labelling.hasMoreWords && hasDeuterium;
  return labelling;
}

std::map<std::string, double> deuterationOf(const std::vector<LabelledMolecule>& molecules,
                                            const std::set<std::string>& samples, const std::string& list,
                                            std::vector<std::string>& notes) {
  std::map<std::string, double> shares;
  LimitedNotes limited("notes on the labelling of samples");
  for (const auto& [molecule, group] : groupsIn(molecules, samples)) {
    if (const std::string note = noteOn(group, list); !note.empty()) limited.add(note);
    const double share = group.front()->labelling.deuteration;
    if (share > 0 && isAlike(group)) shares.emplace(molecule, share);
  }
  limited.appendTo(notes);
  return shares;
}

}  // namespace zorvela
