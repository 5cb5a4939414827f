// Small text helpers of the readers.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zorvela {

/// ASCII only, whatever the locale.
std::string upper(std::string_view text);
std::string lower(std::string_view text);
bool equalIgnoringCase(std::string_view a, std::string_view b);
bool contains(std::string_view text, std::string_view part);

/// Without white space (and control characters) at the ends.
std::string_view trimmed(std::string_view text);

/// On one line and printable: each control character becomes a blank, and a text above `most` bytes is
/// cut and ends in "...".
std::string printable(std::string_view text, std::size_t most = 200);

/// Text from a file, safe to show: control characters, which a terminal would obey, become "?".
std::string withoutControls(std::string text);

/// The next line of `text` from `pos` on, without its line end (LF, CR LF or CR); `pos` moves behind it.
/// Nothing at the end of the text.
std::optional<std::string_view> nextLine(std::string_view text, std::size_t& pos);

/// A whole decimal number that fits an int: an optional sign and digits, nothing else.
std::optional<int> toInteger(std::string_view text);

/// A shift as a plain decimal number ("8.25", "-0.3"), from a text such as "+8.25" or "8.25e0".
/// Nothing if it is no finite number or has more behind it.
std::optional<std::string> toDecimal(std::string_view text);

/// "5, 14, 30 and 12 more".
std::string enumerated(const std::vector<std::string>& items, std::size_t most = 12);

/// "1 shift", "2 shifts".
std::string counted(std::size_t count, const std::string& one, const std::string& many);

}  // namespace zorvela
