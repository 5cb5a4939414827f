// Omega as a NEF dihedral restraint list: alone, or after the frames of a file that is there.
#include <map>
#include <set>

#include "formats/star/nef_annotation.h"
#include "formats/star/star_tokens.h"
#include "names/nomenclature.h"
#include "restrain/declarations.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/version.h"

namespace zorvela {

namespace {

const std::string kList = "nef_dihedral_restraint_list";

/// The residue names of a NEF file, and where a frame can be added.
struct NefFile {
  std::map<std::pair<std::string, std::string>, std::string> residues;  ///< by chain and number
  std::set<std::string> frames;                                         ///< in small letters
};

NefFile readNef(const NamedText& file) {
  NefFile nef;
  annotateNef(file.text, file.name, {}, [&nef](const NefSequenceRow& row) -> std::optional<bool> {
    nef.residues.emplace(std::pair(row.chain, row.number), row.residue);
    return std::nullopt;
  });
  StarTokens tokens(file.text);
  std::size_t blocks = 0;
  std::string open;
  for (StarToken token = tokens.next(); token.kind != StarToken::Kind::end; token = tokens.next()) {
    if (token.kind != StarToken::Kind::frame) continue;
    const std::string name = lower(token.value);
    if (startsIgnoringCase(name, "data_")) ++blocks;
    open = name == "save_" || startsIgnoringCase(name, "data_") ? std::string() : name;
    nef.frames.insert(name);
  }
  if (blocks != 1) throw FileError(file.name, 0, "has several data blocks", "give a file with one");
  if (!open.empty())
    throw FileError(file.name, 0, "ends within " + printable(open, 60), "close it with save_");
  return nef;
}

/// The head of a restraint list whose name is free.
std::string headOf(const std::set<std::string>& frames) {
  std::string name = kList + "_cis";
  for (int i = 2; frames.count("save_" + name) > 0; ++i) name = kList + "_cis_" + std::to_string(i);
  std::string text = "save_" + name + "\n   _" + kList + ".sf_category       " + kList + "\n   _" + kList +
                     ".sf_framecode      " + name + "\n   _" + kList +
                     ".potential_type    square-well-parabolic\n   _" + kList +
                     ".restraint_origin  chemical_shift\n\n   loop_\n";
  std::vector<std::string> tags = {"index", "restraint_id", "restraint_combination_id"};
  for (const char* atom : {"1", "2", "3", "4"})
    for (const char* part : {"chain_code_", "sequence_code_", "residue_name_", "atom_name_"})
      tags.push_back(std::string(part) + atom);
  for (const char* tag : {"weight", "target_value", "target_value_uncertainty", "lower_linear_limit",
                          "lower_limit", "upper_limit", "upper_linear_limit", "name"})
    tags.emplace_back(tag);
  for (const std::string& tag : tags) text += "      _nef_dihedral_restraint." + tag + "\n";
  return text + "\n";
}

const char* const kMetaData =
    "data_cis_prolines\n\nsave_nef_nmr_meta_data\n   _nef_nmr_meta_data.sf_category     nef_nmr_meta_data\n"
    "   _nef_nmr_meta_data.sf_framecode    nef_nmr_meta_data\n"
    "   _nef_nmr_meta_data.format_name     nmr_exchange_format\n"
    "   _nef_nmr_meta_data.format_version  1.1\n"
    "   _nef_nmr_meta_data.program_name    zorvela-kit\n";

std::string metaData() {
  return std::string(kMetaData) + "   _nef_nmr_meta_data.program_version " + version() +
         "\n   _nef_nmr_meta_data.creation_date   .\n   _nef_nmr_meta_data.uuid            .\nsave_\n\n";
}

std::string rowText(int index, const RestrainedBond& bond, const std::string& before,
                    const std::string& proline) {
  const auto atom = [&](const std::string& number, const std::string& residue, const char* name) {
    return " " + bond.chain + " " + number + " " + residue + " " + name;
  };
  const std::string id = std::to_string(index);
  return "      " + id + " " + id + " ." + atom(bond.proline.previousNumber, before, "CA") +
         atom(bond.proline.previousNumber, before, "C") + atom(bond.proline.number, proline, "N") +
         atom(bond.proline.number, proline, "CA") + " 1 0 . . -20 20 . OMEGA\n";
}

bool isWord(const std::string& name) {
  return !name.empty() && name.find_first_of(" \t\r\n'\"") == std::string::npos;
}

/// A text with the line ends of a file.
std::string withLineEndsOf(const std::string& file, const std::string& text) {
  const std::size_t first = file.find_first_of("\r\n");
  if (first == std::string::npos || file[first] == '\n') return text;
  const std::string lineEnd = file.substr(first, 2) == "\r\n" ? "\r\n" : "\r";
  std::string result;
  for (const char c : text) result += c == '\n' ? lineEnd : std::string(1, c);
  return result;
}

}  // namespace

RestraintText writeNefRestraints(const RestraintRequest& request) {
  const NefFile nef = request.into ? readNef(*request.into) : NefFile();
  Dialect dialect = {"nef", "# ", 60};
  dialect.chainName = ChainName::needed;
  dialect.takesCodes = true;
  dialect.head = headOf(nef.frames);
  dialect.tail = "   stop_\nsave_\n";
  const auto residueIn = [&](const RestrainedBond& bond, const std::string& number) {
    const auto known = nef.residues.find({bond.chain, number});
    return known == nef.residues.end() ? std::string() : known->second;
  };
  int index = 0;
  RestraintText result = declarations(dialect, request, [&](const RestrainedBond& bond) -> Declaration {
    const std::string before =
        request.into ? residueIn(bond, bond.proline.previousNumber) : threeLetterName(bond.letterBefore());
    const std::string proline = request.into ? residueIn(bond, bond.proline.number) : "PRO";
    if (request.into && (residueType(proline).letter != kProlineCode || !isResidueBefore(before, bond))) {
      const std::string what =
          "has no " + nameOf(bond) + " in chain \"" + printable(bond.chain, 60) + "\" of its sequence";
      if (bond.proline.call == Call::undecided) return {{}, "the file " + what};
      throw FileError(request.into->name, 0, what, "name its chain by --chain-as");
    }
    if (!isWord(before) || !isWord(proline)) return {{}, "a residue without a name"};
    return {rowText(bond.proline.call == Call::cis ? ++index : index + 1, bond, before, proline), {}};
  });
  if (!request.into) {
    result.text = metaData() + result.text;
    return result;
  }
  const std::string& text = request.into->text;
  const bool isOpen = text.back() != '\n' && text.back() != '\r';
  result.text = text + withLineEndsOf(text, (isOpen ? "\n\n" : "\n") + result.text);
  return result;
}

}  // namespace zorvela
