// What a statement raises. Entry points: HostError, raise_error, raise_out_of_memory.
// Tests: tests/unit/values_test.cpp.
#pragma once

#include <string>
#include <vector>

#include "vstring/object.h"

namespace vexil {

using Object = HostObject;

/// `format` still holds %1..%3; `objects` has those that were given.
struct HostError {
  std::string format;
  std::vector<Object> objects = {};
  std::string command = {};  // the command that raised, "" when none did
  /// The message with the objects filled in.
  std::string message() const;
};

/// Raises an error that no command raised.
[[noreturn]] void raise_error(std::string format, std::vector<Object> objects = {});
[[noreturn]] void raise_out_of_memory();

}  // namespace vexil
