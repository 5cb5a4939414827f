#include "cli/command_line.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <sstream>
#include <utility>

#include <CLI/CLI.hpp>

#include "cli/messages.h"
#include "cli/whole_file.h"
#include "util/text.h"
#include "zorvela/version.h"

namespace zorvela {

// --- Values -------------------------------------------------------------------------------------

/// "" for any text.
std::string ValueKind::range() const {
  if (!words.empty()) return "{" + CLI::detail::join(words, ",") + "}";
  if (!(low > -std::numeric_limits<double>::infinity())) return "";
  std::ostringstream text;
  text.precision(9);
  text << (allowsZero ? "0 or " : "") << low << " to " << high;
  return text.str();
}

/// Tells what is wrong with a value; "" for a good one.
std::string ValueKind::findingOn(const std::string& value) const {
  const std::string allowed = range();
  if (value.empty() && allowed.empty()) return "is empty; give a name";
  if (allowed.empty() || std::find(words.begin(), words.end(), value) != words.end()) return "";
  if (!words.empty()) return shown(value) + " not in " + allowed;
  double number = 0;
  const bool isNumber = CLI::detail::lexical_cast(value, number);
  if (isNumber && ((allowsZero && number == 0) || (number >= low && number <= high))) return "";
  return "\"" + shown(value) + "\" is not " + allowed;
}

// --- Help ---------------------------------------------------------------------------------------

namespace {

constexpr std::size_t kColumns = 80;
constexpr std::size_t kTextColumn = 26;

/// Where the lines below a long one begin: at its second column, or below its first word.
std::size_t indentOf(const std::string& line) {
  const std::size_t word = std::min(line.find_first_not_of(' '), line.size());
  const std::size_t gap = line.find("  ", word);
  const std::size_t second = line.find_first_not_of(' ', gap);
  const bool hasColumns = gap != std::string::npos && second < kColumns / 2;
  return hasColumns ? second : word;
}

/// Breaks lines of more than 80 columns at blanks.
std::string inColumns(const std::string& text) {
  std::string result;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t indent = indentOf(line);
    while (line.size() > kColumns) {
      const std::size_t blank = line.rfind(' ', kColumns);
      if (blank == std::string::npos || blank < indent) break;
      result += line.substr(0, blank) + '\n';
      line = std::string(indent, ' ') + line.substr(blank + 1);
    }
    result += line + '\n';
  }
  return result;
}

/// Sub-commands and options are rows of two columns; a long name has a line of its own.
std::string row(const std::string& name, const std::string& text) {
  const std::string first = "  " + name;
  const bool fits = first.size() + 2 <= kTextColumn;
  return first + (fits ? "" : "\n") + std::string(kTextColumn - (fits ? first.size() : 0), ' ') + text + "\n";
}

/// Returns the name of the value and its range, of "N:1 to 256".
std::pair<std::string, std::string> valueOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const std::size_t colon = std::min(type.find(':'), type.size());
  return {type.substr(0, colon), type.substr(std::min(colon + 1, type.size()))};
}

std::string note(const std::string& text) {
  return " [" + text + "]";
}

std::string optionRow(const CLI::Option& option) {
  auto [value, range] = valueOf(option);
  const bool takesMany =
      option.get_allow_extra_args() && option.get_expected_max() == CLI::detail::expected_max_vector_size;
  std::string name = CLI::detail::find_and_replace(option.get_name(true, true), ",", ", ");
  if (!value.empty()) name += " " + value;
  if (takesMany) name += "...";
  std::string text = option.get_description();
  if (option.nonpositional() && option.get_required()) text += note("required");
  for (const CLI::Option* other : option.get_needs()) text += note("needs " + other->get_name());
  for (const CLI::Option* other : option.get_excludes()) text += note("not with " + other->get_name());
  range.erase(std::remove_if(range.begin(), range.end(), [](char c) { return c == '{' || c == '}'; }),
              range.end());
  if (!range.empty()) text += note("values: " + CLI::detail::find_and_replace(range, ",", ", "));
  if (!option.get_default_str().empty()) text += note("default: " + option.get_default_str());
  return row(name, text);
}

/// Help texts in one form for the program and all sub-commands.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode /*mode*/) const override {
    std::string text = app->get_description() + "\n\n" + make_usage(app, std::move(name));
    addGroup("Arguments", app->get_options([](const CLI::Option* one) { return one->get_positional(); }),
             text);
    for (const std::string& group : app->get_groups())
      if (!group.empty())
        addGroup(group, app->get_options([&group](const CLI::Option* one) {
          return one->nonpositional() && one->get_group() == group;
        }),
                 text);
    const auto commands = app->get_subcommands([](const CLI::App*) { return true; });
    if (!commands.empty()) text += "\nSub-commands:\n";
    for (const CLI::App* command : commands) text += row(command->get_name(), command->get_description());
    return inColumns(text + "\n" + app->get_footer() + "\n");
  }

 private:
  static void addGroup(const std::string& heading, const std::vector<const CLI::Option*>& options,
                       std::string& text) {
    if (!options.empty()) text += "\n" + heading + ":\n";
    for (const CLI::Option* option : options) text += optionRow(*option);
  }
};

}  // namespace

// --- Options ------------------------------------------------------------------------------------

void Option::takes(const ValueKind& kind) const {
  option->type_name(kind.name);
  option->check(
      CLI::Validator([kind](const std::string& value) { return kind.findingOn(value); }, kind.range()));
}

Option Option::required() const {
  option->required();
  return *this;
}

Option Option::repeated() const {
  option->allow_extra_args(false);
  return *this;
}

Option Option::needs(Option other) const {
  option->needs(other.option);
  return *this;
}

Option Option::excludes(Option other) const {
  option->excludes(other.option);
  return *this;
}

Option Option::group(const std::string& heading) const {
  option->group(heading);
  return *this;
}

Option Option::showsDefault(const std::string& value) const {
  if (value.empty())
    option->capture_default_str();
  else
    option->default_str(value);
  return *this;
}

// --- Sub-commands -------------------------------------------------------------------------------

Command Command::addCommand(const std::string& name, const std::string& description) {
  return Command(app->add_subcommand(name, description));
}

Option Command::add(const std::string& names, Setting setting, const ValueKind& kind,
                    const std::string& text) {
  Option option(std::visit([&](auto value) { return app->add_option(names, value.get(), text); }, setting));
  option.takes(kind);
  return option;
}

Option Command::addFlag(const std::string& names, bool& setting, const std::string& text) {
  return Option(app->add_flag(names, setting, text));
}

void Command::ends(const std::string& remarks, const std::vector<std::string>& examples) {
  app->footer((remarks.empty() ? "" : remarks + "\n\n") + "Examples:\n  " +
              CLI::detail::join(examples, "\n  "));
}

void Command::runs(std::function<void()> action) {
  app->callback(std::move(action));
}

void failRequired(const std::string& what) {
  throw CLI::RequiredError(what);
}

// --- The command line ---------------------------------------------------------------------------

namespace {

/// Returns one line: what is wrong with the arguments, and where the help is. An argument is shown safely.
std::string argumentError(const CLI::App* app, const CLI::Error& error) {
  const std::string& program = app->get_name();
  const auto commands = app->get_subcommands();
  const std::string help = commands.empty() ? program : program + " " + commands.front()->get_name();
  return program + ": " + shown(error.what()) + "; see " + help + " --help\n";
}

/// Returns the options of all sub-commands, one a line, for the man page and the documents: sub-command,
/// names, name of the value, default, heading, text, apart by tabs.
std::string optionList(const CLI::App& program) {
  std::string lines;
  for (const CLI::App* command : program.get_subcommands({}))
    for (const CLI::Option* option : command->get_options()) {
      if (!option->nonpositional() || option == command->get_help_ptr()) continue;
      const std::vector<std::string> cells = {command->get_name(),     option->get_name(false, true),
                                              option->get_type_name(), option->get_default_str(),
                                              option->get_group(),     option->get_description()};
      lines += (lines.empty() ? "" : "\n") + CLI::detail::join(cells, "\t");
    }
  return lines;
}

}  // namespace

int runCommandLine(int argc, char** argv, const std::vector<void (*)(Command&)>& commands) {
  const std::string name = kProgramName;
  CLI::App app("Predict cis and trans prolines from chemical shifts", name);
  app.formatter(std::make_shared<HelpFormatter>());
  app.set_help_flag("-h,--help", "Show this help");
  app.set_version_flag("--version", name + " " + version(), "Show the version");
  app.failure_message(argumentError);
  app.require_subcommand(0, 1);  // a name that is not one is named in the error
  // A path may begin with a slash on Windows too.
  app.allow_windows_style_options(false);
  app.footer("Help on a sub-command: " + name + " SUB-COMMAND --help\nManual: man " + name);
  // As --version is: what it throws is written to standard output. No user needs to see it.
  app.add_flag_callback("--list-options", [&app] { throw CLI::CallForVersion(optionList(app), 0); })
      ->group("");
  Command program(&app);
  for (const auto add : commands) add(program);
  try {
    app.parse(argc, argv);
    if (app.get_subcommands().empty()) throw CLI::RequiredError("A sub-command");
    return 0;
  } catch (const CLI::ParseError& error) {
    std::ostringstream out;
    const int status = app.exit(error, out, std::cerr);
    if (!out.str().empty()) writeWhole("-", out.str());
    return status;
  }
}

}  // namespace zorvela
