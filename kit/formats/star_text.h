// Makes STAR text fit for a CIF parser, in one pass, and finds the user's line for a place in the result.
//
// STAR and CIF differ in two ways that matter here. STAR values may begin with "$" (the name of another
// save frame) without quotes, which CIF forbids; and a shift list cut out of its entry begins with its
// save frame, where CIF wants a data block. So "$name" is quoted and "data_" put in front; bytes are
// only ever added. Quoted strings, text fields and comments stay as they are.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zorvela {

/// A place in the user's file, both from 1. The column counts bytes.
struct TextPlace {
  std::size_t line = 1;
  std::size_t column = 1;
};

/// STAR text that a CIF parser takes.
class StarText {
 public:
  /// Linear in the length of the text, whatever it holds. `original` must outlive this object.
  explicit StarText(std::string_view original);

  /// The text for the parser.
  const std::string& text() const { return adapted; }
  /// How many words, quoted strings and text fields there are.
  std::size_t words() const { return wordCount; }
  /// The place in the original of byte `offset` (from 0) of `text()`; for an added byte, of the one after it.
  TextPlace placeOf(std::size_t offset) const;

 private:
  class Scanner;

  std::string_view source;
  std::string adapted;
  std::size_t wordCount = 0;
  std::vector<std::size_t> added;  ///< offsets in `adapted` of the added bytes, ascending
};

}  // namespace zorvela
