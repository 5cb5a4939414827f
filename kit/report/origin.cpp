#include "report/origin.h"

#include <algorithm>
#include <set>

namespace zorvela {

namespace {

bool hasSeveralLists(const RunReport& report) {
  for (const FileReport& file : report.files) {
    std::set<std::string> chains;
    for (const ProteinResult& protein : file.proteins)
      if (!chains.insert(protein.chain).second) return true;
  }
  return false;
}

std::string commonFolder(const RunReport& report) {
  if (report.files.size() < 2) return {};
  std::string folder = report.files.front().file;
  for (const FileReport& file : report.files) {
    const auto end = std::mismatch(folder.begin(), folder.end(), file.file.begin(), file.file.end()).first;
    folder.erase(end, folder.end());
  }
  folder.erase(folder.find_last_of('/') + 1);
  return folder;
}

}  // namespace

Origin::Origin(const RunReport& report) : withList(hasSeveralLists(report)), folder(commonFolder(report)) {}

std::string chainName(const ProteinResult& protein, const Origin& origin) {
  std::string name = protein.file.substr(origin.folder.size());
  if (!protein.chain.empty()) name += ", chain " + protein.chain;
  if (origin.withList && !protein.list.empty()) name += ", shift list " + protein.list;
  return name;
}

}  // namespace zorvela
