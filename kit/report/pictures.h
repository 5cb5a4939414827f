// The pictures of a report as HTML. They need the symbols and the style of the page.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "report/walk.h"
#include "zorvela/predict.h"

namespace zorvela {

/// Draws the chain in lines of 50 residues: prolines with their calls above a band that shows how completely
/// each residue is assigned.
std::string chainPicture(const ProteinResult& protein);

/// Draws the regions of cis and trans prolines by CB and CG, which all chains share; once in each page.
std::string cbCgDefinitions(const ClassStatistics& classes);
/// Draws the prolines of the chain by CB and CG; those without CG on the axis of CB. Empty if none has CB.
std::string cbCgPicture(const ProteinResult& protein, const ClassStatistics& classes);
/// Returns the picture in words: "By CB − CG: P117 is cis, P31 is unclear, 4 are trans".
std::string cbCgTitle(const ProteinResult& protein);
/// Names the prolines drawn as arrows: " Arrows, off the axes: P9 (CB 45.00 ppm)."; empty without one.
std::string offAxesText(const ProteinResult& protein, const ClassStatistics& classes);

/// Returns the referencing offsets with their errors and bounds. `name` tells the chain from the others of
/// the page.
std::string referencingTable(const ProteinResult& protein, const std::string& name);
/// Returns the offsets that call for a correction, or may: "13C +3.0 ppm, corrected"; "none", "13C not known"
/// or "not known".
std::string offsetsInWords(const ProteinResult& protein);

/// Return the prolines with a call, or with a verdict of the structures: "P31, P117, P201".
std::string namesOf(const ProteinResult& protein, Call call);
std::string namesOf(const ProteinResult& protein, Verdict verdict);

/// Returns "The structure disagrees: P117. It agrees: P11, P31."; empty if it does neither.
std::string structureSentence(const ProteinResult& protein);
/// Returns ", structure disagrees" or ", structure agrees", for text alternatives; empty otherwise.
std::string verdictSuffix(const ProlineResult& proline);

}  // namespace zorvela
