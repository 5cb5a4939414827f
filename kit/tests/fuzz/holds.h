// What the checks of the fuzzers share.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <string_view>

#include "zorvela/error.h"

namespace zorvela {

inline void check(bool holds) {
  if (!holds) std::abort();
}

/// Does something that may end with an error for the user: one line of a size that can be read.
template <class Action>
void checkMessageOf(Action action) {
  try {
    action();
  } catch (const Error& error) {
    constexpr std::size_t kLongest = 2000;
    const std::string_view what = error.what();
    check(!what.empty() && what.size() < kLongest && what.find('\n') == std::string_view::npos);
  }
}

}  // namespace zorvela
