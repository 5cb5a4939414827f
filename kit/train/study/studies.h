// Trials for developers: how referencing offsets are fitted and seen, and how sequences are told apart.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "predict/referencing.h"
#include "train/labelled_prolines.h"

namespace zorvela {

/// Adds ppm to CA, CB and C of a chain and to CG of its prolines, and to HA, as wrong referencing does.
void addOffsets(EntryShifts& chain, double carbon, double proton);

/// Adds the isotope shifts of CA and CB, and of CG of the prolines, of this share of deuterons.
void addIsotopeShifts(EntryShifts& chain, double share);

/// Leaves HA out, which a deuterated protein has not.
void removeAlphaProtons(EntryShifts& chain);

/// Takes away what calls for a correction, as `run` does. Returns whether anything did.
bool rereference(EntryShifts& chain);

/// The relations of `knownRelations()` fitted anew to chains that are taken to have no offset: medians of the
/// atom's shift around each point, moved so that the median chain has no offset. Rounded to 0.001 ppm.
/// Error where no chain has enough residues for one of them.
std::vector<ShiftRelation> fitRelations(const std::vector<const EntryShifts*>& chains);

/// Writes relations as kit/predict/referencing.cpp holds them.
void writeRelations(std::ostream& out, const std::vector<ShiftRelation>& relations);

/// Tries three ways to estimate offsets on all entries, as they are and with offsets added, and writes how
/// often each calls for a correction and what its estimates are.
void writeReferencing(std::ostream& out, const LabelledProlines& data);

/// Measures how well shifts without residue names tell the right sequence and numbers from wrong ones.
/// Reads the tables in a folder; writes a row for all their atoms and rows for fewer. A row counts the tables
/// that have fewest conflicts at their own numbers. It has the share of residues in conflict at these
/// numbers, at the best wrong number, and with another sequence. This is the sequence of a table half the
/// list away.
void writeSequenceFits(std::ostream& out, const std::string& folder);

}  // namespace zorvela
