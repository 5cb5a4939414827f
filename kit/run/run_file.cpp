// What becomes of one file.
#include "zorvela/run_file.h"

#include <exception>
#include <new>

#include "zorvela/compare.h"
#include "zorvela/error.h"

namespace zorvela {

namespace {

std::vector<ProteinResult> resultsOf(const std::vector<Protein>& proteins, const Predictor& predictor,
                                     const std::vector<ProteinStructure>& structures) {
  std::vector<ProteinResult> results;
  results.reserve(proteins.size());
  for (const Protein& protein : proteins) results.push_back(predictor.predict(protein));
  if (!structures.empty()) compareWithStructures(proteins, structures, results);
  return results;
}

}  // namespace

FileReport reportOn(const std::string& file, const std::function<std::vector<Protein>()>& read,
                    const Predictor& predictor, const std::vector<ProteinStructure>& structures) {
  try {
    return {file, resultsOf(read(), predictor, structures), ""};
  } catch (const SequenceError& error) {
    return {file, {}, error.what(), true};
  } catch (const Error& error) {
    return {file, {}, error.what()};
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    return {file, {}, Error(file, 0, std::string("cannot be predicted: ") + error.what(), "").what()};
  }
}

}  // namespace zorvela
