// What must hold of the import of any input, of gzip, of the tables, and the bounds of work.
#include "fuzz/checks.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>

#include "formats/format.h"
#include "formats/input_bytes.h"
#include "formats/sequence_file.h"
#include "formats/star/nef_annotation.h"
#include "formats/star/star_tokens.h"
#include "fuzz/holds.h"
#include "names/nomenclature.h"
#include "predict/tables.h"
#include "protein/shifts.h"
#include "util/text.h"
#include "zorvela/error.h"
#include "zorvela/predict.h"
#include "zorvela/read.h"
#include "zorvela/structure.h"

namespace zorvela {

namespace {

// Words follow one another in the text.
void checkWords(const std::string& original) {
  StarTokens tokens(original);
  std::size_t end = 0;
  for (StarToken token = tokens.next(); token.kind != StarToken::Kind::end; token = tokens.next()) {
    check(token.begin >= end && token.end > token.begin && token.end <= original.size());
    end = token.end;
  }
}

void checkProtein(const Protein& protein) {
  check(!protein.sequence.empty() && !protein.shifts.empty());
  check(protein.numbers.size() == protein.sequence.size());
  AtomKey before;
  for (const Shift& shift : protein.shifts) {
    check(shift.position >= 1 && static_cast<std::size_t>(shift.position) <= protein.sequence.size());
    check(std::isfinite(shift.ppm));
    const AtomKey atom = atomKey(shift.position, shift.atom);
    check(before < atom);
    before = atom;
  }
  for (const std::string& note : protein.notes) check(note.find('\n') == std::string::npos);
}

std::string tableText(const Protein& protein) {
  std::ostringstream out;
  writeShiftTable(protein, out);
  return out.str();
}

// The import of an imported table is the same table.
void checkRoundTrip(const Protein& protein) {
  const std::string text = tableText(protein);
  const auto again = readShiftBytes(text, "again.tab", {});
  check(again.size() == 1);
  check(again.front().sequence == protein.sequence);
  check(tableText(again.front()) == text);
}

void importWith(const std::string& bytes, const ImportOptions& options) {
  checkMessageOf([&] {
    for (const Protein& protein : readShiftBytes(bytes, "input", options)) {
      checkProtein(protein);
      checkRoundTrip(protein);
    }
  });
}

void importBothWays(const std::string& bytes) {
  importWith(bytes, {});
  importWith(bytes, {{}, {"all"}});
}

/// As a sequence of its own, and for a list without names: the bytes are residues or an error.
void checkSequence(const std::string& bytes) {
  looksLikeSequence(bytes);
  checkMessageOf([&] {
    for (const FileChain& chain : sequenceFileOf(bytes, "input").chains) check(!chain.residues.empty());
    ImportOptions options;
    options.sequence = readSequenceBytes(bytes, "input");
    for (const Protein& protein : readShiftBytes("resid,atom,shift\n2,CA,55.1\n3,CB,30.2\n", "list", options))
      checkProtein(protein);
  });
}

// --- gzip -----------------------------------------------------------------------------------------

std::string gzipped(const std::string& text) {
  constexpr int kGzipWindow = 15 + 16;
  constexpr int kMemory = 8;
  z_stream stream{};
  check(deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, kGzipWindow, kMemory, Z_DEFAULT_STRATEGY) == Z_OK);
  std::string packed(deflateBound(&stream, static_cast<uLong>(text.size())), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  check(deflate(&stream, Z_FINISH) == Z_STREAM_END);
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  return packed;
}

/// A fault of a packed file is an error; what is unpacked all the same is the text and no other.
void checkDamaged(const std::string& packed, const std::string& text) {
  checkMessageOf([&] { check(unpacked(packed, "input") == text); });
}

// --- Tables ---------------------------------------------------------------------------------------

const std::map<std::string, std::string>& shippedTables() {
  static const auto tables = [] {
    std::map<std::string, std::string> texts;
    for (const char* name : kTableNames) {
      std::ifstream in(std::filesystem::path(SHIPPED_TABLES) / name, std::ios::binary);
      texts[name] = {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    return texts;
  }();
  return tables;
}

/// Which of the seven a text would be: each has column names of its own, four share theirs.
const char* tableOf(const std::string& text) {
  if (contains(text, "avg_cis")) return "Pro.cs.tab";
  if (contains(text, "cis_prev")) return "Pro.seq.tab";
  return contains(text, "_MIN") ? "sslimit.tab" : "randcoil.tab";
}

/// A stretch with every residue type before and after a proline, and all shifts.
Protein everyNeighbour() {
  std::string rows = "resid,resname,atom,shift\n";
  int resid = 0;
  for (const char type : std::string("ACDEFGHIKLMNQRSTVWY"))
    for (const char letter : {type, 'P', type}) {
      ++resid;
      for (const char* row : {"N,120.1", "HN,8.2", "HA,4.4", "C,175.9", "CA,56.3", "CB,32.2"})
        rows += std::to_string(resid) + "," + letter + "," + row + "\n";
    }
  return readShiftBytes(rows, "neighbours", {}).front();
}

void checkPrediction(const ProteinResult& result) {
  const auto isShare = [](const std::optional<float>& p) { return !p || (*p >= 0 && *p <= 1); };
  for (const ProlineResult& proline : result.prolines) {
    check(isShare(proline.pCis) && isShare(proline.pCisNorm));
    check(proline.pCisNorm || !proline.reason.empty());
  }
}

// --- Bounds ---------------------------------------------------------------------------------------

constexpr std::size_t kMiB = std::size_t{1} << 20;
// The sanitizers slow everything down.
constexpr double kSlowness = 10;

/// The processor time that `read` takes.
template <class Read>
double secondsOf(Read read) {
  const std::clock_t start = std::clock();
  checkMessageOf(read);
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// A small input made large, as hostile files are: the line before each line "@@N" is repeated N times, with
/// the number of the copy where it has "@".
std::string grown(const std::string& text) {
  std::string result;
  std::string last;
  std::size_t pos = 0;
  while (const auto line = nextLine(text, pos)) {
    const auto times = line->substr(0, 2) == "@@" ? toInteger(line->substr(2)) : std::nullopt;
    for (int i = 1; i <= times.value_or(0) && result.size() < kMiB; ++i)
      for (const char c : last + "\n") result += c == '@' ? std::to_string(i) : std::string(1, c);
    if (times) continue;
    last = *line;
    result += last + "\n";
  }
  return result;
}

/// A text with a piece of it so many times.
std::string repeated(const std::string& text, std::size_t begin, std::size_t size, std::size_t times) {
  std::string result = text.substr(0, begin);
  for (std::size_t i = 0; i < times; ++i) result.append(text, begin, size);
  return result.append(text, begin + size);
}

}  // namespace

void checkStar(const std::string& bytes) {
  checkWords(bytes);
  importBothWays(bytes);
}

void checkNef(const std::string& bytes) {
  importBothWays(
      "data_x\nsave_nef_nmr_meta_data\n_nef_nmr_meta_data.sf_category nef_nmr_meta_data\n"
      "_nef_nmr_meta_data.format_name nmr_exchange_format\nsave_\n" +
      bytes);
}

void checkCsv(const std::string& bytes) {
  Source source;
  source.file = "input";
  source.text = bytes;
  checkMessageOf([&] { readCsv(source); });
  importBothWays(bytes);
  checkSequence(bytes);
}

void checkGzip(const std::string& bytes) {
  checkMessageOf([&] { unpacked("\x1f\x8b" + bytes, "input"); });
  const std::string packed = gzipped(bytes);
  check(unpacked(packed, "input") == bytes);
  check(unpacked(packed + packed, "input") == bytes + bytes);
  // The damage depends on the bytes, so that the fuzzer has a hand in it.
  std::size_t sum = 0;
  for (const char c : bytes) sum = sum * 31 + static_cast<unsigned char>(c);
  constexpr std::size_t kMark = 2;  // without it the file is not gzipped
  checkDamaged(packed.substr(0, kMark + sum % (packed.size() - kMark)), bytes);
  std::string changed = packed;
  // After the header, whose bytes may be anything.
  constexpr std::size_t kHeader = 10;
  changed[kHeader + sum % (packed.size() - kHeader)] ^= static_cast<char>(1U << (sum / 7 % 8));
  checkDamaged(changed, bytes);
}

void checkTables(const std::string& bytes) {
  static const Protein protein = everyNeighbour();
  auto texts = shippedTables();
  texts[tableOf(bytes)] = bytes;
  checkMessageOf([&] { checkPrediction(Predictor(tablesFromTexts(texts)).predict(protein)); });
}

void checkBounds(const std::string& bytes) {
  const std::string text = grown(bytes);
  const double mostSeconds = kSlowness * (1 + static_cast<double>(text.size()) / static_cast<double>(kMiB));
  const auto checkTimeOf = [&](auto read) { check(secondsOf(read) <= mostSeconds); };
  checkTimeOf([&] { readShiftBytes(text, "input", {}); });
  checkTimeOf([&] { readShiftBytes(text, "input", {{}, {"all"}}); });
  checkTimeOf([&] { readStructureBytes(text, "input"); });
}

void checkRepeats(const std::string& bytes) {
  constexpr std::size_t kSize = kMiB / 8;
  constexpr double kNoise = 0.2;  // seconds: of what is shorter nothing can be said
  constexpr double kMostGrowth = 3;
  if (bytes.size() < 3) return;
  const std::string text = bytes.substr(2);
  const auto share = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]) * text.size() / 256; };
  const std::size_t begin = share(0);
  const std::size_t size = std::min(text.size() - begin, share(1) + 1);
  const std::size_t times = std::max<std::size_t>(1, kSize / size);
  const std::string once = repeated(text, begin, size, times);
  const std::string twice = repeated(text, begin, size, 2 * times);
  const auto growsInProportion = [&](auto read) {
    const double seconds = secondsOf([&] { read(twice); });
    check(seconds < kNoise || seconds < kMostGrowth * secondsOf([&] { read(once); }) + kNoise);
  };
  growsInProportion([](const std::string& input) { readShiftBytes(input, "input", {{}, {"all"}}); });
  growsInProportion([](const std::string& input) { readStructureBytes(input, "input"); });
  growsInProportion([](const std::string& input) {
    annotateNef(input, "input", {}, [](const NefSequenceRow&) { return std::nullopt; });
  });
}

}  // namespace zorvela
