// The pictures of a report, each as HTML that stands alone but for the symbols and the style of the page.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "report/walk.h"
#include "zorvela/predict.h"

namespace zorvela {

/// The chain: lines of 60 residues, prolines with their calls above a band of how completely each residue is
/// assigned.
std::string chainPicture(const ProteinResult& protein);

/// Where cis and trans prolines lie by CB and CG; the same behind every chain, once in each page.
std::string cbCgDefinitions(const ClassStatistics& classes);
/// The chain's prolines by CB and CG; those without CG on the axis of CB. Empty where none has CB.
std::string cbCgPicture(const ProteinResult& protein, const ClassStatistics& classes);
/// What it says: "By CB − CG, P117 is cis".
std::string cbCgTitle(const ProteinResult& protein);

/// What all bar charts have in common, once in each page.
std::string evidenceDefinitions();
/// The contributions of one proline as bars, left for trans, right for cis. Empty without evidence.
std::string evidencePicture(const ProlineResult& proline);

/// What all pictures of the referencing have in common, once in each page.
std::string referencingDefinitions();
/// The referencing offsets with their errors and bounds.
std::string referencingPicture(const ProteinResult& protein);
std::string referencingTitle(const ProteinResult& protein);

/// The prolines of a call as text: "P31, P117 and P201".
std::string namesOf(const ProteinResult& protein, Call call);
/// The same of those with a verdict of the structures.
std::string namesOf(const ProteinResult& protein, Verdict verdict);

/// "The structure disagrees: P117. It agrees: P11, P31." Empty where it does neither.
std::string structureSentence(const ProteinResult& protein);
/// How a text alternative goes on for that verdict: ", structure disagrees"; empty without a mark.
std::string verdictSuffix(const ProlineResult& proline);

}  // namespace zorvela
