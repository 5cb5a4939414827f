// Declarations for the sources of the Python module.
#pragma once

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <string>

#include "zorvela/report.h"

namespace zorvela {

/// Results of one input for Python: a report of a single file.
struct Results {
  RunReport report;

  const FileReport& file() const { return report.files.front(); }
};

/// Returns a text of a file as a Python str; bytes that are not UTF-8 become U+FFFD, as in JSON.
pybind11::str pythonText(const std::string& text);

/// Adds the classes of the results.
void addResults(pybind11::module_& module);

}  // namespace zorvela
