// Recognises files that people give by mistake.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "zorvela/error.h"

namespace zorvela {

/// The content that a file should have.
enum class Wanted { shifts, structure };

inline constexpr const char* kGiveShifts = "give the file with the chemical shifts";

/// Returns the error for a file of another kind: "is a PDF file, not a shift file". `remedy` is what to do.
FileError foreignError(const std::string& file, std::size_t line, std::string_view what,
                       const char* remedy = kGiveShifts, Wanted wanted = Wanted::shifts);

/// Throws FileError for bytes that begin as a file of another kind does (zip, PDF, JSON ...) or are not text
/// in UTF-8. `remedy` is what to give, and `file` is how messages name it.
void refuseForeign(std::string_view bytes, const std::string& file, Wanted wanted, const char* remedy);

/// Throws FileError with the line for a restraint list, coordinates or a peak list; not for any other text.
void refuseForeignText(std::string_view text, const std::string& file);

}  // namespace zorvela
