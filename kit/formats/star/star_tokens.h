// The words of STAR text (NMR-STAR, NEF, CIF) with their places.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zorvela {

/// The remedy for a file that is not valid STAR or CIF.
inline constexpr const char* kStarRemedy = "fix the file there, or fetch it again";

/// The remedy for a loop with a value missing or left over.
inline constexpr const char* kLoopRemedy = "give each row one value for each column, or fetch the file again";

/// Tells whether a character separates words; other control characters are part of them.
inline bool isStarSpace(char c) {
  if (static_cast<unsigned char>(c) > ' ') return false;  // nearly all
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/// A piece of STAR text.
struct StarToken {
  enum class Kind {
    end,    ///< of the text
    tag,    ///< _nef_sequence.index
    loop,   ///< loop_
    stop,   ///< stop_
    frame,  ///< save_name, data_name, global_: the whole word in `value`
    value   ///< a word, a quoted string or a text field: without its quotes in `value`
  };
  Kind kind = Kind::end;
  std::size_t begin = 0;  ///< in the text, with quotes
  std::size_t end = 0;    ///< one past the last byte
  std::size_t line = 1;   ///< on which it begins, from 1
  std::string_view value;
  bool isPlain = false;  ///< a value without quotes
  bool isOpen = false;   ///< a quoted string or text field without an end
};

/// Reads STAR text token by token, and skips blanks and comments. The time is linear in the text.
class StarTokens {
 public:
  /// `text` must outlive this object and its tokens.
  explicit StarTokens(std::string_view text);
  /// Returns the next token; at the end of the text always one of the kind `end`.
  StarToken next();

 private:
  void readTextField(StarToken& token);
  void readQuoted(StarToken& token);
  void readWord(StarToken& token) const;
  void skipBlanks();
  std::size_t lineEnd(std::size_t from) const;

  std::string_view source;
  char newline;  ///< CR in the files of old Macintosh programs
  std::size_t pos = 0;
  std::size_t line = 1;
};

}  // namespace zorvela
