#include "cli/table_names.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "cli/input.h"
#include "util/text.h"

namespace zorvela {

namespace {

/// A letter, digit, or mark that is harmless in a file name.
bool isPlainInName(char c) {
  return isLetter(c) || isDigit(c) || c == '-' || c == '.' || c == '+' ||
         static_cast<unsigned char>(c) >= 0x80;
}

/// A terminal may obey control characters that `ls` shows.
std::string safeName(const std::string& text) {
  constexpr std::size_t kLongest = 60;
  std::string name = shown(firstBytes(text, kLongest), '_');
  for (char& c : name)
    if (!isPlainInName(c)) c = '_';
  return name;
}

/// The file's name without folder, ".gz" and the ending.
std::string stemOf(const std::string& path) {
  if (path == "-") return "stdin";
  return shown(std::filesystem::path(inputStem(path)).filename().string(), '_');
}

}  // namespace

/// Names that differ in case alone are one name to some file systems.
TableNames::TableNames(const std::vector<std::string>& files) {
  std::unordered_set<std::string> wanted;
  for (const std::string& file : files) {
    names.push_back(stemOf(file));
    wanted.insert(lower(names.back()));
  }
  std::unordered_map<std::string, std::size_t> users;
  std::unordered_map<std::string, int> tries;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string key = lower(names[i]);
    const auto [first, isNew] = users.emplace(key, i);
    if (isNew) continue;
    std::string other;
    int& number = tries.emplace(key, 1).first->second;
    do other = names[i] + "_" + std::to_string(++number);
    while (!wanted.insert(lower(other)).second);
    renamed.push_back(inputName(files[i]) + ": written as " + other + ", because " +
                      inputName(files[first->second]) + " has the same name");
    names[i] = other;
  }
  keys.assign(wanted.begin(), wanted.end());
  std::sort(keys.begin(), keys.end());
}

/// "x_A" belongs to the input x_A, and to x only where there is no such input.
bool TableNames::isOthers(const std::string& name, const std::string& own) const {
  const std::string key = lower(name);
  for (std::size_t end = key.size(); end > own.size(); --end)
    if ((end == key.size() || key[end] == '_') &&
        std::binary_search(keys.begin(), keys.end(), key.substr(0, end)))
      return true;
  return false;
}

std::vector<std::string> TableNames::of(std::size_t input, const std::vector<Protein>& proteins) const {
  const std::string& own = names[input];
  std::map<std::string, int> listsOf;
  for (const Protein& protein : proteins) ++listsOf[protein.chain];
  std::unordered_set<std::string> taken;
  std::vector<std::string> result;
  for (const Protein& protein : proteins) {
    std::string ending;
    if (!protein.chain.empty()) ending += "_" + safeName(protein.chain);
    if (listsOf[protein.chain] > 1) ending += "_" + safeName(protein.list);
    std::string start = own;
    while (isOthers(start + ending, own)) start += '-';
    std::string name = start + ending;
    for (int number = 2; isOthers(name, own) || !taken.insert(lower(name)).second; ++number)
      name = start + ending + "_" + std::to_string(number);
    result.push_back(name);
  }
  return result;
}

}  // namespace zorvela
