#include "formats/star/samples.h"

#include <algorithm>
#include <optional>

#include "util/text.h"

namespace zorvela {

namespace {

constexpr std::size_t kLongestWords = 200;

std::size_t endOfRun(std::string_view text, std::size_t pos, bool (*belongs)(char)) {
  while (pos < text.size() && belongs(text[pos])) ++pos;
  return pos;
}

bool isOfNumber(char c) {
  return isDigit(c) || c == '.';
}

/// A part of a labelling, such as "U-80% 2H".
class LabelledPart {
 public:
  explicit LabelledPart(std::string_view part) : text(part) {
    while (pos < text.size()) {
      if (isDigit(text[pos]))
        readNumber();
      else if (isLetter(text[pos]))
        readWord();
      else
        ++pos;
    }
  }

  bool hasCarbon = false;
  bool hasDeuterium = false;
  bool hasMoreWords = false;
  double percent = 100;

 private:
  /// A percentage, or an isotope.
  void readNumber() {
    const std::size_t end = endOfRun(text, pos, isOfNumber);
    const std::string_view number = text.substr(pos, end - pos);
    const std::size_t next = endOfRun(text, end, isBlank);
    const char sign = next < text.size() ? text[next] : ' ';
    const char element = end < text.size() ? text[end] : ' ';
    pos = end + 1;
    if (sign == '%') {
      if (const auto value = toDecimal(number)) percent = std::stod(*value);
      pos = next + 1;
    } else if (number == "2" && element == 'H') {
      hasDeuterium = true;
    } else if (number == "13" && element == 'C') {
      hasCarbon = true;
    } else if (number != "15" || element != 'N') {
      hasMoreWords = true;
    }
  }

  /// "U" for uniform, "D" for deuterium, or the name of something.
  void readWord() {
    const std::size_t end = endOfRun(text, pos, isLetter);
    const std::string_view word = text.substr(pos, end - pos);
    if (word == "D")
      hasDeuterium = true;
    else if (word != "U")
      hasMoreWords = true;
    pos = end;
  }

  std::string_view text;
  std::size_t pos = 0;
};

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

/// What to tell the user of the labelling of a molecule; empty where it is plain.
std::string noteOn(const Group& group, const std::string& list) {
  const LabelledMolecule& first = *group.front();
  for (const LabelledMolecule* other : group)
    if (other->labelling.deuteration != first.labelling.deuteration)
      return "the samples of shift list " + list + " differ in deuterium, " + first.words + " and " +
             other->words + "; say --deuterated if the shifts are those of the deuterated one";
  if (!first.labelling.hasMoreWords) return "";
  return "the sample is labelled " + first.words + "; " +
         (first.labelling.deuteration > 0 ? "protons that are left are taken for deuterons: CB of Val is "
                                            "corrected by up to 0.8 ppm too much"
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
    const LabelledPart part(std::string_view(text).substr(begin, end - begin));
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
