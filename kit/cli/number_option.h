// Numbers on the command line.
#pragma once

#include <string>

namespace CLI {
class Validator;
}

namespace zorvela {

/// The check of an option: a number from `low` to `high`. "nan" is none, which a comparison with both would
/// not see. With `orZero` 0 too, where it turns a choice off.
CLI::Validator numberFrom(double low, double high, bool orZero = false);

}  // namespace zorvela
