#include "names/nomenclature.h"

#include <algorithm>
#include <initializer_list>
#include <limits>
#include <sstream>
#include <unordered_map>
#include <unordered_set>

#include <gemmi/elem.hpp>
#include <gemmi/resinfo.hpp>

#include "util/text.h"

namespace zorvela {

namespace {

using Kind = AtomReading::Kind;

/// A residue that is not one of the 20, by the letter of its parent.
ResidueReading modified(char letter) {
  ResidueReading type;
  type.letter = letter;
  type.isModified = true;
  return type;
}

/// Names of one letter.
struct Names {
  char letter;
  std::string_view names;  ///< between blanks
};

// Names that NMR programs give to the usual residues (charge or tautomer in the name).
constexpr Names kProgramNames[] = {{'R', "ARG+"},
                                   {'K', "LYS+ LYN"},
                                   {'D', "ASP- ASH"},
                                   {'E', "GLU- GLH"},
                                   {'H', "HIS+ HIST HID HIE HIP HSD HSE HSP"},
                                   {'P', "CPRO CPR PRO_CIS"}};

// Names written out, as spreadsheets have them.
constexpr Names kWrittenOut[] = {
    {'A', "ALANINE"},   {'R', "ARGININE"},      {'N', "ASPARAGINE"}, {'D', "ASPARTATE"}, {'C', "CYSTEINE"},
    {'Q', "GLUTAMINE"}, {'E', "GLUTAMATE"},     {'G', "GLYCINE"},    {'H', "HISTIDINE"}, {'I', "ISOLEUCINE"},
    {'L', "LEUCINE"},   {'K', "LYSINE"},        {'M', "METHIONINE"}, {'P', "PROLINE"},   {'S', "SERINE"},
    {'T', "THREONINE"}, {'F', "PHENYLALANINE"}, {'W', "TRYPTOPHAN"}, {'Y', "TYROSINE"},  {'V', "VALINE"}};

// Modified residues by their parent, for which the library has none or another letter.
constexpr Names kModified[] = {{'A', "AYA"},     {'C', "SEC"},         {'D', "BHD"},    {'H', "DDE"},
                               {'K', "LYZ PYL"}, {'R', "2MR DA2 NMM"}, {'W', "BTR HTR"}};

// Residues that the library files under a parent whose shifts are nothing like theirs: other side chains at
// CB, no alpha proton, a peptide bond through the side chain, or three residues fused to a chromophore.
constexpr std::string_view kUnlikeTheirParent =
    "ABA AIB ALC BMT CR2 CR8 CRF CRO CRQ CSH DAB DHA FGA GHP GYS IAS MDO NLE NRQ ORN";

std::unordered_map<std::string, ResidueReading> makeOwnNames() {
  std::unordered_map<std::string, ResidueReading> names;
  const auto add = [&names](std::string_view list, const ResidueReading& type) {
    std::istringstream words{std::string(list)};
    for (std::string name; words >> name;) names.emplace(name, type);
  };
  for (const Names& one : kProgramNames) add(one.names, {one.letter});
  for (const Names& one : kWrittenOut) add(one.names, {one.letter});
  for (const Names& one : kModified) add(one.names, modified(one.letter));
  add(kUnlikeTheirParent, {});
  add("CYSS CYX", {'C', false, false, Thiol::disulfide});
  add("CYSH CYM CYS-", {'C', false, false, Thiol::notDisulfide});
  names.emplace("ASPARTIC ACID", ResidueReading{'D'});
  names.emplace("GLUTAMIC ACID", ResidueReading{'E'});
  // The ring of hydroxyproline has other shifts than that of proline.
  ResidueReading hydroxyproline = modified(kProlineCode);
  hydroxyproline.isHydroxyproline = true;
  add("HYP HY3", hydroxyproline);
  return names;
}

/// Names that the library's table leaves out, or that are read in another way than it does.
const std::unordered_map<std::string, ResidueReading>& ownNames() {
  static const std::unordered_map<std::string, ResidueReading> names = makeOwnNames();
  return names;
}

// The library's table; it takes names of ASCII letters and digits only.
gemmi::ResidueInfo tabulated(const std::string& name) {
  const bool isPlain = std::all_of(name.begin(), name.end(), [](char c) { return c > ' ' && c < '\x7F'; });
  return gemmi::find_tabulated_residue(isPlain ? name : std::string());
}

AtomReading inTable(Atom atom) {
  return {Kind::table, atom};
}

bool isAmong(std::initializer_list<std::string_view> names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Tells whether a name is for both alpha protons of glycine.
bool isBothAlphaProtons(std::string_view name) {
  return isAmong({"HA", "HA%", "HA*", "HA#", "QA"}, name);
}

/// Reads the name of one or both alpha protons of glycine, older names included.
AtomReading readGlycineProton(std::string_view name) {
  if (isBothAlphaProtons(name)) return {Kind::pseudo, Atom::HA2};
  if (isAmong({"HA1", "1HA"}, name)) return {Kind::table, Atom::HA2, true};
  if (isAmong({"HA2", "2HA", "HAX", "HA'", "HAA"}, name)) return inTable(Atom::HA2);
  if (isAmong({"HA3", "HAY", "HA''", "HAB", "HA\""}, name)) return inTable(Atom::HA3);
  return {};
}

AtomReading readAlphaProton(char letter, std::string_view name) {
  if (letter == 'G') return readGlycineProton(name);
  if (isBothAlphaProtons(name)) return inTable(Atom::HA);
  return {isAmong({"HA1", "HA2", "HA3", "1HA", "2HA", "HAX", "HAY"}, name) ? Kind::foreign : Kind::other};
}

}  // namespace

ResidueReading residueType(std::string_view name) {
  const std::string key = upper(name);
  if (const auto own = ownNames().find(key); own != ownNames().end()) {
    ResidueReading type = own->second;
    type.isCis = name == "cPRO" || key == "CPR" || key == "PRO_CIS";
    return type;
  }
  // The library's "standard" residues are the 20; the parent of another is in lower case.
  const gemmi::ResidueInfo info = tabulated(key);
  const char letter = upper(std::string_view(&info.one_letter_code, 1)).front();
  if (!info.is_amino_acid() || kAminoAcids.find(letter) == std::string_view::npos) return {};
  if (!info.is_standard()) return modified(letter);
  ResidueReading type;
  type.letter = letter;
  return type;
}

ResidueReading polypeptideResidue(std::string_view name) {
  return name.size() == 1 ? residueType(threeLetterName(name.front())) : residueType(name);
}

bool isIonOrWater(std::string_view name) {
  const std::string key = upper(name);
  if (key == "HOH" || key == "WAT" || key == "DOD") return true;
  // Two letters: an element, or a nucleotide (DA, DC, DG, DI, DT, DU).
  return key.size() == 2 && !isNucleotide(key) && gemmi::Element(key.c_str()) != gemmi::El::X;
}

std::string threeLetterName(char code) {
  if (code == kDisulfideCysteine) return "CYSS";
  constexpr std::string_view kLetters = "ACDEFGHIKLMNPQRSTVWYUO";
  constexpr std::string_view kNames = "ALACYSASPGLUPHEGLYHISILELYSLEUMETASNPROGLNARGSERTHRVALTRPTYRSECPYL";
  const std::size_t index = kLetters.find(code);
  return index == std::string_view::npos ? std::string() : std::string(kNames.substr(3 * index, 3));
}

bool isLinker(std::string_view name) {
  const std::string key = upper(name);
  if (key == "PL" || key == "LP") return true;
  return startsIgnoringCase(key, "LL") && (key.size() == 2 || (key.size() == 3 && isDigit(key[2])));
}

bool isOtherMolecule(std::string_view name) {
  if (isIonOrWater(name) || isNucleotide(name)) return true;
  const gemmi::ResidueInfo info = tabulated(upper(name));
  return info.found() && !info.is_amino_acid();
}

bool isNucleotide(std::string_view name) {
  static const std::unordered_set<std::string> names = {
      "A",  "C",  "G",   "T",   "U",   "I",   "DA",  "DC",  "DG", "DT", "DU", "DI", "RA", "RC",
      "RG", "RU", "ADE", "CYT", "GUA", "THY", "URA", "URI", "A5", "A3", "C5", "C3", "G5", "G3"};
  const std::string key = upper(name);
  return names.count(key) > 0 || tabulated(key).is_nucleic_acid();
}

std::optional<ResidueNumber> readResidueNumber(const std::string& text) {
  std::size_t end = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
  while (end < text.size() && isDigit(text[end])) ++end;
  const std::optional<int> number = toInteger(std::string_view(text).substr(0, end));
  if (!number) return std::nullopt;
  if (text.find_first_of(" \t", end) != std::string::npos) return std::nullopt;
  return ResidueNumber{*number, text.substr(end)};
}

std::optional<NeighbourCode> readNeighbourCode(std::string_view code) {
  constexpr std::size_t kOffsetSize = 2;  // a sign and a digit
  if (code.size() <= kOffsetSize) return std::nullopt;
  const std::string_view number = code.substr(0, code.size() - kOffsetSize);
  const std::string_view offset = code.substr(number.size());
  const bool hasSign = offset.front() == '-' || offset.front() == '+';
  const bool hasNumber = std::any_of(number.begin(), number.end(), isDigit) && number.back() != ' ';
  if (!hasSign || !isDigit(offset.back()) || !hasNumber) return std::nullopt;
  return NeighbourCode{std::string(number), toInteger(offset).value()};
}

std::optional<std::string> steppedNumber(const std::string& text, std::int64_t steps) {
  const std::optional<int> number = toInteger(text);
  if (!number) return std::nullopt;
  const std::int64_t result = *number + steps;
  if (result > std::numeric_limits<int>::max() || result < std::numeric_limits<int>::min())
    return std::nullopt;
  return std::to_string(result);
}

std::optional<std::string> nextNumber(const std::string& text) {
  return steppedNumber(text, 1);
}

AtomReading readAtom(char letter, std::string_view atom) {
  const AtomReading foreign{Kind::foreign};
  const std::string name = upper(withLatinLetters(atom));
  if (name == "N") return inTable(Atom::N);
  if (name == "H" || name == "HN") return letter == kProlineCode ? foreign : inTable(Atom::HN);
  if (name == "C" || name == "CO" || name == "C'") return inTable(Atom::C);
  if (name == "CA") return inTable(Atom::CA);
  if (name == "CB") return letter == 'G' ? foreign : inTable(Atom::CB);
  if (name == "CG") return letter == kProlineCode ? inTable(Atom::CG) : AtomReading{};
  return readAlphaProton(letter, name);
}

}  // namespace zorvela
