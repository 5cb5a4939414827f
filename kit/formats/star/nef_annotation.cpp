// Edits the sequence loops of a NEF file in place: it replaces or adds single words.
#include "formats/star/nef_annotation.h"

#include <algorithm>
#include <utility>

#include "formats/limits.h"
#include "formats/star/loop_lines.h"
#include "formats/star/star_chains.h"
#include "formats/star/star_tokens.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

using Kind = StarToken::Kind;

const std::string kCategory = "_nef_sequence.";
const std::string kFlagTag = "cis_peptide";
constexpr std::size_t kAbsent = static_cast<std::size_t>(-1);

bool isEmpty(const StarToken& value) {
  return value.isPlain && (value.value == "." || value.value == "?");
}

/// Walks over the file and copies it, with the edits of its sequence loops.
class Annotator {
 public:
  Annotator(std::string_view source, const std::string& file, const FlagRules& flagRules,
            const CisPeptideOf& flagOf)
      : text(source),
        name(file),
        rules(flagRules),
        cisPeptideOf(flagOf),
        lineBreak(lineBreakOf(source)),
        tokens(source) {}

  NefAnnotation run() {
    for (token = tokens.next(); token.kind != Kind::end;) {
      if (token.kind == Kind::frame && startsIgnoringCase(token.value, "data_"))
        block = nameOf(token.value.substr(5), cut);
      if (token.kind == Kind::loop)
        readLoop();
      else
        token = tokens.next();
    }
    if (loops == 0) throw FileError(name, 0, "has no sequence loop (_nef_sequence)", "give a NEF file");
    replace(text.size(), text.size(), "");
    return std::move(result);
  }

 private:
  void readLoop() {
    const StarToken loop = token;
    std::vector<StarToken> tags;
    for (token = tokens.next(); token.kind == Kind::tag; token = tokens.next()) tags.push_back(token);
    const bool isSequence = !tags.empty() && startsIgnoringCase(tags.front().value, kCategory);
    std::vector<StarToken> values;
    for (; token.kind == Kind::value; token = tokens.next()) {
      if (token.isOpen) throw FileError(name, token.line, "a quoted text is not closed", "close it");
      if (isSequence) values.push_back(token);
    }
    if (isSequence) annotate(loop, tags, values);
  }

  void annotate(const StarToken& loop, const std::vector<StarToken>& tags,
                const std::vector<StarToken>& values) {
    ++loops;
    LoopLines lines;
    for (const StarToken& value : values) lines.add(value.line);
    // A value that is missing in one row and left over in another would move the flags between them.
    if (const auto odd = firstOddLine(lines, tags.size()))
      throw FileError(name, odd->number,
                      "this row of the sequence has " + counted(odd->values, "value", "values") + " for " +
                          counted(tags.size(), "column", "columns"),
                      kLoopRemedy);
    if (values.size() % tags.size() != 0)
      throw FileError(name, loop.line,
                      "the sequence loop has " + counted(values.size(), "value", "values") + " for " +
                          counted(tags.size(), "column", "columns"),
                      kLoopRemedy);
    const std::size_t flag = columnOf(tags, {kFlagTag});
    const std::size_t chain = columnOf(tags, {"chain_code"});
    const std::size_t number = columnOf(tags, {"sequence_code"});
    // Early files call it residue_type.
    const std::size_t residue = columnOf(tags, {"residue_name", "residue_type"});
    if (number == kAbsent || residue == kAbsent)
      throw FileError(name, loop.line, "the sequence loop has no column sequence_code or residue_name",
                      "give a NEF file with the sequence of its molecules");
    if (flag == kAbsent) addColumn(tags.size() > 1 ? tags[tags.size() - 2] : loop, tags.back(), tags[number]);
    for (std::size_t first = 0; first < values.size(); first += tags.size()) {
      const auto cell = [&](std::size_t column) { return textOf(values, first, column); };
      const NefSequenceRow row = {block, cell(chain), cell(number), cell(residue)};
      const std::optional<bool> wanted = cisPeptideOf(row);
      if (flag == kAbsent)
        addFlag(values[first + tags.size() - 1], wanted);
      else if (wanted)
        setFlag(values[first + flag], row, *wanted);
    }
  }

  static std::size_t columnOf(const std::vector<StarToken>& tags, const std::vector<std::string>& names) {
    for (const std::string& column : names)
      for (std::size_t i = 0; i < tags.size(); ++i)
        if (equalIgnoringCase(tags[i].value, kCategory + column)) return i;
    return kAbsent;
  }

  std::string textOf(const std::vector<StarToken>& values, std::size_t first, std::size_t column) {
    if (column == kAbsent || isEmpty(values[first + column])) return {};
    return nameOf(trimmed(values[first + column].value), cut);
  }

  /// Adds the tag after the last one, on a line of its own where the others have one. The last tag may be of
  /// another category than `model`.
  void addColumn(const StarToken& before, const StarToken& lastTag, const StarToken& model) {
    result.columnAdded = true;
    const std::string_view gap = text.substr(before.end, lastTag.begin - before.end);
    const std::size_t lineEnd = gap.find_last_of("\r\n");
    const bool isAlone = lineEnd != std::string_view::npos;
    const std::size_t dot = model.value.find('.');
    const std::string tag = std::string(model.value.substr(0, dot + 1)) + kFlagTag;
    replace(lastTag.end, lastTag.end,
            (isAlone ? lineBreak + std::string(gap.substr(lineEnd + 1)) : " ") + tag);
  }

  static std::string lineBreakOf(std::string_view text) {
    const std::size_t first = text.find_first_of("\r\n");
    if (first == std::string_view::npos) return "\n";
    const bool isPair = text[first] == '\r' && first + 1 < text.size() && text[first + 1] == '\n';
    return isPair ? "\r\n" : std::string(1, text[first]);
  }

  void addFlag(const StarToken& lastValue, std::optional<bool> wanted) {
    const std::string flag = wanted ? flagText(*wanted) : ".";
    if (flag != ".") ++result.written;
    write(lastValue.end, lastValue.end, " " + flag);
  }

  void setFlag(const StarToken& value, const NefSequenceRow& row, bool wanted) {
    const std::optional<bool> before = isEmpty(value) ? std::nullopt : readFlag(value.value);
    if (before == wanted) {
      ++result.confirmed;
      return;
    }
    if (!isEmpty(value)) {
      result.differing.push_back({row, printable(value.value, 40), wanted});
      if (!rules.replace) return;
    } else if (flagText(wanted) == std::string(".")) {
      return;
    }
    ++result.written;
    write(value.begin, value.end, flagText(wanted));
  }

  const char* flagText(bool isCis) const { return isCis ? "true" : rules.trans ? "false" : "."; }

  /// Writes a word with a blank after it where the next character would touch it, as behind a closing quote.
  void write(std::size_t begin, std::size_t end, std::string word) {
    if (end < text.size() && !isStarSpace(text[end])) word += ' ';
    replace(begin, end, word);
  }

  /// Copies the text up to `begin`, then the replacement of the bytes from there to `end`.
  void replace(std::size_t begin, std::size_t end, const std::string& replacement) {
    result.text += text.substr(copied, begin - copied);
    result.text += replacement;
    copied = end;
  }

  std::string_view text;
  const std::string& name;
  const FlagRules& rules;
  const CisPeptideOf& cisPeptideOf;
  const std::string lineBreak;
  StarTokens tokens;
  StarToken token;
  std::string block;
  std::vector<std::string> cut;  ///< notes on long names, which the readers of shifts give
  std::size_t loops = 0;
  std::size_t copied = 0;  ///< bytes of the text that are in the result
  NefAnnotation result;
};

}  // namespace

NefAnnotation annotateNef(std::string_view text, const std::string& name, const FlagRules& rules,
                          const CisPeptideOf& cisPeptideOf) {
  return Annotator(text, name, rules, cisPeptideOf).run();
}

}  // namespace zorvela
