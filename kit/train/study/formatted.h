// Numbers in columns.
#pragma once

#include <array>
#include <cstdio>
#include <string>

namespace zorvela {

/// Writes values as printf does, at most 159 characters.
template <class... Values>
std::string formatted(const char* format, Values... values) {
  std::array<char, 160> text{};
  std::snprintf(text.data(), text.size(), format, values...);
  return text.data();
}

}  // namespace zorvela
