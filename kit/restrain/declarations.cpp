// The programs whose declarations are lines of text.
#include "restrain/declarations.h"

#include <algorithm>
#include <set>

#include "names/nomenclature.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

// Residue numbers of these programs are texts of up to four characters.
constexpr std::size_t kLongestNumber = 4;

/// Tells whether a name can be in a line unchanged.
bool isChainName(const std::string& name) {
  return std::all_of(name.begin(), name.end(), [&name](const char& c) {
    return isDigit(c) || isLetter(c) || (&c != &name.front() && contains("_-+.", std::string_view(&c, 1)));
  });
}

std::string whyNoNumber(const Dialect& dialect, const std::string& text) {
  if (dialect.takesCodes) return {};
  const auto number = readResidueNumber(text);
  if (!number) return printable(text, 60) + " is not a number";
  if (!number->code.empty()) return "no place for the insertion code of " + printable(text, 60);
  return text.size() > kLongestNumber ? "no place for the number " + printable(text, 60) : std::string();
}

Declaration declarationOf(const Dialect& dialect, const RestrainedBond& bond,
                          const std::function<Declaration(const RestrainedBond&)>& declare) {
  for (const std::string& number : {bond.proline.previousNumber, bond.proline.number})
    if (const std::string why = whyNoNumber(dialect, number); !why.empty()) return {{}, why};
  return declare(bond);
}

std::string commentedOut(const Dialect& dialect, const std::string& lines) {
  std::string text;
  for (std::size_t pos = 0; const auto line = nextLine(lines, pos);)
    text += commentLine(dialect, std::string(*line));
  return text;
}

// --- The single programs --------------------------------------------------------------------------

std::string segid(const RestrainedBond& bond) {
  return bond.chain.empty() ? std::string() : "segid \"" + bond.chain + "\" and ";
}

RestraintText writeCyanaAngles(const RestraintRequest& request) {
  const Dialect dialect = {"cyana-aco",
                           "# ",
                           0,
                           {"of little use beside cPRO in the sequence (--for cyana): omega is fixed there",
                            "not sure: that omega is counted to the proline; it follows from cPRO"}};
  return declarations(dialect, request, [](const RestrainedBond& bond) -> Declaration {
    const std::string indent(4 - std::min<std::size_t>(4, bond.proline.number.size()), ' ');
    return {indent + bond.proline.number + " PRO   OMEGA   -20.0    20.0\n", {}};
  });
}

RestraintText writeCns(const RestraintRequest& request) {
  const Dialect dialect = {
      "cns",
      "! ",
      4,
      {"for a topology that names atoms with - and +; with atom type CCIS: --for topallhdg",
       "not sure: the form with - and +, by analogy to the patch PEPP"}};
  return declarations(dialect, request, [](const RestrainedBond& bond) -> Declaration {
    return {"patch CIPP reference=-=(" + segid(bond) + "resid " + bond.proline.previousNumber +
                ") reference=+=(" + segid(bond) + "resid " + bond.proline.number + ") end\n",
            {}};
  });
}

RestraintText writeTopallhdg(const RestraintRequest& request) {
  const Dialect dialect = {"topallhdg",
                           "! ",
                           4,
                           {"for a topology with atom type CCIS; the residue is the one before the proline"}};
  return declarations(dialect, request, [](const RestrainedBond& bond) -> Declaration {
    return {"patch CISP reference=NIL=(" + segid(bond) + "resid " + bond.proline.previousNumber + ") end\n",
            {}};
  });
}

RestraintText writeXplorPython(const RestraintRequest& request) {
  Dialect dialect = {"xplor-python",
                     "# ",
                     4,
                     {"after the sequence is read; the residue is the one before the proline",
                      "not sure, where the chain has no name: that \"\" is its segment"}};
  dialect.head = "import psfGen\n";
  return declarations(dialect, request, [](const RestrainedBond& bond) -> Declaration {
    return {"psfGen.cisPeptide(" + bond.proline.previousNumber + ", \"" + bond.chain + "\")\n", {}};
  });
}

RestraintText writeAria(const RestraintRequest& request) {
  Dialect dialect = {"aria",
                     "<!-- ",
                     4,
                     {"for the element data of the project",
                      "not sure: that the residue is the proline and not the one before it",
                      "not sure: whether segid must have four characters, with blanks at its end"}};
  dialect.commentEnd = " -->";
  dialect.needsChain = true;
  return declarations(dialect, request, [](const RestrainedBond& bond) -> Declaration {
    return {"<cispropatch residue=\"" + bond.proline.number + "\" segid=\"" + bond.chain + "\"/>\n", {}};
  });
}

RestraintText writeTbl(const RestraintRequest& request) {
  const Dialect dialect = {
      "tbl",
      "! ",
      4,
      {"beside the patch (--for cns, --for topallhdg): without it the trans improper works against this"}};
  return declarations(dialect, request, [](const RestrainedBond& bond) -> Declaration {
    const auto atom = [&](const std::string& number, const char* name) {
      return "(" + segid(bond) + "resid " + number + " and name " + name + ")";
    };
    return {"assign " + atom(bond.proline.previousNumber, "CA") + " " +
                atom(bond.proline.previousNumber, "C") + "\n       " + atom(bond.proline.number, "N") + " " +
                atom(bond.proline.number, "CA") + " 5.0 0.0 20.0 2\n",
            {}};
  });
}

RestraintText writeRosetta(const RestraintRequest& request) {
  Dialect dialect = {"rosetta",
                     "# ",
                     1,
                     {"numbers and chain are the model's own; the width, 0.17 rad or 10 degrees, is ours",
                      "not sure: fragments may keep the bond trans unless they are picked with cis ones"}};
  dialect.needsChain = true;
  dialect.joinsChain = true;
  return declarations(dialect, request, [](const RestrainedBond& bond) -> Declaration {
    const std::string before = bond.proline.previousNumber + bond.chain;
    const std::string proline = bond.proline.number + bond.chain;
    return {"Dihedral CA " + before + " C " + before + " N " + proline + " CA " + proline +
                " CIRCULARHARMONIC 0.0 0.17\n",
            {}};
  });
}

/// Rejects a proline that occurs twice: it would be unclear which declaration counts.
void checkNumbers(const RestraintRequest& request) {
  std::set<std::pair<std::string, std::string>> known;
  for (const RestrainedBond& bond : bondsOf(request.chains))
    if (!known.emplace(bond.chain, bond.proline.number).second)
      throw Error("P" + printable(bond.proline.number, 60) + " of chain \"" + printable(bond.chain, 60) +
                  "\" is given twice; name one chain and one list, or rename a chain by --chain-as");
}

}  // namespace

bool isDeclared(const RestrainedBond& bond) {
  return bond.proline.call == Call::cis || bond.proline.call == Call::undecided;
}

std::string commentLine(const Dialect& dialect, const std::string& text) {
  return dialect.comment + text + dialect.commentEnd + "\n";
}

std::string commentsAtHead(const Dialect& dialect, const RestraintRequest& request) {
  std::string text = commentLine(dialect, "Cis prolines by chemical shifts, with P_CIS_NORM");
  for (const std::string& remark : dialect.remarks) text += commentLine(dialect, remark);
  const std::vector<RestrainedBond> bonds = bondsOf(request.chains);
  const auto isCis = [](const RestrainedBond& bond) { return bond.proline.call == Call::cis; };
  if (std::none_of(bonds.begin(), bonds.end(), isCis))
    text += commentLine(dialect, bonds.empty() ? "The chains have no proline" : "No proline is called cis");
  return text;
}

void checkChains(const Dialect& dialect, const RestraintRequest& request) {
  if (dialect.longestChain == kAnyChain) return;
  std::set<std::string> names;
  for (const RestrainedBond& bond : bondsOf(request.chains))
    if (isDeclared(bond)) names.insert(bond.chain);
  if (dialect.longestChain == 0) {
    if (names.size() > 1)
      throw Error("--for " + dialect.program +
                  " cannot tell chains apart, and several have a cis or undecided " +
                  "proline; name one by --chain");
    return;
  }
  for (const std::string& name : names) {
    if (name.empty() && dialect.needsChain)
      throw Error("--for " + dialect.program + " needs the name of the chain; add --chain-as NAME");
    if (name.size() > dialect.longestChain || !isChainName(name))
      throw Error("--for " + dialect.program + " has no place for a chain called \"" + printable(name, 60) +
                  "\" (" + counted(dialect.longestChain, "letter or digit", "letters or digits") +
                  " at most); add --chain-as \"" + printable(name, 60) + "=A\"");
    if (dialect.joinsChain && !isLetter(name.front()))
      throw Error("--for " + dialect.program + " writes chain " + name +
                  " behind the residue number, where it reads as a digit of it; add --chain-as \"" + name +
                  "=A\"");
  }
}

RestraintText declarations(const Dialect& dialect, const RestraintRequest& request,
                           const std::function<Declaration(const RestrainedBond&)>& declare) {
  checkChains(dialect, request);
  RestraintText result;
  std::string lines;
  bool isEmpty = true;
  for (const RestrainedBond& bond : bondsOf(request.chains)) {
    if (!isDeclared(bond)) continue;
    const Declaration declaration = declarationOf(dialect, bond, declare);
    lines += commentLine(dialect, callText(bond));
    lines += bond.proline.call == Call::cis ? declaration.text : commentedOut(dialect, declaration.text);
    if (bond.proline.call == Call::cis && !declaration.text.empty()) isEmpty = false;
    if (declaration.omission.empty()) continue;
    lines += commentLine(dialect, "left out: " + declaration.omission);
    result.notes.push_back(callText(bond) + " is left out: " + declaration.omission);
  }
  result.text = commentsAtHead(dialect, request);
  result.text += isEmpty ? lines : dialect.head + lines + dialect.tail;
  return result;
}

const std::vector<RestraintFormat>& restraintFormats() {
  using ModelUse = RestraintFormat::ModelUse;
  static const std::vector<RestraintFormat> kFormats = {
      {"cyana", "CYANA sequence file (.seq) with cPRO", "seq", true, ModelUse::none, writeCyanaSequence},
      {"cyana-aco", "CYANA angle restraints (.aco)", "aco", false, ModelUse::none, writeCyanaAngles},
      {"cns", "CNS, X-PLOR: patch CIPP, topology with - and + atoms", "inp", false, ModelUse::none, writeCns},
      {"topallhdg", "CNS, X-PLOR: patch CISP, topology with atom type CCIS", "inp", false, ModelUse::none,
       writeTopallhdg},
      {"xplor-python", "X-PLOR's Python interface: psfGen.cisPeptide", "py", false, ModelUse::none,
       writeXplorPython},
      {"aria", "ARIA 2: cispropatch of the project", "xml", false, ModelUse::none, writeAria},
      {"tbl", "CNS, X-PLOR: omega restraints (.tbl)", "tbl", false, ModelUse::none, writeTbl},
      {"nef", "NEF dihedral restraint list", "nef", true, ModelUse::none, writeNefRestraints},
      {"rosetta", "Rosetta constraints", "cst", false, ModelUse::none, writeRosetta},
      {"amber", "AMBER: &rst with --structure, else for makeANG_RST", "rst", false, ModelUse::optional,
       writeAmber},
      {"pdb", "CISPEP records for --structure", "pdb", false, ModelUse::needed, writeCispep},
      {"mmcif", "struct_mon_prot_cis for --structure", "cif", false, ModelUse::needed, writeMonProtCis}};
  return kFormats;
}

void mustFit(const RestraintFormat& format, const RestraintRequest& request) {
  if (request.into && !format.takesFile) throw Error("--into needs --for cyana or --for nef");
  if (request.structure && format.model == RestraintFormat::ModelUse::none)
    throw Error(
        "--structure needs --for amber, pdb or mmcif; to check a model use zorvela-kit run --structure");
  if (!request.structure && format.model == RestraintFormat::ModelUse::needed)
    throw Error(std::string("--for ") + format.name + " describes a model; add --structure FILE");
}

RestraintText writeRestraints(const RestraintFormat& format, const RestraintRequest& request) {
  checkNumbers(request);
  return format.write(request);
}

}  // namespace zorvela
