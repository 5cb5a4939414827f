// The command line in terms of sub-commands and their options. The parser itself is known to command_line.cpp
// alone, since every source that includes it takes ten seconds to compile.
#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace zorvela {

/// The value of an option or argument: its name in a help text and the values that it may have. It is never
/// empty, for an empty text names nothing.
class ValueKind {
 public:
  /// A name, a path: any text.
  ValueKind(const char* called) : name(called) {}  // NOLINT(google-explicit-constructor): "FILE" says it all
  /// One of these words.
  ValueKind(const char* called, std::vector<std::string> oneOf) : name(called), words(std::move(oneOf)) {}
  /// A number in this range, or 0, where that turns a choice off; never "nan".
  ValueKind(const char* called, double from, double upTo, bool orZero = false)
      : name(called), low(from), high(upTo), allowsZero(orZero) {}

 private:
  friend class Option;
  std::string range() const;
  std::string findingOn(const std::string& value) const;

  std::string name;
  std::vector<std::string> words;
  double low = -std::numeric_limits<double>::infinity();
  double high = std::numeric_limits<double>::infinity();
  bool allowsZero = false;
};

/// An option that was added to a sub-command.
class Option {
 public:
  Option required() const;
  /// Takes one value each time, and may be repeated.
  Option repeated() const;
  /// Is refused without the other one.
  Option needs(Option other) const;
  /// Is refused together with the other one.
  Option excludes(Option other) const;
  /// The heading in the help text.
  Option group(const std::string& heading) const;
  /// The help names the default: these words, or the value that the setting has now.
  Option showsDefault(const std::string& value = "") const;

 private:
  friend class Command;
  explicit Option(CLI::Option* added) : option(added) {}
  void takes(const ValueKind& kind) const;

  CLI::Option* option;
};

/// The program or a sub-command. The settings that options write to live until the command has run.
class Command {
 public:
  /// Where the value of an option goes.
  using Setting =
      std::variant<std::reference_wrapper<std::string>, std::reference_wrapper<std::vector<std::string>>,
                   std::reference_wrapper<double>, std::reference_wrapper<int>,
                   std::reference_wrapper<std::size_t>>;

  explicit Command(CLI::App* added) : app(added) {}

  Command addCommand(const std::string& name, const std::string& description);
  /// Adds an option by its names ("-o,--output"), or an argument (without a dash).
  Option add(const std::string& names, Setting setting, const ValueKind& kind, const std::string& text);
  /// Adds an option without a value.
  Option addFlag(const std::string& names, bool& setting, const std::string& text);
  /// Sets the end of the help text: remarks, which may be empty, and command lines that work as written.
  void ends(const std::string& remarks, const std::vector<std::string>& examples);
  /// Sets what the sub-command does once its options are read.
  void runs(std::function<void()> action);

 private:
  CLI::App* app;
};

/// Ends what a sub-command does, because of a missing argument.
[[noreturn]] void failRequired(const std::string& what);

/// Runs the sub-command that the arguments name, of those that the functions add, and returns the exit
/// status. Help and version are written to standard output, what is wrong with the arguments to standard
/// error.
int runCommandLine(int argc, char** argv, const std::vector<void (*)(Command&)>& commands);

}  // namespace zorvela
