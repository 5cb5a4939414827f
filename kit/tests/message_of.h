// What an error says, for tests.
#pragma once

#include <string>

#include "zorvela/error.h"

/// The message of the error that the action throws, or "no error".
template <class Action>
std::string messageOf(Action action) {
  try {
    action();
  } catch (const zorvela::Error& e) {
    return e.what();
  }
  return "no error";
}
