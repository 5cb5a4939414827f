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

/// Fills the form of a declaration.
std::string filled(std::string form, const RestrainedBond& bond) {
  const std::string& number = bond.proline.number;
  const std::pair<std::string, std::string> values[] = {
      {"{before}", bond.proline.previousNumber},
      {"{proline}", number},
      {"{blanks}", std::string(kLongestNumber - std::min(kLongestNumber, number.size()), ' ')},
      {"{segid}", bond.chain.empty() ? std::string() : "segid \"" + bond.chain + "\" and "},
      {"{chain}", bond.chain}};
  for (const auto& [name, value] : values)
    for (std::size_t at = form.find(name); at != std::string::npos; at = form.find(name, at + value.size()))
      form.replace(at, name.size(), value);
  return form;
}

/// The writer of a program whose declarations have one form. In it, {before} and {proline} are residue
/// numbers, and {blanks} fills that of the proline to four characters. {segid} selects the chain, {chain} is
/// its name.
auto lines(const Dialect& dialect, const std::string& form) {
  return [dialect, form](const RestraintRequest& request) {
    return declarations(dialect, request, [&form](const RestrainedBond& bond) {
      return Declaration{filled(form, bond), {}};
    });
  };
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
    if (name.empty() && dialect.chainName != ChainName::optional)
      throw Error("--for " + dialect.program + " needs the name of the chain; add --chain-as NAME");
    if (name.size() > dialect.longestChain || !isChainName(name))
      throw Error("--for " + dialect.program + " has no place for a chain called \"" + printable(name, 60) +
                  "\" (" + counted(dialect.longestChain, "letter or digit", "letters or digits") +
                  " at most); add --chain-as \"" + printable(name, 60) + "=A\"");
    if (dialect.chainName == ChainName::joined && !isLetter(name.front()))
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
      {"cyana-aco", "CYANA angle restraints (.aco)", "aco", false, ModelUse::none,
       lines({"cyana-aco",
              "# ",
              0,
              {"of little use beside cPRO in the sequence (--for cyana): omega is fixed there",
               "not sure: that omega is counted to the proline; it follows from cPRO"}},
             "{blanks}{proline} PRO   OMEGA   -20.0    20.0\n")},
      {"cns", "CNS, X-PLOR: patch CIPP, topology with - and + atoms", "inp", false, ModelUse::none,
       lines({"cns",
              "! ",
              4,
              {"for a topology that names atoms with - and +; with atom type CCIS: --for topallhdg",
               "not sure: the form with - and +, by analogy to the patch PEPP"}},
             "patch CIPP reference=-=({segid}resid {before}) reference=+=({segid}resid {proline}) end\n")},
      {"topallhdg", "CNS, X-PLOR: patch CISP, topology with atom type CCIS", "inp", false, ModelUse::none,
       lines({"topallhdg",
              "! ",
              4,
              {"for a topology with atom type CCIS; the residue is the one before the proline"}},
             "patch CISP reference=NIL=({segid}resid {before}) end\n")},
      {"xplor-python", "X-PLOR's Python interface: psfGen.cisPeptide", "py", false, ModelUse::none,
       lines({"xplor-python",
              "# ",
              4,
              {"after the sequence is read; the residue is the one before the proline",
               "not sure, where the chain has no name: that \"\" is its segment"},
              "",
              "import psfGen\n"},
             "psfGen.cisPeptide({before}, \"{chain}\")\n")},
      {"aria", "ARIA 2: cispropatch of the project", "xml", false, ModelUse::none,
       lines({"aria",
              "<!-- ",
              4,
              {"for the element data of the project",
               "not sure: that the residue is the proline and not the one before it",
               "not sure: whether segid must have four characters, with blanks at its end"},
              " -->",
              "",
              "",
              ChainName::needed},
             "<cispropatch residue=\"{proline}\" segid=\"{chain}\"/>\n")},
      {"tbl", "CNS, X-PLOR: omega restraints (.tbl)", "tbl", false, ModelUse::none,
       lines({"tbl",
              "! ",
              4,
              {"beside the patch (--for cns, --for topallhdg): without it the trans improper works against "
               "this"}},
             "assign ({segid}resid {before} and name CA) ({segid}resid {before} and name C)\n"
             "       ({segid}resid {proline} and name N) ({segid}resid {proline} and name CA) 5.0 0.0 20.0 "
             "2\n")},
      {"nef", "NEF dihedral restraint list", "nef", true, ModelUse::none, writeNefRestraints},
      {"rosetta", "Rosetta constraints", "cst", false, ModelUse::none,
       lines({"rosetta",
              "# ",
              1,
              {"numbers and chain are the model's own; the width, 0.17 rad or 10 degrees, is ours",
               "not sure: fragments may keep the bond trans unless they are picked with cis ones"},
              "",
              "",
              "",
              ChainName::joined},
             "Dihedral CA {before}{chain} C {before}{chain} N {proline}{chain} CA {proline}{chain} "
             "CIRCULARHARMONIC 0.0 0.17\n")},
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
