// What becomes of one file.
#include "zorvela/run_file.h"

#include <exception>
#include <new>

#include "zorvela/compare.h"
#include "zorvela/error.h"

namespace zorvela {

FileReport reportOn(const std::string& file, const std::function<std::vector<Protein>()>& read,
                    const Predictor& predictor, const std::vector<ProteinStructure>& structures) {
  FileReport report{file, {}, ""};
  try {
    const std::vector<Protein> proteins = read();
    for (const Protein& protein : proteins) report.proteins.push_back(predictor.predict(protein));
    if (!structures.empty()) compareWithStructures(proteins, structures, report.proteins);
    return report;
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
