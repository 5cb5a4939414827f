#include "formats/star/star_document.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "formats/limits.h"
#include "formats/star/star_tokens.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

using Kind = StarToken::Kind;

constexpr std::size_t kLongestWord = 60;
constexpr Limit kWords = {20000000, "has", "words", kShiftPartRemedy};

/// Beginnings of the tags that the readers ask for: NMR-STAR 3, NEF, NMR-STAR 2.1, mmCIF.
constexpr std::string_view kNeededTags[] = {"_Entity.",
                                            "_Entity_assembly.",
                                            "_Entity_comp_index.",
                                            "_Entity_poly_seq.",
                                            "_Entity_bond.",
                                            "_Assembly.",
                                            "_Bond.",
                                            "_Chem_comp_assembly.",
                                            "_Atom_chem_shift.",
                                            "_Systematic_chem_shift_offset.",
                                            "_Sample_component.",
                                            "_Chem_shift_experiment.",
                                            "_Isotopic_labeling",
                                            "_Sample_label",
                                            "_nef_sequence.",
                                            "_nef_chemical_shift.",
                                            "_nef_covalent_links.",
                                            "_Residue_seq_code",
                                            "_Mol_residue_sequence",
                                            "_Mol_system_component_name",
                                            "_Mol_label",
                                            "_Chem_shift_value",
                                            "_Atom_one_residue_seq_code",
                                            "_atom_site."};

bool isNeeded(std::string_view tag) {
  return std::any_of(std::begin(kNeededTags), std::end(kNeededTags),
                     [&](std::string_view start) { return startsIgnoringCase(tag, start); });
}

/// Returns the category of a tag for messages: "_nef_sequence" of "_nef_sequence.index".
std::string categoryOf(std::string_view tag) {
  return printable(tag.substr(0, tag.find('.')), kLongestWord);
}

std::uint32_t small(std::size_t number) {
  return static_cast<std::uint32_t>(number);
}

// --- The rows of a loop -------------------------------------------------------------------------

/// A line of a loop, with the first of the values that begin on it. Small, as a file has millions.
struct LoopLine {
  std::uint32_t firstValue = 0;  ///< from 0
  std::uint32_t number = 0;      ///< from 1
};

/// The lines of a loop that have values.
struct LoopLines {
  std::vector<LoopLine> list;
  std::uint32_t values = 0;

  /// Adds a value that begins on a line.
  void add(std::size_t line) {
    if (list.empty() || list.back().number != line) list.push_back({values, small(line)});
    ++values;
  }
};

/// The lines of a loop with whole rows, and the others.
struct LoopLayout {
  std::size_t wholeLines = 0;  ///< with the values of one or more rows
  std::vector<BadLines> bad;
};

/// A row may have one line, share it with others or be wrapped over several. Lines with any other number of
/// values lack some or have some left over.
LoopLayout layoutOf(const LoopLines& loop, std::size_t columns) {
  const std::vector<LoopLine>& lines = loop.list;
  LoopLayout layout;
  std::size_t pending = 0;  // values of a row that is wrapped
  std::size_t firstPending = 0;
  const auto endOf = [&](std::size_t line) {
    return line + 1 < lines.size() ? lines[line + 1].firstValue : loop.values;
  };
  const auto addBad = [&](std::size_t end) {
    const LoopLine& first = lines[firstPending];
    layout.bad.push_back({first.number, lines[end - 1].number, first.firstValue, endOf(end - 1)});
    pending = 0;
  };
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::size_t count = endOf(i) - lines[i].firstValue;
    if (count % columns == 0) {
      ++layout.wholeLines;
      if (pending > 0) addBad(i);
      continue;
    }
    if (pending == 0) firstPending = i;
    pending += count;
    if (pending == columns) pending = 0;
  }
  if (pending > 0) addBad(lines.size());
  return layout;
}

/// "3 values for the 2 columns of _nef_sequence"
std::string countsOf(const BadLines& bad, const StarLoop& loop, const StarFile& file) {
  return counted(bad.endValue - bad.firstValue, "value", "values") + " for the " +
         counted(loop.tagCount, "column", "columns") + " of " +
         categoryOf(file.textOf(file.tags[loop.firstTag]));
}

[[noreturn]] void throwBad(const StarLoop& loop, const StarFile& file) {
  const BadLines& bad = loop.bad;
  const bool isOneLine = bad.firstLine == bad.lastLine;
  throw FileError(
      file.name, bad.firstLine,
      (isOneLine ? "" : lineRange(bad.firstLine, bad.lastLine) + ": ") + countsOf(bad, loop, file),
      kLoopRemedy);
}

class Parser {
 public:
  Parser(StarFile& starFile, StarRules starRules)
      : file(starFile), isStrict(starRules == StarRules::cif), tokens(starFile.text) {
    // For as many values as the text can hold, up to those of a usual entry.
    constexpr std::size_t kBytesPerValue = 2;  // a letter and a blank
    constexpr std::size_t kMost = 1 << 20;
    file.values.reserve(std::min(kMost, file.text.size() / kBytesPerValue));
  }

  void run() {
    for (advance(); token.kind != Kind::end;) {
      if (token.kind == Kind::frame)
        readHeading();
      else if (token.kind == Kind::loop)
        readLoop();
      else if (token.kind == Kind::tag)
        readPair();
      else if (token.kind == Kind::value)
        skipValues();
      else
        advance();
    }
    if (isFrameOpen) noteOpenFrame("the end of the file");
    endFrame();
    notes.appendTo(file.notes);
  }

 private:
  [[noreturn]] void fail(std::size_t atLine, const std::string& what) const {
    throw FileError(file.name, atLine, (isStrict ? "not valid CIF: " : "not valid STAR: ") + what,
                    kStarRemedy);
  }

  void advance() {
    token = tokens.next();
    // Structures of large complexes have more words than any entry of shifts.
    if (!isStrict) checkLimit(++words, kWords, file.name);
    if (token.isOpen && file.text[token.begin] == ';')
      fail(token.line, "a text field begins here and has no end");
  }

  StarSpan spanOf(std::string_view part) const {
    return {small(static_cast<std::size_t>(part.data() - file.text.data())), small(part.size())};
  }

  /// Notes a fault, and what is done with it; an error in CIF.
  void note(std::size_t atLine, const std::string& what, const std::string& remedy = {}) {
    if (isStrict) fail(atLine, what);
    notes.add("line " + std::to_string(atLine) + ": " + what + remedy);
  }

  // --- Frames ---------------------------------------------------------------------------------

  void readHeading() {
    const bool isSave = startsIgnoringCase(token.value, "save_");
    const std::string_view name = token.value.substr(std::min(token.value.find('_') + 1, token.value.size()));
    const bool isEnd = isSave && name.empty();
    if (isFrameOpen && !isEnd) noteOpenFrame(printable(token.value, kLongestWord));
    endFrame();
    isFrameOpen = isSave && !isEnd;
    if (!isSave) {
      blockName = spanOf(name);
      file.blocks.push_back(blockName);
    }
    frameName = isFrameOpen ? spanOf(name) : blockName;
    frameLine = token.line;
    advance();
  }

  void noteOpenFrame(const std::string& before) {
    note(frameLine, "save frame " + printable(file.textOf(frameName), kLongestWord) + " is not closed",
         "; read as if it ended before " + before);
  }

  /// Makes a frame of all that was read since the last heading.
  void endFrame() {
    const std::size_t first = file.frames.empty() ? 0 : file.frames.back().endLoop;
    if (pairTags.empty() && first == file.loops.size()) return;
    checkLimit(file.frames.size() + 1, limits::kFrames, file.name);
    StarLoop pairs;
    pairs.firstTag = small(file.tags.size());
    pairs.firstValue = small(file.values.size());
    pairs.tagCount = pairs.valueCount = small(pairTags.size());
    pairs.isEmpty = pairTags.empty();
    file.tags.insert(file.tags.end(), pairTags.begin(), pairTags.end());
    file.values.insert(file.values.end(), pairValues.begin(), pairValues.end());
    file.loops.insert(file.loops.begin() + static_cast<std::ptrdiff_t>(first), pairs);
    pairTags.clear();
    pairValues.clear();
    const std::size_t block = file.blocks.empty() ? 0 : file.blocks.size() - 1;
    file.frames.push_back({frameName, small(block), small(first), small(file.loops.size())});
  }

  // --- Tags with one value --------------------------------------------------------------------

  void readPair() {
    const std::string_view tag = token.value;
    const std::size_t tagLine = token.line;
    advance();
    if (token.kind != Kind::value) {
      const std::string what = printable(tag, kLongestWord) + " has no value";
      if (isNeeded(tag)) fail(tagLine, what);
      note(tagLine, what);
      return;
    }
    if (token.isOpen) noteOpenQuote(isNeeded(tag));
    pairTags.push_back(spanOf(tag));
    pairValues.push_back(spanOf(token.value));
    lastTag = tag;
    advance();
  }

  void noteOpenQuote(bool isOfUse) {
    const std::size_t lineStart = file.text.find_last_of('\n', token.begin) + 1;  // 0 in the first line
    const std::string what = "a quote begins in column " + std::to_string(token.begin - lineStart + 1) +
                             " and is not closed on its line";
    if (isOfUse) fail(token.line, what);
    note(token.line, what);
  }

  /// Skips values without a tag. After a tag that is read, nothing shows which value is its own.
  void skipValues() {
    const std::size_t firstLine = token.line;
    std::size_t count = 0;
    for (; token.kind == Kind::value; advance()) ++count;
    const std::string what = counted(count, "value", "values") + " without a tag";
    if (isNeeded(lastTag)) fail(firstLine, what);
    note(firstLine, what, "; ignored");
  }

  // --- Loops ----------------------------------------------------------------------------------

  void readLoop() {
    const std::size_t loopLine = token.line;
    StarLoop loop;
    loop.firstTag = small(file.tags.size());
    loop.firstValue = small(file.values.size());
    bool isOfUse = false;
    lines.list.clear();
    lines.values = 0;
    for (advance(); token.kind == Kind::tag; advance()) {
      isOfUse = isOfUse || isNeeded(token.value);
      file.tags.push_back(spanOf(token.value));
    }
    loop.tagCount = small(file.tags.size() - loop.firstTag);
    for (; token.kind == Kind::value; advance()) {
      if (token.isOpen) noteOpenQuote(isOfUse);
      lines.add(token.line);
      if (isOfUse) file.values.push_back(spanOf(token.value));
    }
    if (token.kind == Kind::stop) advance();
    lastTag = {};
    loop.isEmpty = lines.values == 0;
    if (loop.tagCount > 0)
      settleRows(loop, isOfUse);
    else if (isStrict || !loop.isEmpty)
      note(loopLine, "a loop without tags", "; ignored");
    loop.valueCount = small(file.values.size() - loop.firstValue);
    file.loops.push_back(loop);
  }

  /// Drops rows with values missing or left over, where the lines show which they are.
  void settleRows(StarLoop& loop, bool isOfUse) {
    const std::size_t columns = loop.tagCount;
    const std::size_t lineCount = lines.list.size();
    const LoopLayout layout = layoutOf(lines, columns);
    if (layout.bad.empty()) return;
    const bool fills = lines.values % columns == 0;
    const bool isByLine = layout.wholeLines * 2 >= lineCount;
    // Where rows run on from line to line, the lines do not show them: only the count of values can be
    // checked. With few columns, many lines hold whole rows by chance.
    constexpr std::size_t kManyColumns = 5;
    const bool runsOn = columns < kManyColumns ? layout.wholeLines * 10 < lineCount * 9 : !isByLine;
    const bool isCountedOnly = fills && (isStrict || runsOn);
    if (!isCountedOnly || isByLine) loop.bad = layout.bad.front();
    if (isCountedOnly) return;
    loop.lacksRows = isByLine;
    loop.isUnusable = !isByLine;
    if (isStrict) throwBad(loop, file);
    for (const BadLines& bad : layout.bad)
      notes.add(lineRange(bad.firstLine, bad.lastLine) + ": " + countsOf(bad, loop, file) +
                (isByLine ? "; ignored" : "; the loop is not used"));
    if (isByLine && isOfUse) dropRows(loop, layout.bad);
  }

  void dropRows(const StarLoop& loop, const std::vector<BadLines>& bad) {
    const auto at = [&](std::size_t value) {
      return file.values.begin() + static_cast<std::ptrdiff_t>(loop.firstValue + value);
    };
    auto end = at(bad.front().firstValue);
    for (std::size_t i = 0; i < bad.size(); ++i) {
      const auto next = i + 1 < bad.size() ? at(bad[i + 1].firstValue) : file.values.end();
      end = std::copy(at(bad[i].endValue), next, end);
    }
    file.values.erase(end, file.values.end());
  }

  StarFile& file;
  bool isStrict;
  StarTokens tokens;
  StarToken token;
  std::size_t words = 0;
  StarSpan blockName;
  StarSpan frameName;
  std::size_t frameLine = 0;
  bool isFrameOpen = false;
  std::vector<StarSpan> pairTags;  ///< those with one value in the current frame
  std::vector<StarSpan> pairValues;
  std::string_view lastTag;  ///< the tag before, if it has one value; empty after a loop
  LoopLines lines;           ///< those of the current loop
  LimitedNotes notes{"places that are not valid STAR"};
};

/// Returns the first line that is not a comment; empty if there is none.
std::string_view firstLine(std::string_view text) {
  for (std::size_t pos = 0; const auto line = nextLine(text, pos);) {
    const std::string_view core = trimmed(*line);
    if (!core.empty() && core.front() != '#') return core;
  }
  return {};
}

/// Tells whether a line has tags as the column names of a table: with commas, or one after the other.
bool areColumnNames(std::string_view line) {
  const std::size_t end = std::min(line.find_first_of(" \t"), line.size());
  const std::string_view rest = trimmed(line.substr(end));
  return contains(line.substr(0, end), ",") || (line.front() == '_' && !rest.empty() && rest.front() == '_');
}

using TagStarts = std::initializer_list<std::string_view>;
const TagStarts kMoleculeTags = {"_Entity.", "_nef_sequence.", "_Mol_polymer_class", "_Mol_residue_sequence"};
const TagStarts kShiftTags = {"_Atom_chem_shift.", "_Chem_shift_value", "_nef_chemical_shift."};

bool startsAsOneOf(TagStarts starts, std::string_view tag) {
  return std::any_of(starts.begin(), starts.end(),
                     [tag](std::string_view start) { return startsIgnoringCase(tag, start); });
}

/// Tells whether a data block is an entry of its own, with molecules and shifts.
bool isEntry(const StarEntry& block) {
  const std::vector<StarFrame> frames = framesOf(block);
  const auto hasOneOf = [&frames](TagStarts starts) {
    return std::any_of(starts.begin(), starts.end(),
                       [&](std::string_view start) { return haveTable(frames, start); });
  };
  return hasOneOf(kMoleculeTags) && hasOneOf(kShiftTags);
}

bool isPartOfHeader(std::string_view line) {
  if (line.empty() || line.front() == '#' || line.front() == '_') return true;
  return startsIgnoringCase(line, "loop_") || startsIgnoringCase(line, "save_") ||
         startsIgnoringCase(line, "data_");
}

}  // namespace

bool isStar(std::string_view text) {
  const std::string_view line = firstLine(text);
  for (const std::string_view start : {"data_", "save_", "loop_", "global_", "_"})
    if (startsIgnoringCase(line, start)) return !areColumnNames(line);
  return false;
}

std::string starWithin(std::string_view text) {
  std::string found;
  std::size_t header = 0;  // where the header lines above this line begin
  bool isHeader = false;
  bool isInTable = false;
  bool isInFrame = false;  // of a table that was found
  bool opensFrame = false;
  bool hasShifts = false;
  const auto copy = [&](std::size_t start, std::size_t end) {
    while (found.size() < start) found.push_back(text[found.size()] == '\n' ? '\n' : ' ');
    found.append(text.substr(found.size(), end - found.size()));
  };
  for (std::size_t pos = 0; pos < text.size();) {
    const std::size_t start = pos;
    const std::string_view line = trimmed(*nextLine(text, pos));
    const bool isFrameEnd = equalIgnoringCase(line, "save_");
    if (isFrameEnd || startsIgnoringCase(line, "stop_")) {
      if (isInTable || (isInFrame && isFrameEnd)) copy(isInTable ? header : start, pos);
      isInTable = isHeader = opensFrame = false;
      isInFrame = isInFrame && !isFrameEnd;
      continue;
    }
    if (isInTable) continue;
    if (!isPartOfHeader(line)) {
      isHeader = opensFrame = false;
    } else if (!isHeader && !line.empty() && line.front() != '#' && line.front() != '_') {
      isHeader = true;
      header = start;
    }
    opensFrame = opensFrame || startsIgnoringCase(line, "save_");
    const bool isOfShifts = startsAsOneOf(kShiftTags, line);
    if (!isHeader || (!isOfShifts && !startsAsOneOf(kMoleculeTags, line))) continue;
    hasShifts = hasShifts || isOfShifts;
    isInFrame = isInFrame || opensFrame;
    isInTable = true;
  }
  if (isInTable) copy(header, text.size());
  return hasShifts ? found : std::string();
}

std::shared_ptr<const StarFile> parseStar(std::string text, const std::string& name, StarRules rules) {
  auto file = std::make_shared<StarFile>();
  file->name = name;
  file->text = std::move(text);
  Parser(*file, rules).run();
  return file;
}

std::vector<StarEntry> entriesOf(const std::shared_ptr<const StarFile>& file) {
  std::vector<StarEntry> entries;
  for (std::size_t first = 0; first < file->frames.size();) {
    const std::uint32_t block = file->frames[first].block;
    StarEntry entry{file, first, first, {}};
    if (!file->blocks.empty()) entry.name = printable(file->textOf(file->blocks[block]));
    while (entry.endFrame < file->frames.size() && file->frames[entry.endFrame].block == block)
      ++entry.endFrame;
    first = entry.endFrame;
    if (!isEntry(entry)) continue;
    checkLimit(entries.size() + 1, limits::kEntries, file->name);
    entries.push_back(std::move(entry));
  }
  if (entries.size() < 2) return {{file, 0, file->frames.size(), {}}};
  return entries;
}

std::size_t StarTable::rows() const {
  if (loop->isUnusable) throwBad(*loop, *source);
  return loop->tagCount > 0 ? loop->valueCount / loop->tagCount : 0;
}

void StarTable::requireWhole() const {
  if (loop->bad.firstLine > 0) throwBad(*loop, *source);
}

StarColumn StarTable::column(std::string_view tag, std::string_view otherTag) const {
  return {*this, indexOf(tag), otherTag.empty() ? kAbsent : indexOf(otherTag)};
}

std::size_t StarTable::indexOf(std::string_view tag) const {
  for (std::size_t i = 0; i < loop->tagCount; ++i)
    if (equalIgnoringCase(source->textOf(source->tags[loop->firstTag + i]), tag)) return i;
  return kAbsent;
}

std::size_t StarTable::lineOf(std::size_t row) const {
  const std::string_view before = source->textOf({0, span(row, 0).begin});
  return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
}

std::string_view StarTable::cell(std::size_t row, std::size_t column) const {
  if (column == kAbsent) return {};
  const std::string_view core = trimmed(source->textOf(span(row, column)));
  return core == "." || core == "?" ? std::string_view() : core;
}

std::string_view StarColumn::cell(std::size_t row) const {
  const std::string_view own = table->cell(row, first);
  return own.empty() ? table->cell(row, other) : own;
}

std::string StarColumn::word(std::size_t row) const {
  const std::string_view whole = cell(row);
  if (whole.size() <= kLongestNameKept) return std::string(whole);
  return printable(whole, kLongestNameKept);
}

std::vector<StarTable> tablesOf(const StarFrame& frame, std::string_view tagStart) {
  std::vector<StarTable> tables;
  const StarFile& file = frame.file;
  const auto isWanted = [&](StarSpan tag) { return startsIgnoringCase(file.textOf(tag), tagStart); };
  for (std::size_t l = frame.items.firstLoop; l < frame.items.endLoop; ++l) {
    const StarLoop& loop = file.loops[l];
    const StarSpan* firstTag = file.tags.data() + loop.firstTag;
    if (!loop.isEmpty && std::any_of(firstTag, firstTag + loop.tagCount, isWanted))
      tables.emplace_back(file, loop);
  }
  return tables;
}

bool haveTable(const std::vector<StarFrame>& frames, std::string_view tagStart) {
  return std::any_of(frames.begin(), frames.end(),
                     [&](const StarFrame& frame) { return !tablesOf(frame, tagStart).empty(); });
}

std::string frameValue(const StarFrame& frame, std::string_view tag) {
  return StarTable(frame).column(tag).text(0);
}

std::vector<StarFrame> framesOf(const StarEntry& entry) {
  std::vector<StarFrame> frames;
  frames.reserve(entry.endFrame - entry.firstFrame);
  for (std::size_t f = entry.firstFrame; f < entry.endFrame; ++f) frames.emplace_back(*entry.file, f);
  return frames;
}

std::string withoutDollar(std::string text) {
  if (!text.empty() && text.front() == '$') text.erase(0, 1);
  return text;
}

}  // namespace zorvela
