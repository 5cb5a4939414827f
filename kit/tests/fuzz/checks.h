// What must hold of any input: the fuzzers make the inputs, the unit tests give them those that once failed.
//
// Each ends the process (abort) where something does not hold: an error of another kind than those for the
// user, or of more than one line; a protein that contradicts itself; a table whose import is another table.
#pragma once

#include <string>

namespace zorvela {

/// The import of STAR files and shift tables. The pass in front of the parser loses no bytes.
void checkStar(const std::string& bytes);
/// The import of what follows the head of a NEF file.
void checkNef(const std::string& bytes);
/// The import of CSV, also of what looks like another format.
void checkCsv(const std::string& bytes);
/// The way through gzip and back, and that a damaged file gives an error and no other text.
void checkGzip(const std::string& bytes);
/// One of the seven reference tables: refused, or good for probabilities between 0 and 1.
void checkTables(const std::string& bytes);
/// The reading of shifts and of structures: ten times 1 s and 1 s for each MiB of processor time. In the
/// input a line "@@1000" repeats the one before it.
void checkBounds(const std::string& bytes);
/// The reading of a file with a piece of it many times, and twice as many: the time doubles. The first two
/// bytes give the start of the piece and its length, as shares of the rest.
void checkRepeats(const std::string& bytes);
/// The reading of structures: bonds whose state is that of their geometry, and a chain that matches itself.
void checkStructure(const std::string& bytes);
/// The annotation of NEF files: nothing but flags changes, and a second one changes nothing.
void checkAnnotation(const std::string& bytes);

}  // namespace zorvela
