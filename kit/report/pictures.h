// The pictures of a report, each as HTML that stands alone but for the symbols and the style of the page.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "report/walk.h"
#include "zorvela/predict.h"

namespace zorvela {

/// The chain: lines of 50 residues, prolines with their calls above a band of how completely each residue is
/// assigned.
std::string chainPicture(const ProteinResult& protein);

/// Where cis and trans prolines lie by CB and CG; the same behind every chain, once in each page.
std::string cbCgDefinitions(const ClassStatistics& classes);
/// The chain's prolines by CB and CG; those without CG on the axis of CB. Empty where none has CB.
std::string cbCgPicture(const ProteinResult& protein, const ClassStatistics& classes);
/// What it says: "By CB − CG: P117 is cis, P31 is unclear, 4 are trans".
std::string cbCgTitle(const ProteinResult& protein);
/// Names the prolines that are arrows at the edge: " Off the axes: P9 (CB 45.00 ppm)."; empty without one.
std::string offAxesText(const ProteinResult& protein, const ClassStatistics& classes);

/// The referencing offsets with their errors and bounds. `name` tells the chain from others of the page.
std::string referencingTable(const ProteinResult& protein, const std::string& name);
/// Those that call for a correction, or perhaps do: "13C +3.0 ppm, corrected"; "none", "13C not known" or
/// "not known".
std::string offsetsInWords(const ProteinResult& protein);

/// The prolines of a call as text: "P31, P117 and P201".
std::string namesOf(const ProteinResult& protein, Call call);
/// The same of those with a verdict of the structures.
std::string namesOf(const ProteinResult& protein, Verdict verdict);

/// "The structure disagrees: P117. It agrees: P11, P31." Empty where it does neither.
std::string structureSentence(const ProteinResult& protein);
/// How a text alternative goes on for that verdict: ", structure disagrees"; empty without a mark.
std::string verdictSuffix(const ProlineResult& proline);

}  // namespace zorvela
