// What a report holds, in numbers.
#include "report/walk.h"
#include "zorvela/report.h"

namespace zorvela {

std::size_t countCalls(const RunReport& report, Call call) {
  std::size_t count = 0;
  forEachProline(report, [&](const ProteinResult&, const ProlineResult& proline) {
    if (proline.call == call) ++count;
  });
  return count;
}

std::size_t countErrors(const RunReport& report) {
  std::size_t count = 0;
  forEachError(report, [&](const FileReport&) { ++count; });
  return count;
}

}  // namespace zorvela
