// The program's standard output, through one big buffer. Entry point: standard_output. Tests:
// tests/shell/shell_test.py.
#pragma once

#include <string>
#include <string_view>

namespace vexil {

/// A reader that went away ends the program quietly; any other failure ends it with a message.
class Output {
 public:
  void write(std::string_view text);
  void flush();

 private:
  std::string buffer_;
};

Output& standard_output();

/// One line to standard error, after what was printed before it.
void print_error(std::string_view line);

}  // namespace vexil
