// The parts of the page about one chain, each in a file of its own.
#pragma once

#include <string>

#include "zorvela/predict.h"

namespace zorvela {

/// The style sheet: light, dark and printed. One colour for each call, from the palette of Okabe and Ito,
/// which colour-blind people tell apart.
extern const char* const kHtmlStyle;

/// Returns a caption that explains the marks of verdicts; empty without one.
std::string markCaption(const ProteinResult& protein);

/// Draws the chain in lines of 50 residues: prolines with their calls above a band. The band shows how
/// completely each residue is assigned.
std::string chainFigure(const ProteinResult& protein);

/// Draws the regions of cis and trans prolines by CB and CG, which all chains share; once in each page.
std::string cbCgDefinitions(const ClassStatistics& classes);
/// Draws the prolines of the chain by CB and CG; those without CG on the axis of CB. Empty if none has CB.
std::string cbCgFigure(const ProteinResult& protein, const ClassStatistics& classes);

/// Returns a card for each proline that someone should look at, with figures (markup) beside them. Each other
/// proline has a line that opens. Prolines without a prediction are in a list.
std::string prolineCards(const ProteinResult& protein, const std::string& figures);
/// Returns all prolines as a table.
std::string prolineTable(const ProteinResult& protein, const std::string& name);

/// Returns the referencing offsets with their errors and bounds. `name` tells the chain from the others of
/// the page.
std::string referencingTable(const ProteinResult& protein, const std::string& name);
/// Returns the offsets that call for a correction, or may: "13C +3.0 ppm, corrected". Otherwise returns
/// "none", "13C not known" or "not known".
std::string offsetsInWords(const ProteinResult& protein);

}  // namespace zorvela
