// Text files of the field that hold no shifts, by what they are.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zorvela {

/// What a text is, and the line that gives it away.
struct ForeignText {
  std::string what;  ///< "a restraint list"
  std::size_t line = 0;
};

/// A restraint list, coordinates or a peak list. Nothing for any other text, shifts among them.
std::optional<ForeignText> foreignText(std::string_view text);

}  // namespace zorvela
