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

/// Names of one type that the library's table leaves out, or reads in another way.
struct Names {
  std::string_view names;  ///< between bars
  ResidueReading type;
};

constexpr Names kOwnNames[] = {
    // With the charge or tautomer, as NMR programs have them, or written out, as spreadsheets do.
    {"ALANINE", {'A'}},
    {"ARG+|ARGININE", {'R'}},
    {"ASPARAGINE", {'N'}},
    {"ASP-|ASH|ASPARTATE|ASPARTIC ACID", {'D'}},
    {"CYSTEINE", {'C'}},
    {"CYSS|CYX", {'C', false, false, Thiol::disulfide}},
    {"CYSH|CYM|CYS-", {'C', false, false, Thiol::notDisulfide}},
    {"GLUTAMINE", {'Q'}},
    {"GLU-|GLH|GLUTAMATE|GLUTAMIC ACID", {'E'}},
    {"GLYCINE", {'G'}},
    {"HIS+|HIST|HID|HIE|HIP|HSD|HSE|HSP|HISTIDINE", {'H'}},
    {"ISOLEUCINE", {'I'}},
    {"LEUCINE", {'L'}},
    {"LYS+|LYN|LYSINE", {'K'}},
    {"METHIONINE", {'M'}},
    {"PHENYLALANINE", {'F'}},
    {"CPRO|PROLINE", {'P'}},
    {"CPR|PRO_CIS", {'P', false, false, Thiol::unknown, true}},
    {"SERINE", {'S'}},
    {"THREONINE", {'T'}},
    {"TRYPTOPHAN", {'W'}},
    {"TYROSINE", {'Y'}},
    {"VALINE", {'V'}},
    // Modified residues by their parent. The ring of hydroxyproline has other shifts than that of proline.
    {"AYA", {'A', true}},
    {"SEC", {'C', true}},
    {"BHD", {'D', true}},
    {"DDE", {'H', true}},
    {"LYZ|PYL", {'K', true}},
    {"2MR|DA2|NMM", {'R', true}},
    {"BTR|HTR", {'W', true}},
    {"HYP|HY3", {'P', true, true}},
    // The library files these under a parent whose shifts are nothing like theirs. They have other side
    // chains at CB, no alpha proton, or a peptide bond through the side chain. Some are three residues fused
    // to a chromophore.
    {"ABA|AIB|ALC|BMT|CR2|CR8|CRF|CRO|CRQ|CSH|DAB|DHA|FGA|GHP|GYS|IAS|MDO|NLE|NRQ|ORN", {}}};

const std::unordered_map<std::string, ResidueReading>& ownNames() {
  static const auto all = [] {
    std::unordered_map<std::string, ResidueReading> types;
    for (const Names& one : kOwnNames) {
      std::istringstream names{std::string(one.names)};
      for (std::string name; std::getline(names, name, '|');) types.emplace(name, one.type);
    }
    return types;
  }();
  return all;
}

// The library's table; it takes names of ASCII letters and digits only.
gemmi::ResidueInfo tabulated(const std::string& name) {
  const bool isPlain = std::all_of(name.begin(), name.end(), [](char c) { return c > ' ' && c < '\x7F'; });
  return gemmi::find_tabulated_residue(isPlain ? name : std::string());
}

bool isAmong(std::initializer_list<std::string_view> names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Reads the name of an alpha proton, older names included.
AtomReading readAlphaProton(bool isGlycine, std::string_view name) {
  const bool isSecond = isAmong({"HA2", "2HA", "HAX"}, name);
  const bool isThird = isAmong({"HA3", "HAY"}, name);
  const bool isOlder = isAmong({"HA1", "1HA"}, name);
  if (isAmong({"HA", "HA%", "HA*", "HA#", "QA"}, name))
    return isGlycine ? AtomReading{Kind::pseudo, Atom::HA2} : AtomReading{Kind::table, Atom::HA};
  if (!isGlycine) return {isSecond || isThird || isOlder ? Kind::foreign : Kind::other};
  if (isSecond || isOlder || isAmong({"HA'", "HAA"}, name)) return {Kind::table, Atom::HA2, isOlder};
  if (isThird || isAmong({"HA''", "HAB", "HA\""}, name)) return {Kind::table, Atom::HA3};
  return {};
}

}  // namespace

ResidueReading residueType(std::string_view name) {
  const std::string key = upper(name);
  if (name == "cPRO") return ownNames().at("CPR");
  if (const auto own = ownNames().find(key); own != ownNames().end()) return own->second;
  // The library's "standard" residues are the 20; the parent of another is in lower case.
  const gemmi::ResidueInfo info = tabulated(key);
  const char letter = upper(std::string_view(&info.one_letter_code, 1)).front();
  if (!info.is_amino_acid() || kAminoAcids.find(letter) == std::string_view::npos) return {};
  return {letter, !info.is_standard()};
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
  const bool isGlycine = letter == 'G';
  const bool hasRing = letter == kProlineCode;
  const std::string name = upper(withLatinLetters(atom));
  if (name == "N") return {Kind::table, Atom::N};
  if (name == "H" || name == "HN") return {hasRing ? Kind::foreign : Kind::table, Atom::HN};
  if (name == "C" || name == "CO" || name == "C'") return {Kind::table, Atom::C};
  if (name == "CA") return {Kind::table, Atom::CA};
  if (name == "CB") return {isGlycine ? Kind::foreign : Kind::table, Atom::CB};
  if (name == "CG") return {hasRing ? Kind::table : Kind::other, Atom::CG};
  return readAlphaProton(isGlycine, name);
}

}  // namespace zorvela
