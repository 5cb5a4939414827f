// Edits the sequence loops of a NEF file in place: it replaces or adds single words.
#include "formats/star/nef_annotation.h"

#include <algorithm>
#include <utility>

#include "formats/limits.h"
#include "formats/star/star_chains.h"
#include "formats/star/star_document.h"
#include "formats/star/star_tokens.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

const std::string kCategory = "_nef_sequence.";
const std::string kFlagTag = "cis_peptide";

std::string lineBreakOf(std::string_view text) {
  const std::size_t first = text.find_first_of("\r\n");
  if (first == std::string_view::npos) return "\n";
  const bool isPair = text[first] == '\r' && first + 1 < text.size() && text[first + 1] == '\n';
  return isPair ? "\r\n" : std::string(1, text[first]);
}

/// A copy of a text in which words are replaced or added, one after the other.
class EditedText {
 public:
  explicit EditedText(std::string_view source) : text(source) {}

  /// Writes a word over these bytes. Adds a blank where the next character would touch it, as behind a
  /// closing quote.
  void put(std::size_t begin, std::size_t end, const std::string& word) {
    result += text.substr(copied, begin - copied);
    result += word;
    if (end < text.size() && !isStarSpace(text[end])) result += ' ';
    copied = end;
  }
  std::string finished() { return std::move(result) += text.substr(copied); }

 private:
  std::string_view text;
  std::size_t copied = 0;  ///< bytes of the text that are in the result
  std::string result;
};

/// Walks over the sequence loops of a file.
class Annotator {
 public:
  Annotator(const StarFile& starFile, const FlagRules& flagRules, const CisPeptideOf& flagOf)
      : file(starFile),
        rules(flagRules),
        cisPeptideOf(flagOf),
        tokens(starFile.text),
        edited(starFile.text) {}

  NefAnnotation run() {
    bool isAny = false;
    for (const StarFrameRange& frame : file.frames)
      for (std::size_t l = frame.firstLoop + 1; l < frame.endLoop; ++l) {
        const StarLoop& loop = file.loops[l];
        if (loop.tagCount == 0 || !startsIgnoringCase(file.textOf(tagOf(loop, 0)), kCategory)) continue;
        isAny = true;
        annotate(loop,
                 file.blocks.empty() ? std::string() : nameOf(file.textOf(file.blocks[frame.block]), cut));
      }
    if (!isAny) throw FileError(file.name, 0, "has no sequence loop (_nef_sequence)", "give a NEF file");
    result.text = edited.finished();
    return std::move(result);
  }

 private:
  StarSpan tagOf(const StarLoop& loop, std::size_t column) const { return file.tags[loop.firstTag + column]; }

  void annotate(const StarLoop& loop, const std::string& block) {
    const StarTable table(file, loop);
    // A value that is missing in one row and left over in another would move the flags between them.
    table.requireWhole();
    // Early files call it residue_type.
    const StarColumn residue = table.column(kCategory + "residue_name", kCategory + "residue_type");
    if (!table.has(kCategory + "sequence_code") ||
        (!table.has(kCategory + "residue_name") && !table.has(kCategory + "residue_type")))
      throw FileError(file.name, 0, "the sequence loop has no column sequence_code or residue_name",
                      "give a NEF file with the sequence of its molecules");
    const StarColumn chain = table.column(kCategory + "chain_code");
    const StarColumn code = table.column(kCategory + "sequence_code");
    const std::size_t flag = table.indexOf(kCategory + kFlagTag);
    if (flag == StarTable::kAbsent) addColumn(tagOf(loop, loop.tagCount - 1), file.textOf(tagOf(loop, 0)));
    while (tokens.next().begin < tagOf(loop, loop.tagCount - 1).begin) continue;
    for (std::size_t i = 0; i < table.rows(); ++i) {
      const auto cell = [&](const StarColumn& column) { return nameOf(column.text(i), cut); };
      const NefSequenceRow row = {block, cell(chain), cell(code), cell(residue)};
      const std::optional<bool> wanted = cisPeptideOf(row);
      if (flag == StarTable::kAbsent) {
        addFlag(nextOf(loop.tagCount), wanted);
        continue;
      }
      const StarToken value = nextOf(flag + 1);
      if (wanted) setFlag(value, row, *wanted);
      nextOf(loop.tagCount - flag - 1);
    }
  }

  /// The last of the next tokens: a value with its quotes.
  StarToken nextOf(std::size_t count) {
    StarToken token;
    for (std::size_t i = 0; i < count; ++i) token = tokens.next();
    return token;
  }

  /// Adds the tag after the last one, on a line of its own where that has one. The last tag may be of another
  /// category than `model`.
  void addColumn(StarSpan lastTag, std::string_view model) {
    result.columnAdded = true;
    std::size_t start = lastTag.begin;
    while (start > 0 && (file.text[start - 1] == ' ' || file.text[start - 1] == '\t')) --start;
    const std::string indent = file.text.substr(start, lastTag.begin - start);
    const bool isAlone = start == 0 || file.text[start - 1] == '\n' || file.text[start - 1] == '\r';
    const std::string tag = std::string(model.substr(0, model.find('.') + 1)) + kFlagTag;
    const std::size_t end = lastTag.begin + lastTag.size;
    edited.put(end, end, (isAlone ? lineBreakOf(file.text) + indent : " ") + tag);
  }

  void addFlag(const StarToken& lastValue, std::optional<bool> wanted) {
    const std::string flag = wanted ? flagText(*wanted) : ".";
    if (flag != ".") ++result.written;
    edited.put(lastValue.end, lastValue.end, " " + flag);
  }

  void setFlag(const StarToken& value, const NefSequenceRow& row, bool wanted) {
    const bool isEmpty = value.isPlain && (value.value == "." || value.value == "?");
    if (!isEmpty && readFlag(value.value) == wanted) {
      ++result.confirmed;
      return;
    }
    if (!isEmpty) result.differing.push_back({row, printable(value.value, 40), wanted});
    const bool isKept = isEmpty ? flagText(wanted) == std::string(".") : !rules.replace;
    if (isKept) return;
    ++result.written;
    edited.put(value.begin, value.end, flagText(wanted));
  }

  const char* flagText(bool isCis) const { return isCis ? "true" : rules.trans ? "false" : "."; }

  const StarFile& file;
  const FlagRules& rules;
  const CisPeptideOf& cisPeptideOf;
  StarTokens tokens;  ///< walks over the file once, as its loops are in order
  EditedText edited;
  std::vector<std::string> cut;  ///< notes on long names, which the readers of shifts give
  NefAnnotation result;
};

}  // namespace

NefAnnotation annotateNef(std::string_view text, const std::string& name, const FlagRules& rules,
                          const CisPeptideOf& cisPeptideOf) {
  return Annotator(*parseStar(std::string(text), name), rules, cisPeptideOf).run();
}

}  // namespace zorvela
