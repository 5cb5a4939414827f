#include "zorvela/read.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

#include "formats/format.h"
#include "formats/input_bytes.h"
#include "formats/limits.h"
#include "protein/assembly.h"
#include "protein/implausible_shifts.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

constexpr std::size_t kLongestNote = 1000;

void noteImplausible(Protein& protein) {
  const std::vector<std::string> shifts = implausibleShifts(protein);
  if (shifts.empty()) return;
  protein.notes.push_back("outside the range of the residue type, so perhaps assigned wrongly; kept: " +
                          printable(enumerated(shifts), kLongestNote));
}

std::vector<Protein> readEntry(const Source& source, const ImportOptions& options) {
  std::vector<Protein> proteins = makeProteins(readSource(source), source.file, options);
  for (Protein& protein : proteins) noteImplausible(protein);
  if (source.entry.empty()) return proteins;
  for (Protein& protein : proteins)
    protein.chain = source.entry + (protein.chain.empty() ? "" : "_" + protein.chain);
  return proteins;
}

/// Entries without protein shifts are passed over as long as one has them.
std::vector<Protein> readEntries(const std::vector<Source>& entries, const ImportOptions& options) {
  std::vector<Protein> proteins;
  std::vector<std::string> passedOver;
  std::exception_ptr firstError;
  std::size_t residues = 0;
  for (const Source& entry : entries) {
    try {
      std::vector<Protein> found = readEntry(entry, options);
      for (const Protein& protein : found) residues += protein.sequence.size();
      if (entries.size() > 1) checkResiduesMade(residues, entry.file);
      std::move(found.begin(), found.end(), std::back_inserter(proteins));
    } catch (const Error& error) {
      passedOver.emplace_back(error.what());
      if (!firstError) firstError = std::current_exception();
    }
  }
  if (proteins.empty()) std::rethrow_exception(firstError);
  LimitedNotes notes("data blocks left out");
  for (const std::string& why : passedOver) notes.add("a data block is left out: " + printable(why, 300));
  notes.appendTo(proteins.front().notes);
  return proteins;
}

}  // namespace

std::vector<Protein> readShiftFile(const std::string& path, const ImportOptions& options) {
  return readShiftBytes(fileBytes(path), path, options);
}

std::vector<Protein> readShiftStream(std::FILE* stream, const std::string& file,
                                     const ImportOptions& options) {
  return readShiftBytes(streamBytes(stream, file), file, options);
}

std::vector<Protein> readShiftBytes(std::string bytes, const std::string& file,
                                    const ImportOptions& options) {
  std::string text = unpacked(std::move(bytes), file);
  const std::size_t most =
      std::min(kMostResiduesMade, kResiduesMadeOfAnyFile + text.size() / kBytesPerResidueMade);
  std::vector<Protein> proteins = readEntries(sourcesOf(std::move(text), file), options);
  std::size_t residues = 0;
  for (const Protein& protein : proteins) residues += protein.sequence.size();
  checkResiduesMade(residues, file, most);
  return proteins;
}

}  // namespace zorvela
