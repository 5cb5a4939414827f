// The readers, one per file format. `file` is the path as the user gave it, for messages.
#pragma once

#include <string>
#include <string_view>

#include <gemmi/cifdoc.hpp>  // for gemmi::cif::Document

#include "formats/shift_model.h"
#include "zorvela/protein.h"

namespace zorvela {

/// NMR-STAR 3 or 2.1 (`_Atom_chem_shift.Val`, `_Chem_shift_value`). Of a file without shifts: its
/// contents.
ShiftFile readStar(const gemmi::cif::Document& document, const std::string& file);

/// NMR-STAR 2.1.
ShiftFile readStar2(const gemmi::cif::Document& document, const std::string& file);

/// Whether a STAR file is a NEF file.
bool isNef(const gemmi::cif::Document& document);

/// NEF 1 (`_nef_chemical_shift`, `_nef_sequence`).
ShiftFile readNef(const gemmi::cif::Document& document, const std::string& file);

/// Text with a line of column names: separated by commas, semicolons, tabs or blanks.
ShiftFile readCsv(std::string_view text, const std::string& file);

/// Whether a text is a table in the program's own format.
bool isTable(std::string_view text);

/// The program's own shift table. Its sequence, disulfide cysteines and shifts are taken as they stand,
/// so that the program predicts the same from it and from its import.
Protein readTable(std::string_view text, const std::string& file);

}  // namespace zorvela
