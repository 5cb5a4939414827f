// What became of one file.
#include <exception>
#include <new>

#include "formats/input_bytes.h"
#include "zorvela/error.h"
#include "zorvela/report.h"

namespace zorvela {

FileReport reportOn(const std::string& file, const std::function<std::vector<Protein>()>& read,
                    Predictor& predictor) {
  FileReport report;
  report.file = file;
  try {
    for (const Protein& protein : read()) report.proteins.push_back(predictor.predict(protein));
    return report;
  } catch (const Error& e) {
    report.error = e.what();
  } catch (const std::bad_alloc&) {
    report.error = inputError(InputFault::noMemory, file).what();
  } catch (const std::exception& e) {
    report.error = Error(file, 0, std::string("cannot be predicted: ") + e.what(), "").what();
  }
  report.proteins.clear();
  return report;
}

}  // namespace zorvela
