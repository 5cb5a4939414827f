#include "cli/number_option.h"

#include <CLI/CLI.hpp>

#include "util/number.h"
#include "util/text.h"

namespace zorvela {

CLI::Validator numberFrom(double low, double high, bool orZero) {
  const std::string range = (orZero ? "0, or " : "") + numberText(static_cast<float>(low)) + " to " +
                            numberText(static_cast<float>(high));
  return CLI::Validator(
      [=](const std::string& text) -> std::string {
        double value = 0;
        const bool isNumber = CLI::detail::lexical_cast(text, value);
        if (isNumber && ((orZero && value == 0) || (value >= low && value <= high))) return "";
        return "\"" + shown(text) + "\" is not " + range;
      },
      range);
}

}  // namespace zorvela
