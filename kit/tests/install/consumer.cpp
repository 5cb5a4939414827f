// Shifts and tables from memory to JSON on standard output, and an exception for a bad table.
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <string>

#include <zorvela/error.h>
#include <zorvela/predict.h>
#include <zorvela/read.h>
#include <zorvela/report.h>
#include <zorvela/version.h>

namespace {

std::string textOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string messageForBadTable(std::map<std::string, std::string> texts) {
  std::string& text = texts["Pro.cs.tab"];
  text.resize(text.size() / 2);
  try {
    zorvela::tablesFromTexts(texts);
  } catch (const zorvela::TableError& error) {
    return error.file() + " is refused";
  }
  return "no exception";
}

}  // namespace

/// consumer TABLES FILE
int main(int argc, char** argv) {
  if (argc != 3) return 2;
  std::map<std::string, std::string> texts;
  for (const char* name : zorvela::kTableNames) texts[name] = textOf(std::string(argv[1]) + "/" + name);
  zorvela::RunReport report;
  report.tables = "memory";
  zorvela::Predictor predictor(zorvela::tablesFromTexts(texts));
  zorvela::FileReport file;
  file.file = "bytes";
  for (const zorvela::Protein& protein : zorvela::readShiftBytes(textOf(argv[2]), "bytes", {}))
    file.proteins.push_back(predictor.predict(protein));
  report.files.push_back(file);
  zorvela::writeJson(report, {}, std::cout);
  std::cerr << zorvela::version() << '\n' << messageForBadTable(texts) << '\n';
  return 0;
}
