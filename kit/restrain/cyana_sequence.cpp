// The sequence file of CYANA: a new one, or PRO of one that is there changed to cPRO.
#include <map>
#include <sstream>

#include "formats/limits.h"
#include "names/nomenclature.h"
#include "restrain/declarations.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr std::size_t kLongestNumber = 6;
constexpr const char* kTrans = "PRO";
constexpr const char* kCis = "cPRO";

const Dialect kDialect = {"cyana", "# ", 0, {"cPRO: the bond before it is cis; case matters"}};

// --- A new file -----------------------------------------------------------------------------------

std::string nameIn(char letter) {
  if (letter == kPassedProlineCode) return kTrans;
  return letter == kDisulfideCysteine ? "CYSS" : threeLetterName(letter);
}

RestraintText writeNew(const RestraintRequest& request) {
  if (request.chains.size() != 1)
    throw Error(
        "--for cyana makes a sequence file of one chain, as linkers part molecules there; name one by "
        "--chain, or add to your own file with --into FILE");
  const ProteinResult& chain = request.chains.front();
  std::map<std::string, RestrainedBond> bonds;
  for (const RestrainedBond& bond : bondsOf(request.chains)) bonds.emplace(bond.proline.number, bond);
  RestraintText result;
  result.text = commentsAtHead(kDialect, request);
  for (std::size_t i = 0; i < chain.sequence.size(); ++i) {
    const std::string& number = chain.numbers[i];
    if (!toInteger(number))
      throw Error("--for cyana: residue " + printable(number, 60) +
                  " has a number that a sequence file cannot hold");
    std::string name = nameIn(chain.sequence[i]);
    if (name.empty()) {
      result.text += commentLine(kDialect, "residue " + number + " is unknown: add it");
      result.notes.push_back("residue " + number + " is unknown and not in the sequence file: add it");
      continue;
    }
    if (const auto bond = bonds.find(number); bond != bonds.end()) {
      const Call call = bond->second.proline.call;
      if (call != Call::trans) result.text += commentLine(kDialect, callText(bond->second));
      if (call == Call::cis) name = kCis;
      if (call == Call::undecided) result.text += commentLine(kDialect, std::string(kCis) + " " + number);
    }
    result.text += name + " " + number + "\n";
  }
  return result;
}

// --- A file that is there -------------------------------------------------------------------------

/// A residue of the file.
struct Row {
  std::string name;
  int number = 0;
  std::size_t begin = 0;  ///< of the name in the text
};

bool isProline(const std::string& name) {
  return name == kTrans || name == kCis;
}

/// Residues without a number count on.
std::vector<Row> rowsOf(const NamedText& file) {
  std::vector<Row> rows;
  std::size_t lineNumber = 0;
  for (std::size_t pos = 0; const auto line = nextLine(file.text, pos);) {
    ++lineNumber;
    const std::size_t begin = static_cast<std::size_t>(line->data() - file.text.data());
    std::istringstream words{std::string(line->substr(0, line->find('#')))};
    std::string name;
    std::string number;
    std::string more;
    words >> name >> number >> more;
    if (name.empty()) continue;
    const auto given = toInteger(number);
    if (!isLetter(name.front()) || !more.empty() || number.size() > kLongestNumber ||
        (!number.empty() && !given))
      throw FileError(file.name, lineNumber, "is not a residue name and number",
                      "give a sequence file of CYANA");
    checkLimit(rows.size() + 1, limits::kResidues, file.name, lineNumber);
    const int next = rows.empty() ? 1 : rows.back().number + 1;
    rows.push_back({name, given.value_or(next), begin + line->find(name)});
  }
  if (rows.empty()) throw FileError(file.name, 0, "has no residue", "give a sequence file of CYANA");
  return rows;
}

/// The rows of the prolines by their number.
using Prolines = std::map<std::string, std::vector<std::size_t>>;

Prolines prolinesOf(const std::vector<Row>& rows) {
  Prolines prolines;
  for (std::size_t i = 0; i < rows.size(); ++i)
    if (isProline(rows[i].name)) prolines[std::to_string(rows[i].number)].push_back(i);
  return prolines;
}

/// The rows of a proline, after the residue that the shifts have before it.
std::vector<std::size_t> placesOf(const std::vector<Row>& rows, const Prolines& prolines,
                                  const RestrainedBond& bond) {
  std::vector<std::size_t> places;
  const auto known = prolines.find(bond.proline.number);
  if (known == prolines.end()) return places;
  for (const std::size_t i : known->second) {
    if (i == 0 || std::to_string(rows[i - 1].number) != bond.proline.previousNumber) continue;
    const std::string& before = rows[i - 1].name;
    if (isResidueBefore(isProline(before) ? kTrans : before, bond)) places.push_back(i);
  }
  return places;
}

RestraintText addTo(const NamedText& file, const RestraintRequest& request) {
  const std::vector<Row> rows = rowsOf(file);
  const Prolines prolines = prolinesOf(rows);
  std::map<std::size_t, RestrainedBond> taken;
  RestraintText result;
  for (const RestrainedBond& bond : bondsOf(request.chains)) {
    if (bond.proline.call == Call::none) continue;
    const std::vector<std::size_t> places = placesOf(rows, prolines, bond);
    if (places.empty() && bond.proline.call != Call::cis) continue;
    if (places.size() != 1)
      throw FileError(
          file.name, 0, places.empty() ? "has no " + nameOf(bond) : "has " + nameOf(bond) + " twice",
          "give the sequence of the chain with the numbers of the shifts, or name the chain by --chain");
    if (!taken.emplace(places.front(), bond).second)
      throw FileError(file.name, 0, "has one " + nameOf(bond) + " for several chains", "name one by --chain");
  }
  std::size_t done = 0;
  for (const auto& [place, bond] : taken) {
    const Row& row = rows[place];
    if (row.name == kCis && bond.proline.call != Call::cis)
      result.notes.push_back(callText(bond) + ": " + file.name + " has cPRO; it stays");
    if (row.name == kCis || bond.proline.call != Call::cis) continue;
    result.text += file.text.substr(done, row.begin - done) + kCis;
    done = row.begin + row.name.size();
    result.notes.push_back(callText(bond) + ": PRO " + std::to_string(row.number) + " is now cPRO");
  }
  result.text += file.text.substr(done);
  return result;
}

}  // namespace

RestraintText writeCyanaSequence(const RestraintRequest& request) {
  return request.into ? addTo(*request.into, request) : writeNew(request);
}

}  // namespace zorvela
