// How much a text in the shift-table format will take, before anything is made of it.
#pragma once

#include <cstddef>
#include <string_view>

namespace zorvela {

/// Counts the words of a table, without those of remarks, and the letters of its sequence: each takes some
/// 100 bytes in the table. The name of a column counts three times, for its format.
std::size_t tableSize(std::string_view text);

}  // namespace zorvela
