#include "cli/command_line.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include <CLI/CLI.hpp>

#include "util/text.h"

namespace zorvela {

// --- Values -------------------------------------------------------------------------------------

ValueKind ValueKind::orZero() const {
  ValueKind kind = *this;
  kind.allowsZero = true;
  return kind;
}

ValueKind ValueKind::notEmpty() const {
  ValueKind kind = *this;
  kind.allowsEmpty = false;
  return kind;
}

/// "" for any text.
std::string ValueKind::range() const {
  if (!words.empty()) return "{" + CLI::detail::join(words, ",") + "}";
  if (!(low > -std::numeric_limits<double>::infinity())) return "";
  std::ostringstream text;
  text.precision(9);
  text << (allowsZero ? "0, or " : "") << low << " to " << high;
  return text.str();
}

/// What is wrong with a value, "" for a good one.
std::string ValueKind::findingOn(const std::string& value) const {
  const std::string allowed = range();
  if (!allowsEmpty && value.empty()) return "is empty; give a name";
  if (allowed.empty()) return "";
  if (!words.empty())
    return std::find(words.begin(), words.end(), value) != words.end() ? ""
                                                                       : shown(value) + " not in " + allowed;
  double number = 0;
  const bool isNumber = CLI::detail::lexical_cast(value, number);
  if (isNumber && ((allowsZero && number == 0) || (number >= low && number <= high))) return "";
  return "\"" + shown(value) + "\" is not " + allowed;
}

// --- Help ---------------------------------------------------------------------------------------

namespace {

constexpr std::size_t kColumns = 80;

/// Where the lines below a long one begin: at its second column, or below its first word.
std::size_t indentOf(const std::string& line) {
  const std::size_t word = std::min(line.find_first_not_of(' '), line.size());
  const std::size_t gap = line.find("  ", word);
  const std::size_t second = line.find_first_not_of(' ', gap);
  const bool hasColumns = gap != std::string::npos && second < kColumns / 2;
  return hasColumns ? second : word;
}

/// Where a long line is broken: after a blank, else after a comma, else nowhere.
std::size_t breakIn(const std::string& line, std::size_t indent) {
  for (const char after : {' ', ','}) {
    const std::size_t at = line.rfind(after, kColumns - 1);
    if (at != std::string::npos && at > indent) return at + 1;
  }
  return line.size();
}

/// A help text on lines of at most 80 columns, but for longer words.
std::string inColumns(const std::string& text) {
  std::string result;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t indent = indentOf(line);
    while (line.size() > kColumns) {
      const std::size_t end = breakIn(line, indent);
      if (end == line.size()) break;
      result += line.substr(0, line.find_last_not_of(' ', end - 1) + 1) + '\n';
      line = std::string(indent, ' ') + line.substr(end);
    }
    result += line + '\n';
  }
  return result;
}

}  // namespace

// --- Options ------------------------------------------------------------------------------------

void Option::takes(const ValueKind& kind) const {
  option->type_name(kind.name);
  if (!kind.range().empty() || !kind.allowsEmpty)
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

Option Command::add(const std::string& names, Setting setting, const ValueKind& kind,
                    const std::string& text) {
  Option option(std::visit([&](auto value) { return app->add_option(names, value.get(), text); }, setting));
  option.takes(kind);
  return option;
}

Option Command::add(const std::string& names, const std::function<void(const std::string&)>& setting,
                    const ValueKind& kind, const std::string& text) {
  Option option(app->add_option_function<std::string>(names, setting, text));
  option.takes(kind);
  return option;
}

Option Command::addFlag(const std::string& names, bool& setting, const std::string& text) {
  return Option(app->add_flag(names, setting, text));
}

void Command::footer(const std::string& text) {
  app->footer(text);
}

void Command::needsEither(Option one, Option other, const std::function<void()>& without) {
  check = [one, other, without] {
    if (!one.option->empty() || !other.option->empty()) return;
    without();
    throw CLI::RequiredError(one.option->get_name() + " or " + other.option->get_name());
  };
}

void Command::runs(std::function<void()> action) {
  app->callback([check = check, action = std::move(action)] {
    check();
    action();
  });
}

// --- The command line ---------------------------------------------------------------------------

CommandLine::CommandLine(const std::string& description, const std::string& program,
                         const std::string& version)
    : app(std::make_unique<CLI::App>(description, program)) {
  app->set_version_flag("--version", program + " " + version);
  app->require_subcommand(1);
  // A path may begin with a slash on Windows too.
  app->allow_windows_style_options(false);
  app->footer("Each sub-command has its own --help. Manual: " + program + "(1).");
  // As --version is: what it throws is written to standard output. No user needs to see it.
  app->add_flag_callback("--list-options", [this] { throw CLI::CallForVersion(optionList(), 0); })->group("");
}

CommandLine::~CommandLine() = default;

Command CommandLine::addCommand(const std::string& name, const std::string& description) {
  return Command(app->add_subcommand(name, description));
}

std::string CommandLine::optionList() const {
  std::string lines;
  for (const CLI::App* command : app->get_subcommands({}))
    for (const CLI::Option* option : command->get_options()) {
      if (!option->nonpositional() || option == command->get_help_ptr()) continue;
      const std::vector<std::string> cells = {command->get_name(),     option->get_name(false, true),
                                              option->get_type_name(), option->get_default_str(),
                                              option->get_group(),     option->get_description()};
      lines += (lines.empty() ? "" : "\n") + CLI::detail::join(cells, "\t");
    }
  return lines;
}

int CommandLine::run(int argc, char** argv, std::ostream& out, std::ostream& err) {
  try {
    app->parse(argc, argv);
    return 0;
  } catch (const CLI::CallForVersion& version) {
    return app->exit(version, out, err);
  } catch (const CLI::ParseError& error) {
    std::ostringstream text;
    const int status = app->exit(error, text, err);
    out << inColumns(text.str());
    return status;
  }
}

}  // namespace zorvela
