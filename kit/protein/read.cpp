#include "zorvela/read.h"

#include <exception>
#include <iterator>
#include <utility>

#include "formats/format.h"
#include "formats/input_bytes.h"
#include "formats/sequence_file.h"
#include "protein/assembly.h"
#include "protein/implausible_shifts.h"
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

/// Entries without protein shifts are passed over as long as one has them.
std::vector<Protein> readEntries(const std::vector<Source>& entries, const ImportOptions& options) {
  std::vector<Protein> proteins;
  LimitedNotes passedOver("data blocks left out");
  std::exception_ptr firstError;
  for (const Source& entry : entries) {
    try {
      std::vector<Protein> found = readEntry(entry, options);
      std::move(found.begin(), found.end(), std::back_inserter(proteins));
    } catch (const Error& error) {
      passedOver.add("a data block is left out: " + printable(error.what(), 300));
      if (!firstError) firstError = std::current_exception();
    }
    checkResiduesMade(proteins, entry.file);
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
  return readEntries(sourcesOf(unpacked(std::move(bytes), file), file), options);
}

}  // namespace zorvela
