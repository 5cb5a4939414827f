#include "zorvela/read.h"

#include <exception>
#include <iterator>
#include <utility>

#include "formats/format.h"
#include "formats/input_bytes.h"
#include "formats/sequence_file.h"
#include "names/nomenclature.h"
#include "protein/assembly.h"
#include "protein/shifts.h"
#include "util/text.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

std::vector<Protein> readEntry(const Source& source, const ImportOptions& options) {
  std::vector<Protein> proteins = makeProteins(readSource(source), source.file, options);
  for (Protein& protein : proteins) noteImplausible(protein);
  if (source.entry.empty()) return proteins;
  for (Protein& protein : proteins)
    protein.chain = source.entry + (protein.chain.empty() ? "" : "_" + protein.chain);
  return proteins;
}

/// Counts the prolines with enough shifts for a prediction: each fills much of a report.
std::size_t predictableProlines(const Protein& protein) {
  std::vector<int> missing(protein.sequence.size(), kBackboneAtoms);
  for (const Shift& shift : protein.shifts) --missing[static_cast<std::size_t>(shift.position) - 1];
  std::size_t count = 0;
  for (std::size_t i = 1; i + 1 < missing.size(); ++i)
    if (protein.sequence[i] == kProlineCode && hasEnoughShifts({missing[i - 1], missing[i], missing[i + 1]}))
      ++count;
  return count;
}

/// Counts what a file makes, and compares it with a real file of its size.
struct Made {
  std::size_t bytes;
  std::size_t residues = 0;
  std::size_t prolines = 0;

  void count(const std::vector<Protein>& proteins, const std::string& file) {
    for (const Protein& protein : proteins) {
      residues += protein.sequence.size();
      prolines += predictableProlines(protein);
    }
    checkLimit(residues, limits::kResiduesMade, file);
    checkLimit(prolines, limits::prolinesMade(bytes), file);
  }
};

/// Ignores entries without protein shifts as long as one has them. `bytes` is the size of the file.
std::vector<Protein> readEntries(const std::vector<Source>& entries, const ImportOptions& options,
                                 std::size_t bytes) {
  Made made{bytes};
  std::vector<Protein> proteins;
  LimitedNotes passedOver("data blocks ignored");
  std::exception_ptr firstError;
  for (const Source& entry : entries) {
    try {
      std::vector<Protein> found = readEntry(entry, options);
      made.count(found, entry.file);
      std::move(found.begin(), found.end(), std::back_inserter(proteins));
    } catch (const LimitError&) {
      throw;
    } catch (const Error& error) {
      passedOver.add("a data block is ignored: " + printable(error.what(), 300));
      if (!firstError) firstError = std::current_exception();
    }
  }
  if (proteins.empty()) std::rethrow_exception(firstError);
  passedOver.appendTo(proteins.front().notes);
  return proteins;
}

}  // namespace

GivenSequence readSequenceBytes(std::string bytes, const std::string& file) {
  return std::make_shared<SequenceFile>(sequenceFileOf(std::move(bytes), file));
}

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
  const std::size_t size = text.size();
  return readEntries(sourcesOf(std::move(text), file), options, size);
}

}  // namespace zorvela
