// The program's standard output, through one big buffer. Entry point: standard_output. Tests:
// tests/shell/shell_test.py.
#pragma once

#include <cstddef>
#include <string_view>

namespace vexil {

/// Needs no memory of the heap. A reader that went away ends the program quietly; any other failure
/// ends it with a message.
class Output {
 public:
  void write(std::string_view text);
  void flush();

 private:
  static constexpr std::size_t kBufferSize = std::size_t{1} << 17;
  char buffer_[kBufferSize];
  std::size_t used_ = 0;
};

Output& standard_output();

/// One line to standard error, after what was printed before it.
void print_error(std::string_view line);

}  // namespace vexil
