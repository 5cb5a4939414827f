// Files that people give by mistake, by what they are.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zorvela {

/// What a file should hold.
enum class Wanted { shifts, structure };

/// FileError for bytes that begin as a file of another kind does (zip, PDF, JSON ...) or are no text in
/// UTF-8. `remedy` says what to give, and `file` is how messages name it.
void refuseForeign(std::string_view bytes, const std::string& file, Wanted wanted, const char* remedy);

/// What a text is, and the line that gives it away.
struct ForeignText {
  std::string what;  ///< "a restraint list"
  std::size_t line = 0;
};

/// A restraint list, coordinates or a peak list. Nothing for any other text, shifts among them.
std::optional<ForeignText> foreignText(std::string_view text);

}  // namespace zorvela
