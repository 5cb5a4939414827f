// Text and numbers in columns.
#pragma once

#include <array>
#include <cstdio>
#include <string>

namespace zorvela {

/// Returns values as printf writes them, at most 255 characters.
template <class... Values>
std::string formatted(const char* format, Values... values) {
  std::array<char, 256> text{};
  std::snprintf(text.data(), text.size(), format, values...);
  return text.data();
}

}  // namespace zorvela
